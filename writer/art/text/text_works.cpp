#include "writer/art/text/text_works.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"
#include "writer/art/object_works.h"
#include "writer/art/text/text_style_works.h"

#include <algorithm>
#include <span>

namespace corvane {

namespace {

using Letters = std::span<const std::uint8_t>;

/// Letters of a piece: their octal escapes fit into a line of 255 bytes.
constexpr std::int32_t longestPiece = 60;
constexpr std::uint8_t tab = '\t';

void showWorks(Walk& walk, Letters letters) {
    walk.text.add("(");
    walk.text.addString(letters);
    walk.text.add(") Tj\n");
}

/// The text of one object, walked by its runs and its lines at once.
class TextWalker {
public:
    TextWalker(Walk& walk, Art text) : walk_(walk), text_(text) {}

    void write() {
        callHost(slot::getFirstRun, text_, &run_);
        callHost(slot::getFirstLine, text_, &line_);
        beginRun();
        beginLine();
        while (run_ != RunHandle::null && line_ != LineHandle::null) {
            const auto left = std::min<std::int64_t>(std::ssize(letters_), lineEnd_ - at_);
            const auto count = static_cast<std::int32_t>(
                std::min<std::int64_t>(left, isAlongPath_ ? 1 : longestPiece));
            const Letters piece = letters_.first(static_cast<std::size_t>(count));
            if (isAlongPath_) {
                letterWorks(piece.front());
            } else {
                pieceWorks(piece);
            }
            at_ += count;
            letters_ = letters_.subspan(piece.size());
            endUsed();
        }
    }

private:
    /// Skips runs without letters.
    void beginRun() {
        for (; run_ != RunHandle::null; nextRun()) {
            RunText text;
            callHost(slot::getRunText, run_, &text);
            letters_ = text.letters;
            if (!letters_.empty()) {
                runsStyleWorks(walk_, run_);
                return;
            }
        }
    }

    void nextRun() {
        const RunHandle former = run_;
        callHost(slot::getNextRun, text_, former, &run_);
    }

    /// Skips lines without letters.
    void beginLine() {
        for (; line_ != LineHandle::null; nextLine()) {
            at_ = 0;
            callHost(slot::getLineLength, line_, &lineEnd_);
            if (lineEnd_ > 0) {
                lineStyleWorks(walk_, line_);
                placeLine();
                return;
            }
        }
    }

    void nextLine() {
        const LineHandle former = line_;
        callHost(slot::getNextLine, former, &line_);
    }

    void placeLine() {
        const HostStatus placement = callHost(slot::getLinePlacement, line_);
        if (placement != HostStatus::none && placement != HostStatus::notOnPath) {
            failException(Exception::host);
        }
        isAlongPath_ = placement == HostStatus::none;
    }

    void endUsed() {
        if (letters_.empty()) {
            nextRun();
            beginRun();
        }
        if (at_ >= lineEnd_) {
            nextLine();
            beginLine();
        }
    }

    Matrix glyphMatrix(std::int32_t letter) const {
        Matrix matrix;
        callHost(slot::getGlyphMatrix, line_, letter, &matrix);
        matrix.b = negateFixed(matrix.b); // the host's own y axis points down
        matrix.c = negateFixed(matrix.c);
        return matrix;
    }

    /// A letter whose middle is at its place.
    void letterWorks(std::uint8_t letter) {
        const Matrix place = glyphMatrix(at_);
        const RenderState& state = walk_.shadow.text.wanted;
        const Fixed scale =
            callHost(slot::fixedDivide, walk_.shadow.text.charStyle->horizontalScale, wholePercent);
        const Fixed size = callHost(slot::fixedMultiply, state.size.value_or(0), scale);
        const Fixed width = callHost(slot::fixedMultiply, state.widths[letter], size);
        Matrix move;
        callHost(slot::setIdentityMatrix, &move);
        callHost(slot::setMatrixTranslation, &move, -(width / 2), 0);
        Matrix centred;
        callHost(slot::multiplyMatrix, &move, &place, &centred);
        renderWorks(walk_);
        positionWorks(walk_, centred);
        showWorks(walk_, {&letter, 1});
    }

    /// Tabs are not written: what is behind one has a matrix of its own.
    void pieceWorks(Letters piece) {
        const Matrix place = glyphMatrix(at_);
        renderWorks(walk_);
        positionWorks(walk_, place);
        std::int32_t letter = at_;
        while (true) {
            const auto end = std::ranges::find(piece, tab);
            const auto count = end - piece.begin();
            showWorks(walk_, piece.first(static_cast<std::size_t>(count)));
            if (end == piece.end()) {
                return;
            }
            letter += static_cast<std::int32_t>(count) + 1;
            piece = piece.subspan(static_cast<std::size_t>(count) + 1);
            if (piece.empty()) {
                return; // the next piece has its own matrix
            }
            positionWorks(walk_, glyphMatrix(letter));
        }
    }

    Walk& walk_;
    Art text_;
    RunHandle run_ = RunHandle::null;
    LineHandle line_ = LineHandle::null;
    Letters letters_;     ///< of the run, those that are left
    std::int32_t at_ = 0; ///< in the line
    std::int32_t lineEnd_ = 0;
    bool isAlongPath_ = false;
};

} // namespace

void textWorks(Walk& walk, Art text) {
    Art path = Art::null;
    callHost(slot::getTextPath, text, &path);
    if (const Art outline = firstChild(path); outline != Art::null) {
        objectWorks(walk, outline);
    }
    walk.text.add("BT\n");
    TextWalker(walk, text).write();
    walk.text.add("ET\n");
}

} // namespace corvane
