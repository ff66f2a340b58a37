#include "app/svg/text_writer.h"

#include "app/artwork/characters.h"

#include "app/artwork/geometry.h"
#include "app/svg/font_names.h"
#include "app/svg/markup.h"
#include "app/svg/style.h"
#include "app/svg/text_shift.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <string>

namespace corvane {

namespace {

/// Which attributes all runs of a text have in common.
struct Shared {
    bool font = true;
    bool size = true;
    bool spacing = true;
    bool style = true;
};

/// By how much lines grow in width; 1 where that would be without end.
double stretchOf(const Matrix& matrix) {
    const double stretch = meanStretch(realMatrix(matrix));
    return stretch > 0 ? stretch : 1;
}

/// Runs of a text object that make one line.
struct RunRange {
    std::int32_t first = 0;
    std::int32_t end = 0;
};

class TextWriter {
public:
    TextWriter(TextOutput& out, const PaintServers& servers, Art text, const TextPlace& place,
               const TextLine& line, RunRange runs)
        : document_(servers.document()), out_(out), servers_(servers), place_(place), text_(text),
          line_(line), runs_(runs), stretch_(stretchOf(line_.matrix)) {}

    void write();

private:
    void findShared();
    void writePlace();
    void writeFont(const TextRun&);
    void writeAttributes(const TextRun&, Shared which);
    void writeOwn(const TextRun&, std::uint32_t number);
    void writeLetters(const TextRun&);
    void writeShift(Fixed shift, Fixed size);
    std::string_view along() const { return line_.isVertical ? "dy" : "dx"; }
    std::string_view across() const { return line_.isVertical ? "dx" : "dy"; }

    const Document& document_;
    TextOutput& out_;
    const PaintServers& servers_;
    const TextPlace& place_;
    Art text_;
    TextLine line_;
    RunRange runs_;
    double stretch_; ///< of the line's matrix
    Shared shared_;
    bool needsBlanks_ = false;
    bool isRightToLeft_ = false;
    Fixed rise_ = 0; ///< of the run before
};

/// XML drops blanks at the ends, and makes one of several.
bool losesBlanks(std::string_view text, bool& afterBlank) {
    bool loses = false;
    for (const char c : text) {
        loses = loses || (c == ' ' && afterBlank);
        afterBlank = c == ' ';
    }
    return loses;
}

/// Whether letters of scripts that run from the right are in the text.
bool holdsRightToLeft(std::string_view text) {
    while (!text.empty()) {
        const Character character = decodeCharacter(text);
        const char32_t c = character.code;
        text.remove_prefix(std::max<std::size_t>(character.length, 1));
        if ((c >= 0x590 && c <= 0x8FF) || (c >= 0xFB1D && c <= 0xFDFF) ||
            (c >= 0xFE70 && c <= 0xFEFC) || (c >= 0x10800 && c <= 0x10FFF) ||
            (c >= 0x1E800 && c <= 0x1EFFF)) {
            return true;
        }
    }
    return false;
}

/// Whether a blank stands where one element of the text ends and another begins: some programs drop
/// those.
bool bordersOnBlank(const TextRun& run, bool isAlone) {
    const auto isBlank = [&](std::size_t place) { return run.text[place] == ' '; };
    return (!isAlone && (isBlank(0) || isBlank(run.text.size() - 1))) ||
           std::ranges::any_of(run.pieces, [&](const TextPiece& piece) {
               const auto place = static_cast<std::size_t>(piece.start);
               return place != 0 && (isBlank(place - 1) || isBlank(place));
           });
}

void TextWriter::findShared() {
    const TextRun first = document_.textRun(text_, runs_.first);
    const bool isAlone = runs_.end - runs_.first == 1;
    bool afterBlank = true;
    for (std::int32_t i = runs_.first; i < runs_.end; ++i) {
        const TextRun run = document_.textRun(text_, i);
        shared_.font = shared_.font && run.font == first.font;
        shared_.size = shared_.size && run.size == first.size;
        shared_.spacing = shared_.spacing && run.spacing == first.spacing;
        shared_.style = shared_.style && run.style == first.style;
        needsBlanks_ =
            losesBlanks(run.text, afterBlank) || bordersOnBlank(run, isAlone) || needsBlanks_;
        isRightToLeft_ = isRightToLeft_ || holdsRightToLeft(run.text);
    }
    needsBlanks_ = needsBlanks_ || afterBlank;
}

/// From the line's space, turned to point down as SVG does, to the page.
void TextWriter::writePlace() {
    const Matrix& matrix = line_.matrix;
    const std::int64_t x = place_.corner.x(matrix.tx);
    const std::int64_t y = place_.corner.y(matrix.ty);
    if (matrix.a == fixedOne && matrix.b == 0 && matrix.c == 0 && matrix.d == fixedOne) {
        writeNumberAttribute(out_, "x", x);
        writeNumberAttribute(out_, "y", y);
        return;
    }
    const std::array<std::int64_t, 6> turned{
        matrix.a, -std::int64_t{matrix.b}, -std::int64_t{matrix.c}, matrix.d, x, y};
    out_.text(" transform=\"matrix(");
    for (std::size_t i = 0; i < turned.size(); ++i) {
        out_.text(i == 0 ? "" : " ");
        out_.number(turned[i]);
    }
    out_.text(")\"");
}

void TextWriter::writeFont(const TextRun& run) {
    const FontFacts font = document_.fonts().facts(run.font);
    out_.text(" font-family=\"");
    writeFamilies(out_, font, 0);
    out_.text("\"");
    if (font.weight != FontFacts{}.weight) {
        writePlainAttribute(out_, "font-weight", std::to_string(font.weight));
    }
    if (font.italic) {
        writePlainAttribute(out_, "font-style", "italic");
    }
}

/// Those of the attributes of a run that `which` names.
void TextWriter::writeAttributes(const TextRun& run, Shared which) {
    if (which.font) {
        writeFont(run);
    }
    if (which.size) {
        writeNumberAttribute(out_, "font-size", run.size);
    }
    if (which.spacing && run.spacing != 0) {
        writeNumberAttribute(out_, "letter-spacing", run.spacing);
    }
    if (which.style) {
        writePaintedStyle(out_, run.style, servers_, stretch_);
    }
}

/// What each run has for itself, and where its baseline and its first letter are moved to.
void TextWriter::writeOwn(const TextRun& run, std::uint32_t number) {
    out_.text(" id=\"");
    out_.text(shapeIdPrefix);
    out_.number(std::int64_t{number} << 16);
    out_.text("\"");
    if (run.source.end != 0) {
        writeArtSource(out_, "data-source", run.source, place_.base);
    }
    if (run.rise != rise_) {
        const std::int64_t up = std::int64_t{run.rise} - rise_;
        writeNumberAttribute(out_, across(), line_.isVertical ? up : -up);
        rise_ = run.rise;
    }
    if (!run.pieces.empty() && run.pieces[0].start == 0 && run.pieces[0].face == 0) {
        writeShift(run.pieces[0].shift, run.size);
    }
}

/// In as few digits as make the same shift again.
void TextWriter::writeShift(Fixed shift, Fixed size) {
    if (shift == 0) {
        return;
    }
    constexpr int mostDigits = 17;
    const double em = static_cast<double>(size) / fixedOne;
    const double length = lengthOfShift(shift, em);
    std::array<char, 32> text{};
    const char* end = text.data();
    double read = 0;
    for (int digits = 2; digits <= mostDigits && (read == 0 || shiftOfLength(read, em) != shift);
         ++digits) {
        end = std::to_chars(text.data(), text.data() + text.size(), length,
                            std::chars_format::general, digits)
                  .ptr;
        std::from_chars(text.data(), end, read);
    }
    writePlainAttribute(out_, along(), {text.data(), static_cast<std::size_t>(end - text.data())});
}

void TextWriter::writeLetters(const TextRun& run) {
    std::size_t start = 0;
    const TextPiece* piece = nullptr; // the one that began at `start`, where it has an element
    const auto writeTo = [&](std::size_t end) {
        if (piece != nullptr) {
            out_.text("<tspan");
            writeShift(piece->shift, run.size);
            if (piece->face != 0) {
                out_.text(" font-family=\"");
                writeFamilies(out_, document_.fonts().facts(run.font), piece->face);
                out_.text("\"");
            }
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
        piece = place != 0 || next.face != 0 ? &next : nullptr;
    }
    writeTo(run.text.size());
}

void TextWriter::write() {
    findShared();
    const bool several = runs_.end - runs_.first > 1;
    const TextRun first = document_.textRun(text_, runs_.first);
    out_.text("<text");
    if (!several) {
        writeOwn(first, place_.number);
    }
    if (place_.hidden) {
        writePlainAttribute(out_, "display", "none");
    } else if (!place_.clip.empty()) {
        writePlainAttribute(out_, "clip-path", place_.clip);
    }
    writePlace();
    if (line_.isVertical) {
        // Pages set all letters of a column upright, which has no attribute.
        writePlainAttribute(out_, "style", "writing-mode:vertical-rl;text-orientation:upright");
    }
    if (needsBlanks_) {
        writePlainAttribute(out_, "xml:space", "preserve");
    }
    if (isRightToLeft_) {
        // Letters stand in the order in which the page shows them.
        writePlainAttribute(out_, "direction", "ltr");
        writePlainAttribute(out_, "unicode-bidi", "bidi-override");
    }
    writeAttributes(first, shared_);
    out_.text(">");
    if (!several) {
        writeLetters(first);
    }
    const Shared own{!shared_.font, !shared_.size, !shared_.spacing, !shared_.style};
    std::uint32_t number = place_.number;
    for (std::int32_t i = runs_.first; several && i < runs_.end; ++i) {
        const TextRun run = document_.textRun(text_, i);
        out_.text("<tspan");
        writeOwn(run, number++);
        writeAttributes(run, own);
        out_.text(">");
        writeLetters(run);
        out_.text("</tspan>");
    }
    out_.text("</text>");
}

} // namespace

void writeText(TextOutput& out, const PaintServers& servers, Art text, const TextPlace& place) {
    const Document& document = servers.document();
    const std::int32_t count = document.textRunCount(text);
    TextLine line = document.textLine(text);
    TextPlace at = place;
    RunRange runs;
    while (runs.first < count) {
        if (const TextRun first = document.textRun(text, runs.first); first.line) {
            line.matrix = *first.line;
        }
        runs.end = runs.first + 1;
        while (runs.end < count && !document.textRun(text, runs.end).line) {
            ++runs.end;
        }
        TextWriter(out, servers, text, at, line, runs).write();
        at.number += static_cast<std::uint32_t>(runs.end - runs.first);
        runs.first = runs.end;
    }
}

} // namespace corvane
