// `save`, `log` and `revert` with a plug-in that acts a part: what is asked of it, what is said,
// and where the bytes go.
#include "tests/app/cli/fake_save.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::holds;
using Names = std::vector<std::string>;

class Save : public FakeSave {
protected:
    const std::string art_ = add("a.svg", root_);
};

TEST_F(Save, AppendsUnderALockAndSaysWhat) {
    const auto outcome = run("tells pages=3", {"save", "a.svg", "in.pdf"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "write locked\nwrite locked\n"
                              "corvane: page 3 of in.pdf: 16 bytes appended (3 objects)\n");
    EXPECT_EQ(fileBytes(pdf_), new_);
    EXPECT_EQ(run("pages=3", {"save", "a.svg", "in.pdf", "--quiet"}).errors, "");
    EXPECT_EQ(fileBytes(pdf_), new_ + "page of 2 paths\n");
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf"}));
}

TEST_F(Save, TakesArtworkFromStandardInput) {
    auto piped = process("", {"save", "-", "in.pdf", "--page", "1"});
    piped.input = fileBytes(art_);
    EXPECT_EQ(test::run(piped).status, 0);
    EXPECT_EQ(fileBytes(pdf_), new_);
}

TEST_F(Save, JsonTellsTheFacts) {
    const auto outcome = run("pages=3 layers=1", {"save", "a.svg", "in.pdf", "--json"});
    EXPECT_EQ(
        outcome.output,
        R"({"command":"save","file":"in.pdf","profile":"extended","artwork":"a.svg",)"
        R"("output":"in.pdf","dryRun":false,"page":3,"object":13,"generation":0,)"
        R"("formerLength":18,"length":34,"objects":3,"contentLength":16,"nothing":false,)"
        R"("patched":false,"kept":0,"changed":0,"added":0,"removed":0,"moved":0,"omitted":{},)"
        R"("ignored":{},"layersLeftOut":["notes 1"],"layersNotKept":[],"annotationsKept":[],"fontsAdded":[],"missing":[],"warnings":[{"code":1004,)"
        R"--("sentence":"layers were not drawn (\"notes 1\")"}],"error":null})--"
        "\n");
    EXPECT_EQ(outcome.errors, "");

    auto appended = process("pages=3", {"save", "a.svg", "in.pdf", "--json"});
    appended.outputFile = pdf_;
    EXPECT_EQ(test::run(appended).status, 1) << "facts never go into the PDF";
    EXPECT_EQ(fileBytes(pdf_), new_);
}

TEST_F(Save, ADryRunChangesNothing) {
    const auto outcome = run("tells pages=3", {"save", "a.svg", "in.pdf", "--dry-run"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "page 3 of in.pdf: 16 bytes would be appended (3 objects)\n"))
        << outcome.errors;
    EXPECT_EQ(run("pages=3", {"save", "a.svg", "new.pdf", "--dry-run"}).status, 0);
    // What the save itself may not do is said before; of a file that is copied nothing is wanted.
    fs::permissions(pdf_, fs::perms::owner_read);
    auto dry = process("pages=3", {"save", "a.svg", "in.pdf", "--dry-run"});
    dry.obeysPermissions = true;
    EXPECT_TRUE(holds(test::run(dry).errors, "error 19: the file cannot be changed"));
    dry.words.insert(dry.words.end(), {"--output", "b.pdf"});
    EXPECT_EQ(test::run(dry).status, 0);
    EXPECT_EQ(fileBytes(pdf_), old_);
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf"}));
}

TEST_F(Save, OutputIsACopyThatIsWholeOrNotThere) {
    const auto outcome = run("pages=3", {"save", "a.svg", "in.pdf", "--output", "b.pdf"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "corvane: page 3 of b.pdf: 16 bytes appended (3 objects)\n");
    EXPECT_EQ(fileBytes(folder_.path() / "b.pdf"), new_);
    EXPECT_EQ(fileBytes(pdf_), old_);

    for (const char* part : {"pages=3 error@4=6", "pages=3 stop@4", "pages=2", "error@3=12"}) {
        EXPECT_NE(run(part, {"save", "a.svg", "in.pdf", "--output", "c.pdf"}).status, 0);
        EXPECT_NE(run(part, {"save", "a.svg", "in.pdf", "--output", "b.pdf"}).status, 0);
    }
    for (const char* other : {"in.pdf", "./in.pdf", "a.svg", "/dev/null", ".", "none/b.pdf"}) {
        const auto refused = run("pages=3", {"save", "a.svg", "in.pdf", "--output", other});
        EXPECT_EQ(refused.status, 1) << other;
        EXPECT_TRUE(holds(refused.errors, "error 18")) << refused.errors;
    }
    EXPECT_TRUE(holds(run("", {"save", "a.svg", "none.pdf", "--output", "c.pdf"}).errors,
                      "error 19: the file cannot be opened (there is none to copy)"));
    EXPECT_EQ(fileBytes(folder_.path() / "b.pdf"), new_);
    EXPECT_EQ(fileBytes(pdf_), old_);
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "b.pdf", "in.pdf"}));

    fs::permissions(pdf_, fs::perms::owner_read);
    auto readOnly = process("pages=3", {"save", "a.svg", "in.pdf", "--output", "b.pdf"});
    readOnly.obeysPermissions = true;
    EXPECT_EQ(test::run(readOnly).status, 0) << "a file that may only be read can be copied";
}

TEST_F(Save, ANewFileAppearsWhole) {
    for (const char* part : {"pages=3 error@4=6", "pages=3 stop@4", "error@3=18"}) {
        EXPECT_NE(run(part, {"save", "a.svg", "new.pdf"}).status, 0);
        EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf"})) << part;
    }
    const auto outcome = run("digest=7", {"save", "a.svg", "new.pdf"});
    EXPECT_EQ(outcome.errors, "corvane: new.pdf is a new file\n"
                              "corvane: page 1 of new.pdf: 16 bytes appended (3 objects)\n");
    EXPECT_EQ(fileBytes(folder_.path() / "new.pdf"), "%PDF-1.4 new\npage of 2 paths\n");
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf", "new.pdf"}));
    EXPECT_EQ(run("", {"save", "a.svg", "more.pdf", "--page", "2"}).status, 1);
}

TEST_F(Save, AChangedPageNeedsForce) {
    const auto refused = run("pages=3 digest=7", {"save", "a.svg", "in.pdf"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(holds(refused.errors,
                      "error 21: page 3 is not the page that the artwork was opened from (page 3 "
                      "of in.pdf), or was changed since; open it again, or replace it with "
                      "--force\n"))
        << refused.errors;
    EXPECT_EQ(fileBytes(pdf_), old_);
    EXPECT_EQ(run("pages=3 digest=7", {"save", "a.svg", "in.pdf", "--force"}).status, 0);
    add("b.svg", "");
    EXPECT_EQ(run("digest=7", {"save", "b.svg", "in.pdf", "--page", "1"}).status, 0)
        << "artwork of nobody's page is held against none";
}

TEST_F(Save, TheArtworkKnowsPageAndProfile) {
    EXPECT_TRUE(holds(run("pages=2", {"save", "a.svg", "in.pdf"}).errors, "there is no page 3"));
    EXPECT_TRUE(holds(run("pages=3", {"save", "a.svg", "in.pdf", "--page", "2"}).errors,
                      "page 2 of in.pdf"));
    add("b.svg", "");
    const std::string before = fileBytes(pdf_);
    const auto guess = run("pages=3", {"save", "b.svg", "in.pdf"});
    EXPECT_EQ(guess.status, 1);
    EXPECT_TRUE(holds(guess.errors, "in.pdf: error 28: the file has 3 pages, and the artwork does "
                                    "not say which it is; name one with --page\n"))
        << guess.errors;
    EXPECT_EQ(fileBytes(pdf_), before);
    auto asked = process("pages=12", {"save", "b.svg", "in.pdf"});
    asked.onTerminal = true;
    asked.input = "q\n";
    const auto outcome = test::run(asked);
    EXPECT_EQ(outcome.status, 130);
    EXPECT_TRUE(holds(outcome.errors, "Page to replace, 1 to 12")) << outcome.errors;

    add("old.svg", "data-producer=\"corvane\" data-version=\"1\" data-page=\"1\" "
                   "data-profile=\"original\"");
    EXPECT_TRUE(
        holds(run("", {"save", "old.svg", "in.pdf", "--json"}).output, "\"profile\":\"original\""));
    EXPECT_TRUE(
        holds(run("", {"save", "old.svg", "in.pdf", "--profile", "extended"}).errors, "error 27"));
}

TEST_F(Save, FailuresLeaveTheFileAsItWas) {
    folder_.add("broken.svg", "no artwork");
    folder_.add("b.pdf", "%PDF-1.4");
    const Names before = folder_.names();
    struct Row {
        const char* part;
        std::vector<std::string> words;
        int status;
        const char* wanted; ///< is in what is said
    };
    const std::vector<Row> rows{
        {"pages=3 error@4=23", {"save", "a.svg", "in.pdf"}, 1, "error 23: the fake failed"},
        {"pages=3 error@3=22", {"save", "a.svg", "in.pdf"}, 1, "error 22: the fake failed"},
        {"pages=3 stop@4", {"save", "a.svg", "in.pdf"}, 130, "in.pdf: cancelled\n"},
        {"answer@7=0x464D543F", {"save", "a.svg", "in.pdf"}, 1, "error 20"},
        {"", {"save", "none.svg", "in.pdf"}, 1, "error 27: the artwork in none.svg cannot be read"},
        {"", {"save", ".", "in.pdf"}, 1, "error 27: the artwork in . cannot be read (Is a"},
        {"", {"save", "broken.svg", "in.pdf"}, 1, "error 27: the artwork in broken.svg"},
        {"", {"save", "b.pdf", "a.svg"}, 1, "name the artwork first"},
        {"", {"save", "a.svg", "."}, 1, "error 19: the file cannot be opened (it is a folder)"},
        {"", {"save", "a.svg", "none/in.pdf"}, 1, "error 18: none/in.pdf cannot be written"},
        {"error@18=12", {"log", "in.pdf"}, 1, "error 12"},
        {"error@19=25", {"revert", "in.pdf"}, 1, "error 25"},
        {"", {"revert", "none.pdf"}, 1, "error 19"},
    };
    for (const Row& row : rows) {
        const auto outcome = run(row.part, row.words);
        EXPECT_EQ(outcome.status, row.status) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(holds(outcome.errors, row.wanted)) << outcome.errors;
        EXPECT_EQ(fileBytes(pdf_), old_);
        EXPECT_EQ(folder_.names(), before) << row.wanted;
    }
    fs::permissions(pdf_, fs::perms::owner_read);
    for (const auto& words : {Names{"save", "a.svg", "in.pdf"}, Names{"revert", "in.pdf"}}) {
        auto readOnly = process("pages=3", words);
        readOnly.obeysPermissions = true;
        const auto outcome = test::run(readOnly);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(holds(outcome.errors, "error 19: the file cannot be changed (Permission "))
            << outcome.errors;
    }
    EXPECT_EQ(fileBytes(pdf_), old_);
}

TEST_F(Save, CtrlCCancelsUntilAllIsSaved) {
    auto waiting = process("pages=3 wait", {"save", "a.svg", "in.pdf"});
    waiting.interruptOn = "waiting";
    const auto cancelled = test::run(waiting);
    EXPECT_EQ(cancelled.status, 130);
    EXPECT_TRUE(holds(cancelled.errors, "cancelled")) << cancelled.errors;
    EXPECT_EQ(fileBytes(pdf_), old_);

    auto late = process("pages=3 late", {"save", "a.svg", "in.pdf"});
    late.interruptOn = "saved";
    const auto saved = test::run(late);
    EXPECT_EQ(saved.status, 0) << saved.errors;
    EXPECT_TRUE(holds(saved.errors, "16 bytes appended"));
    EXPECT_EQ(fileBytes(pdf_), new_);
}

/// Keeps a file as another program does.
class OtherSave {
public:
    explicit OtherSave(const std::string& path) : file_(open(path.c_str(), O_RDWR | O_CLOEXEC)) {
        struct flock lock {};
        lock.l_type = F_WRLCK;
        EXPECT_EQ(fcntl(file_, F_OFD_SETLK, &lock), 0);
    }
    ~OtherSave() { close(file_); }
    OtherSave(const OtherSave&) = delete;
    OtherSave& operator=(const OtherSave&) = delete;

private:
    int file_;
};

TEST_F(Save, AFileThatIsBeingSavedIsLeftAlone) {
    folder_.add("b.pdf", "%PDF-1.4");
    const OtherSave in(pdf_);
    const OtherSave other((folder_.path() / "b.pdf").string());
    for (const auto& words : {Names{"save", "a.svg", "in.pdf"}, Names{"revert", "in.pdf"},
                              Names{"save", "a.svg", "in.pdf", "--output", "c.pdf"},
                              Names{"save", "a.svg", "a.pdf", "--output", "b.pdf"}}) {
        fs::copy_file(pdf_, folder_.path() / "a.pdf", fs::copy_options::overwrite_existing);
        const auto outcome = run("pages=3", words);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(holds(outcome.errors, "error 19: another program is saving into "))
            << outcome.errors;
    }
    EXPECT_EQ(fileBytes(pdf_), old_);
    EXPECT_EQ(folder_.names(), (Names{"a.pdf", "a.svg", "b.pdf", "in.pdf"}));
}

TEST_F(Save, TellsUpdatesAndTakesThemOff) {
    EXPECT_EQ(run("", {"log", "in.pdf"}).output,
              "in.pdf\n"
              "  update  offset   size  objects  pages   date (UTC)\n"
              "       0       0  1,200       42  1-3, 7  2026-01-01 00:00:00\n"
              "       1   1,200     18        3  1       2026-11-20 23:02:03  ours\n");
    EXPECT_EQ(run("", {"log", "in.pdf", "--json"}).output,
              R"({"command":"log","file":"in.pdf","profile":"extended","updates":[{"number":0,)"
              R"("offset":0,"size":1200,"objects":42,"pages":[1,2,3,7],)"
              R"("date":"2026-01-01T00:00:00Z","ours":false},{"number":1,"offset":1200,"size":18,)"
              R"("objects":3,"pages":[1],"date":"2026-11-20T23:02:03Z","ours":true}],)"
              R"("warnings":[],"error":null})"
              "\n");
    EXPECT_EQ(fileBytes(pdf_), old_);
    const auto outcome = run("", {"revert", "in.pdf"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "corvane: in.pdf: update 1 (18 bytes, page 1) was taken off; the "
                              "file is again as it was before\n");
    EXPECT_EQ(fileBytes(pdf_), old_.substr(0, 10));
    EXPECT_TRUE(
        holds(run("", {"revert", "in.pdf", "--json"}).output, "\"takenOff\":[{\"number\":1"));
}

} // namespace
} // namespace corvane
