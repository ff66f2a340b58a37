#include "app/artwork/classic/host_fonts.h"

#include "app/artwork/classic/roman_letters.h"
#include "app/artwork/error.h"
#include "app/artwork/geometry/arithmetic.h"
#include "host/fonts.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace corvane {

namespace {

struct StandardFont {
    std::string_view name;
    std::string_view family;
    GenericFamily generic;
    std::int32_t weight = 400;
    bool isItalic = false;
};

constexpr auto sans = GenericFamily::sansSerif;
constexpr auto serif = GenericFamily::serif;
constexpr auto mono = GenericFamily::monospace;
constexpr std::array<StandardFont, 14> standardFonts = {{
    {"Courier", "Courier", mono},
    {"Courier-Bold", "Courier", mono, 700},
    {"Courier-Oblique", "Courier", mono, 400, true},
    {"Courier-BoldOblique", "Courier", mono, 700, true},
    {"Helvetica", "Helvetica", sans},
    {"Helvetica-Bold", "Helvetica", sans, 700},
    {"Helvetica-Oblique", "Helvetica", sans, 400, true},
    {"Helvetica-BoldOblique", "Helvetica", sans, 700, true},
    {"Times-Roman", "Times", serif},
    {"Times-Bold", "Times", serif, 700},
    {"Times-Italic", "Times", serif, 400, true},
    {"Times-BoldItalic", "Times", serif, 700, true},
    {"Symbol", "Symbol", serif},
    {"ZapfDingbats", "ZapfDingbats", sans},
}};

/// The longest name that a length-prefixed string holds.
constexpr std::size_t longestName = 255;

char smallLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isSameFamily(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, smallLetter, smallLetter);
}

Fixed fixedEms(double ems) {
    const double scaled = ems * fixedOne;
    return std::isfinite(scaled) ? saturate(std::llround(std::clamp(scaled, -0x1p31, 0x1p31))) : 0;
}

FontInfo infoOf(const FontMetrics& metrics, std::int32_t listed) {
    FontInfo info;
    info.identifiers[0] = static_cast<std::int16_t>(listed & 0xFFFF);
    info.identifiers[1] = static_cast<std::int16_t>(listed >> 16);
    info.leading = fixedEms(metrics.leading);
    info.ascent = fixedEms(metrics.ascent);
    info.descent = fixedEms(metrics.descent);
    info.bounds = {fixedEms(metrics.left), fixedEms(metrics.top), fixedEms(metrics.right),
                   fixedEms(metrics.bottom)};
    std::ranges::transform(metrics.widths, info.widths, fixedEms);
    return info;
}

} // namespace

const HostFonts& HostFonts::all() {
    static const HostFonts fonts;
    return fonts;
}

HostFonts::HostFonts() {
    for (const StandardFont& font : standardFonts) {
        const auto found = findFont({.name = std::string(font.name)});
        if (const auto listed = found ? placeOfFont(found->name) : std::nullopt) {
            fonts_.push_back({std::string(font.name), std::string(font.family), font.weight,
                              font.isItalic, font.generic, *listed});
        }
    }
    std::int32_t place = 0;
    for (const ListedFont& font : listFonts()) {
        const bool isStandard =
            std::ranges::find(standardFonts, font.name, &StandardFont::name) != standardFonts.end();
        if (!isStandard && font.name.size() <= longestName) {
            fonts_.push_back({font.name, font.family, std::clamp(font.weight, 100, 900),
                              font.isItalic, font.isFixedPitch ? mono : sans, place});
        }
        ++place;
    }
    for (std::int32_t font = 0; font < count(); ++font) {
        byName_.emplace(fonts_[static_cast<std::size_t>(font)].name, font);
    }
}

const HostFonts::HostFont& HostFonts::at(std::int32_t font) const {
    if (font < 0 || font >= count()) {
        throw ArtworkError("the host has no such font");
    }
    return fonts_[static_cast<std::size_t>(font)];
}

const std::string& HostFonts::name(std::int32_t font) const {
    return at(font).name;
}

std::int16_t HostFonts::technology(std::int32_t font) const {
    const ListedFont& listed = listFonts()[static_cast<std::size_t>(at(font).listed)];
    return listed.isTrueType ? trueTypeTechnology : type1Technology;
}

std::string HostFonts::folder(std::int32_t font) const {
    const std::string& path = listFonts()[static_cast<std::size_t>(at(font).listed)].path;
    return path.substr(0, path.rfind('/'));
}

const HostFonts::Measured& HostFonts::measured(std::int32_t font) const {
    const HostFont& wanted = at(font);
    std::unique_ptr<const Measured>& kept = measured_[font];
    if (kept == nullptr) {
        const auto metrics = measureFont(wanted.listed, romanLetters);
        if (!metrics) {
            throw ArtworkError("a font cannot be read");
        }
        kept = std::make_unique<const Measured>(
            Measured{infoOf(*metrics, wanted.listed), metrics->characters});
    }
    return *kept;
}

std::optional<std::int32_t> HostFonts::find(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? std::nullopt : std::optional(found->second);
}

/// Standard fonts come before those of their files.
std::optional<std::int32_t> HostFonts::ofFile(std::string_view listedName) const {
    const auto listed = placeOfFont(listedName);
    const auto found =
        listed ? std::ranges::find(fonts_, *listed, &HostFont::listed) : fonts_.end();
    return found == fonts_.end() ? std::nullopt
                                 : std::optional(static_cast<std::int32_t>(found - fonts_.begin()));
}

std::optional<HostFonts::StandIn> HostFonts::standIn(std::string_view name) const {
    const auto found = findFont({.name = std::string(name)});
    const auto font = found ? ofFile(found->name) : std::nullopt;
    return font ? std::optional(StandIn{*font, found->match != FontMatch::similar}) : std::nullopt;
}

std::optional<std::int32_t> HostFonts::ofFamily(std::string_view family, std::int32_t weight,
                                                bool isItalic) const {
    constexpr std::int32_t otherSlant = 1000;
    std::optional<std::int32_t> best;
    std::int32_t least = 0;
    for (std::int32_t i = 0; i < count(); ++i) {
        const HostFont& font = fonts_[static_cast<std::size_t>(i)];
        if (!isSameFamily(font.family, family)) {
            continue;
        }
        const std::int32_t distance =
            std::abs(font.weight - weight) + (font.isItalic != isItalic ? otherSlant : 0);
        if (!best || distance < least) {
            best = i;
            least = distance;
        }
    }
    return best;
}

FontFacts HostFonts::facts(std::string_view name) const {
    const auto place = find(name);
    FontFacts facts;
    facts.family = name;
    if (!place) {
        const auto found = findFont({.name = std::string(name)});
        facts.weight = static_cast<std::int16_t>(found ? std::clamp(found->weight, 100, 900) : 400);
        facts.italic = found && found->isItalic;
        return facts;
    }
    const HostFont& font = at(*place);
    facts.weight = static_cast<std::int16_t>(font.weight);
    facts.italic = font.isItalic;
    facts.generic = font.generic;
    if (ofFamily(font.family, font.weight, font.isItalic) == place) {
        facts.family = font.family;
    } else {
        // Others of the family look the same to a style: only its own name tells the font.
        facts.family = font.name;
        facts.realFamily = font.family;
    }
    return facts;
}

std::optional<std::int32_t> HostFonts::fontOf(const FontFacts& facts) const {
    const auto ofName = [&](std::string_view family) {
        const auto font = ofFamily(family, facts.weight, facts.italic);
        return font ? font : find(family);
    };
    if (const auto font = ofName(facts.family)) {
        return font;
    }
    if (const auto font = ofName(facts.realFamily)) {
        return font;
    }
    const std::string_view wanted = facts.realFamily.empty() ? facts.family : facts.realFamily;
    const auto found = findFont({.name = std::string(wanted),
                                 .weight = facts.weight,
                                 .isItalic = facts.italic,
                                 .isSerif = facts.generic == GenericFamily::serif,
                                 .isFixedPitch = facts.generic == GenericFamily::monospace});
    return found ? ofFile(found->name) : std::nullopt;
}

std::optional<std::uint8_t> codeOf(const HostFonts::Measured& font, char32_t character) {
    if (character < 128 && font.characters[character] == character) {
        return static_cast<std::uint8_t>(character);
    }
    const auto found = std::ranges::find(font.characters, character);
    if (character == 0 || found == font.characters.end()) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(found - font.characters.begin());
}

} // namespace corvane
