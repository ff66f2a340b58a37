// Page content, operator by operator, into the host's document.
#include "reader/content/content.h"

#include "runtime/fixed.h"
#include "tests/reader/art_text.h"
#include "tests/reader/reader_fixture.h"

#include <chrono>
#include <gmock/gmock.h>

namespace corvane {
namespace {

struct Row {
    const char* name;
    std::string_view content;
    std::string_view wanted;
    std::string_view warned{};
};

class ContentTest : public ReaderTest {
protected:
    void expect(std::initializer_list<Row> rows) {
        for (const Row& row : rows) {
            EXPECT_EQ(drawContent(row.content), row.warned) << row.name;
            EXPECT_EQ(artText(document(), importedArt()), row.wanted) << row.name;
        }
    }

    /// The style of the frontmost path.
    const PathStyle& styleOf(std::string_view content) {
        drawContent(content);
        Art art = document().firstChild(importedArt());
        while (document().kind(art) != ArtKind::path) {
            art = document().firstChild(art);
        }
        return document().style(art);
    }
};

// Lines of one point of length, to tell apart by their end.
#define A "0 0 m 1 0 l S "
#define B "0 0 m 2 0 l S "
#define A_ART "<0,0 1,0 S>"
#define B_ART "<0,0 2,0 S>"

#define AA A A
#define BB B B
#define AA_ART A_ART " " A_ART
#define BB_ART B_ART " " B_ART

TEST_F(ContentTest, GroupsAreMadeOfSeveralThings) {
    expect({
        {"nothing", "", ""},
        {"front to back", A B, B_ART " " A_ART},
        {"empty saves", "q Q q q Q Q", ""},
        {"one group", "q " AA "Q " B, B_ART " [" AA_ART "]"},
        {"one thing", "q " A "Q q q " B "Q Q", B_ART " " A_ART},
        {"a group that holds only a group", "q q q " AA "Q Q Q " B, B_ART " [" AA_ART "]"},
        {"something beside the inner group", "q q " AA "Q " B "Q " B,
         B_ART " [" B_ART " [" AA_ART "]]"},
        {"something before the inner group", "q " B "q " AA "Q Q " B,
         B_ART " [[" AA_ART "] " B_ART "]"},
        {"something beside inner ones that are one thing each", "q q " A "Q q " A "Q Q " B,
         B_ART " [" AA_ART "]"},
        {"two inner groups", "q q " AA "Q q " BB "Q Q " A, A_ART " [[" BB_ART "] [" AA_ART "]]"},
        {"an empty group beside one", "q q " AA "Q q Q q q Q Q Q " B, B_ART " [" AA_ART "]"},
        {"groups in a row", "q q " AA "Q Q q " BB "Q", "[" BB_ART "] [" AA_ART "]"},
        {"all of the page", "q q q " AA "Q " B "Q Q", B_ART " [" AA_ART "]"},
        {"deep inner pair", "q q q q " AA "Q q " BB "Q Q Q Q", "[" BB_ART "] [" AA_ART "]"},
        {"a group that only an unfinished path was in", "q 0 0 m 1 0 l", ""},
        {"a group that only an unfinished path was in beside", "q " A "q q 0 0 m Q Q Q n " B,
         B_ART " " A_ART},
        {"saves left open", "q " A "q q " BB, "[" BB_ART "] " A_ART},
        {"restores without saves", "Q " A "Q Q " B, B_ART " " A_ART, "13"},
    });
    selectRules(Profile::original);
    expect({
        {"every save is a group", "q q Q Q q Q", "[] [[]]"},
        {"with what it holds", "q q " A "Q Q", "[[" A_ART "]]"},
        {"one restore too many", "q Q Q " A, A_ART " []", "13"},
    });
}

#define CLIP "<0,0 5,0 5,5 0,5 zC>"

TEST_F(ContentTest, ClipsMakeGroupsThatTheyClip) {
    expect({
        {"until the restore", "q 0 0 5 5 re W n " A "Q " B, B_ART " {" CLIP " " A_ART "}"},
        {"beside others", "q " B "0 0 5 5 re W n " A "Q", "{" CLIP " " A_ART "} " B_ART},
        {"order behind the clip", "0 0 5 5 re W n " A B, "{" CLIP " " B_ART " " A_ART "}"},
        {"clip in clip", "q 0 0 5 5 re W n 0 0 5 5 re W n " A "Q",
         "{" CLIP " {" CLIP " " A_ART "}}"},
        {"a save in a clip", "0 0 5 5 re W n q " AA "Q " B, "{" CLIP " " B_ART " [" AA_ART "]}"},
        {"all of a clip", "0 0 5 5 re W n q " AA "Q q Q", "{" CLIP " " AA_ART "}"},
        {"nothing in the clip", "q 0 0 5 5 re W n Q " A, A_ART},
        {"nothing in a clip that lasts", A "0 0 5 5 re W n 0 0 5 5 re W n", A_ART},
        {"even-odd", "q 0 0 5 5 re W* n " A "Q", "{<0,0 5,0 5,5 0,5 zc> " A_ART "}"},
        {"painted too: the copy is", "q 0 0 5 5 re W f " A "Q",
         "{" CLIP " " A_ART "} <0,0 5,0 5,5 0,5 zF>"},
        {"even-odd paint, nonzero clip", "q 0 0 5 5 re W f* " A "Q",
         "{" CLIP " " A_ART "} <0,0 5,0 5,5 0,5 zf>"},
        {"a compound clip", "q 0 0 5 5 re 0 0 5 5 re W n " A "Q",
         "{(" CLIP " " CLIP ") " A_ART "}"},
        {"clip without a path", "W n " A, A_ART, "13"},
        {"a clip of a point", "q 1 2 m 3 4 m W n " A "Q " B, B_ART " {<3,4 C> " A_ART "}"},
        {"a point beside a clip", "q 0 0 5 5 re 3 4 m W n " A "Q", "{" CLIP " " A_ART "}"},
        {"a clip whose path ends behind Q", "q 0 0 5 5 re W Q n " A, "{" CLIP " " A_ART "}"},
        {"the same, with a state in it", "0 0 5 5 re q W Q n " A, "{" CLIP " " A_ART "}"},
        {"a path behind a clip that a state held", "0 0 5 5 re W q n Q 0 0 5 5 re n " A,
         A_ART " <0,0 5,0 5,5 0,5 z>"},
        {"the clip goes with the path, not beyond", "0 0 5 5 re W n 0 0 5 5 re f",
         "{" CLIP " <0,0 5,0 5,5 0,5 zF>}"},
    });
    // A path stands in user space until it is painted.
    expect({
        {"the space of a clip that ends behind Q", "q 2 0 0 2 0 0 cm 0 0 5 5 re W Q n " A,
         "{" CLIP " " A_ART "}"},
        {"a space within a path", "0 0 m 1 1 2 2 3 3 c q 2 0 0 2 0 10 cm 4 4 l h 5 5 m 6 6 l h f Q",
         "(<10,20 12,22 zF> <0,10>2,12 6,16<4,14 8,18 zF>)"},
        {"each part of it, and its point",
         "q 4 0 0 4 0 0 cm 0 0 1 1 re q 2 0 0 2 0 0 cm 1 0 m 1 1 l Q 1 2 2 2 v h f",
         "(<4,0 4,4 8,8<4,8 zF> <0,0 4,0 4,4 0,4 zF>)"},
        {"a space without area", "q 0 0 0 0 7 7 cm 0 0 5 5 re Q f", "<7,7 7,7 7,7 zF>"},
        {"paint in a state behind which the path goes on", "0 0 5 5 re f q 0 0 5 5 re Q n",
         "<0,0 5,0 5,5 0,5 z> <0,0 5,0 5,5 0,5 zF>"},
    });
    selectRules(Profile::original);
    expect({
        {"the group of the save stays", "q 0 0 5 5 re W n " A "Q", "[{" CLIP " " A_ART "}]"},
        {"n closes", "0 0 m 9 0 l n", "<0,0 9,0 z>"},
        {"empty clips stay", "q 0 0 5 5 re W n Q", "[{" CLIP "}]"},
        {"even-odd is not kept, and not warned of", "0 0 5 5 re W* n", "{" CLIP "}"},
        {"the clip keeps its paint", "0 0 5 5 re W f",
         "{<0,0 5,0 5,5 0,5 zFC>} <0,0 5,0 5,5 0,5 zF>"},
    });
}

TEST_F(ContentTest, ClipsPastWhatArtworkHolds) {
    std::string content;
    for (int i = 0; i < 4200; ++i) {
        content += "0 0 5 5 re W n ";
    }
    EXPECT_EQ(drawContent(content + A), "13");
    // Each group has its clip, and the innermost the line.
    Art group = document().firstChild(importedArt());
    for (; document().kind(group) == ArtKind::group;
         group = document().nextSibling(document().firstChild(group))) {
        ASSERT_EQ(document().lastChild(group),
                  document().nextSibling(document().firstChild(group)));
    }
    EXPECT_EQ(document().style(group).strokePaint, 1);
}

TEST_F(ContentTest, PathsAndWhatEndsThem) {
    expect({
        {"curves", "0 0 m 1 1 2 2 3 3 c 4 4 5 5 v 6 6 7 7 y S",
         "<0,0>1,1 3,3<2,2 5,5<4,4>6,6 7,7 S>"},
        {"an end on the beginning is merged", "0 0 m 10 0 l 10 10 l 0 0 l h f",
         "<0,0 10,0 10,10 zF>"},
        {"and its control point kept", "0 0 m 9 0 l 9 9 1 1 0 0 c h S", "<0,0<1,1 9,0>9,9 zS>"},
        {"f closes", "0 0 m 9 0 l 9 9 l f", "<0,0 9,0 9,9 zF>"},
        {"F does not", "0 0 m 9 0 l 9 9 l F", "<0,0 9,0 9,9 F>"},
        {"B does not, b does", "0 0 m 9 0 l B 0 0 m 9 0 l b", "<0,0 9,0 zFS> <0,0 9,0 FS>"},
        {"s", "0 0 m 9 0 l s", "<0,0 9,0 zS>"},
        {"n and E paint nothing", "0 0 m 9 0 l n 0 0 m 8 0 l E", "<0,0 8,0 > <0,0 9,0 >"},
        {"even-odd", "0 0 m 9 0 l f* 0 0 m 9 0 l F* 0 0 m 9 0 l b* 0 0 m 9 0 l B*",
         "<0,0 9,0 fS> <0,0 9,0 zfS> <0,0 9,0 f> <0,0 9,0 zf>"},
        {"two subpaths", "0 0 m 9 0 l 0 5 m 9 5 l S", "(<0,5 9,5 S> <0,0 9,0 S>)"},
        {"a rectangle stays open to more", "1 2 3 4 re 0 0 m 9 0 l f",
         "(<0,0 9,0 zF> <1,2 4,2 4,6 1,6 zF>)"},
        {"going on behind h", "0 0 m 9 0 l 9 9 l h 5 5 l S", "(<0,0 5,5 S> <0,0 9,0 9,9 zS>)"},
        {"going on behind re", "1 2 3 4 re 5 5 l S", "(<1,2 5,5 S> <1,2 4,2 4,6 1,6 zS>)"},
        {"a point that is left goes", "0 0 m 5 5 m 9 9 l S", "<5,5 9,9 S>"},
        {"alone it goes too", "0 0 m S " A, A_ART},
        {"a dot is a line", "5 5 m 5 5 l S", "<5,5 5,5 S>"},
        {"operators without a path", "5 5 l 1 1 2 2 3 3 c h S f W n " A, A_ART, "13"},
        {"lines without a beginning, then a path", "5 5 l 0 0 m 9 0 l S", "<0,0 9,0 S>", "13"},
        {"an unfinished path", A "0 0 m 5 5 l 3 3 m", A_ART},
        {"flags do not outlive a path", "0 0 m 9 0 l B " A, A_ART " <0,0 9,0 FS>"},
    });
    selectRules(Profile::original);
    expect({
        {"even-odd is warned of", "0 0 m 9 0 l f*", "<0,0 9,0 zF>", "11"},
        {"by F* too", "0 0 m 9 0 l F*", "<0,0 9,0 F>", "11"},
        {"by b* too", "0 0 m 9 0 l b*", "<0,0 9,0 zFS>", "11"},
        {"but not by B*", "0 0 m 9 0 l B*", "<0,0 9,0 FS>"},
        {"no line behind h", "0 0 m 9 0 l h 5 5 l S", "<0,0 9,0 zS>", "13"},
        {"points stay", "0 0 m 5 5 m 9 9 l S", "(<5,5 9,9 S> <0,0 S>)"},
    });
}

TEST_F(ContentTest, WhatGoesWrongIsWarnedOfAndSkipped) {
    using namespace std::string_view_literals;
    expect({
        {"unknown operator", "1 2 frob " A, A_ART, "2"},
        {"it takes its operands along", "0 0 frob m 0 0 m 9 0 l S", "<0,0 9,0 S>", "2 13"},
        {"too few operands", "0 m " A, A_ART, "13"},
        {"wrong operands", "/a (b) m " A, A_ART, "13"},
        {"operands left over", "7 8 9 0 0 m 7 9 0 l (x) S", "<0,0 9,0 S>"},
        {"stray closers", "] } >> " A, A_ART, "13"},
        {"an array left open", "[1 2 " A "] " B, B_ART " " A_ART, "13"},
        {"half a dictionary", "<</A 1 /B>> BDC " A, A_ART, "13"},
        {"no hexadecimal", "<4G> " A, A_ART, "13"},
        {"words for operands", "null true false " A, A_ART},
        {"marked content and compatibility", "/x BMC /x <</y 1>> BDC BX EX EMC /p MP /p null DP " A,
         A_ART},
        {"text is counted", "BT /F 12 Tf (x) Tj [(x)] TJ (x)' 1 1(x)\" <41> Tj ET " A, A_ART, "18"},
        {"an image's bytes are no content", "q BI /W 2 ID \x01 EIx m l S Q \xff\nEI Q " A, A_ART,
         "6"},
        // The product is 32 in 64 bits.
        {"an image larger than any",
         "BI /W 1824726041 /H 1263665316 /BPC 16 /CS /CMYK ID \x01 EI " B "% -----------  EI q\n" A,
         A_ART " " B_ART, "6"},
        {"XObjects that there are not", "/X Do " A, A_ART},
        {"a shading", "/X sh " A, A_ART, "19"},
        {"zero bytes are white space", "0\0000\000m\0009 0 l S"sv, "<0,0 9,0 S>"},
    });
    const std::string deep = std::string(600, '[') + std::string(600, ']') + " 0 d " A;
    expect({{"constructs too deep", deep, A_ART, "13"}});
    selectRules(Profile::original);
    std::string many;
    for (int i = 0; i < 1100; ++i) {
        many += "1 ";
    }
    many += "g " A;
    expect({{"more operands than there is room", many, A_ART, "13"},
            {"a hexadecimal string is no text", "<41> Tj " A, A_ART, "13"},
            {"marked content is not known", "/x BMC EMC " A, A_ART, "2"}});
}

TEST_F(ContentTest, NumbersReachTheArtworkExactly) {
    expect({
        {"a small scale and a large coordinate", "0.01 0 0 0.01 0 0 cm 61200.25 0 m 0 100 l S",
         "<612.003,0 0,1 S>"},
        {"scales that 16.16 cannot hold", "0.000001 0 0 0.000001 0 0 cm 9000000 0 m 0 1000000 l S",
         "<9,0 0,1 S>"},
        {"one on another", "2 0 0 2 10 10 cm 1 0 0 1 5 0 cm 0 0 m 1 1 l S", "<20,10 22,12 S>"},
        {"a later cm moves nothing", "0 0 m 2 0 0 2 0 0 cm 5 0 l S", "<0,0 10,0 S>"},
        {"a turn", "0 1 -1 0 0 0 cm 0 0 m 5 1 l S", "<0,0 -1,5 S>"},
    });
    const std::string nines(400, '9');
    expect({{"beyond all measure", "0 1 -1 0 0 0 cm " + nines + " 0 m 1 1 l S " A,
             "<0,0 0,1 S> <0,32768 -1,1 S>"}});
    selectRules(Profile::original);
    expect({{"steps of 16.16", "0.00002 0 0 1 0 0 cm 100 0 m 0 1 l S", "<0.00152588,0 0,1 S>"}});
}

TEST_F(ContentTest, Colours) {
    const auto amounts = [](double c, double m, double y, double k) {
        return std::array{fixedFromReal(c), fixedFromReal(m), fixedFromReal(y), fixedFromReal(k)};
    };
    struct ColourRow {
        const char* content;
        ColourKind kind;
        std::array<Fixed, 4> wanted;
    };
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        for (const ColourRow& row : {
                 ColourRow{"", ColourKind::gray, amounts(1, 0, 0, 0)},
                 ColourRow{"0.5 g 0.5 G", ColourKind::gray, amounts(0.5, 0, 0, 0)},
                 ColourRow{"1 g 1 G", ColourKind::gray, amounts(0, 0, 0, 0)},
                 ColourRow{"2 g 2 G", ColourKind::gray, amounts(-1, 0, 0, 0)},
                 ColourRow{"1.2 0 .5 -1 k 1.2 0 .5 -1 K", ColourKind::process,
                           amounts(1.2, 0, 0.5, -1)},
                 ColourRow{"0 0 0 rg 0 0 0 RG", ColourKind::process,
                           amounts(0.25, 0.25, 0.25, 0.75)},
                 ColourRow{"1 1 1 rg 1 1 1 RG", ColourKind::process, amounts(0, 0, 0, 0)},
                 ColourRow{"1 0 0 rg 1 0 0 RG", ColourKind::process, amounts(0, 1, 1, 0)},
                 ColourRow{"5 -1 0 rg 5 -1 0 RG", ColourKind::process, amounts(0, 1, 1, 0)},
                 // Operands that do not do leave the colour as it was.
                 ColourRow{"0.5 g 0.5 G 1 1 rg /x g 1 1 1 K", ColourKind::gray,
                           amounts(0.5, 0, 0, 0)},
                 ColourRow{"0.5 g 0.5 G q 1 g 1 G Q", ColourKind::gray, amounts(0.5, 0, 0, 0)},
             }) {
            const PathStyle& style = styleOf(std::string(row.content) + " 0 0 m 9 0 l B");
            for (const Colour& colour : {style.fill, style.stroke}) {
                EXPECT_EQ(colour.kind, row.kind) << row.content;
                EXPECT_THAT(colour.component, ::testing::ElementsAreArray(row.wanted))
                    << row.content;
            }
        }
    }
    const PathStyle& style = styleOf("1 0 0 rg 0 0 1 0 K 0 0 m 9 0 l B");
    EXPECT_EQ(style.fill.origin, ColourOrigin::fromRgb);
    EXPECT_EQ(style.stroke.origin, ColourOrigin::given);
}

TEST_F(ContentTest, LineStyles) {
    struct StyleRow {
        const char* content;
        const char* warned;
        bool (*wanted)(const PathStyle&);
    };
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        for (const StyleRow& row : {
                 StyleRow{"", "",
                          [](const PathStyle& s) {
                              return s.lineWidth == fixedOne && s.dashCount == 0 && s.cap == 0 &&
                                     s.join == 0 && s.miterLimit == 10 * fixedOne &&
                                     s.resolution == 800 * fixedOne;
                          }},
                 StyleRow{"2 J 1 j 1 M 0 w", "",
                          [](const PathStyle& s) {
                              return s.cap == 2 && s.join == 1 && s.miterLimit == fixedOne &&
                                     s.lineWidth == 0;
                          }},
                 StyleRow{"1 J 3 J -1 J 1.5 J", "13",
                          [](const PathStyle& s) { return s.cap == 1; }},
                 StyleRow{"2 j 3 j", "13", [](const PathStyle& s) { return s.join == 2; }},
                 StyleRow{"4 M 0.5 M", "13",
                          [](const PathStyle& s) { return s.miterLimit == 4 * fixedOne; }},
                 StyleRow{"[1 2 3 4 5 6] 7 d", "",
                          [](const PathStyle& s) {
                              return s.dashCount == 6 && s.dash[5] == 6 * fixedOne &&
                                     s.dashPhase == 7 * fixedOne;
                          }},
                 StyleRow{"[3] 1 d [1 2 3 4 5 6 7] 0 d", "13",
                          [](const PathStyle& s) {
                              return s.dashCount == 1 && s.dash[0] == 3 * fixedOne &&
                                     s.dash[1] == 0 && s.dashPhase == fixedOne;
                          }},
                 StyleRow{"[3] 1 d [1 /x] 0 d", "13",
                          [](const PathStyle& s) { return s.dash[0] == 3 * fixedOne; }},
                 StyleRow{"[3] 1 d [] 0 d", "",
                          [](const PathStyle& s) { return s.dashCount == 0; }},
                 StyleRow{"2 i", "",
                          [](const PathStyle& s) { return s.resolution == 800 * fixedOne; }},
                 StyleRow{"12 i", "",
                          [](const PathStyle& s) { return s.resolution == 200 * fixedOne; }},
                 StyleRow{"30 i", "",
                          [](const PathStyle& s) { return s.resolution == 100 * fixedOne; }},
                 StyleRow{"q 5 w [1] 0 d Q", "",
                          [](const PathStyle& s) {
                              return s.lineWidth == fixedOne && s.dashCount == 0;
                          }},
             }) {
            const std::string content = std::string(row.content) + " 0 0 m 9 0 l S";
            EXPECT_TRUE(row.wanted(styleOf(content))) << row.content;
            EXPECT_EQ(drawContent(content), row.warned) << row.content;
        }
    }
}

TEST_F(ContentTest, LengthsAreScaledWithThePage) {
    struct ScaleRow {
        const char* content;
        double width;
        double dash;
        double phase;
    };
    for (const ScaleRow& row : {
             ScaleRow{"2 0 0 2 9 9 cm 3 w [4] 5 d", 6, 8, 10},
             ScaleRow{"3 w [4] 5 d 2 0 0 2 9 9 cm", 6, 8, 10}, // what counts is when it is painted
             ScaleRow{"4 0 0 1 0 0 cm 3 w [4] 5 d", 6, 8, 10},
             ScaleRow{"0 2 -2 0 0 0 cm 3 w [4] 5 d", 6, 8, 10},
             ScaleRow{"100 0 0 100 0 0 cm .01 w [2] .03 d", 1, 200, 3},
             ScaleRow{".001 0 0 .001 0 0 cm 40000.5 w [50000] 60000 d", 40.0005, 50, 60},
             ScaleRow{"0 0 0 0 0 0 cm 3 w [4] 5 d", 0, 0, 0},
         }) {
        const PathStyle& style = styleOf(std::string(row.content) + " 0 0 m 9 0 l S");
        EXPECT_EQ(style.lineWidth, fixedFromReal(row.width)) << row.content;
        EXPECT_EQ(style.dash[0], fixedFromReal(row.dash)) << row.content;
        EXPECT_EQ(style.dashPhase, fixedFromReal(row.phase)) << row.content;
    }
    selectRules(Profile::original);
    EXPECT_EQ(styleOf("2 0 0 2 0 0 cm 3 w 0 0 m 9 0 l S").lineWidth, 3 * fixedOne);
}

TEST_F(ContentTest, StreamsOfAPageFollowOneAnother) {
    const auto page = [](std::string_view first, std::string_view second, std::string_view array) {
        return PdfBuilder::onePage(first)
            .stream(5, second)
            .object(3,
                    "<< /Parent 2 0 R /MediaBox [0 0 9 9] /Contents " + std::string(array) + " >>")
            .bytes();
    };
    struct StreamsRow {
        const char* name;
        std::string_view first;
        std::string_view second;
        std::string_view array;
        std::string_view wanted;
    };
    for (const StreamsRow& row : {
             StreamsRow{"in order", A, B, "[5 0 R 4 0 R]", A_ART " " B_ART},
             StreamsRow{"the same twice", A, B, "[4 0 R 4 0 R]", A_ART " " A_ART},
             StreamsRow{"the state goes on", "q 0 0 m", "9 0 l S Q", "[4 0 R 5 0 R]",
                        "<0,0 9,0 S>"},
             StreamsRow{"tokens do not", "0 0 m 1", "0 0 l S", "[4 0 R 5 0 R]", "<0,0 0,0 S>"},
             // PDF Reference, 3.6.2: streams are divided between any two tokens.
             StreamsRow{"operands do", "0 0 m 9", "5 l S", "[4 0 R 5 0 R]", "<0,0 9,5 S>"},
             StreamsRow{"arrays do", "[3", "] 0 d " A, "[4 0 R 5 0 R]", A_ART},
             StreamsRow{"what is no stream is passed over", A, B, "[null 4 0 R 99 0 R]", A_ART},
             StreamsRow{"none", A, B, "[]", ""},
             StreamsRow{"null", A, B, "null", ""},
         }) {
        EXPECT_EQ(draw(page(row.first, row.second, row.array)), "") << row.name;
        EXPECT_EQ(artText(document(), importedArt()), row.wanted) << row.name;
    }
    EXPECT_EQ(raisedBy([&] { draw(page(A, B, "7")); }), Exception::none);
    EXPECT_EQ(raisedBy([&] { draw(page(A, B, "[4 0 R 7]")); }), Exception::none);
}

TEST_F(ContentTest, ThePersonMayStopIt) {
    static int asked = 0;
    asked = 0;
    std::string content;
    for (int i = 0; i < 20000; ++i) {
        content += A;
    }
    const CallbackScope stopping(document(), [] { return ++asked == 2; });
    DocumentCache& cache = open(PdfBuilder::onePage("q " + content));
    pageCache(cache, 1);
    EXPECT_EQ(raisedBy([&] { readCache(cache); }), Exception::cancelled);
    EXPECT_EQ(asked, 2);
}

TEST_F(ContentTest, AHostThatRefusesEndsThePage) {
    // Room for a few thousand paths only.
    document_.emplace(std::int64_t{1} << 18);
    scope_.reset();
    scope_.emplace(*document_);
    document().expectImport();
    std::string content;
    for (int i = 0; i < 20000; ++i) {
        content += A;
    }
    DocumentCache& cache = open(PdfBuilder::onePage(content));
    pageCache(cache, 1);
    EXPECT_EQ(raisedBy([&] { readCache(cache); }), Exception::host);
}

} // namespace
} // namespace corvane
