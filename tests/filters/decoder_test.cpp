// Decoders on decoders and on the token filter: what one reads ahead the other gets back.
#include "filters/decoder.h"

#include "filters/coding/base85.h"
#include "filters/coding/flate.h"
#include "filters/coding/hex.h"
#include "filters/coding/lzw.h"
#include "filters/coding/run_length.h"
#include "filters/token/token.h"
#include "tests/filters/decode_check.h"
#include "tests/filters/lzw_reference.h"
#include "tests/runtime/zone_fixture.h"

namespace corvane {
namespace {

using namespace test;

class DecoderTest : public ZoneTest {};

FilterOwner hexDecoder() {
    return setupHex(AsciiMode::pastMarker);
}
FilterOwner mangleDecoder() {
    return setupMangle(AsciiMode::pastMarker);
}
FilterOwner adaptDecoder() {
    return setupAdapt(AdaptDirection::decode);
}
std::string hexEncoded(std::string_view plain) {
    return encoded([] { return setupHex(AsciiMode::write); }, plain, 8192) + ">";
}
std::string mangled(std::string_view plain) {
    return encoded([] { return setupMangle(AsciiMode::write); }, plain, 8192);
}

TEST_F(DecoderTest, ADecoderBelowStandsWhereTheOneAboveEnded) {
    const std::string plain = someBytes(20'000);
    const std::string behind = "and what stands behind";
    struct Row {
        const char* name;
        SetupFilter setup;
        std::string data;
    };
    const Row rows[] = {
        {"LZW", adaptDecoder, lzwEncode(plain)},
        {"hexadecimal", hexDecoder, hexEncoded(plain)},
        {"base-85", mangleDecoder, mangled(plain)},
        {"run length", setupRun, "\x7F" + plain.substr(0, 128) + "\x80"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string wanted = row.data.front() == '\x7F' ? plain.substr(0, 128) : plain;
        // The decoder below holds the data, what stands behind them, and is read on afterwards.
        const std::string data = mangled(row.data + behind + row.data) + "rest";
        for (const std::size_t chunk : {1U, 43U, 8192U}) {
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
            Filter& bottom = *chain.top();
            chain.link(mangleDecoder());
            for (const bool first : {true, false}) {
                Chain above(chain.top());
                above.link(row.setup());
                ASSERT_TRUE(readAll(*above.top(), chunk) == wanted) << first;
                above.unlink();
                if (first) {
                    EXPECT_EQ(readSome(*chain.top(), behind.size()), behind);
                }
            }
            const Chain whole = std::move(chain);
            EXPECT_LE(markFilter(bottom), static_cast<std::int32_t>(data.size()));
        }
    }
}

TEST_F(DecoderTest, UnlinkingAStackLeavesTheBottomBehindTheData) {
    const std::string plain = someBytes(5000, 9);
    const std::string data = hexEncoded(mangled(lzwEncode(plain)));
    const std::string file = data + "more";
    for (const std::size_t count : {0U, 1U, 100U, 5000U, 6000U}) {
        Chain bottom;
        bottom.link(std::make_unique<MemoryFilter>(bytesOf(file)));
        Chain chain(bottom.top());
        chain.link(hexDecoder());
        chain.link(mangleDecoder());
        chain.link(adaptDecoder());
        EXPECT_EQ(readSome(*chain.top(), count), plain.substr(0, count));
        chain.unlink();
        EXPECT_EQ(readAll(*bottom.top()), "more") << count;
    }
}

TEST_F(DecoderTest, TheTokenFilterGetsItsBytesBack) {
    // As an inline image among operators that were themselves encoded.
    const std::string image = someBytes(30'000);
    const std::string content = "BI ID " + hexEncoded(image) + " EI 12 Q";
    const std::string data = mangled(content);
    for (const bool decoded : {false, true}) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(decoded ? data : content)));
        if (decoded) {
            chain.link(mangleDecoder());
        }
        auto owner = setupToken();
        TokenFilter& tokens = *owner;
        chain.link(std::move(owner));
        EXPECT_EQ(tokens.readToken(), TokenType::keyword);
        EXPECT_EQ(tokens.readToken(), TokenType::keyword);
        EXPECT_EQ(tokens.bytes(), "ID");
        tokens.skipSpaceByte();
        {
            Chain decoder(&tokens);
            decoder.link(hexDecoder());
            EXPECT_TRUE(readAll(*decoder.top(), 1000) == image);
            decoder.unlink();
        }
        EXPECT_EQ(tokens.readToken(), TokenType::keyword);
        EXPECT_EQ(tokens.bytes(), "EI");
        EXPECT_EQ(tokens.readToken(), TokenType::integer);
        EXPECT_EQ(tokens.readToken(), TokenType::keyword);
        EXPECT_EQ(tokens.bytes(), "Q");
        EXPECT_EQ(tokens.readToken(), TokenType::end);
    }
}

TEST_F(DecoderTest, AnExceptionThatIsPendingKeepsTheRestFromBeingRead) {
    const std::string data = "41" + std::string(100, '4') + ">";
    Chain bottom;
    bottom.link(std::make_unique<MemoryFilter>(bytesOf(data)));
    Chain chain(bottom.top());
    chain.link(hexDecoder());
    readSome(*chain.top(), 1);
    EXPECT_EQ(guarded([] { failException(Exception::context); }), Exception::context);
    chain.unlink();
    EXPECT_EQ(resetException(), Exception::context);
    EXPECT_EQ(markFilter(*bottom.top()), 2);
}

TEST_F(DecoderTest, AFullZoneIsReportedAndNothingIsKept) {
    const std::string data = "4142>";
    EXPECT_EQ(failEachAllocation([&] {
                  Chain chain;
                  chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
                  chain.link(hexDecoder());
                  readSome(*chain.top(), 1);
              }),
              0)
        << "decoders charge the zone and hold no block of it";
    EXPECT_EQ(zoneBytesCharged(), 0);
}

} // namespace
} // namespace corvane
