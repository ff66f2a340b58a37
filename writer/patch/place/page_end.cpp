#include "writer/patch/place/page_end.h"

#include "host/matrix.h"

#include <algorithm>
#include <span>

namespace corvane {

namespace {

/// Where what comes next begins: an operator, or the path in which it stands.
std::uint32_t startOfNext(const ContentTrace& trace, TraceIndex event) {
    const std::span<const TraceEvent> events = trace.events();
    TraceIndex last = event;
    while (last < events.size() && events[last].behind.isInPath) {
        ++last;
    }
    if (last == events.size()) {
        // A path that never ends, or nothing at all.
        return last == event ? trace.streamStarts().back() : events[event].start;
    }
    return std::min(events[event].start, events[last].start);
}

/// Whether the outermost state is another at the end than at the beginning.
bool isLeftChanged(const ContentTrace& trace) {
    const Surroundings& end = trace.atEndOfPage();
    return end.clip != 0 || end.settings != trace.atStart().settings ||
           !inverse(trace.matrix(end.matrix)) || (trace.atEnd().isInText && trace.openSaves() == 0);
}

} // namespace

std::uint32_t placeBefore(const ContentTrace& trace, TraceIndex event) {
    const std::uint32_t place = event == 0 ? 0 : trace.events()[event - 1].end;
    const std::uint32_t next = event < trace.events().size() ? startOfNext(trace, event)
                               : trace.endsOpen()            ? place
                                                             : trace.streamStarts().back();
    const auto boundary = std::ranges::lower_bound(trace.streamStarts(), place);
    const bool isFree = boundary != trace.streamStarts().end() && *boundary <= next;
    return isFree ? *boundary : place;
}

PageEnd closePage(const ContentTrace& trace, bool inherits) {
    PageEnd end;
    const Surroundings& last = trace.atEnd();
    end.behind += last.isInPath ? "n\n" : "";
    end.behind += last.isInText ? "ET\n" : "";
    for (TraceIndex mark = last.mark; mark != 0; mark = trace.mark(mark).outer) {
        end.behind += "EMC\n";
    }
    for (std::size_t i = 0; i < trace.openSaves(); ++i) {
        end.behind += "Q\n";
    }
    end.inForce = trace.atEndOfPage();
    if (isLeftChanged(trace) || (inherits && trace.atEndOfPage().setter != 0)) {
        end.before = "q\n";
        end.behind += "Q\n";
        end.inForce = trace.atStart();
        for (const TraceEvent& event : trace.events()) {
            if (event.role == OperatorRole::restore && event.isFailed) {
                end.patches.push_back({{event.start, event.end}, ""});
            }
        }
    }
    return end;
}

} // namespace corvane
