// The bytes of a path in the content, and what stands between them.
#pragma once

#include "reader/content/content_trace.h"

#include <cstdint>
#include <vector>

namespace corvane {

/// Bytes of the content, its streams taken as one sequence.
struct ByteRange {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
};

/// The first event that stands within the path, or the path itself.
TraceIndex firstWithin(const ContentTrace& trace, TraceIndex path);

/// Whether nothing but the words that make it a clip stands within the path.
bool isPlainPath(const ContentTrace& trace, TraceIndex path);

/// The path's own bytes up to the operator that ends it, without operators of another kind in
/// between. The words that make it a clip are among them where asked.
std::vector<ByteRange> constructionBytes(const ContentTrace& trace, TraceIndex path,
                                         bool withClipWords);

} // namespace corvane
