#include "app/svg/text/letter_writer.h"

#include "app/artwork/text/characters.h"
#include "app/svg/markup.h"
#include "app/svg/text/font_names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace corvane {

bool isPlainSpace(const Matrix& matrix) {
    return matrix.a == fixedOne && matrix.b == 0 && matrix.c == 0 && matrix.d == fixedOne;
}

/// Of the line, in the space of its element.
std::int64_t LetterWriter::originX() const {
    return isPlainSpace(line_.matrix) ? corner_.x(line_.matrix.tx) : 0;
}

void LetterWriter::writeOrder() {
    if (isOverridden_) {
        writePlainAttribute(out_, "direction", "ltr");
        writePlainAttribute(out_, "unicode-bidi", "bidi-override");
    }
}

void LetterWriter::writeShift(std::string_view name, Fixed shift, Fixed size, double natural) {
    if (shift == 0 && natural == 0) {
        return;
    }
    constexpr int mostDigits = 17;
    const double em = static_cast<double>(size) / fixedOne;
    const double length = natural + lengthOfShift(shift, em);
    std::array<char, 32> text{};
    const char* end = text.data();
    double read = std::numeric_limits<double>::quiet_NaN();
    for (int digits = 2; digits <= mostDigits && (std::isnan(read) || read == 0 ||
                                                  shiftOfLength(read - natural, em) != shift);
         ++digits) {
        end = std::to_chars(text.data(), text.data() + text.size(), length,
                            std::chars_format::general, digits)
                  .ptr;
        std::from_chars(text.data(), end, read);
    }
    writePlainAttribute(out_, name, {text.data(), static_cast<std::size_t>(end - text.data())});
}

void LetterWriter::writeFace(const TextRun& run, std::int32_t face) {
    if (face != 0) {
        out_.text(" font-family=\"");
        writeFamilies(out_, document_.fonts().facts(run.font), face);
        out_.text("\"");
    }
}

void LetterWriter::writeTurn(const TextPiece& piece) {
    if (piece.turn != 0) {
        writeNumberAttribute(out_, "rotate", piece.turn);
    }
}

void LetterWriter::writeLetters(const TextRun& run) {
    if (line_.isVertical) {
        writeColumn(run);
    } else if (isExact()) {
        writePlaced(run);
    } else {
        writeFlowing(run);
    }
}

void LetterWriter::writeFlowing(const TextRun& run) {
    std::size_t start = 0;
    const TextPiece* piece = nullptr; // the one that began at `start`, where it has an element
    const auto writeTo = [&](std::size_t end) {
        if (piece != nullptr) {
            out_.text("<tspan");
            writeOrder();
            writeShift("dx", piece->shift, run.size);
            writeTurn(*piece);
            writeFace(run, piece->face);
            out_.text(">");
        }
        writeEscaped(out_, run.text.substr(start, end - start));
        out_.text(piece != nullptr ? "</tspan>" : "");
        start = end;
    };
    for (const TextPiece& next : run.pieces) {
        const auto place = static_cast<std::size_t>(next.start);
        if (place != 0) {
            writeTo(place);
        }
        piece = place != 0 || next.face != 0 || next.turn != 0 ? &next : nullptr;
    }
    writeTo(run.text.size());
}

void LetterWriter::writeColumn(const TextRun& run) {
    const auto real = [](Fixed length) { return static_cast<double>(length) / fixedOne; };
    auto piece = run.pieces.begin();
    std::int32_t face = 0;
    Fixed turn = 0;
    for (std::size_t at = 0; at < run.text.size();) {
        const std::string_view rest = run.text.substr(at);
        const auto length = std::max<std::size_t>(decodeCharacter(rest).length, 1);
        Fixed shift = 0;
        for (; piece != run.pieces.end() && static_cast<std::size_t>(piece->start) <= at; ++piece) {
            shift = piece->shift;
            face = piece->face;
            turn = piece->turn;
        }
        out_.text("<tspan");
        writeNumberAttribute(out_, "x", originX());
        if (run.rise != 0) {
            writeNumberAttribute(out_, "dx", run.rise);
        }
        writeShift("dy", shift, run.size, columnStep(real(run.size), before_));
        before_ = {real(run.size), real(run.spacing)};
        writeTurn({.turn = turn});
        writeFace(run, face);
        out_.text(">");
        writeEscaped(out_, rest.substr(0, length));
        out_.text("</tspan>");
        at += length;
    }
}

/// The places of some glyphs, in the space of the text.
void LetterWriter::writePlaces(std::size_t first, std::size_t end) {
    const std::int64_t origin = originX();
    out_.text(" x=\"");
    for (std::size_t i = first; i < end; ++i) {
        out_.text(i == first ? "" : " ");
        out_.number(origin + glyphs_[i].at);
    }
    out_.text("\"");
}

void LetterWriter::writeSum() {
    double sum = 0;
    for (const PlacedGlyph& glyph : glyphs_) {
        sum += static_cast<double>(glyph.at) / fixedOne;
    }
    writeDoubleAttribute(out_, "data-exact", sum);
}

/// An element for each piece. Within one, a place behind letters that share a glyph would tear them
/// apart: there another begins.
void LetterWriter::writePlaced(const TextRun& run) {
    const std::int32_t number = glyphs_[written_].run;
    const auto isOneLetter = [&](const PlacedGlyph& glyph) {
        return glyph.end - glyph.start == decodeCharacter(run.text.substr(glyph.start)).length;
    };
    std::int32_t face = 0;
    while (written_ < glyphs_.size() && glyphs_[written_].run == number) {
        const std::size_t first = written_;
        std::size_t end = first + 1;
        while (end < glyphs_.size() && glyphs_[end].run == number &&
               glyphs_[end].piece == nullptr && isOneLetter(glyphs_[end - 1])) {
            ++end;
        }
        out_.text("<tspan");
        writeOrder();
        writePlaces(first, end);
        if (const TextPiece* const piece = glyphs_[first].piece) {
            writeShift("data-dx", piece->shift, run.size);
            face = piece->face;
        }
        writeFace(run, face);
        out_.text(">");
        const std::size_t start = glyphs_[first].start;
        writeEscaped(out_, run.text.substr(start, glyphs_[end - 1].end - start));
        out_.text("</tspan>");
        written_ = end;
    }
}

} // namespace corvane
