// Glyphs that are shown from the right to the left, as lines from the left.
#include "reader/text/line_builder.h"
#include "reader/text/line_rules.h"
#include "runtime/fixed.h"
#include "runtime/matrix.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace corvane {

bool LineBuilder::mayComeBefore(double pen) {
    if (!open_.takesBefore || open_.isVertical || isVertical_ || stretch_ <= 0 ||
        !isParallel(direction_, open_.matrix)) {
        return false;
    }
    const RealPoint at = onLine(pen);
    return isOnLine(at) && at.x < -tolerance * realFromFixed(run_.size) && target_.takesBefore();
}

/// Whether the glyphs are one line, from where they begin up to the first letter of the open one.
bool LineBuilder::isFarEnd(std::span<const PenGlyph> standing) const {
    const double larger = std::max(realFromFixed(run_.size), open_.size);
    const double begin = onLine(standing.front().pen).x;
    double reached = begin;
    for (const PenGlyph& placed : standing) {
        const double at = onLine(placed.pen).x;
        if (at < begin || at - reached > widestGap * larger) {
            return false;
        }
        reached = std::max(reached, onLine(placed.pen + placed.advance).x);
    }
    // What lies over the line's beginning by half of itself is another copy of it.
    const double farthest = std::min(farthestBack * larger, (reached - begin) / 2);
    return -reached <= widestGap * larger && reached <= farthest;
}

/// Puts the glyphs into the run; answers where they end.
double LineBuilder::addStanding(std::span<const PenGlyph> standing) {
    double reached = along(standing.front().pen);
    for (const PenGlyph& placed : standing) {
        open_.end = reached; // marks stand on letters
        if (!isBlank(placed.glyph.text)) {
            addGap(along(placed.pen));
        }
        append(placed.glyph.text, along(placed.pen), placed.glyph.advance, placed.glyph.face);
        reached = std::max(reached, along(placed.pen + placed.advance));
    }
    return reached;
}

/// The line that was open goes on behind the run.
void LineBuilder::endRunBefore(const OpenLine& former, double pen, std::int32_t element) {
    const double begin =
        transform(open_.back, {former.matrix.tx, former.matrix.ty}).x; // where that began
    if (!former.startsBlank) {
        addGap(begin);
    }
    // All that follows misses its place by what the run is too long; but for what is not seen.
    const double miss = open_.modelEnd - begin;
    const bool isSeen = std::abs(former.drift + miss) > tolerance * former.firstSize;
    const Fixed gap = isSeen ? fixedFromReal(-miss / former.firstSize) : 0;
    const double moved = realFromFixed(gap) * former.firstSize;
    ShownPart part = partUpTo(pen, element);
    part.gap = moved;

    OpenLine line = former;
    line.matrix = open_.matrix;
    line.back = open_.back;
    line.end += begin;
    line.modelEnd += open_.modelEnd + moved;
    line.modelReach = std::max(open_.modelReach, former.modelReach + open_.modelEnd + moved);
    line.startsBlank = open_.startsBlank;
    line.runsFromRight = former.runsFromRight || open_.runsFromRight;
    line.firstSize = realFromFixed(run_.size);
    line.drift += miss + moved;
    open_ = line;
    target_.addRunBefore(lineSoFar(), run_, part, gap);
}

/// A run that is a line, or the beginning of the open one. `shown` and `standing` are the same
/// glyphs, in the two orders.
void LineBuilder::addWhole(std::span<const PenGlyph> shown, std::span<const PenGlyph> standing,
                           double pen, std::int32_t end) {
    const double first = standing.front().pen;
    const bool isBefore = mayComeBefore(first) && isFarEnd(standing);
    const OpenLine former = open_;
    if (isBefore) {
        RealMatrix matrix = former.matrix;
        const RealPoint origin = transform(former.matrix, {onLine(first).x, 0});
        matrix.tx = origin.x;
        matrix.ty = origin.y;
        openLine({.matrix = hostMatrix(matrix)});
    } else {
        beginLine(first);
    }
    startRun(first, shown.front().element);
    runPen_ = shown.front().pen;
    open_.end = addStanding(standing);
    if (isBefore) {
        endRunBefore(former, pen, end);
    } else {
        endRun(pen, end);
        open_.isOpen = false;
    }
}

bool LineBuilder::addBefore(std::span<const PenGlyph> glyphs, double pen, std::int32_t end) {
    const bool isFromRight =
        open_.runsFromRight || std::ranges::any_of(glyphs, [](const auto& each) {
            return startsFromRight(each.glyph.text);
        });
    if (glyphs.empty() || !isFromRight || !mayComeBefore(glyphs.front().pen) || !isFarEnd(glyphs)) {
        return false;
    }
    addWhole(glyphs, glyphs, pen, end);
    return true;
}

bool LineBuilder::addFromRight(std::span<const PenGlyph> glyphs, double pen, std::int32_t end) {
    if (isVertical_ || stretch_ <= 0) {
        return false;
    }
    std::vector<std::size_t> order(glyphs.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return glyphs[i].pen; });
    struct Line {
        std::size_t first = 0; // in the order of showing, as the next
        std::size_t last = 0;
        std::vector<PenGlyph> standing;
    };
    std::vector<Line> lines;
    const double size = realFromFixed(run_.size);
    double reached = 0;
    for (const std::size_t i : order) {
        const double at = along(glyphs[i].pen);
        if (lines.empty() || at - reached > widestGap * size) {
            lines.push_back({.first = i, .last = i, .standing = {}});
            reached = at;
        }
        Line& line = lines.back();
        line.first = std::min(line.first, i);
        line.last = std::max(line.last, i);
        line.standing.push_back(glyphs[i]);
        reached = std::max(reached, along(glyphs[i].pen + glyphs[i].advance));
    }
    std::ranges::sort(lines, {}, &Line::first);
    const auto isApart = [&](const Line& line) {
        return line.last - line.first + 1 == line.standing.size() &&
               (line.first == 0 || glyphs[line.first].element != glyphs[line.first - 1].element);
    };
    if (!std::ranges::all_of(lines, isApart)) {
        return false;
    }
    for (const Line& line : lines) {
        const std::size_t next = line.last + 1;
        const bool isLast = next == glyphs.size();
        addWhole(glyphs.subspan(line.first, line.standing.size()), line.standing,
                 isLast ? pen : glyphs[next].pen, isLast ? end : glyphs[next].element);
    }
    return true;
}

} // namespace corvane
