// Saves as patches, over whole files: what is written again, what is refused, and what stays.
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class PagePatchTest : public PatchTest {
protected:
    void expectRefused(int code) {
        const std::string before = bytes();
        EXPECT_EQ(save(), resultStopped);
        EXPECT_THAT(front_.taken(), ElementsAre("error " + std::to_string(code)));
        EXPECT_EQ(bytes(), before);
    }
    /// As an editor leaves art whose sources it dropped.
    void dropSources(bool keepsNumbers) {
        constexpr std::int32_t none = 1000; // more than the page has
        std::int32_t number = 0;
        for (const Art art : artist().objects) {
            document_->setSource(art, {.ordinal = keepsNumbers ? number : none});
            ++number;
        }
        for (const Art clip : artist().clips) {
            document_->setSource(clip, {.ordinal = none});
        }
    }
};

const std::string lines = "0 0 9 9 re f 1 w q 5 5 m 50 9 l 9 70 l W n 0 0 9 9 re f "
                          "0 0 40 40 re S 0 0 9 9 re f Q 9 9 m 30 30 l S";

TEST_F(PagePatchTest, NothingChanged) {
    for (const bool hasSources : {true, false}) {
        openPage(lines);
        if (!hasSources) {
            dropSources(false);
        }
        ASSERT_EQ(save(), 0U);
        EXPECT_TRUE(saved_.back().isNothing);
        EXPECT_EQ(facts(), "5 0 0 0 0");
        EXPECT_EQ(bytes(), file_);
    }
}

TEST_F(PagePatchTest, ChangedAndChangedBack) {
    openPage(lines);
    const PathStyle style = document_->style(artist().at(2));
    artist().fill(artist().at(2), .5);
    ASSERT_EQ(save(), 0U);
    EXPECT_EQ(facts(), "4 1 0 0 0");
    document_->setStyle(artist().at(2), style);
    ASSERT_EQ(save(), 0U);
    EXPECT_FALSE(saved_.back().isNothing) << "the page has to be made as it was";
    EXPECT_EQ(facts(), "5 0 0 0 0");
    EXPECT_EQ(newContent(), lines + "\n");
    EXPECT_THAT(contentNumbers(), ElementsAre("4"));
}

/// A person keeps the editor open, and saves its artwork again and again.
TEST_F(PagePatchTest, WhatWasSavedAlreadyIsNotSavedAgain) {
    openPage("0 0 m 9 9 l S q /Half gs 10 10 20 20 re f Q BT /F 9 Tf (words) Tj ET");
    Artist edits = artist();
    const PathStyle former = document_->style(edits.at(0));
    const std::vector<std::function<void()>> steps = {
        [&] { edits.fill(edits.at(1), .5); },
        [&] { edits.add(3, 3, 9, 9); },
        [&] { edits.copy(edits.at(1), 7, 7); },
        [&] { document_->setAppearance(edits.at(1), {.opacity = .25}); },
        [&] { edits.clip({edits.at(1)}, edits.add(0, 0, 15, 15)); },
        [&] {
            document_->page().setArtboard({301 * fixedOne, 403 * fixedOne});
        },
        [&] { edits.style(edits.at(0), [](PathStyle& style) { style.lineWidth = fixedOne * 4; }); },
        [&] { document_->setStyle(edits.at(0), former); },
    };
    int step = 0;
    for (const auto& edit : steps) {
        edit();
        ASSERT_EQ(save(), 0U) << step;
        EXPECT_FALSE(saved_.back().isNothing) << step;
        const std::string file = bytes();
        ASSERT_EQ(save(), 0U) << step;
        EXPECT_TRUE(saved_.back().isNothing) << step;
        EXPECT_EQ(bytes(), file) << step++;
    }
    const std::string file = bytes();
    name_ = 77;
    extension_.overwrites = true;
    ASSERT_EQ(save(), 0U);
    EXPECT_NE(bytes(), file) << "the record names another artwork";
}

TEST_F(PagePatchTest, EverySaveOfOneArtworkIsAsLong) {
    openPage(lines);
    Artist edits = artist();
    edits.fill(edits.at(0), .5);
    edits.raise(edits.at(1), edits.add(3, 3, 9, 9, edits.at(4)));
    std::string content;
    std::int64_t length = 0;
    for (int i = 0; i < 1000; ++i) {
        edits.fill(edits.at(0), i % 2 == 0 ? .5 : .25);
        ASSERT_EQ(save(), 0U);
        const SavedFacts& facts = saved_.back();
        content = i == 1 ? newContent() : content;
        length = i == 0 ? facts.length - facts.formerLength : length;
        // Offsets, and numbers of objects, get longer.
        ASSERT_LE(std::abs(facts.length - facts.formerLength - length), 60) << i;
    }
    EXPECT_EQ(newContent(), content);
    expectSaved();
}

TEST_F(PagePatchTest, ArtworkWithoutSources) {
    for (const bool keepsNumbers : {true, false}) {
        SCOPED_TRACE(keepsNumbers);
        openPage(lines);
        dropSources(keepsNumbers);
        Artist edits = artist();
        edits.fill(edits.at(3), .25); // one of three that look the same
        edits.move(edits.at(4), 0.001, -0.001);
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_EQ(facts(), keepsNumbers ? "4 1 0 0 0" : "4 0 1 1 0");
        EXPECT_THAT(newContent(), HasSubstr("Q 9 9 m 30 30 l S"));
    }
}

TEST_F(PagePatchTest, MuchThatIsMissingIsRefused) {
    openPage("0 0 9 9 re f 1 1 m 5 5 l S 2 2 m 9 9 l 9 2 l h 5 5 m 6 6 l 6 5 l h f "
             "0 0 4 4 re 1 1 2 2 re f 7 7 2 2 re f 8 8 2 2 re f");
    Artist edits = artist();
    edits.remove(edits.at(2));
    edits.remove(edits.at(3));
    expectRefused(30);
    ASSERT_EQ(missing_.size(), 1U);
    EXPECT_EQ(missing_[0].kind, ArtKind::compound);
    EXPECT_EQ(missing_[0].missing, 2);
    edits.remove(edits.at(0));
    missing_.clear();
    expectRefused(30);
    EXPECT_EQ(missing_.size(), 2U) << "half of the page, too";
    extension_.overwrites = true;
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(facts(), "3 0 0 3 0");
}

TEST_F(PagePatchTest, AnotherArtworkOfThePage) {
    openPage(lines);
    artist().fill(artist().at(0), .5);
    ASSERT_EQ(save(), 0U);
    name_ = 2;
    artist().fill(artist().at(0), .75);
    expectRefused(29);
    extension_.overwrites = true;
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(facts(), "4 1 0 0 0");
}

TEST_F(PagePatchTest, LinesOfTheirMeanWidth) {
    openPage("q 4 0 0 1 0 0 cm 1 w [3 1] 0 d 1 40 m 9 99 l S Q 0 0 9 9 re f");
    artist().style(artist().at(0), [](PathStyle& style) {
        style.pen = {};
        style.lineWidth /= 2;
        style.dash[0] /= 2;
        style.dash[1] /= 2;
    });
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing) << "artwork of before there were pens has them";
}

TEST_F(PagePatchTest, PointsUnderAnyMatrix) {
    for (const char* matrix :
         {".24 0 0 -.24 10 800", "0 .31 -.31 0 700 3", ".0007 0 0 .0007 .3 .7", "77 0 0 77 1 1",
          ".8 .3 -.5 .9 100 -20", "3 0 0 .002 4 4", "-1 0 0 1 612 0"}) {
        SCOPED_TRACE(matrix);
        openPage("q " + std::string(matrix) +
                 " cm .3 w [.7 .9] .2 d 1 2 m 3.17 4 5 6.013 7 .8 c 9 1 l b Q");
        Artist edits = artist();
        edits.move(edits.at(0), 3.14159, 2.71828);
        edits.style(edits.at(0), [](PathStyle& style) { style.lineWidth += 12345; });
        // To the last bit of 16.16.
        expectSaved({.point = 0, .length = 0, .colour = 0});
    }
}

TEST_F(PagePatchTest, StreamsThatDivideBetweenTokens) {
    openStreams({"q 2 0 0 2", "3 3 cm 0 0 9", "9 re f", "% all of it is comment", "1 1 m 5 5 l S",
                 "Q 1 0 0 rg", "20 20 9 9 re", "f BT (a)", "Tj ET"});
    Artist edits = artist();
    edits.move(edits.at(1), 1, 1);
    edits.add(50, 50, 9, 9, edits.at(1));
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(facts(), "2 1 1 0 0");
    EXPECT_THAT(newContent(), HasSubstr("% all of it is comment"));
    const std::vector<std::string> numbers = contentNumbers();
    for (const char* untouched : {"10", "11", "12", "13", "15", "16", "17", "18"}) {
        EXPECT_THAT(numbers, ::testing::Contains(untouched));
    }
    EXPECT_THAT(numbers, ::testing::Not(::testing::Contains("14")));
}

TEST_F(PagePatchTest, CommentsThatEndWithTheirStream) {
    openStreams({"1 1 m % to 5, 5", "5 5 l 9 1 l % clips", "W % filled", "f 3 w % wide",
                 "2 2 m 7 7 l", "S 0 0 9 9 re f % the end"});
    Artist edits = artist();
    edits.fill(edits.at(0), .5);
    edits.raise(edits.at(1), edits.at(2));
    edits.add(1, 1, 9, 9);
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(facts(), "1 1 1 0 1");
    EXPECT_THAT(object(contentNumbers().back()), HasSubstr("stream\n\n"))
        << "for readers that put streams together as they are";
}

TEST_F(PagePatchTest, ContentThatAnotherPageUses) {
    const PdfBuilder file =
        withResources(PdfBuilder::onePage(lines))
            .object(2, "<< /Type /Pages /Kids [3 0 R 5 0 R] /Count 2 /MediaBox [0 0 612 792] >>")
            .object(5, "<< /Type /Page /Parent 2 0 R /Contents [4 0 R] >>");
    openFile(file.bytes());
    const std::vector<test::SeenPath> before = seen();
    const std::string other = object("5");
    artist().fill(artist().at(0), .5);
    artist().add(5, 5, 5, 5);
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(object("5"), other);
    EXPECT_THAT(object("4"), HasSubstr(lines));
    page_ = 2;
    ASSERT_EQ(open(), 0U);
    EXPECT_EQ(differenceOf(before, seen()), "");
}

TEST_F(PagePatchTest, InheritedResourcesAndRotation) {
    PdfBuilder file = withResources(PdfBuilder::onePage(
        "BT /F 9 Tf (a) Tj ET /Half gs 0 0 9 9 re f 20 20 9 9 re f", "/Rotate 90 /CropBox "
                                                                     "[50 20 300 700]"));
    file.object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 " + std::string(resources) + " >>");
    openFile(file.bytes());
    artist().add(100, 50, 5, 5, artist().at(0));
    artist().move(artist().at(0), 7, 8);
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(facts(), "2 1 1 0 0");
    for (const char* kept : {"/Rotate 90", "/F 20 0 R", "/X 21 0 R", "/Half", "/P 23 0 R"}) {
        EXPECT_THAT(object("3"), HasSubstr(kept));
    }
}

/// What the artwork does not hold of an object's paint goes along with it.
TEST_F(PagePatchTest, OverprintAndRenderingIntentsStayWithTheirObjects) {
    const std::string content = "0 1 0 0 k 0 0 9 9 re f q /P gs /Saturation ri 1 0 0 0 k 20 0 9 9 "
                                "re f Q 0 0 1 0 k 40 0 9 9 re f";
    struct Row {
        const char* name;
        std::function<void(Artist&)> edit;
        std::vector<std::string> wanted; ///< in this order
        std::string object = "/P << /OP true /op true /OPM 1 >>";
    };
    const Row rows[] = {
        {"repainted",
         [](Artist& it) { it.fill(it.at(1), .5); },
         {"q /P gs /Saturation ri 1 0 0 0 k", "q\n.5 g\n20 0 9 9 re", "Q 0 0 1 0 k"}},
        {"raised",
         [](Artist& it) { it.raise(it.at(1), it.at(2)); },
         {"40 0 9 9 re f", "/P gs\n/Saturation ri\n1 0 0 0 k", "20 0 9 9 re"}},
        {"another lies within them",
         [](Artist& it) {
             it.add(1, 1, 5, 5, it.at(1));
             it.add(1, 1, 5, 5, it.at(0));
         },
         {"/Saturation ri 1 0 0 0 k\nq\n/GS1 gs", "20 0 9 9 re f Q 0 0 1 0 k"},
         "/OP false /op false /RI /RelativeColorimetric"},
    };
    for (const Row& row : rows) {
        openFile(PdfBuilder::onePage(content, "/Resources << /ExtGState << /P << /OP true /op true "
                                              "/OPM 1 >> >> >>")
                     .bytes());
        Artist edits = artist();
        row.edit(edits);
        expectSaved();
        expectInOrder(row.wanted);
        EXPECT_NE(bytes().find(row.object, file_.size()), std::string::npos) << row.name;
    }
}

} // namespace
} // namespace corvane
