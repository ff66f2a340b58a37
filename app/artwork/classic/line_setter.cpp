// Letters of an open run become lines of runs: each letter in its place, by the metrics of the
// host's fonts.
#include "app/artwork/classic/host_fonts.h"
#include "app/artwork/classic/roman_letters.h"
#include "app/artwork/classic/text_stream.h"
#include "app/artwork/geometry/geometry.h"
#include "app/artwork/text/characters.h"
#include "host/matrix.h"

#include <cmath>
#include <cstdlib>
#include <string>

namespace corvane {

class LineSetter {
public:
    explicit LineSetter(TextStream& stream)
        : stream_(stream), document_(stream.document_),
          origin_(realMatrix(document_.textLine(stream.text_).matrix)),
          height_(std::hypot(origin_.c, origin_.d)), nextKern_(stream.kerns_.begin()) {}

    void set();

private:
    using Look = TextStream::Look;

    static constexpr std::uint8_t lineEnd = '\r';
    static constexpr double percent = 100.0 * fixedOne;

    void use(const Look& look);
    void takeKern(std::int32_t position);
    void setLetter(std::uint8_t code, char32_t character);
    void beginLine();
    void finishRun();

    TextStream& stream_;
    Document& document_;
    const RealMatrix origin_; ///< of the text object's space
    const double height_;     ///< by how much it makes letters taller

    // The letters in use.
    const Look* look_ = nullptr;
    const HostFonts::Measured* font_ = nullptr; ///< null: there is none to measure by
    bool isSeen_ = false;
    double size_ = 0;       ///< without its sign, as the next
    double spacing_ = 0;    ///< behind each letter
    double blankShift_ = 0; ///< behind a blank, in ems
    double across_ = 0;     ///< from widths to the text object's space; a line has one
    double sign_ = 1;       ///< below 0 letters stand upside down; a line has one

    RealPoint pen_; ///< in the text object's space
    std::int32_t lineEnds_ = 0;
    double shift_ = 0; ///< of the next letter, in ems
    bool isLineOpen_ = false;
    bool hasLines_ = false;
    std::map<std::int32_t, Fixed>::const_iterator nextKern_;

    TextRun run_; ///< without its text
    std::string text_;
    std::vector<TextPiece> pieces_;
};

void LineSetter::use(const Look& look) {
    finishRun();
    look_ = &look;
    font_ = look.hostFont < 0 ? nullptr : &HostFonts::all().measured(look.hostFont);
    const double blank = font_ == nullptr ? 0.0 : font_->info.widths[' '] / double{fixedOne};
    size_ = std::abs(look.size / double{fixedOne});
    spacing_ =
        size_ * (look.tracking / double{fixedOne} / 1000 + blank * (look.letterSpacing / percent));
    blankShift_ = blank * ((look.wordSpacing - double{wholePercent}) / percent);
    const double across = look.horizontalScale / percent;
    const double sign = look.size < 0 ? -1 : 1;
    isLineOpen_ = isLineOpen_ && across == across_ && sign == sign_;
    across_ = across;
    sign_ = sign;
    const double tall = look.verticalScale / percent * height_;
    run_ = TextRun();
    run_.font = look.font;
    run_.size = fixedNumber(size_ * tall);
    run_.rise = fixedNumber(sign * (look.rise / double{fixedOne}) * height_);
    run_.spacing = fixedNumber(spacing_ * tall);
    run_.style = look.paint;
    isSeen_ = std::isfinite(tall) && std::isfinite(1 / tall) && run_.size > 0 && across != 0;
}

void LineSetter::takeKern(std::int32_t position) {
    if (nextKern_ != stream_.kerns_.end() && nextKern_->first == position) {
        shift_ += nextKern_->second / double{fixedOne};
        ++nextKern_;
    }
}

void LineSetter::beginLine() {
    finishRun();
    const RealPoint at = transform(origin_, pen_);
    const double wide = sign_ * across_ / (look_->verticalScale / percent) / height_;
    const double tall = sign_ / height_;
    const Matrix matrix = fixedMatrix(
        {wide * origin_.a, wide * origin_.b, tall * origin_.c, tall * origin_.d, at.x, at.y});
    if (hasLines_) {
        run_.line = matrix;
    } else {
        document_.setTextLine(stream_.text_, {.matrix = matrix});
    }
    hasLines_ = true;
    isLineOpen_ = true;
}

void LineSetter::setLetter(std::uint8_t code, char32_t character) {
    if (lineEnds_ != 0) {
        pen_.y -= lineEnds_ * (look_->leading / double{fixedOne});
        lineEnds_ = 0;
    }
    if (!isLineOpen_) {
        beginLine();
    }
    const double step = sign_ * across_;
    if (const Fixed shift = fixedNumber(shift_); shift != 0) {
        pieces_.push_back({static_cast<std::int32_t>(text_.size()), shift, 0});
        pen_.x += step * shift_ * size_;
    }
    shift_ = code == ' ' ? blankShift_ : 0;
    appendCharacter(text_, character);
    const double width = font_ == nullptr ? 0.0 : font_->info.widths[code] / double{fixedOne};
    pen_.x += step * (width * size_ + spacing_);
}

void LineSetter::finishRun() {
    if (!text_.empty()) {
        run_.text = text_;
        run_.pieces = pieces_;
        document_.addTextRun(stream_.text_, run_);
        run_.line.reset();
    }
    text_.clear();
    pieces_.clear();
}

void LineSetter::set() {
    auto span = stream_.spans_.begin();
    std::int32_t position = 0;
    for (const std::uint8_t code : stream_.letters_) {
        if (span != stream_.spans_.end() && span->first == position) {
            use(stream_.looks_[span->look]);
            ++span;
        }
        takeKern(position++);
        if (code == lineEnd) {
            finishRun();
            pen_.x = 0;
            shift_ = 0;
            ++lineEnds_;
            isLineOpen_ = false;
            continue;
        }
        const char32_t character = font_ == nullptr ? romanLetters[code] : font_->characters[code];
        if (isSeen_ && isMarkupCharacter(character)) {
            setLetter(code, character);
        }
    }
    finishRun();
}

void TextStream::finish() {
    LineSetter(*this).set();
}

} // namespace corvane
