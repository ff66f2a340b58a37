#include "app/svg/paint/paint_attributes.h"

#include "app/svg/markup.h"
#include "app/svg/paint/colour.h"
#include "app/svg/paint/ink_list.h"

#include <algorithm>
#include <array>
#include <span>

namespace corvane {

namespace {

std::array<char, 7> hexText(ScreenColour colour) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::array<char, 7> text{'#'};
    std::size_t at = 1;
    for (const std::uint8_t byte : {colour.red, colour.green, colour.blue}) {
        text[at++] = digits[byte >> 4];
        text[at++] = digits[byte & 15];
    }
    return text;
}

void writeAmounts(TextOutput& out, const PaintNames& names, std::span<const Fixed, 4> amounts) {
    std::array<std::int64_t, 4> numbers{};
    std::ranges::copy(amounts, numbers.begin());
    writeNumbersAttribute(out, names.cmyk, numbers);
}

bool sameColour(const Colour& left, const Colour& right) {
    if (left.kind == ColourKind::gray || right.kind == ColourKind::gray) {
        return left.kind == right.kind && left.component[0] == right.component[0];
    }
    return left == right;
}

/// The exact amounts or levels of a colour.
void writeExactColour(TextOutput& out, const PaintNames& names, const Colour& colour) {
    if (colour.kind == ColourKind::gray) {
        writeNumberAttribute(out, names.gray, std::int64_t{fixedOne} - colour.component[0]);
        return;
    }
    if (colour.origin == ColourOrigin::fromRgb) {
        const LightLevels levels = lightLevels(colour);
        if (sameColour(processColour(levels), colour)) {
            writeNumbersAttribute(out, names.rgb,
                                  std::array{levels.red, levels.green, levels.blue});
            return;
        }
        writePlainAttribute(out, names.origin, "rgb");
    }
    writeAmounts(out, names, colour.component);
}

void writeVisible(TextOutput& out, const PaintNames& names, ScreenColour visible,
                  bool blackIsDefault) {
    if (!blackIsDefault || visible != ScreenColour{}) {
        const std::array<char, 7> hex = hexText(visible);
        writePlainAttribute(out, names.paint, {hex.data(), hex.size()});
    }
}

void writeSpot(TextOutput& out, const PaintNames& names, const SpotColour& spot, Fixed tint,
               bool blackIsDefault) {
    writeVisible(out, names, screenColour(standIn(spot, tint)), blackIsDefault);
    writeAttribute(out, names.spot, spot.name);
    writeAmounts(out, names, spot.process);
    if (tint != 0) {
        writeNumberAttribute(out, names.tint, tint);
    }
}

/// What is seen of inks is always said exactly, so that it is noticed where somebody changes it.
void writeInks(TextOutput& out, const PaintNames& names, const InkMixture& mixture,
               bool blackIsDefault) {
    writeVisible(out, names, screenColour(mixture.seen), blackIsDefault);
    writeExactColour(out, names, mixture.seen);
    writeInkList(out, names.inks, mixture);
}

} // namespace

void writeColour(TextOutput& out, const PaintNames& names, const Colour& colour,
                 bool blackIsDefault) {
    const ScreenColour visible = screenColour(colour);
    writeVisible(out, names, visible, blackIsDefault);
    if (!sameColour(colour, plainColour(visible))) {
        writeExactColour(out, names, colour);
    }
}

void writePaint(TextOutput& out, const PaintNames& names, const Colour& colour,
                const ElementServers& of, bool blackIsDefault) {
    switch (colour.kind) {
    case ColourKind::gray:
    case ColourKind::process:
        writeColour(out, names, colour, blackIsDefault);
        return;
    case ColourKind::custom:
        writeSpot(out, names, of.servers.document().spotColour(colour.source), colour.component[0],
                  blackIsDefault);
        return;
    case ColourKind::inks:
        writeInks(out, names, of.servers.document().inkMixture(colour.source), blackIsDefault);
        return;
    case ColourKind::pattern:
    case ColourKind::gradient:
        writePlainAttribute(out, names.paint, "url(#" + of.servers.id(colour.source, of.pen) + ")");
        return;
    }
}

} // namespace corvane
