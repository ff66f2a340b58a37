#include "tests/app/cli/edit/editing.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;

class Edit : public Editing {};

TEST_F(Edit, WhateverWayAnEditorSaves) {
    struct Row {
        const char* what;
        const char* body;
        int saves;
    };
    const std::vector<Row> rows{
        {"in place", "recolour ff0000 00ff00", 1},
        {"a rename", "sed 's/ff0000/00ff00/' \"$art\" > \"$art.new\"; mv \"$art.new\" \"$art\"", 1},
        {"the old one moved away",
         "mv \"$art\" \"$art~\"; sed 's/ff0000/00ff00/' \"$art~\" > \"$art\"", 1},
        {"several pieces",
         "sed 's/ff0000/00ff00/' \"$art\" > whole; head -c 300 whole > \"$art\"; "
         "sleep 0.4; tail -c +301 whole >> \"$art\"; saved $(size)",
         1},
        {"twice", "n=$(size); recolour ff0000 ffff00; saved $n; recolour ffff00 00ff00", 2},
        {"and does not end well", "recolour ff0000 00ff00; exit 3", 1},
    };
    for (const Row& row : rows) {
        folder_.add("in.pdf", pdf_);
        const auto outcome = edit(row.body);
        EXPECT_EQ(outcome.status, 0) << row.what << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "corvane: page 1: 1 object changed; ")) << row.what;
        EXPECT_TRUE(holds(outcome.errors, "; take it off with \"corvane revert in.pdf\"\n"));
        EXPECT_FALSE(holds(outcome.errors, "cannot be read")) << row.what << outcome.errors;
        EXPECT_TRUE(holds(artwork("in.pdf", 1), "#00ff00")) << row.what;
        EXPECT_TRUE(left().empty()) << row.what;
        for (int i = 0; i < row.saves; ++i) {
            EXPECT_EQ(run({"revert", "in.pdf"}).status, 0) << row.what;
        }
        EXPECT_EQ(bytes("in.pdf"), pdf_) << row.what;
        EXPECT_TRUE(isValid("in.pdf"));
    }
}

TEST_F(Edit, EachSaveIsMadeToThePageThatWasOpened) {
    const auto outcome = edit("cp \"$art\" first; n=$(size)\n"
                              "recolour ff0000 00ff00; saved $n; n=$(size)\n"
                              "recolour 0000ff ff00ff; saved $n; n=$(size)\n"
                              "cat first > \"$art\"; saved $n; touch \"$art\"");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "page 1: 2 objects changed; ")) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "page 1: nothing to save")) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "page 1: as it was opened; ")) << outcome.errors;
    const auto log = run({"log", "in.pdf", "--json"});
    EXPECT_TRUE(holds(log.output, "\"number\":3,") && !holds(log.output, "\"number\":4,"));
    const std::string opened = drawing(artwork("in.pdf", 1));
    EXPECT_TRUE(holds(opened, "#ff0000") && holds(opened, "#0000ff"));
    EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
    EXPECT_TRUE(holds(artwork("in.pdf", 1), "#ff00ff")) << "the save before stands again";
}

TEST_F(Edit, TheFolderIsPrivateAndTheFileIsNamedAfterThePage) {
    const auto outcome = edit("stat -c %a \"$(dirname \"$art\")\" > mode; echo \"$art\" > name\n"
                              "echo \"$CORVANE_PASSWORD\" > password; recolour ff0000 00ff00");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(bytes("mode"), "700\n");
    EXPECT_TRUE(bytes("name").starts_with(temporary() + "/corvane-edit-")) << bytes("name");
    EXPECT_TRUE(bytes("name").ends_with("/in-page1.svg\n")) << bytes("name");
    folder_.add("in.pdf", pdf_);
    auto secret = editing(folder_.path() / "editor");
    secret.environment.emplace_back("CORVANE_PASSWORD", "secret");
    EXPECT_EQ(test::run(secret).status, 0);
    EXPECT_EQ(bytes("password"), "\n") << "an editor has no use for it";
}

TEST_F(Edit, WhatIsNotSavedIsKeptAndNamed) {
    struct Row {
        const char* what;
        const char* body;
        const char* wanted; ///< in what is said
    };
    const std::vector<Row> rows{
        {"a broken file", "head -c 200 \"$art\" > half; cat half > \"$art\"", "error 27"},
        {"most of the page is gone", "grep -v '<path' \"$art\" > less; cat less > \"$art\"",
         "error 30: saving would delete 3 of 3 objects, 3 of 3 paths, which the artwork does not "
         "hold any more; "
         "not "
         "saved; the artwork stays in "},
        {"what artwork does not hold",
         "sed 's#</svg>#<foreignObject/></svg>#' \"$art\" > more; cat more > \"$art\"", "error 26"},
        {"another program's change", "printf '%%\\n' >> in.pdf; recolour ff0000 00ff00",
         "error 24: another program changed in.pdf"},
        {"the file is gone", "rm in.pdf; recolour ff0000 00ff00; touch in.pdf", "error 24"},
    };
    for (const Row& row : rows) {
        folder_.add("in.pdf", pdf_);
        const auto outcome = edit(row.body);
        EXPECT_EQ(outcome.status, 1) << row.what << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, row.wanted)) << row.what << outcome.errors;
        const auto folders = left();
        ASSERT_EQ(folders.size(), 1U) << row.what;
        const fs::path kept = fs::path(temporary()) / folders[0] / "in-page1.svg";
        EXPECT_TRUE(holds(outcome.errors,
                          "error 51: the artwork was not saved, and stays in " + kept.string()))
            << outcome.errors;
        EXPECT_TRUE(fs::exists(kept));
        EXPECT_TRUE(bytes("in.pdf").size() < pdf_.size() + 4) << row.what;
        fs::remove_all(kept.parent_path());
    }
}

TEST_F(Edit, APersonAtTheTerminalMayTakeALoss) {
    struct Row {
        const char* answers;
        const char* body;
        int status;
    };
    const char* const lessTwice =
        "grep -v '<path' \"$art\" > less; n=$(size); cat less > \"$art\"; saved $n; n=$(size)\n"
        "sed 's#</svg>#<path d=\"M0 0H9V9Z\"/></svg>#' less > \"$art\"; saved $n";
    const std::vector<Row> rows{
        {"y\n", lessTwice, 0}, // asked once
        {"n\n", "grep -v '<path' \"$art\" > less; cat less > \"$art\"", 1},
        {"y\n", "printf '%%\\n' >> in.pdf; recolour ff0000 00ff00", 0},
        {"y\ny\n", "printf '%%\\n' >> in.pdf; grep -v '<path' \"$art\" > l; cat l > \"$art\"", 1},
    };
    for (const Row& row : rows) {
        folder_.add("in.pdf", pdf_);
        auto asking = editing(script("editor", row.body));
        asking.onTerminal = true;
        asking.input = row.answers;
        asking.inputOn = "(y/N)";
        const auto outcome = test::run(asking);
        EXPECT_EQ(outcome.status, row.status) << row.body << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "(y/N)")) << outcome.errors;
        EXPECT_EQ(holds(outcome.errors, "would be removed"), !holds(row.body, "printf"))
            << outcome.errors;
        EXPECT_EQ(bytes("in.pdf").size() > pdf_.size() + 4, row.status == 0) << row.body;
        EXPECT_EQ(left().empty(), row.status == 0) << row.body;
        fs::remove_all(temporary());
        fs::create_directory(temporary());
    }
}

TEST_F(Edit, AnAnswerForTheFileIsNoneForThePage) {
    const std::string corvane = (test::buildFolder() / "corvane").string();
    auto asking = editing(script(
        "editor", corvane + " open in.pdf -o a.svg --quiet; sed s/0000ff/00ffff/ a.svg > b.svg\n" +
                      corvane +
                      " save b.svg in.pdf --quiet; cp in.pdf after.pdf\n"
                      "recolour ff0000 00ff00"));
    asking.onTerminal = true;
    asking.input = "y\n";
    asking.inputOn = "(y/N)";
    const auto outcome = test::run(asking);
    EXPECT_EQ(outcome.status, 1) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "error 29: ")) << outcome.errors;
    EXPECT_EQ(bytes("in.pdf"), bytes("after.pdf"));
    EXPECT_TRUE(holds(artwork("in.pdf", 1), "#00ffff"));
}

TEST_F(Edit, WhatWasTypedBeforeAQuestionAnswersNothing) {
    auto asking = editing(script("editor", "grep -v '<path' \"$art\" > less; cat less > \"$art\""));
    asking.onTerminal = true;
    asking.input = "y\n";
    asking.interruptOn = "(y/N)";
    const auto outcome = test::run(asking);
    EXPECT_EQ(outcome.status, 1) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "error 30: ")) << outcome.errors;
    EXPECT_EQ(bytes("in.pdf"), pdf_);
}

/// Programs that only pass the artwork on may touch it.
TEST_F(Edit, AnEditorThatReturnsAtOnceIsWaitedFor) {
    for (const std::string touch : {"", "cp \"$art\" same; cat same > \"$art\"; sleep 0.5; "}) {
        folder_.add("in.pdf", pdf_);
        const std::string afterItsEnd = "(while kill -0 $$; do sleep .05; done 2>/dev/null; sleep "
                                        ".3; recolour ff0000 00ff00) &";
        auto handing = editing(script("editor", touch + afterItsEnd));
        handing.interruptOn = "take it off with";
        const auto outcome = test::run(handing);
        EXPECT_EQ(outcome.status, 0) << touch << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "returned at once")) << touch << outcome.errors;
        EXPECT_TRUE(holds(artwork("in.pdf", 1), "#00ff00")) << touch;
        EXPECT_EQ(left().size(), 1U) << "the running editor still has the file open";
        fs::remove_all(temporary());
        fs::create_directory(temporary());
    }
}

TEST_F(Edit, CtrlCEndsTheWaitAndNotTheEditor) {
    auto waiting = editing(script("editor", "echo ready >&2; while grep -q 'State:.[^Z]' "
                                            "/proc/$PPID/status; do sleep .05; done 2>/dev/null\n"
                                            "echo goes on > alive; recolour ff0000 00ff00"));
    waiting.interruptOn = "ready";
    waiting.onTerminal = true;
    const auto outcome = test::run(waiting);
    EXPECT_EQ(outcome.status, 130) << outcome.errors;
    EXPECT_EQ(bytes("in.pdf"), pdf_);
    ASSERT_EQ(left().size(), 1U);
    const std::string kept = temporary() + "/" + left()[0] + "/in-page1.svg";
    EXPECT_TRUE(holds(outcome.errors, "corvane save " + kept + " in.pdf")) << outcome.errors;
    for (int i = 0; i < 600 && !fs::exists(folder_.path() / "changed"); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_EQ(bytes("alive"), "goes on\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(run({"save", kept, "in.pdf"}).status, 0) << "later, as was said";
}

TEST_F(Edit, AFileThatAPersonPutsThereStays) {
    const auto outcome =
        edit("recolour ff0000 00ff00; cp \"$art\" \"$(dirname \"$art\")/mine.svg\"\n"
             "touch \"$art~\" \"$(dirname \"$art\")/.lock\"");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "more in it: mine.svg\n")) << outcome.errors;
    EXPECT_EQ(left().size(), 1U);
}

TEST_F(Edit, AnEditorThatCannotStartLeavesNothing) {
    struct Row {
        std::string editor;
        const char* wanted;
    };
    for (const Row& row :
         {Row{script("bad", "exit 4"), "ended with status 4"},
          Row{"corvane-no-such-editor", "is not installed"}, Row{"'half", "no command line"}}) {
        const auto outcome = test::run(editing(row.editor));
        EXPECT_EQ(outcome.status, 1) << row.editor;
        EXPECT_TRUE(holds(outcome.errors, "error 50: ") && holds(outcome.errors, row.wanted))
            << outcome.errors;
        EXPECT_TRUE(left().empty()) << row.editor;
    }
}

TEST_F(Edit, AFileThatTakesNoSaveIsNotOpened) {
    folder_.add("in.pdf", replaced(pdf_, "startxref", "startxxxx"));
    const auto outcome = edit("echo > started");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(holds(outcome.errors, "error 22: ")) << outcome.errors;
    EXPECT_FALSE(fs::exists(folder_.path() / "started"));
    EXPECT_TRUE(left().empty());
}

/// Of the page all that is written below the root is left: ids, or not even these; the page is not
/// as it was read without the root's marks.
TEST_F(Edit, AnEditorThatDropsOurMarksStillSavesAPatch) {
    const std::string page =
        test::PdfBuilder::onePage("1 0 0 rg 10 10 50 50 re f 0 0 1 rg 100 40 50 50 re f",
                                  "/CropBox [5 8 190 170] /UserUnit 2 /Annots [20 0 R]")
            .object(20, "<< /Type /Annot /Subtype /Square /Rect [60 20 90 50] "
                        "/C [1 0 0] /IC [0 1 1] /CA .5 >>")
            .bytes();
    struct Row {
        const char* what;
        const char* drop;
        const char* wanted;
        int status;
    };
    const std::string marks = R"(s/ data-[a-z-]+="[^"]*"//g; )";
    const std::string ids = R"(s/ id="[^"]*"//g; )";
    const std::string names = R"(s/ (inkscape|sodipodi):[a-z]+="[^"]*"//g; )";
    for (const auto& [what, drop, wanted, status] :
         {Row{"marks", "", "page 1: 1 object changed", 0},
          Row{"names", names.c_str(), "page 1: 1 object changed", 0},
          Row{"ids", ids.c_str(), "page 1: 1 object added, 1 removed", 0},
          Row{"the annotation is another one", "s/00ffff/ffff00/; ", "error 34: an annotation",
              1}}) {
        folder_.add("in.pdf", page);
        const auto outcome = edit("sed -E '" + marks + drop +
                                  "s/0000ff/00ff00/' \"$art\" > bare; "
                                  "cat bare > \"$art\"");
        EXPECT_EQ(outcome.status, status) << what << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, wanted)) << what << outcome.errors;
        fs::remove_all(temporary());
        fs::create_directory(temporary());
        if (status == 0) {
            const std::string opened = drawing(artwork("in.pdf", 1));
            EXPECT_TRUE(holds(opened, "d=\"M95 130H145V80H95Z\"")) << what << opened;
            EXPECT_EQ(opened.find("#00ffff"), opened.rfind("#00ffff")) << what << opened;
        }
    }
}

TEST_F(Edit, APasswordIsReadOnce) {
    if (!test::isInstalled("qpdf")) {
        GTEST_SKIP() << "needs qpdf";
    }
    test::Process lock;
    lock.words = {
        "/usr/bin/env", "qpdf",   "--allow-weak-crypto", "--encrypt", "secret", "secret", "256",
        "--",           "in.pdf", "--replace-input"};
    lock.folder = folder_.path();
    ASSERT_EQ(test::run(lock).status, 0);
    auto locked = editing(script("editor", "n=$(size); recolour ff0000 ffff00; saved $n\n"
                                           "recolour ffff00 00ff00"),
                          {"--password-file", "-", "--json"});
    locked.input = "secret\n";
    const auto outcome = test::run(locked);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(outcome.output, "\"saves\":[{\"page\":1,") &&
                holds(outcome.output, "},{\"page\":1,") && holds(outcome.output, "\"kept\":null"))
        << outcome.output;
}

TEST_F(Edit, AnImageThatIsChangedIsSavedToo) {
    test::PdfBuilder file = test::PdfBuilder::onePage("q 90 0 0 90 10 10 cm /I Do Q",
                                                      "/Resources << /XObject << /I 5 0 R >> >>");
    file.stream(5, "\xFF\x80\x40\x20",
                "/Type /XObject /Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8 "
                "/ColorSpace /DeviceGray");
    folder_.add("in.pdf", file.bytes());
    folder_.add("other.pdf", test::PdfBuilder::onePage(
                                 "q 9 0 0 9 10 10 cm BI /W 1 /H 1 /BPC 8 /CS /G ID \x55 EI Q")
                                 .bytes());
    ASSERT_EQ(run({"open", "other.pdf", "-o", "other.svg", "--images", "pictures"}).status, 0);
    const auto outcome = edit("n=$(size); for f in \"$(dirname \"$art\")\"/*-images/*; do\n"
                              "cp pictures/* \"$f\"; done; saved $n");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_TRUE(holds(outcome.errors, "page 1: 1 object changed; ")) << outcome.errors;
}

} // namespace
} // namespace corvane
