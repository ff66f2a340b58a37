#include "reader/file_scope.h"

#include "runtime/exception.h"

namespace corvane {

FileScope::FileScope(DocumentCache& cache, std::int32_t offset)
    : cache_(cache), formerInput_(cache.input), formerPosition_(markFilter(*cache.fileChain.top())),
      chain_(cache.fileChain.top()) {
    if (offset < 0 || offset >= cache.fileLength - cache.headerOffset) {
        failException(Exception::structure);
    }
    seekFilter(*cache.fileChain.top(), offset + cache.headerOffset);
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
    cache_.input = formerInput_;
    chain_.abandon();
    seekFilter(*cache_.fileChain.top(), formerPosition_);
}

} // namespace corvane
