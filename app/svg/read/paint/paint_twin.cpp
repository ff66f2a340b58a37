#include "app/svg/read/paint/paint_twin.h"

#include "app/artwork/geometry/arithmetic.h"
#include "app/svg/paint/ink_list.h"
#include "app/svg/read/values/fixed_number.h"
#include "app/svg/read/values/number_list.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

namespace {

struct TwinNames {
    Attribute gray;
    Attribute rgb;
    Attribute cmyk;
    Attribute origin;
    Attribute spot = Attribute::unknown;
    Attribute tint = Attribute::unknown;
    Attribute inks = Attribute::unknown;
};
constexpr TwinNames fillNames{Attribute::dataFillGray, Attribute::dataFillRgb,
                              Attribute::dataFillCmyk, Attribute::dataFillOrigin,
                              Attribute::dataFillSpot, Attribute::dataFillTint,
                              Attribute::dataFillInks};
constexpr TwinNames strokeNames{Attribute::dataStrokeGray, Attribute::dataStrokeRgb,
                                Attribute::dataStrokeCmyk, Attribute::dataStrokeOrigin,
                                Attribute::dataStrokeSpot, Attribute::dataStrokeTint,
                                Attribute::dataStrokeInks};

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

std::string_view valueOf(const Attributes& attributes, Attribute name) {
    return name == Attribute::unknown ? std::string_view() : attributes[name];
}

std::optional<PaintTwin> twinOf(const Attributes& attributes, const TwinNames& names) {
    const auto twinAs = [&](std::optional<Colour> exact) {
        return PaintTwin{exact, {}, 0, valueOf(attributes, names.inks)};
    };
    if (attributes.has(names.gray)) {
        return twinAs(grayColour(attributes[names.gray]));
    }
    if (attributes.has(names.rgb)) {
        return twinAs(rgbColour(attributes[names.rgb]));
    }
    if (attributes.has(names.cmyk)) {
        PaintTwin twin = twinAs(cmykColour(attributes[names.cmyk], attributes[names.origin]));
        twin.spot = valueOf(attributes, names.spot);
        std::array<double, 1> tint{};
        if (!twin.spot.empty() && parseNumbers(attributes[names.tint], tint)) {
            twin.tint = saturate(wideFixed(tint[0]));
        }
        return twin;
    }
    return std::nullopt;
}

} // namespace

Colour PaintTwin::resolve(ScreenColour visible, Document& document) const {
    if (exact && !spot.empty()) {
        SpotColour ink;
        ink.name = spot;
        std::ranges::copy(exact->component, ink.process.begin());
        if (screenColour(standIn(ink, tint)) == visible) {
            Colour colour;
            colour.kind = ColourKind::custom;
            colour.component[0] = tint;
            colour.source = document.addSpotColour(std::move(ink));
            return colour;
        }
        return plainColour(visible);
    }
    if (!exact || screenColour(*exact) != visible) {
        return plainColour(visible);
    }
    if (std::optional<InkMixture> mixture = parseInkList(inks, *exact)) {
        Colour colour{.kind = ColourKind::inks};
        colour.source = document.addInkMixture(std::move(*mixture));
        return colour;
    }
    return *exact;
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
