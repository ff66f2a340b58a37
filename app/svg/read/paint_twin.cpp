#include "app/svg/read/paint_twin.h"

#include "app/artwork/arithmetic.h"
#include "app/svg/read/fixed_number.h"
#include "app/svg/read/number_list.h"

#include <array>

namespace corvane {

namespace {

struct TwinNames {
    Attribute gray;
    Attribute rgb;
    Attribute cmyk;
    Attribute origin;
};
constexpr TwinNames fillNames{Attribute::dataFillGray, Attribute::dataFillRgb,
                              Attribute::dataFillCmyk, Attribute::dataFillOrigin};
constexpr TwinNames strokeNames{Attribute::dataStrokeGray, Attribute::dataStrokeRgb,
                                Attribute::dataStrokeCmyk, Attribute::dataStrokeOrigin};

constexpr TwinNames stopNames{Attribute::dataStopGray, Attribute::dataStopRgb,
                              Attribute::dataStopCmyk, Attribute::dataStopOrigin};

std::optional<Colour> grayColour(std::string_view text) {
    std::array<double, 1> level{};
    if (!parseNumbers(text, level)) {
        return std::nullopt;
    }
    Colour colour;
    colour.component[0] = saturate(std::int64_t{fixedOne} - wideFixed(level[0]));
    return colour;
}

std::optional<Colour> rgbColour(std::string_view text) {
    std::array<double, 3> levels{};
    if (!parseNumbers(text, levels)) {
        return std::nullopt;
    }
    return processColour({wideFixed(levels[0]), wideFixed(levels[1]), wideFixed(levels[2])});
}

std::optional<Colour> cmykColour(std::string_view text, std::string_view origin) {
    std::array<double, 4> amounts{};
    if (!parseNumbers(text, amounts)) {
        return std::nullopt;
    }
    Colour colour;
    colour.kind = ColourKind::process;
    colour.origin = origin == "rgb" ? ColourOrigin::fromRgb : ColourOrigin::given;
    for (std::size_t i = 0; i < amounts.size(); ++i) {
        colour.component[i] = saturate(wideFixed(amounts[i]));
    }
    return colour;
}

std::optional<PaintTwin> twinOf(const Attributes& attributes, const TwinNames& names) {
    if (attributes.has(names.gray)) {
        return PaintTwin{grayColour(attributes[names.gray])};
    }
    if (attributes.has(names.rgb)) {
        return PaintTwin{rgbColour(attributes[names.rgb])};
    }
    if (attributes.has(names.cmyk)) {
        return PaintTwin{cmykColour(attributes[names.cmyk], attributes[names.origin])};
    }
    return std::nullopt;
}

} // namespace

Colour PaintTwin::resolve(ScreenColour visible) const {
    return exact && screenColour(*exact) == visible ? *exact : plainColour(visible);
}

std::optional<PaintTwin> fillTwin(const Attributes& attributes) {
    return twinOf(attributes, fillNames);
}

std::optional<PaintTwin> strokeTwin(const Attributes& attributes) {
    return twinOf(attributes, strokeNames);
}

std::optional<PaintTwin> stopTwin(const Attributes& attributes) {
    return twinOf(attributes, stopNames);
}

} // namespace corvane
