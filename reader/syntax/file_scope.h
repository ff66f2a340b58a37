// Reading at another place of the file for a while.
#pragma once

#include "filters/token.h"
#include "reader/document/cache.h"

namespace corvane {

/// Seeks the file to `offset`, counted from the header, and links a token filter there, which is
/// the cache's input until the scope ends. Then the former input is back, and the file stands where
/// it stood. An offset outside the file raises `structure`.
class FileScope {
public:
    FileScope(DocumentCache& cache, std::int32_t offset);
    ~FileScope();
    FileScope(const FileScope&) = delete;
    FileScope& operator=(const FileScope&) = delete;

    TokenFilter& tokens() { return *tokens_; }
    /// Goes back to the former place; what fails is raised here rather than dropped.
    void leave();

private:
    DocumentCache& cache_;
    Filter* formerInput_;
    std::int32_t formerPosition_;
    std::int32_t start_ = 0;
    Chain chain_;
    TokenFilter* tokens_ = nullptr;
    bool left_ = false;
};

} // namespace corvane
