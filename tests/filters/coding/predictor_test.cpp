#include "filters/coding/predictor.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

#include <cstdlib>

namespace corvane {
namespace {

using namespace test;

class PredictorTest : public ZoneTest {};

unsigned at(std::string_view bytes, std::size_t i) {
    return static_cast<unsigned char>(bytes[i]);
}

/// Rows as a PNG encoder would write them, each with another filter.
std::string pngEncoded(std::string_view plain, std::size_t rowBytes, std::size_t pixel) {
    std::string data;
    const std::string above(rowBytes, '\0');
    for (std::size_t row = 0; row * rowBytes < plain.size(); ++row) {
        const std::string_view line = plain.substr(row * rowBytes, rowBytes);
        const std::string_view up =
            row == 0 ? std::string_view(above) : plain.substr((row - 1) * rowBytes, rowBytes);
        const std::size_t filter = row % 5;
        data += static_cast<char>(filter);
        for (std::size_t i = 0; i < line.size(); ++i) {
            const unsigned a = i < pixel ? 0 : at(line, i - pixel);
            const unsigned b = at(up, i);
            const unsigned c = i < pixel ? 0 : at(up, i - pixel);
            const int p = static_cast<int>(a + b) - static_cast<int>(c);
            const int pa = std::abs(p - static_cast<int>(a));
            const int pb = std::abs(p - static_cast<int>(b));
            const int pc = std::abs(p - static_cast<int>(c));
            const unsigned paeth = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
            const unsigned predicted[] = {0, a, b, (a + b) / 2, paeth};
            data += static_cast<char>(at(line, i) - predicted[filter]);
        }
    }
    return data;
}

/// Samples of rows less the sample on the left, one bit at a time.
std::string tiffEncoded(std::string_view plain, const PredictorParameters& parameters,
                        std::size_t rowBytes) {
    const auto bits = static_cast<std::size_t>(parameters.bitsPerComponent);
    const auto colors = static_cast<std::size_t>(parameters.colors);
    const std::size_t samples = colors * static_cast<std::size_t>(parameters.columns);
    std::string data(plain);
    const auto sample = [&](std::size_t row, std::size_t i) {
        unsigned value = 0;
        for (std::size_t bit = i * bits; bit < (i + 1) * bits; ++bit) {
            value = value << 1 | (at(plain, row + bit / 8) >> (7 - bit % 8) & 1U);
        }
        return value;
    };
    for (std::size_t row = 0; row < plain.size(); row += rowBytes) {
        for (std::size_t i = colors; i < samples; ++i) {
            const unsigned difference = sample(row, i) - sample(row, i - colors);
            for (std::size_t bit = 0; bit < bits; ++bit) {
                const std::size_t place = i * bits + bit;
                const unsigned mask = 128U >> place % 8;
                const bool set = (difference >> (bits - 1 - bit) & 1U) != 0;
                char& byte = data[row + place / 8];
                byte = static_cast<char>((static_cast<unsigned char>(byte) & ~mask) |
                                         (set ? mask : 0));
            }
        }
    }
    return data;
}

TEST_F(PredictorTest, UndoesPngFiltersOfRowsOfEveryShape) {
    for (const std::int32_t bits : {1, 2, 4, 8, 16}) {
        for (const std::int32_t colors : {1, 3, 4}) {
            for (const std::int32_t columns : {1, 5, 100}) {
                SCOPED_TRACE(std::to_string(bits) + " bits, " + std::to_string(colors) +
                             " colours, " + std::to_string(columns) + " columns");
                const auto rowBytes = static_cast<std::size_t>((bits * colors * columns + 7) / 8);
                const auto pixel = static_cast<std::size_t>((bits * colors + 7) / 8);
                const std::string plain = someBytes(23 * rowBytes);
                const std::string data = pngEncoded(plain, rowBytes, pixel);
                const auto setup = [&] {
                    return setupPredictor({.predictor = 10 + bits % 6,
                                           .colors = colors,
                                           .bitsPerComponent = bits,
                                           .columns = columns});
                };
                expectDecodesToTheEnd(setup, data, plain);
                // A row cut short is delivered as far as it goes.
                const std::size_t cut = 11 * (rowBytes + 1) + 1 + rowBytes / 2;
                expectDecodesToTheEnd(setup, data.substr(0, cut),
                                      plain.substr(0, 11 * rowBytes + rowBytes / 2));
            }
        }
    }
}

TEST_F(PredictorTest, UndoesTiffDifferencesOfEverySampleSize) {
    for (const std::int32_t bits : {1, 2, 4, 8, 16}) {
        for (const std::int32_t colors : {1, 3, 5}) {
            const PredictorParameters parameters{
                .predictor = 2, .colors = colors, .bitsPerComponent = bits, .columns = 37};
            const auto rowBytes = static_cast<std::size_t>((bits * colors * 37 + 7) / 8);
            std::string plain = someBytes(11 * rowBytes);
            // Bits behind the last sample of a row mean nothing, and are zero here.
            const auto used = static_cast<std::size_t>(bits * colors * 37) % 8;
            for (std::size_t row = 0; used != 0 && row < plain.size(); row += rowBytes) {
                char& last = plain[row + rowBytes - 1];
                last = static_cast<char>(static_cast<unsigned char>(last) & (0xFF00U >> used));
            }
            const std::string data = tiffEncoded(plain, parameters, rowBytes);
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
            chain.link(setupPredictor(parameters));
            std::string got = readAll(*chain.top(), 43);
            for (std::size_t row = 0; used != 0 && row < got.size(); row += rowBytes) {
                char& last = got[row + rowBytes - 1];
                last = static_cast<char>(static_cast<unsigned char>(last) & (0xFF00U >> used));
            }
            EXPECT_TRUE(got == plain) << bits << " bits, " << colors << " colours";
        }
    }
}

TEST_F(PredictorTest, ARowWithoutAKnownFilterStays) {
    expectDecodesToTheEnd([] { return setupPredictor({.predictor = 15, .columns = 2}); },
                          "\x05"
                          "ab\xFF"
                          "cd\x02\x01\x01",
                          "abcdde");
}

TEST_F(PredictorTest, RefusesParametersThatNoRowCanHave) {
    for (const PredictorParameters& wrong :
         {PredictorParameters{.predictor = 1},
          {.predictor = 0},
          {.predictor = 3},
          {.predictor = 9},
          {.predictor = 16},
          {.predictor = 2, .colors = 0},
          {.predictor = 2, .colors = 1 << 20},
          {.predictor = 2, .bitsPerComponent = 3},
          {.predictor = 2, .bitsPerComponent = 32},
          {.predictor = 12, .columns = 0},
          {.predictor = 12, .columns = -5},
          {.predictor = 12, .colors = 4, .bitsPerComponent = 16, .columns = INT32_MAX}}) {
        EXPECT_EQ(raisedBy([&] { setupPredictor(wrong); }), Exception::range);
    }
}

} // namespace
} // namespace corvane
