// Saves without room, without permission, near the largest file there can be, and two at once: all
// or nothing.
#include "tests/app/cli/saving.h"

#include "tests/support/pdf_builder.h"

#include <fcntl.h>
#include <fstream>
#include <future>
#include <sys/mount.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;

class SaveRoom : public Saving {
protected:
    /// Artwork of the page of "in.pdf" and of `count` triangles.
    std::string withTriangles(int count) const {
        std::string paths;
        for (int i = 0; i < count; ++i) {
            paths += "<path d=\"M" + std::to_string(i) + " 0H9V" + std::to_string(i) + "\"/>";
        }
        return replaced(artwork("in.pdf", 1), "</svg>", paths + "</svg>");
    }

    /// Artwork of a page of "in.pdf", its first path begun elsewhere.
    void addEdited(const std::string& name, int page) const {
        folder_.add(name, replaced(artwork("in.pdf", page), "d=\"M", "d=\"M7 7L"));
    }
};

TEST_F(SaveRoom, AFileThatCannotGrowStaysAsItWas) {
    const std::string old = example("harbour.pdf");
    folder_.add("in.pdf", old);
    folder_.add("a.svg", withTriangles(1000)); // more than one write
    ASSERT_EQ(run({"save", "a.svg", "in.pdf"}).status, 0);
    const std::size_t whole = bytes("in.pdf").size();
    const std::size_t step = (whole - old.size()) / (test::underAddressSanitizer ? 3 : 12);
    for (std::size_t room = old.size(); room < whole; room += step) {
        folder_.add("in.pdf", old);
        auto saving = process({"save", "a.svg", "in.pdf"});
        saving.fileSize = room;
        const auto outcome = test::run(saving);
        EXPECT_EQ(outcome.status, 1) << room;
        EXPECT_TRUE(holds(outcome.errors, "error 6: the disk is full; make room"))
            << outcome.errors;
        EXPECT_EQ(bytes("in.pdf"), old) << room;
    }
}

/// A disk of `kilobytes`; where this machine lets nobody mount one, there is none.
class TinyDisk {
public:
    TinyDisk(const fs::path& folder, int kilobytes) : folder_(folder) {
        fs::create_directory(folder);
        const std::string size = "size=" + std::to_string(kilobytes) + "k";
        isThere_ = mount("none", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
    }
    ~TinyDisk() {
        if (isThere_) {
            umount(folder_.c_str());
        }
    }
    TinyDisk(const TinyDisk&) = delete;
    TinyDisk& operator=(const TinyDisk&) = delete;
    bool isThere() const { return isThere_; }

private:
    fs::path folder_;
    bool isThere_ = false;
};

TEST_F(SaveRoom, AFullDiskLosesNothing) {
    const TinyDisk disk(folder_.path() / "disk", 16);
    if (!disk.isThere()) {
        GTEST_SKIP() << "needs to mount a disk";
    }
    const std::string old = example("harbour.pdf");
    folder_.add("disk/in.pdf", old);
    folder_.add("in.pdf", old);
    folder_.add("a.svg", withTriangles(1000));
    for (const auto& words :
         {std::vector<std::string>{"save", "a.svg", "disk/in.pdf"},
          std::vector<std::string>{"save", "a.svg", "disk/in.pdf", "--output", "disk/b.pdf"},
          std::vector<std::string>{"save", "a.svg", "disk/new.pdf"}}) {
        const auto outcome = run(words);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(holds(outcome.errors, "error 6: ")) << outcome.errors;
        EXPECT_EQ(bytes("disk/in.pdf"), old);
    }
    folder_.add("b.svg", withLine(artwork("in.pdf", 1)));
    EXPECT_EQ(run({"save", "b.svg", "disk/in.pdf"}).status, 0) << "what fits is saved";
}

TEST_F(SaveRoom, AFileThatMayNotChangeDoesNot) {
    const std::string old = example("harbour.pdf");
    const std::string path = folder_.add("in.pdf", old);
    addEdited("a.svg", 1);
    fs::permissions(path, fs::perms::owner_read);
    auto saving = process({"save", "a.svg", "in.pdf"});
    saving.obeysPermissions = true;
    const auto outcome = test::run(saving);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(holds(outcome.errors, "error 19: ")) << outcome.errors;
    saving.words.insert(saving.words.end(), {"--output", "b.pdf"});
    EXPECT_EQ(test::run(saving).status, 0);
    EXPECT_TRUE(isValid("b.pdf"));
    EXPECT_EQ(bytes("in.pdf"), old);
}

TEST_F(SaveRoom, TwoSavesAtOnceNeverMix) {
    const std::string old = example("two-pages.pdf");
    folder_.add("in.pdf", old);
    addEdited("1.svg", 1);
    addEdited("2.svg", 2);
    const auto alone = [&](const std::string& before, const std::string& svg) {
        folder_.add("in.pdf", before);
        EXPECT_EQ(run({"save", svg, "in.pdf"}).status, 0);
        return bytes("in.pdf");
    };
    const std::string first = alone(old, "1.svg");
    const std::string second = alone(old, "2.svg");
    const std::string firstThenSecond = alone(first, "2.svg");
    const std::string secondThenFirst = alone(second, "1.svg");
    const int times = test::underAddressSanitizer ? 3 : 20;
    for (int i = 0; i < times; ++i) {
        folder_.add("in.pdf", old);
        auto other = std::async(std::launch::async, [&] {
            return run({"save", "1.svg", "in.pdf"});
        });
        const auto two = run({"save", "2.svg", "in.pdf"});
        const auto one = other.get();
        const std::string now = bytes("in.pdf");
        if (one.status == 0 && two.status == 0) {
            EXPECT_TRUE(now == firstThenSecond || now == secondThenFirst);
        } else {
            const bool isFirst = one.status == 0;
            EXPECT_EQ(now, isFirst ? first : second);
            const std::string said = (isFirst ? two : one).errors;
            EXPECT_TRUE(holds(said, "error 19: another program is saving into in.pdf")) << said;
        }
    }
}

/// A page with nothing but a hole between it and the table of its objects, `length` bytes long.
void addWithHole(const fs::path& path, std::int64_t length) {
    const std::string whole = test::PdfBuilder::onePage("0 0 m 9 9 l S").bytes();
    const std::size_t table = whole.find("xref\n0 1\n");
    const std::size_t end = whole.find("startxref");
    const std::string tail = whole.substr(table, end - table) + "startxref\n";
    const std::string marker = "\n%%EOF\n";
    const std::int64_t digits = 10;
    const std::int64_t start =
        length - static_cast<std::int64_t>(tail.size() + marker.size()) - digits;
    std::ofstream file(path, std::ios::binary);
    file << whole.substr(0, table);
    file.seekp(start);
    file << tail << start << marker;
}

TEST_F(SaveRoom, NothingGrowsPastTheLargestFile) {
    constexpr std::int64_t largest = INT32_MAX;
    const fs::path path = folder_.path() / "in.pdf";
    folder_.add("one.pdf", test::PdfBuilder::onePage("0 0 m 9 9 l S").bytes());
    folder_.add("a.svg", withLine(artwork("one.pdf", 1)));
    const auto saving = [&](std::int64_t length) {
        addWithHole(path, length);
        EXPECT_EQ(static_cast<std::int64_t>(fs::file_size(path)), length);
        const auto outcome = run({"save", "a.svg", "in.pdf", "--force"});
        if (outcome.status != 0) {
            EXPECT_EQ(static_cast<std::int64_t>(fs::file_size(path)), length);
        }
        return outcome;
    };
    const auto full = saving(largest - 100);
    EXPECT_EQ(full.status, 1);
    EXPECT_TRUE(holds(full.errors, "error 23: the file would grow past 2,147,483,647 bytes"))
        << full.errors;
    const auto tooLong = saving(largest + 1);
    EXPECT_EQ(tooLong.status, 1);
    EXPECT_TRUE(holds(tooLong.errors, "error 18: the file is longer than")) << tooLong.errors;

    for (const std::int64_t room : {65536, 4000}) {
        const auto fits = saving(largest - room);
        EXPECT_EQ(fits.status, 0) << fits.errors;
        EXPECT_EQ(run({"revert", "in.pdf"}).status, 0);
        EXPECT_EQ(static_cast<std::int64_t>(fs::file_size(path)), largest - room);
        // Killed before its end, the update is passed over and cut off by the next.
        ASSERT_EQ(run({"save", "a.svg", "in.pdf", "--force"}).status, 0);
        const auto length = fs::file_size(path);
        fs::resize_file(path, length - 10);
        EXPECT_EQ(run({"save", "a.svg", "in.pdf", "--force"}).status, 0);
        EXPECT_EQ(fs::file_size(path), length);
    }
}

} // namespace
} // namespace corvane
