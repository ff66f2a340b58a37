// The letters of a line of text, each with what it needs to stand in its place.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/path_data.h"
#include "app/svg/sink.h"
#include "app/svg/text/letter_layout.h"
#include "app/svg/text/text_shift.h"

#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// Whether the space of a line is that of the page but for its place.
bool isPlainSpace(const Matrix& matrix);

/// Letters follow one another and `dx` says what differs; or each has its place, where `glyphs` say
/// it; or they go down a column.
class LetterWriter {
public:
    LetterWriter(TextOutput& out, const Document& document, PageCorner corner, const TextLine& line,
                 std::vector<PlacedGlyph> glyphs)
        : out_(out), document_(document), corner_(corner), line_(line), glyphs_(std::move(glyphs)) {
    }

    bool isExact() const { return !glyphs_.empty(); }
    /// Letters of scripts from the right stand as they are said.
    void overrideOrder() { isOverridden_ = true; }

    /// What orders the letters of an element: elements of a text do not inherit it, and some
    /// programs ask each of them.
    void writeOrder();
    /// Of exact letters: by which a reader sees that nobody moved one.
    void writeSum();
    /// In as few digits as make the same shift again. Where nothing shifts, the length is
    /// `natural`.
    void writeShift(std::string_view name, Fixed shift, Fixed size, double natural = 0);
    /// Those of a run, one run after the other.
    void writeLetters(const TextRun&);

private:
    void writeFlowing(const TextRun&);
    void writeColumn(const TextRun&);
    void writePlaced(const TextRun&);
    void writePlaces(std::size_t first, std::size_t end);
    void writeFace(const TextRun&, std::int32_t face);
    void writeTurn(const TextPiece&);
    std::int64_t originX() const;

    TextOutput& out_;
    const Document& document_;
    PageCorner corner_;
    const TextLine& line_;
    std::vector<PlacedGlyph> glyphs_;
    std::size_t written_ = 0; ///< of these
    bool isOverridden_ = false;
    ColumnLetter before_;
};

} // namespace corvane
