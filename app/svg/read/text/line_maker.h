// Makes text objects of letters that come one by one.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/text/letter_places.h"
#include "app/svg/read/text/text_path.h"
#include "app/svg/text/text_shift.h"
#include "host/appearance.h"
#include "host/matrix.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// One character of a text.
struct Letter {
    std::string_view text;
    bool isBlank = false;  ///< any blank, as `text` is one then
    bool endsLine = false; ///< a line end that the text keeps
};

/// The `textLength` of an element.
struct FittedLength {
    std::uint32_t element = 0; ///< tells elements apart; 0: none
    double length = 0;
    bool stretchesLetters = false;
};

/// Lines along letters. Lengths are of their user space.
struct LetterDecoration {
    TextDecoration lines; ///< but for their lengths
    double size = 0;
    double thickness = 0;
    friend bool operator==(const LetterDecoration&, const LetterDecoration&) = default;
};

/// How letters look. Lengths are of their user space.
struct LetterLook {
    Font font = Font::null;
    std::int32_t face = 0;
    double size = 0;
    double spacing = 0;
    double wordSpacing = 0;
    double rise = 0; ///< `baseline-shift`
    bool keepsBlanks = false;
    TextAnchor anchor = TextAnchor::start; ///< of a line that begins here
    TextOrder order = TextOrder::leftToRight;
    FittedLength fitted;
    PathStyle style;
    double fillOpacity = 1;
    double strokeOpacity = 1;
    std::vector<LetterDecoration> decorations;
    std::optional<ArtSource> source;
    /// Letters of different ones do not share a run.
    std::uint32_t element = 0;
};

/// What all letters of a text have in common.
struct LineFrame {
    ArtPlace place;
    RealMatrix toArt; ///< from the user space of the letters
    bool isVertical = false;
    bool isColumn = false; ///< vertical, as the writer writes it (app/svg/text/text_shift.h)
    Appearance appearance = {};
    bool isClip = false; ///< its letters clip, and are not painted
};

/// A letter with an absolute place along its line begins a new text object, since nothing here
/// knows how wide letters are. What moves a letter across its line is its run's rise.
class LineMaker {
public:
    LineMaker(ReadingContext& context, const LineFrame& frame) : context_(context), frame_(frame) {}

    void add(const Letter& letter, const LetterPlace& place, const LetterLook& look);
    /// Letters from here on stand on a path.
    void enterPath(TextPath path);
    void leavePath();
    /// Makes what is still open. Whether there was any text.
    bool finish();

private:
    void startLine(const LetterPlace& place, const LetterLook& look);
    void startOnPath(const LetterPlace& place);
    void startRun(const LetterLook& look, double rise);
    void countWhatIsLost(const Letter& letter, const LetterPlace& place, const LetterLook& look);
    void fit(const LetterLook& look, bool starts);
    void voidLength(const FittedLength& fitted);
    void addPiece(double shift, std::int32_t face, double turn);
    std::vector<TextDecoration> decorations() const;
    double columnShift(const LetterPlace& place, const LetterLook& look);
    void dropLastBlank();
    void finishRun();
    void finishLine();
    void addRuns();
    RealMatrix matrixOnPath() const;
    Art makeLine();

    ReadingContext& context_;
    LineFrame frame_;

    // The line.
    bool isOpen_ = false;
    bool isTurned_ = false; ///< as a whole
    RealPoint origin_;
    double turn_ = 0;
    double across_ = 0;  ///< from the origin, as SVG counts
    double carried_ = 0; ///< shift of the next letter for the blank before it
    ColumnLetter before_;
    Art art_ = Art::null;
    double scale_ = 1; ///< from lengths of the user space to those of the line's space
    TextLine line_;
    FittedLength fitted_;     ///< of all its letters
    bool isOfPage_ = false;   ///< some of its letters are
    bool inPageFont_ = false; ///< the same of a font of the page
    bool mayTurn_ = false;    ///< it has letters of scripts that run from the right
    bool isMixed_ = false;    ///< the order of its letters is that of none of its elements
    bool passedEnd_ = false;  ///< a line end that is kept came last
    std::optional<TextPath> path_;
    bool leftPath_ = false; ///< no letter since

    // The line before, for lengths of elements that turn out to have several.
    Art lastArt_ = Art::null;
    std::uint32_t lastFitted_ = 0;
    std::uint32_t voided_ = 0; ///< the element of the last length that was counted as lost

    /// A run of the line, and what it holds.
    struct LineRun {
        TextRun run;
        std::string text;
        std::vector<TextPiece> pieces;
        std::vector<TextDecoration> decorations;
    };
    std::vector<LineRun> runs_;

    // The run.
    std::string text_;
    std::vector<TextPiece> pieces_;
    LetterLook look_;
    double rise_ = 0;
    std::int32_t face_ = 0;
    Fixed letterTurn_ = 0;

    bool made_ = false;
    bool endsInBlank_ = false; ///< one that is dropped at the end of a line
};

} // namespace corvane
