#include "filters/token/token.h"

#include "filters/buffer.h"
#include "filters/memory_filter.h"
#include "runtime/exception.h"
#include "tests/runtime/zone_fixture.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

std::string numberText(const Number& number) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), number.real ? "%.10gr" : "%.10g", number.exact);
    std::string result = text.data();
    if (!number.real && number.integer != number.exact) {
        result += "=" + std::to_string(number.integer);
    }
    return result;
}

/// The token just read, as text. Pieces of a hexadecimal string are joined, for where one ends
/// depends on the blocks below.
std::string tokenText(TokenFilter& tokens, TokenType type) {
    switch (type) {
    case TokenType::integer:
    case TokenType::fixed:
        return numberText(tokens.number());
    case TokenType::keyword:
        return std::string(tokens.bytes());
    case TokenType::literal:
        return "/" + std::string(tokens.bytes());
    case TokenType::text:
        return "(" + std::string(tokens.bytes()) + ")";
    case TokenType::hexOpen: {
        std::string digits = "<";
        while (tokens.readToken() == TokenType::text) {
            digits += tokens.bytes();
        }
        return digits + ">";
    }
    case TokenType::arrayOpen:
        return "[";
    case TokenType::arrayClose:
        return "]";
    case TokenType::procedureOpen:
        return "{";
    case TokenType::procedureClose:
        return "}";
    case TokenType::dictionaryOpen:
        return "<<";
    case TokenType::dictionaryClose:
        return ">>";
    default:
        return "?";
    }
}

class TokenTest : public ZoneTest {
protected:
    /// A token filter over `input`, which delivers at most `longestRead` bytes at a time.
    TokenFilter& link(std::string_view input, std::int32_t longestRead = INT32_MAX) {
        chain_.abandon();
        chain_.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(input)), longestRead));
        auto owner = setupToken();
        TokenFilter& tokens = *owner;
        chain_.link(std::move(owner));
        return tokens;
    }

    std::string tokensOf(std::string_view input) {
        TokenFilter& tokens = link(input);
        std::string all;
        std::int64_t end = 0;
        for (TokenType type = tokens.readToken(); type != TokenType::end;
             type = tokens.readToken()) {
            EXPECT_GE(tokens.tokenStart(), end) << input.substr(0, 80);
            end = tokens.tokenEnd();
            if (type == TokenType::keyword) {
                const auto start = static_cast<std::size_t>(tokens.tokenStart());
                EXPECT_EQ(input.substr(start, static_cast<std::size_t>(end) - start),
                          tokens.bytes());
            }
            all += (all.empty() ? "" : " ") + tokenText(tokens, type);
        }
        EXPECT_EQ(tokens.readToken(), TokenType::end);
        return all;
    }

    void TearDown() override {
        chain_.abandon();
        ZoneTest::TearDown();
    }

    Chain chain_;
};

TEST_F(TokenTest, NumbersOfEveryForm) {
    struct Row {
        std::string input;
        std::string wanted;
    };
    for (const Row& row : {
             Row{"0 7 -7 +3", "0 7 -7 3"},
             Row{"4. -.5 0.25 -3.75 +.5 00012 -0", "4r -0.5r 0.25r -3.75r 0.5r 12 -0"},
             Row{"--5 5-3 -5-3 1.5-2 ---1.5", "-5 5 -5 1.5r -1.5r"},
             Row{"1.2.3", "1.2r 0.3r"},
             Row{".", "0r"},
             Row{"- + -.", "-0 0 -0r"},
             Row{"1e5 0.5w 3.R", "1 e5 0.5r w 3r R"},
             Row{"2147483647 2147483648 -2147483649",
                 "2147483647 2147483648=2147483647 -2147483649=-2147483648"},
             Row{std::string(400, '0') + "9", "9"},
             Row{"0." + std::string(400, '0') + "9", "0r"},
             Row{"12[34]5(6)7/8", "12 [ 34 ] 5 (6) 7 /8"},
             Row{"1%2\n3", "1 3"},
             // A number that ends with the data.
             Row{"0.5", "0.5r"},
         }) {
        EXPECT_EQ(tokensOf(row.input), row.wanted) << row.input;
    }
    // 9...9 with 400 digits: too large for everything, and no number of any other kind.
    const std::string nines(400, '9');
    const std::string input = nines + " -" + nines + ". 1";
    TokenFilter& tokens = link(input);
    ASSERT_EQ(tokens.readToken(), TokenType::integer);
    EXPECT_EQ(tokens.number().integer, INT32_MAX);
    EXPECT_GE(tokens.number().exact, 1e300);
    ASSERT_EQ(tokens.readToken(), TokenType::fixed);
    EXPECT_EQ(tokens.number().fixed, INT32_MIN);
    ASSERT_EQ(tokens.readToken(), TokenType::integer);
    EXPECT_EQ(tokens.number().integer, 1);
}

TEST_F(TokenTest, RealsAreRoundedOnce) {
    struct Row {
        std::string_view input;
        Fixed fixed;
        double exact;
    };
    for (const Row& row : {Row{"0.333333", 21845, 0.333333},
                           {"61200.25", INT32_MAX, 61200.25},
                           {"-0.0000077", -1, -0.0000077},
                           {"32767.99999", INT32_MAX, 32767.99999},
                           {"595.2756", 39011982, 595.2756},
                           {"0.1", 6554, 0.1},
                           {"123456789.125", INT32_MAX, 123456789.125}}) {
        TokenFilter& tokens = link(row.input);
        ASSERT_EQ(tokens.readToken(), TokenType::fixed) << row.input;
        EXPECT_EQ(tokens.number().fixed, row.fixed) << row.input;
        EXPECT_EQ(tokens.number().exact, row.exact) << row.input;
    }
}

TEST_F(TokenTest, NamesStringsAndTheRest) {
    struct Row {
        const char* name;
        std::string_view input;
        std::string_view wanted;
    };
    using namespace std::string_view_literals;
    for (const Row& row : {
             Row{"names", "/A/B /C#41 / /(x)", "/A /B /C#41 / / (x)"},
             Row{"nested parentheses", "(a(b(c)d)e)", "(a(b(c)d)e)"},
             Row{"escapes", R"((\n\r\t\b\f\\\(\)\q))", "(\n\r\t\b\f\\()q)"},
             Row{"octal", R"((\101\1012\53\0053\400\18))", "(AA2+\0053\0\0018)"sv},
             Row{"line continuations", "(a\\\nb\\\rc\\\r\nd)", "(abcd)"},
             Row{"ends of lines", "(a\nb\rc\r\nd\n\re)", "(a\nb\nc\nd\n\ne)"},
             Row{"escaped parentheses do not nest", R"((\()(\))))", "(() ())"},
             Row{"zero bytes", "(a\0b)"sv, "(a\0b)"sv},
             Row{"unclosed", "(abc(d)", "(abc(d))"},
             Row{"unclosed escape", "(abc\\", "(abc)"},
             Row{"unclosed octal", "(abc\\10", "(abc\b)"},
             Row{"empty", "()", "()"},
             Row{"hexadecimal", "<48 65\n6C6c6F> <> <4>", "<48656C6c6F> <> <4>"},
             Row{"hexadecimal, unclosed", "<4865 7", "<48657>"},
             Row{"not hexadecimal, but kept", "<4G(>", "<4G(>"},
             Row{"comments", "1 % x ( [ \r2 %y\n3 %z", "1 2 3"},
             Row{"quote operators", "(a)' 1 2(b)\" T* b* '", "(a) ' 1 2 (b) \" T* b* '"},
             Row{"dictionaries", "<</A<</B[1]>>>>", "<< /A << /B [ 1 ] >> >>"},
             Row{"dictionary or string", "< <41> << >>", "<<41> << >>"},
             Row{"procedures", "{1 add}", "{ 1 add }"},
             Row{"strays", "1 ) 2 > 3", "1 2 3"},
             Row{"all white space", "\0\t\n\f\r 1\0 2"sv, "1 2"},
             Row{"control bytes are regular", "a\x01\x80\xff b", "a\x01\x80\xff b"},
             Row{"nothing", "", ""},
         }) {
        EXPECT_EQ(tokensOf(row.input), row.wanted) << row.name;
    }
    selectRules(Profile::extended);
    EXPECT_EQ(tokensOf("/A#42C#20 /#41 /A#4 /#G1 /A#00B /##41"), "/ABC  /A /A#4 /#G1 /A\0B /#A"sv);
}

TEST_F(TokenTest, LongTokensHaveALimitAndStringsHaveNot) {
    const std::string half(longestToken / 2, 'x');
    EXPECT_EQ(tokensOf(half), half);
    const std::string longer(longestToken + 40000, 'x');
    EXPECT_EQ(raisedBy([&] { tokensOf(longer); }), Exception::range);
    EXPECT_EQ(raisedBy([&] { tokensOf("/" + longer); }), Exception::range);
    EXPECT_EQ(raisedBy([&] { tokensOf(std::string(longestToken + 40000, '1')); }),
              Exception::range);
    EXPECT_EQ(tokensOf("(" + longer + "\\n" + longer + ")").size(), 2 * longer.size() + 3);
    EXPECT_GE(zoneBytesCharged(), static_cast<std::int64_t>(2 * longer.size()));
    EXPECT_EQ(tokensOf("<" + longer + ">").size(), longer.size() + 2);
    EXPECT_EQ(tokensOf("%" + longer + "\n1"), "1");
}

/// Every kind of token, each somewhere over the end of a block of 512 bytes.
std::string everyToken() {
    const std::string piece =
        "12 -0.5 4. (a\\\r\nb\\053(c)\r\nd) /N#41me <48 65 6C> [1[2]3] <</K/V>> "
        "{x} BT % comment\r 'q' 1.2.3 --5 \"\n(\\1) 99999999999\t";
    std::string all;
    for (int i = 0; i < 40; ++i) {
        all += piece + std::string(static_cast<std::size_t>(i % 7), ' ');
    }
    return all;
}

struct Step {
    std::string text;
    std::int32_t mark = 0;
    friend bool operator==(const Step&, const Step&) = default;
};

std::vector<Step> stepsOf(TokenFilter& tokens) {
    std::vector<Step> steps;
    for (TokenType type = tokens.readToken(); type != TokenType::end; type = tokens.readToken()) {
        const std::string text = tokenText(tokens, type);
        steps.push_back({text, tokens.mark()});
    }
    return steps;
}

TEST_F(TokenTest, TheSameTokensWhateverTheBlocksBelow) {
    selectRules(Profile::extended);
    const std::string input = everyToken();
    const std::vector<Step> wanted = stepsOf(link(input));
    ASSERT_EQ(wanted.size(), 40U * 28);
    EXPECT_EQ(wanted[3].text, "(ab+(c)\nd)");
    for (const std::int32_t block : {1, 2, 3, 7, 43, 511, 512, 513}) {
        EXPECT_EQ(stepsOf(link(input, block)), wanted) << block;
        chain_.abandon();
        chain_.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(input))));
        chain_.link(setupBuffer(block));
        auto owner = setupToken();
        TokenFilter& tokens = *owner;
        chain_.link(std::move(owner));
        EXPECT_EQ(stepsOf(tokens), wanted) << "buffer of " << block;
    }
}

/// Delivers its bytes, then raises, having written on all the room that it was given, then ends.
class RaisingFilter : public Filter {
public:
    explicit RaisingFilter(std::string_view bytes) : Filter(entry), bytes_(bytes) {}

private:
    static std::int32_t entry(Filter& filter, Operation operation, std::byte* buffer,
                              std::int32_t* argument) {
        auto& self = static_cast<RaisingFilter&>(filter);
        if (operation != Operation::read) {
            return 0;
        }
        const std::span<std::byte> room(buffer, static_cast<std::size_t>(*argument));
        *argument = 0;
        switch (self.reads_++) {
        case 0:
            std::ranges::copy(std::as_bytes(std::span(self.bytes_)), room.begin());
            return *argument = static_cast<std::int32_t>(self.bytes_.size());
        case 1:
            std::ranges::fill(room, std::byte{'x'});
            failException(Exception::codec);
        default:
            return 0;
        }
    }

    std::string_view bytes_;
    int reads_ = 0;
};

TEST_F(TokenTest, GoesOnBehindWhatTheFilterBelowRaised) {
    chain_.link(std::make_unique<RaisingFilter>("first second"));
    auto owner = setupToken();
    TokenFilter& tokens = *owner;
    chain_.link(std::move(owner));
    ASSERT_EQ(tokens.readToken(), TokenType::keyword);
    EXPECT_EQ(guarded([&] { tokens.readToken(); }), Exception::codec);
    resetException();
    ASSERT_EQ(tokens.readToken(), TokenType::keyword);
    EXPECT_EQ(tokens.bytes(), "second");
    EXPECT_EQ(tokens.tokenEnd(), 12);
    EXPECT_EQ(tokens.readToken(), TokenType::end);
}

TEST_F(TokenTest, MarkSeekAndReadAreExactBehindEveryToken) {
    const std::string input = everyToken();
    const std::vector<Step> wanted = stepsOf(link(input));
    for (const std::int32_t block : {1, 43, 513, 100000}) {
        TokenFilter& tokens = link(input, block);
        for (std::size_t i = 0; i + 1 < wanted.size(); ++i) {
            // Raw bytes from here, over the end of what is held, then back to this place.
            const std::int32_t here = tokens.mark();
            const std::size_t count = 1 + (i * 37) % 900;
            std::string raw(count, '?');
            raw.resize(readFilter(tokens, std::as_writable_bytes(std::span(raw))));
            if (block == 100000) {
                ASSERT_EQ(raw, input.substr(static_cast<std::size_t>(here), count)) << i;
            }
            ASSERT_EQ(tokens.mark(), here + static_cast<std::int32_t>(raw.size())) << i;
            // Back a little only: into bytes that the filter may still believe to hold.
            const auto last = static_cast<std::int32_t>(raw.size()) - 1;
            ASSERT_EQ(tokens.seek(here + last), here + last) << i;
            std::string again(1, '?');
            ASSERT_EQ(readFilter(tokens, std::as_writable_bytes(std::span(again))), 1U);
            ASSERT_EQ(again[0], input[static_cast<std::size_t>(here + last)]) << i;
            ASSERT_EQ(seekFilter(tokens, here), here) << i;
            const std::string text = tokenText(tokens, tokens.readToken());
            ASSERT_EQ(text, wanted[i].text) << i << " at " << here;
            ASSERT_EQ(tokens.mark(), wanted[i].mark) << i;
        }
        // From the end to the beginning, which a seek also brings back from behind the end.
        while (tokens.readToken() != TokenType::end) {
        }
        ASSERT_EQ(tokens.seek(0), 0);
        EXPECT_EQ(stepsOf(tokens), wanted) << block;
    }
}

TEST_F(TokenTest, StreamDataAndImageDataBeginAtTheRightByte) {
    struct Row {
        std::string_view input;
        Operation operation;
        std::string_view rest;
    };
    using namespace std::string_view_literals;
    for (const Row& row : {
             Row{"stream\r\nDATA", Operation::streamData, "DATA"},
             Row{"stream\nDATA", Operation::streamData, "DATA"},
             Row{"stream\rDATA", Operation::streamData, "DATA"},
             Row{"stream \t\r\n\nDATA", Operation::streamData, "\nDATA"},
             Row{"stream\n\r\nDATA", Operation::streamData, "\r\nDATA"},
             Row{"streaming\n"sv.substr(0, 6), Operation::streamData, ""},
             Row{"ID DATA", Operation::skipSpace, "DATA"},
             Row{"ID  DATA", Operation::skipSpace, " DATA"},
             Row{"ID\r\nDATA", Operation::skipSpace, "\nDATA"},
             Row{"ID\0\0DATA"sv, Operation::skipSpace, "\0DATA"sv},
             Row{"ID(DATA", Operation::skipSpace, "(DATA"},
             Row{"ID", Operation::skipSpace, ""},
         }) {
        for (const std::int32_t block : {1, 7, 512}) {
            TokenFilter& tokens = link(row.input, block);
            ASSERT_EQ(tokens.readToken(), TokenType::keyword);
            callFilter(tokens, row.operation);
            EXPECT_EQ(tokens.mark(), static_cast<std::int32_t>(row.input.size() - row.rest.size()));
            std::string rest;
            for (std::string byte(1, ' ');
                 readFilter(tokens, std::as_writable_bytes(std::span(byte))) == 1;) {
                rest += byte;
            }
            EXPECT_EQ(rest, row.rest) << row.input << " by " << block;
        }
    }
    EXPECT_EQ(raisedBy([&] { writeFilter(link(""), std::as_bytes(std::span("x", 1))); }),
              Exception::io);
}

} // namespace
} // namespace corvane
