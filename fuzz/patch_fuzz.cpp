// Any bytes as the content of a page that is edited and saved. Where they begin with a comment, its
// first letters choose the edits; byte 127 divides streams.
#include "fuzz/support/patch_page.h"
#include "fuzz/support/recipe.h"
#include "fuzz/support/sound_save.h"

#include <algorithm>

namespace corvane::fuzz {

void fuzzPatch(Bytes input) {
    constexpr std::size_t mostChoices = 32;
    constexpr char divider = 127;
    constexpr std::size_t mostStreams = 8;
    std::vector<std::string> streams(1);
    for (const std::byte byte : input) {
        const char letter = static_cast<char>(byte);
        if (letter == divider && streams.size() < mostStreams) {
            streams.emplace_back();
        } else {
            streams.back() += letter;
        }
    }
    const bool hasRecipe = streams[0].starts_with('%');
    const std::size_t length =
        std::min({streams[0].find_first_of("\r\n"), streams[0].size(), mostChoices});
    Recipe edits(hasRecipe ? input.subspan(1, length - 1) : Bytes());
    const std::string file = patchPage(streams, "/MediaBox [0 0 612 792]");
    requireSoundSave(std::as_bytes(std::span(file)), Profile::extended,
                     [&](std::uint32_t limit) { return edits.below(limit); });
}

} // namespace corvane::fuzz
