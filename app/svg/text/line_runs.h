// The runs of a line as elements have them: in the order of reading where that is another one than
// theirs in artwork, and joined where a page shows words in pieces.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/text/joined_runs.h"
#include "app/svg/text/line_order.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

/// Runs of a text object that make one line.
struct RunRange {
    std::int32_t first = 0;
    std::int32_t end = 0;
};

class LineRuns {
public:
    /// A run as it is written, and its number among those of the line. Valid as long as the line.
    struct Written {
        TextRun run;
        std::uint32_t number = 0;
    };

    LineRuns(const Document&, Art text, RunRange);

    /// Lines of a page stand as they are seen; one with letters from the right becomes one that is
    /// read. Its place and order change with it.
    void putInOrder(TextLine&);

    /// Joins what looks the same, but where runs stand in another order than they are written.
    void join();

    std::size_t count() const;
    Written at(std::size_t place) const;

private:
    const Document& document_;
    Art text_;
    RunRange runs_;
    std::vector<OrderedRun> ordered_;    ///< as they are read, where that is another order
    std::vector<std::uint32_t> numbers_; ///< of the runs; empty: as they stand
    std::vector<JoinedRun> joined_;      ///< all of them; empty: none is joined with another
};

/// Whether the elements of these runs need `xml:space`: XML drops blanks at the ends and makes one
/// of several, and some programs drop those between two elements.
bool needsBlanksKept(const LineRuns&);

} // namespace corvane
