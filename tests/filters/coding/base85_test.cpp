#include "filters/coding/base85.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

namespace corvane {
namespace {

using namespace test;

class MangleTest : public ZoneTest {};

FilterOwner mangleDecoder() {
    return setupMangle(AsciiMode::pastMarker);
}
FilterOwner mangleEncoder() {
    return setupMangle(AsciiMode::write);
}

// The words of the encoding's usual example, whose length is no multiple of four.
constexpr std::string_view words =
    "Man is distinguished, not only by his reason, but by this singular passion";
constexpr std::string_view wordsEncoded =
    R"(9jqo^BlbD-BleB1DJ+*+F(f,q/0JhKF<GL>Cj@.4Gp$d7F!,L7@<6@)/0JDEF<G%<+EV:2F!,O<DJ+*.@<*K0@<6L(Df,~>)";

TEST_F(MangleTest, DecodesWhatAnotherProgramEncoded) {
    selectRules(Profile::extended);
    expectDecodes(mangleDecoder, wordsEncoded, words);
    // In the original profile the digits that the last group lacks count as 0: one lower.
    selectRules(Profile::original);
    std::string lower(words);
    --lower.back();
    expectDecodes(mangleDecoder, wordsEncoded, lower);
}

TEST_F(MangleTest, DecodesGroupsWhateverStandsAmongThem) {
    const std::string zeros(4, '\0');
    struct Row {
        const char* name;
        std::string data;
        std::string wanted;
    };
    const Row rows[] = {
        {"nothing", "~>", ""},
        {"z", "z~>", zeros},
        {"z inside a group", "9jqzo^z~>", "Man " + zeros},
        {"blanks and others", " 9j\nq\xFFo\tv^\x7F~>", "Man "},
        {"tilde and another", "9j~!qo~~^~>", "Man "},
        {"one digit left over", "9jqo^!~>", "Man "},
        {"two digits", "!=~>", std::string(1, '\x01')},
        {"largest", "s8W-!~>", "\xFF\xFF\xFF\xFF"},
        // 85^5 - 1 is more than 32 bits hold.
        {"over the largest", "uuuuu~>", "\x08\x78\x0E\xC4"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        expectDecodes(mangleDecoder, row.data, row.wanted);
        expectDecodesToTheEnd(mangleDecoder, row.data.substr(0, row.data.size() - 2), row.wanted);
    }
    expectDecodesToTheEnd(mangleDecoder, "9jqo^~", "Man ");
}

TEST_F(MangleTest, WhatIsEncodedDecodes) {
    for (const std::size_t size : {0U, 1U, 2U, 3U, 4U, 47U, 48U, 49U, 20'000U}) {
        std::string plain = someBytes(size, 5);
        if (size > 100) {
            plain.replace(50, 8, std::string(8, '\0'));
        }
        const std::string data = encoded(mangleEncoder, plain, 8193);
        for (const std::size_t chunk : {1U, 3U, 5U, 4096U}) {
            ASSERT_EQ(encoded(mangleEncoder, plain, chunk), data);
        }
        selectRules(Profile::extended);
        std::string back = plain;
        if (size % 4 != 0) {
            // The encoder pads with zeros, so that only readers who count missing digits as 0 get
            // just these bytes.
            selectRules(Profile::original);
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
            chain.link(mangleDecoder());
            back = readAll(*chain.top());
            EXPECT_EQ(back.size(), plain.size());
            EXPECT_EQ(back.substr(0, size / 4 * 4), plain.substr(0, size / 4 * 4));
        }
        expectDecodes(mangleDecoder, data, back);
    }
}

TEST_F(MangleTest, WritesGroupsLinesAndTheMarker) {
    EXPECT_EQ(encoded(mangleEncoder, std::string("\0\0\0\0\1", 5), 2), "z!<~>");
    EXPECT_EQ(encoded(mangleEncoder, std::string(3, '\0'), 2), "!!!!~>");
    EXPECT_EQ(encoded(mangleEncoder, "", 1), "~>");
    EXPECT_EQ(encoded(mangleEncoder, std::string(49, '\0'), 7), std::string(12, 'z') + "\r!!~>");
    // In mode 0 what is begun is written before a seek only.
    std::string store;
    Chain chain;
    chain.link(std::make_unique<SinkFilter>(store));
    chain.link(setupMangle(AsciiMode::both));
    writeFilter(*chain.top(), bytesOf("Man Ma"));
    EXPECT_EQ(store, "9jqo^");
    seekFilter(*chain.top(), 0);
    EXPECT_EQ(store, "9jqo^9jn");
    chain.unlink();
    EXPECT_EQ(store, "9jqo^9jn");
}

TEST_F(MangleTest, ModesDifferInMarkersAndDirections) {
    const std::string data = "9jqo^9jqo^~>9jqo^~~>";
    struct Row {
        AsciiMode mode;
        std::string wanted;
        std::int32_t below; ///< after four bytes were read and the filter unlinked
    };
    for (const Row& row : {Row{AsciiMode::both, "Man Man Man ", 5},
                           {AsciiMode::toMarker, "Man Man ", 5},
                           {AsciiMode::pastMarker, "Man Man ", 12}}) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
        Filter& below = *chain.top();
        Chain top(&below);
        top.link(setupMangle(row.mode));
        EXPECT_EQ(readAll(*top.top()), row.wanted);
        seekFilter(*top.top(), 0);
        EXPECT_EQ(readSome(*top.top(), 4), "Man ");
        top.unlink();
        EXPECT_EQ(markFilter(below), row.below);
    }
    for (const AsciiMode mode : {AsciiMode::toMarker, AsciiMode::pastMarker, AsciiMode::write}) {
        Chain chain;
        std::string store;
        chain.link(std::make_unique<SinkFilter>(store));
        chain.link(setupMangle(mode));
        EXPECT_EQ(raisedBy([&] {
                      mode == AsciiMode::write ? void(readSome(*chain.top(), 1))
                                               : writeFilter(*chain.top(), bytesOf("abcd"));
                  }),
                  Exception::io);
    }
    for (const int mode : {-1, 4}) {
        EXPECT_EQ(raisedBy([&] { setupMangle(static_cast<AsciiMode>(mode)); }), Exception::type);
    }
    // A group that is not taken whole.
    std::string store;
    auto owner = std::make_unique<SinkFilter>(store);
    owner->room = 3;
    Chain chain;
    chain.link(std::move(owner));
    chain.link(mangleEncoder());
    EXPECT_EQ(raisedBy([&] { writeFilter(*chain.top(), bytesOf("abcd")); }), Exception::io);
}

} // namespace
} // namespace corvane
