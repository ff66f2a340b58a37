// Layers of the file as groups, and which of them show.
#include "reader/content/interpreter.h"
#include "tests/reader/extension_fixture.h"
#include "tests/reader/structure_text.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

class OptionalContentTest : public ExtensionTest {
protected:
    /// Layers A, B, C (objects 10 to 12; B is off), and M, a membership dictionary of these
    /// entries.
    std::string seen(const std::string& content, const std::string& membership = "",
                     const std::string& configuration = "/OFF[11 0 R]/Locked[12 0 R]",
                     const std::string& condition = "null") {
        draw(PdfBuilder::onePage(content,
                                 "/Resources<</Properties<</A 10 0 R/B 11 0 R/C 12 0 R/M 13 0 R"
                                 "/N 99 0 R/D<</Type/OCMD/OCGs 11 0 R>>>>/XObject<</X 6 0 R>>>>")
                 .object(1, "<</Type/Catalog/Pages 2 0 R/OCProperties<</OCGs[10 0 R 11 0 R 12 0 R]"
                            "/D<<" +
                                configuration + ">>>>>>")
                 .stream(6, "0 0 5 5 re f", "/Subtype/Form/OC 11 0 R")
                 .object(10, "<</Type/OCG/Name(A)>>")
                 .object(11, "<</Type/OCG/Name<FEFF0042>>>")
                 .object(12, "<</Type/OCG/Name(C)>>")
                 .object(13, "<</Type/OCMD" + membership + ">>")
                 .object(14, condition)
                 .bytes());
        return structureText(document(), importedArt());
    }
};

TEST_F(OptionalContentTest, MarkedContentIsAGroup) {
    struct Row {
        const char* name;
        const char* content;
        const char* seen;
    };
    const Row rows[] = {
        {"shown and hidden", "/OC/A BDC 0 0 1 1 re f EMC /OC/B BDC 0 0 2 2 re f EMC 0 0 3 3 re f",
         "+A(0,0 1,1@0:0) -B(0,0 2,2@0:1) 0,0 3,3@0:2"},
        {"within one another and other marks",
         "/OC/A BDC /P BMC /OC/B BDC /OC/B BDC 0 0 1 1 re f EMC EMC EMC 0 0 2 2 re f EMC EMC",
         "+A(-B(0,0 1,1@0:0) 0,0 2,2@0:1)"},
        {"nothing in it, and none such", "/OC/A BDC q EMC Q /OC/N BDC 0 0 1 1 re f EMC",
         "0,0 1,1@0:0"},
        {"a form", "/X Do", "-B(6.1(0,0 5,5@1:0)@0:0)"},
        {"around q", "/OC/A BDC q 0 0 1 1 re f q 0 0 2 2 re f Q 0 0 4 4 re f Q EMC 0 0 3 3 re f",
         "+A(0,0 1,1@0:0 0,0 2,2@0:1 0,0 4,4@0:2) 0,0 3,3@0:3"},
        {"in q, behind a group", "q q 0 0 1 1 re f Q /OC/A BDC 0 0 2 2 re f EMC 0 0 3 3 re f Q",
         "0,0 1,1@0:0 +A(0,0 2,2@0:1) 0,0 3,3@0:2"},
        {"Q within it", "q /OC/B BDC 0 0 1 1 re f Q 0 0 2 2 re f EMC 0 0 3 3 re f",
         "-B(0,0 1,1@0:0) -B(0,0 2,2@0:1) 0,0 3,3@0:2"},
        {"q within it goes on", "/OC/B BDC q 0 0 1 1 re f EMC 0 0 2 2 re f Q 0 0 3 3 re f",
         "-B(0,0 1,1@0:0) 0,0 2,2@0:1 0,0 3,3@0:2"},
        {"and its clip", "/OC/B BDC q 0 0 9 9 re W n 0 0 1 1 re f EMC 0 0 2 2 re f Q 0 0 3 3 re f",
         "-B(<0,0 1,1@0:0 0,0 9,9@0:0>) <0,0 2,2@0:1 0,0 9,9@0:0> 0,0 3,3@0:2"},
        {"one after the other",
         "/OC/A BDC 0 0 1 1 re f EMC q /OC/A BDC 0 0 2 2 re f EMC "
         "/OC/A BDC 0 0 3 3 re f EMC Q /OC/B BDC EMC /OC/A BDC 0 0 4 4 re f EMC",
         "+A(0,0 1,1@0:0 0,0 2,2@0:1 0,0 3,3@0:2) +A(0,0 4,4@0:3)"},
        {"and a clip alone", "/OC/B BDC q 0 0 9 9 re W n EMC 0 0 2 2 re f Q",
         "<0,0 2,2@0:0 0,0 9,9@0:0>"},
        {"one without an end", "q /OC/A BDC 0 0 1 1 re f", "+A(0,0 1,1@0:0)"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(seen(row.content), row.seen) << row.name;
    }
    seen("/OC/C BDC 0 0 1 1 re f EMC");
    EXPECT_TRUE(document().contentLayers().facts(ContentLayer{1}).isLocked);
    EXPECT_EQ(document().contentLayers().facts(ContentLayer{1}).object, 12);
}

TEST_F(OptionalContentTest, WhatShows) {
    struct Row {
        const char* membership;
        bool isShown;
        const char* configuration = "/OFF[11 0 R]";
    };
    std::string deep = "11 0 R";
    for (int i = 0; i < 60; ++i) {
        deep = "[/Not " + deep + "]";
    }
    deep = "/VE" + deep;
    // Past a budget of conditions all show.
    const auto times = [](const std::string& text, int count) {
        std::string all;
        for (int i = 0; i < count; ++i) {
            all += text;
        }
        return all;
    };
    const std::string many = "/VE[/And" + times(" 14 0 R", 1200) + "[/Not 10 0 R]]";
    const std::string thousand = "[/And" + times(" 10 0 R", 1000) + "]";
    const Row rows[] = {
        {"/OCGs[10 0 R 11 0 R]", true},
        {"/OCGs[10 0 R 11 0 R]/P/AllOn", false},
        {"/OCGs[10 0 R 11 0 R]/P/AnyOff", true},
        {"/OCGs[10 0 R 11 0 R]/P/AllOff", false},
        {"/OCGs 11 0 R", false},
        {"/OCGs[]", true},
        {"/OCGs[10 0 R]/VE[/Not 10 0 R]", false},
        {"/VE[/And 10 0 R[/Not 11 0 R]]", true},
        {"/VE[/Or 11 0 R[/Not 10 0 R]]", false},
        {"/OCGs 10 0 R", false, "/BaseState/OFF"},
        {"/OCGs 10 0 R", true, "/BaseState/OFF/ON[10 0 R]"},
        {deep.c_str(), true},
        {many.c_str(), true},
    };
    for (const Row& row : rows) {
        seen("/OC/M BDC 0 0 1 1 re f EMC", row.membership, row.configuration, thousand);
        EXPECT_EQ(document().contentLayers().facts(ContentLayer{1}).isVisible, row.isShown)
            << row.membership << row.configuration;
    }
}

TEST_F(OptionalContentTest, DirectDictionariesAreToldOnce) {
    EXPECT_EQ(seen("/OC/D BDC 0 0 1 1 re f EMC 0 0 2 2 re f /OC/D BDC 0 0 3 3 re f EMC"),
              "-B(0,0 1,1@0:0) 0,0 2,2@0:1 -B(0,0 3,3@0:2)");
    EXPECT_EQ(document().contentLayers().size(), 1U);
}

TEST_F(OptionalContentTest, ClipsThatGoOnBehindAMarkAreWork) {
    std::string clip;
    for (int i = 0; i < 40'000; ++i) {
        clip += "0 0 9 9 re\n";
    }
    const std::string marked = "/OC/A BDC q " + clip + "W n 0 0 1 1 re f EMC 0 0 2 2 re f Q ";
    seen(marked);
    EXPECT_TRUE(cache_->interpreter->progress.hasRoom(0));
    seen(marked + marked + marked + marked + marked);
    EXPECT_FALSE(cache_->interpreter->progress.hasRoom(0));
}

TEST_F(OptionalContentTest, ManyMarksAreQuick) {
    std::string content;
    for (int i = 0; i < 300'000; ++i) {
        content += i % 2 == 0 ? "/OC/A BDC\n" : "/OC/B BDC\n";
    }
    EXPECT_FALSE(seen(content + "0 0 1 1 re f").empty());
}

} // namespace
} // namespace corvane
