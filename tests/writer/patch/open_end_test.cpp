// Content that ends within an image, a string or an array: what came behind it would be taken for a
// part of that.
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

const std::string filled = "0 0 9 9 re f ";

using OpenEndTest = PatchTest;

TEST_F(OpenEndTest, NewArtComesInFrontOfIt) {
    for (const std::string end : {"[ (a)", "<< /A 1", "BI /W 1 ID x", "ID x"}) {
        SCOPED_TRACE(end);
        openPage(filled + end);
        artist().add(1, 2, 3, 4);
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_THAT(newContent(), ::testing::EndsWith("Q\n " + end + "\n"));
    }
}

TEST_F(OpenEndTest, AnImageWithinAPathStaysWhereThePathGoes) {
    openStreams({"5 5 9 9 re ID x 1 w ", "h f " + filled});
    artist().remove(artist().at(0));
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    expectInOrder({"ID x 1 w", "0 0 9 9 re f"});
}

TEST_F(OpenEndTest, AStreamThatEndsWithinAStringIsNotWrittenAgain) {
    for (const char* const end : {"(open", "(a\\)", "((b)", "<41"}) {
        SCOPED_TRACE(end);
        openPage(filled + end);
        artist().add(1, 2, 3, 4);
        EXPECT_NE(save(), 0U);
        EXPECT_THAT(front_.taken(), ::testing::ElementsAre("error 31"));
        EXPECT_EQ(bytes(), file_);
    }
}

} // namespace
} // namespace corvane
