// Text of the artwork: fonts, lines and their runs.
#include "app/artwork/document.h"

#include "app/artwork/geometry/geometry.h"
#include "app/artwork/masks.h"
#include "app/artwork/text/characters.h"
#include "host/utf8.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace corvane {

namespace {

constexpr std::size_t longestText = std::numeric_limits<std::int32_t>::max();

/// Segments of the path of a line: what one path of the artwork may have.
constexpr std::size_t longestPath = std::numeric_limits<std::int32_t>::max();

/// Lines along letters have plain colours.
bool hasMeaning(const TextDecoration& decoration) {
    const Colour& colour = decoration.colour;
    return decoration.size >= 0 && decoration.thickness >= 0 && colour.kind >= ColourKind::gray &&
           colour.kind <= ColourKind::process && colour.source == PaintSource::null;
}

bool isWhole(const TextLine& line) {
    const bool isNamed = line.anchor <= TextAnchor::end && line.order <= TextOrder::rightToLeft;
    const bool pathFits =
        line.path.empty() ||
        (line.path.data() != nullptr && line.path.size() > 1 && line.path.size() <= longestPath);
    return isNamed && line.length >= 0 && line.reach >= 0 && pathFits;
}

/// Whether pieces lie in the text, each at the beginning of a character and behind the one before.
bool piecesFit(const TextRun& run) {
    std::int32_t after = -1;
    for (const TextPiece& piece : run.pieces) {
        const bool inside = piece.start > after && piece.start < std::ssize(run.text);
        if (!inside || isContinuation(run.text[static_cast<std::size_t>(piece.start)])) {
            return false;
        }
        after = piece.start;
    }
    return true;
}

/// By how much a line's letters grow: their height, for that is what a size says.
double growth(const RealMatrix& before, const RealMatrix& after) {
    const double scale = std::hypot(after.c, after.d) / std::hypot(before.c, before.d);
    return std::isfinite(scale) && scale > 0 ? scale : 1;
}

} // namespace

Font Document::addFont(const FontFacts& facts) {
    return fonts_.add(facts);
}

void Document::setFontFile(Font font, std::int32_t face, std::span<const std::byte> file) {
    fonts_.setFile(font, face, file);
}

TextLine Document::textLine(Art text) const {
    return texts_.line(tree_.find(text, ArtKind::text));
}

void Document::setTextLine(Art text, const TextLine& line) {
    const NodeIndex node = tree_.find(text, ArtKind::text);
    if (!isWhole(line)) {
        throw ArtworkError("the line of text has a value without meaning");
    }
    texts_.setLine(node, line);
}

std::int32_t Document::textRunCount(Art text) const {
    return texts_.runCount(tree_.find(text, ArtKind::text));
}

TextRun Document::textRun(Art text, std::int32_t index) const {
    return texts_.run(tree_.find(text, ArtKind::text), index);
}

/// Throws where it is none that the text may have.
void Document::checkRun(NodeIndex node, const TextRun& run) const {
    fonts_.facts(run.font);
    if (run.text.empty() || run.text.size() > longestText || !isPlainText(run.text)) {
        throw ArtworkError("the run has no text, or characters that no text has");
    }
    if (run.size <= 0 || !piecesFit(run) || !isOpacity(run.fillOpacity) ||
        !isOpacity(run.strokeOpacity) || !std::ranges::all_of(run.decorations, hasMeaning)) {
        throw ArtworkError("the run has a value without meaning");
    }
    for (const TextPiece& piece : run.pieces) {
        fonts_.checkFace(run.font, piece.face);
    }
    if (run.source.start < 0 || run.source.end < run.source.start || run.source.ordinal < -1 ||
        run.source.content < 0) {
        throw ArtworkError("the source of a run has a value without meaning");
    }
    checkStyle(node, run.style);
}

void Document::addTextRun(Art text, const TextRun& run) {
    const NodeIndex node = tree_.find(text, ArtKind::text);
    checkRun(node, run);
    texts_.addRun(node, run);
}

void Document::addTextRunBefore(Art text, const TextLine& line, const TextRun& run, Fixed gap) {
    const NodeIndex node = tree_.find(text, ArtKind::text);
    checkRun(node, run);
    setTextLine(text, line);
    texts_.addRunBefore(node, run, gap);
}

void Document::setTextRuns(Art text, std::span<const TextRun> runs) {
    const NodeIndex node = tree_.find(text, ArtKind::text);
    for (const TextRun& run : runs) {
        checkRun(node, run);
    }
    texts_.setRuns(node, runs);
}

void Document::setTextRunStyle(Art text, std::int32_t index, const PathStyle& style) {
    const NodeIndex node = tree_.find(text, ArtKind::text);
    checkStyle(node, style);
    texts_.setRunStyle(node, index, style);
}

void Document::transformText(Art text, const RealMatrix& map) {
    const NodeIndex node = tree_.find(text, ArtKind::text);
    TextLine line = texts_.line(node);
    const RealMatrix before = realMatrix(line.matrix);
    std::vector<Segment> path(line.path.begin(), line.path.end());
    RealMatrix after = multiply(before, path.empty() ? map : withoutTurn(map));
    const double scale = growth(before, after);
    if (scale != 1 || texts_.hasFurtherLines(node)) {
        texts_.changeRuns(node, scale, map);
    }
    if (scale != 1) {
        after = multiply({1 / scale, 0, 0, 1 / scale, 0, 0}, after);
    }
    line.matrix = fixedMatrix(after);
    line.length = scaledLength(line.length, scale);
    line.reach = scaledLength(line.reach, scale);
    if (!path.empty()) {
        transform(path, map);
        line.path = path;
        line.pathStart = fixedNumber(line.pathStart * meanStretch(map) / fixedOne);
    }
    texts_.setLine(node, line);
}

} // namespace corvane
