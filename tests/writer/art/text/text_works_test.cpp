// Classic text as content: the bytes of the original profile.
#include "app/artwork/classic/host_fonts.h"
#include "objects/family.h"
#include "objects/identity.h"
#include "tests/writer/walk_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class TextWorksTest : public WalkTest {
protected:
    void SetUp() override {
        WalkTest::SetUp();
        selectRules(Profile::original);
        openIdentity();
        openFamily();
    }
    void TearDown() override {
        closeFamily();
        closeIdentity();
        WalkTest::TearDown();
    }

    Art addText(const TextLine& line = {}) {
        const Art text = add(ArtKind::text, layerArt());
        document().setTextLine(text, line);
        return text;
    }
    void addRun(Art text, TextRun run, const char* font = "Helvetica") {
        run.font = document().addFont(HostFonts::all().facts(font));
        run.style.fillPaint = 1;
        document().addTextRun(text, run);
    }
    /// What is written between the layer's comment and the end.
    std::string content() {
        const std::string text = write();
        return text.substr(text.find('\n') + 1);
    }

    /// What the first text of a page begins with.
    static std::string first(const std::string& font, const std::string& size) {
        return "BT\n0 g\n0 i\n%%Note: \n0 Ts\n0 TL\n100 Tz\n/" + font + " " + size +
               " Tf\n0 Tw\n0 Tc\n0 Tr\n";
    }
    static inline const std::string f1 = "\002F1";
};

TEST_F(TextWorksTest, LongLinesGoInPieces) {
    const Art text = addText({.matrix = {.tx = points(60), .ty = points(700)}});
    addRun(text, {.size = points(10), .text = std::string(150, 'A')});
    const std::string piece(60, 'A');
    EXPECT_EQ(content(), first(f1, "10") + "1 0 0 1 60 700 Tm\n(" + piece +
                             ") Tj\n1 0 0 1 460.2044 700 Tm\n(" + piece +
                             ") Tj\n1 0 0 1 860.4089 700 Tm\n(" + std::string(30, 'A') +
                             ") Tj\nET\n");
    EXPECT_EQ(countFamily(), 1);
}

TEST_F(TextWorksTest, WhatDiffersIsWritten) {
    const Art text = addText();
    const TextPiece kern{.start = 1, .shift = points(0.5)};
    addRun(text, {.size = points(10), .text = "a(b", .pieces = {&kern, 1}});
    addRun(text, {.size = points(10), .rise = points(3), .spacing = points(2), .text = "é\\"});
    addRun(
        text,
        {.size = points(10), .text = "next", .line = Matrix{.c = points(0.5), .ty = points(-12)}},
        "Times-Bold");
    EXPECT_EQ(content(), first(f1, "10") +
                             "1 0 0 1 0 0 Tm\n(a) Tj\n"
                             "1 0 0 1 10.5599 0 Tm\n(\\(b) Tj\n"
                             "3 Ts\n1.9999 Tc\n1 0 0 1 19.4499 0 Tm\n(\\216\\\\) Tj\n"
                             "0 Ts\n/\002F2 10 Tf\n0 Tc\n1 0 0.5000 1 0 -12 Tm\n(next) Tj\nET\n");
}

TEST_F(TextWorksTest, StateGoesOnInTheNextTextUntilQ) {
    const Art group = addGroup(layerArt(), true);
    const Art clip = document().make(ArtKind::text, Placement::inside, group);
    addRun(clip, {.size = points(10), .text = "clip"});
    PathStyle style;
    style.clip = 1;
    document().setTextRunStyle(clip, 0, style);
    const Art behind = addText();
    addRun(behind, {.size = points(10), .text = "a"});
    document().reorder(behind, Placement::behind, group);
    const Art front = addText();
    addRun(front, {.size = points(10), .text = "b"});
    EXPECT_EQ(content(), first(f1, "10") +
                             "1 0 0 1 0 0 Tm\n(a) Tj\nET\n"
                             "q\nBT\n7 Tr\n1 0 0 1 0 0 Tm\n(clip) Tj\nET\nQ\n" +
                             first(f1, "10") + "1 0 0 1 0 0 Tm\n(b) Tj\nET\n");
}

TEST_F(TextWorksTest, LettersAlongAPathStandByTheirMiddles) {
    const Segment path[] = {
        {{}, {}, {}, 0},
        {{points(100), 0}, {points(100), 0}, {points(100), 0}, 0},
        {{points(100), points(50)}, {points(100), points(50)}, {points(100), points(50)}, 0}};
    const Art text = addText({.path = path, .pathStart = points(90)});
    addRun(text, {.size = points(10), .text = "WW"}); // 9.44 wide
    EXPECT_EQ(content(), first(f1, "10") + "1 0 0 1 90 0 Tm\n(W) Tj\n"
                                           "0 1 -1 0 100 -0.5599 Tm\n(W) Tj\nET\n");
}

/// A host whose letters hold tabs.
TEST_F(TextWorksTest, TabsAreNotWritten) {
    const Art text = addText();
    addRun(text, {.size = points(10), .text = "abcd"});
    static const std::uint8_t letters[] = {'\t', 'b', '\t', 'd'};
    fillSlot({table_->ref().get(), slotCount}, slot::getRunText, [](RunHandle, RunText* run) {
        run->letters = letters;
        return HostError::none;
    });
    EXPECT_EQ(content(), first(f1, "10") + "1 0 0 1 0 0 Tm\n() Tj\n1 0 0 1 5.5599 0 Tm\n(b) Tj\n"
                                           "1 0 0 1 16.1199 0 Tm\n(d) Tj\nET\n");
}

TEST_F(TextWorksTest, JustifiedLinesAreSpacedAsTheHostSetThem) {
    const Art text = addText();
    addRun(text, {.size = points(10), .text = "a"});
    const std::span<HostProcedure> table(table_->ref().get(), slotCount);
    fillSlot(table, slot::getRunParaStyle, [](RunHandle, ParaStyle* style) {
        style->alignment = 4;
        style->wordSpacing = 900 * fixedOne;
        return HostError::none;
    });
    fillSlot(table, slot::getLineStyle, [](LineHandle, FlowStyle* style) {
        *style = {.letterSpacing = fixedOne / 2, .wordSpacing = 2 * fixedOne};
        return HostError::none;
    });
    const std::string text1 = content();
    EXPECT_NE(text1.find("1.3899 Tw\n1.3899 Tc\n"), text1.npos) << text1;
}

TEST_F(TextWorksTest, Failures) {
    EXPECT_EQ(content(), "");
    addText();
    EXPECT_EQ(content(), "BT\nET\n") << "without runs";
    addRun(addText(), {.size = points(10), .text = "→"});
    EXPECT_EQ(writing(), Exception::host) << "no letter of the host";
    resetException();
    document_.emplace();
    scope_.emplace(*document_);
    addRun(addText(), {.size = points(10), .text = "a"});
    const std::span<HostProcedure> table(table_->ref().get(), slotCount);
    fillSlot(table, slot::getLinePlacement, [](LineHandle) { return HostStatus::fontMissing; });
    EXPECT_EQ(writing(), Exception::host);
    resetException();
    fillSlot(table, slot::firstFontName, [](std::int32_t* count) {
        *count = 0;
        return HostError::none;
    });
    EXPECT_EQ(writing(), Exception::structure) << "a font that the host does not list";
    resetException();
}

} // namespace
} // namespace corvane
