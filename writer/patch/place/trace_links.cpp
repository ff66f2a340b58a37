#include "writer/patch/place/trace_links.h"

namespace corvane {

namespace {

/// The innermost link of both chains. Links are numbered in the order in which they were added.
template <class Outer>
TraceIndex commonLink(TraceIndex a, TraceIndex b, Outer outer) {
    while (a != b) {
        TraceIndex& inner = a > b ? a : b;
        inner = outer(inner);
    }
    return a;
}

} // namespace

TraceIndex commonMark(const ContentTrace& trace, TraceIndex a, TraceIndex b) {
    return commonLink(a, b, [&](TraceIndex link) { return trace.mark(link).outer; });
}

TraceIndex commonClip(const ContentTrace& trace, TraceIndex a, TraceIndex b) {
    return commonLink(a, b, [&](TraceIndex link) { return trace.clip(link).outer; });
}

std::uint32_t hiddenClips(const ContentTrace& trace, TraceIndex clip) {
    std::uint32_t count = 0;
    for (; clip != 0; clip = trace.clip(clip).outer) {
        count += trace.clip(clip).art == Art::null ? 1 : 0;
    }
    return count;
}

} // namespace corvane
