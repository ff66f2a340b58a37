// Updates of files whose cross-reference is a stream or names one.
#include "tests/support/revision_writer.h"
#include "tests/writer/save_fixture.h"

#include <gmock/gmock.h>

namespace corvane {
namespace {

using test::RevisionWriter;
using test::Section;
using ::testing::HasSubstr;
using ::testing::Not;

class StreamUpdateTest : public SaveTest {
protected:
    /// One line; the page is in an object stream, but for a file of tables alone.
    static std::string onePage(Section former, Section newest) {
        RevisionWriter file;
        const std::string content = "1 w 0 0 m 100 100 l S";
        file.object(1, "<</Type/Catalog/Pages 2 0 R>>")
            .object(2, "<</Type/Pages/Kids[3 0 R]/Count 1/Resources<</ProcSet[/PDF]>>>>")
            .object(4, "<</Length " + std::to_string(content.size()) + ">>stream\n" + content +
                           "\nendstream")
            .object(3, "<</Type/Page/Old true>>")
            .end(former);
        const std::string page = "<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents 4 0 R"
                                 "/Keep[2.50(\\051)]/Group 8 0 R>>";
        if (newest == Section::table) {
            file.object(3, page).object(8, "<</S/Transparency>>");
        } else {
            file.member(9, 3, page).member(9, 8, "<</S/Transparency>>");
        }
        return file.end(newest).bytes();
    }
    std::size_t countUpdates() {
        updates_.clear();
        EXPECT_EQ(call(18), 0U);
        return updates_.size();
    }
};

TEST_F(StreamUpdateTest, IsTakenOffBehindAStreamWithoutEnd) {
    const std::string whole = onePage(Section::table, Section::stream);
    for (const std::string ending : {"endstream", "endstream\nendobj"}) {
        SCOPED_TRACE(ending);
        std::string file = whole;
        const auto at = file.rfind("endstream\nendobj");
        file.replace(at, ending.size(), ending.size(), ' ');
        use("in.pdf", file);
        ASSERT_EQ(open(), 0U);
        edit();
        ASSERT_EQ(save(), 0U);
        EXPECT_EQ(countUpdates(), 3U);
        EXPECT_THAT(updates_[2], ::testing::EndsWith("ours"));
        EXPECT_EQ(call(19), 0U);
        EXPECT_THAT(front_.taken(), ::testing::Each(::testing::StartsWith("read 21")));
        EXPECT_EQ(bytes(), file);
    }
}

TEST_F(StreamUpdateTest, TakesTheFormOfTheNewestSection) {
    for (const Section former : {Section::table, Section::stream}) {
        for (const Section newest : {Section::table, Section::stream, Section::hybrid}) {
            SCOPED_TRACE(static_cast<int>(newest));
            const std::string file = onePage(former, newest);
            use("in.pdf", file);
            ASSERT_EQ(open(), 0U);
            edit();
            ASSERT_EQ(save(), 0U);
            const std::string once = bytes();
            ASSERT_TRUE(once.starts_with(file));
            const std::string update = once.substr(file.size());
            EXPECT_THAT(pageIn(update), HasSubstr("/Keep [2.50(\\051)]\n"));
            EXPECT_THAT(pageIn(update), Not(HasSubstr("/Old")));
            EXPECT_THAT(update, Not(HasSubstr("XRefStm")));
            EXPECT_EQ(update.find("\nxref\n") != std::string::npos, newest != Section::stream);
            EXPECT_EQ(update.find("/W [ 1 2 0 ]") != std::string::npos, newest == Section::stream);
            EXPECT_EQ(saved_.back().objects, newest == Section::stream ? 4 : 3);

            // It is read again, by the section alone, and goes on in its own form.
            ASSERT_EQ(open(), 0U);
            EXPECT_EQ(document_->style(firstPath()).lineWidth, 2 * fixedOne);
            edit();
            ASSERT_EQ(save(), 0U);
            EXPECT_EQ(front_.taken(), std::vector<std::string>()) << "nothing was repaired";
            EXPECT_EQ(countUpdates(), 4U);
            EXPECT_THAT(updates_[2], HasSubstr(std::to_string(saved_.front().objects)));
            EXPECT_THAT(updates_[2], ::testing::EndsWith("pages 1, D:20261121090000Z, ours"));
            EXPECT_EQ(call(19), 0U);
            EXPECT_EQ(bytes(), once);
            EXPECT_EQ(call(19), 0U);
            EXPECT_EQ(bytes(), file);
            EXPECT_NE(call(19), 0U);
            front_.taken();
            saved_.clear();
        }
    }
}

TEST_F(StreamUpdateTest, OneThatWasCutShortIsPassedOver) {
    const std::string file = onePage(Section::stream, Section::stream);
    use("in.pdf", file);
    ASSERT_EQ(open(), 0U);
    edit();
    ASSERT_EQ(save(), 0U);
    const std::string whole = bytes();
    const std::size_t end = whole.rfind("%%EOF");
    for (std::size_t length = file.size() + 8; length < end; length += 5) {
        SCOPED_TRACE(length);
        use("in.pdf", whole.substr(0, length));
        ASSERT_EQ(open(), 0U);
        ASSERT_EQ(document_->style(firstPath()).lineWidth, fixedOne);
        ASSERT_EQ(front_.taken(), std::vector<std::string>());
        ASSERT_EQ(save(), 0U);
        ASSERT_TRUE(bytes().starts_with(file));
        ASSERT_EQ(bytes().find("%Corvane update"), bytes().rfind("%Corvane update"));
    }
}

} // namespace
} // namespace corvane
