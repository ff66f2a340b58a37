// Random pages and random edits: the page as saved is the artwork, and all else is where it was.
#include "tests/support/drawing.h"
#include "tests/writer/patch/content_state.h"
#include "tests/writer/patch/random_page.h"

#include <gmock/gmock.h>
#include <optional>

namespace corvane {
namespace {

class PatchPropertyTest : public PatchTest {
protected:
    /// Opens and edits the page of a seed.
    void openAndEdit(std::uint32_t seed, bool hasOpaque) {
        Chance chance(seed);
        RandomPage page(chance, hasOpaque);
        const std::vector<std::string> streams = page.streams();
        opaque_ = page.opaque;
        openStreams(streams);
        extension_.overwrites = true; // however much is missing
        before_.emplace(newContent());
        ordinals_.clear();
        for (const Art art : artist().objects) {
            ordinals_.push_back(document_->source(art).value().ordinal);
        }
        std::ranges::sort(ordinals_);
        story_ = "seed " + std::to_string(seed) + "\n" + newContent();
        for (std::size_t edits = 1 + chance.below(5); edits > 0; --edits) {
            story_ += editOnce(*document_, chance) + "\n";
        }
    }

    /// Of each object from the back: what was in force where the page painted it.
    std::vector<std::string> settingsWanted() {
        std::vector<std::string> wanted;
        for (const Art art : artist().objects) {
            const std::optional<ArtSource> source = document_->source(art);
            const auto at = source
                                ? std::ranges::find(ordinals_, source->ordinal) - ordinals_.begin()
                                : std::ssize(before_->paths);
            wanted.push_back(
                source ? withLayer(before_->paths.at(static_cast<std::size_t>(at)), art) : "");
        }
        return wanted;
    }

    /// The layer is that of the artwork, if that has one at all.
    std::string withLayer(std::string setting, Art art) const {
        const std::string mark = "layer ";
        if (hasLayer(document_->layerArt(document_->firstLayer()))) {
            const std::size_t at = setting.find(mark);
            if (at != std::string::npos) {
                setting.erase(at, mark.size());
            }
            if (isLayered(art)) {
                setting.insert(setting.rfind(' ') + 1, mark);
            }
        }
        return setting;
    }
    bool isLayered(Art art) const {
        while (art != Art::null && (document_->kind(art) != ArtKind::group ||
                                    document_->groupLayer(art) == ContentLayer::null)) {
            art = document_->parent(art);
        }
        return art != Art::null;
    }
    bool hasLayer(Art group) const {
        bool has = document_->groupLayer(group) != ContentLayer::null;
        for (Art art = document_->firstChild(group); art != Art::null && !has;
             art = document_->nextSibling(art)) {
            has = document_->kind(art) == ArtKind::group && hasLayer(art);
        }
        return has;
    }

    /// What has to stay in a clip of text stays within all that is around that.
    static bool isInTextClip(const std::string& setting) { return setting.back() != '0'; }

    std::optional<test::ContentState> before_;
    std::vector<std::int32_t> ordinals_; // of the paths: text has numbers, too
    std::vector<std::string> opaque_;
    std::string story_;
};

TEST_F(PatchPropertyTest, SavedPagesAreTheEditedArtwork) {
    for (std::uint32_t seed = 1; seed <= 500 && !HasFailure(); ++seed) {
        ASSERT_NO_FATAL_FAILURE(openAndEdit(seed, true));
        SCOPED_TRACE(story_);
        const std::vector<test::SeenPath> edited = seen();
        const std::vector<std::string> settings = settingsWanted();
        if (save() != 0) {
            // What must stay in a clip of text may have no place there.
            EXPECT_THAT(story_, ::testing::HasSubstr("7 Tr"));
            EXPECT_THAT(front_.taken(), ::testing::ElementsAre("error 31"));
            continue;
        }
        ASSERT_EQ(open(), 0U);
        const std::string difference = differenceOf(edited, seen());
        EXPECT_TRUE(difference.empty()) << difference << newContent();
        expectInOrder(opaque_);
        const test::ContentState now(newContent());
        EXPECT_EQ(now.opaque, before_->opaque) << newContent();
        ASSERT_EQ(now.paths.size(), settings.size());
        for (std::size_t i = 0; i < settings.size(); ++i) {
            EXPECT_TRUE(settings[i].empty() || now.paths[i] == settings[i] ||
                        isInTextClip(now.paths[i]))
                << i << ": " << settings[i] << ", not " << now.paths[i] << newContent();
        }
    }
}

TEST_F(PatchPropertyTest, PeersDrawThemAsTheArtWalkDoes) {
    if (!test::isInstalled("mutool")) {
        GTEST_SKIP() << "no mutool";
    }
    for (std::uint32_t seed = 1; seed <= 24; ++seed) {
        ASSERT_NO_FATAL_FAILURE(openAndEdit(seed, false));
        SCOPED_TRACE(story_);
        ASSERT_EQ(save(), 0U);
        const test::Drawing patched = test::draw(path("in.pdf"), 1);
        use("in.pdf", file_);
        extension_.artworkDigest = nullptr;
        ASSERT_EQ(save(), 0U);
        extension_.artworkDigest = &digest_;
        EXPECT_LT(test::difference(test::draw(path("in.pdf"), 1), patched), 0.001);
    }
}

} // namespace
} // namespace corvane
