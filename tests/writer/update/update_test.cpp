// What a save appends, byte by byte.
#include "tests/writer/save_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string line = "1 w 0 0 m 100 100 l S";

/// The update as it should be: "@name@" notes a place of the file and "#name#" says it in ten
/// digits, "$name$" without zeros in front. A name that is used in front of a place is as long as
/// it has digits, less two.
std::string placed(std::size_t former, std::string text) {
    std::map<std::string, std::size_t> places;
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at)) {
        const std::size_t end = text.find('@', at + 1);
        places[text.substr(at + 1, end - at - 1)] = former + at;
        text.erase(at, end + 1 - at);
    }
    for (const char sign : {'#', '$'}) {
        for (std::size_t at = text.find(sign); at != std::string::npos; at = text.find(sign, at)) {
            const std::size_t end = text.find(sign, at + 1);
            std::string digits = std::to_string(places.at(text.substr(at + 1, end - at - 1)));
            if (sign == '#') {
                digits.insert(0, 10 - digits.size(), '0');
            }
            text.replace(at, end + 1 - at, digits);
        }
    }
    return text;
}

/// The content stream that an update holds, which the tests of the art walk look at.
std::string contentIn(const std::string& update) {
    const std::size_t at = update.find("stream\n") + 7;
    return update.substr(at, update.find("\nendstream", at) - at);
}

TEST_F(SaveTest, OriginalUpdate) {
    const std::string file = PdfBuilder::onePage(line, "/Annots 4 0 R/Group<<>>")
                                 .trailer("/Size 50/Root 1 0 R/Info 4 0 R/ID[<01><02>]/XRefStm 9")
                                 .bytes();
    original();
    const std::string update = saved(file);
    const std::string content = contentIn(update);
    EXPECT_EQ(update, [&] {
        std::string text = "5 0 obj\n<<\n/Length 6 0 R\n>>\nstream\n" + content +
                           "\nendstream\nendobj\n@length@6 0 obj\n" +
                           std::to_string(content.size()) +
                           " \nendobj\n@p@3 0 obj\n<<\n/Type /Page\n/Parent 2 0 R\n"
                           "/Annots 4 0 R\n/Contents 5 0 R\n/Resources <<\n/ProcSet [ /PDF ]\n>>\n"
                           "/Rotate 0\n/MediaBox [ 0 0 612 792 ]\n/CropBox [ 0 0 612 792 ]\n>>\n"
                           "endobj\n@section@xref\n0 1 \n0000000000 65535 f \n3 1 \n#p# 00000 n "
                           "\n5 1 \n#c# 00000 n \n6 1 \n#length# 00000 n \ntrailer\n<<\n"
                           "/Size 7 \n/Prev " +
                           file.substr(file.rfind("startxref") + 10,
                                       file.rfind("\n%%EOF") - file.rfind("startxref") - 10) +
                           " \n/Root 1 0 R\n/Info 4 0 R\n>>\nstartxref\n$section$ \n%%EOF\n";
        text.insert(0, "@c@");
        return placed(file.size(), text);
    }());
}

TEST_F(SaveTest, ExtendedUpdate) {
    // The file ends without an end of line, its header stands behind other bytes, and objects that
    // only its cross-reference stream knows may have every number below 50.
    std::string plain =
        PdfBuilder::onePage(line, "/Annots[4 0 R]/Rotate 90/MediaBox[-5 0 100 200]")
            .object(3, "<</Type/Page/Parent 2 0 R/Contents 4 0 R/Annots[4 0 R]/Rotate 90/MediaBox"
                       "[-5 0 100.5 200]>>")
            .trailer("/Size 50/Root 1 0 R/ID[<01><02>]")
            .bytes();
    plain.pop_back();
    const std::string junk = "From: somebody\n";
    const std::string file = junk + plain;
    // A host that cannot hold the page a second time: it is drawn anew, over its base.
    extension_.version = 2;
    extension_.artworkDigest = &identity_;
    const std::string update = saved(file);
    const std::string content = contentIn(update);
    EXPECT_THAT(content, ::testing::StartsWith("0 1 -1 0 100.5 0 cm\n"));
    const std::string origin = update.substr(update.find("/Origin <") + 9, 16);
    const std::string written = update.substr(update.find("/Update <") + 9, 16);
    const std::string digest = update.substr(update.find("/Digest <") + 9, 16);
    const std::string identifier = update.substr(update.find("/ID [ <01> <") + 12, 32);
    const std::string number = std::to_string(file.size());
    EXPECT_EQ(
        update,
        placed(file.size() - junk.size(),
               "\n%Corvane update of a file of " + std::string(10 - number.size(), '0') + number +
                   " bytes\n@c@@contents@50 0 obj\n<<\n/Length 51 0 R\n>>\nstream\n" + content +
                   "\nendstream\nendobj\n@length@51 0 obj\n" + std::to_string(content.size()) +
                   " \nendobj\n@p@@pagehere@3 0 obj\n<<\n/Type /Page\n/Parent 2 0 R\n"
                   "/Annots [4 0 R]\n/Rotate 90\n/MediaBox [-5 0 100.5 200]\n"
                   "/Contents 50 0 R\n/Resources <<\n/ProcSet [ /PDF ]\n>>\n"
                   "/LastModified (D:20261121090000Z)\n/PieceInfo <<\n/Corvane << "
                   "/LastModified (D:20261121090000Z) /Private <<\n/Origin <" +
                   origin + ">\n/Version 3 \n/Update <" + written +
                   ">\n/Page #pagehere# /Content [ "
                   "#contents# ]\n/Made [ 50 51 ]\n"
                   "/Base <<\n/Contents 4 0 R\n/MediaBox [ -5 0 100.5 200 ]\n"
                   "/CropBox [ -5 0 100.5 200 ]\n/Digest <" +
                   digest +
                   ">\n>>\n>> >>\n>>\n>>\nendobj\n"
                   "@section@xref\n0 1 \n0000000000 65535 f \n3 1 \n#p# 00000 n \n50 1 \n"
                   "#c# 00000 n \n51 1 \n#length# 00000 n \ntrailer\n<<\n/Size 52 \n"
                   "/Prev " +
                   plain.substr(plain.rfind("startxref") + 10,
                                plain.rfind("\n%%EOF") - plain.rfind("startxref") - 10) +
                   " \n/Root 1 0 R\n/ID [ <01> <" + identifier +
                   "> ]\n>>\nstartxref\n$section$ \n%%EOF\n"));
    EXPECT_EQ(origin.find_first_not_of("0123456789ABCDEF"), std::string::npos);
    EXPECT_EQ(digest.find_first_not_of("0123456789ABCDEF"), std::string::npos);
    EXPECT_EQ(identifier.find_first_not_of("0123456789ABCDEF"), std::string::npos);
    // The same save writes the same bytes; another one another identifier.
    EXPECT_EQ(saved(file), update);
    setenv("SOURCE_DATE_EPOCH", "951782400", 1); // 2000-02-29 00:00:00 UTC
    const std::string later = saved(file);
    EXPECT_THAT(later, HasSubstr("(D:20000229000000Z)"));
    EXPECT_THAT(later, Not(HasSubstr(identifier)));
    extension_.artworkDigest = nullptr;
    extension_.version = HostExtension::currentVersion;
}

TEST_F(SaveTest, Trailers) {
    struct Row {
        const char* name;
        const char* entries;
        const char* written; ///< behind Prev
    };
    for (const Row& row : {
             Row{"nothing but Root", "/Root 1 0 R", "/Root 1 0 R\n>>"},
             Row{"Info", "/Root 1 0 R/Info 4 0 R", "/Root 1 0 R\n/Info 4 0 R\n>>"},
             Row{"an Info that is null", "/Root 1 0 R/Info null", "/Root 1 0 R\n>>"},
             Row{"an ID of text", "/Root 1 0 R/ID[(a\\000b)(c)]", "/ID [ <610062> <"},
             Row{"an ID by reference", "/Root 1 0 R/ID 7 0 R", "/ID [ <AB> <"},
             Row{"an ID of one", "/Root 1 0 R/ID[<AB>]", "/ID [ <AB> <"},
             Row{"an ID of other things", "/Root 1 0 R/ID[1 2]", "/Root 1 0 R\n>>"},
             Row{"an empty ID", "/Root 1 0 R/ID[]", "/Root 1 0 R\n>>"},
             Row{"an ID that is none", "/Root 1 0 R/ID 1", "/Root 1 0 R\n>>"},
         }) {
        const std::string update =
            saved(PdfBuilder::onePage(line).object(7, "[<AB> 8 0 R]").trailer(row.entries).bytes());
        EXPECT_THAT(update.substr(update.find("/Prev")), HasSubstr(row.written)) << row.name;
        EXPECT_EQ(open(), 0U) << row.name;
        EXPECT_THAT(front_.taken(), ElementsAre()) << row.name;
    }
    for (const auto& [size, written] : {std::pair{"/Size 3", "/Size 7 "},
                                        {"/Size 1000", "/Size 1002 "},
                                        {"/Size 8388607", "/Size 8388607 "},
                                        {"/Size 2000000000", "/Size 2000000000 "},
                                        {"/Size 7.5", "/Size 7 "},
                                        {"/Size -4", "/Size 7 "},
                                        {"/Size 4 0 R", "/Size 7 "},
                                        {"", "/Size 7 "}}) {
        EXPECT_THAT(
            saved(PdfBuilder::onePage(line).trailer(std::string("/Root 1 0 R") + size).bytes()),
            HasSubstr(written))
            << size;
    }
}

TEST_F(SaveTest, WhatOthersWroteAgainstTheRules) {
    struct Row {
        const char* name;
        const char* trailer;
        const char* page; ///< "3 0 obj" and its body
        const char* written;
    };
    const std::string usual = "3 0 obj\n<</Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R>>";
    for (const Row& row : {
             Row{"Info in the trailer", "/Root 1 0 R/Info<</Title(a\r\n\\)b)/N 1.23456789>>",
                 usual.c_str(), "/Root 1 0 R\n/Info <</Title(a\r\n\\)b)/N 1.23456789>>\n>>"},
             Row{"an Info that is none", "/Root 1 0 R/Info 7", usual.c_str(), "/Info 7\n>>"},
             Row{"Root in the trailer", "/Root<</Pages 2 0 R>>/Info 4 0 R", usual.c_str(),
                 "/Info 4 0 R\n/Root <</Pages 2 0 R>>\n>>"},
             Row{"an ID that is damaged", "/Root 1 0 R/ID 9 0 R/Size 9 0 R", usual.c_str(),
                 "/Root 1 0 R\n>>"},
             Row{"half an ID that is damaged", "/Root 1 0 R/ID[9 0 R<12>]", usual.c_str(),
                 "/Root 1 0 R\n>>"},
             Row{"no Parent", "/Root 1 0 R", "3 0 obj\n<</MediaBox[0 0 9 9]/Contents 4 0 R>>",
                 "3 0 obj\n<<\n/Type /Page\n/MediaBox [0 0 9 9]\n/Contents 10"},
             Row{"a Parent that is none", "/Root 1 0 R",
                 "3 0 obj\n<</MediaBox[0 0 9 9]/Contents 4 0 R/Parent<</Rotate 90>>>>",
                 "3 0 obj\n<<\n/Type /Page\n/MediaBox [0 0 9 9]\n/Parent <</Rotate 90>>\n"},
             Row{"another generation", "/Root 1 0 R",
                 "3 7 obj\n<</MediaBox[0 0 9 9]/Contents 4 0 R>>", "3 7 obj\n<<\n/Type /Page\n"},
         }) {
        SCOPED_TRACE(row.name);
        const bool isSeventh = row.page[2] == '7';
        std::string file = PdfBuilder::onePage(line)
                               .object(2, isSeventh ? "<</Kids[3 7 R]>>" : "<</Kids[3 0 R]>>")
                               .object(3, row.page + 8)
                               .object(9, "<</Damaged")
                               .trailer(row.trailer)
                               .bytes();
        if (isSeventh) {
            file[file.find("3 0 obj") + 2] = '7';
            file[file.find("3 1\n", file.rfind("xref\n0 1")) + 4 + 15] = '7';
        }
        const std::string update = saved(file);
        EXPECT_THAT(update, HasSubstr(row.written));
        ASSERT_EQ(open(), 0U);
        const std::uint64_t identity = identity_;
        EXPECT_THAT(front_.taken(), ElementsAre());
        EXPECT_NE(firstArt(), Art::null);
        extension_.artworkDigest = &identity;
        EXPECT_EQ(save(), 0U) << "again";
        extension_.artworkDigest = nullptr;
    }
}

TEST_F(SaveTest, APageInTwoPlacesIsTold) {
    saved(PdfBuilder::onePage(line).object(2, "<</Kids[3 0 R 3 0 R]/Count 2>>").bytes());
    saved(PdfBuilder::onePage(line).bytes());
    ASSERT_EQ(saved_.size(), 2U);
    EXPECT_EQ(saved_[0].places, 2);
    EXPECT_EQ(saved_[1].places, 1);
}

TEST_F(SaveTest, PagesBesideAreUntouched) {
    for (const bool modern : {true, false}) {
        // Of two pages that say the same, the one that was asked for is replaced.
        page_ = 3;
        extended();
        use("in.pdf", PdfBuilder::onePage(line)
                          .object(2, "<</Kids[3 0 R 7 0 R 8 0 R]/Count 3>>")
                          .object(7, "<</Parent 2 0 R/MediaBox[0 0 9 9]>>")
                          .object(8, "<</Parent 2 0 R/MediaBox[0 0 9 9]>>")
                          .trailer("/Root 1 0 R/Info 4 0 R")
                          .bytes());
        ASSERT_EQ(open(), 0U);
        if (!modern) {
            original();
        }
        ASSERT_EQ(call(4, Action::write), 0U);
        EXPECT_THAT(bytes(), HasSubstr("\n8 0 obj\n<<\n/Type /Page\n"));
        EXPECT_THAT(bytes(), Not(HasSubstr("\n7 0 obj\n<<\n/Type /Page\n")));
        front_.taken();
    }
}

} // namespace
} // namespace corvane
