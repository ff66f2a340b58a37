// What a save may not change: the artwork, other pages, what is no part of the drawing.
#include "tests/app/cli/saving.h"

#include "tests/support/pdf_builder.h"

#include <array>
#include <cstdlib>
#include <regex>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;

class SaveAgain : public Saving {};

/// The drawing without its groups: what a page holds as a whole is none, and is one once something
/// stands beside it.
std::string objects(const std::string& svg) {
    const std::string flat =
        std::regex_replace(drawing(svg), std::regex("\n *</?(g|svg)[ >][^\n]*"), "");
    return std::regex_replace(flat, std::regex("\n +"), "\n");
}

/// A page that is turned and cropped, has a unit of its own, boxes off the origin, and a square
/// drawn by an annotation beside its own drawing.
std::string turnedPage(int rotate, const std::string& entries) {
    test::PdfBuilder file;
    return file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
        .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Annots [5 0 R] /Rotate " +
                       std::to_string(rotate) + " " + entries + " >>")
        .stream(4, "q 0.9 0.2 0.1 rg -40 130 60 25 re f Q 3 w -30 160 m 60 260 l 120 210 l S "
                   "0 0.5 0.8 RG 1 0 0 1 40 180 cm 0 0 m 30 60 60 60 90 0 c S")
        .object(5, "<< /Type /Annot /Subtype /Square /Rect [80 140 110 160] /F 4 /AP << /N 6 0 R "
                   ">> >>")
        .stream(6, "0.1 0.6 0.2 rg 0 0 30 20 re f",
                "/Type /XObject /Subtype /Form /BBox [0 0 30 20]")
        .bytes();
}

TEST_F(SaveAgain, ATurnedPageLooksTheSame) {
    if (!test::isInstalled("mutool")) {
        GTEST_SKIP() << "needs mutool";
    }
    const std::vector<std::string> boxes{
        "/MediaBox [-50 120 150 270]", "/MediaBox [150 270 -50 120] /CropBox [-45 125 140 260]",
        "/MediaBox [-50 120 150 270] /UserUnit 2",
        "/MediaBox [-50.25 120.125 150.5 270] /CropBox [-100 125 140 500]"};
    for (const std::string& box : boxes) {
        for (const int rotate : {0, 90, 180, 270}) {
            const std::string old = turnedPage(rotate, box);
            folder_.add("in.pdf", old);
            const auto before = test::draw(folder_.path() / "in.pdf", 1);
            ASSERT_GT(test::ink(before), 0.05);
            const std::string art = artwork("in.pdf", 1);
            save(withLine(art), "in.pdf", 1);
            EXPECT_NE(bytes("in.pdf"), old);
            EXPECT_LT(test::difference(before, test::draw(folder_.path() / "in.pdf", 1)), 0.002)
                << rotate << box;
            const std::string kept = drawing(art.substr(0, art.find("\n </g>")));
            EXPECT_TRUE(drawing(artwork("in.pdf", 1)).starts_with(kept)) << rotate << box;
            EXPECT_TRUE(isValid("in.pdf"));
        }
    }
}

/// Things that blend within a clip: in the file one clip holds all of them.
TEST_F(SaveAgain, WhatBlendsWithinAClip) {
    const auto page = [](const std::string& colour) {
        test::PdfBuilder file;
        return file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
            .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
            .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [0 0 300 200] "
                       "/Resources << /ExtGState << /M << /BM /Multiply >> /N << /BM /Normal >> "
                       ">> >> >>")
            .stream(4, "1 .8 .2 rg 0 0 300 200 re f q 20 20 m 280 40 l 150 190 l h W n "
                       "1 0 0 rg 20 20 100 100 re f q 60 0 120 200 re W n /M gs " +
                           colour +
                           " rg 80 50 120 100 re f .9 g 90 20 20 99 re f Q "
                           "0 .5 0 rg 180 30 40 40 re f Q")
            .bytes();
    };
    const std::string old = page("0 1 1");
    folder_.add("in.pdf", old);
    const std::string art = artwork("in.pdf", 1);
    EXPECT_TRUE(holds(art, "style=\"mix-blend-mode:multiply\" clip-path="));
    save(art, "in.pdf", 1);
    EXPECT_EQ(bytes("in.pdf"), old);

    const std::regex cyan("fill=\"#00ffff\"");
    save(std::regex_replace(art, cyan, "fill=\"#ff00ff\""), "in.pdf", 1);
    EXPECT_TRUE(bytes("in.pdf").starts_with(old));
    EXPECT_TRUE(isValid("in.pdf"));
    folder_.add("wanted.pdf", page("1 0 1"));
    EXPECT_EQ(objects(artwork("in.pdf", 1)).size(), objects(artwork("wanted.pdf", 1)).size());
    if (test::isInstalled("mutool")) {
        EXPECT_LT(test::difference(test::draw(folder_.path() / "wanted.pdf", 1),
                                   test::draw(folder_.path() / "in.pdf", 1)),
                  0.002);
    }
}

TEST_F(SaveAgain, ForcedOntoAnotherPageOnce) {
    const std::string page = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 300] /Resources << "
                             "/Font << /F1 5 0 R >> >> /Contents ";
    folder_.add("in.pdf",
                test::PdfBuilder()
                    .object(1, "<< /Type /Catalog /Pages 2 0 R >>")
                    .object(2, "<< /Type /Pages /Kids [3 0 R 6 0 R] /Count 2 >>")
                    .object(3, page + "4 0 R >>")
                    .stream(4, "1 0 0 rg 20 20 99 50 re f BT /F1 24 Tf 50 200 Td (Hello) Tj ET")
                    .object(5, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                    .object(6, page + "7 0 R >>")
                    .stream(7, "BT /F1 24 Tf 50 100 Td (Other) Tj ET")
                    .bytes());
    const std::string art = artwork("in.pdf", 1);
    folder_.add("a.svg", art);
    const std::vector<std::string> saving{"save", "a.svg", "in.pdf", "--page", "2", "--force"};
    EXPECT_TRUE(holds(run(saving).errors, "warning 1016: "));
    const std::string once = bytes("in.pdf");
    const std::string again = run(saving).errors;
    EXPECT_TRUE(holds(again, "page 2 of in.pdf: nothing to save")) << again;
    EXPECT_FALSE(holds(again, "warning 1016: ")) << again;
    EXPECT_EQ(bytes("in.pdf"), once);
    folder_.add("a.svg", withLine(art));
    EXPECT_EQ(run(saving).status, 0);
    EXPECT_NE(bytes("in.pdf"), once);
    EXPECT_TRUE(holds(artwork("in.pdf", 2), "stroke=\"#000000\""));
}

TEST_F(SaveAgain, OneArtworkManyTimes) {
    // How often; a person with time sets it to 1000.
    const char* const wish = std::getenv("CORVANE_TEST_SAVES");
    const int times = wish != nullptr ? std::atoi(wish) : test::underAddressSanitizer ? 6 : 60;
    folder_.add("in.pdf", example("harbour.pdf"));
    const std::string opened = artwork("in.pdf", 1);
    const std::string kept = objects(opened);
    const std::array<std::string, 2> art = {withLine(opened), withLine(withLine(opened))};
    std::array<std::string, 2> seen;
    for (int i = 1; i <= times; ++i) {
        const std::string before = bytes("in.pdf");
        folder_.add("a.svg", art.at(static_cast<std::size_t>(i % 2)));
        ASSERT_EQ(run({"save", "a.svg", "in.pdf", "--quiet"}).status, 0) << i;
        ASSERT_TRUE(bytes("in.pdf").starts_with(before)) << i;
        const std::string again = drawing(artwork("in.pdf", 1));
        ASSERT_TRUE(objects(again).starts_with(kept)) << i;
        std::string& first = seen.at(static_cast<std::size_t>(i % 2));
        first = i <= 2 ? again : first;
        ASSERT_EQ(again, first) << i;
        const std::string saved = bytes("in.pdf");
        ASSERT_NE(saved, before) << i;
        ASSERT_EQ(run({"save", "a.svg", "in.pdf", "--quiet"}).status, 0) << i;
        ASSERT_EQ(bytes("in.pdf"), saved) << "it is as the artwork has it: " << i;
        ASSERT_TRUE(i % 20 != 0 || isValid("in.pdf")) << i;
    }
    const auto log = run({"log", "in.pdf", "--json"});
    EXPECT_TRUE(holds(log.output, "\"number\":" + std::to_string(times) + ",")) << log.output;
    for (int i = 0; i < times; ++i) {
        ASSERT_EQ(run({"revert", "in.pdf", "--quiet"}).status, 0) << i;
    }
    EXPECT_EQ(bytes("in.pdf"), example("harbour.pdf"));
    const auto none = run({"revert", "in.pdf"});
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(holds(none.errors, "error 25: ")) << none.errors;
    EXPECT_EQ(bytes("in.pdf"), example("harbour.pdf"));
}

/// The attributes of ours that an editor may drop.
std::string withoutMarks(const std::string& svg) {
    return std::regex_replace(svg, std::regex(" data-[a-z-]+=\"[^\"]*\""), "");
}

std::string withInFront(const std::string& svg, const std::string& more) {
    return replaced(svg, "</svg>", more + "</svg>");
}

/// A number that the page names though nothing has it is given to nothing new.
TEST_F(SaveAgain, APageWhoseContentIsMissing) {
    folder_.add("in.pdf", test::PdfBuilder()
                              .object(1, "<< /Type /Catalog /Pages 2 0 R >>")
                              .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
                              .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 300 200] "
                                         "/Contents 4 0 R >>")
                              .bytes());
    folder_.add("a.svg", withInFront(artwork("in.pdf", 1), "<path d=\"M9 9H99V99Z\"/>"));
    ASSERT_EQ(run({"save", "a.svg", "in.pdf"}).status, 0);
    const std::string once = bytes("in.pdf");
    ASSERT_EQ(run({"save", "a.svg", "in.pdf"}).status, 0);
    EXPECT_EQ(bytes("in.pdf"), once);
    EXPECT_TRUE(isValid("in.pdf"));
}

TEST_F(SaveAgain, WhatIsSavedAlreadyIsNotAppendedAgain) {
    struct Row {
        const char* name;
        const char* page;
        std::string (*edit)(std::string svg);
    };
    const char* const ground = "/MediaBox [0 0 300 200]";
    const std::vector<Row> rows{
        {"a box of more digits than a record has",
         "/MediaBox [0 0 595.2755905511812 841.88976] /Rotate 90",
         [](std::string svg) { return withInFront(svg, "<path d=\"M9 9H30V30Z\"/>"); }},
        {"a layer", ground,
         [](std::string svg) {
             return withInFront(svg, "<g inkscape:groupmode=\"layer\" inkscape:label=\"Notes\">"
                                     "<path d=\"M9 9H30V30Z\"/></g>");
         }},
        {"without marks, whose layers are new", ground,
         [](std::string svg) { return withoutMarks(svg); }},
        {"the same, of another size", ground,
         [](std::string svg) {
             return replaced(withoutMarks(svg), "viewBox=\"0 0 300 200\"",
                             "viewBox=\"0 0 310 205\"");
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        folder_.add("in.pdf",
                    test::PdfBuilder::onePage("BT /F 18 Tf 20 150 Td (North) Tj ( quay) Tj ET "
                                              "10 10 60 30 re S",
                                              row.page + std::string(" /Resources << /Font << "
                                                                     "/F 5 0 R >> >>"))
                        .object(5, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                        .bytes());
        const std::string art = row.edit(artwork("in.pdf", 1));
        save(art, "in.pdf", 1);
        const std::string saved = bytes("in.pdf");
        for (int i = 0; i < 2; ++i) {
            save(art, "in.pdf", 1);
            EXPECT_EQ(bytes("in.pdf").size(), saved.size());
        }
    }
}

/// What stands in two streams would be another image in one.
TEST_F(SaveAgain, AnImageThatTheEndOfAStreamCutsStaysWhereItIs) {
    test::PdfBuilder file;
    const std::string old =
        file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
            .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
            .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents [4 0 R 5 0 "
                       "R 6 0 R] >>")
            .stream(4, "q 100 0 0 100 10 10 cm BI /W 2 /H 2 /BPC 8 /CS /G ID ")
            .stream(5, "ab EI Q ")
            .stream(6, "150 150 30 30 re f")
            .bytes();
    folder_.add("in.pdf", old);
    const std::string art = artwork("in.pdf", 1);
    for (const char* const edit :
         {"<g transform=\"translate(9,9)\">", "<g inkscape:groupmode=\"layer\" "
                                              "inkscape:label=\"N\">"}) {
        const auto at = art.find("<path id=\"p1\"");
        const auto end = art.find("/>", at) + 2;
        folder_.add("a.svg",
                    art.substr(0, at) + edit + art.substr(at, end - at) + "</g>" + art.substr(end));
        const auto refused = run({"save", "a.svg", "in.pdf"});
        EXPECT_TRUE(holds(refused.errors, "error 31: ")) << edit << refused.errors;
        EXPECT_EQ(bytes("in.pdf"), old);
    }
    save(replaced(art, "M150 50", "M140 50"), "in.pdf", 1);
    EXPECT_TRUE(bytes("in.pdf").starts_with(old) && bytes("in.pdf") != old);
}

TEST_F(SaveAgain, OtherPagesStay) {
    folder_.add("in.pdf", example("two-pages.pdf"));
    const std::string first = artwork("in.pdf", 1);
    const std::string second = artwork("in.pdf", 2);
    const std::string edited = replaced(second, "M30 300V0", "M33 290V7");
    folder_.add("a.svg", edited);
    const auto told = run({"save", "a.svg", "in.pdf"});
    EXPECT_TRUE(holds(told.errors, "page 2 of in.pdf: ")) << told.errors;
    EXPECT_EQ(artwork("in.pdf", 1), first);
    const std::string again = artwork("in.pdf", 2);
    EXPECT_TRUE(holds(again, "M33 290V7") && !holds(again, "M30 300V0")) << again;
    EXPECT_TRUE(isValid("in.pdf"));

    // Artwork of one page does not land on another by accident.
    const auto refused = run({"save", "a.svg", "in.pdf", "--page", "1"});
    EXPECT_TRUE(holds(refused.errors, "error 21: page 1 is not the page")) << refused.errors;
    EXPECT_EQ(run({"save", "a.svg", "in.pdf", "--page", "1", "--force"}).status, 0);
    const auto log = run({"log", "in.pdf"});
    EXPECT_TRUE(holds(log.output, "  1-2    ") && holds(log.output, "  2      ") &&
                holds(log.output, "  1      "))
        << log.output;
}

TEST_F(SaveAgain, ATrialIsAsLongAsTheSave) {
    for (const char* profile : {"extended", "original"}) {
        const std::string old = example("harbour.pdf");
        folder_.add("in.pdf", old);
        ASSERT_EQ(
            run({"open", "in.pdf", "--page", "1", "-o", "a.svg", "--profile", profile}).status, 0);
        folder_.add("a.svg", withLine(bytes("a.svg")));
        const auto trial = run({"save", "a.svg", "in.pdf", "--json", "--dry-run"});
        EXPECT_EQ(bytes("in.pdf"), old);
        const auto copied = run({"save", "a.svg", "in.pdf", "--json", "--output", "b.pdf"});
        EXPECT_EQ(bytes("in.pdf"), old);
        const auto saved = run({"save", "a.svg", "in.pdf", "--json"});
        EXPECT_EQ(bytes("in.pdf"), bytes("b.pdf"));
        const auto facts = [](const std::string& json) {
            const auto from = json.find("\"dryRun\":") + std::string("\"dryRun\":").size();
            return json.substr(json.find(',', from));
        };
        EXPECT_TRUE(
            holds(saved.output, "\"length\":" + std::to_string(bytes("in.pdf").size()) + ","))
            << saved.output;
        EXPECT_EQ(facts(trial.output), facts(saved.output));
        EXPECT_EQ(facts(copied.output), facts(saved.output));
        EXPECT_TRUE(isValid("in.pdf"));
    }
}

TEST_F(SaveAgain, APageInTwoPlacesIsTold) {
    folder_.add("in.pdf", test::PdfBuilder::onePage("0 0 m 9 9 l S")
                              .object(2, "<</Kids[3 0 R 3 0 R]/Count 2>>")
                              .bytes());
    folder_.add("a.svg", withLine(artwork("in.pdf", 2)));
    const auto outcome = run({"save", "a.svg", "in.pdf"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(holds(outcome.errors, "warning 1007: the file has this page in 2 places"))
        << outcome.errors;
}

TEST_F(SaveAgain, ArtworkOfNobodysPageBecomesANewFile) {
    folder_.add("a.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"200\" height=\"100\">"
                         "<circle cx=\"50\" cy=\"50\" r=\"40\" fill=\"#c00\"/></svg>");
    const auto made = run({"save", "a.svg", "new.pdf"});
    ASSERT_EQ(made.status, 0) << made.errors;
    EXPECT_TRUE(holds(made.errors, "new.pdf is a new file")) << made.errors;
    EXPECT_TRUE(isValid("new.pdf"));
    EXPECT_TRUE(holds(artwork("new.pdf", 1), "fill=\"#cc0000\""));
    if (test::isInstalled("mutool")) {
        EXPECT_GT(test::ink(test::draw(folder_.path() / "new.pdf", 1)), 0.1);
    }
    EXPECT_EQ(run({"save", "a.svg", "other.pdf", "--dry-run"}).status, 0);
    EXPECT_EQ(folder_.names(), (std::vector<std::string>{"a.svg", "new.pdf"}));
}

TEST_F(SaveAgain, ArtworkOfNoPageReplacesOneByForceAlone) {
    const std::string old = example("two-pages.pdf");
    folder_.add("in.pdf", old);
    auto saving = process({"save", "-", "in.pdf", "--page", "2"});
    saving.input = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>"
                   "<path d='M0 0H9V9Z'/></svg>";
    const auto refused = test::run(saving);
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(holds(refused.errors, "error 21: the artwork does not say")) << refused.errors;
    EXPECT_EQ(bytes("in.pdf"), old);
    saving.words.emplace_back("--force");
    EXPECT_EQ(test::run(saving).status, 0);
    EXPECT_NE(bytes("in.pdf"), old);
}

} // namespace
} // namespace corvane
