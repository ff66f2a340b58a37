#include "filters/pixels/mapping.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

#include <vector>

namespace corvane {
namespace {

using namespace test;

class MappingTest : public ZoneTest {};

constexpr Fixed one = 65536;

std::string mapped(const std::vector<Fixed>& decode, std::int32_t maximum, std::string_view data,
                   std::size_t chunk) {
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
    chain.link(setupMapping(decode, maximum));
    return readAll(*chain.top(), chunk);
}

TEST_F(MappingTest, MapsComponentByComponent) {
    const std::string data = someBytes(10'000);
    const std::vector<std::vector<Fixed>> arrays{
        {},
        {0, one},
        {one, 0},
        {one / 4, one / 2},
        {0, one, one, 0, one / 3, one},
        {one, 0, one, 0, one, 0, one, 0},
        {0, one, 0, one / 2, 0, one / 3, one / 5, 0},
        {-one, 2 * one},
    };
    for (const std::vector<Fixed>& decode : arrays) {
        for (const std::int32_t maximum : {255, 15}) {
            std::string wanted;
            for (std::size_t i = 0; i < data.size(); ++i) {
                const std::int64_t byte = static_cast<unsigned char>(data[i]);
                if (decode.empty()) {
                    wanted += data[i];
                    continue;
                }
                const std::size_t pair = 2 * (i % (decode.size() / 2));
                const std::int64_t value =
                    byte * (decode[pair + 1] - decode[pair]) + std::int64_t{decode[pair]} * maximum;
                wanted += static_cast<char>(value >> 16 & 0xFF);
            }
            for (const std::size_t chunk : chunkSizes) {
                ASSERT_TRUE(mapped(decode, maximum, data, chunk) == wanted) << chunk;
            }
        }
    }
    EXPECT_EQ(mapped({one, 0}, 255, std::string("\x00\x10\xFF", 3), 3),
              "\xFF\xEF" + std::string(1, '\0'));
}

TEST_F(MappingTest, ASeekBeginsAPixelAnew) {
    const std::string data = "abcdef";
    Chain chain;
    chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
    chain.link(setupMapping(std::vector<Fixed>{0, one, 0, 0, 0, one}, 255));
    const std::string wanted = std::string("a\0cd", 4);
    EXPECT_EQ(readSome(*chain.top(), 4), wanted);
    EXPECT_EQ(markFilter(*chain.top()), 4);
    EXPECT_EQ(seekFilter(*chain.top(), 3), 3);
    EXPECT_EQ(readSome(*chain.top(), 4), std::string("d\0f", 3));
}

TEST_F(MappingTest, RefusesWhatItCannotBe) {
    for (const std::size_t count : {1U, 3U, 4U, 5U, 7U, 9U, 10U}) {
        EXPECT_EQ(raisedBy([&] { setupMapping(std::vector<Fixed>(count), 255); }), Exception::type);
    }
    std::string store;
    Chain chain;
    chain.link(std::make_unique<SinkFilter>(store));
    chain.link(setupMapping({}, 255));
    EXPECT_EQ(raisedBy([&] { writeFilter(*chain.top(), bytesOf("x")); }), Exception::limit);
}

} // namespace
} // namespace corvane
