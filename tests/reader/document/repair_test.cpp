// Files whose objects are found by searching.
#include "reader/page/page_tree.h"
#include "tests/reader/reader_fixture.h"

namespace corvane {
namespace {

class RepairTest : public ReaderTest {
protected:
    /// A file of one page without a cross-reference, with these bytes in it and at its end.
    static std::string damaged(const std::string& inside, const std::string& trailer = "") {
        return "%PDF-1.4\n%" + std::string(260, '-') +
               "\n1 0 obj<</Pages 2 0 R>>endobj\n2 0 obj<</Kids[3 0 R]/Count 1>>endobj\n"
               "3 0 obj<</Parent 2 0 R/MediaBox[0 0 9 9]>>endobj\n" +
               inside + "\ntrailer<</Root 1 0 R" + trailer + ">>\n";
    }
};

TEST_F(RepairTest, OnlyDictionariesSayThatAFileIsEncrypted) {
    constexpr Exception none = Exception::none;
    constexpr Exception encrypted = Exception::crossReference;
    struct Row {
        const char* name;
        std::string inside;
        Exception code;
    };
    const std::string far(70000, '.'); // more than is searched at a time
    for (const Row& row : {
             Row{"an object stream that cannot be read",
                 "5 0 obj<</Type/ObjStm/N 1>>stream\nx\nendstream endobj", none},
             Row{"an object stream that is cut", "5 0 obj<</Type/ObjStm /N 1 (", none},
             Row{"the name in a string", "5 0 obj(/Encrypt )endobj", none},
             Row{"a longer name", "5 0 obj<</Encrypted 1>>endobj", none},
             Row{"a dictionary within", "5 0 obj<</A<</Encrypt 1>>>>endobj", none},
             Row{"far in data", "5 0 obj<</N 1>>stream\n" + far + "/Encrypt 1 \nendstream endobj",
                 none},
             Row{"behind data that names it",
                 "5 0 obj<<>>stream\n/Encrypt \nendstream endobj trailer<</Encrypt 6 0 R>>",
                 encrypted},
             Row{"encryption in data", "5 0 obj<</N 1>>stream\n/Encrypt 1\nendstream endobj", none},
             Row{"encryption by a section in a stream",
                 "5 0 obj<</Type/XRef/Encrypt 6 0 R>>stream\nx\nendstream endobj", encrypted},
             Row{"encryption by an older trailer", "trailer<</Root 1 0 R/Encrypt 6 0 R>>",
                 encrypted},
             Row{"encryption by a trailer that is cut", "trailer<</Root 1 0 R/Encrypt 6 0 R ]",
                 encrypted},
         }) {
        EXPECT_EQ(opening(damaged(row.inside)), row.code) << row.name;
    }
    EXPECT_EQ(opening(damaged("", "/Encrypt 6 0 R")), encrypted);
    EXPECT_EQ(opening(damaged("", "/Encr#79pt 6 0 R")), encrypted);
}

TEST_F(RepairTest, NumbersAcrossBlocksAreReadWhole) {
    // Wherever a block of the search ends: object 71234 is not taken for object 1234, 234, ...
    std::string file = damaged("4 0 obj(four)endobj 34 0 obj(right)endobj");
    file += std::string(65536 - 40 - file.size(), '.');
    for (std::size_t shift = 0; shift < 40; ++shift) {
        SCOPED_TRACE(shift);
        DocumentCache& cache = open(file + std::string(shift, '.') + " 71234 0 obj(wrong)endobj " +
                                    std::string(100, '.') + "trailer<</Root 1 0 R>>");
        EXPECT_TRUE(cache.repaired);
        EXPECT_TRUE(findReference(*cache.references, 71234, 0));
        EXPECT_EQ(countReference(*cache.references), 6);
    }
}

TEST_F(RepairTest, ObjectZeroIsNone) {
    // No section of an update could lead to it.
    const DocumentCache& cache =
        open(damaged("0 0 obj<</Type/Catalog/Pages 2 0 R>>endobj", "/Info 0 0 R"));
    EXPECT_TRUE(cache.repaired);
    EXPECT_FALSE(findReference(*cache.references, 0, 0));
    EXPECT_EQ(countReference(*cache.references), 3);
}

TEST_F(RepairTest, CatalogThatNamesItselfIsNoPage) {
    DocumentCache& cache = open("%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 1 0 R>>endobj\n"
                                "3 0 obj<</Type/Page/MediaBox[0 0 9 9]>>endobj\n"
                                "trailer<</Root 1 0 R>>\n");
    walkPages(cache);
    ASSERT_EQ(cache.pages.size(), 1U);
    EXPECT_EQ(cache.pages[0].number, 3);
}

} // namespace
} // namespace corvane
