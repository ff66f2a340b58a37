// Forms and annotations as groups.
#include "host/toolbox.h"
#include "runtime/fixed.h"
#include "tests/reader/art_text.h"
#include "tests/reader/reader_fixture.h"
#include "tests/reader/structure_text.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

class FormTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        extension_.context = this;
        extension_.omitted = [](void* context, Omission kind, std::int32_t count) {
            if (kind == Omission::form) {
                static_cast<FormTest*>(context)->omitted_ = count;
            }
        };
        setHostExtension(&extension_);
    }
    void TearDown() override {
        setHostExtension(nullptr);
        ReaderTest::TearDown();
    }

    std::string layerText(Layer layer) {
        return structureText(document(), document().layerArt(layer));
    }

    HostExtension extension_;
    std::int32_t omitted_ = 0;
};

TEST_F(FormTest, FormsAreGroupsOfWhatTheyPaint) {
    const std::string square = "0 0 10 10 re f";
    const std::string outer = "/Subtype/Form/Resources<</XObject<</B 8 0 R>>>>";
    struct Row {
        const char* name;
        const char* content;
        std::string a, entriesOfA; ///< form 7
        std::string b, entriesOfB; ///< form 8
        const char* seen;
        std::int32_t omitted = 0;
    };
    for (const Row& row : {
             Row{"drawn twice between paths",
                 "0 0 1 1 re f /A Do q 1 0 0 1 50 0 cm /A Do Q 2 2 m 3 3 l S", square,
                 "/Subtype/Form", "", "",
                 "0,0 1,1@0:0 7.1(0,0 10,10@1:0)@0:1 7.2(50,0 60,10@2:0)@0:2 2,2 3,3@0:3"},
             Row{"matrix and box", "/A Do", square,
                 "/Subtype/Form/Matrix[2 0 0 2 5 5]/BBox[8 8 1 1]", "", "",
                 "7.1<5,5 25,25@1:0 7,7 21,21>@0:0"},
             Row{"a matrix of small numbers", "505 0 0 505 0 0 cm /A Do", "0 0 505 505 re f",
                 "/Subtype/Form/Matrix[.00199 0 0 .00199 0 0]", "", "",
                 "7.1(0,0 507.5,507.5@1:0)@0:0"},
             Row{"a box without area, and a matrix that flattens", "/A Do /B Do /A Do", square,
                 "/Subtype/Form/BBox[3 3 3 9]", square, "/Subtype/Form/Matrix[1 0 0 0 0 0]", ""},
             Row{"within one another, by their own resources or those around", "/A Do",
                 "/B Do " + square, outer, "/B Do 5 5 1 1 re f", "/Subtype/Form",
                 "7.1(8.2(5,5 6,6@2:0)@1:0 0,0 10,10@1:1)@0:0", 1},
             Row{"inherited resources", "/A Do", "/B Do", "/Subtype/Form", square, "/Subtype/Form",
                 "7.1(8.2(0,0 10,10@2:0)@1:0)@0:0"},
             Row{"what it leaves open is closed, and its Q is its own",
                 "q .5 0 0 .5 0 0 cm /A Do 0 0 8 8 re f Q",
                 "Q q q 4 0 0 4 0 0 cm 0 0 5 5 re W n " + square, "/Subtype/Form", "", "",
                 "7.1(<0,0 20,20@1:0 0,0 10,10@1:0>)@0:0 0,0 4,4@0:1"},
             Row{"nothing in it", "/A Do ", "q Q", "/Subtype/Form", "", "", ""},
             Row{"a path that is left unfinished", "/A Do 0 0 1 1 re f",
                 "0 0 9 9 re W n q q 0 0 5 5 re Q Q 0 0 m", "/Subtype/Form/BBox[0 0 9 9]", "", "",
                 "0,0 1,1@0:0"},
             Row{"one that ends behind its level, as a clip", "/A Do", "q 0 0 5 5 re Q W n",
                 "/Subtype/Form", "", "", ""},
             Row{"the same beside something", "/A Do", square + " q 0 0 5 5 re Q", "/Subtype/Form",
                 "", "", "7.1(0,0 10,10@1:0)@0:0"},
             Row{"a group alone in its level stays what it is", "q q /A Do Q Q", square,
                 "/Subtype/Form", "", "", "7.1(0,0 10,10@1:0)@0:0"},
             Row{"entries of a wrong kind", "/A Do", square,
                 "/Subtype/Form/Matrix/X/BBox[1 2]/Resources 5", "", "", "7.1(0,0 10,10@1:0)@0:0"},
         }) {
        omitted_ = 0;
        draw(PdfBuilder::onePage(row.content, "/Resources<</XObject<</A 7 0 R/B 8 0 R>>>>")
                 .stream(7, row.a, row.entriesOfA)
                 .stream(8, row.b, row.entriesOfB)
                 .bytes());
        EXPECT_EQ(structureText(document(), importedArt()), row.seen) << row.name;
        EXPECT_EQ(omitted_, row.omitted) << row.name;
    }
}

TEST_F(FormTest, FormsAreLeftOutWhereNoGroupFits) {
    std::string content;
    for (int i = 0; i < 4085; ++i) {
        content += "0 0 9 9 re W n ";
    }
    draw(PdfBuilder::onePage(content + "/A Do 0 0 1 1 re f", "/Resources<</XObject<</A 7 0 R>>>>")
             .stream(7, "/A Do 0 0 5 5 re W n /B Do",
                     "/Subtype/Form/BBox[0 0 9 9]"
                     "/Resources<</XObject<</A 8 0 R/B 9 0 R>>>>")
             .stream(8, "0 0 5 5 re W n 0 0 5 5 re f", "/Subtype/Form/BBox[0 0 9 9]")
             .stream(9, "0 0 5 5 re f", "/Subtype/Form/BBox[0 0 9 9]")
             .bytes());
    EXPECT_EQ(omitted_, 1);
}

/// Lines of text end at the border of a form.
TEST_F(FormTest, TextOfFormsIsApart) {
    draw(PdfBuilder::onePage("BT /F 9 Tf (a) Tj /A Do (b) Tj ET",
                             "/Resources<</XObject<</A 7 0 R>>/Font<</F 9 0 R>>>>")
             .stream(7, "BT /F 9 Tf (c) Tj ET", "/Subtype/Form")
             .object(9, "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>")
             .bytes());
    EXPECT_EQ(structureText(document(), importedArt()), "text 7.1(text)@0:1 text");
}

/// Each form draws the next one twice: 2^29 drawings. And 100 forms within one another.
TEST_F(FormTest, WorkHasABound) {
    for (const auto& [count, each] : {std::pair(30, "/N Do /N Do"), std::pair(100, "/N Do")}) {
        PdfBuilder file =
            PdfBuilder::onePage("/N Do 0 0 9 9 re f", "/Resources<</XObject<</N 10 0 R>>>>");
        for (int i = 0; i < count; ++i) {
            file.stream(10 + i, i + 1 < count ? each : "0 0 1 1 re f",
                        "/Subtype/Form/Resources<</XObject<</N " + std::to_string(11 + i) +
                            " 0 R>>>>");
        }
        omitted_ = 0;
        EXPECT_EQ(draw(file.bytes()), "3");
        EXPECT_EQ(structureText(document(), importedArt()), "0,0 9,9@0:0");
        EXPECT_GT(omitted_, 0);
    }
}

TEST_F(FormTest, AnnotationsAreALayer) {
    struct Row {
        const char* name;
        std::string annotation;
        std::string form; ///< entries of its appearance, which fills 0 0 10 10
        const char* seen;
    };
    const std::string place = "/Rect[100 200 120 240]";
    const std::string normal = "/AP<</N 8 0 R>>";
    for (const Row& row : {
             Row{"fitted to its place", place + normal, "/BBox[0 0 10 10]",
                 "7.2<100,200 120,240@2:0 100,200 120,240>"},
             Row{"a turned appearance", place + normal, "/BBox[0 0 10 10]/Matrix[0 1 -1 0 0 0]",
                 "7.2<100,200 120,240@2:0 100,200 120,240>"},
             Row{"one of several states", place + "/AS/On/AP<</N<</On 8 0 R/Off 9 0 R>>>>",
                 "/BBox[0 0 20 20]", "7.2<100,200 110,220@2:0 100,200 120,240>"},
             Row{"no state", place + "/AP<</N<</On 8 0 R>>>>", "/BBox[0 0 20 20]", nullptr},
             Row{"hidden", place + "/F 2" + normal, "/BBox[0 0 10 10]", nullptr},
             Row{"not to be viewed", place + "/F 32" + normal, "/BBox[0 0 10 10]", nullptr},
             Row{"a pop-up", place + "/Subtype/Popup" + normal, "/BBox[0 0 10 10]", nullptr},
             Row{"without a place", normal, "/BBox[0 0 10 10]", nullptr},
             Row{"no box to be fitted", place + normal, "", ""},
             Row{"a link without appearance", place + "/Subtype/Link", "", "7.2(100,200 120,240)"},
             Row{"a square without appearance", place + "/Subtype/Square/C[1 0 0]", "",
                 "7.2(100.5,200.5 119.5,239.5)"},
             Row{"one whose appearance is of another state",
                 place + "/Subtype/Widget/AS/Off/MK<</BC[0]>>/AP<</N<</On 8 0 R>>>>",
                 "/BBox[0 0 10 10]", nullptr},
             Row{"a field with neither ground nor border", place + "/Subtype/Widget/MK<</R 90>>",
                 "", nullptr},
             Row{"a stamp without appearance", place + "/Subtype/Stamp/C[1 0 0]", "", nullptr},
         }) {
        draw(PdfBuilder::onePage("/X Do",
                                 "/Resources<</XObject<</X 6 0 R>>>>/Annots[7 0 R 99 0 R 5]")
                 .stream(6, "0 0 1 1 re f", "/Subtype/Form")
                 .object(7, "<</Type/Annot" + row.annotation + ">>")
                 .stream(8, "0 0 10 10 re f", row.form)
                 .bytes());
        const Layer front = document().firstLayer();
        const bool hasLayer = document().layerProperties(front).role == LayerRole::annotations;
        EXPECT_EQ(hasLayer, row.seen != nullptr) << row.name;
        EXPECT_EQ(layerText(document().lastLayer()), "6.1(0,0 1,1@1:0)@0:0") << row.name;
        if (hasLayer && row.seen != nullptr) {
            EXPECT_EQ(layerText(front), row.seen) << row.name;
            EXPECT_EQ(document().layerProperties(front).title, "Annotations");
            EXPECT_TRUE(document().layerProperties(front).locked);
        }
    }
}

/// Width and dashes of the last path, and how the group is laid over what is behind it.
std::string lookText(const Document& document, Art group) {
    const PathStyle style = document.style(document.firstChild(group));
    const Appearance appearance = document.appearance(group);
    std::string text = std::to_string(style.lineWidth / (fixedOne / 4)) + "/4";
    for (std::int16_t i = 0; i < style.dashCount; ++i) {
        text += " " + std::to_string(fixed2long(style.dash[i]));
    }
    text += appearance.blend == BlendMode::multiply ? " multiplied" : "";
    return text + (appearance.opacity < 1 ? " thin" : "");
}

TEST_F(FormTest, AnnotationsWithoutAppearanceShowTheirLines) {
    struct Row {
        const char* entries; ///< in a place of 100 by 40
        const char* seen;
        const char* look;
    };
    // Two lines of text, the second one upright.
    const std::string quads = "/QuadPoints[0 8 99 8 0 0 99 0 8 99 8 0 0 99 0 0]";
    for (const Row& row : {
             Row{"Line/L[1 2 31 42]/Border[0 0 4]/C[0 0 .5]/CA .5", "<1,2 31,42 S>", "16/4 thin"},
             Row{"Line/L[1 2 31 42]/Border[0 0 4]/BS<</W 2/S/D>>/C[0]", "<1,2 31,42 S>", "8/4 3"},
             Row{"Line/L[1 2 31 42]/BS<</S/D/D[5 2]>>/C[0]", "<1,2 31,42 S>", "4/4 5 2"},
             Row{"Ink/InkList[[1 1 2 2 3 1][5 5 6 6][7 7]]/C[0]", "<5,5 6,6 S> <1,1 2,2 3,1 S>",
                 "4/4"},
             Row{"PolyLine/Vertices[1 1 2 2 3 1]/C[0]/IC[1]", "<1,1 2,2 3,1 S>", "4/4"},
             Row{"Polygon/Vertices[1 1 2 2 3 1]/C[0]/IC[1]", "<1,1 2,2 3,1 zFS>", "4/4"},
             Row{"Square/C[]/IC[0 0 0 1]/RD[2 3 4 5]/Border[0 0 2]", "<3,4 95,4 95,34 3,34 zF>",
                 "8/4"},
             Row{"Widget/MK<</BG[1]/BC[1 0 0]>>/BS<</W 0>>", "<0,0 100,0 100,40 0,40 zF>", "0/4"},
             Row{"Circle/C[0]/Border[0 0 0]/IC[1]",
                 "<100,20<100,8.95399>100,31.046 50,40<77.615,40>22.385,40 0,20<0,31.046>0,8.95399 "
                 "50,0<22.385,0>77.615,0 zF>",
                 "0/4"},
             Row{"Highlight/C[1 1 0]",
                 "<8,99<6,101 8,0>6,-2 0,0<2,-2 0,99>2,101 zF> "
                 "<0,8<-2,6 99,8>101,6 99,0<101,2 0,0>-2,2 zF>",
                 "0/4 multiplied"},
             Row{"Underline/C[0]", "<1.14285,99 1.14285,0 S> <0,1.14285 99,1.14285 S>", "2/4"},
             Row{"StrikeOut/C[0]", "<3.42857,99 3.42857,0 S> <0,3.42857 99,3.42857 S>", "2/4"},
         }) {
        draw(PdfBuilder::onePage("", "/Annots[7 0 R]")
                 .object(7, "<</Type/Annot/Rect[0 0 100 40]" + quads + "/Subtype/" +
                                std::string(row.entries) + ">>")
                 .bytes());
        const Art group = document().lastChild(document().layerArt(document().firstLayer()));
        EXPECT_EQ(artText(document(), group), row.seen) << row.entries;
        EXPECT_EQ(lookText(document(), group), row.look) << row.entries;
    }
}

TEST_F(FormTest, AnnotationsWithoutAppearanceHaveABound) {
    std::string all;
    for (int i = 0; i < 60'000; ++i) {
        all += "7 0 R ";
    }
    draw(PdfBuilder::onePage("", "/Annots 6 0 R")
             .object(6, "[" + all + "]")
             .object(7, "<</Rect[0 0 9 9]/Subtype/Line/C[0]/L[0 0 9 9]>>")
             .bytes());
    EXPECT_GT(omitted_, 0);
    EXPECT_LT(omitted_, 20'000);
}

} // namespace
} // namespace corvane
