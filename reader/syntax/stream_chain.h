// The filters that deliver a stream's bytes.
#pragma once

#include "filters/filter.h"
#include "reader/document/cache.h"

namespace corvane {

/// A range over the stream's data in the file, and the decoding filters that the stream names on
/// it. Abandoned when the scope ends: nothing is written by them.
class StreamChain {
public:
    StreamChain(DocumentCache& cache, const Object& stream);

    Filter& top() { return *chain_.top(); }
    void link(FilterOwner filter) { chain_.link(std::move(filter)); }

private:
    Chain chain_;
};

} // namespace corvane
