#include "reader/image/pixels/pixel_conversion.h"

#include "runtime/exception.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

/// Colours that are remembered, a power of 2.
constexpr std::size_t rememberedColours = 1 << 14;

/// Steps to make a pixel of a colour that was computed, and to put one through a profile's tables.
constexpr std::int64_t pixelSteps = 40;
constexpr std::int64_t profilePixelSteps = 4;

std::uint8_t levelOf(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
}

const std::uint8_t* asNumbers(std::span<const std::byte> bytes) {
    return static_cast<const std::uint8_t*>(static_cast<const void*>(bytes.data()));
}
std::uint8_t* asNumbers(std::span<std::byte> bytes) {
    return static_cast<std::uint8_t*>(static_cast<void*>(bytes.data()));
}

bool isWide(const ImageForm& form) {
    return form.bits == 16;
}

/// Values that a sample has, once it has a byte.
std::size_t valuesOf(const ImageForm& form) {
    return std::size_t{1} << std::min(form.bits, 8);
}

} // namespace

PixelConversion::PixelConversion(const ImageForm& form, bool withAlpha, SeenColour fill)
    : form_(form), width_(static_cast<std::size_t>(form.width)),
      components_(static_cast<std::size_t>(form.components())) {
    const Kind kind = form.space->kind;
    const bool keepsWide = isWide(form) && (kind == Kind::gray || kind == Kind::rgb) &&
                           form.space->profile == nullptr && form.isUsualDecode();
    if (keepsWide) {
        colours_ = kind == Kind::gray ? ImageColours::gray : ImageColours::rgb;
        bits_ = 16;
        way_ = form.hasAlpha ? Way::wide : Way::same;
        empty_ = withAlpha ? std::byte{0} : std::byte{0xFF};
        return;
    }
    makeTables();
    if (components_ == 1) {
        prepareOne(withAlpha, fill);
    } else {
        prepareMany();
    }
    if (form_.bits < 8) {
        packed_.emplace(form_.bits, way_ == Way::gray ? std::span(levels_[0])
                                                      : std::span<const std::uint8_t>());
    }
    chooseEmpty(withAlpha);
    chooseEmptySample();
}

std::int64_t PixelConversion::rowBytes() const {
    const std::int64_t components = colours_ == ImageColours::rgb ? 3 : 1;
    return (std::int64_t{form_.width} * components * bits_ + 7) / 8;
}

/// A byte of samples that are white, or not painted; without ink where they are amounts of it.
void PixelConversion::chooseEmptySample() {
    if (colours_ == ImageColours::indexed) {
        emptySample_ = empty_;
        return;
    }
    const Kind kind = form_.space->kind;
    const bool isLight = kind == Kind::gray || kind == Kind::rgb;
    const bool isTurned = values_[0][0] > values_[0][valuesOf(form_) - 1];
    emptySample_ = isLight != isTurned ? std::byte{0xFF} : std::byte{0};
}

/// What Decode makes of each value of each component.
void PixelConversion::makeTables() {
    const std::size_t count = valuesOf(form_);
    const auto highest = static_cast<double>(count - 1);
    values_.resize(components_);
    for (std::size_t i = 0; i < components_; ++i) {
        const auto [low, high] = form_.decode.empty()
                                     ? form_.usualDecode(i)
                                     : std::pair(form_.decode[2 * i], form_.decode[2 * i + 1]);
        for (std::size_t value = 0; value < count; ++value) {
            values_[i][value] = low + static_cast<double>(value) * (high - low) / highest;
        }
    }
    levels_.resize(components_);
    for (std::size_t i = 0; i < components_; ++i) {
        for (std::size_t value = 0; value < count; ++value) {
            levels_[i][value] = levelOf(values_[i][value]);
            hasPlainLevels_ = hasPlainLevels_ && levels_[i][value] == value;
        }
    }
}

/// Whether all colours are gray and of levels that samples of these bits have; then `bytes_` says
/// what becomes of packed samples.
bool PixelConversion::usesOwnLevels(std::span<const SeenColour> colours) {
    const auto highest = static_cast<unsigned>(colours.size() - 1);
    const auto isOwn = [&](SeenColour colour) {
        return colour.isGray() && colour.red * highest % 255 == 0;
    };
    if (isWide(form_) || !std::ranges::all_of(colours, isOwn)) {
        return false;
    }
    const auto bits = static_cast<unsigned>(form_.bits);
    bool isSame = true;
    for (unsigned byte = 0; byte < bytes_.size(); ++byte) {
        unsigned mapped = 0;
        for (unsigned shift = 0; shift < 8; shift += bits) {
            const unsigned sample = byte >> shift & highest;
            mapped |= colours[sample].red * highest / 255 << shift;
        }
        bytes_[byte] = static_cast<std::byte>(mapped);
        isSame = isSame && mapped == byte;
    }
    way_ = isSame ? Way::same : Way::bytes;
    return true;
}

void PixelConversion::prepareOne(bool withAlpha, SeenColour fill) {
    const std::size_t count = valuesOf(form_);
    for (std::size_t value = 0; value < count; ++value) {
        // A mask of a picture is the stencil of alpha, and has no fill.
        const double component = values_[0][value];
        seen_.push_back(form_.isStencil ? fill
                                        : seenColour(colourIn(*form_.space, {&component, 1})));
    }
    const bool isGray = std::ranges::all_of(seen_, &SeenColour::isGray);
    colours_ = isGray ? ImageColours::gray : ImageColours::rgb;
    if (withAlpha || form_.hasAlpha || isWide(form_)) {
        way_ = isGray ? Way::gray : Way::palette;
        for (std::size_t value = 0; value < count; ++value) {
            levels_[0][value] = seen_[value].red;
        }
        return;
    }
    bits_ = form_.bits;
    if (!form_.isStencil && form_.colourKey.empty() && usesOwnLevels(seen_)) {
        return;
    }
    way_ = Way::same;
    colours_ = ImageColours::indexed;
    for (std::size_t value = 0; value < count; ++value) {
        const auto sample = static_cast<std::int32_t>(value);
        const bool isKeyed = form_.colourKey.size() >= 2 && sample >= form_.colourKey[0] &&
                             sample <= form_.colourKey[1];
        const bool isUnpainted = form_.isStencil && values_[0][value] >= 0.5;
        const SeenColour colour = seen_[value];
        const std::uint8_t alpha = isKeyed || isUnpainted ? 0 : 255;
        palette_.insert(palette_.end(), {colour.red, colour.green, colour.blue, alpha});
    }
}

void PixelConversion::prepareMany() {
    colours_ = ImageColours::rgb;
    if (form_.space->profile != nullptr) {
        way_ = Way::profile;
        return;
    }
    switch (form_.space->kind) {
    case Kind::rgb:
        way_ = hasPlainLevels_ && form_.bits == 8 && !form_.hasAlpha ? Way::same : Way::rgb;
        break;
    case Kind::cmyk:
        way_ = Way::cmyk;
        break;
    default:
        way_ = Way::computed;
        remembered_.resize(rememberedColours);
    }
}

void PixelConversion::chooseEmpty(bool withAlpha) {
    if (withAlpha) {
        empty_ = std::byte{0};
    }
    if (colours_ != ImageColours::indexed) {
        return;
    }
    std::size_t best = 0;
    int lightest = -1;
    for (std::size_t entry = 0; entry < palette_.size() / 4; ++entry) {
        const std::uint8_t* const colour = palette_.data() + 4 * entry;
        const int light = colour[3] == 0 ? 1000 : colour[0] + colour[1] + colour[2];
        if (light > lightest) {
            lightest = light;
            best = entry;
        }
    }
    unsigned byte = 0;
    for (unsigned shift = 0; shift < 8; shift += static_cast<unsigned>(bits_)) {
        byte |= static_cast<unsigned>(best) << shift;
    }
    empty_ = static_cast<std::byte>(byte);
}

/// A byte for each sample of a colour: what it is where it has no more than 8 bits, else its high
/// byte. Further samples are left out.
std::span<const std::uint8_t> PixelConversion::unpack(std::span<const std::byte> row) {
    const std::uint8_t* from = asNumbers(row);
    if (form_.bits == 8 && !form_.hasAlpha) {
        return {from, width_ * components_};
    }
    unpacked_.resize(width_ * components_);
    std::uint8_t* to = unpacked_.data();
    if (form_.bits >= 8) {
        const std::size_t step = form_.bits == 16 ? 2 : 1;
        const std::size_t skipped = form_.hasAlpha ? step : 0;
        for (std::size_t x = 0; x < width_; ++x, from += skipped) {
            for (std::size_t i = 0; i < components_; ++i, from += step) {
                *to++ = *from;
            }
        }
        return unpacked_;
    }
    packed_->spread(row, unpacked_);
    return unpacked_;
}

/// Samples of 16 bits that stay so, without the further one.
void PixelConversion::convertWide(std::span<const std::byte> row,
                                  std::span<std::byte> pixels) const {
    const std::size_t pixelBytes = 2 * components_;
    const std::byte* from = row.data();
    std::byte* to = pixels.data();
    for (std::size_t x = 0; x < width_; ++x, from += pixelBytes + 2, to += pixelBytes) {
        std::memcpy(to, from, pixelBytes);
    }
}

void PixelConversion::throughProfile(const std::uint8_t* samples, std::span<std::byte> pixels,
                                     StepMeter& steps) {
    std::span<const std::uint8_t> from(samples, width_ * components_);
    if (!hasPlainLevels_ || form_.bits < 8) {
        decoded_.resize(from.size());
        for (std::size_t i = 0; i < from.size(); ++i) {
            decoded_[i] = levels_[i % components_][from[i]];
        }
        from = decoded_;
    }
    steps.add(static_cast<std::int64_t>(width_) * profilePixelSteps);
    if (!form_.space->profile->convert(from, {asNumbers(pixels), pixels.size()})) {
        failException(Exception::limit);
    }
}

SeenColour PixelConversion::computed(const std::uint8_t* samples, StepMeter& steps) {
    std::uint64_t key = 0;
    for (std::size_t i = 0; i < components_; ++i) {
        key = key << 8 | samples[i];
    }
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;
    Remembered& place = remembered_[key * spread >> 50];
    static_assert(rememberedColours == 1 << (64 - 50));
    // The key of more than 8 components holds the last ones only.
    if (place.isUsed && place.samples == key && components_ <= 8) {
        return place.colour;
    }
    std::array<double, functionArity> values{};
    for (std::size_t i = 0; i < components_; ++i) {
        values[i] = values_[i][samples[i]];
    }
    steps.add(pixelSteps + costOf(*form_.space));
    place = {key, seenColour(colourIn(*form_.space, std::span(values).first(components_))), true};
    return place.colour;
}

void PixelConversion::convert(std::span<const std::byte> row, std::span<std::byte> pixels,
                              StepMeter& steps) {
    if (way_ == Way::wide) {
        return convertWide(row, pixels);
    }
    if (way_ == Way::same) {
        std::memcpy(pixels.data(), row.data(), pixels.size());
        return;
    }
    if (way_ == Way::bytes) {
        const std::uint8_t* const from = asNumbers(row);
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            pixels[i] = bytes_[from[i]];
        }
        return;
    }
    std::uint8_t* to = asNumbers(pixels);
    if (way_ == Way::gray && form_.bits < 8) {
        return packed_->spread(row, {to, width_});
    }
    const std::uint8_t* from = unpack(row).data();
    switch (way_) {
    case Way::gray:
        for (std::size_t x = 0; x < width_; ++x) {
            to[x] = levels_[0][from[x]];
        }
        break;
    case Way::palette:
        for (std::size_t x = 0; x < width_; ++x, to += 3) {
            const SeenColour colour = seen_[from[x]];
            to[0] = colour.red;
            to[1] = colour.green;
            to[2] = colour.blue;
        }
        break;
    case Way::rgb:
        if (hasPlainLevels_ && form_.bits >= 8) {
            std::memcpy(to, from, 3 * width_);
            break;
        }
        for (std::size_t x = 0; x < width_; ++x, from += 3, to += 3) {
            to[0] = levels_[0][from[0]];
            to[1] = levels_[1][from[1]];
            to[2] = levels_[2][from[2]];
        }
        break;
    case Way::cmyk: {
        const auto light = [](unsigned ink, unsigned black) {
            const unsigned sum = ink + black;
            return static_cast<std::uint8_t>(255 - std::min(sum, 255U));
        };
        if (hasPlainLevels_ && form_.bits >= 8) {
            for (std::size_t x = 0; x < width_; ++x, from += 4, to += 3) {
                to[0] = light(from[0], from[3]);
                to[1] = light(from[1], from[3]);
                to[2] = light(from[2], from[3]);
            }
            break;
        }
        for (std::size_t x = 0; x < width_; ++x, from += 4, to += 3) {
            const unsigned black = levels_[3][from[3]];
            to[0] = light(levels_[0][from[0]], black);
            to[1] = light(levels_[1][from[1]], black);
            to[2] = light(levels_[2][from[2]], black);
        }
        break;
    }
    case Way::profile:
        throughProfile(from, pixels, steps);
        break;
    default:
        for (std::size_t x = 0; x < width_; ++x, from += components_, to += 3) {
            const SeenColour colour = computed(from, steps);
            to[0] = colour.red;
            to[1] = colour.green;
            to[2] = colour.blue;
        }
    }
}

void PixelConversion::alphaOf(std::span<const std::byte> row, std::span<std::uint8_t> alpha) {
    const auto samples = static_cast<std::size_t>(form_.samples());
    const std::uint8_t* const from = asNumbers(row);
    const auto bits = static_cast<std::size_t>(form_.bits);
    const auto sampleAt = [&](std::size_t index) -> std::int32_t {
        const std::size_t at = index * bits;
        if (bits == 16) {
            return from[at / 8] << 8 | from[at / 8 + 1];
        }
        return from[at / 8] >> (8 - bits - at % 8) & ((1 << bits) - 1);
    };
    for (std::size_t x = 0; x < width_; ++x) {
        if (form_.colourKey.empty()) {
            const std::int32_t value = sampleAt(x * samples + components_);
            alpha[x] = static_cast<std::uint8_t>(bits == 16 ? value >> 8 : value);
            continue;
        }
        bool isInside = true;
        for (std::size_t i = 0; i < components_ && isInside; ++i) {
            const std::int32_t value = sampleAt(x * samples + i);
            isInside = value >= form_.colourKey[2 * i] && value <= form_.colourKey[2 * i + 1];
        }
        alpha[x] = isInside ? 0 : 255;
    }
}

} // namespace corvane
