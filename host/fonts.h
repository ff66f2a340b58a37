// Fonts that are installed on the machine.
#pragma once

#include "host/zone.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

struct FontRequest {
    /// As a document or artwork gives it: "ABCDEF+Arial,Bold", "TimesNewRomanPS-ItalicMT", "DejaVu
    /// Sans". Words of style in it count like the fields below.
    std::string name;
    std::int32_t weight = 400; ///< 100 to 900
    bool isItalic = false;
    bool isSerif = false;
    bool isFixedPitch = false;
    /// A font that has all of them comes before one that does not, whatever its name.
    std::u32string characters{};
    /// Paths of files that will not do.
    std::vector<std::string> passedOver{};
    /// The asker cannot use fonts in the older form Type 1.
    bool isOpenType = false;
};

/// How good an answer is.
enum class FontMatch : std::int32_t {
    named,   ///< the font of that name, or of that family
    standIn, ///< one made with the same advances, for a font that every PDF reader knows
    similar  ///< another family
};

struct FoundFont {
    std::string path;
    std::int32_t face = 0; ///< in a file of several fonts
    FontMatch match = FontMatch::similar;
    std::int32_t weight = 400;
    bool isItalic = false;
};

/// The best font there is. The same fonts give the same answer. Nothing only where no font is
/// installed.
TOOLBOX_CALL std::optional<FoundFont> findFont(const FontRequest& request);

} // namespace corvane
