// Where the lines go that glyphs become.
#pragma once

#include "host/text.h"
#include "reader/text/open_line.h"
#include "reader/text/text_object.h"

namespace corvane {

class LineTarget {
public:
    virtual ~LineTarget() = default;

    virtual OpenLine& open() = 0;
    /// Whether what is shown now may go on with the open line, if its place is there.
    virtual bool goesOn() = 0;
    /// Begins a line; it gets the matrix that it then has.
    virtual void beginLine(TextLine& line) = 0;
    /// Adds a run to the line, and says where its art is.
    virtual void addRun(TextRun& run, ShownPart part) = 0;
    /// The line, whose runs so far are there, is so long now (`TextLine::reach`).
    virtual void tellReach(const TextLine& line) = 0;
    /// Whether what is shown now may come before the first run of the open line.
    virtual bool takesBefore() = 0;
    /// Adds a run there, at which the line then begins; the others go on by `gap`, in ems of the
    /// one that was the first.
    virtual void addRunBefore(const TextLine& line, TextRun& run, ShownPart part, Fixed gap) = 0;
};

} // namespace corvane
