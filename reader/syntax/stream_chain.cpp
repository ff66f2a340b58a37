#include "reader/syntax/stream_chain.h"

#include "filters/range.h"
#include "reader/syntax/meter.h"
#include "reader/syntax/stream_filters.h"

namespace corvane {

std::int64_t streamLength(const Object& stream) {
    const std::span<Object> parts = elementsObject(stream);
    return std::int64_t{integerObject(parts[2])} - integerObject(parts[1]);
}

Chain rawStream(DocumentCache& cache, const Object& stream) {
    const std::span<Object> parts = elementsObject(stream);
    Chain chain(cache.fileChain.top());
    chain.link(setupRange(integerObject(parts[1]), integerObject(parts[2])));
    chain.link(setupMeter(cache.work));
    return chain;
}

StreamChain::StreamChain(DocumentCache& cache, const Object& stream)
    : chain_(rawStream(cache, stream)) {
    linkFilters(cache, chain_, stream);
}

} // namespace corvane
