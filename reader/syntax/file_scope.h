// Reading at another place of the file for a while.
#pragma once

#include "filters/range.h"
#include "filters/token.h"
#include "reader/document/cache.h"

namespace corvane {

/// Links a token filter on the bytes from `offset` on, counted from the header. It is the cache's
/// input until the scope ends; then the former input is back. An offset outside the file raises
/// `structure`.
class FileScope {
public:
    FileScope(DocumentCache& cache, std::int32_t offset);
    ~FileScope();
    FileScope(const FileScope&) = delete;
    FileScope& operator=(const FileScope&) = delete;

    TokenFilter& tokens() { return *tokens_; }

private:
    DocumentCache& cache_;
    Filter* formerInput_;
    Chain chain_;
    const RangeFilter* bytes_ = nullptr;
    TokenFilter* tokens_ = nullptr;
};

} // namespace corvane
