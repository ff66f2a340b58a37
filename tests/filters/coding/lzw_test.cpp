#include "filters/coding/lzw.h"

#include "tests/filters/decode_check.h"
#include "tests/filters/lzw_reference.h"
#include "tests/runtime/zone_fixture.h"

namespace corvane {
namespace {

using namespace test;

class AdaptTest : public ZoneTest {};

FilterOwner decoder() {
    return setupAdapt(AdaptDirection::decode);
}
FilterOwner encoder() {
    return setupAdapt(AdaptDirection::encode);
}

/// Codes of the widths that a decoder expects, the last byte filled with zeros.
std::string codes(std::initializer_list<std::pair<unsigned, int>> list) {
    std::string bits;
    for (const auto& [code, width] : list) {
        for (int i = width; i-- > 0;) {
            bits += (code >> i & 1U) != 0 ? '1' : '0';
        }
    }
    bits.resize((bits.size() + 7) / 8 * 8, '0');
    std::string bytes;
    for (std::size_t i = 0; i < bits.size(); i += 8) {
        bytes += static_cast<char>(std::stoi(bits.substr(i, 8), nullptr, 2));
    }
    return bytes;
}

TEST_F(AdaptTest, DecodesTheExampleOfThePdfReference) {
    const std::string data = "\x80\x0B\x60\x50\x22\x0C\x0C\x85\x01";
    const std::string wanted = "-----A---B";
    expectDecodes(decoder, data, wanted);
    EXPECT_EQ(encoded(encoder, wanted, 100), data);
    EXPECT_EQ(lzwDecode(data).bytes, wanted);
}

TEST_F(AdaptTest, DecodesAsItsSlowTwinInPiecesOfAnySize) {
    for (const std::uint32_t kinds : {1U, 2U, 40U, 256U}) {
        SCOPED_TRACE(kinds);
        const std::string plain = someBytes(60'000, kinds, kinds);
        const std::string data = lzwEncode(plain);
        // The encoder's last code but one may be a bit narrower than a decoder thinks, at a width's
        // end; not for these.
        const LzwReference reference = lzwDecode(data);
        ASSERT_TRUE(reference.bytes == plain);
        ASSERT_EQ(reference.used, data.size());
        expectDecodes(decoder, data, plain);
    }
}

TEST_F(AdaptTest, AFullTableWithoutAClearCodeStaysAsItIs) {
    // 9,000 codes of single bytes, never cleared: the table fills after 3,838 of them.
    std::string bits;
    std::string wanted;
    std::size_t next = 258;
    for (unsigned i = 0; i < 9000; ++i) {
        const int width = next >= 2047 ? 12 : next >= 1023 ? 11 : next >= 511 ? 10 : 9;
        for (int bit = width; bit-- > 0;) {
            bits += (i * 7 % 256 >> bit & 1U) != 0 ? '1' : '0';
        }
        wanted += static_cast<char>(i * 7 % 256);
        next = i == 0 ? 258 : std::min<std::size_t>(next + 1, 4096);
    }
    bits += "000100000001"; // 257
    bits.resize((bits.size() + 7) / 8 * 8, '0');
    std::string data;
    for (std::size_t i = 0; i < bits.size(); i += 8) {
        data += static_cast<char>(std::stoi(bits.substr(i, 8), nullptr, 2));
    }
    ASSERT_TRUE(lzwDecode(data).bytes == wanted);
    expectDecodes(decoder, data, wanted);
}

TEST_F(AdaptTest, EndsQuietlyWhereDataAreDamaged) {
    struct Row {
        const char* name;
        std::string data;
        std::string wanted;
    };
    const Row rows[] = {
        {"empty", "", ""},
        {"cut inside a code", std::string("\x80\x0B", 2), ""},
        {"no end code", codes({{256, 9}, {'a', 9}, {258, 9}, {'b', 9}}).substr(0, 4), "aaa"},
        {"first code has no entry", codes({{256, 9}, {300, 9}, {'a', 9}}), ""},
        {"first code is the next entry", codes({{256, 9}, {258, 9}, {'a', 9}}), ""},
        {"a code beyond the next entry", codes({{'a', 9}, {259, 9}, {'a', 9}}), "a"},
        {"no clear code at the start", codes({{'a', 9}, {'b', 9}, {258, 9}, {257, 9}}), "abab"},
        {"clear codes one after another",
         codes({{256, 9}, {256, 9}, {'a', 9}, {256, 9}, {256, 9}, {'b', 9}, {257, 9}}), "ab"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(lzwDecode(row.data).bytes, row.wanted);
        expectDecodesToTheEnd(decoder, row.data, row.wanted);
    }
}

TEST_F(AdaptTest, AnyBytesDecodeAsTheSlowTwinSays) {
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        std::string data = lzwEncode(someBytes(seed * 37, seed, 1 + seed % 97));
        for (std::size_t i = seed % 50; i < data.size(); i += 1 + seed * 13 % 900) {
            data[i] = static_cast<char>(data[i] ^ static_cast<char>(seed * 31 + i));
        }
        const std::uint32_t early = seed % 2;
        const LzwReference wanted = lzwDecode(data, early);
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
        Filter& below = *chain.top();
        chain.link(setupAdapt(AdaptDirection::decode, early));
        ASSERT_TRUE(readAll(*chain.top(), 1 + seed % 500) == wanted.bytes) << seed;
        ASSERT_EQ(markFilter(below), static_cast<std::int32_t>(wanted.used)) << seed;
        chain.unlink();
    }
}

TEST_F(AdaptTest, StopsInTheMiddleWithNoByteTooMany) {
    const std::string plain = someBytes(5000, 3);
    const std::string data = lzwEncode(plain);
    for (const std::size_t count : {1U, 2U, 100U, 4999U}) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
        Filter& below = *chain.top();
        Chain top(&below);
        top.link(decoder());
        EXPECT_EQ(readSome(*top.top(), count), plain.substr(0, count));
        const std::int32_t mark = markFilter(*top.top());
        top.unlink();
        EXPECT_EQ(markFilter(below), mark);
        // The bytes up to there are enough, and with one fewer they are not.
        const auto needed = static_cast<std::size_t>(mark);
        EXPECT_GE(lzwDecode(data.substr(0, needed)).bytes.size(), count);
        EXPECT_LT(lzwDecode(data.substr(0, needed - 1)).bytes.size(), count);
    }
}

TEST_F(AdaptTest, EncodesAsItsSlowTwin) {
    EXPECT_EQ(encoded(encoder, "", 1), lzwEncode(""));
    for (const std::size_t size : {1U, 254U, 255U, 256U, 5000U, 40'000U}) {
        for (const std::uint32_t kinds : {1U, 5U, 256U}) {
            const std::string plain = someBytes(size, 7, kinds);
            const std::string wanted = lzwEncode(plain);
            for (const std::size_t chunk : {1U, 7U, 8193U}) {
                ASSERT_TRUE(encoded(encoder, plain, chunk) == wanted) << size << " " << kinds;
            }
            ASSERT_TRUE(lzwDecode(wanted).bytes == plain) << size << " " << kinds;
        }
    }
}

TEST_F(AdaptTest, EachDirectionRefusesTheOther) {
    EXPECT_EQ(raisedBy([] { setupAdapt(static_cast<AdaptDirection>(2)); }), Exception::type);
    EXPECT_EQ(raisedBy([] { setupAdapt(AdaptDirection::decode, 2); }), Exception::type);
    std::string store;
    for (const bool reading : {true, false}) {
        Chain chain;
        chain.link(std::make_unique<SinkFilter>(store));
        chain.link(reading ? encoder() : decoder());
        EXPECT_EQ(raisedBy([&] {
                      reading ? void(readSome(*chain.top(), 1))
                              : writeFilter(*chain.top(), bytesOf("x"));
                  }),
                  Exception::io);
    }
}

} // namespace
} // namespace corvane
