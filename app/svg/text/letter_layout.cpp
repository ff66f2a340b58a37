#include "app/svg/text/letter_layout.h"

#include "app/artwork/geometry/geometry.h"
#include "app/svg/text/text_shift.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvane {

namespace {

/// Puts the letters of one run after another.
class Layout {
public:
    explicit Layout(LetterAdvances& advances) : advances_(advances) {}

    bool add(std::int32_t number, const TextRun& run);
    std::vector<PlacedGlyph>& glyphs() { return glyphs_; }

private:
    bool addPart(std::int32_t number, const TextRun& run, std::size_t start, std::size_t end,
                 const TextPiece* piece);

    LetterAdvances& advances_;
    double at_ = 0;
    std::vector<PlacedGlyph> glyphs_;
};

bool Layout::addPart(std::int32_t number, const TextRun& run, std::size_t start, std::size_t end,
                     const TextPiece* piece) {
    const double em = static_cast<double>(run.size) / fixedOne;
    const double spacing = static_cast<double>(run.spacing) / fixedOne;
    const std::vector<GlyphWidth> widths = advances_.widths(
        run.font, piece == nullptr ? 0 : piece->face, run.text.substr(start, end - start));
    at_ += piece == nullptr ? 0 : lengthOfShift(piece->shift, em);
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const double units = std::round(at_ * fixedOne);
        if (!(std::abs(units) < 0x1p40)) {
            return false;
        }
        glyphs_.push_back({number, start + widths[i].start,
                           i + 1 < widths.size() ? start + widths[i + 1].start : end,
                           static_cast<std::int64_t>(units), i == 0 ? piece : nullptr});
        at_ += widths[i].advance * em + spacing;
    }
    return !widths.empty();
}

bool Layout::add(std::int32_t number, const TextRun& run) {
    std::size_t start = 0;
    const TextPiece* piece = nullptr;
    if (std::ranges::any_of(run.pieces, [](const TextPiece& each) { return each.turn != 0; })) {
        return false;
    }
    for (const TextPiece& next : run.pieces) {
        const auto end = static_cast<std::size_t>(next.start);
        if (end != start && !addPart(number, run, start, end, piece)) {
            return false;
        }
        start = end;
        piece = &next;
    }
    return addPart(number, run, start, run.text.size(), piece);
}

/// All glyphs; none where a width is not known.
std::vector<PlacedGlyph> layOut(const Document& document, Art text, LetterAdvances& advances) {
    Layout layout(advances);
    for (std::int32_t i = 0; i < document.textRunCount(text); ++i) {
        if (!layout.add(i, document.textRun(text, i))) {
            return {};
        }
    }
    return std::move(layout.glyphs());
}

bool hasSeveralPieces(const Document& document, Art text) {
    const auto& pieces = document.textRun(text, 0).pieces;
    return document.textRunCount(text) > 1 ||
           std::ranges::any_of(pieces, [](const TextPiece& piece) { return piece.start != 0; });
}

/// The glyphs of each piece as one.
std::vector<PlacedGlyph> joined(const std::vector<PlacedGlyph>& glyphs) {
    std::vector<PlacedGlyph> pieces;
    for (const PlacedGlyph& glyph : glyphs) {
        if (pieces.empty() || glyph.piece != nullptr || glyph.run != pieces.back().run) {
            pieces.push_back(glyph);
        } else {
            pieces.back().end = glyph.end;
        }
    }
    return pieces;
}

/// The share of a line's length by which letters miss their places in programs that divide once
/// too often by how much wider than high the matrix makes letters.
double missedShare(const Matrix& matrix) {
    const RealMatrix real = realMatrix(matrix);
    const double width = std::hypot(real.a, real.b);
    const double area = std::abs(real.a * real.d - real.b * real.c);
    const double widening = area > 0 ? width * width / area : 1;
    return std::abs(1 - 1 / widening);
}

} // namespace

std::vector<PlacedGlyph> placed(const Document& document, Art text, const LetterRule& rule) {
    const TextLine line = document.textLine(text);
    if (rule.advances == nullptr || line.isVertical || line.anchor != TextAnchor::start ||
        line.length != 0 || !line.path.empty()) {
        return {};
    }
    if (rule.isExact) {
        return layOut(document, text, *rule.advances);
    }
    const double missing = missedShare(line.matrix);
    if (missing == 0 || !hasSeveralPieces(document, text)) {
        return {};
    }
    std::vector<PlacedGlyph> pieces = joined(layOut(document, text, *rule.advances));
    constexpr double seenMiss = 0.1; // of a letter, in ems
    const double seen = seenMiss * static_cast<double>(document.textRun(text, 0).size);
    return pieces.empty() || missing * static_cast<double>(pieces.back().at) < seen
               ? std::vector<PlacedGlyph>()
               : pieces;
}

TextLine placedWhereRead(TextLine line, Fixed size) {
    constexpr double seenMiss = 0.01; // of letters, in ems
    const double missing = missedShare(line.matrix) * static_cast<double>(line.reach);
    const bool isKnown = line.reach != 0 && missing <= seenMiss * static_cast<double>(size);
    if (line.order == TextOrder::rightToLeft && line.anchor == TextAnchor::start && isKnown) {
        const double reach = static_cast<double>(line.reach) / fixedOne;
        const RealPoint end = transform(realMatrix(line.matrix), {reach, 0});
        line.matrix.tx = fixedNumber(end.x);
        line.matrix.ty = fixedNumber(end.y);
        line.anchor = TextAnchor::end;
    }
    return line;
}

} // namespace corvane
