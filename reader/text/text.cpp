#include "reader/text/text.h"

#include "reader/content/state.h"

#include <numeric>

namespace corvane {

void openText(TextState& text) {
    auto font = std::make_shared<TextFont>();
    std::iota(font->encoding.begin(), font->encoding.end(), std::uint8_t{0});
    text = TextState();
    text.font = std::move(font);
}

} // namespace corvane
