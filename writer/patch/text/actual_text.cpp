#include "writer/patch/text/actual_text.h"

#include "runtime/budget.h"
#include "runtime/exception.h"
#include "writer/patch/place/paint_order.h"
#include "writer/patch/place/trace_links.h"
#include "writer/patch/text/byte_tokens.h"

#include <algorithm>

namespace corvane {

namespace {

class Reader {
public:
    Reader(const ContentTrace& trace, const Matching& matching, const PaintOrder& order)
        : trace_(trace), matching_(matching), order_(order),
          marks_(matching.objects.size(), atEnd) {
        for (const Insertion& insertion : order.insertions) {
            if (!insertion.point.isAtEnd) {
                marks_[insertion.object] = insertion.point.inForce.mark;
            }
        }
    }

    /// The innermost marked content that reads as it did, of all that is around the text.
    TraceIndex lastThatReadsOn(PaintedIndex source) const {
        const TraceIndex own = trace_.events()[trace_.painted()[source].event].behind.mark;
        const EditedIndex owner = matching_.owners[source];
        if (owner == noSource || matching_.objects[owner].difference.letters) {
            return 0;
        }
        return order_.stays[owner] ? own : commonMark(trace_, own, marks_[owner]);
    }

private:
    static constexpr TraceIndex atEnd = 0; ///< outside of all marked content

    const ContentTrace& trace_;
    const Matching& matching_;
    const PaintOrder& order_;
    std::vector<TraceIndex> marks_; ///< by object: around the place where it is written apart
};

} // namespace

namespace {

/// The bytes with another text in the place of a piece of them.
std::string replaced(std::string_view bytes, std::string_view piece, std::string_view text) {
    const auto start = static_cast<std::size_t>(piece.data() - bytes.data());
    return std::string(bytes.substr(0, start)) + std::string(text) +
           std::string(bytes.substr(start + piece.size()));
}

} // namespace

std::optional<std::string> withoutActualText(std::string_view bytes, PropertyLists& lists) {
    const std::vector<std::string_view> tokens = tokensOf(bytes);
    // The operands in front of the keyword count, whatever stands before them.
    if (tokens.size() >= 3 && tokens[tokens.size() - 2].starts_with('/')) {
        const std::string_view name = tokens[tokens.size() - 2];
        const auto copy = lists.withoutActualText(name.substr(1));
        return copy ? std::optional(replaced(bytes, name, "/" + *copy)) : std::nullopt;
    }
    int depth = 0;
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        depth += tokens[i] == "<<" ? 2 : tokens[i] == ">" ? -1 : 0;
        const std::string_view value = tokens[i + 1];
        if (depth == 2 && isName(tokens[i], "ActualText") && value != "<<" &&
            (value.front() == '(' || value.front() == '<')) {
            const auto end = static_cast<std::size_t>(value.data() - tokens[i].data());
            return replaced(bytes, {tokens[i].data(), end + value.size()}, "");
        }
    }
    return std::nullopt;
}

void patchActualText(PatchTools& tools, PropertyLists& lists, const Matching& matching,
                     const PaintOrder& order, std::vector<Patch>& patches) {
    const ContentTrace& trace = tools.trace;
    const Reader reader(trace, matching, order);
    std::vector<TraceIndex> changed;
    std::int64_t steps = 0;
    for (PaintedIndex source = 0; source < trace.painted().size(); ++source) {
        const PaintedArt& text = trace.painted()[source];
        if (text.setting == 0) {
            continue;
        }
        const TraceIndex last = reader.lastThatReadsOn(source);
        for (TraceIndex mark = trace.events()[text.event].behind.mark; mark != last;
             mark = trace.mark(mark).outer) {
            if (changed.empty() || changed.back() != mark) {
                changed.push_back(mark);
            }
            if (++steps > budget::searchedPlaces) {
                failException(Exception::limit);
            }
        }
    }
    std::ranges::sort(changed);
    changed.erase(std::unique(changed.begin(), changed.end()), changed.end());
    for (const TraceIndex mark : changed) {
        const TraceEvent& event = trace.events()[trace.mark(mark).event];
        std::string bytes;
        tools.bytes.append(bytes, {event.start, event.end});
        if (std::optional<std::string> rest = withoutActualText(bytes, lists)) {
            patches.push_back({{event.start, event.end}, std::move(*rest)});
        }
    }
}

} // namespace corvane
