// Chains of the trace: what is around two places of the content.
#pragma once

#include "reader/content/content_trace.h"

#include <cstdint>

namespace corvane {

/// The innermost marked content that is around both.
TraceIndex commonMark(const ContentTrace& trace, TraceIndex a, TraceIndex b);
/// The innermost clip that is around both, each of which may be it.
TraceIndex commonClip(const ContentTrace& trace, TraceIndex a, TraceIndex b);
/// How many clips without art are around a place, of which the clip is the innermost.
std::uint32_t hiddenClips(const ContentTrace& trace, TraceIndex clip);

} // namespace corvane
