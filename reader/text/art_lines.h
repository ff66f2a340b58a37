// Lines of text that is painted, as art in front of what is there.
#pragma once

#include "reader/content/interpreter.h"
#include "reader/text/line_target.h"

namespace corvane {

class ArtLines final : public LineTarget {
public:
    explicit ArtLines(Interpreter& interpreter) : interpreter_(interpreter) {}

    OpenLine& open() override { return interpreter_.level.text.line; }
    bool goesOn() override;
    void beginLine(TextLine& line) override;
    void addRun(TextRun& run, ShownPart part) override;
    void tellReach(const TextLine& line) override;
    bool takesBefore() override;
    void addRunBefore(const TextLine& line, TextRun& run, ShownPart part, Fixed gap) override;

private:
    bool isSamePlace();
    void note(TextRun& run);
    void keep(const TextRun& run, ShownPart part);
    LineArt& art() { return interpreter_.level.text.art; }

    Interpreter& interpreter_;
};

} // namespace corvane
