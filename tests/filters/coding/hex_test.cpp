#include "filters/coding/hex.h"

#include "tests/filters/decode_check.h"
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
    for (const char* digits :
         {"0g00", "00 0", "000>", "/000", ":000", "@000", "G000", "`000", "000", "00000", "",
          "00\xff"
          "0"}) {
        EXPECT_EQ(raisedBy([&] { inputHex(bytes, digits); }), Exception::type) << digits;
    }
    std::string room(3, '?');
    EXPECT_EQ(raisedBy([&] { outputHex(room, bytes); }), Exception::type);
    EXPECT_EQ(raisedBy([] { inputHex({}, ""); }), Exception::none);
}

// The filter

using namespace test;

FilterOwner hexDecoder() {
    return setupHex(AsciiMode::pastMarker);
}

TEST_F(HexTest, DecodesDigitsAndSkipsTheRest) {
    struct Row {
        const char* name;
        std::string data;
        std::string wanted;
    };
    const Row rows[] = {
        {"blanks", "48 65 6C\n6c\t6F>", "Hello"},
        {"one digit", "4>", "@"},
        {"no digit", " >", ""},
        {"other characters",
         "4g8(6\xff"
         "5)\x01 6C6C6F>",
         "Hello"},
        {"many digits at a time", "000102030405060708090a0b0C0D0E0F>",
         std::string("\0\1\2\3\4\5\6\7\10\t\n\v\f\r\16\17", 16)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        expectDecodes(hexDecoder, row.data, row.wanted);
        expectDecodesToTheEnd(hexDecoder, row.data.substr(0, row.data.size() - 1), row.wanted);
    }
}

TEST_F(HexTest, DecodesLinesOfEveryLength) {
    const std::string plain = someBytes(20'000);
    std::string digits(2 * plain.size(), '?');
    outputHex(digits, bytesOf(plain));
    for (const std::size_t length : {1U, 3U, 8U, 61U, 64U, 9000U}) {
        std::string data;
        for (std::size_t i = 0; i < digits.size(); i += length) {
            data += digits.substr(i, length) + (i % 3 == 0 ? "\r\n" : "\n");
        }
        expectDecodes(hexDecoder, data + ">", plain);
    }
}

TEST_F(HexTest, EveryCharacterAmongEightIsSeen) {
    for (int c = 0; c < 256; ++c) {
        for (std::size_t at = 0; at < 8; ++at) {
            std::string data = "0123456789abcdef0123456789ABCDEF";
            data[at + 8] = static_cast<char>(c);
            std::string digits;
            for (const char digit : data.substr(0, data.find('>'))) {
                if (hexDigit(static_cast<std::uint8_t>(digit)) != notHexDigit) {
                    digits += digit;
                }
            }
            digits += digits.size() % 2 == 1 ? "0" : "";
            std::string wanted(digits.size() / 2, '?');
            inputHex(std::as_writable_bytes(std::span(wanted)), digits);
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
            chain.link(hexDecoder());
            ASSERT_EQ(readAll(*chain.top()), wanted) << c << " at " << at;
        }
    }
}

TEST_F(HexTest, ModesDifferInMarkersAndDirections) {
    const std::string data = "41>4243>44";
    struct Row {
        AsciiMode mode;
        std::string wanted;
        std::int32_t below; ///< after one byte was read and the filter unlinked
    };
    for (const Row& row : {Row{AsciiMode::both, "ABCD", 2},
                           {AsciiMode::toMarker, "A", 2},
                           {AsciiMode::pastMarker, "A", 3}}) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
        Filter& below = *chain.top();
        Chain top(&below);
        top.link(setupHex(row.mode));
        EXPECT_EQ(readAll(*top.top()), row.wanted);
        seekFilter(*top.top(), 0);
        EXPECT_EQ(readSome(*top.top(), 1), "A");
        top.unlink();
        EXPECT_EQ(markFilter(below), row.below);
    }
    for (const AsciiMode mode : {AsciiMode::toMarker, AsciiMode::pastMarker, AsciiMode::write}) {
        Chain chain;
        std::string store;
        chain.link(std::make_unique<SinkFilter>(store));
        chain.link(setupHex(mode));
        EXPECT_EQ(raisedBy([&] {
                      mode == AsciiMode::write ? void(readSome(*chain.top(), 1))
                                               : writeFilter(*chain.top(), bytesOf("x"));
                  }),
                  Exception::io);
    }
    for (const int mode : {-1, 4}) {
        EXPECT_EQ(raisedBy([&] { setupHex(static_cast<AsciiMode>(mode)); }), Exception::type);
    }
}

TEST_F(HexTest, WritesLinesOf64DigitsAndNoMarker) {
    const std::string bytes(33, '\xAB');
    std::string line;
    for (int i = 0; i < 32; ++i) {
        line += "ab";
    }
    for (const std::size_t chunk : {1U, 5U, 32U, 100U}) {
        EXPECT_EQ(encoded([] { return setupHex(AsciiMode::write); }, bytes, chunk), line + "\rab");
        EXPECT_EQ(encoded([] { return setupHex(AsciiMode::both); }, bytes.substr(0, 32), chunk),
                  line + "\r");
    }
}

} // namespace
} // namespace corvane
