// Where `open` leaves the fonts of a page.
#include "tests/app/cli/saving.h"

#include "tests/support/pdf_builder.h"

#include <algorithm>

namespace corvane {
namespace {

using test::holds;
using Names = std::vector<std::string>;
using OpenFonts = Saving;

TEST_F(OpenFonts, AreInTheArtworkOrBesideItOrNowhere) {
    folder_.add("in.pdf",
                test::PdfBuilder::onePage("BT /F1 12 Tf 20 80 Td (Quay) Tj ET")
                    .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R "
                               "/MediaBox [0 0 200 100] /Resources << /Font << /F1 5 0 R >> >> >>")
                    .object(5, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                    .bytes());
    const std::string embedded = artwork("in.pdf", 1);
    if (!holds(embedded, "@font-face")) {
        GTEST_SKIP() << "needs an installed font";
    }
    const auto none = run({"open", "in.pdf", "-o", "-", "--fonts=none"});
    EXPECT_TRUE(holds(none.output, ">Quay</text>"));
    EXPECT_FALSE(holds(none.output, "@font-face") || holds(none.output, "data:"));

    const auto apart = run({"open", "in.pdf", "-o", "-", "--fonts", "fonts"});
    EXPECT_EQ(apart.output, none.output);
    EXPECT_TRUE(holds(apart.errors, "in.pdf: 1 font to install is in fonts\n")) << apart.errors;
    const auto start = embedded.find("'Corvane ") + 1;
    std::string name = embedded.substr(start, embedded.find('\'', start) - start);
    std::ranges::replace(name, ' ', '-');
    EXPECT_TRUE(bytes("fonts/" + name + ".otf").starts_with("OTTO"));

    const auto failed = run({"open", "in.pdf", "-o", "a.svg", "--fonts", "missing/fonts"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_TRUE(holds(failed.errors, "error 18: missing/fonts cannot be written"));
    EXPECT_EQ(folder_.names(), (Names{"fonts", "in.pdf"})) << "no artwork either";
}

/// What configurations say of folders and choices counts, wherever they say it.
TEST_F(OpenFonts, AreThoseOfThePersonsConfiguration) {
    const std::string font = "/usr/share/fonts/opentype/urw-base35/NimbusRoman-Regular.otf";
    if (!std::filesystem::exists(font)) {
        GTEST_SKIP() << "needs an installed font";
    }
    folder_.add("in.pdf",
                test::PdfBuilder::onePage("BT /F1 12 Tf 20 80 Td (Quay) Tj ET")
                    .object(3, "<< /Type /Page /Parent 2 0 R /Contents 4 0 R "
                               "/MediaBox [0 0 200 100] /Resources << /Font << /F1 5 0 R >> >> >>")
                    .object(5, "<< /Type /Font /Subtype /TrueType /BaseFont /Nowhere >>")
                    .bytes());
    const std::string top = folder_.path().string();
    for (const char* name : {"fonts", "rules", "none"}) {
        std::filesystem::create_directory(folder_.path() / name);
    }
    std::filesystem::copy_file(font, folder_.path() / "fonts/only.otf");
    const std::string place = "<fontconfig><dir>" + top + "/fonts</dir></fontconfig>";
    folder_.add("rules/10-rules.conf",
                "<fontconfig><alias><family>x</family></alias></fontconfig>");
    folder_.add("rules/20-folder.conf", place);
    folder_.add("rules/readme.conf", "<fontconfig><selectfont><rejectfont><glob>*</glob>"
                                     "</rejectfont></selectfont></fontconfig>");
    folder_.add("folder.conf", place);
    struct Row {
        std::string said;
        bool hasFont;
    };
    const Row rows[] = {{"<!-- <include>none</include> --><include>rules</include>", true},
                        {"<include ignore_missing='yes'>" + top + "/folder.conf</include>", true},
                        {"<include prefix='cwd'>../folder.conf</include>", true},
                        {"<dir prefix=\"relative\">fonts</dir>", true},
                        {"<!-- <include>rules</include> --><include>none</include>", false},
                        {"<include>rules</include><include>rules/readme.conf</include>", false}};
    for (const Row& row : rows) {
        folder_.add("fonts.conf", "<?xml version=\"1.0\"?><fontconfig>" + row.said + "<cachedir>" +
                                      top + "/cache</cachedir></fontconfig>");
        auto opening = process({"open", top + "/in.pdf", "-o", "-", "--quiet"});
        opening.folder = folder_.path() / "none";
        opening.environment.emplace_back("FONTCONFIG_FILE", top + "/fonts.conf");
        EXPECT_EQ(holds(test::run(opening).output, "@font-face"), row.hasFont) << row.said;
    }
}

class LetterPlaces : public OpenFonts {
protected:
    void addPage(const std::string& shown) {
        folder_.add("in.pdf",
                    test::PdfBuilder::onePage("BT /F1 10 Tf 20 80 Td " + shown + " ET")
                        .object(3,
                                "<< /Type /Page /Parent 2 0 R /Contents 4 0 R "
                                "/MediaBox [0 0 200 100] /Resources << /Font << /F1 5 0 R >> >> >>")
                        .object(5, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                        .bytes());
    }
};

/// Places come of pieces and widths, and pieces again of places that nobody changed.
TEST_F(LetterPlaces, OfEachLetterAreTheSameArtwork) {
    addPage("[(Qu) -500 (ay)] TJ");
    std::string exact = run({"open", "in.pdf", "-o", "-", "--text", "exact"}).output;
    if (!holds(exact, "@font-face")) {
        GTEST_SKIP() << "needs an installed font";
    }
    // Q 0.778, u 0.556, a 0.556 em wide, and a gap of 0.5 that holds a blank of 0.278.
    EXPECT_TRUE(holds(exact, "<tspan x=\"20 27.78 33.34\">Qu </tspan>"
                             "<tspan x=\"38.34 43.9\" data-dx=\"2.22\">ay</tspan>"))
        << exact;
    folder_.add("exact.svg", exact);
    const auto same = run({"save", "exact.svg", "in.pdf", "--dry-run"});
    EXPECT_TRUE(holds(same.errors, "nothing to save")) << same.errors;
    exact.replace(exact.find("43.9"), 4, "45.9");
    folder_.add("moved.svg", exact);
    const auto moved = run({"save", "moved.svg", "in.pdf", "--dry-run"});
    EXPECT_FALSE(holds(moved.errors, "nothing to save")) << moved.errors;
}

/// Some programs misplace what follows in a line that is stretched, so its pieces have places. A
/// word that is typed over pushes those behind it all the same, once it is saved.
TEST_F(LetterPlaces, OfPiecesStandInStretchedLines) {
    addPage("80 Tz [(Qu) -500 (ay) -500 (it)] TJ");
    std::string text = artwork("in.pdf", 1);
    if (!holds(text, "@font-face")) {
        GTEST_SKIP() << "needs an installed font";
    }
    EXPECT_TRUE(holds(text,
                      "<tspan x=\"0\">Qu </tspan><tspan x=\"18.34\" data-dx=\"2.22\">ay </tspan>"
                      "<tspan x=\"33.9"))
        << text;
    folder_.add("same.svg", text);
    EXPECT_TRUE(holds(run({"save", "same.svg", "in.pdf"}).errors, "nothing to save"));
    text.replace(text.find(">ay "), 4, ">aay ");
    folder_.add("typed.svg", text);
    EXPECT_EQ(run({"save", "typed.svg", "in.pdf"}).status, 0);
    const std::string saved = artwork("in.pdf", 1);
    EXPECT_TRUE(holds(saved, "x=\"39.46")) << saved;

    addPage("80 Tz (Quay) Tj");
    EXPECT_FALSE(holds(artwork("in.pdf", 1), "data-exact")) << "one piece needs no place";
}

} // namespace
} // namespace corvane
