#include "writer/art/text/text_style_works.h"

#include "objects/family.h"
#include "runtime/callbacks.h"
#include "runtime/string.h"
#include "writer/art/style_works.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

/// Alignments of lines that were spaced to fill their width.
constexpr std::int32_t justified = 4;
constexpr std::int32_t allJustified = 5;

constexpr Fixed hundred = 100 * fixedOne;
constexpr Fixed thousand = 1000 * fixedOne;

Fixed product(Fixed a, Fixed b) {
    return callHost(slot::fixedMultiply, a, b);
}

Fixed quotient(Fixed a, Fixed b) {
    return callHost(slot::fixedDivide, a, b);
}

void faceStyleWorks(Walk& walk, std::string_view name, std::int16_t technology) {
    TextShadow& shadow = walk.shadow.text;
    if (shadow.faceStyle == name) {
        return;
    }
    const auto font = walk.fonts.find(name);
    if (!font) {
        failException(Exception::structure);
    }
    const FontInfo& info = walk.fonts.info(*font);
    std::ranges::copy(info.widths, shadow.wanted.widths.begin());
    shadow.wanted.width = info.widths[' '];
    shadow.wanted.family = appendFamily(name, static_cast<FontTechnology>(technology));
    shadow.faceStyle = name;
}

void charStyleWorks(Walk& walk, const CharStyle& style) {
    TextShadow& shadow = walk.shadow.text;
    const std::optional<CharStyle>& former = shadow.charStyle;
    const auto write = [&walk](Fixed value, std::string_view word) {
        walk.text.add(value);
        walk.text.add(word);
    };
    if (!former || former->rise != style.rise) {
        write(style.rise, "Ts\n");
    }
    if (!former || former->leading != style.leading) {
        write(style.leading, "TL\n");
    }
    if (!former || former->horizontalScale != style.horizontalScale ||
        former->verticalScale != style.verticalScale) {
        write(style.horizontalScale, "Tz\n");
    }
    shadow.wanted.size = style.size;
    shadow.charStyle = style;
}

/// Writes the value where another is in force.
void spaceWorks(Walk& walk, std::optional<Fixed>& written, Fixed value, std::string_view word) {
    if (written != value) {
        walk.text.add(value);
        walk.text.add(word);
        written = value;
    }
}

} // namespace

void runsStyleWorks(Walk& walk, RunHandle run) {
    PathStyle paint;
    callHost(slot::getRunStyle, run, &paint);
    CharStyle letters;
    callHost(slot::getRunCharStyle, run, &letters);
    pathStyleWorks(walk, paint);
    const std::span<const std::uint8_t> name = prefixedBytes(letters.font);
    faceStyleWorks(walk, std::string(name.begin(), name.end()), letters.technology);
    charStyleWorks(walk, letters);
    callHost(slot::getRunParaStyle, run, &walk.shadow.text.paraStyle);
}

void lineStyleWorks(Walk& walk, LineHandle line) {
    callHost(slot::getLineStyle, line, &walk.shadow.text.flowStyle);
}

void renderWorks(Walk& walk) {
    TextShadow& shadow = walk.shadow.text;
    RenderState& wanted = shadow.wanted;
    RenderState& written = shadow.written;
    const Fixed size = wanted.size.value_or(0);
    if (written.family != wanted.family || written.size != size) {
        walk.text.addName(wanted.family);
        walk.text.add(size);
        walk.text.add("Tf\n");
        written.family = wanted.family;
        written.size = size;
        written.width = wanted.width;
        written.widths = wanted.widths;
    }
    const CharStyle& letters = *shadow.charStyle;
    const ParaStyle& paragraph = shadow.paraStyle;
    const FlowStyle& flow = shadow.flowStyle;
    const Fixed unit = product(wanted.width, size);
    Fixed charSpace = quotient(quotient(letters.tracking, thousand), wanted.width);
    Fixed wordSpace = 0;
    if (paragraph.alignment != justified && paragraph.alignment != allJustified) {
        charSpace =
            detail::saturated(std::int64_t{charSpace} + quotient(paragraph.letterSpacing, hundred));
        wordSpace = quotient(
            detail::saturated(std::int64_t{paragraph.wordSpacing} - paragraph.letterSpacing),
            hundred);
    } else {
        charSpace = detail::saturated(std::int64_t{charSpace} + flow.letterSpacing);
        wordSpace = detail::saturated(std::int64_t{flow.wordSpacing} - flow.letterSpacing);
    }
    wanted.charSpace = product(unit, charSpace);
    wanted.wordSpace = product(unit, detail::saturated(std::int64_t{wordSpace} - fixedOne));
    spaceWorks(walk, written.wordSpace, *wanted.wordSpace, "Tw\n");
    spaceWorks(walk, written.charSpace, *wanted.charSpace, "Tc\n");
    if (written.render != wanted.render) {
        walk.text.addInteger(wanted.render.value_or(0));
        walk.text.add("Tr\n");
        written.render = wanted.render;
    }
}

void positionWorks(Walk& walk, const Matrix& matrix) {
    for (const Fixed value : {matrix.a, matrix.b, matrix.c, matrix.d, matrix.tx, matrix.ty}) {
        walk.text.add(value);
    }
    walk.text.add("Tm\n");
}

} // namespace corvane
