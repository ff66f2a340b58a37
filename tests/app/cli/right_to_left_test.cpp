// Lines of scripts that run from the right: as they are read in the artwork, as they stand in the
// file.
#include "tests/app/cli/saving.h"
#include "tests/support/pdf_builder.h"

namespace corvane {
namespace {

class RightToLeft : public Saving {
protected:
    /// A page whose font has the letters a to d for alef to dalet.
    static std::string page(const std::string& content) {
        std::string widths;
        for (int code = ' '; code <= 'd'; ++code) {
            widths += "500 ";
        }
        return test::PdfBuilder::onePage("BT /H 10 Tf 100 700 Td " + content + " ET",
                                         "/Resources << /Font << /H 20 0 R >> >>")
            .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /FirstChar 32 "
                        "/Widths [" +
                            widths + "] /ToUnicode 21 0 R >>")
            .stream(21, "beginbfrange <61> <64> <05D0> <20> <39> <0020> endbfrange")
            .bytes();
    }

    /// The line as it is written, without its fonts.
    static std::string line(const std::string& svg) {
        const auto start = svg.find("<text");
        return start == svg.npos ? "" : svg.substr(start, svg.find("</text>", start) - start);
    }
};

TEST_F(RightToLeft, LinesAreReadAndTypedAsTheyAreRead) {
    struct Row {
        const char* content;
        const char* base;    ///< how the line runs
        const char* letters; ///< as they are read
        const char* typed;
        const char* saved;
    };
    const char* const fromRight = "direction=\"rtl\" text-anchor=\"end\"";
    for (const Row& row : {
             Row{"(\\(dc\\) 12 ba) Tj", fromRight, "\u05D0\u05D1 12 (\u05D2\u05D3)",
                 "\u05D0 34 (\u05D3\u05D1)", "[<286264292033342061> ] TJ"},
             Row{"(12 ba) Tj", fromRight, "\u05D0\u05D1 12", "\u05D0\u05D1\u05D2",
                 "[<636261> ] TJ"},
         }) {
        SCOPED_TRACE(row.content);
        const std::string old = page(row.content);
        folder_.add("in.pdf", old);
        const std::string svg = artwork("in.pdf", 1);
        EXPECT_NE(line(svg).find(row.base), std::string::npos) << line(svg);
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
    folder_.add("page.svg", replaced(svg, "\u05D0\u05D1<", "\u05D3<"));
    ASSERT_EQ(run({"save", "page.svg", "in.pdf", "--plain"}).status, 0);
    EXPECT_NE(bytes("in.pdf").rfind("(dc ) Tj"), bytes("in.pdf").find("(dc ) Tj"));
    EXPECT_NE(bytes("in.pdf").find("[<64> ] TJ"), std::string::npos);
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

} // namespace
} // namespace corvane
