// Real files: what was saved opens again as the same page, and comes off again.
#include "tests/writer/save_fixture.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>

namespace corvane {
namespace {

class CorpusSaveTest : public SaveTest {};

TEST_F(CorpusSaveTest, EveryFileThatOpens) {
    const auto folder = test::sourceFolder().parent_path() / "shared" / "corpus";
    if (!std::filesystem::is_directory(folder)) {
        GTEST_SKIP() << "no corpus beside the sources";
    }
    int saves = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() != ".pdf") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename());
        const std::string file = test::fileBytes(entry.path());
        use("in.pdf", file);
        page_ = 1;
        if (open() != 0) {
            front_.taken();
            continue;
        }
        front_.taken();
        const std::uint64_t identity = identity_;
        extension_.artworkDigest = &identity;
        const std::uint32_t result = save();
        extension_.artworkDigest = nullptr;
        const std::vector<std::string> seen = front_.taken();
        if (result != 0) {
            EXPECT_EQ(bytes(), file);
            EXPECT_THAT(seen, ::testing::ElementsAre("error 22")) << "only what was repaired";
            continue;
        }
        ++saves;
        EXPECT_EQ(bytes(), file) << "nothing was changed";
        // Again and again from one artwork, over one base.
        extension_.artworkDigest = &identity;
        document_->page().setArtboard({301 * fixedOne, 403 * fixedOne});
        if (save() != 0) {
            EXPECT_EQ(bytes(), file);
            EXPECT_THAT(front_.taken(), ::testing::ElementsAre("error 32"))
                << "only where the owner permits no changes";
            continue;
        }
        document_->page().setArtboard({302 * fixedOne, 403 * fixedOne});
        EXPECT_EQ(save(), 0U);
        extension_.artworkDigest = nullptr;
        EXPECT_EQ(bytes().substr(0, file.size()), file);
        EXPECT_EQ(open(), 0U);
        front_.taken();
        EXPECT_EQ(call(19), 0U);
        EXPECT_EQ(call(19), 0U);
        EXPECT_EQ(bytes(), file);
    }
    EXPECT_GT(saves, 20);
}

} // namespace
} // namespace corvane
