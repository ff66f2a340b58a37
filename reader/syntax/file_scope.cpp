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
    : cache_(cache), formerInput_(cache.input), chain_(cache.fileChain.top()) {
    if (offset < 0 || offset >= cache.fileLength - cache.headerOffset) {
        failException(Exception::structure);
    }
    if (cache.work.readBytes > 4 * std::int64_t{cache.fileLength} + budget::rereadBytes) {
        failException(Exception::limit);
    }
    if (++cache.work.places % placesPerCheck == 0 && callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
    std::unique_ptr<RangeFilter> bytes =
        std::make_unique<RangeFilter>(offset + cache.headerOffset, cache.fileLength);
    bytes_ = bytes.get();
    chain_.link(std::move(bytes));
    std::unique_ptr<TokenFilter> tokens = setupToken();
    tokens_ = tokens.get();
    chain_.link(std::move(tokens));
    cache.input = tokens_;
}

FileScope::~FileScope() {
    const auto ahead = static_cast<std::int32_t>(tokens_->readAhead());
    cache_.work.readBytes += bytes_->position - bytes_->start - ahead;
    cache_.input = formerInput_;
}

} // namespace corvane
