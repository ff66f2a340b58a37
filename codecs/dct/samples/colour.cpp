#include "codecs/dct/samples/colour.h"

#include "codecs/dct/samples/vector.h"

#include <array>
#include <cstring>

namespace corvane {

namespace {

using V = DctVector;

/// Pixels that one step converts.
constexpr std::size_t step = 16;

// YCbCr to RGB in 14 bits behind the point: 1.772, 1.402, 0.34414, 0.71414.
constexpr std::int16_t blueOfCb = 29032;
constexpr std::int16_t redOfCr = 22970;
constexpr std::int16_t greenOfCb = 5638;
constexpr std::int16_t greenOfCr = 11700;

/// Chroma (less 128) times a factor, rounded: four times it, so that the upper half of the product
/// is the part before the point.
[[gnu::always_inline]] inline V::Words ofOne(V::Words chroma, std::int16_t factor) {
    const V::Words factors = V::splat(factor);
    const V::Words four = V::template shiftLeft<2>(chroma);
    return V::add(V::multiplyHighSigned(four, factors),
                  V::template shiftRightUnsigned<15>(V::multiplyLow(four, factors)));
}

[[gnu::always_inline]] inline V::Words ofBoth(V::Words cb, V::Words cr, std::int16_t ofCb,
                                              std::int16_t ofCr) {
    const V::Words factors = V::splatPair(ofCb, ofCr);
    const V::Longs half = V::splatLong(1 << 13);
    const auto part = [&](V::Words pairs) {
        return V::template shiftLongsRight<14>(V::addLongs(V::multiplyPairs(pairs, factors), half));
    };
    return V::narrow(part(V::interleaveLow(cb, cr)), part(V::interleaveHigh(cb, cr)));
}

[[gnu::always_inline]] inline std::array<V::Words, 3> rgbOf(V::Words luma, V::Words cb,
                                                            V::Words cr) {
    const V::Words centre = V::splat(128);
    cb = V::subtract(cb, centre);
    cr = V::subtract(cr, centre);
    return {V::add(luma, ofOne(cr, redOfCr)), V::add(luma, ofBoth(cb, cr, -greenOfCb, -greenOfCr)),
            V::add(luma, ofOne(cb, blueOfCb))};
}

template <bool inverted>
[[gnu::always_inline]] inline void convert(std::array<V::Bytes, 4>& parts) {
    auto low = rgbOf(V::widenLow(parts[0]), V::widenLow(parts[1]), V::widenLow(parts[2]));
    auto high = rgbOf(V::widenHigh(parts[0]), V::widenHigh(parts[1]), V::widenHigh(parts[2]));
    for (std::size_t i = 0; i < 3; ++i) {
        if constexpr (inverted) {
            low[i] = V::subtract(V::splat(255), low[i]);
            high[i] = V::subtract(V::splat(255), high[i]);
        }
        parts[i] = V::narrowBytes(low[i], high[i]);
    }
}

/// 16 pixels of four bytes each.
[[gnu::always_inline]] inline std::array<V::Words, 4>
interleaveFour(const std::array<V::Bytes, 4>& parts) {
    const V::Words firstLow = V::asWords(V::interleaveBytesLow(parts[0], parts[1]));
    const V::Words firstHigh = V::asWords(V::interleaveBytesHigh(parts[0], parts[1]));
    const V::Words lastLow = V::asWords(V::interleaveBytesLow(parts[2], parts[3]));
    const V::Words lastHigh = V::asWords(V::interleaveBytesHigh(parts[2], parts[3]));
    return {V::interleaveLow(firstLow, lastLow), V::interleaveHigh(firstLow, lastLow),
            V::interleaveLow(firstHigh, lastHigh), V::interleaveHigh(firstHigh, lastHigh)};
}

template <DctColour colour, std::size_t count>
void joinMany(std::span<const std::uint8_t* const> planes, std::size_t width,
              std::uint8_t* pixels) {
    for (std::size_t x = 0; x < width; x += step, pixels += step * count) {
        std::array<V::Bytes, 4> parts{};
        for (std::size_t i = 0; i < count; ++i) {
            parts[i] = V::loadAll(planes[i] + x);
        }
        if constexpr (colour != DctColour::none) {
            convert<colour == DctColour::inverted>(parts);
        }
        if constexpr (count == 2) {
            V::storeBytes(pixels, V::interleaveBytesLow(parts[0], parts[1]));
            V::storeBytes(pixels + step, V::interleaveBytesHigh(parts[0], parts[1]));
            continue;
        }
        const std::array<V::Words, 4> fours = interleaveFour(parts);
        for (std::size_t i = 0; i < fours.size(); ++i) {
            if constexpr (count == 3) {
                V::storePixels(pixels + 12 * i, fours[i]);
            } else {
                V::storeWords(pixels + 16 * i, fours[i]);
            }
        }
    }
}

template <DctColour colour>
void joinColours(std::span<const std::uint8_t* const> planes, std::size_t width,
                 std::uint8_t* pixels) {
    if (planes.size() == 3) {
        joinMany<colour, 3>(planes, width, pixels);
    } else {
        joinMany<colour, 4>(planes, width, pixels);
    }
}

// RGB to YCbCr in 15 bits behind the point. The luma factors sum to one and the others to zero, so
// that grey stays grey.
struct YccFactors {
    std::int16_t red, green, blue;
    std::int32_t bias; ///< rounding, and 128 for chroma
};
constexpr int yccBits = 15;
constexpr std::array<YccFactors, 3> yccFactors{{
    {9798, 19235, 3735, 1 << 14},
    {-5529, -10855, 16384, (128 << yccBits) + (1 << 14) - 1},
    {16384, -13720, -2664, (128 << yccBits) + (1 << 14) - 1},
}};

/// The red and green, and the blue, of four pixels side by side.
struct FourPixels {
    V::Words redGreen, blue;
};

[[gnu::always_inline]] inline FourPixels loadFour(const std::uint8_t* pixels) {
    const V::Bytes four = V::loadPixels(pixels);
    const V::Words low = V::widenLow(four);
    const V::Words high = V::widenHigh(four);
    const V::Words even = V::interleavePairsLow(low, high);
    const V::Words odd = V::interleavePairsHigh(low, high);
    return {V::interleavePairsLow(even, odd), V::interleavePairsHigh(even, odd)};
}

/// 16 pixels to 16 samples of one component.
[[gnu::always_inline]] inline V::Bytes yccOf(const std::array<FourPixels, 4>& pixels,
                                             const YccFactors& factors) {
    const V::Words redGreen = V::splatPair(factors.red, factors.green);
    const V::Words blue = V::splatPair(factors.blue, 0);
    const V::Longs bias = V::splatLong(factors.bias);
    const auto four = [&](const FourPixels& from) {
        const V::Longs sum = V::addLongs(V::multiplyPairs(from.redGreen, redGreen),
                                         V::multiplyPairs(from.blue, blue));
        return V::template shiftLongsRight<yccBits>(V::addLongs(sum, bias));
    };
    return V::narrowBytes(V::narrow(four(pixels[0]), four(pixels[1])),
                          V::narrow(four(pixels[2]), four(pixels[3])));
}

std::uint8_t yccOf(const std::uint8_t* pixel, const YccFactors& f) {
    return static_cast<std::uint8_t>(
        (f.red * pixel[0] + f.green * pixel[1] + f.blue * pixel[2] + f.bias) >> yccBits);
}

void splitThree(const std::uint8_t* pixels, std::size_t width,
                std::span<std::uint8_t* const> planes) {
    for (std::size_t x = 0; x < width; x += step, pixels += 3 * step) {
        const std::array<FourPixels, 4> four{loadFour(pixels), loadFour(pixels + 12),
                                             loadFour(pixels + 24), loadFour(pixels + 36)};
        for (std::size_t i = 0; i < 3; ++i) {
            V::storeBytes(planes[i] + x, yccOf(four, yccFactors[i]));
        }
    }
}

} // namespace

void dctJoinRow(DctColour colour, std::span<const std::uint8_t* const> planes, std::size_t width,
                std::uint8_t* pixels) {
    if (planes.size() == 1) {
        std::memcpy(pixels, planes[0], width);
    } else if (planes.size() == 2) {
        joinMany<DctColour::none, 2>(planes, width, pixels);
    } else if (colour == DctColour::rgb) {
        joinColours<DctColour::rgb>(planes, width, pixels);
    } else if (colour == DctColour::inverted) {
        joinColours<DctColour::inverted>(planes, width, pixels);
    } else {
        joinColours<DctColour::none>(planes, width, pixels);
    }
}

void dctSplitRow(bool toYcc, const std::uint8_t* pixels, std::size_t width,
                 std::span<std::uint8_t* const> planes) {
    const std::size_t count = planes.size();
    if (toYcc && count == 3) {
        splitThree(pixels, width, planes);
        return;
    }
    for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t* const pixel = pixels + x * count;
        for (std::size_t i = 0; i < count; ++i) {
            planes[i][x] = toYcc && i < 3 ? yccOf(pixel, yccFactors[i]) : pixel[i];
        }
    }
}

} // namespace corvane
