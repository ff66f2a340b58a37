// The page tree, what pages inherit, their geometry and their identity.
#include "reader/page/page_tree.h"

#include "objects/stack.h"
#include "runtime/fixed.h"
#include "tests/reader/art_text.h"
#include "tests/reader/reader_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

class PageTest : public ReaderTest {
protected:
    /// The pages' left edges, by which the tests tell pages apart.
    std::string pagesOf(const PdfBuilder& file) {
        DocumentCache& cache = open(file);
        std::string text;
        const std::int32_t count = countCache(cache);
        for (std::int32_t page = 1; page <= count; ++page) {
            pageCache(cache, page);
            text += (page == 1 ? "" : " ") + std::to_string(std::lround(mediaCache(cache).left));
        }
        return text;
    }
};

std::string box(int left) {
    return "/MediaBox[" + std::to_string(left) + " 0 99 99]";
}

/// Catalog, and a tree whose root has these Kids; objects 11 to 13 are pages told apart by number.
PdfBuilder tree(const std::string& kids) {
    PdfBuilder file;
    file.object(1, "<</Pages 2 0 R>>").object(2, "<</Kids" + kids + "/Count 1>>");
    for (int i = 11; i <= 13; ++i) {
        file.object(i, "<</Parent 2 0 R" + box(i) + ">>");
    }
    return file;
}

TEST_F(PageTest, Trees) {
    struct TreeRow {
        const char* name;
        PdfBuilder file;
        const char* wanted; ///< null: an exception
        Exception original = Exception::none;
        Exception extended = Exception::none;
    };
    constexpr Exception damaged = Exception::structure;
    constexpr Exception range = Exception::range;
    std::string deep;
    for (int i = 0; i < 300; ++i) {
        deep += "[<</Kids";
    }
    PdfBuilder shared = tree("[<</Kids 20 0 R>><</Kids 20 0 R>>]");
    for (int i = 20; i < 60; ++i) {
        const std::string next = std::to_string(i + 1) + " 0 R";
        std::string twice = "[<</Kids ";
        twice.append(next).append(">><</Kids ").append(next).append(">>]");
        shared.object(i, twice);
    }
    shared.object(60, "[11 0 R]");
    for (const TreeRow& row : {
             TreeRow{"flat, and Count is not believed", tree("[11 0 R 12 0 R 13 0 R]"), "11 12 13"},
             TreeRow{"nested", tree("[20 0 R 13 0 R]").object(20, "<</Kids[11 0 R 12 0 R]>>"),
                     "11 12 13"},
             TreeRow{"Kids by reference", tree(" 20 0 R").object(20, "[11 0 R]"), "11"},
             TreeRow{"pages in the array itself", tree("[<<" + box(5) + ">> 11 0 R]"), "5 11"},
             TreeRow{"no Kids: the root is the page",
                     PdfBuilder().object(1, "<</Pages 2 0 R>>").object(2, "<<" + box(3) + ">>"),
                     "3"},
             TreeRow{"the same page twice", tree("[11 0 R 12 0 R 11 0 R]"), "11 12 11"},
             TreeRow{"nodes without pages", tree("[20 0 R 11 0 R]").object(20, "<</Kids[]>>"),
                     "11"},
             TreeRow{"no pages", tree("[]"), ""},
             TreeRow{"null among the Kids", tree("[null 11 0 R]"), "11", range},
             TreeRow{"what is missing", tree("[99 0 R 11 0 R]"), "11", Exception::underflow},
             TreeRow{"what is no dictionary", tree("[11 0 R(x)7]"), "11", range},
             TreeRow{"Kids that are none", tree("/x"), "", range},
             TreeRow{"a node that holds itself", tree("[11 0 R 2 0 R]"), "11", damaged},
             TreeRow{"a loop of two", tree("[20 0 R]").object(20, "<</Kids[2 0 R]>>"), "", damaged},
             TreeRow{"a node twice", tree("[20 0 R 20 0 R]").object(20, "<</Kids[11 0 R]>>"), "11",
                     damaged},
             TreeRow{"Kids that hold themselves",
                     tree(" 20 0 R").object(20, "[<</Kids 20 0 R>><</Kids 20 0 R>>]"), "", damaged},
             TreeRow{"2^40 pages", shared, "11", damaged},
             TreeRow{"no end of nodes", tree(deep), nullptr, damaged, damaged},
         }) {
        for (const Profile profile : {Profile::original, Profile::extended}) {
            selectRules(profile);
            const Exception wanted = profile == Profile::original ? row.original : row.extended;
            std::string pages;
            EXPECT_EQ(raisedBy([&] { pages = pagesOf(row.file); }), wanted) << row.name;
            if (wanted == Exception::none) {
                EXPECT_EQ(pages, row.wanted) << row.name;
            }
        }
    }
    DocumentCache& cache = open(tree("[11 0 R]"));
    for (const std::int32_t number : {-1, 0, 2}) {
        EXPECT_EQ(raisedBy([&] { pageCache(cache, number); }), Exception::underflow) << number;
    }
}

TEST_F(PageTest, ManyPagesTakeNoTimeAndNoMemory) {
    PdfBuilder file;
    std::string kids;
    for (int i = 0; i < 50000; ++i) {
        kids += std::to_string(10 + i) + " 0 R ";
        file.object(10 + i, "<</Parent 2 0 R/MediaBox[0 0 9 9]/Resources 3 0 R>>");
    }
    file.object(1, "<</Pages 2 0 R>>").object(2, "<</Kids[" + kids + "]>>").object(3, "<<>>");
    const std::string bytes = file.bytes();
    DocumentCache& cache = open(bytes);
    const std::int64_t before = zoneBytesInUse();
    EXPECT_EQ(countCache(cache), 50000);
    pageCache(cache, 50000);
    EXPECT_EQ(factsCache(cache).objectNumber, 50009);
    for (std::int32_t page = 1; page <= 50000; ++page) {
        ASSERT_EQ(pageFactsCache(cache, page).objectNumber, 9 + page);
    }
    EXPECT_LT(zoneBytesInUse() - before, 4 << 20);
}

/// Pages 11 to 16, three of them below each of two nodes; `last` is the entry behind them.
PdfBuilder sixPages(const std::string& count, const std::string& last = "") {
    PdfBuilder file;
    file.object(1, "<</Pages 2 0 R>>")
        .object(2, "<</Kids[3 0 R 4 0 R " + last + "]" + count + ">>")
        .object(3, "<</Kids[11 0 R 12 0 R 13 0 R]/Count 0/Parent 2 0 R>>")
        .object(4, "<</Kids[14 0 R 15 0 R 16 0 R]/Count 90/Parent 2 0 R>>");
    for (int page = 11; page <= 16; ++page) {
        file.object(page, "<</Parent 2 0 R" + box(page) + ">>");
    }
    return file;
}

TEST_F(PageTest, TheTreeIsWalkedAsFarAsThePage) {
    DocumentCache& cache = open(sixPages("/Count 6").bytes(), 2);
    EXPECT_EQ(cache.pages.size(), 2U);
    EXPECT_EQ(statedCount(cache), 6);
    for (const std::int32_t page : {4, 1, 6}) {
        pageCache(cache, page);
        EXPECT_EQ(mediaCache(cache).left, 10 + page);
        EXPECT_EQ(std::ssize(cache.pages), std::max(page, 4));
    }
    EXPECT_EQ(raisedBy([&] { pageCache(cache, 7); }), Exception::underflow);
    EXPECT_EQ(countCache(cache), 6);
}

TEST_F(PageTest, DamageBehindThePageIsNotMet) {
    const std::string loop = sixPages("/Count 5", "2 0 R").bytes();
    DocumentCache& cache = open(loop, 5);
    EXPECT_FALSE(cache.repaired);
    pageCache(cache, 5);
    EXPECT_EQ(mediaCache(cache).left, 15);
    EXPECT_FALSE(cache.mends.has(Mend::pageNode));
    EXPECT_EQ(placesCache(cache), 1);
    EXPECT_EQ(countCache(cache), 6);
    EXPECT_TRUE(cache.mends.has(Mend::pageNode));
}

TEST_F(PageTest, TheCountThatIsShown) {
    for (const auto& [count, shown] :
         std::vector<std::pair<std::string, int>>{{"/Count 5", 5},
                                                  {"/Count 9", 9},
                                                  {"/Count 3", 6},
                                                  {"/Count 1", 6},
                                                  {"/Count 0", 6},
                                                  {"/Count -2", 6},
                                                  {"/Count 2147483647", 6},
                                                  {"/Count(6)", 6},
                                                  {"/Count 2 0 R", 6},
                                                  {"", 6}}) {
        EXPECT_EQ(statedCount(open(sixPages(count).bytes(), 4)), shown) << count;
        EXPECT_EQ(statedCount(open(sixPages(count))), 6) << count;
        selectRules(Profile::original);
        EXPECT_EQ(statedCount(open(sixPages(count).bytes(), 4)), 6) << count;
        selectRules(Profile::extended);
    }
}

TEST_F(PageTest, TheNearestNodeWins) {
    PdfBuilder file;
    file.object(1, "<</Pages 2 0 R>>")
        .object(2, "<</Kids[3 0 R]/MediaBox[0 0 100 100]/Rotate 90/CropBox[1 1 99 99]>>")
        .object(3, "<</Kids[4 0 R]/Parent 2 0 R/Resources<</A 1>>/Rotate 6 0 R>>")
        .object(4, "<</Parent 3 0 R/CropBox[2 2 50 50]/Rotate null>>")
        .object(6, "180");
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        EXPECT_EQ(mediaCache(cache), (Box{0, 0, 100, 100}));
        EXPECT_EQ(cropCache(cache), (Box{2, 2, 50, 50}));
        EXPECT_EQ(rotateCache(cache), 180);
        EXPECT_EQ(sizeObject(cache.resources.get()), 2);
    }
    const PdfBuilder loop = PdfBuilder::onePage("").object(2, "<</Kids[3 0 R]/Parent 3 0 R>>");
    EXPECT_EQ(raisedBy([&] { pageCache(open(loop), 1); }), Exception::none);
    selectRules(Profile::original);
    EXPECT_EQ(raisedBy([&] { pageCache(open(loop), 1); }), Exception::structure);
}

TEST_F(PageTest, BoxesTurnsAndUnits) {
    struct BoxRow {
        const char* name;
        const char* entries;
        Exception original;
        Exception extended;
        Box media;
        Box crop;
        int rotate = 0;
        double unit = 1;
    };
    constexpr Exception none = Exception::none;
    constexpr Box letter{0, 0, 612, 792};
    constexpr Box hundred{0, 0, 100, 200};
    for (const BoxRow& row : {
             BoxRow{"usual", "/MediaBox[0 0 100 200]", none, none, hundred, hundred},
             BoxRow{"corners in any order",
                    "/MediaBox[100 200 0 0]/CropBox[90 10 10 90]",
                    none,
                    none,
                    hundred,
                    {10, 10, 90, 90}},
             BoxRow{"reals",
                    "/MediaBox[-0.5 .25 100.5 200]",
                    none,
                    none,
                    {-0.5, 0.25, 100.5, 200},
                    {-0.5, 0.25, 100.5, 200}},
             BoxRow{"elements by reference", "/MediaBox[0 0 5 0 R 200]", none, none, hundred,
                    hundred},
             BoxRow{"a crop beyond the media",
                    "/MediaBox[0 0 100 200]/CropBox[-9 -9 50 999]",
                    none,
                    none,
                    hundred,
                    {0, 0, 50, 200}},
             BoxRow{"a crop outside of it", "/MediaBox[0 0 100 200]/CropBox[300 300 400 400]", none,
                    none, hundred, hundred},
             BoxRow{"no media", "", Exception::structure, none, letter, letter},
             BoxRow{"no area", "/MediaBox[0 0 0 0]", none, none, letter, letter},
             BoxRow{"three numbers", "/MediaBox[0 0 100]", Exception::range, none, letter, letter},
             BoxRow{"no numbers", "/MediaBox[0 0 /a 100]", Exception::range, none, letter, letter},
             BoxRow{"turned", "/MediaBox[0 0 100 200]/Rotate -90/UserUnit 2.5", none, none, hundred,
                    hundred, 270, 2.5},
             BoxRow{"turned often", "/MediaBox[0 0 100 200]/Rotate 810/UserUnit 0", none, none,
                    hundred, hundred, 90},
             BoxRow{"turned askew", "/MediaBox[0 0 100 200]/Rotate 45", Exception::type, none,
                    hundred, hundred},
             BoxRow{"turned by a name", "/MediaBox[0 0 100 200]/Rotate/x", Exception::range, none,
                    hundred, hundred},
         }) {
        PdfBuilder file = tree("[3 0 R]");
        file.object(3, "<<" + std::string(row.entries) + ">>").object(5, "100");
        for (const Profile profile : {Profile::original, Profile::extended}) {
            selectRules(profile);
            PageFacts facts;
            const Exception wanted = profile == Profile::original ? row.original : row.extended;
            const Exception code = raisedBy([&] {
                DocumentCache& cache = open(file);
                pageCache(cache, 1);
                facts = factsCache(cache);
            });
            EXPECT_EQ(code, wanted) << row.name;
            const bool assumed = row.media == letter;
            if (code == none && (profile == Profile::extended || !assumed)) {
                EXPECT_EQ(facts.mediaBox, row.media) << row.name;
                EXPECT_EQ(facts.cropBox, row.crop) << row.name;
                EXPECT_EQ(facts.rotate, row.rotate) << row.name;
                EXPECT_EQ(facts.userUnit, row.unit) << row.name;
            }
        }
    }
}

TEST_F(PageTest, WhereATurnedPageLies) {
    // A line from 0,0 to 30,0 on a page of 100 by 200 whose crop box is 0 0 60 200.
    struct TurnRow {
        int degrees;
        const char* original;
        const char* extended;
        Rect bounds; ///< extended, in points
    };
    for (const TurnRow& row : {
             TurnRow{0, "<0,0 30,0 S>", "<10,20 40,20 S>", {10, 220, 70, 20}},
             TurnRow{90, "<-70,130 -70,100 S>", "<20,90 20,60 S>", {20, 90, 220, 30}},
             TurnRow{180, "<60,200 30,200 S>", "<90,200 60,200 S>", {30, 200, 90, 0}},
             TurnRow{270, "<130,70 130,100 S>", "<200,10 200,40 S>", {0, 70, 200, 10}},
         }) {
        const std::string entries =
            "/MediaBox[-10 -20 90 200]/CropBox[0 0 60 200]/Rotate " + std::to_string(row.degrees);
        const std::string page = PdfBuilder::onePage("0 0 m 30 0 l S")
                                     .object(3, "<</Parent 2 0 R/Contents 4 0 R" + entries + ">>")
                                     .bytes();
        selectRules(Profile::original);
        draw(page);
        EXPECT_EQ(artText(document(), importedArt()), row.original) << row.degrees;
        selectRules(Profile::extended);
        draw(page);
        EXPECT_EQ(artText(document(), importedArt()), row.extended) << row.degrees;
        const auto fixed = [](int points) { return long2fixed(points); };
        EXPECT_EQ(document().page().bounds(),
                  (Rect{fixed(row.bounds.left), fixed(row.bounds.top), fixed(row.bounds.right),
                        fixed(row.bounds.bottom)}))
            << row.degrees;
        const bool upright = row.degrees % 180 == 0;
        EXPECT_EQ(document().page().artboard().width, fixed(upright ? 100 : 220));
        EXPECT_EQ(document().page().artboard().height, fixed(upright ? 220 : 100));
    }
}

std::uint64_t toldDigest = 0;

TEST_F(PageTest, TheDigestTellsPagesApartAndNothingElse) {
    HostExtension extension;
    extension.pageIdentity = [](void*, const PageIdentity& identity) {
        toldDigest = identity.digest;
    };
    setHostExtension(&extension);
    const auto digestOf = [&](const PdfBuilder& file) {
        toldDigest = 0;
        draw(file.bytes());
        return toldDigest;
    };
    const auto page = [](std::string_view first, std::string_view second,
                         const std::string& entries = "", const std::string& inherited = "") {
        PdfBuilder file = PdfBuilder::onePage("");
        file.object(2,
                    "<</Kids[3 0 R 9 0 R]/MediaBox[0 0 99 99]/Resources 8 0 R" + inherited + ">>")
            .object(3, "<</Parent 2 0 R/Contents[4 0 R 5 0 R]" + entries + ">>")
            .object(8, "<</ProcSet[/PDF]>>")
            .object(9, "<</Parent 2 0 R>>");
        for (const auto& [number, content] : {std::pair{4, first}, std::pair{5, second}}) {
            file.object(number, "<</Length " + std::to_string(number + 2) + " 0 R>>stream\n" +
                                    std::string(content) + "\nendstream")
                .object(number + 2, std::to_string(content.size()));
        }
        return file;
    };
    const std::uint64_t base = digestOf(page("0 0 m", "9 0 l S"));
    const PdfBuilder unchanged = page("0 0 m", "9 0 l S");
    struct DigestRow {
        const char* name;
        PdfBuilder file;
        bool same;
    };
    const auto with = [&](int number, const char* body) {
        return PdfBuilder(unchanged).object(number, body);
    };
    for (const DigestRow& row : {
             DigestRow{"the same", unchanged, true},
             DigestRow{"another page", with(9, "<</Parent 2 0 R/Rotate 90>>"), true},
             DigestRow{"another object, and so other places", with(10, "(something)"), true},
             DigestRow{"what the catalog says", with(1, "<</Pages 2 0 R/Lang(x)>>"), true},
             DigestRow{"a content byte", page("0 0 m", "8 0 l S"), false},
             DigestRow{"a byte more", page("0 0 m", "9 0 l S "), false},
             DigestRow{"a byte that went to the other stream", page("0 0 ", "m9 0 l S"), false},
             DigestRow{"the streams' order", page("9 0 l S", "0 0 m"), false},
             DigestRow{"a page entry", page("0 0 m", "9 0 l S", "/Trans<<>>"), false},
             DigestRow{"its own media box", page("0 0 m", "9 0 l S", "/MediaBox[0 0 99 99]"),
                       false},
             DigestRow{"what it inherits", page("0 0 m", "9 0 l S", "", "/Rotate 90"), false},
             DigestRow{"its resources, elsewhere", with(8, "<</ProcSet[/PDF/Text]>>"), false},
         }) {
        EXPECT_EQ(digestOf(row.file) == base, row.same) << row.name;
        EXPECT_NE(toldDigest, 0U);
    }
    setHostExtension(nullptr);
}

} // namespace
} // namespace corvane
