#include "reader/text/text.h"

#include "reader/content/state.h"

#include <numeric>

namespace corvane {

void openText() {
    auto font = std::make_shared<TextFont>();
    std::iota(font->encoding.begin(), font->encoding.end(), std::uint8_t{0});
    state.text = TextState();
    state.text.font = std::move(font);
}

void closeText() {
    state.text = TextState();
}

} // namespace corvane
