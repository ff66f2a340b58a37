#include "reader/syntax/stream_bytes.h"

#include "reader/syntax/stream_chain.h"

namespace corvane {

std::vector<std::uint8_t> streamBytes(DocumentCache& cache, const Object& stream,
                                      std::size_t limit) {
    const std::int32_t position = markFilter(*cache.fileChain.top());
    std::vector<std::uint8_t> bytes(limit);
    {
        StreamChain chain(cache, stream);
        bytes.resize(readFilter(chain.top(), std::as_writable_bytes(std::span(bytes))));
    }
    seekFilter(*cache.fileChain.top(), position);
    return bytes;
}

} // namespace corvane
