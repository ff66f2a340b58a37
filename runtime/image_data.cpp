#include "runtime/image_data.h"

#include "runtime/string.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

constexpr std::string_view imageDataKey = "%ImageData";

/// JPEG and fax data count sides in 16 bits.
constexpr std::int32_t longestSide = 65535;

bool isSide(std::int32_t side) {
    return side > 0 && side <= longestSide;
}

template <std::size_t components>
void interleave(std::span<std::byte> pixels, std::span<const std::byte> planes, std::size_t count) {
    std::byte* to = pixels.first(components * count).data();
    const std::byte* const from = planes.first(components * count).data();
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t component = 0; component < components; ++component) {
            *to++ = from[component * count + i];
        }
    }
}

} // namespace

bool ImageDataLine::isKnown() const {
    const bool isGray = mode == 1;
    const bool isColour = bits == 8 && (mode == 3 || mode == 4);
    const bool isPadded = pads == 1 && bits == 8 && mode == 3;
    return isSide(width) && isSide(height) && (bits == 1 || bits == 8) && (isGray || isColour) &&
           (pads == 0 || isPadded) && block == (width * bits + 7) / 8 &&
           (form == ImageDataForm::binary || form == ImageDataForm::hexadecimal);
}

std::optional<ImageDataLine> imageDataLine(std::string_view line) {
    if (!leftString(imageDataKey, line)) {
        return std::nullopt;
    }
    std::optional<std::string_view> rest = advanceString(':', line);
    std::array<std::int32_t, 7> values{};
    for (std::int32_t& value : values) {
        if (!rest) {
            return std::nullopt;
        }
        const TextNumber number = integerString(*rest);
        value = number.value;
        rest = number.rest;
    }
    if (!rest) {
        return std::nullopt;
    }
    const QuotedText start = quotedString(*rest);
    if (!start.rest) {
        return std::nullopt;
    }
    return ImageDataLine{.width = values[0],
                         .height = values[1],
                         .bits = values[2],
                         .mode = values[3],
                         .pads = values[4],
                         .block = values[5],
                         .form = static_cast<ImageDataForm>(values[6]),
                         .start = std::string(start.text)};
}

void interleaveGray(std::span<std::byte> pixels, std::span<const std::byte> planes,
                    std::size_t count) {
    std::ranges::copy(planes.first(count), pixels.begin());
}

void interleaveRGB(std::span<std::byte> pixels, std::span<const std::byte> planes,
                   std::size_t count) {
    interleave<3>(pixels, planes, count);
}

void interleaveCMYK(std::span<std::byte> pixels, std::span<const std::byte> planes,
                    std::size_t count) {
    interleave<4>(pixels, planes, count);
}

} // namespace corvane
