// The digest by which a later change of a page is noticed.
#include "reader/page/page_content.h"
#include "reader/page/page_digest.h"
#include "tests/reader/reader_fixture.h"

#include <set>

namespace corvane {
namespace {

class PageDigestTest : public ReaderTest {
protected:
    /// Of the page of a file whose Contents are `contents`; streams 4, 5 and 6 are there.
    std::uint64_t digestOf(const std::string& contents) {
        PdfBuilder file = PdfBuilder::onePage("0 0 m 10 10 l S");
        file.object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents " +
                           contents + " >>")
            .stream(5, "1 g 2 w")
            .stream(6, std::string(40'000, ' '), "/Kind (blank)");
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        return digestPage(cache, contentStreams(cache));
    }
};

// Artwork remembers it: a page whose streams are named once keeps its digest for ever.
TEST_F(PageDigestTest, OfPagesThatNameEachStreamOnceStaysAsItWas) {
    EXPECT_EQ(digestOf("4 0 R"), 7232361264067076301U);
    EXPECT_EQ(digestOf("[4 0 R 5 0 R 6 0 R]"), 1783796679413377825U);
    EXPECT_EQ(digestOf("[]"), 13817386004681617129U);
}

TEST_F(PageDigestTest, TellsOrderAndNumberOfTimes) {
    const std::vector<std::string> pages{
        "[4 0 R]",       "[4 0 R 4 0 R]",       "[4 0 R 4 0 R 4 0 R]", "[4 0 R 5 0 R]",
        "[5 0 R 4 0 R]", "[4 0 R 5 0 R 4 0 R]", "[4 0 R 5 0 R 5 0 R]", "[4 0 R 4 0 R 5 0 R]"};
    std::set<std::uint64_t> digests;
    for (const std::string& page : pages) {
        digests.insert(digestOf(page));
    }
    EXPECT_EQ(digests.size(), pages.size());
}

} // namespace
} // namespace corvane
