#include "writer/patch/path_bytes.h"

#include <algorithm>

namespace corvane {

namespace {

bool isClipWord(const TraceEvent& event) {
    return event.role == OperatorRole::clipWord && !event.isFailed;
}

} // namespace

TraceIndex firstWithin(const ContentTrace& trace, TraceIndex path) {
    TraceIndex first = path;
    while (first > 0 && trace.events()[first - 1].start >= trace.events()[path].start) {
        --first;
    }
    return first;
}

bool isPlainPath(const ContentTrace& trace, TraceIndex path) {
    const auto within =
        trace.events().subspan(firstWithin(trace, path), path - firstWithin(trace, path));
    return std::ranges::all_of(within, isClipWord);
}

std::vector<ByteRange> constructionBytes(const ContentTrace& trace, TraceIndex path,
                                         bool withClipWords) {
    std::vector<ByteRange> ranges;
    std::uint32_t from = trace.events()[path].start;
    const auto addUpTo = [&](std::uint32_t end) {
        if (from < end) {
            ranges.push_back({from, end});
        }
    };
    for (TraceIndex i = firstWithin(trace, path); i < path; ++i) {
        const TraceEvent& event = trace.events()[i];
        if (!(withClipWords && isClipWord(event))) {
            addUpTo(event.start);
            from = std::max(from, event.end);
        }
    }
    addUpTo(trace.events()[path].word);
    return ranges;
}

} // namespace corvane
