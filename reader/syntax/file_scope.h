// Reading at another place for a while: of the file, or of an object stream.
#pragma once

#include "filters/range.h"
#include "filters/token/token.h"
#include "reader/document/cache.h"

namespace corvane {

/// A stretch of PDF syntax.
struct SyntaxPlace {
    std::int32_t stream = 0;      ///< number of the object stream that holds it; 0: the file
    std::int32_t start = 0;       ///< counted from the header, or from the stream's first byte
    std::int32_t end = INT32_MAX; ///< or where the bytes end, if that is earlier
};

/// Where the object `number` is to be read that the cross-reference has at `place`. Raises
/// `structure` where an object stream does not hold it.
SyntaxPlace placeOfObject(DocumentCache& cache, std::int32_t number, ObjectPlace place);

/// Links a token filter on the bytes at a place. It is the cache's input until the scope ends; then
/// the former input is back. A place outside the file, or the object stream, raises `structure`.
class FileScope {
public:
    FileScope(DocumentCache& cache, std::int32_t offset)
        : FileScope(cache, SyntaxPlace{.start = offset}) {}
    FileScope(DocumentCache& cache, const SyntaxPlace& place);
    ~FileScope();
    FileScope(const FileScope&) = delete;
    FileScope& operator=(const FileScope&) = delete;

    TokenFilter& tokens() { return *tokens_; }

private:
    DocumentCache& cache_;
    Filter* formerInput_;
    HeldObjectStream held_; ///< keeps the bytes, if it is an object stream that is read
    Chain chain_;
    const RangeFilter* bytes_ = nullptr;
    TokenFilter* tokens_ = nullptr;
};

} // namespace corvane
