// What --json prints is what docs/json.md says.
#include "tests/app/cli/fake_save.h"
#include "tests/app/cli/json/json_schema.h"
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"
#include "tests/support/signed_file.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>

namespace corvane {
namespace {

using test::JsonReader;
using test::JsonSchema;
using Words = std::vector<std::string>;

/// The indented block of the page's last part.
JsonSchema documentedSchema() {
    std::istringstream lines(test::fileBytes(test::sourceFolder() / "docs" / "json.md"));
    std::string text;
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
        isInside = isInside || line == "## Schema";
        if (isInside && line.starts_with("    ")) {
            text += line + "\n";
        }
    }
    return JsonSchema(JsonReader(text).whole());
}

/// Expects that each line of `output` fits; how many there are.
int linesThatFit(const JsonSchema& schema, const std::string& output) {
    std::istringstream lines(output);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_EQ(schema.fault(JsonReader(line).whole()), "") << line;
    }
    return count;
}

TEST(JsonSchemaItself, RefusesWhatDoesNotFit) {
    const JsonSchema schema = documentedSchema();
    const std::string log = R"({"command":"log","file":"a","profile":"extended","updates":[],)"
                            R"("warnings":[],"error":null})";
    EXPECT_EQ(schema.fault(JsonReader(log).whole()), "");
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"log", "lag"},
             {"\"file\":\"a\",", ""},
             {"[],", "{},"},
             {"null", "{\"code\":1.5,\"sentence\":\"\"}"},
             {"\"updates\":[]", "\"updates\":[{\"number\":1}]"},
             {"\"error\"", "\"more\":1,\"error\""}}) {
        EXPECT_NE(schema.fault(JsonReader(replaced(log, from, to)).whole()), "") << to;
    }
    EXPECT_THROW(JsonReader("{\"a\":1,}").whole(), std::runtime_error);
    EXPECT_THROW(JsonReader("[1] 2").whole(), std::runtime_error);
}

class JsonFacts : public Saving {};

TEST_F(JsonFacts, OfEveryCommandIsDocumented) {
    const JsonSchema schema = documentedSchema();
    folder_.add("a.pdf", example("two-pages.pdf"));
    folder_.add("\xFF.pdf", example("harbour.pdf"));
    folder_.add("broken.pdf", replaced(example("harbour.pdf"), "startxref", "startxxxx"));
    folder_.add(
        "image.pdf",
        test::PdfBuilder::onePage("q 9 0 0 9 0 0 cm BI /W 1 /H 1 /BPC 8 /CS /G ID x EI Q").bytes());
    folder_.add(
        "labelled.pdf",
        test::PdfBuilder::onePage("", "/Thumb 5 0 R")
            .object(1, "<< /Pages 2 0 R /PageLabels << /Nums [0 << /P <FEFF2167> >>] >> >>")
            .stream(5, "abcdef", "/Width 2 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceRGB")
            .bytes());
    folder_.add("signed.pdf", test::signedFile("[5 0 R]"));
    folder_.add("foreign.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='90' height='90'>"
                               "<filter id='f'/><rect width='9' height='9' filter='url(#f)'/>"
                               "<text y='50' font-family='Nobody Has It'>word</text></svg>");
    ASSERT_EQ(run({"open", "a.pdf", "--page", "2", "-o", "a.svg"}).status, 0);
    folder_.add("empty.svg", std::regex_replace(bytes("a.svg"), std::regex("<path[^>]*/>"), ""));
    folder_.add("b.svg", withLine(bytes("a.svg")));
    struct Row {
        Words words;
        int status;
        int lines;
    };
    const std::vector<Row> rows{
        {{"open", "a.pdf", "-o", "x.svg"}, 0, 1},
        {{"open", "\xFF.pdf", "-o", "\xFE.svg"}, 0, 1},
        {{"open", "image.pdf", "-o", "y.svg"}, 0, 1},
        {{"open", "a.pdf", "-o", "z.svg", "--profile", "original"}, 0, 1},
        {{"open", "no.pdf"}, 1, 1},
        {{"open", "a.pdf", "no.pdf", "--pages", "1-", "-o", "{stem}{page}.svg"}, 1, 4},
        {{"info", "a.pdf"}, 0, 1},
        {{"info", "image.pdf", "--page", "1"}, 0, 1},
        {{"info", "labelled.pdf"}, 0, 1},
        {{"info", "labelled.pdf", "--page", "1", "--thumbnail", "t.png"}, 0, 1},
        {{"info", "image.pdf", "--page", "1", "--thumbnail", "u.png"}, 1, 1},
        {{"info", "signed.pdf"}, 0, 1},
        {{"info", "broken.pdf"}, 0, 1},
        {{"info", "no.pdf"}, 1, 1},
        {{"check", "broken.pdf"}, 0, 1},
        {{"check", "no.pdf"}, 1, 1},
        {{"check", "broken.pdf", "no.pdf", "--jobs", "2"}, 1, 3},
        {{"save", "b.svg", "a.pdf", "--dry-run"}, 0, 1},
        {{"save", "empty.svg", "a.pdf"}, 1, 1},
        {{"save", "b.svg", "a.pdf", "--output", "copy.pdf"}, 0, 1},
        {{"save", "b.svg", "a.pdf"}, 0, 1},
        {{"save", "b.svg", "a.pdf", "--page", "1"}, 1, 1},
        {{"save", "foreign.svg", "new.pdf"}, 1, 1},
        {{"save", "foreign.svg", "new.pdf", "--force"}, 0, 1},
        {{"save", "--mend", "broken.pdf", "--dry-run"}, 0, 1},
        {{"save", "--mend", "broken.pdf"}, 0, 1},
        {{"save", "--mend", "a.pdf"}, 0, 1},
        {{"save", "--mend", "no.pdf"}, 1, 1},
        {{"save", "no.svg", "a.pdf"}, 1, 1},
        {{"edit", "a.pdf", "--page", "1", "--editor", "sed -i s/#[0-9a-f]*/#123456/"}, 0, 1},
        {{"edit", "a.pdf", "--page", "1", "--editor", "cp a.pdf"}, 1, 1},
        {{"edit", "a.pdf", "--editor", "corvane-no-such-editor"}, 1, 1},
        {{"edit", "no.pdf"}, 1, 1},
        {{"log", "a.pdf"}, 0, 1},
        {{"log", "no.pdf"}, 1, 1},
        {{"revert", "a.pdf"}, 0, 1},
        {{"revert", "image.pdf"}, 1, 1},
        {{"revert", "no.pdf"}, 1, 1},
        {{"serve", "no.pdf"}, 1, 1},
        {{"inkscape", "--install"}, 0, 1},
        {{"inkscape", "--remove"}, 0, 1},
    };
    for (Row row : rows) {
        row.words.emplace_back("--json");
        auto command = process(row.words);
        command.environment.emplace_back("TMPDIR", folder_.path());
        command.environment.emplace_back("INKSCAPE_PROFILE_DIR", folder_.path());
        const auto outcome = test::run(command);
        EXPECT_EQ(outcome.status, row.status) << row.words[0] << outcome.output << outcome.errors;
        EXPECT_EQ(linesThatFit(schema, outcome.output), row.lines) << outcome.output;
    }
    auto serving = process({"serve", "a.pdf", "--no-browser", "--json"});
    serving.words.insert(serving.words.begin(),
                         {"/bin/sh", "-c",
                          "\"$@\" >told & until test -s told; do sleep .05; done; kill $!; wait; "
                          "cat told",
                          "sh"});
    EXPECT_EQ(linesThatFit(schema, test::run(serving).output), 1);
    const std::string listed = run({"info", "labelled.pdf", "--json"}).output;
    EXPECT_NE(listed.find("\"page\":1,\"label\":\"\u2167\",\"thumbnail\":true"), std::string::npos)
        << listed;
    const auto streamed = run({"open", "a.pdf", "-o", "-", "--json"});
    EXPECT_EQ(linesThatFit(schema, streamed.errors), 1) << "the artwork is on standard output";
}

class JsonFactsOfFakes : public FakeSave {};

TEST_F(JsonFactsOfFakes, OfRareFactsIsDocumented) {
    const JsonSchema schema = documentedSchema();
    add("a.svg", root_);
    struct Row {
        const char* part;
        Words words;
        int status;
    };
    for (const Row& row :
         {Row{"pages=3 missing=2", {"save", "a.svg", "in.pdf"}, 1},
          Row{"pages=3 layers=2 changed=1", {"save", "a.svg", "in.pdf"}, 0},
          Row{"omitted=3 warnings=2 images=3", {"open", "in.pdf", "-o", "b.svg"}, 0},
          Row{"", {"log", "in.pdf"}, 0}}) {
        Words words = row.words;
        words.emplace_back("--json");
        const auto outcome = run(row.part, words);
        EXPECT_EQ(outcome.status, row.status) << row.part << outcome.errors;
        EXPECT_EQ(linesThatFit(schema, outcome.output), 1) << row.part;
    }
}

/// A command is done, fails, is cancelled, or is used badly: each has its exit status, which --help
/// names, and its object, which bad usage has not.
TEST_F(JsonFactsOfFakes, EveryExitStatusOfEveryCommand) {
    const JsonSchema schema = documentedSchema();
    add("a.svg", root_);
    struct Row {
        const char* selector; ///< that does the work
        Words words;
    };
    const std::vector<Row> rows{
        {"4", {"open", "in.pdf", "-o", "b.svg"}},
        {"4", {"save", "a.svg", "in.pdf"}},
        {"20", {"save", "a.svg", "in.pdf", "--dry-run"}},
        {"4", {"edit", "in.pdf", "--page", "3", "--editor", "sed -i s/1[.]1/1.2/"}},
        {"16", {"info", "in.pdf"}},
        {"17", {"check", "in.pdf"}},
        {"18", {"log", "in.pdf"}},
        {"19", {"revert", "in.pdf"}},
    };
    const std::string help = run("", {"--help"}).output;
    const std::string statuses = help.substr(std::min(help.find("Exit"), help.size()));
    const auto expectEnd = [&](const std::string& part, Words words, int status, int lines) {
        EXPECT_TRUE(std::regex_search(statuses, std::regex("\\b" + std::to_string(status) + "\\b")))
            << status << " is not in " << statuses;
        words.emplace_back("--json");
        folder_.add("in.pdf", old_);
        const auto outcome = run("pages=3 " + part, words);
        EXPECT_EQ(outcome.status, status) << part << " " << words[0] << outcome.errors;
        EXPECT_EQ(linesThatFit(schema, outcome.output), lines) << part << " " << words[0];
    };
    for (const Row& row : rows) {
        const std::string here = std::string("@") + row.selector;
        expectEnd("", row.words, 0, 1);
        expectEnd("error" + here + "=7", row.words, 1, 1);
        expectEnd("stop" + here, row.words, 130, 1);
        Words unknown = row.words;
        unknown.emplace_back("--nonsense");
        expectEnd("", unknown, 2, 0);
    }
    folder_.add("crash1.pdf", old_);
    expectEnd("error@21=7", {"save", "--mend", "in.pdf"}, 1, 1);
    expectEnd("stop@21", {"save", "--mend", "in.pdf"}, 130, 1);
    expectEnd("crash", {"open", "crash1.pdf", "in.pdf", "-o", "{stem}.svg"}, 1, 3);
}

} // namespace
} // namespace corvane
