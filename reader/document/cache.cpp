// Opening and closing a document.
#include "reader/document/cache.h"

#include "filters/buffer.h"
#include "filters/stream.h"
#include "output/xref.h"
#include "reader/content/interpreter.h"
#include "reader/crypt/encryption.h"
#include "reader/crypt/open_encryption.h"
#include "reader/document/deferred_entries.h"
#include "reader/document/locate.h"
#include "reader/document/repair.h"
#include "reader/document/unfinished.h"
#include "reader/font/cmap/predefined_cmaps.h"
#include "reader/page/page_tree.h"
#include "reader/syntax/keywords.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <set>

namespace corvane {

namespace {

/// Opens the file's chain and learns its length.
void openFileChain(DocumentCache& cache) {
    cache.fileChain.link(setupStream(cache.volume, cache.fileName, "read"));
    const auto& stream = static_cast<const StreamFilter&>(*cache.fileChain.top());
    cache.wholeLength = lengthFile(stream.file);
    cache.fileLength = cache.wholeLength;
    cache.fileChain.link(setupBuffer());
    cache.input = cache.fileChain.top();
}

/// Reads the sections from the newest to the oldest.
void readSections(DocumentCache& cache) {
    std::set<std::int32_t> seen;
    std::int32_t offset = locateSection(cache, cache.fileLength);
    hoistXRef(offset);
    while (offset != 0) {
        if (!seen.insert(offset).second) {
            failException(Exception::structure);
        }
        const SectionFacts facts = xrefCache(cache, offset);
        cache.continuesStream =
            cache.sectionOffsets.empty() ? facts.isStream : cache.continuesStream;
        cache.sectionOffsets.push_back(offset);
        offset = facts.previous;
    }
    if (typeObject(cache.trailer.get()) != ObjectType::dictionary) {
        failException(Exception::structure);
    }
}

/// Reads the cross-reference and walks the page tree.
Exception tryReferences(DocumentCache& cache, std::int32_t lastPage) {
    return guarded([&] {
        readSections(cache);
        openEncryption(cache);
        if (rules().repairsReferences) {
            walkPages(cache, lastPage);
            if (cache.pages.empty()) {
                failException(Exception::structure); // searching the file may find some
            }
        }
    });
}

void forgetReferences(DocumentCache& cache) {
    cache.trailer = ObjectOwner();
    cache.encryption.reset();
    cache.pages.clear();
    cache.pageWalk.reset();
    cache.pagesWalked = false;
    cache.deferred.reset();
    cache.references = openReference();
    cache.objectStreams.clear();
    cache.freed.clear();
    cache.freedHere.clear();
    cache.sectionOffsets.clear();
    cache.continuesStream = false;
    cache.mends.forgetObjects();
}

/// Reads the cross-reference and walks the page tree. Where that fails, and the profile allows it,
/// once more without an update that was cut short, and then with what a search of the file finds.
void readReferences(DocumentCache& cache, std::int32_t lastPage) {
    Exception code = tryReferences(cache, lastPage);
    if (isFileFault(code) && rules().marksUpdates && passUnfinished(cache, true)) {
        resetException();
        forgetReferences(cache);
        code = tryReferences(cache, lastPage);
    }
    if (code == Exception::none) {
        return;
    }
    if (!rules().repairsReferences || !isFileFault(code)) {
        againException();
    }
    resetException();
    forgetReferences(cache);
    repairCache(cache);
    walkPages(cache, lastPage);
    if (cache.pages.empty() && cache.mends.has(Mend::trailer)) {
        failException(Exception::structure);
    }
}

/// The interpreter, in the host's layer for imported art.
void openInterpreter(DocumentCache& cache) {
    cache.interpreter = std::make_unique<Interpreter>(cache);
    openState(*cache.interpreter);
    cache.art = cache.interpreter->containers.layer();
}

} // namespace

DocumentCache::DocumentCache() = default;
DocumentCache::~DocumentCache() = default;

std::unique_ptr<DocumentCache> openCache(std::int16_t volume, std::string_view fileName,
                                         std::int32_t lastPage) {
    auto cache = std::make_unique<DocumentCache>();
    cache->volume = volume;
    cache->fileName = fileName;
    openInterpreter(*cache);
    cache->references = openReference();
    openFileChain(*cache);
    locateHeader(*cache);
    if (rules().marksUpdates) {
        passUnfinished(*cache, false);
    }
    readReferences(*cache, lastPage);
    cache->isOpened = true;
    return cache;
}

void closeCache(std::unique_ptr<DocumentCache> cache) {
    Chain file = std::move(cache->fileChain);
    cache.reset();
    file.unlink();
}

} // namespace corvane
