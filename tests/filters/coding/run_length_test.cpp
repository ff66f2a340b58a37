#include "filters/coding/run_length.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

namespace corvane {
namespace {

using namespace test;

class RunTest : public ZoneTest {};

TEST_F(RunTest, DecodesRuns) {
    expectDecodes(setupRun,
                  "\x02"
                  "abc\xFEx\x80",
                  "abcxxx");
    expectDecodes(setupRun, "\x80", "");
    expectDecodes(setupRun, std::string("\x00z\x81y\xFFw\x80", 7),
                  "z" + std::string(128, 'y') + "ww");
    const std::string literal = someBytes(128);
    std::string data;
    std::string wanted;
    for (int i = 0; i < 300; ++i) {
        const auto count = static_cast<std::size_t>(1 + i * 31 % 128);
        data += static_cast<char>(count - 1) + literal.substr(0, count);
        wanted += literal.substr(0, count);
        if (count > 1) {
            data += std::string(1, static_cast<char>(257 - count)) + '\x80';
            wanted += std::string(count, '\x80');
        }
    }
    expectDecodes(setupRun, data + "\x80", wanted);
}

TEST_F(RunTest, ARunThatIsNotAllThereIsNotDelivered) {
    struct Row {
        std::string data;
        std::string wanted;
    };
    for (const Row& row : {Row{"", ""},
                           {"\x02"
                            "abc",
                            "abc"},
                           {"\x02"
                            "abc\x03"
                            "def",
                            "abc"},
                           {"\x02"
                            "abc\xFE",
                            "abc"},
                           {"\x7F" + std::string(127, 'x'), ""}}) {
        expectDecodesToTheEnd(setupRun, row.data, row.wanted);
    }
}

TEST_F(RunTest, NeverWritesBehindTheCountAskedFor) {
    const std::string data = "\x81"
                             "a\x81"
                             "b\x80";
    for (std::size_t asked = 1; asked < 256; ++asked) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
        chain.link(setupRun());
        std::string buffer(asked + 300, '#');
        auto count = static_cast<std::int32_t>(asked);
        callFilter(*chain.top(), Operation::read, std::as_writable_bytes(std::span(buffer)).data(),
                   &count);
        EXPECT_EQ(count, static_cast<std::int32_t>(asked));
        EXPECT_EQ(buffer.find('#'), asked);
        EXPECT_EQ(buffer.find_first_not_of('#', asked), std::string::npos);
    }
}

TEST_F(RunTest, WritingDoesNothing) {
    std::string store;
    Chain chain;
    chain.link(std::make_unique<SinkFilter>(store));
    chain.link(setupRun());
    writeFilter(*chain.top(), bytesOf("abc"));
    EXPECT_EQ(store, "");
}

} // namespace
} // namespace corvane
