// Saves that fail: the file is as it was, to the byte.
#include "tests/writer/save_fixture.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

namespace corvane {
namespace {

using ::testing::ElementsAre;

const std::string file = PdfBuilder::onePage("0 0 m 9 0 l S").bytes();

class FaultTest : public SaveTest {
protected:
    static FileFaults& faults() { return toolboxState().files.faults; }

    void openGood() {
        use("in.pdf", file);
        ASSERT_EQ(open(), 0U);
        front_.taken();
    }
};

TEST_F(FaultTest, DiskFullAtEveryByte) {
    for (const bool modern : {true, false}) {
        modern ? extended() : original();
        use("in.pdf",
            PdfBuilder::onePage("0 0 m 9 0 l S").trailer("/Size 5/Root 1 0 R/Info 1 0 R").bytes());
        ASSERT_EQ(open(), 0U);
        const std::string before = bytes();
        std::int64_t room = 0;
        for (;; ++room) {
            faults() = {.room = room};
            if (save() == 0) {
                break;
            }
            ASSERT_THAT(front_.taken(), ElementsAre("error 6")) << room;
            ASSERT_EQ(bytes(), before) << room;
        }
        faults() = {};
        EXPECT_EQ(bytes().size(), before.size() + static_cast<std::size_t>(room));
        EXPECT_EQ(bytes().substr(0, before.size()), before);
    }
}

TEST_F(FaultTest, FlushesThatFail) {
    for (int flushes = 0; flushes < 2; ++flushes) {
        openGood();
        faults().flushes = flushes;
        EXPECT_EQ(save(), resultStopped);
        EXPECT_THAT(front_.taken(), ElementsAre("error 18"));
        EXPECT_EQ(bytes(), file) << flushes;
    }
    faults() = {};
    EXPECT_EQ(save(), 0U);
}

TEST_F(FaultTest, AFileThatCannotBeCutBackReadsAsBefore) {
    openGood();
    faults() = {.room = 400, .truncates = true};
    EXPECT_EQ(save(), resultStopped);
    EXPECT_THAT(front_.taken(), ElementsAre("error 6")) << "the first failure is told";
    faults() = {};
    EXPECT_EQ(bytes().size(), file.size() + 400);
    EXPECT_EQ(open(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre());
    EXPECT_EQ(save(), 0U);
    EXPECT_EQ(bytes().substr(0, file.size()), file);
    EXPECT_EQ(bytes().find("%Corvane update"), file.size());
    EXPECT_EQ(bytes().rfind("%Corvane update"), file.size()) << "the tail is gone";
}

TEST_F(FaultTest, MemoryThatRunsOut) {
    openGood();
    ToolboxState& state = toolboxState();
    const std::int32_t blocks = zoneBlocksInUse();
    for (int nth = 1;; ++nth) {
        state.zone.failAllocation(nth);
        const std::uint32_t result = call(4, Action::write);
        state.zone.failAllocation(0);
        ASSERT_EQ(zoneBlocksInUse(), blocks);
        if (result == 0) {
            break;
        }
        ASSERT_EQ(bytes(), file) << nth;
        ASSERT_EQ(front_.taken().size(), 1U) << nth;
    }
    EXPECT_GT(bytes().size(), file.size());
}

/// A file that grows, or shrinks, while it is saved: at the moment when the page is drawn.
std::string meddlerPath;
std::string meddlerAppends;

bool meddle() {
    if (!meddlerPath.empty()) {
        if (!meddlerAppends.empty()) {
            std::ofstream(meddlerPath, std::ios::app) << meddlerAppends;
        } else {
            std::filesystem::resize_file(meddlerPath, 300);
        }
        meddlerPath.clear();
    }
    return false;
}

TEST_F(FaultTest, AnotherProgramInTheSameFile) {
    for (const std::size_t appended : {100000U, 30U, 0U}) {
        openGood();
        meddlerAppends = std::string(appended, 'x');
        meddlerPath = path("in.pdf");
        scope_.reset();
        scope_.emplace(*document_, meddle);
        EXPECT_EQ(call(4, Action::write), resultStopped);
        const std::vector<std::string> seen = front_.taken();
        const std::string after = bytes();
        if (appended > 0) {
            EXPECT_THAT(seen, ElementsAre("error 24"));
            EXPECT_EQ(after, file + meddlerAppends) << "neither written over nor cut off";
        } else {
            EXPECT_EQ(seen.size(), 1U);
            EXPECT_EQ(after, file.substr(0, 300)) << "not filled up with zeros";
        }
    }
}

TEST_F(FaultTest, NoRoomBelowTwoGigabytes) {
    // A sparse file of nearly 2^31 - 1 bytes whose end leads to a section at the front.
    const std::string trailer = "\n" + file.substr(file.rfind("startxref"));
    for (const std::int64_t room : {0, 100, 400, 1000000}) {
        use("in.pdf", file);
        std::filesystem::resize_file(
            path("in.pdf"), static_cast<std::uintmax_t>(std::int64_t{INT32_MAX} - room -
                                                        static_cast<std::int64_t>(trailer.size())));
        std::ofstream(path("in.pdf"), std::ios::app) << trailer;
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(save(), room == 1000000 ? 0U : resultStopped) << room;
        if (room < 1000000) {
            EXPECT_THAT(front_.taken(), ElementsAre("error 23")) << room;
            EXPECT_EQ(std::filesystem::file_size(path("in.pdf")),
                      static_cast<std::uintmax_t>(std::int64_t{INT32_MAX} - room));
        }
    }
}

TEST_F(FaultTest, FilesThatAreRefused) {
    struct Row {
        const char* name;
        std::string file;
        const char* seen;
    };
    const std::size_t section = file.rfind("xref\n0 1");
    // More than a buffer holds, and a file that cannot be cut back: what is written, stays.
    std::string content;
    for (int i = 0; i < 9000; ++i) {
        content += "0 " + std::to_string(i) + " m 9 0 l S\n";
    }
    use("in.pdf", PdfBuilder::onePage(content).bytes());
    ASSERT_EQ(open(), 0U);
    faults().truncates = true;
    for (const Row& row : {
             Row{"repaired", file.substr(0, section) + "garbage" + file.substr(section + 4),
                 "error 22"},
             Row{"encrypted", PdfBuilder::onePage("").trailer("/Root 1 0 R/Encrypt<<>>").bytes(),
                 "error 7"},
             Row{"a page within the Kids",
                 PdfBuilder::onePage("")
                     .object(2, "<</Kids[<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]>>]>>")
                     .bytes(),
                 "error 12"},
             Row{"no number left", PdfBuilder::onePage("").object(8388607, "null").bytes(),
                 "error 12"},
             Row{"a section in a stream",
                 file.substr(0, section) + "9 0 obj<</Type/XRef>>stream\nendstream endobj\n" +
                     "startxref\n" + std::to_string(section) + "\n%%EOF\n",
                 "error 22"},
         }) {
        use("in.pdf", row.file);
        extension_.wantedPage = 1;
        call(3, Action::write);
        front_.taken();
        EXPECT_EQ(call(4, Action::write), resultStopped) << row.name;
        EXPECT_THAT(front_.taken(), ElementsAre(row.seen)) << row.name;
        EXPECT_EQ(bytes(), row.file) << row.name;
    }
    original();
    struct OriginalRow {
        const char* name;
        const char* trailer;
        const char* page;
    };
    for (const OriginalRow& row :
         {OriginalRow{"no Info", "/Size 5/Root 1 0 R", "/Parent 2 0 R"},
          OriginalRow{"no Parent", "/Size 5/Root 1 0 R/Info 1 0 R", ""},
          OriginalRow{"Annots that is no reference", "/Size 5/Root 1 0 R/Info 1 0 R",
                      "/Parent 2 0 R/Annots []"}}) {
        const std::string page = std::string("<</MediaBox[0 0 9 9]/Contents 4 0 R") + row.page;
        const std::string classic =
            PdfBuilder::onePage("").object(3, page + ">>").trailer(row.trailer).bytes();
        use("in.pdf", classic);
        EXPECT_EQ(save(), resultStopped) << row.name;
        EXPECT_THAT(front_.taken(), ElementsAre("error 15")) << row.name;
        EXPECT_EQ(bytes(), classic) << row.name;
    }
}

} // namespace
} // namespace corvane
