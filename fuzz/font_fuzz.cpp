// Any bytes as a font program: every glyph is looked at, a font is made of them, and what is read
// back from that is the same.
#include "fonts/font_program.h"
#include "fonts/made/made_font.h"
#include "fuzz/targets.h"

#include <algorithm>
#include <cmath>

namespace corvane::fuzz {

namespace {

/// Further glyphs take the same ways.
constexpr std::uint32_t mostGlyphs = 200;

double rounded(double ems) {
    constexpr double reach = madeReach * madeUnits;
    return std::clamp(std::round(ems * madeUnits), -reach, reach) / madeUnits;
}

OutlinePoint rounded(OutlinePoint point) {
    return {rounded(point.x), rounded(point.y)};
}

/// As a made font holds it: on its grid, without lines of no length, and without contours of
/// nothing else.
GlyphOutline onGrid(const GlyphOutline& outline) {
    GlyphOutline result;
    for (const Contour& contour : outline) {
        Contour kept{rounded(contour.start), {}};
        OutlinePoint here = kept.start;
        for (const OutlineStep& step : contour.steps) {
            const OutlinePoint to = rounded(step.to);
            if (step.isCurve) {
                kept.steps.push_back({true, rounded(step.first), rounded(step.second), to});
            } else if (to != here) {
                kept.steps.push_back({false, {}, {}, to});
            }
            here = to;
        }
        while (!kept.steps.empty() && !kept.steps.back().isCurve &&
               kept.steps.back().to == kept.start) {
            kept.steps.pop_back();
        }
        if (!kept.steps.empty()) {
            result.push_back(std::move(kept));
        }
    }
    return result;
}

bool near(OutlinePoint a, OutlinePoint b) {
    return std::abs(a.x - b.x) < 1e-9 && std::abs(a.y - b.y) < 1e-9;
}

bool isSame(const GlyphOutline& a, const GlyphOutline& b) {
    const auto sameStep = [](const OutlineStep& x, const OutlineStep& y) {
        return x.isCurve == y.isCurve && near(x.to, y.to) &&
               (!x.isCurve || (near(x.first, y.first) && near(x.second, y.second)));
    };
    return std::ranges::equal(a, b, [&](const Contour& x, const Contour& y) {
        return near(x.start, y.start) && std::ranges::equal(x.steps, y.steps, sameStep);
    });
}

void askAll(const FontProgram& program, Choices& choices) {
    (void)program.isSymbolic();
    (void)program.familyName();
    (void)program.mayBeEmbedded();
    require(std::isfinite(program.ascent()) && std::isfinite(program.descent()));
    const auto known = [&](std::optional<GlyphNumber> glyph) {
        require(!glyph || (*glyph != 0 && *glyph < program.glyphCount()));
    };
    for (std::uint32_t code = 0; code < 256; ++code) {
        known(program.byOwnCode(static_cast<std::uint8_t>(code)));
        known(program.byCharacter(code));
        known(program.bySubtable(1, 0, code));
        known(program.bySubtable(3, 0, code));
        known(program.byCid(choices.below(0x10000)));
    }
    known(program.byName("A"));
}

} // namespace

void fuzzFont(Bytes input) {
    Choices choices(input);
    const auto program = FontProgram::open({input.begin(), input.end()});
    if (!program) {
        return;
    }
    askAll(*program, choices);
    MadeFont font;
    font.family = program->familyName();
    const std::uint32_t count = std::min(program->glyphCount(), mostGlyphs);
    for (GlyphNumber glyph = 0; glyph < count; ++glyph) {
        const char32_t character = program->characterOf(glyph);
        (void)program->nameOf(glyph);
        font.glyphs.push_back({program->outline(glyph), program->advance(glyph),
                               character != 0 ? std::u32string{character}
                                              : std::u32string{U'a', 0x20000 + glyph, U'b'}});
    }
    const std::vector<std::byte> file = writeMadeFont(font);
    require(file == writeMadeFont(font));
    const auto made = FontProgram::open(file);
    require(made != nullptr && made->glyphCount() > count);
    for (GlyphNumber glyph = 0; glyph < count; ++glyph) {
        const MadeGlyph& wanted = font.glyphs[glyph];
        require(isSame(made->outline(glyph + 1), onGrid(wanted.outline)));
        const double advance = std::clamp(std::round(wanted.advance * madeUnits), 0.0, 32767.0);
        require(std::abs(made->advance(glyph + 1) * madeUnits - advance) < 1e-6);
    }
}

} // namespace corvane::fuzz
