// Random edits of random pages that draw random forms, these within one another: the page as saved
// is the artwork.
#include "tests/support/drawing.h"
#include "tests/writer/patch/random_page.h"

#include <gmock/gmock.h>

#include <string>

namespace corvane {
namespace {

std::string joined(const std::vector<std::string>& streams) {
    std::string text;
    for (const std::string& stream : streams) {
        text += stream + "\n";
    }
    return text;
}

class FormPropertyTest : public PatchTest {
protected:
    static std::string content(Chance& chance) {
        return joined(RandomPage(chance, false).streams());
    }

    /// Draws that form somewhere, at times under a clip. Its box is upright: of others it is not
    /// seen that they cut nothing.
    static std::string drawing(Chance& chance, const std::string& name) {
        static constexpr std::array places = {"", "1 0 0 1 40 9 cm ", "0 .7 -.7 0 300 20 cm ",
                                              "50 50 200 200 re W n ", "1 0 0 rg 3 w "};
        return "Q Q Q Q Q Q Q Q Q q " + std::string(places[chance.below(places.size())]) + "/" +
               name + " Do Q ";
    }

    static std::string form(Chance& chance, std::string_view resources) {
        static constexpr std::array boxes = {"[-5000 -5000 9000 9000]", "[0 0 250 200]"};
        static constexpr std::array matrices = {"", "/Matrix [.9 0 0 .9 3 5]"};
        return "/Type /XObject /Subtype /Form /BBox " +
               std::string(boxes[chance.below(boxes.size())]) + " " +
               matrices[chance.below(matrices.size())] + std::string(resources);
    }

    void openAndEdit(std::uint32_t seed) {
        Chance chance(seed);
        const std::string states = "/ExtGState << /Wide << /LW 7 /D [[5 3] 1] >> >> ";
        const std::string inner = content(chance);
        const std::string outer = content(chance) + drawing(chance, "B") + content(chance);
        const std::string page = content(chance) + drawing(chance, "A") + content(chance) +
                                 drawing(chance, chance.once(2) ? "A" : "B");
        openFile(PdfBuilder::onePage(page, "/Resources << /XObject << /A 30 0 R /B 31 0 R >> " +
                                               states + ">>")
                     .stream(30, outer, form(chance, ""))
                     .stream(31, inner, form(chance, "/Resources << " + states + ">>"))
                     .bytes());
        extension_.overwrites = true; // however much is missing
        story_ = "seed " + std::to_string(seed) + "\n" + page + "\nA: " + outer + "\nB: " + inner;
        for (std::size_t edits = 1 + chance.below(5); edits > 0; --edits) {
            story_ += "\n" + editOnce(*document_, chance);
        }
    }

    std::string story_;
};

TEST_F(FormPropertyTest, SavedPagesAreTheEditedArtwork) {
    constexpr std::uint32_t pages = 200;
    int refused = 0;
    for (std::uint32_t seed = 1; seed <= pages && !HasFailure(); ++seed) {
        ASSERT_NO_FATAL_FAILURE(openAndEdit(seed));
        SCOPED_TRACE(story_);
        const std::vector<test::SeenPath> edited = seen();
        if (save() != 0) {
            // The state that a form begins with cannot be set again everywhere.
            EXPECT_THAT(front_.taken(), ::testing::ElementsAre("error 31"));
            ++refused;
            continue;
        }
        ASSERT_EQ(open(), 0U);
        const std::string difference = differenceOf(edited, seen());
        EXPECT_TRUE(difference.empty())
            << difference << newContent() << bytes().substr(file_.size());
    }
    EXPECT_LT(refused, static_cast<int>(pages / 20));
}

TEST_F(FormPropertyTest, PeersDrawThemAsTheArtWalkDoes) {
    if (!test::isInstalled("mutool")) {
        GTEST_SKIP() << "no mutool";
    }
    for (std::uint32_t seed = 1001; seed <= 1016; ++seed) {
        ASSERT_NO_FATAL_FAILURE(openAndEdit(seed));
        SCOPED_TRACE(story_);
        if (save() != 0) {
            continue;
        }
        const test::Drawing patched = test::draw(path("in.pdf"), 1);
        use("in.pdf", file_);
        extension_.artworkDigest = nullptr;
        ASSERT_EQ(save(), 0U);
        extension_.artworkDigest = &digest_;
        // As much as the page that was opened differs from itself, drawn anew.
        EXPECT_LT(test::difference(test::draw(path("in.pdf"), 1), patched), 0.002);
    }
}

} // namespace
} // namespace corvane
