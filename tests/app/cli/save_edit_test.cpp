// Pages that a vector editor changed: what is saved looks as the editor draws it.
#include "tests/app/cli/saving.h"

#include "tests/support/pdf_builder.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

class SaveEdit : public Saving {
protected:
    test::Outcome runInkscape(std::vector<std::string> words) const {
        words.insert(words.begin(), {"/usr/bin/env", "inkscape"});
        test::Process editor;
        editor.words = std::move(words);
        editor.folder = folder_.path();
        editor.environment = {{"HOME", folder_.path().string()}};
        return test::run(editor);
    }
};

TEST_F(SaveEdit, WhatInkscapeChangesIsSaved) {
    if (!test::isInstalled("inkscape") || !test::isInstalled("mutool")) {
        GTEST_SKIP() << "needs inkscape and mutool";
    }
    struct Row {
        const char* name;
        const char* actions;
        double change; ///< share of the page that looks different at least
    };
    const std::vector<Row> rows{
        {"move", "select-by-id:p2;transform-translate:15,-20;", 0.03},
        {"recolour", "select-by-id:p2;object-set-property:fill,#00aa44;", 0.03},
        {"delete", "select-by-id:p4;delete;", 0.03},
        {"group", "select-by-id:p2,p4;selection-group;", 0},
        {"rotate", "select-by-id:p2;transform-rotate:30;", 0.03},
        {"union", "select-by-id:p2,p4;path-union;", 0.03},
        {"rounded", "select-by-id:added;transform-translate:4,3;", 0.02},
    };
    const std::string old =
        test::PdfBuilder()
            .object(1, "<< /Type /Catalog /Pages 2 0 R >>")
            .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
            .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 200] /Contents 4 0 R >>")
            .stream(4, "0.9 0.9 0.8 rg 0 0 300 200 re f "
                       "0.8 0.2 0.1 rg 0 0 0.6 RG 4 w 40 40 80 60 re B "
                       "q 200 20 80 160 re W n 0.1 0.5 0.3 rg 180 100 m 280 100 l 240 180 l h f Q "
                       "0 0.4 0.9 rg 90 60 m 150 60 l 150 140 l 90 140 l h f")
            .bytes();
    folder_.add("old.pdf", old);
    const auto before = test::draw(folder_.path() / "old.pdf", 1);
    for (const Row& row : rows) {
        folder_.add("in.pdf", old);
        std::string svg = artwork("in.pdf", 1);
        if (row.name == std::string("rounded")) {
            svg = replaced(svg, " </g>\n</svg>",
                           "<rect id=\"added\" x=\"20\" y=\"20\" width=\"60\" height=\"40\" "
                           "rx=\"12\" style=\"fill:#ffcc00;stroke:#333333;stroke-width:2\"/>"
                           " </g>\n</svg>");
        }
        folder_.add("a.svg", svg);
        const auto edited = runInkscape(
            {"a.svg", std::string("--actions=") + row.actions +
                          "export-filename:b.svg;export-do;export-filename:b.pdf;export-do"});
        ASSERT_EQ(edited.status, 0) << row.name << edited.errors;
        const auto saved = run({"save", "b.svg", "in.pdf"});
        ASSERT_EQ(saved.status, 0) << row.name << saved.errors;
        EXPECT_TRUE(isValid("in.pdf"));
        const auto after = test::draw(folder_.path() / "in.pdf", 1);
        EXPECT_GE(test::difference(before, after), row.change) << row.name;
        EXPECT_LT(test::difference(after, test::draw(folder_.path() / "b.pdf", 1), 64), 0.01)
            << row.name;
        // What was saved comes back, and goes in again unchanged.
        const std::string again = artwork("in.pdf", 1);
        save(again, "in.pdf", 1);
        EXPECT_EQ(drawing(artwork("in.pdf", 1)), drawing(again)) << row.name;
    }
}

TEST_F(SaveEdit, ANewSizeGrowsWhereTheEditorShowsIt) {
    struct Row {
        const char* rotate;
        const char* size;
        const char* larger;
        const char* box;
    };
    // 88 points more on the right and 108 below, as the page is seen.
    for (const Row& row : {
             Row{"0", "width=\"612pt\" height=\"792pt\" viewBox=\"0 0 612 792\"",
                 "width=\"700pt\" height=\"900pt\" viewBox=\"0 0 700 900\"", "[ 100 -58 800 842 ]"},
             Row{"90", "width=\"792pt\" height=\"612pt\" viewBox=\"0 0 792 612\"",
                 "width=\"880pt\" height=\"720pt\" viewBox=\"0 0 880 720\"", "[ 100 50 820 930 ]"},
             Row{"180", "width=\"612pt\" height=\"792pt\" viewBox=\"0 0 612 792\"",
                 "width=\"700pt\" height=\"900pt\" viewBox=\"0 0 700 900\"", "[ 12 50 712 950 ]"},
         }) {
        SCOPED_TRACE(row.rotate);
        folder_.add("in.pdf", test::PdfBuilder::onePage("120 70 m 300 400 l S")
                                  .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R "
                                             "/MediaBox [100 50 712 842] /Rotate " +
                                                 std::string(row.rotate) + " >>")
                                  .bytes());
        const std::string svg = artwork("in.pdf", 1);
        save(replaced(svg, row.size, row.larger), "in.pdf", 1);
        EXPECT_NE(bytes("in.pdf").find("/MediaBox " + std::string(row.box)), std::string::npos);
        const std::string again = artwork("in.pdf", 1);
        const auto path = [](const std::string& text) { return text.substr(text.find("<path")); };
        EXPECT_EQ(path(drawing(again)), path(drawing(svg))) << "the drawing stands where it stood";
    }
}

} // namespace
} // namespace corvane
