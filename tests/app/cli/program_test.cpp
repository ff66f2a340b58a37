// The real program with a plug-in that acts a part: exit statuses, what is said where, what is
// left.
#include "tests/app/cli/fake_program.h"
#include "tests/support/process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::holds;
using Names = std::vector<std::string>;

using Program = FakeProgram;

TEST_F(Program, OpensAPageAndSaysWhere) {
    const auto outcome = run("warnings=2 omitted=3", {"open", "in.pdf"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "corvane: in.pdf: page 1 is in in-page1.svg\n"
                              "corvane: in.pdf: not in the artwork, and kept when it is saved: 3 "
                              "pieces of text\n"
                              "corvane: in.pdf: warning 1: warning number 1\n"
                              "corvane: in.pdf: warning 2: warning number 2\n");
    EXPECT_TRUE(fileBytes(folder_.path() / "in-page1.svg").ends_with("</svg>\n"));
    EXPECT_EQ(folder_.names(), (Names{"in-page1.svg", "in.pdf"}));

    const auto again = run("", {"open", "in.pdf"});
    EXPECT_EQ(again.status, 1);
    EXPECT_TRUE(holds(again.errors, "error 18: in-page1.svg is there already")) << again.errors;
    EXPECT_EQ(run("warnings=2", {"open", "in.pdf", "-o", "in-page1.svg", "--quiet"}).errors, "");
}

TEST_F(Program, AnArtworkIsNamedByPageAndFile) {
    const auto name = [&](const std::string& output, const std::string& more = "--json") {
        const auto outcome = run("", {"open", "in.pdf", "-o", output, more});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        const std::string text =
            output == "-" ? outcome.output : fileBytes(folder_.path() / output);
        const std::string attribute = " data-artwork=\"";
        const auto at = text.find(attribute);
        return at == std::string::npos ? "" : text.substr(at + attribute.size(), 17);
    };
    fs::create_directory(folder_.path() / "b");
    // FNV-1a of 0x1234, lowest byte first, and "a.svg".
    EXPECT_EQ(name("a.svg"), "1594137c6d87ca0e\"");
    EXPECT_EQ(name("a.svg"), name("b/a.svg"));
    EXPECT_NE(name("a.svg"), name("b.svg"));
    EXPECT_NE(name("a.svg"), name("-"));
    EXPECT_EQ(name("a.svg", "--profile=original"), "");
}

TEST_F(Program, WritesToStandardOutputAndKeepsFactsApart) {
    const auto outcome = run("warnings=1 omitted=3", {"open", "in.pdf", "-o", "-", "--json"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.output.starts_with("<?xml"));
    EXPECT_TRUE(outcome.output.ends_with("</svg>\n"));
    EXPECT_EQ(
        outcome.errors,
        R"({"command":"open","file":"in.pdf","profile":"extended",)"
        R"("version":"1.4","length":12345,"pageCount":1,"objects":42,"updates":1,"page":1,"output":"-",)"
        R"("images":{"folder":null,"written":0,"found":0},)"
        R"("omitted":{"text":3},"warnings":[{"code":1,"sentence":"warning number 1"}],)"
        R"("error":null})"
        "\n");
    EXPECT_EQ(folder_.names(), Names{"in.pdf"});
}

TEST_F(Program, FailuresHaveTheirStatusAndLeaveNothing) {
    struct Row {
        const char* part;
        std::vector<std::string> words;
        int status;
        const char* wanted; ///< is in what is said
    };
    const std::vector<Row> rows{
        {"error@3=7", {"open", "in.pdf"}, 1, "corvane: in.pdf: error 7: the fake failed as told\n"},
        {"error@4=12", {"open", "in.pdf", "--quiet"}, 1, "error 12"},
        {"error@16=12", {"info", "in.pdf"}, 1, "error 12"},
        {"error@17=7", {"check", "in.pdf"}, 1, "error 7"},
        {"answer@7=0x464D543F", {"open", "in.pdf"}, 1, "error 20"},
        {"answer@7=0x464D543F", {"check", "in.pdf"}, 1, "error 20"},
        {"answer@4=0x1234", {"open", "in.pdf"}, 1, "error 3: the plug-in gave an answer"},
        {"stop@4", {"open", "in.pdf"}, 130, "corvane: in.pdf: cancelled\n"},
        {"nameless", {"open", "in.pdf"}, 1, "error 18"},
        {"unregistered", {"check", "in.pdf"}, 1, "error 18"},
        {"unfinished", {"open", "in.pdf"}, 1, "error 3"},
        {"pages=12",
         {"open", "in.pdf", "--page", "13"},
         1,
         "error 15: there is no page 13 in a file of 12 pages"},
        {"", {"open", "none.pdf"}, 1, "error 19"},
        {"", {"info", "."}, 1, "error 19: the file cannot be opened (it is a folder)"},
        {"", {"check", "/dev/null"}, 1, "error 19"},
        {"", {"open", ""}, 1, "error 19"},
        {"", {"open", "in.pdf", "-o", "none/a.svg"}, 1, "error 18"},
        {"", {"open", "in.pdf", "-o", "/dev/full"}, 1, "error 6"},
        {"", {"open", "in.pdf", "-o", "in.pdf"}, 1, "error 18: in.pdf is read from"},
        {"", {"open", "in.pdf", "--page", "0"}, 2, "--page"},
        {"", {}, 2, "command"},
    };
    for (const Row& row : rows) {
        const auto outcome = run(row.part, row.words);
        EXPECT_EQ(outcome.status, row.status) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(holds(outcome.errors, row.wanted)) << outcome.errors;
        EXPECT_EQ(folder_.names(), Names{"in.pdf"}) << row.wanted;
    }
    EXPECT_EQ(fileBytes(pdf_), "%PDF-1.4 of a kind");
}

TEST_F(Program, JsonSaysTheSameOfFailures) {
    const auto outcome = run("error@4=7", {"open", "in.pdf", "--json"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(
        outcome.output,
        R"({"command":"open","file":"in.pdf","profile":"extended",)"
        R"("version":"1.4","length":12345,"pageCount":1,"objects":42,"updates":1,"page":1,"output":null,)"
        R"("images":{"folder":null,"written":0,"found":0},)"
        R"("omitted":{},"warnings":[],)"
        R"("error":{"code":7,"sentence":"the fake failed as told"}})"
        "\n");
    EXPECT_TRUE(holds(outcome.errors, "error 7"));
}

TEST_F(Program, TellsWhatItKnowsOfAFile) {
    EXPECT_EQ(run("pages=3", {"check", "in.pdf"}).output, "in.pdf: can be opened (3 pages)\n");
    const auto text = run("pages=3", {"info", "in.pdf"});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(holds(text.output, "  1-2       612 x 792 pt\n")) << text.output;
    const auto json = run("pages=1", {"info", "in.pdf", "--json", "--profile", "original"});
    EXPECT_EQ(json.output,
              R"({"command":"info","file":"in.pdf","profile":"original","version":"1.4",)"
              R"("length":12345,"pageCount":1,"objects":42,"updates":1,)"
              R"("signatures":{"count":0,"ofFile":0,"ofRevision":0,"certified":false},)"
              R"("pages":[{"page":1,)"
              R"("object":11,"generation":0,"mediaBox":[0,0,612,792],"cropBox":[36,36,576,756],)"
              R"("rotate":90,"userUnit":2.5}],"warnings":[],"error":null})"
              "\n");
    EXPECT_EQ(run("", {"--version"}).output.substr(0, 8), "corvane ");
    EXPECT_EQ(run("", {"--help"}).status, 0);
}

TEST_F(Program, TakesTheFirstPageWithoutATerminalAndAsksOnOne) {
    const auto first = run("pages=12", {"open", "in.pdf", "-o", "a.svg"});
    EXPECT_EQ(first.status, 0);
    EXPECT_TRUE(holds(first.errors, "page 1 of 12; name another with --page")) << first.errors;
    EXPECT_FALSE(holds(run("pages=12", {"open", "in.pdf", "-o", "a.svg", "--page", "3"}).errors,
                       "name another"));

    struct Row {
        const char* typed;
        int status;
        const char* made;
    };
    for (const Row& row : {Row{"99\n7\n", 0, "in-page7.svg"}, Row{"\n", 0, "in-page1.svg"},
                           Row{"q\n", 130, nullptr}}) {
        auto asked = process("pages=12", {"open", "in.pdf"});
        asked.onTerminal = true;
        asked.input = row.typed;
        const auto outcome = test::run(asked);
        EXPECT_EQ(outcome.status, row.status) << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "in.pdf has 12 pages")) << outcome.errors;
        EXPECT_TRUE(row.made == nullptr || fs::remove(folder_.path() / row.made));
    }
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf"}));
}

TEST_F(Program, CtrlCCancels) {
    auto waiting = process("wait", {"open", "in.pdf", "-o", "a.svg"});
    waiting.interruptOn = "waiting";
    const auto reading = test::run(waiting);
    EXPECT_EQ(reading.status, 130) << reading.errors;
    EXPECT_TRUE(holds(reading.errors, "cancelled"));

    waiting.onTerminal = true;
    waiting.interruptOn = "reading ";
    const auto shown = test::run(waiting);
    EXPECT_EQ(shown.status, 130) << shown.errors;
    EXPECT_TRUE(holds(shown.errors, "\r\x1B[Kcorvane: reading ")) << shown.errors;

    auto asking = process("pages=2", {"open", "in.pdf", "-o", "a.svg"});
    asking.onTerminal = true;
    asking.interruptOn = "cancel)";
    EXPECT_EQ(test::run(asking).status, 130);
    EXPECT_EQ(folder_.names(), Names{"in.pdf"});
}

TEST_F(Program, AFullDiskAndALockedFolderLeaveWhatWasThere) {
    folder_.add("a.svg", "old");
    auto full = process("segments=500000", {"open", "in.pdf", "-o", "a.svg"});
    full.fileSize = 300000;
    const auto outcome = test::run(full);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(holds(outcome.errors, "error 6: a.svg cannot be written")) << outcome.errors;
    EXPECT_EQ(fileBytes(folder_.path() / "a.svg"), "old");
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf"}));

    fs::permissions(folder_.path(), fs::perms::owner_read | fs::perms::owner_exec);
    auto locked = process("", {"open", "in.pdf", "-o", "a.svg"});
    locked.obeysPermissions = true;
    const auto refused = test::run(locked);
    fs::permissions(folder_.path(), fs::perms::owner_all);
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(holds(refused.errors, "error 18")) << refused.errors;
    EXPECT_EQ(fileBytes(folder_.path() / "a.svg"), "old");
}

TEST_F(Program, StandardOutputThatIsThePdfIsRefused) {
    for (const char* command : {"open", "info", "check"}) {
        auto appended = process("", {command, "in.pdf"});
        if (appended.words[1] == "open") {
            appended.words.insert(appended.words.end(), {"-o", "-"});
        }
        appended.outputFile = pdf_;
        EXPECT_EQ(test::run(appended).status, 1) << command;
    }
    EXPECT_EQ(fileBytes(pdf_), "%PDF-1.4 of a kind");
}

TEST_F(Program, OpensFilesOfEveryName) {
    for (const std::string& name :
         {std::string("with space.pdf"), std::string(251, 'n') + ".pdf", std::string("-x.pdf"),
          std::string("\xFF\xFE\x1B.pdf"), std::string("a:b\n.pdf"), std::string(".pdf")}) {
        folder_.add(name, "%PDF-1.4");
        const auto outcome = run("hostile warnings=1", {"open", "--json", "--", name});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_FALSE(holds(outcome.output + outcome.errors, "\x1B"));
        EXPECT_TRUE(holds(outcome.output, "\"error\":null")) << outcome.output;
        const auto failed = run("hostile error@4=7", {"open", "-o", "b.svg", "--", name});
        EXPECT_FALSE(holds(failed.errors, "\x1B")) << failed.errors;
        EXPECT_EQ(failed.status, 1);
    }
    const auto bytes = run("", {"check", "--json", "\xFF\xFE\x1B.pdf"});
    EXPECT_TRUE(holds(bytes.output, R"("fileBytes":"fffe1b2e706466")")) << bytes.output;
}

TEST_F(Program, AsksForTheFolderOfThePictures) {
    EXPECT_TRUE(holds(run("folder", {"open", "in.pdf", "-o", "a.svg"}).errors, "folder\n"));
    EXPECT_TRUE(fs::is_directory(folder_.path() / "a-images"));
    EXPECT_TRUE(holds(run("folder", {"open", "in.pdf", "-o", "-"}).errors, "no folder\n"));
    EXPECT_EQ(run("folder unfinished", {"open", "in.pdf", "--images", "p"}).status, 1);
    EXPECT_FALSE(fs::exists(folder_.path() / "p"));
}

TEST_F(Program, SaysWhyThereIsNoPlugin) {
    auto missing = process("", {"check", "in.pdf"});
    missing.environment[0].second = "/nowhere/corvane-pdf.so";
    const auto outcome = test::run(missing);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(holds(outcome.errors, "error 18: the plug-in cannot be loaded")) << outcome.errors;
}

} // namespace
} // namespace corvane
