// A save that is killed: whatever part of the update reached the disk, the file reads as before.
#include "tests/writer/save_fixture.h"

#include <filesystem>

namespace corvane {
namespace {

/// How many paths the page draws.
int countArt(Document& document) {
    int count = 0;
    for (Art art = document.firstChild(document.layerArt(document.firstLayer())); art != Art::null;
         art = document.nextSibling(art)) {
        ++count;
    }
    return count;
}

class CutTest : public SaveTest {
protected:
    /// `file` of one line, after a save of a page of two.
    std::string savedWithTwoLines(const std::string& file) {
        use("two.pdf", PdfBuilder::onePage("1 w 0 0 m 9 0 l S 0 1 m 9 1 l S").bytes());
        EXPECT_EQ(open(), 0U);
        use("in.pdf", file);
        EXPECT_EQ(save(), 0U);
        return bytes();
    }
};

TEST_F(CutTest, EveryPlaceReadsAsBeforeAndLeavesNoScar) {
    for (const char* ending : {"\n", "\r", ""}) {
        std::string file = PdfBuilder::onePage("0 0 m 9 0 l S").bytes();
        file.pop_back();
        file += ending;
        const std::string whole = savedWithTwoLines(file);
        const std::size_t line = whole.find("%Corvane update");
        ASSERT_EQ(line, file.size() + (*ending == '\0' ? 1 : 0));
        for (std::size_t length = file.size(); length <= whole.size(); ++length) {
            SCOPED_TRACE(length);
            const std::string cut = whole.substr(0, length);
            use("in.pdf", cut);
            ASSERT_EQ(open(), 0U);
            const bool complete = length + 1 >= whole.size();
            ASSERT_EQ(countArt(*document_), complete ? 2 : 1);
            ASSERT_THAT(front_.taken(), ::testing::IsEmpty()) << "nothing had to be repaired";
            ASSERT_EQ(bytes(), cut) << "reading changes nothing";
            if (length % 7 != 0) {
                continue; // every place reads; saving is tried at some
            }
            ASSERT_EQ(save(), 0U);
            const std::string again = bytes();
            // Fewer bytes of our line may be anybody's, and stay.
            const bool anonymous = length > file.size() && length < line + 8;
            const std::size_t start = complete || anonymous ? length : file.size();
            ASSERT_EQ(again.substr(0, start), cut.substr(0, start));
            const std::size_t at = again.find("%Corvane update", start);
            const char before = cut[start - 1];
            ASSERT_EQ(at, start + (before == '\n' || before == '\r' ? 0 : 1));
        }
    }
}

TEST_F(CutTest, ALongTailIsFoundFarFromTheEnd) {
    const std::string file = PdfBuilder::onePage("0 0 m 9 0 l S").bytes();
    const std::string whole = savedWithTwoLines(file);
    const std::size_t stream = whole.find("stream\n", file.size()) + 7;
    // Content that says what an end says does not make the tail whole.
    for (const std::string& content :
         {std::string(200000, ' '), "(\nstartxref\n17\n%%EOF\n)" + std::string(2000, ' '),
          std::string(70000, ' ') + "(\nstartxref\n17\n%%EOF\n)"}) {
        const std::string cut = whole.substr(0, stream) + content;
        use("in.pdf", cut);
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(countArt(*document_), 1);
        EXPECT_THAT(front_.taken(), ::testing::IsEmpty());
        ASSERT_EQ(save(), 0U);
        EXPECT_EQ(bytes().substr(0, file.size()), file);
        EXPECT_LT(bytes().size(), file.size() + 2000) << "the tail is gone";
    }
}

TEST_F(CutTest, WhatOthersAppendedIsNeverCutOff) {
    const std::string file = PdfBuilder::onePage("0 0 m 9 0 l S").bytes();
    const std::string whole = savedWithTwoLines(file);
    const std::size_t section = whole.rfind("xref\n0 1");
    const std::string foreign = "\ntrailer <</Size 9/Root 1 0 R/Prev " + std::to_string(section) +
                                ">> startxref " + std::to_string(whole.size()) + " %%EOF";
    struct Row {
        const char* name;
        std::string file;
        int art;
    };
    for (const Row& row : {
             // An end that does not stand on a line of its own, so that the search goes far back.
             Row{"an update of another form", whole + "xref 0 0 " + foreign, 2},
             Row{"text behind the end", whole + std::string(600, '-'), 2},
             Row{"a line that names another place",
                 file + "%Corvane update of a file of 0000000017 bytes\n5 0 obj", 1},
             Row{"such a line in a foreign file", file + "%Corvane update of a file\n", 1},
         }) {
        use("in.pdf", row.file);
        ASSERT_EQ(open(), 0U) << row.name;
        EXPECT_EQ(countArt(*document_), row.art) << row.name;
        front_.taken();
        if (save() == 0) {
            EXPECT_EQ(bytes().substr(0, row.file.size()), row.file) << row.name;
        } else {
            EXPECT_EQ(bytes(), row.file) << row.name;
            EXPECT_THAT(front_.taken(), ::testing::ElementsAre("error 22")) << row.name;
        }
    }
}

} // namespace
} // namespace corvane
