// Lines of scripts that run from the right: as they are read in the artwork, as they stand in the
// file.
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

#include <regex>

namespace corvane {
namespace {

class RightToLeft : public Saving {
protected:
    /// A page whose font has the letters a to d for alef to dalet, e for a mark without a width,
    /// and others for several letters that are joined.
    static test::PdfBuilder file(const std::string& content, const std::string& entries = "") {
        std::string widths;
        for (int code = ' '; code <= 'h'; ++code) {
            widths += code == 'e' ? "0 " : "500 ";
        }
        return test::PdfBuilder::onePage("BT /H 10 Tf 100 700 Td " + content + " ET",
                                         "/Resources << /Font << /H 20 0 R >> >> " + entries)
            .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /FirstChar 32 "
                        "/Widths [" +
                            widths + "] /ToUnicode 21 0 R >>")
            .stream(21,
                    "beginbfrange <61> <64> <05D0> <20> <39> <0020> endbfrange beginbfchar <65> "
                    "<05B8> <66> <06440627> <67> <FE8E> <68> <05D005B8> endbfchar");
    }
    static std::string page(const std::string& content) { return file(content).bytes(); }

    /// The line as it is written, without its fonts.
    static std::string line(const std::string& svg) {
        const auto start = svg.find("<text");
        return start == svg.npos ? "" : svg.substr(start, svg.find("</text>", start) - start);
    }

    /// Those of the line, in the order of the file.
    static std::string letters(const std::string& svg) {
        return std::regex_replace(line(svg), std::regex("<[^>]*>"), "");
    }
};

TEST_F(RightToLeft, LinesAreReadAndTypedAsTheyAreRead) {
    struct Row {
        const char* content;
        const char* place;   ///< its right end
        const char* letters; ///< as they are read
        const char* typed;
        const char* saved;
    };
    for (const Row& row : {
             Row{"(\\(dc\\) 12 ba) Tj", "x=\"150\"", "\u05D0\u05D1 12 (\u05D2\u05D3)",
                 "\u05D0 34 (\u05D3\u05D1)", "[<286264292033342061> ] TJ"},
             Row{"(12 ba) Tj", "x=\"125\"", "\u05D0\u05D1 12", "\u05D0\u05D1\u05D2",
                 "[<636261> ] TJ"},
         }) {
        SCOPED_TRACE(row.content);
        const std::string old = page(row.content);
        folder_.add("in.pdf", old);
        const std::string svg = artwork("in.pdf", 1);
        EXPECT_NE(line(svg).find(row.place), std::string::npos) << line(svg);
        EXPECT_NE(line(svg).find("direction=\"rtl\""), std::string::npos) << line(svg);
        EXPECT_EQ(line(svg).find("text-anchor"), std::string::npos) << line(svg);
        folder_.add("page.svg", svg);
        ASSERT_EQ(run({"save", "page.svg", "in.pdf"}).status, 0);
        EXPECT_EQ(bytes("in.pdf"), old);
        folder_.add("page.svg", replaced(svg, row.letters, row.typed));
        const auto outcome = run({"save", "page.svg", "in.pdf", "--plain"});
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_NE(bytes("in.pdf").find(row.saved), std::string::npos)
            << bytes("in.pdf").substr(old.size());
        EXPECT_NE(line(artwork("in.pdf", 1)).find(row.typed), std::string::npos);
    }
}

/// Runs are in the order of reading as well, and are known again.
TEST_F(RightToLeft, RunsKeepTheirOwnBytes) {
    folder_.add("in.pdf", page("(dc ) Tj (ba) Tj"));
    const std::string svg = artwork("in.pdf", 1);
    EXPECT_LT(svg.find("id=\"p2\""), svg.find("id=\"p1\""));
    folder_.add("page.svg", replaced(svg, "\u05D2\u05D3<", "\u05D3<"));
    ASSERT_EQ(run({"save", "page.svg", "in.pdf", "--plain"}).status, 0);
    EXPECT_NE(bytes("in.pdf").rfind("(ba) Tj"), bytes("in.pdf").find("(ba) Tj"));
    EXPECT_NE(bytes("in.pdf").find("[<6420> ] TJ"), std::string::npos);
}

/// Each word has a place of its own, left of the one that is read before it.
TEST_F(RightToLeft, WordsThatAreShownFromTheRightAreOneLine) {
    const std::string words[] = {"(ba) Tj", "(12) Tj", "(\\(dc\\)) Tj", "(Z) Tj"};
    const std::string old = page("0 0 Td " + words[0] + " -12.5 0 Td " + words[1] + " -22.5 0 Td " +
                                 words[2] + " -7.5 0 Td " + words[3]);
    folder_.add("in.pdf", old);
    const std::string svg = artwork("in.pdf", 1);
    EXPECT_EQ(svg.find("<text", svg.find("<text") + 1), std::string::npos);
    EXPECT_NE(line(svg).find("direction=\"rtl\""), std::string::npos);
    std::size_t at = 0;
    for (const char* const part : {"id=\"p1\"", "\u05D0\u05D1", "id=\"p2\"", " 12", "id=\"p3\"",
                                   " (\u05D2\u05D3)", "id=\"p4\"", " Z"}) {
        at = svg.find(part, at);
        ASSERT_NE(at, std::string::npos) << part << line(svg);
    }
    folder_.add("page.svg", svg);
    ASSERT_EQ(run({"save", "page.svg", "in.pdf"}).status, 0);
    EXPECT_EQ(bytes("in.pdf"), old);
    folder_.add("page.svg", replaced(svg, " 12<", " 34<"));
    ASSERT_EQ(run({"save", "page.svg", "in.pdf", "--plain"}).status, 0);
    const std::string added = bytes("in.pdf").substr(old.size());
    EXPECT_NE(added.find("[<333420> ] TJ"), std::string::npos) << added;
    EXPECT_EQ(added.find(words[1]), std::string::npos);
    for (const std::size_t kept : {0U, 2U, 3U}) {
        EXPECT_NE(added.find(words[kept]), std::string::npos) << words[kept];
    }
}

/// What is read after a longer word moves to the left, in the editor as in the page.
TEST_F(RightToLeft, TheRightEndStays) {
    struct Row {
        const char* frame;
        const char* place;
        const char* last; ///< where what is read last is shown, when what comes before it has grown
    };
    for (const Row& row : {
             Row{"1 0 0 1 100 600", "x=\"135\" y=\"192\"", "1 0 0 1 85 600 Tm"},
             Row{"0 1 -1 0 300 500", "matrix(0 -1 1 0 300 257)", "0 1 -1 0 300 485 Tm"},
         }) {
        SCOPED_TRACE(row.frame);
        const std::string old = page(row.frame + std::string(" Tm (dc) Tj ( 1 ) Tj (ba) Tj"));
        folder_.add("in.pdf", old);
        const std::string svg = artwork("in.pdf", 1);
        EXPECT_NE(line(svg).find(row.place), std::string::npos) << line(svg);
        folder_.add("page.svg", replaced(svg, " 1 <", " 1234 <"));
        ASSERT_EQ(run({"save", "page.svg", "in.pdf", "--plain"}).status, 0);
        const std::string added = bytes("in.pdf").substr(old.size());
        EXPECT_NE(added.find("(ba) Tj"), std::string::npos) << added;
        EXPECT_NE(added.find(row.last), std::string::npos) << added;
        const std::string again = artwork("in.pdf", 1);
        EXPECT_NE(line(again).find(row.place), std::string::npos) << line(again);
        EXPECT_NE(line(again).find(" 1234 "), std::string::npos) << line(again);
    }
}

TEST_F(RightToLeft, MarksAndJoinedLettersAreTyped) {
    struct Row {
        const char* content;
        const char* letters; ///< as they are read
        const char* was;
        const char* is;
        const char* saved;
    };
    for (const Row& row : {
             Row{"(bea) Tj", "\u05D0\u05B8\u05D1", "\u05D1<", "\u05D2<", "[<636561> ] TJ"},
             // Of one glyph with its letter, or typed to it.
             Row{"(bha) Tj", "\u05D0\u05D0\u05B8\u05D1", "\u05D1<", "\u05D2<", "[<636861> ] TJ"},
             Row{"(bea) Tj", "\u05D0\u05B8\u05D1", "\u05D0<", "\u05D0\u05B8\u05D3<",
                 "[<62656468> ] TJ"},
             Row{"(bea) Tj", "\u05D0\u05B8\u05D1", "\u05D1<", "\u05D2\u05B8<", "[<65636561> ] TJ"},
             Row{"(g ) Tj (f) Tj", "\u0644\u0627 \uFE8E", "\uFE8E<", "\uFE8E\uFE8E<", "(f) Tj"},
         }) {
        SCOPED_TRACE(row.content);
        const std::string old = page(row.content);
        folder_.add("in.pdf", old);
        const std::string svg = artwork("in.pdf", 1);
        EXPECT_EQ(letters(svg), row.letters);
        folder_.add("page.svg", svg);
        ASSERT_EQ(run({"save", "page.svg", "in.pdf"}).status, 0);
        EXPECT_EQ(bytes("in.pdf"), old);
        const std::string typed = replaced(svg, row.was, row.is);
        folder_.add("page.svg", typed);
        ASSERT_EQ(run({"save", "page.svg", "in.pdf", "--plain"}).status, 0);
        const std::string added = bytes("in.pdf").substr(old.size());
        EXPECT_NE(added.find(row.saved), std::string::npos) << added;
        const std::string again = artwork("in.pdf", 1);
        EXPECT_NE(letters(typed).find(letters(again)), std::string::npos) << letters(again);
    }
}

/// Programs miss the right end of a line that is stretched one way.
TEST_F(RightToLeft, StretchedLinesKeepTheirLeftEnd) {
    const std::string old = page("2 0 0 1 100 600 Tm (dcba) Tj");
    folder_.add("in.pdf", old);
    const std::string svg = artwork("in.pdf", 1);
    const std::string place = "transform=\"matrix(2 0 0 1 100 192)\"";
    EXPECT_NE(line(svg).find(place + " direction=\"rtl\" text-anchor=\"end\""), std::string::npos)
        << line(svg);
    folder_.add("page.svg", replaced(svg, "\u05D3<", "\u05D3\u05D0<"));
    ASSERT_EQ(run({"save", "page.svg", "in.pdf"}).status, 0);
    EXPECT_NE(line(artwork("in.pdf", 1)).find(place), std::string::npos);
}

/// Editors may drop what says where lines came from.
TEST_F(RightToLeft, LinesAreKnownByTheirPlace) {
    const std::string old = page("(dcab 12 cd) Tj 0 -9 Td (ab) Tj ET BT /H 10 Tf (ab) Tj");
    folder_.add("in.pdf", old);
    std::string svg = artwork("in.pdf", 1);
    for (const std::string_view name : {" data-source=\"", " id=\"p"}) {
        for (auto at = svg.find(name); at != svg.npos; at = svg.find(name, at)) {
            svg.erase(at, svg.find('"', at + name.size()) + 1 - at);
        }
    }
    folder_.add("page.svg", svg);
    ASSERT_EQ(run({"save", "page.svg", "in.pdf"}).status, 0);
    EXPECT_EQ(bytes("in.pdf"), old);
    folder_.add("page.svg", replaced(svg, "x=\"110\" y=\"101\"", "x=\"120\" y=\"101\""));
    ASSERT_EQ(run({"save", "page.svg", "in.pdf", "--plain"}).status, 0);
    const std::string added = bytes("in.pdf").substr(old.size());
    EXPECT_NE(added.find("(dcab 12 cd) Tj"), std::string::npos) << added;
    EXPECT_EQ(artwork("in.pdf", 1).find("x=\"110\" y=\"101\""), std::string::npos);
}

/// What annotations and tiles show is compared as a whole.
TEST_F(RightToLeft, TextOfAnnotationsIsKnownAgain) {
    const std::string old =
        file("(ba) Tj", "/Annots [30 0 R]")
            .object(30, "<< /Type /Annot /Subtype /FreeText /Rect [10 10 60 30] /F 4 "
                        "/AP << /N 31 0 R >> >>")
            .stream(31, "BT /H 10 Tf 2 2 Td (dc ba) Tj ET",
                    "/Type /XObject /Subtype /Form /BBox [0 0 50 20] /Resources << /Font << /H 20 "
                    "0 R >> >>")
            .bytes();
    folder_.add("in.pdf", old);
    const std::string svg = artwork("in.pdf", 1);
    EXPECT_NE(svg.find("x=\"37\""), std::string::npos) << svg;
    folder_.add("page.svg", replaced(svg, "x=\"110\"", "x=\"120\""));
    const auto moved = run({"save", "page.svg", "in.pdf"});
    EXPECT_EQ(moved.status, 0) << moved.errors;
    folder_.add("page.svg", replaced(artwork("in.pdf", 1), "x=\"37\"", "x=\"39\""));
    EXPECT_NE(run({"save", "page.svg", "in.pdf"}).status, 0);
}

} // namespace
} // namespace corvane
