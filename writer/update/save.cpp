// A save from beginning to end.
#include "filters/filter.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/document/update_mark.h"
#include "reader/page/page_base.h"
#include "reader/page/page_record.h"
#include "reader/syntax/file_bytes.h"
#include "runtime/digest.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
#include "writer/update/update.h"
#include "writer/update/update_file.h"
#include "writer/update/update_filter.h"

#include <algorithm>
#include <optional>
#include <span>

namespace corvane {

namespace {

/// The identity of a page that is drawn anew over another: artwork of that one is refused then.
PageOrigin anew(std::uint64_t former) {
    Digest digest;
    digest.feed(std::as_bytes(std::span(&former, 1)));
    return {.digest = digest.value()};
}

/// The identity of the page that the artwork was opened from, or a new one. A page that is another
/// one now raises `pageChanged`, unless the host says that this does not matter.
PageOrigin originOf(DocumentCache& cache) {
    const auto extension = knownExtension();
    const std::uint64_t* const opened = extension ? extension->artworkDigest : nullptr;
    if (opened != nullptr) {
        if (extension->overwrites) {
            return {.digest = *opened};
        }
        const std::optional<PageBase> base = baseOf(cache, *opened);
        if (!base) {
            failException(Exception::pageChanged);
        }
        return {.digest = base->digest, .version = base->version};
    }
    std::uint64_t digest = 0;
    if (!attempted([&] { digest = digestPage(cache, contentStreams(cache)); })) {
        // Content that cannot be read is as good a reason as any to draw a page anew.
        digest = digestPage(cache, {});
    }
    return anew(digest);
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
        plan.origin = originOf(cache);
    }
    plan.geometry = pageGeometry(cache);
    plan.facts = factsOf(cache, plan.geometry);
    plan.page = carriedPage(cache, plan.geometry);
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
