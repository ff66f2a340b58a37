#include "app/cli/text.h"

#include "app/cli/messages.h"
#include "app/cli/report/json.h"
#include "app/cli/report/report.h"
#include "host/utf8.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace corvane {
namespace {

struct Row {
    std::string bytes;
    std::string onTerminal;
    std::string inJson;
};

const std::vector<Row> rows{
    {"plain name.pdf", "plain name.pdf", "plain name.pdf"},
    {"gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x8E\xA8",
     "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC "
     "\xF0\x9F\x8E\xA8",
     "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC \xF0\x9F\x8E\xA8"},
    {"\x1B[2J\r\n\t\x7F", "\\x1b[2J\\x0d\\x0a\\x09\\x7f", "\\u001b[2J\\u000d\\u000a\\u0009\\u007f"},
    {std::string("a\0b", 3), "a\\x00b", "a\\u0000b"},
    {"\xC2\x9B"
     "2J",
     "\\xc2\\x9b2J",
     "\xC2\x9B"
     "2J"},                                                          // the one-character escape
    {"fdp.\xE2\x80\xAE", "fdp.\\xe2\\x80\\xae", "fdp.\xE2\x80\xAE"}, // turns the text around
    {"\xFF\xFE", "\\xff\\xfe", "\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xC0\xAF", "\\xc0\\xaf", "\xEF\xBF\xBD\xEF\xBF\xBD"}, // overlong
    {"\xE0\x80\xAF", "\\xe0\\x80\\xaf", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xED\xA0\x80", "\\xed\\xa0\\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // a surrogate
    {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80",
     "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"cut \xE2\x82", "cut \\xe2\\x82", "cut \xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\"quoted\" \\", "\"quoted\" \\", "\\\"quoted\\\" \\\\"},
};

TEST(Text, HostileBytesAreHarmlessOnTerminalsAndInJson) {
    for (const Row& row : rows) {
        EXPECT_EQ(terminalText(row.bytes), row.onTerminal);
        EXPECT_TRUE(isUtf8(terminalText(row.bytes)));
        EXPECT_EQ(JsonWriter().text(row.bytes).result(), "\"" + row.inJson + "\"");
        EXPECT_TRUE(isUtf8(JsonWriter().text(row.bytes).result()));
    }
}

TEST(Text, LinesNameFileKindAndCode) {
    const Fault fault{7, "the file is encrypted; ask its author"};
    EXPECT_EQ(errorLine("a\n.pdf", fault),
              "corvane: a\\x0a.pdf: error 7: the file is encrypted; ask its author\n");
    EXPECT_EQ(warningLine("a.pdf", {2, "\x1B"}), "corvane: a.pdf: warning 2: \\x1b\n");
}

TEST(Json, ValuesAreSeparatedAndNumbersAreWhole) {
    JsonWriter json;
    json.openObject().name("a").openArray().integer(1).real(0.5).real(-3).closeArray();
    json.name("b").openArray().closeArray().name("c").boolean(true).name("d").null();
    json.name("e").openArray().openObject().closeObject().openObject().closeObject().closeArray();
    json.name("f").real(std::numeric_limits<double>::infinity()).name("g").real(1e300);
    json.closeObject();
    EXPECT_EQ(json.result(),
              R"({"a":[1,0.5,-3],"b":[],"c":true,"d":null,"e":[{},{}],"f":null,"g":1e+300})");
}

PageFacts sheet(std::int32_t page) {
    const Box box{0, 0, 595.2755, 841.8898};
    return {.page = page, .objectNumber = 2 * page, .mediaBox = box, .cropBox = box};
}

TEST(Info, EqualNeighboursAreOneLine) {
    Report report;
    report.file = FileFacts{{1003, 5000, 0, 1, {}}, "1.7"};
    for (std::int32_t page = 1; page <= 1003; ++page) {
        report.pages.push_back(sheet(page));
    }
    report.pages[1].rotate = 90;
    report.pages[1002].cropBox = {10, 20, 110, 220.5};
    report.pages[1002].userUnit = 2;
    const std::string text = infoText("a\x1B.pdf", report);
    EXPECT_EQ(text, "a\\x1b.pdf\n"
                    "  version   1.7\n"
                    "  length    1 byte\n"
                    "  objects   5000\n"
                    "  updates   0\n"
                    "  pages     1003\n"
                    "  1         595.2755 x 841.8898 pt, object 2 0\n"
                    "  2         595.2755 x 841.8898 pt, turned 90, object 4 0\n"
                    "  3-1002    595.2755 x 841.8898 pt\n"
                    "  1003      100 x 200.5 pt, crop [10 20 110 220.5] of "
                    "[0 0 595.2755 841.8898], unit 2, object 2006 0\n");
    report.file->facts.objects = 0;
    EXPECT_EQ(infoText("a.pdf", report).find("objects"), std::string::npos) << "nobody counted";
}

} // namespace
} // namespace corvane
