// What a save loses or keeps, and what is said of it; with a plug-in that acts a part.
#include "tests/app/cli/fake_save.h"

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
using Words = std::vector<std::string>;

class SaveLoss : public FakeSave {};

TEST_F(SaveLoss, WhatIsIgnoredNeedsForce) {
    struct Row {
        const char* inside;
        const char* loss;
    };
    for (const Row& row : {
             Row{"<script/><script/><script/>", "script: 3 elements ignored"},
             Row{"<image href='data:image/png;base64,AAAA'/><image xlink:href=' http:a/logo.png'/>"
                 "<image href='http:a/logo.png'/><image href='http:b.jpg'/><image/>",
                 "image: 5 elements ignored (http:a/logo.png, http:b.jpg, 1 embedded)"},
         }) {
        add("a.svg", root_, row.inside);
        const auto refused = run("pages=3", {"save", "a.svg", "in.pdf"});
        EXPECT_EQ(refused.status, 1);
        EXPECT_TRUE(holds(refused.errors, "error 26: ")) << refused.errors;
        EXPECT_TRUE(holds(refused.errors, std::string(": ") + row.loss + "; to save"))
            << refused.errors;
        EXPECT_FALSE(holds(refused.errors, "warning"));
        EXPECT_EQ(fileBytes(pdf_), old_);
        const auto forced = run("pages=3", {"save", "a.svg", "in.pdf", "--force"});
        EXPECT_EQ(forced.status, 0) << forced.errors;
        EXPECT_TRUE(holds(forced.errors, std::string("warning 1006: ") + row.loss + "; "))
            << forced.errors;
        fs::resize_file(pdf_, old_.size());
    }
}

/// What opening left out is lost where the page is drawn anew, and only there.
TEST_F(SaveLoss, WhatWasLeftOutStaysWhereThePageIsPatched) {
    const std::string omitted = "data-omitted=\"hologram markedContent:5\" ";
    add("ours.svg", root_ + omitted);
    add("original.svg", root_ + omitted + "data-profile=\"original\"");
    add("older.svg", "data-producer=\"corvane\" data-version=\"1\" data-page=\"3\" " + omitted);
    struct Row {
        const char* artwork;
        const char* pdf;
        const char* part;
        bool isRefused;
        bool isLost;
    };
    for (const Row& row : {
             Row{"ours.svg", "in.pdf", "pages=3 kept=2", false, false},
             Row{"ours.svg", "in.pdf", "pages=3 nothing", false, false},
             Row{"ours.svg", "new.pdf", "", true, true},
             Row{"original.svg", "in.pdf", "pages=3", true, true},
             Row{"older.svg", "in.pdf", "pages=3", true, true},
             // Another page by now: only force draws it anew.
             Row{"ours.svg", "in.pdf", "pages=3 digest=7", true, true},
         }) {
        SCOPED_TRACE(std::string(row.artwork) + " " + row.pdf + " " + row.part);
        const auto plain = run(row.part, {"save", row.artwork, row.pdf});
        EXPECT_EQ(plain.status, row.isRefused ? 1 : 0) << plain.errors;
        EXPECT_TRUE(!row.isRefused || fileBytes(pdf_) == old_);
        const auto forced = run(row.part, {"save", row.artwork, row.pdf, "--force"});
        EXPECT_EQ(forced.status, 0) << forced.errors;
        for (const char* const warning :
             {"warning 1005: 5 tags (marked content): not in the artwork; ",
              "warning 1005: 1 of a kind that this version does not know (hologram): "}) {
            EXPECT_EQ(holds(forced.errors, warning), row.isLost) << forced.errors;
        }
        EXPECT_FALSE(holds(plain.errors, "warning")) << plain.errors;
        fs::remove(folder_.path() / "new.pdf");
        fs::resize_file(pdf_, old_.size());
    }
}

/// Groups of one layer are several in an editor.
TEST_F(SaveLoss, ALayerThatIsHiddenInPartNeedsForce) {
    const std::string shown = "data-layer=\"7\" data-layer-name=\"Grid\"><path d=\"M0 0H5\"/></g>";
    const std::string hidden = "<g inkscape:label=\"Grid\" display=\"none\" " + shown;
    const std::string group = "<g inkscape:label=\"Grid\" " + shown;
    const std::string annotations =
        "<g inkscape:groupmode=\"layer\" data-annotations=\"9 1\">" + group + "</g>";
    struct Row {
        std::string inside;
        bool isRefused;
    };
    for (const Row& row : {Row{hidden + group + group, true}, Row{hidden + hidden, false},
                           Row{group + group, false}, Row{hidden + annotations, false}}) {
        add("a.svg", root_ + "xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\"",
            row.inside);
        const auto plain = run("pages=3", {"save", "a.svg", "in.pdf", "--dry-run"});
        EXPECT_EQ(holds(plain.errors,
                        "error 26: the layer \"Grid\" was hidden in 1 of its 3 groups, and a layer "
                        "of a PDF is shown or hidden as a whole, on every page; "),
                  row.isRefused)
            << plain.errors;
        EXPECT_EQ(plain.status, row.isRefused ? 1 : 0) << plain.errors;
        const auto forced = run("pages=3", {"save", "a.svg", "in.pdf", "--dry-run", "--force"});
        EXPECT_EQ(holds(forced.errors, "warning 1015: "), row.isRefused) << forced.errors;
    }
}

TEST_F(SaveLoss, WhatIsMissingIsCountedAndNeedsForce) {
    add("a.svg", root_);
    const auto refused = run("pages=3 missing=1200", {"save", "a.svg", "in.pdf"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(
        refused.errors,
        "corvane: in.pdf: error 30: saving would delete 1,200 of 1,203 paths, 2 of 2 compound "
        "paths, which the artwork does not hold any more; if that is meant, say --force\n");
    EXPECT_TRUE(holds(run("pages=3 missing=57", {"save", "a.svg", "in.pdf", "--json"}).output,
                      R"("missing":[{"kind":"path","missing":57,"whole":60},)"
                      R"({"kind":"compound","missing":2,"whole":2}],)"));
    EXPECT_EQ(fileBytes(pdf_), old_);
    EXPECT_EQ(run("pages=3 missing=57", {"save", "a.svg", "in.pdf", "--force"}).status, 0);
}

TEST_F(SaveLoss, AnotherArtworkIsNotUndoneInSilence) {
    add("a.svg", root_ + "data-artwork=\"00000000000000ab\"");
    add("older.svg", root_);
    const auto refused = run("pages=3 names other", {"save", "a.svg", "in.pdf", "--plain"});
    EXPECT_EQ(refused.errors,
              "artwork ab plain\n"
              "corvane: in.pdf: error 29: page 3 was saved from another artwork since this one was "
              "opened, and saving this one would undo that; open the page again, or undo it with "
              "--force\n");
    EXPECT_EQ(fileBytes(pdf_), old_);
    const auto forced = run("pages=3 names other", {"save", "older.svg", "in.pdf", "--force"});
    EXPECT_EQ(forced.status, 0);
    EXPECT_TRUE(forced.errors.starts_with("artwork  packed\n")) << forced.errors;
}

TEST_F(SaveLoss, OneLineCountsAsPeopleDo) {
    add("a.svg", root_);
    const std::string redaction = "corvane: in.pdf: its old bytes stay in it, and what was changed "
                                  "or removed can still be read there: this is no redaction\n";
    struct Row {
        const char* part;
        const char* saved;
        const char* tried;
        bool isTold; ///< that old bytes stay
    };
    for (const Row& row : {
             Row{"changed=1 added=2 removed=1 moved=3 kept=1057",
                 "1 object changed, 2 added, 1 removed, 3 moved in the order, 1,057 kept; 16 bytes "
                 "appended",
                 "1 object would be changed, 2 added, 1 removed, 3 moved in the order, 1,057 kept; "
                 "16 bytes would be appended",
                 true},
             Row{"added=2 kept=1", "2 objects added, 1 kept; 16 bytes appended",
                 "2 objects would be added, 1 kept; 16 bytes would be appended", false},
             Row{"removed=2", "2 objects removed; 16 bytes appended",
                 "2 objects would be removed; 16 bytes would be appended", true},
             Row{"kept=0", "16 bytes appended", "16 bytes would be appended", false},
         }) {
        const std::string part = std::string("pages=3 ") + row.part;
        const auto tried = run(part, {"save", "a.svg", "in.pdf", "--dry-run"});
        EXPECT_EQ(tried.errors, std::string("corvane: page 3 of in.pdf: ") + row.tried + "\n");
        const auto saved = run(part, {"save", "a.svg", "in.pdf"});
        EXPECT_EQ(saved.errors, std::string("corvane: page 3 of in.pdf: ") + row.saved + "\n" +
                                    (row.isTold ? redaction : ""));
        EXPECT_EQ(run(part, {"save", "a.svg", "in.pdf", "--quiet"}).errors, "");
    }
    const auto json = run("pages=3 changed=1 added=2 removed=3 moved=4 kept=5",
                          {"save", "a.svg", "in.pdf", "--json"});
    EXPECT_TRUE(holds(json.output, R"("nothing":false,"patched":true,"kept":5,"changed":1,)"
                                   R"("added":2,"removed":3,"moved":4,)"))
        << json.output;
    EXPECT_EQ(json.errors, "");
}

TEST_F(SaveLoss, NothingToSaveIsNoFailure) {
    add("a.svg", root_);
    const std::string said = "nothing to save, it is as the artwork has it\n";
    const auto saved = run("pages=3 nothing kept=9", {"save", "a.svg", "in.pdf"});
    EXPECT_EQ(saved.status, 0);
    EXPECT_EQ(saved.errors, "corvane: page 3 of in.pdf: " + said);
    const auto json = run("pages=3 nothing kept=9", {"save", "a.svg", "in.pdf", "--json"});
    EXPECT_TRUE(holds(json.output, R"("output":null,"dryRun":false,)")) << json.output;
    EXPECT_TRUE(holds(json.output, R"("nothing":true,"patched":true,"kept":9,)")) << json.output;
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf"}));

    const Words copying{"save", "a.svg", "in.pdf", "--output", "b.pdf"};
    Words trying = copying;
    trying.push_back("--dry-run");
    EXPECT_EQ(run("pages=3 nothing", trying).errors,
              "corvane: page 3 of b.pdf: " + said +
                  "corvane: b.pdf would be an unchanged copy of in.pdf\n");
    EXPECT_EQ(folder_.names(), (Names{"a.svg", "in.pdf"}));
    EXPECT_EQ(run("pages=3 nothing", copying).errors,
              "corvane: page 3 of b.pdf: " + said +
                  "corvane: b.pdf is an unchanged copy of in.pdf\n");
    EXPECT_EQ(fileBytes(folder_.path() / "b.pdf"), old_);
    EXPECT_EQ(fileBytes(pdf_), old_);
}

} // namespace
} // namespace corvane
