#include "app/svg/image_writer.h"

#include "app/svg/markup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

namespace {

struct WidePoint {
    std::int64_t x = 0;
    std::int64_t y = 0;
};

/// Of the unit square, in the art: at 0,0, then 1,0, 1,1 and 0,1.
std::array<WidePoint, 4> cornersOf(const Matrix& matrix) {
    const auto corner = [&](std::int64_t x, std::int64_t y) {
        return WidePoint{x * matrix.a + y * matrix.c + matrix.tx,
                         x * matrix.b + y * matrix.d + matrix.ty};
    };
    return {corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1)};
}

std::string hexadecimal(std::uint64_t value) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (int bit = 60; bit >= 0; bit -= 4) {
        text += digits[value >> bit & 15];
    }
    return text;
}

/// Long addresses are base-64, which needs no escapes.
void writeAddress(TextOutput& out, const std::string& address) {
    const bool isPlain = std::ranges::all_of(address, [&](char c) {
        return c >= ' ' && c <= '~' && c != '&' && c != '<' && c != '>' && c != '"';
    });
    if (isPlain) {
        writePlainAttribute(out, "xlink:href", address);
    } else {
        writeAttribute(out, "xlink:href", address);
    }
}

/// The file that the object is linked to.
void writeLink(TextOutput& out, const Document& document, Art placed) {
    const PlacedFile* const file = document.placedFile(placed);
    if (file != nullptr && !file->view.address.empty()) {
        writeAttribute(out, "data-epsf", file->view.address);
    }
}

/// Whether pixels are larger than a point. Renderers that are to show squares leave pixels out
/// where an image has more of them than what it is drawn on.
bool hasLargePixels(const PlacedImage& placed, const ImageFacts& facts) {
    const Matrix& matrix = placed.matrix;
    const auto exceeds = [](Fixed x, Fixed y, std::int32_t pixels) {
        return std::hypot(x, y) > static_cast<double>(pixels) * fixedOne;
    };
    return exceeds(matrix.a, matrix.b, facts.width) && exceeds(matrix.c, matrix.d, facts.height);
}

} // namespace

bool showsFile(const Document& document, Art placed) {
    return document.images().file(document.placedImage(placed).image) != nullptr;
}

void writeImageAttributes(TextOutput& out, const Document& document, Art placed,
                          PageCorner corner) {
    const PlacedImage image = document.placedImage(placed);
    const ImageFile& file = *document.images().file(image.image);
    const ImageFacts facts = document.images().facts(image.image);
    writePlainAttribute(out, "x", "0");
    writePlainAttribute(out, "y", "0");
    writePlainAttribute(out, "width", "1");
    writePlainAttribute(out, "height", "1");
    writePlainAttribute(out, "preserveAspectRatio", "none");
    // SVG's unit square has its first row at y = 0, and y points down.
    const Matrix& matrix = image.matrix;
    const std::array<std::int64_t, 6> numbers{
        matrix.a,
        -std::int64_t{matrix.b},
        -std::int64_t{matrix.c},
        matrix.d,
        std::int64_t{matrix.c} + matrix.tx - corner.left,
        corner.top - matrix.d - matrix.ty,
    };
    out.text(" transform=\"matrix(");
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        out.text(i == 0 ? "" : " ");
        out.number(numbers[i]);
    }
    out.text(")\"");
    if (!image.isSmooth) {
        const bool showsSquares = hasLargePixels(image, facts);
        writePlainAttribute(out, showsSquares ? "image-rendering" : "data-image-rendering",
                            "pixelated");
    }
    if (file.ignoresOrientation) {
        writePlainAttribute(out, "style", "image-orientation:none");
    }
    if (!facts.key.empty()) {
        std::string mark(facts.key);
        mark += file.digest ? ' ' + hexadecimal(*file.digest) : "";
        writePlainAttribute(out, "data-image", mark);
    }
    writeLink(out, document, placed);
    writeAddress(out, file.address);
}

void writeFrameAttributes(TextOutput& out, const Document& document, Art placed,
                          PageCorner corner) {
    const PlacedImage image = document.placedImage(placed);
    const ImageFacts facts = document.images().facts(image.image);
    writePlainAttribute(out, "fill", "none");
    writePlainAttribute(out, "stroke", "#808080");
    writePlainAttribute(out, "stroke-width", ".5");
    if (!image.isSmooth) {
        writePlainAttribute(out, "image-rendering", "pixelated");
    }
    writePlainAttribute(out, "data-kept",
                        std::to_string(facts.width) + ' ' + std::to_string(facts.height) +
                            (facts.key.empty() ? "" : ' ' + std::string(facts.key)));
    writeLink(out, document, placed);
    const auto corners = cornersOf(image.matrix);
    constexpr std::string_view frame = "M0L1L2L3ZM0L2M1L3";
    out.text(" d=\"");
    for (const char c : frame) {
        if (c >= '0' && c <= '3') {
            const WidePoint point = corners[static_cast<std::size_t>(c - '0')];
            out.number(point.x - corner.left);
            out.text(" ");
            out.number(corner.top - point.y);
        } else {
            out.text({&c, 1});
        }
    }
    out.text("\"");
}

Extent placedExtent(const Document& document, Art placed) {
    // A corner of a thin line, its miter included.
    constexpr std::int64_t frameReach = std::int64_t{3} * fixedOne;
    const std::int64_t reach = showsFile(document, placed) ? 0 : frameReach;
    Extent extent;
    for (const WidePoint corner : cornersOf(document.placedImage(placed).matrix)) {
        extent.add(Extent{corner.x - reach, corner.y - reach, corner.x + reach, corner.y + reach});
    }
    return extent;
}

} // namespace corvane
