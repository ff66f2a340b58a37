#include "writer/patch/text/text_reach.h"

#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"
#include "writer/patch/text/text_run.h"

#include <algorithm>

namespace corvane {

namespace {

/// Along a line, and beside it, in its own space.
struct LineReach {
    double from = 0;
    double to = 0;
    double em = 0; ///< the largest, with what letters are raised
};

bool beginsLetter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

LineReach reachOf(Art text) {
    LineReach reach;
    std::int32_t count = 0;
    callHost(slot::getTextRunCount, text, &count);
    for (std::int32_t i = 0; i < count; ++i) {
        const TextRun run = runOf(text, i);
        const double size = realFromFixed(run.size);
        const auto letters = static_cast<double>(std::ranges::count_if(run.text, beginsLetter));
        reach.to += letters * (size + std::max(0.0, realFromFixed(run.spacing)));
        reach.from += letters * std::min(0.0, realFromFixed(run.spacing));
        for (const TextPiece& piece : run.pieces) {
            const double shift = realFromFixed(piece.shift) * size;
            (shift > 0 ? reach.to : reach.from) += shift;
        }
        reach.em = std::max(reach.em, size + std::abs(realFromFixed(run.rise)));
    }
    return reach;
}

/// The letters stand on a path: around all of it.
ArtExtent aroundPath(const TextLine& line, double em) {
    ArtExtent extent;
    for (const Segment& segment : line.path) {
        extent.add(segment.anchor);
        extent.add(segment.in);
        extent.add(segment.out);
    }
    const auto reach = std::int64_t{fixedFromReal(em * meanStretch(realMatrix(line.matrix)))};
    return {extent.left - reach, extent.bottom - reach, extent.right + reach, extent.top + reach};
}

} // namespace

ArtExtent reachOfText(Art text) {
    const TextLine line = lineOf(text);
    LineReach reach = reachOf(text);
    if (!line.path.empty()) {
        return aroundPath(line, reach.em);
    }
    reach.to = std::max(reach.to, realFromFixed(line.length));
    if (line.anchor != TextAnchor::start || line.order != TextOrder::visual) {
        reach.from = std::min(reach.from, -reach.to);
    }
    ArtExtent extent;
    for (const double along : {reach.from, reach.to}) {
        for (const double beside : {-reach.em, reach.em}) {
            const RealPoint at =
                transform(realMatrix(line.matrix),
                          line.isVertical ? RealPoint{beside, -along} : RealPoint{along, beside});
            extent.add(Point{fixedFromReal(at.x), fixedFromReal(at.y)});
        }
    }
    return extent;
}

} // namespace corvane
