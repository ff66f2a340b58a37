#include "reader/syntax/file_scope.h"

#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"

namespace corvane {

namespace {

/// Places read between two questions whether the person wants to stop.
constexpr std::int64_t placesPerCheck = 64;

} // namespace

FileScope::FileScope(DocumentCache& cache, std::int32_t offset)
    : cache_(cache), formerInput_(cache.input), formerPosition_(markFilter(*cache.fileChain.top())),
      chain_(cache.fileChain.top()) {
    if (offset < 0 || offset >= cache.fileLength - cache.headerOffset) {
        failException(Exception::structure);
    }
    if (cache.work.readBytes > 4 * std::int64_t{cache.fileLength} + budget::rereadBytes) {
        failException(Exception::limit);
    }
    if (++cache.work.places % placesPerCheck == 0 && callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
    start_ = offset + cache.headerOffset;
    seekFilter(*cache.fileChain.top(), start_);
    std::unique_ptr<TokenFilter> tokens = setupToken();
    tokens_ = tokens.get();
    chain_.link(std::move(tokens));
    cache.input = tokens_;
}

FileScope::~FileScope() {
    if (!left_) {
        // An exception is on its way: it stays the pending one, whatever else fails now.
        const Exception pending = valueException();
        guarded([this] { leave(); });
        detail::storeException(pending);
    }
}

void FileScope::leave() {
    left_ = true;
    cache_.work.readBytes += tokens_->mark() - start_;
    cache_.input = formerInput_;
    chain_.abandon();
    seekFilter(*cache_.fileChain.top(), formerPosition_);
}

} // namespace corvane
