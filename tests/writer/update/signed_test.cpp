// Saving into signed files.
#include "tests/support/signed_file.h"
#include "tests/writer/save_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SignedTest : public SaveTest {
protected:
    void SetUp() override {
        SaveTest::SetUp();
        extension_.signatures = [](void* context, const SignatureFacts& facts) {
            static_cast<SignedTest*>(context)->signatures_ = facts;
        };
        extension_.artworkDigest = &identity_;
    }

    void openFile(const std::string& bytes) {
        use("in.pdf", bytes);
        EXPECT_EQ(open(), 0U);
        front_.taken();
    }

    SignatureFacts signatures_;
};

TEST_F(SignedTest, ASaveWarnsAndKeepsTheSignedBytes) {
    const std::string file = test::signedFile("[5 0 R]");
    openFile(file);
    EXPECT_EQ(save(), 0U);
    EXPECT_THAT(front_.taken(), IsEmpty()) << "nothing is changed";
    edit();
    EXPECT_EQ(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre("write 1009 in in.pdf"));
    EXPECT_TRUE(bytes().starts_with(file));
    EXPECT_EQ(call(16), 0U);
    EXPECT_EQ(signatures_.count, 1);
    EXPECT_EQ(signatures_.ofFile, 0);
    EXPECT_EQ(signatures_.ofRevision, 1);
    EXPECT_EQ(call(19), 0U);
    EXPECT_EQ(bytes(), file);
}

TEST_F(SignedTest, ACertifiedFileIsSavedIntoByForceOnly) {
    const std::string file = test::signedFile("[]", "/Perms<</DocMDP 6 0 R>>");
    openFile(file);
    EXPECT_EQ(save(), 0U) << "nothing is changed";
    edit();
    front_.taken();
    EXPECT_NE(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre("error 33"));
    EXPECT_EQ(bytes(), file);
    extension_.overwrites = true;
    EXPECT_EQ(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre("write 1009 in in.pdf"));
    EXPECT_TRUE(bytes().starts_with(file));
}

} // namespace
} // namespace corvane
