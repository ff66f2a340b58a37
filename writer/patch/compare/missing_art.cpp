#include "writer/patch/compare/missing_art.h"

#include "reader/content/art.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "writer/patch/form/edited_form.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace corvane {

namespace {

bool isMuch(const MissingArt& kind, bool isAll) {
    return kind.missing > 1 &&
           (isAll ? kind.missing == kind.whole : 2 * std::int64_t{kind.missing} >= kind.whole);
}

/// What is in another content than the one that drew it, as when a form was dissolved.
class ArtElsewhere {
public:
    ArtElsewhere(const BaseContents& contents, const EditedArtwork& page, const EditedForms& forms)
        : contents_(contents) {
        list(page, 0);
        for (const EditedForm& form : forms) {
            list(form.inside, form.base->number);
        }
    }

    bool holds(std::int32_t content, PaintedIndex source) const {
        return art_.contains({content, source});
    }
    /// The group that the form is there; null: none.
    const EditedForm* form(std::int32_t content) const {
        const auto found = forms_.find(content);
        return found == forms_.end() ? nullptr : found->second;
    }

private:
    void list(const EditedArtwork& artwork, std::int32_t number) {
        for (const EditedObject& object : artwork.objects.items()) {
            if (object.form != nullptr) {
                forms_.emplace(object.form->base->number, object.form);
            } else if (object.source.content > 0 && object.source.content != number) {
                const BaseContent* const from = contents_.find(object.source.content);
                const PaintedIndex source = from != nullptr ? sourceOf(*from, object) : noSource;
                if (source != noSource) {
                    art_.emplace(from->number, source);
                }
            }
        }
    }

    const BaseContents& contents_;
    std::set<std::pair<std::int32_t, PaintedIndex>> art_;
    std::map<std::int32_t, const EditedForm*> forms_;
};

class LossTally {
public:
    explicit LossTally(const ArtElsewhere& elsewhere) : elsewhere_(elsewhere) {}

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
                addGone(*trace.formAt(painted.event));
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

    /// A form that paints what no art shows takes that along, wherever its art is.
    void addGone(const FormTrace& gone) {
        if (const EditedForm* const form = elsewhere_.form(gone.content)) {
            return add(form->base->trace, form->matching, form->inside);
        }
        forEachArt(gone.trace, [&](PaintedIndex first, PaintedIndex end) {
            const PaintedArt& painted = gone.trace.painted()[first];
            if (painted.isForm) {
                return addGone(*gone.trace.formAt(painted.event));
            }
            bool isThere = false;
            for (PaintedIndex source = first; source < end; ++source) {
                isThere = isThere || elsewhere_.holds(gone.content, source);
            }
            count(painted, !isThere || gone.trace.hidesArt());
        });
    }

    void count(const PaintedArt& painted, bool isGone) {
        MissingArt& ofKind = *std::ranges::find(kinds, artKind(painted.art), &MissingArt::kind);
        for (MissingArt* each : {&page, &ofKind}) {
            each->missing += isGone ? 1 : 0;
            ++each->whole;
        }
    }

    const ArtElsewhere& elsewhere_;
};

} // namespace

void refuseMissing(const BaseContents& contents, const Matching& matching,
                   const EditedArtwork& artwork, const EditedForms& forms) {
    const ArtElsewhere elsewhere(contents, artwork, forms);
    LossTally tally(elsewhere);
    tally.add(contents.page().trace, matching, artwork);
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
