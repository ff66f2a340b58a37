#include "entry/document_facts.h"

#include "dialogs/dialogs.h"
#include "entry/page_proxies.h"
#include "reader/document/signatures.h"
#include "reader/image/thumbnail.h"
#include "reader/page/page_labels.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
#include "writer/mend/mend_plan.h"

#include <algorithm>
#include <optional>
#include <string>

namespace corvane {

namespace {

/// Pages between two questions whether the person wants to stop.
constexpr std::int32_t pagesPerCheck = 256;

} // namespace

void tellDocument(DocumentCache& cache, CountObjects count) {
    const auto extension = knownExtension();
    if (!extension || extension->documentFacts == nullptr) {
        return;
    }
    // Of a file that was repaired, no section is known.
    const auto sections = static_cast<std::int32_t>(cache.sectionOffsets.size());
    const bool counts = count == CountObjects::yes;
    extension->documentFacts(extension->context,
                             {.pages = statedCount(cache),
                              .objects = counts ? countReference(*cache.references) : 0,
                              .updates = std::max(sections - 1, 0),
                              .length = cache.wholeLength,
                              .version = cache.version});
}

void tellSignatures(DocumentCache& cache) {
    const auto extension = knownExtension();
    if (!extension || extension->signatures == nullptr) {
        return;
    }
    const SignatureFacts facts = signaturesOf(cache);
    if (facts.count != 0 || facts.certified) {
        extension->signatures(extension->context, facts);
    }
}

void tellPages(DocumentCache& cache) {
    const auto extension = knownExtension();
    if (!extension || extension->pageFacts == nullptr) {
        return;
    }
    const std::int32_t count = countCache(cache);
    const bool lists = extension->pageListing != nullptr;
    std::optional<PageLabels> labels;
    if (lists) {
        labels.emplace(cache);
    }
    for (std::int32_t page = 1; page <= count; ++page) {
        if (page % pagesPerCheck == 0 && callHost(slot::checkUserAbort)) {
            failException(Exception::cancelled);
        }
        PageListing listing;
        listing.page = page;
        extension->pageFacts(extension->context, pageFactsCache(cache, page, [&] {
                                 listing.hasThumbnail = lists && namesThumbnail(cache);
                             }));
        if (lists) {
            const std::string label = labels->of(page);
            listing.label = label;
            extension->pageListing(extension->context, listing);
        }
    }
}

void tellThumbnail(DocumentCache& cache, std::int32_t page) {
    const auto extension = knownExtension();
    Thumbnail thumbnail;
    if (selectProxy(cache, page, thumbnail)) {
        extension->pageThumbnail(
            extension->context,
            {.width = thumbnail.width, .height = thumbnail.height, .pixels = thumbnail.pixels});
    }
}

void tellDamage(DocumentCache& cache) {
    const auto extension = knownExtension();
    if (!extension || extension->damage == nullptr || !rules().repairsReferences) {
        return;
    }
    DamageFacts facts;
    MendCounts mended{};
    const Exception code = guarded([&] {
        const MendPlan mend = planMend(cache, surveyObjects(cache));
        mended = mend.mended;
        facts.canBeMended = !mend.isNothing;
        refuseUnmendable(cache);
    });
    if (code != Exception::none && code != Exception::repairedFile && !isFileFault(code)) {
        againException();
    }
    resetException();
    facts.needsMending = cache.repaired && countCache(cache) > 0;
    std::string obstacle;
    if (code != Exception::none && (facts.needsMending || facts.canBeMended)) {
        obstacle = exceptionText(code);
        facts.obstacle = obstacle;
    }
    facts.canBeMended = facts.canBeMended && code == Exception::none;
    std::ranges::transform(
        cache.mends.counts(), mended, facts.found.begin(),
        [](std::int32_t noted, std::int32_t planned) { return std::max(noted, planned); });
    extension->damage(extension->context, facts);
}

} // namespace corvane
