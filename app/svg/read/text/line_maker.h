// Makes text objects of letters that come one by one.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/text/letter_places.h"
#include "app/svg/text_shift.h"
#include "host/matrix.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// How letters look. Lengths are of their user space.
struct LetterLook {
    Font font = Font::null;
    std::int32_t face = 0;
    double size = 0;
    double spacing = 0;
    double wordSpacing = 0;
    double rise = 0; ///< `baseline-shift`
    bool keepsBlanks = false;
    PathStyle style;
    std::optional<ArtSource> source;
    /// Letters of different ones do not share a run.
    std::uint32_t element = 0;
};

/// What all letters of a text have in common.
struct LineFrame {
    ArtPlace place;
    RealMatrix toArt; ///< from the user space of the letters
    bool isVertical = false;
    bool isColumn = false; ///< vertical, as the writer writes it (app/svg/text_shift.h)
};

/// A letter with an absolute place along its line begins a new text object, since nothing here
/// knows how wide letters are. What moves a letter across its line is its run's rise.
class LineMaker {
public:
    LineMaker(ReadingContext& context, const LineFrame& frame) : context_(context), frame_(frame) {}

    /// The next letter; `blank`: any blank, as `letter` is one then.
    void add(std::string_view letter, bool blank, const LetterPlace& place, const LetterLook& look);
    /// Makes what is still open. Whether there was any text.
    bool finish();

private:
    void startLine(const LetterPlace& place);
    void startRun(const LetterLook& look, double rise);
    void addPiece(double shift, std::int32_t face);
    double columnShift(const LetterPlace& place, const LetterLook& look);
    void dropLastBlank();
    void finishRun();
    Art makeLine();

    ReadingContext& context_;
    LineFrame frame_;

    // The line.
    bool isOpen_ = false;
    bool isTurned_ = false;
    RealPoint origin_;
    double turn_ = 0;
    double across_ = 0;  ///< from the origin, as SVG counts
    double carried_ = 0; ///< shift of the next letter for the blank before it
    ColumnLetter before_;
    Art art_ = Art::null;
    double scale_ = 1; ///< from lengths of the user space to those of the line's space

    // The run.
    std::string text_;
    std::vector<TextPiece> pieces_;
    LetterLook look_;
    double rise_ = 0;
    std::int32_t face_ = 0;

    bool made_ = false;
    bool endsInBlank_ = false; ///< one that is dropped at the end of a line
};

} // namespace corvane
