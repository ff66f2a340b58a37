// What was appended to a file, and taking it off again.
#include "tests/writer/save_fixture.h"

#include <fstream>
#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;

class HistoryTest : public SaveTest {
protected:
    /// Two pages, 3 and 7.
    static std::string twoPages(const std::string& info = "(D:20010203040506Z)") {
        return PdfBuilder::onePage("0 0 m 9 0 l S")
            .object(2, "<</Kids[3 0 R 7 0 R]/Count 2>>")
            .object(7, "<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>")
            .object(8, "<</ModDate" + info + ">>")
            .trailer("/Size 9/Root 1 0 R/Info 8 0 R")
            .bytes();
    }
    std::vector<std::string> log() {
        updates_.clear();
        EXPECT_EQ(call(18), 0U);
        return std::exchange(updates_, {});
    }
    std::uint32_t revert() {
        updates_.clear();
        return call(19);
    }
    void savePage(int page) {
        page_ = page;
        ASSERT_EQ(open(), 0U);
        ASSERT_EQ(save(), 0U);
    }
    /// An update of another program: one more object.
    static std::string foreign(const std::string& file) {
        const std::string digits = std::to_string(file.size());
        const std::size_t former = file.rfind("startxref") + 10;
        const std::string object = "20 0 obj\n7\nendobj\n";
        return file + object + "xref\n20 1\n" + std::string(10 - digits.size(), '0') + digits +
               " 00000 n \ntrailer<</Size 21/Root 1 0 R/Prev " +
               file.substr(former, file.find_first_of(" \n", former) - former) + ">>\nstartxref\n" +
               std::to_string(file.size() + object.size()) + "\n%%EOF\n";
    }
};

TEST_F(HistoryTest, LogAndRevert) {
    const std::string made = twoPages();
    use("in.pdf", made);
    EXPECT_THAT(log(), ElementsAre("0: 0+" + std::to_string(made.size()) +
                                   ", 6 objects, pages 1 2, D:20010203040506Z"));
    savePage(2);
    const std::string once = bytes();
    setenv("SOURCE_DATE_EPOCH", "1795338000", 1); // a day later
    savePage(1);
    const std::string twice = bytes();
    const std::string other = foreign(twice);
    use("in.pdf", other);
    const auto line = [](int number, const std::string& before, const std::string& after,
                         const std::string& rest) {
        return std::to_string(number) + ": " + std::to_string(before.size()) + "+" +
               std::to_string(after.size() - before.size()) + ", " + rest;
    };
    const std::string first = line(0, "", made, "6 objects, pages 1 2, D:20010203040506Z");
    const std::string second = line(1, made, once, "3 objects, pages 2, D:20261121090000Z, ours");
    const std::string third = line(2, once, twice, "3 objects, pages 1, D:20261122090000Z, ours");
    EXPECT_THAT(log(),
                ElementsAre(first, second, third, line(3, twice, other, "1 objects, pages, ")));
    EXPECT_EQ(revert(), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 25"));
    EXPECT_EQ(bytes(), other);

    // A tail that was never finished goes with the update before it.
    use("in.pdf", twice + "%Corvane update of a file of " +
                      (twice.size() < 10000 ? "000000" : "00000") + std::to_string(twice.size()) +
                      " bytes\n9 0 obj\n");
    EXPECT_EQ(revert(), 0U);
    EXPECT_THAT(updates_, ElementsAre(third));
    EXPECT_EQ(bytes(), once);
    EXPECT_EQ(revert(), 0U);
    EXPECT_THAT(updates_, ElementsAre(second));
    EXPECT_EQ(bytes(), made);
    EXPECT_EQ(revert(), resultStopped) << "the file as it was made is no update";
    EXPECT_THAT(front_.taken(), ElementsAre("error 25"));
    EXPECT_EQ(bytes(), made);
}

TEST_F(HistoryTest, EndsOfManyForms) {
    for (const char* ending : {"\n", "", "\r", "\r\n", "\n\n\n", "\n% text of somebody's\n"}) {
        std::string made = twoPages();
        made.pop_back();
        made = "From: somebody\n" + made + ending;
        use("in.pdf", made);
        savePage(1);
        const std::vector<std::string> lines = log();
        ASSERT_EQ(lines.size(), 2U);
        EXPECT_THAT(lines[0], ::testing::StartsWith("0: 0+" + std::to_string(made.size()) + ","));
        EXPECT_THAT(lines[1], ::testing::EndsWith("ours"));
        EXPECT_EQ(revert(), 0U);
        EXPECT_EQ(bytes(), made);
    }
}

TEST_F(HistoryTest, AnUpdateBehindAnUnfinishedOneIsNotOurs) {
    const std::string made = twoPages();
    for (const std::size_t left : {47U, 60U, 300U}) {
        use("in.pdf", made);
        savePage(1);
        const std::string other = foreign(bytes().substr(0, made.size() + left) + "\n");
        use("in.pdf", other);
        EXPECT_THAT(log().back(), ::testing::EndsWith("1 objects, pages, ")) << left;
        EXPECT_EQ(revert(), resultStopped);
        EXPECT_THAT(front_.taken(), ElementsAre("error 25"));
        EXPECT_EQ(bytes(), other);
        savePage(1);
        EXPECT_EQ(revert(), 0U) << left;
        EXPECT_EQ(bytes(), other);
    }
}

TEST_F(HistoryTest, WhatStandsBehindAnUpdateIsNotCutOff) {
    use("in.pdf", twoPages());
    savePage(1);
    for (const char* behind : {"x", "\n", "\n%%EOF\n"}) {
        const std::string file = bytes();
        std::ofstream(path("in.pdf"), std::ios::app) << behind;
        EXPECT_EQ(revert(), resultStopped);
        EXPECT_THAT(front_.taken(), ElementsAre("error 25"));
        EXPECT_EQ(bytes(), file + behind);
        add("in.pdf", file);
    }
    toolboxState().files.faults.truncates = true;
    const std::string file = bytes();
    EXPECT_EQ(revert(), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 18"));
    EXPECT_EQ(bytes(), file);
    EXPECT_THAT(updates_, ElementsAre());
}

TEST_F(HistoryTest, TwoSectionsOfALinearisedFileAreOneRevision) {
    // The newest section stands before the one that it goes back to.
    std::string file = PdfBuilder::onePage("").bytes();
    const std::size_t oldSection = file.rfind("xref\n0 1");
    const std::string front =
        "xref\n9 1\n0000000000 00000 f \ntrailer\n<</Size 10/Root 1 0 R/Prev ";
    const std::size_t at = file.find('\n', 20) + 1; // behind the comment
    std::string section = front + std::string(10, '0') + ">>\nstartxref\n0\n%%EOF\n";
    const std::size_t shift = section.size();
    const std::string digits = std::to_string(oldSection + shift);
    section.replace(front.size(), 10, std::string(10 - digits.size(), '0') + digits);
    for (int number = 1; number <= 4; ++number) {
        const std::size_t entry = file.find("\n" + std::to_string(number) + " 1\n", oldSection) + 5;
        const std::string moved = std::to_string(std::stoul(file.substr(entry, 10)) + shift);
        file.replace(entry, 10, std::string(10 - moved.size(), '0') + moved);
    }
    file.insert(at, section);
    file.replace(file.rfind("startxref"), std::string::npos,
                 "startxref\n" + std::to_string(at) + "\n%%EOF\n");
    use("in.pdf", file);
    EXPECT_THAT(log(),
                ElementsAre("0: 0+" + std::to_string(file.size()) + ", 4 objects, pages 1, "));
    savePage(1);
    EXPECT_EQ(log().size(), 2U);
    EXPECT_EQ(revert(), 0U);
    EXPECT_EQ(bytes(), file);
}

TEST_F(HistoryTest, ATrialWritesNothingAndTellsTheSame) {
    use("in.pdf", twoPages());
    page_ = 1;
    ASSERT_EQ(open(), 0U);
    const std::string before = bytes();
    EXPECT_EQ(call(20), 0U);
    EXPECT_EQ(bytes(), before);
    ASSERT_EQ(save(), 0U);
    ASSERT_EQ(saved_.size(), 2U);
    for (const SavedFacts& facts : saved_) {
        EXPECT_EQ(facts.page.page, 1);
        EXPECT_EQ(facts.formerLength, static_cast<std::int64_t>(before.size()));
        EXPECT_EQ(facts.length, static_cast<std::int64_t>(bytes().size()));
        EXPECT_EQ(facts.objects, 3);
        const std::string after = bytes();
        const std::size_t content = after.rfind("stream\n", after.rfind("\nendstream")) + 7;
        EXPECT_EQ(facts.contentLength,
                  static_cast<std::int64_t>(after.rfind("\nendstream") - content));
    }
    extension_.artworkDigest = &identity_;
    identity_ += 1;
    EXPECT_EQ(call(20), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 21"));
    extension_.artworkDigest = nullptr;
}

TEST_F(HistoryTest, OnlyForAHostThatKnows) {
    use("in.pdf", twoPages());
    original();
    for (const int selector : {18, 19, 20}) {
        EXPECT_EQ(call(selector), 0U);
    }
    EXPECT_EQ(bytes(), twoPages());
    extended();
    use("in.pdf", twoPages().substr(0, 600));
    EXPECT_EQ(call(18), resultStopped);
    EXPECT_EQ(call(19), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 12", "error 12"));
}

} // namespace
} // namespace corvane
