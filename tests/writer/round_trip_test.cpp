// What is read, written and read again is the same artwork.
#include "tests/writer/walk_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

class RoundTripTest : public WalkTest {};

TEST_F(RoundTripTest, Smoke) {
    for (const char* const content : {
             "0 0 10 10 re f 1 0 0 rg 0.2 0.3 .4 RG 3 w 1 J 1 j [3 1] 2 d 7 i 0 0 m 10 0 l 5 5 6 6 7 7 c h B*",
             "q 0 0 5 5 re W* n 1 1 m 2 2 l S q 1 1 m 3 3 l S 2 2 m 3 3 l 5 5 l h f Q Q 1 1 m 2 2 l S",
         }) {
        drawContent(content);
        const std::string art = artText(document(), importedArt());
        const std::string written = write();
        puts(art.c_str());
        puts(written.c_str());
        puts(writeIn(Profile::original).c_str());
        selectRules(Profile::extended);
        EXPECT_EQ(drawContent(written), "");
        EXPECT_EQ(artText(document(), importedArt()), art);
    }
}

} // namespace
} // namespace corvane
