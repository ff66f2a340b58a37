#include "app/artwork/classic/roman_letters.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

constexpr std::u32string_view upperHalf =
    U"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    U"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄¤‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(upperHalf.size() == 128);

constexpr std::array<char32_t, 256> letters() {
    std::array<char32_t, 256> all{};
    for (char32_t code = ' '; code < 127; ++code) {
        all[code] = code;
    }
    std::ranges::copy(upperHalf, all.begin() + 128);
    return all;
}

} // namespace

const std::array<char32_t, 256> romanLetters = letters();

} // namespace corvane
