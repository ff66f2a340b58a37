// What a page has and the artwork does not hold, as the host is told.
#include "host/toolbox.h"
#include "tests/reader/extension_fixture.h"

#include <gtest/gtest.h>

#include <map>

namespace corvane {
namespace {

class OmissionsTest : public ExtensionTest {
protected:
    using Counts = std::map<Omission, std::int32_t>;

    Counts omitted(const std::string& content, const std::string& resources) {
        omissions_.clear();
        draw(PdfBuilder::onePage(content, "/Resources<<" + resources + ">>")
                 .object(8, "<</Type/Mask/S/Alpha>>")
                 .object(9, "<</FunctionType 2/Domain[0 1]/C0[0]/C1[1]/N 1>>")
                 .object(12, "<</FunctionType 2/Domain[0 1]/C0[1 1 1]/C1[.8 .6 .1]/N 1>>")
                 .object(13, "<</FunctionType 2/Domain[0 1]/C0[1 1 1]/C1[.8 .6 .1]/N 2>>")
                 .stream(10, "", "/N 3")
                 .stream(11, "", "/Subtype/Image/OC 8 0 R")
                 .bytes());
        return omissions_;
    }
};

TEST_F(OmissionsTest, Operators) {
    struct Row {
        const char* content;
        Counts counts;
    };
    const std::string resources = "/XObject<</X 11 0 R>>/Pattern<</P 8 0 R>>";
    for (const Row& row : {
             Row{"", {}},
             Row{"q BX EX 0 0 m 9 9 l S Q Q", {}},
             Row{"/Relative ri /RelativeColorimetric ri", {}},
             Row{"/P BMC EMC /Span<</MCID 1>>BDC EMC /A MP /A /B DP",
                 {{Omission::markedContent, 4}}},
             Row{"/OC /Layer BDC EMC /OC << >> BDC EMC", {{Omission::optionalContent, 1}}},
             Row{"/X Do", {{Omission::image, 1}}},
             Row{"/Y Do", {}},
             Row{"/Pattern cs /P scn", {{Omission::pattern, 1}}},
             Row{"/None cs", {{Omission::colourSpace, 1}}},
             Row{"(a) Tj /S sh", {{Omission::text, 1}, {Omission::shading, 1}}},
             Row{"1 2 frob 3 frob", {{Omission::unknownOperator, 2}}},
             Row{"/a w 3 J 1 w", {{Omission::damagedOperator, 2}}},
             Row{"q n Q f S B* 0 0 9 9 re n n", {}},
             Row{"W n 1 1 l", {{Omission::damagedOperator, 2}}},
             Row{"[1 2 3 4 5 6 7] 0 d", {{Omission::longDash, 1}}},
             Row{"-32768 32767.99 m 0 32768 l S", {}},
             Row{"30000 0 m 2 0 0 2 0 0 cm 30000 0 l 0 -20000 l S", {{Omission::farPoint, 2}}},
         }) {
        EXPECT_EQ(omitted(row.content, resources), row.counts) << row.content;
    }
    selectRules(Profile::original);
    EXPECT_EQ(omitted("/P BMC EMC", ""), (Counts{{Omission::unknownOperator, 2}}));
    EXPECT_EQ(omitted("q n Q", ""), (Counts{{Omission::damagedOperator, 1}}));
}

TEST_F(OmissionsTest, ExternalStates) {
    struct Row {
        const char* entries;
        Counts counts;
    };
    for (const Row& row : {
             Row{"/LW 2/ca 1/CA 1.0/BM/Normal/SMask/None/OP false/op false/OPM 1", {}},
             Row{"/BM[/Compatible/Multiply]/TR/Identity/TR2/Default/HT/Default/HT 99 0 R", {}},
             Row{"/FL 1/SM .1/SA true/AIS false/TK true/RI/RelativeColorimetric", {}},
             Row{"/ca 0.5/CA 0/BM/Multiply", {}},
             Row{"/SMask 8 0 R", {{Omission::softMask, 1}}},
             Row{"/OP true/op true", {}},
             Row{"/TR 9 0 R/HT<<>>/UCR2 9 0 R", {{Omission::deviceSetting, 1}}},
             Row{"/RI/Saturation", {}},
             Row{"/ca/x/CA[]/BM 1/SMask 1/OP 1/RI 1", {}},
         }) {
        EXPECT_EQ(omitted("/G gs", std::string("/ExtGState<</G<<") + row.entries + ">>>>"),
                  row.counts)
            << row.entries;
    }
}

TEST_F(OmissionsTest, HostsWithoutTransparency) {
    extension_.version = 8;
    EXPECT_EQ(omitted("/G gs /Perceptual ri", "/ExtGState<</G<</RI/Saturation>>>>"),
              (Counts{{Omission::renderingIntent, 2}}));
    extension_.version = 6;
    EXPECT_EQ(omitted("/G gs", "/ExtGState<</G<</OP true>>>>"), (Counts{{Omission::overprint, 1}}));
    extension_.version = 5;
    for (const char* const entries :
         {"/ca 0.5/CA 0/BM/Multiply", "/BM[/Screen/Normal]/ca 1", "/CA .5/SMask 8 0 R"}) {
        const bool isMasked = std::string(entries).find("SMask") != std::string::npos;
        Counts counts{{Omission::transparency, 1}};
        if (isMasked) {
            counts[Omission::softMask] = 1;
        }
        EXPECT_EQ(omitted("/G gs", std::string("/ExtGState<</G<<") + entries + ">>>>"), counts)
            << entries;
    }
}

TEST_F(OmissionsTest, LargeStatesAreNotReadFromEndToEndAtEachUse) {
    std::string entries = "/HT << >>";
    std::string content;
    constexpr int count = 20000;
    for (int i = 0; i < count; ++i) {
        entries += "/K" + std::to_string(i) + " 1";
        content += "/G gs ";
    }
    EXPECT_EQ(omitted(content, "/ExtGState<</G<<" + entries + ">>>>"),
              (Counts{{Omission::deviceSetting, count}}));
    EXPECT_LT(cache_->work.comparedKeys, 1000 * count);
}

TEST_F(OmissionsTest, Colours) {
    struct Row {
        const char* content;
        const char* spaces;
        Counts counts;
    };
    const char* const ink = "/C[/Separation/Gold/DeviceGray 9 0 R]";
    for (const Row& row : {
             Row{"/DeviceRGB cs /C CS", "/C/DeviceCMYK", {}},
             Row{"/C cs 0 0 0 sc /C CS", "/C[/ICCBased 10 0 R]", {{Omission::colourProfile, 2}}},
             Row{"/C cs", "/C[/CalGray<<>>]", {{Omission::colourProfile, 1}}},
             Row{"/C cs", "/C[/CalGray<</WhitePoint[1 1 1]>>]", {}},
             Row{"/C cs", "/C[/Indexed[/ICCBased 10 0 R]0(abc)]", {{Omission::colourProfile, 1}}},
             Row{"/C cs 1 scn 0 scn", ink, {}},
             Row{"/C cs 1 scn", "/C[/Separation/Gold/DeviceRGB 12 0 R]", {}},
             Row{"/C cs 1 scn", "/C[/DeviceN[/Gold]/DeviceRGB 12 0 R]", {}},
             Row{"/C cs 1 scn", "/C[/Separation/All/DeviceRGB 12 0 R]", {}},
             Row{"/C cs 1 scn", "/C[/Separation/G#ff/DeviceRGB 12 0 R]", {}},
             Row{"/C cs 1 scn", "/C[/Separation(Gold)/DeviceRGB 12 0 R]", {{Omission::ink, 1}}},
             Row{"/C cs 1 scn 0 0 9 9 re f", "/C[/Separation/None/DeviceRGB 12 0 R]", {}},
             Row{"/C cs 1 scn", "/C[/Separation/G#01/DeviceRGB 12 0 R]", {}},
             Row{"/C cs 1 scn", "/C[/Separation/Gold/DeviceRGB 13 0 R]", {}},
             // A name that in inline images stands for a device space.
             Row{"/G cs",
                 "/G[/Indexed[/Separation/Gold/DeviceGray 9 0 R]0(a)]",
                 {{Omission::ink, 1}}},
             // The data of an image whose space cannot be read are no content all the same.
             Row{"BI/W 2/H 1/BPC 8/CS/C ID frob EI",
                 "/C[/Indexed/DeviceRGB 1 1]",
                 {{Omission::image, 1}}},
             Row{"/C cs", "/C[/DeviceN[/A/B]/DeviceGray 9 0 R]", {{Omission::colourSpace, 1}}},
             Row{"0 g",
                 "/DefaultGray 7 0 R/DefaultRGB[/CalRGB<<>>]",
                 {{Omission::colourProfile, 1}}},
             Row{"0 g", "/DefaultGray/DeviceGray/DefaultRGB[/CalRGB<</WhitePoint[1 1 1]>>]", {}},
         }) {
        EXPECT_EQ(omitted(row.content, std::string("/ColorSpace<<") + row.spaces + ">>"),
                  row.counts)
            << row.spaces;
    }
}

TEST_F(OmissionsTest, KnockoutGroupsOfWhatIsSeenThrough) {
    const Counts one{{Omission::transparency, 1}};
    struct Row {
        const char* content; ///< of the group
        const char* group;
        Counts counts;
    };
    for (const Row& row : {Row{"0 0 9 9 re f 4 4 9 9 re f", "/K true", {}},
                           Row{"0 0 9 9 re f /H gs 4 4 9 9 re f", "/K true", one},
                           Row{"0 0 9 9 re f /M gs 4 4 9 9 re f", "/K true", one},
                           Row{"0 0 9 9 re f /H gs 4 4 9 9 re f", "/K false", {}}}) {
        omissions_.clear();
        draw(PdfBuilder::onePage("/X Do", "/Resources<</XObject<</X 9 0 R>>/ExtGState<</H<</ca "
                                          ".5>>/M<</BM/Multiply>>>>>>")
                 .stream(9, row.content,
                         std::string("/Subtype/Form/BBox[0 0 99 99]/Group<</S/Transparency") +
                             row.group + ">>")
                 .bytes());
        EXPECT_EQ(omissions_, row.counts) << row.content << row.group;
    }
}

TEST_F(OmissionsTest, StrokesOfUnequalScale) {
    const Counts one{{Omission::unequalStrokeScale, 1}};
    const std::string line = " 0 0 m 9 9 l S";
    for (const char* even : {"1 0 0 1 5 5 cm", "0 3 -3 0 0 0 cm", "-2 0 0 2 0 0 cm",
                             ".6 .8 -.8 .6 0 0 cm", "1 0 0 1.0001 0 0 cm", "2 0 0 1 0 0 cm 0 w"}) {
        EXPECT_EQ(omitted(even + line, ""), Counts()) << even;
    }
    const std::string flat = "1 0 0 0 0 0 cm";
    for (const bool holdsPens : {true, false}) {
        extension_.version = holdsPens ? HostExtension::currentVersion : 6;
        for (const std::string& uneven :
             {std::string("2 0 0 1 0 0 cm"), std::string("1 0 .5 1 0 0 cm"), flat,
              std::string("0 1 2 0 0 0 cm"), std::string("1 0 0 1.01 0 0 cm")}) {
            EXPECT_EQ(omitted(uneven + line, ""), holdsPens && uneven != flat ? Counts() : one)
                << uneven;
            EXPECT_EQ(omitted(uneven + " 0 0 m 9 9 l 9 0 l f", ""), Counts()) << uneven;
        }
    }
}

} // namespace
} // namespace corvane
