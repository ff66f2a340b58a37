// Signed files, with the real program.
#include "tests/app/cli/saving.h"
#include "tests/support/signed_file.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using test::holds;

TEST_F(Saving, SaysThatAFileIsSigned) {
    folder_.add("plain.pdf", test::signedFile("[]"));
    EXPECT_FALSE(holds(run({"info", "plain.pdf"}).output, "sign"));
    folder_.add("in.pdf", test::signedFile("[5 0 R <</FT/Sig/V<<>>>>]", "/Perms<</DocMDP 6 0 R>>"));
    folder_.add("art.svg", withLine(artwork("in.pdf", 1)));
    const auto refused = run({"save", "art.svg", "in.pdf"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(holds(refused.errors, "error 33: the file is certified")) << refused.errors;
    const std::string before = run({"info", "in.pdf"}).output;
    EXPECT_TRUE(holds(before, "  signed    2 signatures: 1 of the file as it is, 1 of no whole "
                              "state of the file\n  certified "))
        << before;

    const auto forced = run({"save", "art.svg", "in.pdf", "--force"});
    EXPECT_EQ(forced.status, 0);
    EXPECT_TRUE(holds(forced.errors, "warning 1009: the file is signed")) << forced.errors;
    EXPECT_TRUE(holds(run({"info", "in.pdf", "--json"}).output,
                      R"("signatures":{"count":2,"ofFile":0,"ofRevision":1,"certified":true})"));
}

} // namespace
} // namespace corvane
