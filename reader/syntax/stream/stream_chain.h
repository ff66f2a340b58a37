// The filters that deliver a stream's bytes.
#pragma once

#include "filters/filter.h"
#include "reader/document/cache.h"

#include <cstdint>

namespace corvane {

/// Bytes of the stream's data as they stand in the file.
std::int64_t streamLength(const Object& stream);

/// The place in the file behind its data.
std::int32_t streamEnd(const Object& stream);

/// A range over the stream's data as they stand in the file, with a meter
/// (`reader/syntax/stream/meter.h`) on it.
Chain rawStream(DocumentCache& cache, const Object& stream);

/// The same, deciphered.
Chain plainStream(DocumentCache& cache, const Object& stream);
/// Bytes that it delivers.
std::int64_t plainLength(DocumentCache& cache, const Object& stream);

/// The same, and the decoding filters that the stream names, each with a meter on it.
/// Abandoned when the scope ends: nothing is written by them. Other streams and objects of the file
/// may be read in between.
class StreamChain {
public:
    StreamChain(DocumentCache& cache, const Object& stream);

    Filter& top() { return *chain_.top(); }
    void link(FilterOwner filter) { chain_.link(std::move(filter)); }

private:
    Chain chain_;
};

} // namespace corvane
