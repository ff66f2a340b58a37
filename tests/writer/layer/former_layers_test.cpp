// Layers that the last save of a page made, when the next one takes its place.
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>
#include <string>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class FormerLayersTest : public PatchTest {
protected:
    /// Two pages, of which the first was saved with its first object in a new hidden layer, which
    /// is object 30.
    void saveHidden(const std::string& ofFirst, const std::string& ofSecond) {
        openFile(withResources(PdfBuilder::onePage("0 0 1 1 re f 0 0 2 2 re f",
                                                   std::string(resources) + ofFirst))
                     .object(2, "<< /Type /Pages /Kids [3 0 R 27 0 R] /Count 2 >>")
                     .object(27, "<< /Type /Page /Parent 2 0 R " + ofSecond + " >>")
                     .stream(28, "",
                             "/Subtype /Form /BBox [0 0 9 9] "
                             "/Resources << /Properties << /A 30 0 R >> >>")
                     .object(29, "<< /Type /OCMD /OCGs [22 0 R 30 0 R] >>")
                     .bytes());
        const ContentLayerFacts plan{.name = "Plan", .isVisible = false};
        group_ = artist().group({artist().at(0)});
        document_->setGroupLayer(group_, document_->contentLayers().add(plan));
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        ASSERT_THAT(bytes(), HasSubstr("/OFF [ 30 0 R ]"));
    }
    /// The group is in a layer of the file now, or in none for 0.
    void moveInto(std::int32_t object, const char* name) {
        const ContentLayerFacts facts{.name = name, .isVisible = false, .object = object};
        document_->setGroupLayer(group_, object == 0
                                             ? ContentLayer::null
                                             : document_->contentLayers().addEdited(facts, facts));
        artist().move(artist().at(1), 1, 1);
    }
    /// The part of the file that begins with what it says last of layers.
    std::string listed() const {
        const std::string file = bytes();
        return file.substr(file.rfind("/OCGs ["));
    }

    Art group_ = Art::null;
};

TEST_F(FormerLayersTest, WhatIsDrawnInThemByTheirNumberStaysHidden) {
    for (const bool isDrawnAnew : {false, true}) {
        saveHidden("", "");
        moveInto(30, "Plan");
        if (isDrawnAnew) {
            ++digest_;
            extension_.overwrites = true;
        }
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_EQ(saved_.back().isPatched, !isDrawnAnew);
        EXPECT_THAT(listed(), HasSubstr("/OCGs [ 30 0 R ]"));
        EXPECT_THAT(listed(), HasSubstr("/OFF [ 30 0 R ]"));
        if (!isDrawnAnew) { // and is of this page's saves as before
            moveInto(0, "");
            ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
            EXPECT_THAT(listed(), HasSubstr("/OCGs [ ]"));
        }
    }
}

TEST_F(FormerLayersTest, WhatTheFileStillNamesStaysListed) {
    struct Row {
        const char* name;
        const char* ofFirst;
        const char* ofSecond;
        std::int32_t now; ///< the layer of what was in it
        bool staysListed;
    };
    for (const Row& row :
         {Row{"nothing", "/Annots [<< /P 3 0 R >>]", "/Annots [<< /Dest [3 0 R] >> << /A 1 0 R >>]",
              0, false},
          Row{"another page", "", "/Resources << /Properties << /A 30 0 R >> >>", 0, true},
          Row{"a form of it", "", "/Resources << /XObject << /X 28 0 R >> >>", 0, true},
          Row{"an annotation", "/Annots [<< /OC 30 0 R >>]", "", 0, true},
          Row{"a rule that is drawn in", "", "", 29, true}}) {
        saveHidden(row.ofFirst, row.ofSecond);
        moveInto(row.now, "L, Plan");
        ASSERT_EQ(save(), 0U) << row.name << ::testing::PrintToString(front_.taken());
        const auto isThere = HasSubstr("/OFF [ 30 0 R ]");
        EXPECT_THAT(listed(), ::testing::Conditional(row.staysListed, isThere, Not(isThere)))
            << row.name;
    }
}

} // namespace
} // namespace corvane
