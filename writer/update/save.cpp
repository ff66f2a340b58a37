// A save from beginning to end.
#include "filters/filter.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/document/update_mark.h"
#include "reader/page/page_base.h"
#include "reader/syntax/file_bytes.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
#include "writer/update/update.h"
#include "writer/update/update_file.h"
#include "writer/update/update_filter.h"

#include <algorithm>
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

/// Settles what the artwork was opened from, if the host knows that. A page that is another one
/// now raises `pageChanged`, one that was saved from another artwork `otherArtwork`, unless the
/// host says that this does not matter.
void planBase(DocumentCache& cache, UpdatePlan& plan) {
    const auto extension = knownExtension();
    if (!extension || extension->artworkDigest == nullptr) {
        return;
    }
    const std::uint64_t opened = *extension->artworkDigest;
    if (extension->artworkName != nullptr) {
        plan.artwork = *extension->artworkName;
    }
    // Content that cannot be read any more is another one too.
    attempted([&] { plan.base = baseOf(cache, opened); });
    if (!extension->overwrites && !plan.base) {
        failException(Exception::pageChanged);
    }
    if (!extension->overwrites && isOthers(cache, *plan.base, plan.artwork)) {
        failException(Exception::otherArtwork);
    }
    plan.origin = plan.base ? PageOrigin{.digest = opened, .version = plan.base->version}
                            : PageOrigin{.digest = opened};
}

/// Looks at everything that can refuse the save before a byte is written.
UpdatePlan planUpdate(DocumentCache& cache) {
    // An update rests on the sections before it. A cross-reference that only a search could make up
    // for, or that is kept in a stream, is nothing to add a section to.
    if (rules().guardsFile && cache.repaired) {
        failException(Exception::repairedFile);
    }
    UpdatePlan plan;
    if (rules().recordsOrigin) {
        planBase(cache, plan);
    }
    const PageBase* const base = plan.base ? &*plan.base : nullptr;
    plan.geometry = pageGeometry(cache, base);
    plan.facts = factsOf(cache, plan.geometry);
    plan.page = carriedPage(cache, plan.geometry, base);
    plan.trailer = carriedTrailer(cache);
    reserveNumbers(plan.trailer);
    plan.numbers.content = nextIdentity();
    plan.numbers.length = nextIdentity();
    return plan;
}

/// Sets the update off from the file before it.
void writeMark(DocumentCache& cache) {
    const std::string last = bytesOfFile(cache, cache.fileLength - 1, 1);
    if (last != "\n" && last != "\r") {
        stringOutput(*cache.output, "\r");
    }
    stringOutput(*cache.output, updateMark(cache.fileLength));
}

/// Writes the update but for its end; the offset of its section.
std::int32_t writeUpdate(DocumentCache& cache, const UpdatePlan& plan, SavedFacts& facts) {
    if (rules().marksUpdates) {
        writeMark(cache);
    }
    facts.page = plan.facts;
    facts.places = static_cast<std::int32_t>(
        std::ranges::count(cache.pages, facts.page.objectNumber, &PageEntry::number));
    facts.formerLength = cache.fileLength;
    facts.contentLength = pageWrite(cache, plan);
    forallXRef([&](const XRefEntry&) { ++facts.objects; });
    return updateWrite(cache, plan.trailer);
}

void tellSaved(const SavedFacts& facts) {
    const auto extension = knownExtension();
    if (extension && extension->saved != nullptr) {
        extension->saved(extension->context, facts);
    }
}

} // namespace

void writeCache(DocumentCache& cache) {
    const UpdatePlan plan = planUpdate(cache);
    SavedFacts facts;
    UpdateFile file(cache);
    const Exception code = guarded([&] {
        file.begin();
        const std::int32_t section = writeUpdate(cache, plan, facts);
        file.finish(updateEnd(section));
    });
    if (code != Exception::none) {
        file.takeBack();
    }
    file.close();
    raiseException(code);
    facts.length = file.length();
    tellSaved(facts);
}

void tryCache(DocumentCache& cache) {
    const UpdatePlan plan = planUpdate(cache);
    SavedFacts facts;
    Chain output;
    output.link(setupUpdate(cache.fileLength, cache.headerOffset));
    auto& update = static_cast<UpdateFilter&>(*output.top());
    cache.output = &update;
    const Exception code = guarded([&] {
        const std::int32_t section = writeUpdate(cache, plan, facts);
        stringOutput(update, updateEnd(section));
    });
    cache.output = nullptr;
    raiseException(code);
    facts.length = update.start + update.count;
    tellSaved(facts);
}

} // namespace corvane
