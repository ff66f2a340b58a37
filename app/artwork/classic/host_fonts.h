// The host's fonts: the 14 that every page may ask for, drawn by fonts of the machine with the same
// widths, and all that are installed. Each is measured when somebody asks for its metrics.
#pragma once

#include "host/classic_text.h"
#include "host/text.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class HostFonts {
public:
    struct Measured {
        FontInfo info;
        std::array<char32_t, 256> characters{}; ///< of the codes; 0: none
    };

    /// Listed once. The same fonts give the same list.
    static const HostFonts& all();

    std::int32_t count() const { return static_cast<std::int32_t>(fonts_.size()); }
    // Of the font counted `font` from 0. All throw `ArtworkError` where there is none.
    const std::string& name(std::int32_t font) const;
    std::int16_t technology(std::int32_t font) const;
    const Measured& measured(std::int32_t font) const;
    /// The folder that its file is in.
    std::string folder(std::int32_t font) const;

    std::optional<std::int32_t> find(std::string_view name) const;

    /// A font to draw in for want of another, and whether it has the same shapes and widths.
    struct StandIn {
        std::int32_t font = 0;
        bool isAlike = false;
    };
    /// Nothing where no font is installed.
    std::optional<StandIn> standIn(std::string_view name) const;

    /// What artwork calls the font of that name, which need not be there. The strings are those of
    /// the list, or `name`.
    FontFacts facts(std::string_view name) const;
    /// The font that letters of such a font are of, or one that stands in. Nothing where no font is
    /// installed.
    std::optional<std::int32_t> fontOf(const FontFacts& facts) const;

private:
    struct HostFont {
        std::string name;
        std::string family;
        std::int32_t weight = 400;
        bool isItalic = false;
        GenericFamily generic = GenericFamily::sansSerif;
        std::int32_t listed = 0; ///< its place in the list of the machine
    };

    HostFonts();
    const HostFont& at(std::int32_t font) const;
    std::optional<std::int32_t> ofFamily(std::string_view family, std::int32_t weight,
                                         bool isItalic) const;
    std::optional<std::int32_t> ofFile(std::string_view listedName) const;

    std::vector<HostFont> fonts_;
    std::map<std::string, std::int32_t, std::less<>> byName_;
    mutable std::map<std::int32_t, std::unique_ptr<const Measured>> measured_;
};

/// The letter that has that character in a font, by its code; nothing where it has none.
std::optional<std::uint8_t> codeOf(const HostFonts::Measured& font, char32_t character);

} // namespace corvane
