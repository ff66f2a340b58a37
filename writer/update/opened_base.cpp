#include "writer/update/opened_base.h"

#include "reader/page/page_base.h"
#include "reader/page/page_content.h"
#include "reader/syntax/stream/stream_chain.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/warning.h"

#include <cstdint>
#include <optional>

namespace corvane {

namespace {

/// Whether the page was saved from another artwork since this one was opened from it.
bool isOthers(DocumentCache& cache, const PageBase& base, std::optional<std::uint64_t> artwork) {
    if (!artwork || (base.isStanding && base.isAsOpened)) {
        return false;
    }
    const std::optional<std::uint64_t> last = lastArtwork(cache);
    return last && *last != *artwork;
}

/// Whether nothing is drawn on the page: its streams hold no data. What cannot be read is no blank
/// page.
bool isBlank(DocumentCache& cache) {
    std::int64_t bytes = 0;
    const bool isRead = attempted([&] {
        for (const ObjectOwner& stream : contentStreams(cache)) {
            bytes += plainLength(cache, stream.get());
        }
    });
    return isRead && bytes == 0;
}

/// Whether the page stands as it was drawn anew from the artwork. Drawing it anew again, and not
/// patching that, makes the same page of the same artwork: also where its fonts are not those that
/// the artwork asks for.
bool isDrawnAnew(const UpdatePlan& plan) {
    return plan.base && plan.base->isStanding && !plan.base->isAsOpened;
}

/// Notes that the host insists on a save; raises `refusal` where it does not.
void overwrite(UpdatePlan& plan, Exception refusal, Warning warning) {
    if (!knownExtension()->overwrites) {
        failException(refusal);
    }
    plan.overwritten = warning;
}

} // namespace

void planBase(DocumentCache& cache, UpdatePlan& plan) {
    const auto extension = knownExtension();
    if (!extension) {
        return;
    }
    if (extension->artworkDigest == nullptr) {
        if (extension->guardsPage && !extension->overwrites && !isBlank(cache)) {
            failException(Exception::pageChanged);
        }
        return;
    }
    const std::uint64_t opened = *extension->artworkDigest;
    if (extension->artworkName != nullptr) {
        plan.artwork = *extension->artworkName;
    }
    // Content that cannot be read any more is another one too.
    attempted([&] { plan.base = baseOf(cache, opened); });
    if (!plan.base) {
        overwrite(plan, Exception::pageChanged,
                  isBlank(cache) ? Warning::none : Warning::pageReplaced);
    } else if (isOthers(cache, *plan.base, plan.artwork)) {
        overwrite(plan, Exception::otherArtwork, Warning::otherUndone);
    }
    if (extension->overwrites && isDrawnAnew(plan)) {
        plan.base.reset();
    }
    plan.origin = plan.base ? PageOrigin{.digest = opened, .version = plan.base->version}
                            : PageOrigin{.digest = opened};
}

} // namespace corvane
