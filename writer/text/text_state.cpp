#include "writer/text/text_state.h"

#include "reader/text/render_mode.h"

#include <string>
#include <utility>

namespace corvane {

namespace {

constexpr double hundred = 100;
constexpr double thousand = 1000;

void addHexadecimal(std::string& text, char c) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4U];
    text += digits[byte & 15U];
}

} // namespace

void textStateWorks(Walk& walk, const NewTextState& state) {
    for (const auto& [value, word] :
         {std::pair(state.characterSpacing, "Tc "), std::pair(state.wordSpacing, "Tw "),
          std::pair(state.horizontalScale * hundred, "Tz "), std::pair(state.rise, "Ts ")}) {
        walk.text.addReal(value + 0.0);
        walk.text.add(word);
    }
    walk.text.addReal(state.mode);
    walk.text.add("Tr\n");
}

void riseWorks(Walk& walk, double rise) {
    walk.text.addReal(rise + 0.0);
    walk.text.add("Ts ");
}

void textMatrixWorks(Walk& walk, const RealMatrix& matrix) {
    walk.text.addMatrix(withoutSignedZeros(matrix));
    walk.text.add("Tm\n");
}

std::int32_t textModeOf(const PathStyle& style) {
    const bool fills = style.fillPaint != 0;
    const std::int32_t mode = style.strokePaint != 0 ? (fills ? 2 : 1) : fills ? 0 : invisibleMode;
    return mode + (style.clip != 0 ? firstClippingMode : 0);
}

void stringWorks(Walk& walk, std::string_view codes) {
    if (codes.empty()) {
        return;
    }
    std::string text = "<";
    for (const char c : codes) {
        addHexadecimal(text, c);
    }
    walk.text.add(text + "> ");
}

void gapWorks(Walk& walk, double ems) {
    walk.text.addReal(-thousand * ems + 0.0, gapDigits);
}

} // namespace corvane
