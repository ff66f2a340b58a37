#include "entry/document_facts.h"

#include "reader/document/signatures.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/extension.h"

#include <algorithm>

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
    for (std::int32_t page = 1; page <= count; ++page) {
        if (page % pagesPerCheck == 0 && callHost(slot::checkUserAbort)) {
            failException(Exception::cancelled);
        }
        extension->pageFacts(extension->context, pageFactsCache(cache, page));
    }
}

} // namespace corvane
