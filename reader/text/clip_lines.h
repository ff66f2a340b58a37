// Lines of text that clips, kept until its text object ends.
#pragma once

#include "reader/text/clip_text.h"
#include "reader/text/line_target.h"

namespace corvane {

class ClipLines final : public LineTarget {
public:
    explicit ClipLines(ClipText& text) : text_(text) {}

    OpenLine& open() override { return text_.open; }
    bool goesOn() override { return true; }
    void beginLine(TextLine& line) override;
    /// Runs that look alike become one: nothing tells them apart once they are read from SVG.
    void addRun(TextRun& run, ShownPart part) override;
    /// What clips is not put into the order of reading: nobody would be helped.
    void tellReach(const TextLine&) override {}
    bool takesBefore() override { return false; }
    void addRunBefore(const TextLine&, TextRun&, ShownPart, Fixed) override {}

private:
    void charge(std::size_t bytes);

    ClipText& text_;
};

} // namespace corvane
