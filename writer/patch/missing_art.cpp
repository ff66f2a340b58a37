#include "writer/patch/missing_art.h"

#include "reader/content/art.h"
#include "runtime/exception.h"
#include "runtime/extension.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

bool isMuch(const MissingArt& kind, bool isAll) {
    return kind.missing > 1 &&
           (isAll ? kind.missing == kind.whole : 2 * std::int64_t{kind.missing} >= kind.whole);
}

} // namespace

void refuseMissing(const BaseReading& base, const Matching& matching) {
    MissingArt page;
    std::array kinds = {MissingArt{.kind = ArtKind::path}, MissingArt{.kind = ArtKind::compound},
                        MissingArt{.kind = ArtKind::text}, MissingArt{.kind = ArtKind::group},
                        MissingArt{.kind = ArtKind::placed}};
    for (PaintedIndex source = 0; source < matching.owners.size();) {
        const Art art = artOf(base, source);
        // A line of text is missing if all its runs are, which follow one another.
        std::int32_t missing = 1;
        for (; source < matching.owners.size() && artOf(base, source) == art; ++source) {
            missing = matching.owners[source] == noSource ? missing : 0;
        }
        const ArtKind kind = artKind(art);
        MissingArt& ofKind = *std::ranges::find(kinds, kind, &MissingArt::kind);
        for (MissingArt* each : {&page, &ofKind}) {
            each->missing += missing;
            ++each->whole;
        }
    }
    const auto extension = knownExtension();
    if (page.missing < 2 || (extension && extension->overwrites)) {
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
    tell(page, false);
    for (const MissingArt& kind : kinds) {
        tell(kind, true);
    }
    if (isRefused) {
        failException(Exception::artworkMissing);
    }
}

} // namespace corvane
