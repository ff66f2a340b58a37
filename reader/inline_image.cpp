#include "reader/inline_image.h"

#include "filters/character.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

/// Bytes behind "EI" that must look like page content.
constexpr std::size_t plausibleBytes = 16;

bool looksLikeText(char c) {
    return isSpace(c) ? c != '\0' : c > ' ' && c < '\x7F';
}

/// Whether "EI" ends the data, given what follows white space.
bool isEnd(std::string_view ahead) {
    if (!ahead.starts_with("EI")) {
        return false;
    }
    ahead = ahead.substr(2, plausibleBytes);
    return ahead.empty() ||
           (!isRegular(ahead.front()) && std::all_of(ahead.begin(), ahead.end(), looksLikeText));
}

} // namespace

void skipImageData(TokenFilter& tokens) {
    constexpr std::size_t reach = 3 + plausibleBytes;
    for (;;) {
        const std::string_view ahead = tokens.ahead(reach);
        if (ahead.empty()) {
            return;
        }
        if (isSpace(ahead.front()) && isEnd(ahead.substr(1))) {
            return;
        }
        // On to the next byte that could stand before "EI".
        const auto next = std::find_if(ahead.begin() + 1, ahead.end(), isSpace);
        tokens.skip(static_cast<std::size_t>(next - ahead.begin()));
    }
}

} // namespace corvane
