#include "reader/syntax/file_bytes.h"

#include <algorithm>
#include <span>

namespace corvane {

std::string bytesOfFile(DocumentCache& cache, std::int64_t position, std::int64_t count) {
    Filter& file = *cache.fileChain.top();
    const std::int64_t length = cache.wholeLength;
    if (position < 0 || position >= length || count <= 0) {
        return {};
    }
    std::string bytes(static_cast<std::size_t>(std::min(count, length - position)), '\0');
    seekFilter(file, static_cast<std::int32_t>(position));
    bytes.resize(readFilter(file, std::as_writable_bytes(std::span(bytes))));
    return bytes;
}

} // namespace corvane
