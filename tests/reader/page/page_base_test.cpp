// The base of a page, by the page as it stands or by the record of a page that was saved.
#include "reader/page/page_base.h"

#include "reader/page/page_record.h"
#include "reader/syntax/syntax.h"
#include "tests/reader/reader_fixture.h"

#include <cstdio>

namespace corvane {
namespace {

constexpr std::uint64_t opened = 0x0123456789ABCDEF;

std::string hexText(std::uint64_t value) {
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016llX", static_cast<unsigned long long>(value));
    return text.data();
}

std::string numbersOf(const PageBase& base) {
    std::string text;
    for (const BaseStream& stream : base.streams) {
        text += std::to_string(stream.number) + " ";
    }
    return text;
}

std::string bytesOf(DocumentCache& cache, const std::optional<RawEntry>& entry) {
    return entry ? rawValue(cache, *entry) : "-";
}

class PageBaseTest : public ReaderTest {
protected:
    /// Opens the first page of a file.
    DocumentCache& page(const std::string& bytes) {
        DocumentCache& cache = open(bytes);
        pageCache(cache, 1);
        return cache;
    }
};

TEST_F(PageBaseTest, StandingPagesAreBases) {
    struct Row {
        const char* entries;
        const char* streams;
        const char* contentsEntry;
        const char* resourcesEntry;
        std::int32_t resources; ///< number of entries
    };
    for (const Row& row : {
             Row{"/Contents 4 0 R", "4 ", "4 0 R", "-", 2},
             Row{"/Contents[4 0 R null 99 0 R 5 0 R 4 0 R]/Resources<<>>", "4 5 4 ",
                 "[4 0 R null 99 0 R 5 0 R 4 0 R]", "<<>>", 0},
             Row{"/Contents 6 0 R/Resources 7 0 R", "5 4 ", "6 0 R", "7 0 R", 2},
             Row{"/Contents null/Resources null", "", "null", "-", 2},
             Row{"", "", "-", "-", 2},
         }) {
        SCOPED_TRACE(row.entries);
        DocumentCache& cache = page(
            PdfBuilder::onePage("0 g")
                .object(2, "<</Kids[3 0 R]/Resources 7 0 R/MediaBox[5 5 90 80]/Rotate 90>>")
                .object(3, std::string("<</Parent 2 0 R/CropBox[0 10 20 30]") + row.entries + ">>")
                .stream(5, "1 g")
                .object(6, "[5 0 R 4 0 R]")
                .object(7, "<</A 1>>")
                .bytes());
        for (const DigestVersion version : {DigestVersion::layered, DigestVersion::page}) {
            const std::optional<PageBase> base =
                baseOf(cache, digestPage(cache, contentStreams(cache), version));
            ASSERT_TRUE(base);
            EXPECT_TRUE(base->isStanding && base->isAsOpened);
            EXPECT_EQ(base->version, version);
            EXPECT_EQ(numbersOf(*base), row.streams);
            EXPECT_EQ(bytesOf(cache, base->contentsEntry), row.contentsEntry);
            EXPECT_EQ(bytesOf(cache, base->resourcesEntry), row.resourcesEntry);
            EXPECT_EQ(sizeObject(base->resources.get()), row.resources);
            EXPECT_EQ(base->mediaBox, (Box{5, 5, 90, 80}));
            EXPECT_EQ(base->cropBox, (Box{5, 10, 20, 30}));
            EXPECT_EQ(base->matrix.exact.tx, pageMatrix(cache).exact.tx);
        }
        EXPECT_FALSE(baseOf(cache, opened));
        EXPECT_FALSE(lastArtwork(cache));
    }
}

/// A page that was saved: its content is stream 4, that of its base 5 and 6. Its record holds
/// `entries`, in which "@3" is the place of object 3 and "@D" the digest of the base, which is made
/// with the resources `resources`.
std::string savedFile(std::string entries, std::uint64_t digest, PdfBuilder file) {
    for (std::size_t at = 0; (at = entries.find("@D")) != std::string::npos;) {
        entries.replace(at, 2, hexText(digest));
    }
    // Places are written with as many digits as their names have characters.
    for (const char* number : {"3", "4"}) {
        const std::string name = std::string("@") + number;
        for (std::size_t at = 0; (at = entries.find(name)) != std::string::npos;) {
            entries.replace(at, 2, std::string("?????") + number);
        }
    }
    std::string bytes =
        file.object(3, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 50 50]/Contents 4 0 R"
                       "/Resources<</Own 1>>/PieceInfo<</Corvane<</Private<<" +
                           entries + ">>>>>>>>")
            .bytes();
    for (std::size_t at = 0; (at = bytes.find("?????")) != std::string::npos;) {
        const std::string place =
            std::to_string(bytes.find("\n" + bytes.substr(at + 5, 1) + " 0 obj") + 1);
        bytes.replace(at, 6, std::string(6 - place.size(), '0') + place);
    }
    return bytes;
}

PdfBuilder savedPage() {
    return PdfBuilder::onePage("0 0 m 9 9 l S")
        .object(2, "<</Type/Pages/Kids[3 0 R 20 0 R 21 0 R]/Resources<</XObject<</F 8 0 R>>>>>>")
        .stream(5, "/F Do")
        .stream(6, "1 g")
        .object(7, "[5 0 R null 6 0 R]")
        .stream(8, "0 g", "/Subtype/Form")
        .object(9, "<</Font<<>>>>")
        .object(10, "10 0 R")
        .object(11, "<</Damaged")
        .object(20, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 7 0 R>>")
        .object(21, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 7 0 R/Resources 9 0 R>>");
}

class RecordedBaseTest : public PageBaseTest {
protected:
    /// The digest of the content of a page of the file, without a look at its record.
    std::uint64_t contentOf(std::int32_t number) {
        DocumentCache& cache = open(savedPage());
        pageCache(cache, number);
        return digestContent(cache,
                             streamsOf(cache, findEntry(cache, cache.page.get(), "Contents")),
                             cache.resources.get());
    }
};

const std::string usual = "/Origin<0123456789ABCDEF>/Version 2/Page @3/Content[@4]";
const std::string boxes = "/MediaBox[-5 0 90.5 80]/CropBox[0 0 20 30]";
const std::string usualBase = "/Base<</Contents 7 0 R" + boxes + "/Digest<@D>>>";

TEST_F(RecordedBaseTest, KeepsWhatThePageWas) {
    const std::string with =
        "/Origin<0123456789ABCDEF>/Version 1/Artwork<00000000000000FF>/Page @3";
    DocumentCache& cache =
        page(savedFile(with + "/Content[]" + usualBase, contentOf(2), savedPage()));
    const std::optional<PageBase> base = baseOf(cache, opened);
    ASSERT_TRUE(base);
    EXPECT_FALSE(base->isStanding);
    EXPECT_TRUE(base->isAsOpened);
    EXPECT_EQ(base->digest, opened);
    EXPECT_EQ(base->version, DigestVersion::page);
    EXPECT_EQ(numbersOf(*base), "5 6 ");
    EXPECT_EQ(bytesOf(cache, base->contentsEntry), "7 0 R");
    EXPECT_EQ(bytesOf(cache, base->resourcesEntry), "-");
    EXPECT_EQ(typeObject(findEntry(cache, base->resources.get(), "XObject")),
              ObjectType::dictionary)
        << "inherited";
    EXPECT_EQ(base->mediaBox, (Box{-5, 0, 90.5, 80}));
    EXPECT_EQ(base->cropBox, (Box{0, 0, 20, 30}));
    EXPECT_EQ(base->matrix.exact.tx, 5);
    EXPECT_EQ(lastArtwork(cache), 0xFF);
    EXPECT_FALSE(baseOf(cache, opened + 1));
    // The page as it stands is a base too, for artwork of its own.
    EXPECT_TRUE(baseOf(cache, digestPage(cache, contentStreams(cache)))->isStanding);
}

TEST_F(RecordedBaseTest, RecordsThatLieStateNothing) {
    const std::uint64_t inherited = contentOf(2);
    const std::uint64_t own = contentOf(3);
    std::string giant = "[";
    for (int i = 0; i < 100'000; ++i) {
        giant += "5 0 R ";
    }
    const auto base = [](const std::string& content) {
        return usual + "/Base<<" + content + boxes + "/Digest<@D>>>";
    };
    const auto boxed = [](const std::string& these) {
        return usual + "/Base<</Contents 7 0 R" + these + "/Digest<@D>>>";
    };
    struct Row {
        std::string record;
        bool holds = false;
        std::uint64_t digest = 0; ///< 0: with the inherited resources
    };
    for (const Row& row : {
             Row{usual + usualBase, true},
             Row{base("/Contents[5 0 R 6 0 R]"), true},
             Row{base("/Contents[5 0 R 99 0 R 6 0 R]/Resources null"), true},
             Row{base("/Contents 7 0 R/Resources 9 0 R"), true, own},
             Row{base("/Contents 7 0 R/Resources 9 0 R")},
             Row{base("/Contents 7 0 R"), false, own},
             Row{base("")},
             Row{base("/Contents 5 0 R")},
             Row{base("/Contents[6 0 R 5 0 R]")},
             Row{base("/Contents 3 0 R")},
             Row{base("/Contents[3 0 R 2 0 R]")},
             Row{base("/Contents 10 0 R")},
             Row{base("/Contents[10 0 R]")},
             Row{base("/Contents 11 0 R")},
             Row{base("/Contents(text)")},
             Row{base("/Contents " + giant + "]")},
             Row{base("/Contents 7 0 R/Resources 3 0 R")},
             Row{base("/Contents 7 0 R/Resources 10 0 R")},
             Row{base("/Contents 7 0 R/Resources 7")},
             Row{boxed("")},
             Row{boxed("/MediaBox[0 0 9]/CropBox[0 0 9 9]")},
             Row{boxed("/MediaBox[0 0 9 9]/CropBox[0 0 9(9)]")},
             Row{boxed("/MediaBox[0 0 9 9]/CropBox 10 0 R")},
             Row{boxed("/MediaBox[0 0 0 9]/CropBox[0 0 9 9]")},
             Row{usual + "/Base<</Contents 7 0 R" + boxes + ">>"},
             Row{usual + "/Base<</Contents 7 0 R" + boxes + "/Digest<00>>>"},
             Row{usual + "/Base[" + boxes + "]"},
             Row{usual + "/Base 3 0 R"},
             Row{usual + "/Base 5 0 R"},
             Row{usual + "/Base 10 0 R"},
             Row{usual + "/Base 7"},
             Row{"/Origin<0123456789ABCDEF>/Page @3/Content @4" + usualBase, true},
             Row{"/Origin<0123456789ABCDEF>/Page @4/Content[@4]" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page -1/Content[@4]" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Content[@4]" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page @3" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page @3/Content[@4 @4]" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page @3/Content[@3]" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page @3/Content[-1]" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page @3/Content[[@4]]" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page @3/Content<<>>" + usualBase},
             Row{"/Origin<0123456789ABCDEF>/Page @3/Content " + giant + "]" + usualBase},
             Row{"/Origin<0123456789ABCD>/Page @3/Content[@4]" + usualBase},
             Row{"/Origin(01234567)/Page @3/Content[@4]" + usualBase},
             Row{"/Page @3/Content[@4]" + usualBase},
         }) {
        DocumentCache& cache =
            page(savedFile(row.record, row.digest == 0 ? inherited : row.digest, savedPage()));
        const std::string name = row.record.substr(0, 160);
        const std::optional<PageBase> found = baseOf(cache, opened);
        EXPECT_EQ(found.has_value(), row.holds) << name;
        EXPECT_TRUE(!found || !found->isStanding) << name;
        resetWarning();
    }
}

TEST_F(RecordedBaseTest, WhatAnotherProgramChangedIsNoBase) {
    const std::uint64_t digest = contentOf(2);
    struct Row {
        const char* name;
        PdfBuilder file;
        bool holds;
    };
    for (const Row& row : {
             Row{"a stream of the base", savedPage().stream(6, "2 g"), false},
             Row{"its filter", savedPage().stream(6, "1 g", "/Filter/FlateDecode"), false},
             Row{"the streams' order", savedPage().object(7, "[6 0 R 5 0 R]"), false},
             Row{"a form", savedPage().stream(8, "1 g", "/Subtype/Form"), false},
             Row{"the page's turn",
                 savedPage().object(2, "<</Type/Pages/Kids[3 0 R]/Rotate 90"
                                       "/Resources<</XObject<</F 8 0 R>>>>>>"),
                 false},
             Row{"something else", savedPage().object(9, "7"), true},
         }) {
        DocumentCache& cache = page(savedFile(usual + usualBase, digest, row.file));
        EXPECT_EQ(baseOf(cache, opened).has_value(), row.holds) << row.name;
    }
}

TEST_F(RecordedBaseTest, FormerRecordsHaveNone) {
    for (const char* record : {"/Page @3/Content @4", "/Version 2/Page @3/Content @4"}) {
        DocumentCache& cache =
            page(savedFile(std::string("/Origin<0123456789ABCDEF>") + record, 0, savedPage()));
        const std::optional<PageBase> base = baseOf(cache, opened);
        ASSERT_TRUE(base);
        EXPECT_TRUE(base->isStanding);
        EXPECT_FALSE(base->isAsOpened);
        EXPECT_EQ(numbersOf(*base), "4 ");
        EXPECT_EQ(cache.work.pageBytes, 0) << "no digest is needed";
    }
}

TEST_F(RecordedBaseTest, AStandingPageWithTheDigestIsTheBaseAllTheSame) {
    // The record says that the page was opened as it stands now.
    const std::string base = "/Page @3/Content[]/Base<</Contents[6 0 R]" + boxes + "/Digest<@D>>>";
    const PdfBuilder file = savedPage().stream(4, "1 g").object(9, "<<>>");
    const auto content = [&] {
        DocumentCache& cache = page(savedFile(base, 0, file));
        const std::vector<BaseStream> streams =
            streamsOf(cache, findEntry(cache, cache.page.get(), "Contents"));
        return std::pair(digestPage(cache, contentStreams(cache)),
                         digestContent(cache, streams, inheritedResources(cache).get()));
    }();
    DocumentCache& cache = page(savedFile(
        "/Version 2/Origin<" + hexText(content.first) + ">" + base, content.second, file));
    const std::optional<PageBase> found = baseOf(cache, content.first);
    ASSERT_TRUE(found);
    EXPECT_TRUE(found->isStanding);
}

} // namespace
} // namespace corvane
