// The digest by which a later change of a page is noticed.
#include "reader/page/page_content.h"
#include "reader/page/page_digest.h"
#include "runtime/budget.h"
#include "tests/reader/reader_fixture.h"

#include <set>

namespace corvane {
namespace {

class PageDigestTest : public ReaderTest {
protected:
    /// Of the page of a file whose Contents are `contents`; streams 4, 5 and 6 are there.
    std::uint64_t digestOf(const std::string& contents, DigestVersion version) {
        PdfBuilder file = PdfBuilder::onePage("0 0 m 10 10 l S");
        file.object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents " +
                           contents + " >>")
            .stream(5, "1 g 2 w")
            .stream(6, std::string(40'000, ' '), "/Kind (blank)");
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        return digestPage(cache, contentStreams(cache), version);
    }
};

// Artwork and saved pages remember them.
TEST_F(PageDigestTest, OfEveryVersionStaysAsItWas) {
    struct Row {
        const char* contents;
        std::uint64_t page;
        std::uint64_t drawn;
    };
    for (const Row& row : {
             Row{"4 0 R", 7232361264067076301U, 11940367513418390579U},
             Row{"[4 0 R 5 0 R 6 0 R]", 1783796679413377825U, 2834428464951754396U},
             Row{"[]", 13817386004681617129U, 12524968687284092537U},
         }) {
        EXPECT_EQ(digestOf(row.contents, DigestVersion::page), row.page);
        EXPECT_EQ(digestOf(row.contents, DigestVersion::drawn), row.drawn);
        EXPECT_EQ(digestOf(row.contents, DigestVersion::layered), row.drawn);
    }
}

TEST_F(PageDigestTest, TellsOrderAndNumberOfTimes) {
    const std::vector<std::string> pages{
        "[4 0 R]",       "[4 0 R 4 0 R]",       "[4 0 R 4 0 R 4 0 R]", "[4 0 R 5 0 R]",
        "[5 0 R 4 0 R]", "[4 0 R 5 0 R 4 0 R]", "[4 0 R 5 0 R 5 0 R]", "[4 0 R 4 0 R 5 0 R]"};
    for (const DigestVersion version : {DigestVersion::page, DigestVersion::drawn}) {
        std::set<std::uint64_t> digests;
        for (const std::string& page : pages) {
            digests.insert(digestOf(page, version));
        }
        EXPECT_EQ(digests.size(), pages.size());
    }
}

/// A page with a form, which draws another and itself, an image whose length stands elsewhere, a
/// font with a descriptor, a graphics state and a colour space; resources are inherited.
PdfBuilder pageOfThings() {
    PdfBuilder file = PdfBuilder::onePage("/F0 Do");
    file.object(2, "<</Type/Pages/Kids[3 0 R 20 0 R]/Count 2/Resources 8 0 R>>")
        .object(3, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R/Annots[21 0 R]"
                   "/Group<</S/Transparency/CS 17 0 R>>/Metadata 22 0 R>>")
        .object(8, "<</XObject<</F0 9 0 R/F1 10 0 R/I0 11 0 R/B 11 0 R>>/Font<</T0 13 0 R>>"
                   "/ExtGState<</G0 16 0 R>>/Properties<</M0 23 0 R>>/Gone 99 0 R>>")
        .stream(9, "/F1 Do", "/Subtype/Form/Resources 8 0 R/Metadata 22 0 R/PieceInfo 22 0 R")
        .stream(10, "/F0 Do", "/Subtype/Form/Resources<</XObject<</F0 9 0 R/F1 10 0 R>>>>")
        .object(11, "<</Subtype/Image/Length 12 0 R>>stream\npixels\nendstream")
        .object(12, "6")
        .object(13, "<</Type/Font/FontDescriptor 14 0 R>>")
        .object(14, "<</Type/FontDescriptor/FontFile 15 0 R>>")
        .stream(15, "glyphs")
        .object(16, "<</CA .5>>")
        .object(17, "[/ICCBased 18 0 R]")
        .stream(18, "profile", "/N 3")
        .object(20, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>")
        .object(21, "<</Subtype/Link/Rect[0 0 1 1]>>")
        .stream(22, "notes")
        .object(23, "<</Pg 20 0 R>>")
        .object(30, "(nothing)");
    return file;
}

TEST_F(PageDigestTest, CoversWhatThePageIsDrawnFromAndNothingElse) {
    const auto digest = [&](const PdfBuilder& file) {
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        return digestPage(cache, contentStreams(cache));
    };
    const std::uint64_t base = digest(pageOfThings());
    struct Row {
        const char* name;
        PdfBuilder file;
        bool same;
    };
    const auto with = [](int number, const char* body) {
        return pageOfThings().object(number, body);
    };
    for (const Row& row : {
             Row{"a form", pageOfThings().stream(9, "/F9 Do", "/Subtype/Form/Resources 8 0 R"),
                 false},
             Row{"a form in a form",
                 pageOfThings().stream(10, "/F0 Xo",
                                       "/Subtype/Form/Resources<</XObject<</F0 9 0 R"
                                       "/F1 10 0 R>>>>"),
                 false},
             Row{"an image", with(11, "<</Subtype/Image/Length 12 0 R>>stream\nPixels\nendstream"),
                 false},
             Row{"an image's dictionary",
                 with(11, "<</Subtype/Image/Length 12 0 R/Decode[1 0]>>stream\npixels\nendstream"),
                 false},
             Row{"a font's program", pageOfThings().stream(15, "glyphS"), false},
             Row{"a graphics state", with(16, "<</CA .6>>"), false},
             Row{"the group's colours", pageOfThings().stream(18, "Profile", "/N 3"), false},
             Row{"an object that was missing", with(99, "7"), false},
             Row{"a thing of the same kind",
                 with(13, "<</Type/Font/FontDescriptor 24 0 R>>")
                     .object(24, "<</Type/FontDescriptor>>"),
                 false},
             Row{"an object of another number",
                 with(13, "<</Type/Font/FontDescriptor 24 0 R>>")
                     .object(24, "<</Type/FontDescriptor/FontFile 15 0 R>>"),
                 true},
             Row{"another page", with(20, "<</Type/Page/Parent 2 0 R/Rotate 90>>"), true},
             Row{"an annotation", with(21, "<</Subtype/Link/Rect[0 0 2 2]>>"), true},
             Row{"notes", pageOfThings().stream(22, "other notes"), true},
             Row{"what no page is drawn from", with(30, "(something)"), true},
         }) {
        EXPECT_EQ(digest(row.file) == base, row.same) << row.name;
    }
}

TEST_F(PageDigestTest, ReadsEachObjectOnce) {
    DocumentCache& cache = open(pageOfThings());
    pageCache(cache, 1);
    const std::vector<ObjectOwner> streams = contentStreams(cache);
    const std::int64_t before = cache.work.places;
    digestPage(cache, streams);
    EXPECT_EQ(cache.work.places - before, 12) << "9 to 18 and 23, and page 20";
    EXPECT_EQ(cache.work.pageBytes,
              std::ssize(std::string("/F0 Do/F1 Do/F0 Dopixelsglyphsprofile")));
}

TEST_F(PageDigestTest, EndsAtItsBudget) {
    // Streams that, by their Length, all reach to the end of the last: four fit, five do not.
    constexpr int count = 5;
    constexpr std::size_t blanks = 60 << 20;
    PdfBuilder file = PdfBuilder::onePage("");
    std::string names;
    for (int i = 0; i < count; ++i) {
        const std::size_t objectLength = std::string_view("10 0 obj\n<</Length 12345678>>stream\n"
                                                          "\nendobj\n")
                                             .size();
        const auto length = static_cast<std::size_t>(count - 1 - i) * objectLength + blanks;
        names += "/X" + std::to_string(i) + " " + std::to_string(10 + i) + " 0 R";
        file.object(10 + i, "<</Length " + std::to_string(length) + ">>stream\n" +
                                (i + 1 < count ? "" : std::string(blanks, ' ') + "\nendstream"));
    }
    file.object(3, "<</Parent 2 0 R/MediaBox[0 0 9 9]/Resources<</XObject<<" + names + ">>>>>>");
    DocumentCache& cache = open(file);
    pageCache(cache, 1);
    digestPage(cache, contentStreams(cache));
    EXPECT_GE(cache.work.pageBytes, std::int64_t{blanks} * 4);
    EXPECT_LE(cache.work.pageBytes, budget::digestBytes);
}

TEST_F(PageDigestTest, PastTheBudgetReferencesCountByThemselves) {
    const auto digest = [&](const char* last, std::string_view value) {
        std::string array = "[";
        for (std::size_t i = 0; i < budget::digestObjects; ++i) {
            array += "7 " + std::to_string(i) + " R ";
        }
        PdfBuilder file = PdfBuilder::onePage("", "/Resources<</Font " + array + last + "]>>");
        file.object(8, std::string(value)).object(9, "0");
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        return digestPage(cache, contentStreams(cache));
    };
    EXPECT_EQ(digest("8 0 R", "1"), digest("8 0 R", "2"));
    EXPECT_NE(digest("8 0 R", "0"), digest("9 0 R", "0"));
}

/// Layers are named and shown otherwise without any change of the page.
TEST_F(PageDigestTest, LayersAreNoPartOfThePage) {
    const auto digest = [&](const char* group, DigestVersion version) {
        DocumentCache& cache = open(
            PdfBuilder::onePage("/OC /L BDC EMC", "/Resources << /Properties << /L 5 0 R >> >>")
                .object(5, group));
        pageCache(cache, 1);
        return digestPage(cache, contentStreams(cache), version);
    };
    const char* const grid = "<< /Type /OCG /Name (Grid) >>";
    const char* const walls = "<< /Type /OCG /Name (Walls) >>";
    EXPECT_EQ(digest(grid, DigestVersion::layered), digest(walls, DigestVersion::layered));
    EXPECT_NE(digest(grid, DigestVersion::drawn), digest(walls, DigestVersion::drawn));
    EXPECT_NE(digest("<< /Type /OCMD /P /AllOn >>", DigestVersion::layered),
              digest("<< /Type /OCMD /P /AllOff >>", DigestVersion::layered));
}

} // namespace
} // namespace corvane
