#include "reader/syntax/stream_chain.h"

#include "filters/range.h"
#include "reader/syntax/stream_filters.h"

namespace corvane {

StreamChain::StreamChain(DocumentCache& cache, const Object& stream)
    : chain_(cache.fileChain.top()) {
    const std::span<Object> parts = elementsObject(stream);
    chain_.link(setupRange(integerObject(parts[1]), integerObject(parts[2])));
    linkFilters(cache, chain_, stream);
}

} // namespace corvane
