#include "fonts/made/made_glyphs.h"

#include <cmath>
#include <set>
#include <span>
#include <string_view>

namespace corvane {

namespace {

/// A step between two points is at most twice as long, and has 16 bits.
constexpr auto reachUnits = static_cast<std::int32_t>(madeReach * madeUnits);
static_assert(2 * reachUnits <= 0x7FFF);

/// Advances have 16 bits, and CFF keeps one for the sign.
constexpr std::int32_t longestAdvance = 0x7FFF;

/// CFF numbers the names of glyphs up to 64,999, and 391 names are its own.
constexpr std::size_t mostGlyphs = 64'000;

UnitBox boxOf(const GlyphOutline& outline) {
    UnitBox box{INT32_MAX, INT32_MAX, INT32_MIN, INT32_MIN};
    const auto take = [&](const OutlinePoint& point) {
        const auto [x, y] = unitsOf(point);
        box = {std::min(box.left, x), std::min(box.bottom, y), std::max(box.right, x),
               std::max(box.top, y)};
    };
    for (const Contour& contour : outline) {
        take(contour.start);
        for (const OutlineStep& step : contour.steps) {
            if (step.isCurve) {
                take(step.first);
                take(step.second);
            }
            take(step.to);
        }
    }
    return outline.empty() ? UnitBox{} : box;
}

} // namespace

std::int32_t unitsOf(double ems, std::int32_t reach) {
    const double units = std::round(ems * madeUnits);
    if (std::isnan(units)) {
        return 0;
    }
    return static_cast<std::int32_t>(std::clamp<double>(units, -reach, reach));
}

UnitPoint unitsOf(const OutlinePoint& point) {
    return {unitsOf(point.x, reachUnits), unitsOf(point.y, reachUnits)};
}

GlyphOrder orderGlyphs(const MadeFont& font) {
    constexpr std::int32_t missingAdvance = madeUnits / 2;
    GlyphOrder order;
    order.glyphs.push_back({nullptr, missingAdvance, {}, {}});
    const std::span<const MadeGlyph> glyphs(font.glyphs.data(),
                                            std::min(font.glyphs.size(), mostMadeGlyphs));
    std::set<std::u32string_view> texts;
    const auto give = [&](char32_t character) {
        const auto number = static_cast<std::uint16_t>(order.glyphs.size());
        return order.byCharacter.try_emplace(character, number).second;
    };
    for (const MadeGlyph& glyph : glyphs) {
        const bool isFirst = texts.insert(glyph.text).second;
        if (isFirst && glyph.text.size() == 1) {
            give(glyph.text.front());
        }
        order.glyphs.push_back({&glyph.outline, std::max(0, unitsOf(glyph.advance, longestAdvance)),
                                boxOf(glyph.outline), isFirst ? glyph.text : std::u32string()});
    }
    for (const MadeGlyph& glyph : glyphs) {
        for (const char32_t character : glyph.text) {
            if (order.glyphs.size() < mostGlyphs && give(character)) {
                order.glyphs.push_back({nullptr, 0, {}, {character}});
            }
        }
    }
    if (order.glyphs.size() == 1) {
        order.glyphs.push_back({}); // browsers refuse a font of one glyph
    }
    return order;
}

} // namespace corvane
