#include "writer/text/decoration_works.h"

#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "writer/art/color_works.h"

#include <array>
#include <string_view>

namespace corvane {

namespace {

/// A line above the baseline, in the line's space.
struct Bar {
    double top = 0;
    double thickness = 0;
};

void barWorks(Walk& walk, const DecoratedPart& part, const Bar& bar, const RealMatrix& back) {
    const RealMatrix frame = multiply(part.frame, back);
    if (!isFinite(frame)) {
        failException(Exception::unpatchable);
    }
    const double bottom = bar.top - bar.thickness;
    const std::array corners{RealPoint{0, bar.top}, RealPoint{part.length, bar.top},
                             RealPoint{part.length, bottom}, RealPoint{0, bottom}};
    std::string_view word = "m\n";
    for (const RealPoint& corner : corners) {
        const RealPoint at = transform(frame, corner);
        walk.text.addReal(at.x + 0.0);
        walk.text.addReal(at.y + 0.0);
        walk.text.add(word);
        word = "l\n";
    }
    walk.text.add("h\n");
}

/// Those of a decoration at that depth.
std::vector<Bar> barsOf(const TextDecoration& decoration, const LetterLines& lines, double rise,
                        LineDepth depth) {
    const double size = realFromFixed(decoration.size);
    const auto barAt = [&](double top, double thickness) {
        const double own = realFromFixed(decoration.thickness);
        return Bar{rise + top * size, own > 0 ? own : thickness * size};
    };
    std::vector<Bar> bars;
    if (depth == LineDepth::behindLetters) {
        if (decoration.isUnder) {
            bars.push_back(barAt(lines.under, lines.underThickness));
        }
        if (decoration.isOver) {
            bars.push_back(barAt(lines.over, lines.underThickness));
        }
    } else if (decoration.isThrough) {
        bars.push_back(barAt(lines.through, lines.throughThickness));
    }
    return bars;
}

} // namespace

void decorationWorks(Walk& walk, const PlacedRun& placed, const TextRun& run,
                     const RealMatrix& back, LineDepth depth) {
    const bool isFilled = run.style.fillPaint != 0;
    const bool isStroked = run.style.strokePaint != 0;
    for (const TextDecoration& decoration : run.decorations) {
        const std::vector<Bar> bars =
            barsOf(decoration, placed.lines, realFromFixed(run.rise), depth);
        const bool isPainted = decoration.hasColour || isFilled || isStroked;
        if (bars.empty() || placed.decorated.empty() || !isPainted) {
            continue;
        }
        if (decoration.hasColour) {
            enterWorks(walk);
            colorWorks(walk, decoration.colour, true);
        }
        for (const DecoratedPart& part : placed.decorated) {
            for (const Bar& bar : bars) {
                barWorks(walk, part, bar, back);
            }
        }
        walk.text.add(decoration.hasColour || !isStroked ? "f\n" : isFilled ? "B\n" : "S\n");
        if (decoration.hasColour) {
            leaveWorks(walk);
        }
    }
}

} // namespace corvane
