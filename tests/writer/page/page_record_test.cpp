// The record that a save leaves in a page, and what it says to the next one.
#include "tests/writer/save_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string line = "0 0 m 9 0 l S";

class PageRecordTest : public SaveTest {
protected:
    /// Opens a page and edits it, and says from now on that its artwork is to be saved.
    void openAsArtwork(const std::string& file) {
        use("in.pdf", file);
        ASSERT_EQ(open(), 0U);
        edit();
        opened_ = identity_;
        extension_.artworkDigest = &opened_;
    }
    void TearDown() override {
        extension_.artworkDigest = nullptr;
        extension_.artworkName = nullptr;
        SaveTest::TearDown();
    }
    /// What a save appended.
    std::string update() {
        const std::size_t former = bytes().size();
        EXPECT_EQ(save(), 0U);
        return bytes().substr(former);
    }
    static std::string baseIn(const std::string& update) {
        const std::string page = pageIn(update);
        const std::size_t at = page.find("/Base");
        return at == std::string::npos ? "" : page.substr(at, page.find(">>\n>> >>", at) - at);
    }

    std::uint64_t opened_ = 0;
};

/// What an update of another program makes of a file: one more object.
std::string updated(const std::string& file, int number, const std::string& object) {
    const std::string update = std::to_string(number) + " 0 obj\n" + object + "\nendobj\n";
    const std::string digits = std::to_string(file.size());
    const std::size_t section = file.rfind("startxref") + 10;
    return file + update + "xref\n" + std::to_string(number) + " 1\n" +
           std::string(10 - digits.size(), '0') + digits +
           " 00000 n \ntrailer<</Size 99/Root 1 0 R/Prev " +
           file.substr(section, file.find('\n', section) - section) + ">>\nstartxref\n" +
           std::to_string(file.size() + update.size()) + "\n%%EOF\n";
}

TEST_F(PageRecordTest, ResourcesThatAreThePageItself) {
    openAsArtwork(PdfBuilder::onePage(line, "/Resources 3 0 R/ExtGState<</G<</LW 2>>>>").bytes());
    ASSERT_EQ(save(), 0U);
    const std::string once = bytes();
    ASSERT_EQ(save(), 0U);
    EXPECT_EQ(bytes(), once) << "the page is what the artwork was saved as";
}

TEST_F(PageRecordTest, WhichPageItIs) {
    const std::string file = PdfBuilder::onePage(line, "/Other 1").bytes();
    use("in.pdf", file);
    ASSERT_EQ(open(), 0U);
    edit();
    const std::uint64_t opened = identity_;
    extension_.artworkDigest = &opened;
    // Saved again and again from one artwork: nobody else changed the page.
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(save(), 0U);
    }
    ASSERT_EQ(open(), 0U);
    EXPECT_NE(identity_, opened) << "it is told as it stands";
    const std::string ours = bytes();
    const std::uint64_t standing = identity_;
    extension_.artworkDigest = &standing;
    EXPECT_EQ(save(), 0U) << "artwork of the saved page";
    extension_.artworkDigest = &opened;

    // Somebody replaces the page, or its content, with an update of their own.
    const std::size_t page = ours.rfind("3 0 obj\n") + 8;
    const std::string samePage = ours.substr(page, ours.find("\nendobj", page) - page);
    const std::size_t contents = samePage.find("/Contents ") + 10;
    const int content = std::stoi(samePage.substr(contents));
    for (const std::string& changed :
         {updated(ours, 3, samePage),
          updated(ours, content, "<</Length 4>>stream\n1 w \nendstream")}) {
        use("in.pdf", changed);
        ASSERT_EQ(open(), 0U);
        EXPECT_NE(identity_, opened);
        front_.taken();
        EXPECT_EQ(save(), resultStopped);
        EXPECT_THAT(front_.taken(), ElementsAre("error 21"));
        EXPECT_EQ(bytes(), changed);
        extension_.overwrites = true;
        EXPECT_EQ(save(), 0U);
        EXPECT_THAT(front_.taken(), ElementsAre("write 1016 in in.pdf"));
        extension_.overwrites = false;
        EXPECT_EQ(save(), 0U) << "it is the artwork of that page now";
    }
    // Somebody draws it anew, with artwork that was opened from nowhere.
    extension_.artworkDigest = nullptr;
    ASSERT_EQ(save(), 0U);
    extension_.artworkDigest = &opened;
    EXPECT_EQ(save(), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 21"));
    extension_.artworkDigest = nullptr;
}

TEST_F(PageRecordTest, NewObjectsOfTheSaveBelongToThePage) {
    openAsArtwork(PdfBuilder::onePage(line).bytes());
    document_->setAppearance(firstPath(), {.opacity = .25});
    ASSERT_EQ(save(), 0U);
    const std::string ours = bytes();
    use("in.pdf", updated(ours, 90, "(any)"));
    ASSERT_EQ(save(), 0U);
    EXPECT_TRUE(saved_.back().isNothing) << "no object of the page";
    const std::size_t state = ours.rfind(" 0 obj\n<< /Type /ExtGState");
    ASSERT_NE(state, std::string::npos) << ours;
    const int number = std::stoi(ours.substr(ours.rfind('\n', state) + 1));
    const std::string changed = updated(ours, number, "<</ca .1>>");
    use("in.pdf", changed);
    front_.taken();
    EXPECT_EQ(save(), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 21"));
    EXPECT_EQ(bytes(), changed);
}

TEST_F(PageRecordTest, ArtworkOfAnyVersionOfTheDigestKeepsItsPage) {
    const std::string file =
        PdfBuilder::onePage(line, "/Resources<</XObject<</F 7 0 R>>>>/Annots[8 0 R]")
            .stream(7, "0 g", "/Subtype/Form")
            .object(8, "<</Subtype/Popup/Rect[0 0 1 1]>>")
            .bytes();
    use("in.pdf", file);
    ASSERT_EQ(open(), 0U);
    edit();
    const std::string form = "<</Subtype/Form/Length 3>>stream\n1 g\nendstream";
    const std::string annotation = "<</Subtype/Popup/Rect[0 0 2 2]>>";
    struct Row {
        std::uint64_t opened;
        const char* version;
        bool noticesForms;
    };
    // The first version's digest of this page was told by programs that knew no other.
    for (const Row& row :
         {Row{identity_, "/Version 3 ", true}, Row{0x726567DEAA0F513B, "/Version 1 ", false}}) {
        SCOPED_TRACE(row.version);
        extension_.artworkDigest = &row.opened;
        use("in.pdf", updated(file, 7, form));
        EXPECT_EQ(save(), row.noticesForms ? resultStopped : 0U);
        EXPECT_THAT(front_.taken(), row.noticesForms ? std::vector<std::string>{"error 21"}
                                                     : std::vector<std::string>{});
        use("in.pdf", updated(file, 8, annotation));
        for (int i = 0; i < 2; ++i) {
            ASSERT_EQ(save(), 0U);
            EXPECT_THAT(pageIn(bytes().substr(file.size())), HasSubstr(row.version));
        }
        extension_.artworkDigest = nullptr;
    }
}

TEST_F(PageRecordTest, TheBaseStaysThroughAllSavesOfOneArtwork) {
    struct Row {
        const char* page;
        const char* content; ///< of the base
    };
    for (const Row& row : {
             Row{"/Contents 4 0 R", "/Contents 4 0 R\n"},
             Row{"/Contents[4 0 R  null]/Resources<</A 1.123456789>>",
                 "/Contents [4 0 R  null]\n/Resources <</A 1.123456789>>\n"},
             Row{"/Contents 7 0 R/Resources 8 0 R", "/Contents 7 0 R\n/Resources 8 0 R\n"},
             Row{"/Contents 4 0 R/Resources null", "/Contents 4 0 R\n"},
         }) {
        SCOPED_TRACE(row.page);
        // Numbers of as many digits in every update.
        openAsArtwork(PdfBuilder::onePage(line)
                          .object(3, std::string("<</Type/Page/Parent 2 0 R/MediaBox[-1.5 0 70 80]"
                                                 "/CropBox[0 0 60 200]") +
                                         row.page + ">>")
                          .object(7, "[4 0 R]")
                          .object(8, "<<>>")
                          .object(9, "(" + std::string(10000, ' ') + ")")
                          .trailer("/Root 1 0 R/Size 100")
                          .bytes());
        const std::string first = update();
        EXPECT_THAT(baseIn(first),
                    HasSubstr("/Base <<\n" + std::string(row.content) +
                              "/MediaBox [ -1.5 0 70 80 ]\n/CropBox [ 0 0 60 80 ]\n/Digest <"));
        for (int i = 0; i < 3; ++i) {
            edit();
            const std::string next = update();
            EXPECT_EQ(baseIn(next), baseIn(first));
            EXPECT_EQ(next.size(), first.size());
        }
        // What is opened now has a base of its own.
        ASSERT_EQ(open(), 0U);
        edit();
        opened_ = identity_;
        EXPECT_THAT(baseIn(update()), HasSubstr("/Base <<\n/Contents 1"));
    }
}

TEST_F(PageRecordTest, AnotherArtworkOfThePageIsRefused) {
    const std::uint64_t one = 1;
    const std::uint64_t two = 2;
    const auto saving = [&](const std::uint64_t* name) {
        extension_.artworkName = name;
        front_.taken();
        save();
        const std::vector<std::string> seen = front_.taken();
        return seen.empty() ? "" : seen.front();
    };
    openAsArtwork(PdfBuilder::onePage(line).bytes());
    EXPECT_EQ(saving(&one), "");
    EXPECT_EQ(saving(&one), "");
    const std::string file = bytes();
    EXPECT_EQ(saving(&two), "error 29");
    EXPECT_EQ(bytes(), file);
    EXPECT_EQ(saving(nullptr), "") << "nobody knows";
    EXPECT_EQ(saving(&two), "");
    EXPECT_EQ(saving(&one), "error 29");
    extension_.overwrites = true;
    EXPECT_EQ(saving(&one), "write 1017 in in.pdf");
    EXPECT_EQ(saving(&one), "") << "nothing is undone any more";
    extension_.overwrites = false;
    EXPECT_EQ(saving(&two), "error 29");
    ASSERT_EQ(open(), 0U);
    opened_ = identity_;
    EXPECT_EQ(saving(&two), "") << "opened from the page as it stands";
}

TEST_F(PageRecordTest, APageDrawnAnewOverAnotherHasTheNextBase) {
    openAsArtwork(PdfBuilder::onePage(line).bytes());
    use("in.pdf", PdfBuilder::onePage("1 w").bytes());
    extension_.overwrites = true;
    EXPECT_EQ(baseIn(update()), "");
    extension_.overwrites = false;
    edit();
    const std::string next = baseIn(update());
    EXPECT_THAT(next, HasSubstr("/Contents 5 0 R\n"));
    EXPECT_THAT(next, HasSubstr("/Anew true")) << "it is not what the artwork was opened from";
    edit();
    EXPECT_EQ(baseIn(update()), next);
}

TEST_F(PageRecordTest, FormerRecordsHadNoBase) {
    openAsArtwork(PdfBuilder::onePage(line).bytes());
    ASSERT_EQ(save(), 0U);
    std::string former = bytes();
    const auto blank = [&](std::size_t at, std::size_t count) {
        former.replace(at, count, count, ' ');
    };
    const std::size_t base = former.find("/Base");
    blank(base, former.find(">>\n>> >>", base) + 3 - base);
    const std::size_t content = former.find("/Content [ ");
    blank(content + 9, 1);
    blank(former.find(']', content), 1);
    const std::string second = former;
    blank(former.find("/Version"), 10);
    for (const std::string& file : {second, former}) {
        use("in.pdf", file);
        edit();
        EXPECT_THAT(baseIn(update()), HasSubstr("/Contents 5 0 R\n"));
        use("in.pdf", file.substr(0, base) + "/Base 7" + file.substr(base + 7));
        EXPECT_EQ(save(), resultStopped) << "a base that is none";
        EXPECT_THAT(front_.taken(), ElementsAre("error 21"));
    }
}

} // namespace
} // namespace corvane
