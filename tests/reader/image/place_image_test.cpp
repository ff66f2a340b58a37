// Images on the artboard.
#include "tests/reader/extension_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class PlaceImageTest : public ExtensionTest {
protected:
    bool isSmooth(const std::string& matrix, const std::string& entries) {
        draw(PdfBuilder::onePage(matrix + " cm BI /W 2 /H 4 /BPC 8 /CS /G " + entries +
                                 " ID abcdefgh EI")
                 .bytes());
        return document().placedImage(document().firstChild(importedArt())).isSmooth;
    }
};

TEST_F(PlaceImageTest, LargePixelsHaveEdges) {
    struct Row {
        const char* matrix;
        const char* entries;
        bool isSmooth;
    };
    for (const Row& row : {
             Row{"7.9 0 0 15.9 0 0", "", true},
             Row{"8 0 0 15.9 0 0", "", false},
             Row{"7.9 0 0 16 0 0", "", false},
             Row{"0 -16 7 0 0 20", "", false}, // turned: the side of two pixels is 16 long
             Row{"0 -7 15 0 0 20", "", true},
             Row{"90 0 0 90 0 0", "/I true", true},
             Row{"2 0 0 4 0 0", "/I false", false},
         }) {
        EXPECT_EQ(isSmooth(row.matrix, row.entries), row.isSmooth) << row.matrix << row.entries;
    }
}

} // namespace
} // namespace corvane
