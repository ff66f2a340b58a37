#include "reader/syntax/stream/stream_chain.h"

#include "filters/range.h"
#include "reader/crypt/decrypt_object.h"
#include "reader/syntax/stream/meter.h"
#include "reader/syntax/stream/stream_filters.h"

#include <array>
#include <cstddef>

namespace corvane {

std::int64_t streamLength(const Object& stream) {
    const std::span<Object> parts = elementsObject(stream);
    return std::int64_t{integerObject(parts[2])} - integerObject(parts[1]);
}

std::int32_t streamEnd(const Object& stream) {
    return integerObject(elementsObject(stream)[2]);
}

Chain rawStream(DocumentCache& cache, const Object& stream) {
    const std::span<Object> parts = elementsObject(stream);
    Chain chain(cache.fileChain.top());
    chain.link(setupRange(integerObject(parts[1]), integerObject(parts[2])));
    chain.link(setupMeter(cache.work));
    return chain;
}

Chain plainStream(DocumentCache& cache, const Object& stream) {
    Chain chain = rawStream(cache, stream);
    linkDecryption(cache, chain, stream);
    return chain;
}

std::int64_t plainLength(DocumentCache& cache, const Object& stream) {
    if (!encryptedStream(stream)) {
        return streamLength(stream);
    }
    const Chain chain = plainStream(cache, stream);
    std::array<std::byte, 1 << 14> block;
    std::int64_t length = 0;
    while (const std::size_t count = readFilter(*chain.top(), block)) {
        length += static_cast<std::int64_t>(count);
    }
    return length;
}

StreamChain::StreamChain(DocumentCache& cache, const Object& stream)
    : chain_(plainStream(cache, stream)) {
    linkFilters(cache, chain_, stream);
}

} // namespace corvane
