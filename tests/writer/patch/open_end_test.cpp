// Content that ends within an image, a string or an array: what came behind it would be taken for a
// part of that, so a save that needs the place is refused.
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

class OpenEndTest : public PatchTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(OpenEndTest, NothingIsAddedBehindIt) {
    openPage("0 0 9 9 re f " + std::string(GetParam()));
    artist().add(1, 2, 3, 4);
    EXPECT_NE(save(), 0U);
    EXPECT_THAT(front_.taken(), ::testing::ElementsAre("error 31"));
    EXPECT_EQ(bytes(), file_);
}

INSTANTIATE_TEST_SUITE_P(Ends, OpenEndTest,
                         ::testing::Values("(open", "(a\\)", "((b)", "<41", "[ (a)", "<< /A 1",
                                           "BI /W 1 ID x", "ID x"));

} // namespace
} // namespace corvane
