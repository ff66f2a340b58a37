#include "codecs/dct/samples/vector.h"

#include "codecs/dct/samples/colour.h"

#include <gtest/gtest.h>

#include <random>
#include <span>
#include <vector>

namespace corvane {
namespace {

struct Operands {
    std::array<std::int16_t, 8> a, b;
    std::array<std::uint8_t, 80> bytes;
};

/// What every operation leaves in memory.
template <class V>
class Results {
public:
    explicit Results(const Operands& from) {
        const auto a = V::load(from.a.data());
        const auto b = V::load(from.b.data());
        words({V::add(a, b), V::subtract(a, b), V::multiplyLow(a, b), V::multiplyHigh(a, b),
               V::multiplyHighSigned(a, b), V::exclusiveOr(a, b)});
        words({V::template shiftLeft<2>(a), V::template shiftRight<3>(a),
               V::template shiftRightUnsigned<15>(a)});
        words({V::interleaveLow(a, b), V::interleaveHigh(a, b), V::interleavePairsLow(a, b),
               V::interleavePairsHigh(a, b), V::lowHalves(a, b), V::highHalves(a, b)});
        words({V::splat(from.a[0]), V::splatPair(from.a[0], from.a[1]),
               V::loadBytes(from.bytes.data())});
        const auto sums = V::multiplyPairs(a, b);
        const auto more = V::addLongs(sums, V::splatLong(from.a[0] * 1000));
        words({V::narrow(sums, more),
               V::narrow(V::template shiftLongsRight<13>(sums), V::subtractLongs(more, sums))});
        const auto x = V::loadAll(from.bytes.data());
        const auto y = V::loadAll(from.bytes.data() + 16);
        words({V::widenLow(x), V::widenHigh(x)});
        bytes({x, V::narrowBytes(a, b), V::interleaveBytesLow(x, y), V::interleaveBytesHigh(x, y),
               V::loadPixels(from.bytes.data())},
              16);
        std::array<std::uint8_t, 16> memory{};
        V::storeWords(memory.data(), V::asWords(x));
        append(memory);
        V::storePixels(memory.data(), V::asWords(x));
        append(std::span(memory).first(12));
        found.push_back(static_cast<std::uint8_t>(V::zeroMask(a)));
    }
    std::vector<std::uint8_t> found;

private:
    void append(std::span<const std::uint8_t> memory) {
        found.insert(found.end(), memory.begin(), memory.end());
    }
    void words(std::initializer_list<typename V::Words> all) {
        for (const auto& one : all) {
            std::array<std::int16_t, 8> memory{};
            V::store(memory.data(), one);
            append(std::bit_cast<std::array<std::uint8_t, 16>>(memory));
        }
    }
    void bytes(std::initializer_list<typename V::Bytes> all, std::size_t count) {
        for (const auto& one : all) {
            std::array<std::uint8_t, 16> memory{};
            V::storeBytes(memory.data(), one);
            append(std::span(memory).first(count));
        }
    }
};

TEST(DctVectorTest, EveryOperationIsThePortableOne) {
    std::mt19937 random(9);
    constexpr std::array<std::int16_t, 6> edges{0, 1, -1, 32767, -32768, 255};
    for (int i = 0; i < 2000; ++i) {
        Operands operands{};
        const auto number = [&] {
            return random() % 4 == 0 ? edges[random() % edges.size()]
                                     : static_cast<std::int16_t>(random());
        };
        std::ranges::generate(operands.a, number);
        std::ranges::generate(operands.b, number);
        std::ranges::generate(operands.bytes, [&] { return static_cast<std::uint8_t>(random()); });
        ASSERT_EQ(Results<DctVector>(operands).found, Results<DctPortable>(operands).found) << i;
    }
}

/// Pixels are bytes in memory, whatever the machine's order of bytes.
TEST(DctVectorTest, PixelsStandInMemoryAsTheyWereGiven) {
    std::array<std::uint8_t, 16> four{};
    for (std::size_t i = 0; i < four.size(); ++i) {
        four[i] = static_cast<std::uint8_t>(i);
    }
    std::array<std::uint8_t, 16> three{};
    DctPortable::storePixels(three.data(), DctPortable::asWords(DctPortable::loadAll(four.data())));
    const std::vector<std::uint8_t> wanted{0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14};
    EXPECT_EQ(std::vector<std::uint8_t>(three.begin(), three.begin() + 12), wanted);
    std::array<std::uint8_t, 16> same{};
    DctPortable::storeWords(same.data(), DctPortable::asWords(DctPortable::loadAll(four.data())));
    EXPECT_EQ(same, four);
}

/// All pairs of chroma, in rows of every number of components, by the definition of the transform.
TEST(DctColourTest, RowsAreConvertedByTheirDefinition) {
    const auto byte = [](int value) {
        return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
    };
    constexpr std::size_t width = 256;
    for (std::size_t count = 1; count <= 4; ++count) {
        for (const DctColour colour : {DctColour::none, DctColour::rgb, DctColour::inverted}) {
            if (count < 3 && colour != DctColour::none) {
                continue;
            }
            std::array<std::vector<std::uint8_t>, 4> rows;
            std::array<const std::uint8_t*, 4> planes{};
            for (std::size_t i = 0; i < 4; ++i) {
                rows[i].resize(width + dctRowSlack);
                planes[i] = rows[i].data();
            }
            std::vector<std::uint8_t> pixels(width * 4 + dctRowSlack);
            for (int cr = 0; cr < 256; ++cr) {
                for (std::size_t x = 0; x < width; ++x) {
                    rows[0][x] = static_cast<std::uint8_t>(x * 7 + static_cast<std::size_t>(cr));
                    rows[1][x] = static_cast<std::uint8_t>(x);
                    rows[2][x] = static_cast<std::uint8_t>(cr);
                    rows[3][x] = static_cast<std::uint8_t>(x ^ 0x55);
                }
                dctJoinRow(colour, std::span(planes).first(count), width, pixels.data());
                for (std::size_t x = 0; x < width; ++x) {
                    const int y = rows[0][x];
                    const int cb = static_cast<int>(x) - 128;
                    std::array<std::uint8_t, 4> wanted{rows[0][x], rows[1][x], rows[2][x],
                                                       rows[3][x]};
                    if (colour != DctColour::none) {
                        const std::array<int, 3> rgb{
                            y + (((cr - 128) * 22970 + 8192) >> 14),
                            y + ((cb * -5638 + (cr - 128) * -11700 + 8192) >> 14),
                            y + ((cb * 29032 + 8192) >> 14)};
                        for (std::size_t i = 0; i < 3; ++i) {
                            wanted[i] = byte(colour == DctColour::inverted ? 255 - rgb[i] : rgb[i]);
                        }
                    }
                    for (std::size_t i = 0; i < count; ++i) {
                        ASSERT_EQ(pixels[x * count + i], wanted[i]) << x << ' ' << cr << ' ' << i;
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace corvane
