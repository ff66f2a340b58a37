// A text object as the classic slots walk it: runs of one-byte letters that follow one another
// without kerning, and where each letter stands.
#pragma once

#include "app/artwork/classic/letter_path.h"
#include "app/artwork/document.h"
#include "host/classic_text.h"
#include "host/matrix.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

class TextWalk {
public:
    TextWalk(const Document& document, Art text);

    struct Run {
        std::int32_t tableRun = 0; ///< of the document
        std::int32_t first = 0;    ///< letter
        std::int32_t count = 0;
        std::int32_t hostFont = -1;
    };
    struct Line {
        RealMatrix matrix;
        std::int32_t first = 0; ///< letter
        std::int32_t count = 0;
    };

    Art text() const { return text_; }
    std::span<const Run> runs() const { return runs_; }
    std::span<const Line> lines() const { return lines_; }
    std::span<const std::uint8_t> letters(const Run& run) const;
    bool isAlongPath() const { return path_.has_value(); }
    /// From the letter's space to the artboard. `letter` is counted in the line.
    RealMatrix glyphMatrix(const Line& line, std::int32_t letter) const;

private:
    void addRun(const Document& document, std::int32_t number);
    void addLetter(std::uint8_t code, double width, const TextRun& run);
    void fitLine(const TextLine& line);

    Art text_;
    std::vector<Run> runs_;
    std::vector<Line> lines_;
    std::vector<std::uint8_t> codes_;
    std::vector<double> places_; ///< where each letter begins along its line
    std::vector<double> widths_;
    std::optional<LetterPath> path_;
    bool isVertical_ = false;
    double stretch_ = 1; ///< of letters, to fit a length
    double pen_ = 0;
};

} // namespace corvane
