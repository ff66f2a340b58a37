#include "app/svg/root.h"

#include "app/svg/markup.h"
#include "host/number.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

namespace {

/// Of the data- attributes' meaning; a reader that knows only older ones can say so.
constexpr std::string_view formatVersion = "1";

/// To the nearest 16.16 number; what is not a number counts as 0, what is too large is cut.
std::int64_t toFixed(double value) {
    constexpr double largest = 0x1p46;
    return std::isnan(value) ? 0
                             : static_cast<std::int64_t>(
                                   std::clamp(std::nearbyint(value * fixedOne), -largest, largest));
}

std::string hexText(std::uint64_t value) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text(16, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value >>= 4) {
        *digit = digits[value & 15];
    }
    return text;
}

std::string boxText(const Box& box) {
    return numberText(toFixed(box.left)) + ' ' + numberText(toFixed(box.bottom)) + ' ' +
           numberText(toFixed(box.right)) + ' ' + numberText(toFixed(box.top));
}

/// The width and height as drawn: `viewBox` in points of the artwork, the size in points of paper.
void writeSize(TextOutput& out, const Rect& bounds, double userUnit) {
    const std::int64_t width = std::int64_t{bounds.right} - bounds.left;
    const std::int64_t height = std::int64_t{bounds.top} - bounds.bottom;
    if (width <= 0 || height <= 0) {
        return;
    }
    const auto scaled = [&](std::int64_t length) {
        return numberText(toFixed(static_cast<double>(length) / fixedOne * userUnit));
    };
    writePlainAttribute(out, "width", scaled(width) + "pt");
    writePlainAttribute(out, "height", scaled(height) + "pt");
    writePlainAttribute(out, "viewBox", "0 0 " + numberText(width) + ' ' + numberText(height));
}

void writePage(TextOutput& out, const Page& page) {
    if (page.profile() == Profile::original) {
        writePlainAttribute(out, "data-profile", "original");
    }
    const Rect& bounds = page.bounds();
    const ArtboardSize& artboard = page.artboard();
    const bool hasArtboard = artboard.width != 0 || artboard.height != 0;
    const bool isEmpty = bounds == Rect{};
    const bool isArtboard =
        !hasArtboard || (bounds.right == artboard.width && bounds.top == artboard.height);
    if (!isEmpty && (bounds.left != 0 || bounds.bottom != 0 || !isArtboard)) {
        writePlainAttribute(out, "data-bounds",
                            numberText(bounds.left) + ' ' + numberText(bounds.bottom) + ' ' +
                                numberText(bounds.right) + ' ' + numberText(bounds.top));
    }
    if (hasArtboard) {
        writePlainAttribute(out, "data-artboard",
                            numberText(artboard.width) + ' ' + numberText(artboard.height));
    }
}

void writeIdentity(TextOutput& out, const PageIdentity& identity) {
    const PageFacts& page = identity.page;
    writePlainAttribute(out, "data-object",
                        std::to_string(page.objectNumber) + ' ' + std::to_string(page.generation));
    writePlainAttribute(out, "data-digest", hexText(identity.digest));
    writePlainAttribute(out, "data-media-box", boxText(page.mediaBox));
    if (page.rotate != 0) {
        writePlainAttribute(out, "data-rotate", std::to_string(page.rotate));
    }
    if (page.userUnit != 1.0) {
        writeNumberAttribute(out, "data-user-unit", toFixed(page.userUnit));
    }
}

void writeProvenance(TextOutput& out, const Provenance& provenance) {
    if (!provenance.sourceFile.empty()) {
        writeAttribute(out, "data-file", provenance.sourceFile);
    }
    if (provenance.page != 0) {
        writePlainAttribute(out, "data-page", std::to_string(provenance.page));
    }
    if (provenance.identity) {
        writeIdentity(out, *provenance.identity);
    }
    if (provenance.artwork) {
        writePlainAttribute(out, "data-artwork", hexText(*provenance.artwork));
    }
    std::string omitted;
    for (const auto& [kind, count] : provenance.omitted) {
        omitted += omitted.empty() ? "" : " ";
        omitted += kind;
        omitted += ':' + std::to_string(count);
    }
    if (!omitted.empty()) {
        writeAttribute(out, "data-omitted", omitted);
    }
}

} // namespace

void writeRootStart(TextOutput& out, const Page& page, const Provenance& provenance,
                    const RootNeeds& needs) {
    double userUnit = provenance.identity ? provenance.identity->page.userUnit : 1.0;
    if (!(userUnit > 0) || std::isinf(userUnit)) {
        userUnit = 1.0;
    }
    out.text("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg");
    writePlainAttribute(out, "xmlns", "http://www.w3.org/2000/svg");
    writePlainAttribute(out, "xmlns:inkscape", "http://www.inkscape.org/namespaces/inkscape");
    if (needs.namesFiles) {
        writePlainAttribute(out, "xmlns:xlink", "http://www.w3.org/1999/xlink");
    }
    writePlainAttribute(out, "version", "1.1");
    writeSize(out, page.bounds(), userUnit);
    writeNumberAttribute(out, "stroke-miterlimit", PathStyle{}.miterLimit);
    if (needs.blends) {
        writePlainAttribute(out, "style", "isolation:isolate");
    }
    writePlainAttribute(out, "data-producer", "corvane");
    writePlainAttribute(out, "data-version", formatVersion);
    writeProvenance(out, provenance);
    writePage(out, page);
    out.text(">");
}

} // namespace corvane
