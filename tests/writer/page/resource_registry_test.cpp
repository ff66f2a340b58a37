// Resources of a page that is written, beside those that it has.
#include "writer/page/resource_registry.h"

#include "tests/reader/reader_fixture.h"
#include "tests/support/keeper_filter.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using enum ResourceCategory;

class ResourceRegistryTest : public ReaderTest {
protected:
    /// A registry of the resources of a page that says `page`, in a tree whose root says `root`.
    ResourceRegistry carried(const std::string& page, const std::string& root = "") {
        open(PdfBuilder::onePage("")
                 .object(2, "<</Kids[3 0 R]" + root + ">>")
                 .object(3, "<</Parent 2 0 R/MediaBox[0 0 9 9]" + page + ">>")
                 .object(5, "<</GS1 11 0 R/GS3<</LW 1.123456789>>/G#532 12 0 R>>")
                 .object(6, "<</ExtGState 5 0 R/ProcSet[/PDF]>>")
                 .object(7, "<</Damaged"));
        pageCache(*cache_, 1);
        ResourceRegistry registry;
        registry.carryBase(*cache_, *baseOf(*cache_, digestPage(*cache_, contentStreams(*cache_))));
        return registry;
    }
    std::string written(const ResourceRegistry& registry) {
        test::KeeperFilter keeper;
        cache_->output = &keeper;
        registry.write(*cache_, {});
        cache_->output = nullptr;
        return keeper.text;
    }
};

TEST_F(ResourceRegistryTest, NamesAreFreeInTheirCategory) {
    ResourceRegistry registry = carried("/Resources<</ExtGState 5 0 R/Font<</F1 9 0 R>>>>");
    EXPECT_EQ(registry.add(graphicsState, 20, 0), "GS4") << "GS1, GS2 and GS3 are the page's";
    EXPECT_EQ(registry.add(graphicsState, 21, 0), "GS5");
    EXPECT_EQ(registry.add(graphicsState, 20, 0), "GS4") << "the same object";
    EXPECT_EQ(registry.add(graphicsState, 20, 1), "GS6") << "another one";
    EXPECT_EQ(registry.add(font, 20, 0), "F2") << "the same object as something else";
    registry.add(object, "X2", 30, 0);
    registry.add(object, "X2", 33, 0);
    registry.add(graphicsState, "GS3", 33, 0);
    EXPECT_EQ(registry.add(object, 30, 0), "X2");
    EXPECT_EQ(registry.add(object, 31, 0), "X1");
    EXPECT_EQ(registry.add(object, 32, 0), "X3");
    EXPECT_TRUE(registry.hasAdded(object));
    EXPECT_FALSE(registry.hasAdded(pattern));
    EXPECT_EQ(written(registry),
              "/Font <<\n/F1 9 0 R\n/F2 20 0 R\n>>\n"
              "/XObject <<\n/X2 30 0 R\n/X1 31 0 R\n/X3 32 0 R\n>>\n"
              "/ExtGState <<\n/GS1 11 0 R\n/GS3 <</LW 1.123456789>>\n/GS2 12 0 R\n/GS4 20 0 R\n"
              "/GS5 21 0 R\n/GS6 20 1 R\n>>\n");
}

TEST_F(ResourceRegistryTest, ThePagesOwnAreCarried) {
    struct Row {
        const char* name;
        const char* page;
        const char* root;
        const char* untouched; ///< where nothing is added
        const char* added;     ///< with a graphics state 20 0 R
    };
    const char* const made = "/ExtGState <<\n/GS1 20 0 R\n>>\n";
    const char* const all = "/ExtGState <<\n/GS1 11 0 R\n/GS3 <</LW 1.123456789>>\n/GS2 12 0 R\n"
                            "/GS4 20 0 R\n>>\n";
    const std::string allAndSet = std::string(all) + "/ProcSet [/PDF]\n";
    for (const Row& row : {
             Row{"none", "", "", "", made},
             Row{"empty", "/Resources<<>>", "", "", made},
             Row{"direct", "/Resources<</ExtGState 5 0 R>>", "", "/ExtGState 5 0 R\n", all},
             Row{"indirect", "/Resources 6 0 R", "", "/ExtGState 5 0 R\n/ProcSet [/PDF]\n",
                 allAndSet.c_str()},
             Row{"inherited", "/Resources null", "/Resources 6 0 R",
                 "/ExtGState 5 0 R\n/ProcSet [/PDF]\n", allAndSet.c_str()},
             Row{"not inherited", "/Resources<</Odd#20Key 1>>", "/Resources 6 0 R",
                 "/Odd#20Key 1\n", "/ExtGState <<\n/GS1 20 0 R\n>>\n/Odd#20Key 1\n"},
             Row{"no dictionary", "/Resources[1]", "/Resources 6 0 R", "", made},
             Row{"a category that is none", "/Resources<</ExtGState[/A]>>", "", "/ExtGState [/A]\n",
                 made},
             Row{"a missing category", "/Resources<</ExtGState 99 0 R>>", "", "/ExtGState 99 0 R\n",
                 made},
             Row{"a damaged category", "/Resources<</ExtGState 7 0 R>>", "", "/ExtGState 7 0 R\n",
                 made},
         }) {
        SCOPED_TRACE(row.name);
        ResourceRegistry registry = carried(row.page, row.root);
        EXPECT_EQ(written(registry), row.untouched);
        EXPECT_FALSE(registry.hasAdded());
        registry.add(graphicsState, 20, 0);
        EXPECT_EQ(written(registry), row.added);
        EXPECT_TRUE(registry.hasAdded());
    }
}

} // namespace
} // namespace corvane
