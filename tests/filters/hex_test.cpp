#include "filters/hex.h"

#include "tests/runtime/zone_fixture.h"

#include <array>
#include <string>

namespace corvane {
namespace {

class HexTest : public ZoneTest {};

TEST_F(HexTest, EveryByteGoesThereAndBack) {
    std::array<std::byte, 256> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::byte>(i);
    }
    std::string digits(512, '?');
    outputHex(digits, bytes);
    EXPECT_EQ(digits.substr(0, 8), "00010203");
    EXPECT_EQ(digits.substr(504), "fcfdfeff");
    std::array<std::byte, 256> back{};
    inputHex(back, digits);
    EXPECT_EQ(back, bytes);
    std::array<std::byte, 2> upper{};
    inputHex(upper, "AbFF");
    EXPECT_EQ(upper, (std::array{std::byte{0xAB}, std::byte{0xFF}}));
}

TEST_F(HexTest, AnythingElseIsAFault) {
    std::array<std::byte, 2> bytes{};
    for (const char* digits : {"0g00", "00 0", "000>", "/000", ":000", "@000", "G000", "`000",
                               "000", "00000", "", "00\xff"
                                                   "0"}) {
        EXPECT_EQ(raisedBy([&] { inputHex(bytes, digits); }), Exception::type) << digits;
    }
    std::string room(3, '?');
    EXPECT_EQ(raisedBy([&] { outputHex(room, bytes); }), Exception::type);
    EXPECT_EQ(raisedBy([] { inputHex({}, ""); }), Exception::none);
}

} // namespace
} // namespace corvane
