#include "reader/syntax/stream/stream_bytes.h"

#include "reader/syntax/stream/stream_chain.h"

#include <algorithm>

namespace corvane {

/// Room grows with what there is: the limit may be far more.
std::vector<std::uint8_t> streamBytes(DocumentCache& cache, const Object& stream,
                                      std::size_t limit) {
    constexpr std::size_t firstRoom = 1 << 14;
    StreamChain chain(cache, stream);
    std::vector<std::uint8_t> bytes;
    while (bytes.size() < limit) {
        const std::size_t count = bytes.size();
        bytes.resize(std::min(limit, std::max(firstRoom, 2 * count)));
        const std::size_t more =
            readFilter(chain.top(), std::as_writable_bytes(std::span(bytes).subspan(count)));
        bytes.resize(count + more);
        if (more == 0) {
            break;
        }
    }
    return bytes;
}

} // namespace corvane
