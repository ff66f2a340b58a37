// The page object over the content and the resources of its base.
#include "tests/reader/reader_fixture.h"
#include "tests/support/keeper_filter.h"
#include "writer/page/page_object.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::HasSubstr;

class PagePartsTest : public ReaderTest {
protected:
    /// The object of a page that says `page`, with these streams and, where `adds`, one more form.
    std::string written(const std::string& page, std::vector<ContentPart> contents, bool adds) {
        DocumentCache& cache =
            open(PdfBuilder::onePage("0 g")
                     .object(2, "<</Kids[3 0 R]/Resources 6 0 R/MediaBox[0 0 9 9]>>")
                     .object(3, "<</Type/Page/Parent 2 0 R/Contents 4 0 R" + page + ">>")
                     .object(6, "<</XObject<</F 9 0 R>>>>"));
        pageCache(cache, 1);
        const std::optional<PageBase> base =
            baseOf(cache, digestPage(cache, contentStreams(cache)));
        const PageGeometry geometry{.kept = true, .placement = {}, .mediaBox = {}, .cropBox = {}};
        const CarriedPage carried = carriedPage(cache, geometry, &*base);
        ResourceRegistry resources;
        resources.carryBase(cache, *base);
        if (adds) {
            resources.add(ResourceCategory::object, 20, 0);
        }
        test::KeeperFilter keeper;
        cache.output = &keeper;
        PageParts parts;
        parts.contents = std::move(contents);
        parts.resources = &resources;
        writePageObject(cache, carried, geometry, parts);
        cache.output = nullptr;
        return keeper.text;
    }
};

TEST_F(PagePartsTest, ResourcesAreWrittenAnewOnlyWhereSomethingIsAdded) {
    const std::string parent = "<<\n/Type /Page\n/Parent 2 0 R\n/Contents 4 0 R\n";
    const std::string added = "/Resources <<\n/XObject <<\n/F 9 0 R\n/X1 20 0 R\n>>\n>>\n";
    struct Row {
        const char* page;
        std::string kept;
    };
    for (const Row& row :
         {Row{"", ""}, Row{"/Resources null", ""}, Row{"/Resources 6 0 R", "/Resources 6 0 R\n"},
          Row{"/Resources<</XObject<</F 9 0 R>>>>", "/Resources <</XObject<</F 9 0 R>>>>\n"}}) {
        EXPECT_THAT(written(row.page, {{4, 0, std::nullopt}}, false),
                    HasSubstr(parent + row.kept + "/LastModified"));
        EXPECT_THAT(written(row.page, {{4, 0, std::nullopt}}, true),
                    HasSubstr(parent + added + "/LastModified"));
    }
}

TEST_F(PagePartsTest, StreamsOfTheBaseAndNewOnesStandTogether) {
    const std::string several =
        written("", {{20, 0, 700}, {4, 1, std::nullopt}, {21, 0, 800}}, false);
    EXPECT_THAT(several, HasSubstr("/Contents [\n20 0 R\n4 1 R\n21 0 R\n]\n"));
    EXPECT_THAT(several, HasSubstr("/Content [ 0000000700 0000000800 ]\n"));
    const std::string none = written("", {}, false);
    EXPECT_THAT(none, HasSubstr("/Contents [\n]\n"));
    EXPECT_THAT(none, HasSubstr("/Content [ ]\n"));
}

} // namespace
} // namespace corvane
