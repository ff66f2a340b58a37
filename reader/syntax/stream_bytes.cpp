#include "reader/syntax/stream_bytes.h"

#include "reader/syntax/stream_chain.h"

namespace corvane {

std::vector<std::uint8_t> streamBytes(DocumentCache& cache, const Object& stream,
                                      std::size_t limit) {
    StreamChain chain(cache, stream);
    std::vector<std::uint8_t> bytes(limit);
    bytes.resize(readFilter(chain.top(), std::as_writable_bytes(std::span(bytes))));
    return bytes;
}

} // namespace corvane
