// Damaged files that are read as most readers take them, and what is noted of the damage.
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

constexpr const char* square = "0 0 9 9 re f";

/// A file of one page that draws a square, with one of its objects replaced.
std::string with(int number, const std::string& body) {
    return PdfBuilder::onePage(square).object(number, body).bytes();
}

std::string pageOf(const std::string& entries) {
    return "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents 4 0 R " + entries + ">>";
}

/// The file with its first `from` replaced; by text of the same length, unless offsets may move.
std::string replaced(std::string file, const std::string& from, const std::string& to) {
    return file.replace(file.find(from), from.size(), to);
}

class MendingTest : public ReaderTest {
protected:
    /// Kinds of what was mended: "streamLength(4)" as "5(4)"; of the file itself as "0".
    static std::string mended(const DocumentCache& cache) {
        std::string text;
        for (std::size_t kind = 0; kind < mendKinds; ++kind) {
            const auto mend = static_cast<Mend>(kind);
            if (!cache.mends.has(mend)) {
                continue;
            }
            text += (text.empty() ? "" : " ") + std::to_string(kind);
            for (const std::int32_t number : cache.mends.objects(mend)) {
                text += "(" + std::to_string(number) + ")";
            }
        }
        return text;
    }

    bool isSquareDrawn() { return document().firstChild(importedArt()) != Art::null; }
};

struct DamageRow {
    const char* name;
    std::string file;
    std::string mends;
    bool isDrawn = true;
};

TEST_F(MendingTest, DamagedFilesAreReadAndTheirDamageIsNoted) {
    const std::string whole = PdfBuilder::onePage(square).bytes();
    const std::string content = "\nstream\n" + std::string(square) + "\nendstream";
    const std::string pages = "<</Type/Pages/Kids";
    for (const DamageRow& row : {
             DamageRow{"whole", whole, ""},
             DamageRow{"header far back", std::string(2000, 'j') + whole, "0"},
             DamageRow{"header behind many blocks", std::string(200000, 'j') + whole, "0"},
             DamageRow{"no header", replaced(whole, "%PDF-1.4", "%       "), "0"},
             DamageRow{"a header within an object",
                       replaced(replaced(whole, "%PDF-1.4", "%       "), "endobj",
                                "endobj\n" + std::string(1100, ' ') + "%PDF-1.4\n"),
                       "0 1"},
             DamageRow{"a length that is short", with(4, "<</Length 3>>" + content), "5(4)"},
             DamageRow{"no length", with(4, "<<>>" + content), "5(4)"},
             DamageRow{"no end of an object", replaced(whole, "endobj\n4 0", "      \n4 0"),
                       "6(3)"},
             DamageRow{"a word in a dictionary", with(3, pageOf("/A word")), "7(3)"},
             DamageRow{"a key that is a number", with(3, pageOf("/A 1.2.3")), "7(3)"},
             DamageRow{"a key without a value", with(3, pageOf("/A")), "7(3)"},
             DamageRow{"a key with NUL", with(3, pageOf(std::string("/A\0B 1", 6))), "7(3)"},
             DamageRow{"a reference that is none", with(3, pageOf("/A 0 R")), "7(3)"},
             DamageRow{"a bracket too many", with(3, pageOf("/A 1]")), "7(3)"},
             DamageRow{"a bracket too few", with(3, pageOf("/A[1 2")), "7(3)"},
             DamageRow{"no end of a dictionary",
                       with(3, "<</Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R"), "7(3)"},
             DamageRow{"a box of three", with(3, pageOf("/CropBox[0 0 9]")), "9(3)"},
             DamageRow{"a rotation by less than a quarter", with(3, pageOf("/Rotate 45")), "9(3)"},
             DamageRow{"a unit that is a name", with(3, pageOf("/UserUnit/x")), "9(3)"},
             DamageRow{"resources that cannot be read",
                       PdfBuilder::onePage(square, "/Resources 5 0 R").object(5, "R R").bytes(),
                       "8(5)"},
             DamageRow{"a content that is no stream", with(4, "<</A 1>>"), "", false},
             DamageRow{"a content of an unknown coding", with(4, "<</Filter/X>>" + content), "5(4)",
                       false},
             DamageRow{"parameters that are none",
                       with(4, "<</Length 12/DecodeParms 5>>" + content), ""},
             DamageRow{"another place than the table says",
                       replaced(whole, "endobj\n4 0 obj", "endobj\n%edited\n4 0 obj"), "1"},
             DamageRow{
                 "a loop of parents",
                 PdfBuilder::onePage(square).object(2, pages + "[3 0 R]/Parent 3 0 R>>").bytes(),
                 ""},
             DamageRow{"a loop of nodes", with(2, pages + "[2 0 R 3 0 R 2 0 R]>>"), "4(2)"},
             DamageRow{"Kids that are null and numbers", with(2, pages + "[null 7 3 0 R]>>"),
                       "4(2)"},
             DamageRow{"a page with Kids", with(3, pageOf("/Kids[]")), "4(3)"},
             DamageRow{"a page with Kids that are none", with(3, pageOf("/Kids 7")), "4(3)"},
             DamageRow{"no tree", with(1, "<</Type/Catalog>>"), "1 2 3"},
             DamageRow{"a tree without pages", with(2, pages + "[]>>"), "1 3"},
             DamageRow{"a catalog that is none", with(1, "[]"), "1 2 3"},
         }) {
        SCOPED_TRACE(row.name);
        draw(row.file);
        factsCache(*cache_);
        EXPECT_EQ(mended(*cache_), row.mends);
        EXPECT_EQ(isSquareDrawn(), row.isDrawn);
        EXPECT_EQ(countCache(*cache_), 1);
    }
}

TEST_F(MendingTest, TheOriginalProfileRefusesThem) {
    for (const std::string& file :
         {with(3, pageOf("/A word")), with(3, pageOf("/A")), with(3, pageOf("/A 1]")),
          with(3, pageOf("/Kids 7")), with(2, "<</Kids[2 0 R 3 0 R]>>"), with(4, "<</A 1>>"),
          with(3, pageOf("/Rotate 45")), with(1, "<</Type/Catalog>>")}) {
        selectRules(Profile::original);
        EXPECT_TRUE(isFileFault(raisedBy([&] { draw(file); })));
        close();
    }
}

/// Pages that no tree leads to come in the order of their numbers, also out of object streams.
TEST_F(MendingTest, LostPagesAreFound) {
    PdfBuilder file;
    const std::string members = "<</Type/Page/Rotate 90>><</Type/Pages>>";
    file.object(7, "<</Type/Page/Rotate 180>>")
        .object(9, "(/Type/Page)")
        .stream(5, "3 0 4 24 " + members, "/Type/ObjStm/N 2/First 9");
    DocumentCache& cache = open(file.trailer("/Size 9").bytes());
    EXPECT_EQ(mended(cache), "1 2 3");
    ASSERT_EQ(countCache(cache), 2);
    pageCache(cache, 1);
    EXPECT_EQ(rotateCache(cache), 90);
    pageCache(cache, 2);
    EXPECT_EQ(rotateCache(cache), 180);
}

} // namespace
} // namespace corvane
