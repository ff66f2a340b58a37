#include "filters/pixels/component.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

namespace corvane {
namespace {

using namespace test;

class ComponentTest : public ZoneTest {};

/// Samples of rows, one bit at a time.
std::string unpackSlowly(std::string_view data, std::size_t bits, std::size_t perRow, bool full) {
    std::string samples;
    const std::size_t rowBytes = (perRow * bits + 7) / 8;
    const unsigned largest = (1U << bits) - 1;
    for (std::size_t row = 0; row < data.size(); row += rowBytes) {
        for (std::size_t i = 0; i < perRow && row + i * bits / 8 < data.size(); ++i) {
            unsigned sample = 0;
            for (std::size_t bit = i * bits; bit < (i + 1) * bits; ++bit) {
                const auto byte = static_cast<unsigned char>(data[row + bit / 8]);
                sample = sample << 1 | (byte >> (7 - bit % 8) & 1U);
            }
            samples += static_cast<char>(full ? sample * 255 / largest : sample);
        }
    }
    return samples;
}

TEST_F(ComponentTest, UnpacksRowsOfEveryShape) {
    const std::string data = someBytes(20'000);
    for (const std::int32_t bits : {1, 2, 4}) {
        for (const std::int32_t perRow : {1, 3, 7, 8, 9, 16, 100, 40'001, 1'000'000}) {
            for (const bool full : {false, true}) {
                SCOPED_TRACE(std::to_string(bits) + " bits, rows of " + std::to_string(perRow));
                const std::string wanted = unpackSlowly(data, static_cast<std::size_t>(bits),
                                                        static_cast<std::size_t>(perRow), full);
                for (const std::size_t chunk : chunkSizes) {
                    Chain chain;
                    chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
                    chain.link(
                        setupComponent(bits, perRow, full ? SampleScale::full : SampleScale::kept));
                    ASSERT_TRUE(readAll(*chain.top(), chunk) == wanted) << chunk;
                }
            }
        }
    }
}

TEST_F(ComponentTest, TakesNoByteThatItDoesNotNeed) {
    const std::string data = someBytes(5000);
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
    Filter& below = *chain.top();
    chain.link(setupComponent(4, 3, SampleScale::full)); // two bytes a row
    struct Row {
        std::size_t count;
        std::int32_t wanted;
    };
    for (const Row& row : {Row{1, 1}, {1, 1}, {1, 2}, {3, 4}, {5, 7}, {1, 8}, {2997, 2006}}) {
        EXPECT_EQ(readSome(*chain.top(), row.count).size(), row.count);
        EXPECT_EQ(markFilter(below), row.wanted) << row.count;
        EXPECT_EQ(markFilter(*chain.top()), row.wanted);
    }
    readSome(*chain.top(), 1);
    EXPECT_EQ(seekFilter(*chain.top(), 2), 2); // a row begins anew
    EXPECT_EQ(readSome(*chain.top(), 6), unpackSlowly(data.substr(2, 4), 4, 3, true));
}

TEST_F(ComponentTest, ScalesToTheWholeRange) {
    const std::string data = "\x0F\x1B";
    const auto unpacked = [&](std::int32_t bits, SampleScale scale) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
        chain.link(setupComponent(bits, 100, scale));
        return readAll(*chain.top());
    };
    EXPECT_EQ(unpacked(4, SampleScale::full), std::string("\0\xFF\x11\xBB", 4));
    EXPECT_EQ(unpacked(2, SampleScale::full), std::string("\0\0\xFF\xFF\0\x55\xAA\xFF", 8));
    EXPECT_EQ(unpacked(1, SampleScale::kept).substr(0, 8), std::string("\0\0\0\0\1\1\1\1", 8));
    EXPECT_EQ(unpacked(8, SampleScale::full), data);
}

TEST_F(ComponentTest, RefusesWhatItCannotBe) {
    for (const std::int32_t bits : {-1, 0, 3, 5, 16, 32}) {
        EXPECT_EQ(raisedBy([&] { setupComponent(bits, 1, SampleScale::kept); }), Exception::type);
    }
    EXPECT_EQ(raisedBy([] { setupComponent(1, 0, SampleScale::kept); }), Exception::type);
    std::string store;
    Chain chain;
    chain.link(std::make_unique<SinkFilter>(store));
    chain.link(setupComponent(8, 1, SampleScale::kept));
    EXPECT_EQ(raisedBy([&] { writeFilter(*chain.top(), bytesOf("x")); }), Exception::limit);
}

} // namespace
} // namespace corvane
