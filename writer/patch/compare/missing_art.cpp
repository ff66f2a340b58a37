#include "writer/patch/compare/missing_art.h"

#include "reader/content/art.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "writer/patch/form/edited_form.h"

#include <algorithm>
#include <array>
#include <span>

namespace corvane {

namespace {

bool isMuch(const MissingArt& kind, bool isAll) {
    return kind.missing > 1 &&
           (isAll ? kind.missing == kind.whole : 2 * std::int64_t{kind.missing} >= kind.whole);
}

class LossTally {
public:
    /// Of a content that the artwork has so.
    void add(const ContentTrace& trace, const Matching& matching, const EditedArtwork& artwork) {
        forEachArt(trace, [&](PaintedIndex first, PaintedIndex end) {
            const PaintedArt& painted = trace.painted()[first];
            const auto owners = std::span(matching.owners).subspan(first, end - first);
            const bool isGone =
                std::ranges::all_of(owners, [](EditedIndex owner) { return owner == noSource; });
            if (!painted.isForm) {
                count(painted, isGone);
            } else if (isGone) {
                addGone(trace.formAt(painted.event)->trace);
            } else {
                const EditedForm& form = *artwork.objects[owners.front()].form;
                add(form.base->trace, form.matching, form.inside);
            }
        });
    }

    MissingArt page;
    std::array<MissingArt, 5> kinds = {
        MissingArt{.kind = ArtKind::path}, MissingArt{.kind = ArtKind::compound},
        MissingArt{.kind = ArtKind::text}, MissingArt{.kind = ArtKind::group},
        MissingArt{.kind = ArtKind::placed}};

private:
    /// A line of text is missing if all its runs are, which follow one another.
    template <class Visit>
    static void forEachArt(const ContentTrace& trace, const Visit& visit) {
        const std::span<const PaintedArt> painted = trace.painted();
        for (std::size_t first = 0; first < painted.size();) {
            std::size_t end = first + 1;
            while (end < painted.size() && painted[end].art == painted[first].art) {
                ++end;
            }
            visit(static_cast<PaintedIndex>(first), static_cast<PaintedIndex>(end));
            first = end;
        }
    }

    void addGone(const ContentTrace& trace) {
        forEachArt(trace, [&](PaintedIndex first, PaintedIndex) {
            const PaintedArt& painted = trace.painted()[first];
            if (painted.isForm) {
                addGone(trace.formAt(painted.event)->trace);
            } else {
                count(painted, true);
            }
        });
    }

    void count(const PaintedArt& painted, bool isGone) {
        MissingArt& ofKind = *std::ranges::find(kinds, artKind(painted.art), &MissingArt::kind);
        for (MissingArt* each : {&page, &ofKind}) {
            each->missing += isGone ? 1 : 0;
            ++each->whole;
        }
    }
};

} // namespace

void refuseMissing(const BaseContent& page, const Matching& matching,
                   const EditedArtwork& artwork) {
    LossTally tally;
    tally.add(page.trace, matching, artwork);
    const auto extension = knownExtension();
    if (tally.page.missing < 2 || (extension && extension->overwrites)) {
        return;
    }
    bool isRefused = false;
    const auto tell = [&](const MissingArt& kind, bool isAll) {
        if (isMuch(kind, isAll)) {
            isRefused = true;
            if (extension && extension->missing != nullptr) {
                extension->missing(extension->context, kind);
            }
        }
    };
    tell(tally.page, false);
    for (const MissingArt& kind : tally.kinds) {
        tell(kind, true);
    }
    if (isRefused) {
        failException(Exception::artworkMissing);
    }
}

} // namespace corvane
