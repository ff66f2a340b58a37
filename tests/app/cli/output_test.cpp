#include "app/cli/files/output.h"

#include "app/cli/fault.h"
#include "app/cli/files/font_folder.h"
#include "app/cli/files/image_folder.h"
#include "tests/support/process.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;
using test::TemporaryFolder;
using Names = std::vector<std::string>;

/// The fault of writing `text` to `path`, if there was one.
std::optional<Fault> write(const std::string& path, const std::string& text,
                           const std::string& input = "/", bool isChosen = true) {
    try {
        OutputFile file(outputTarget(path, input, isChosen));
        file.commit(file.write(text));
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.fault();
    }
}

TEST(Output, AppearsWholeOrNotAtAll) {
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "a.svg").string();
    {
        OutputFile file(outputTarget(path, "/", true));
        EXPECT_FALSE(file.write("half"));
        EXPECT_FALSE(fs::exists(path));
    }
    EXPECT_EQ(folder.names(), Names{}) << "an abandoned file leaves nothing";

    EXPECT_FALSE(write(path, "one"));
    EXPECT_EQ(fileBytes(path), "one");
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    {
        OutputFile file(outputTarget(path, "/", true));
        EXPECT_FALSE(file.write("half"));
        EXPECT_THROW(file.commit(std::make_error_code(std::errc::no_space_on_device)), Failure);
    }
    EXPECT_EQ(fileBytes(path), "one") << "what was there is untouched";
    EXPECT_FALSE(write(path, "two"));
    EXPECT_EQ(fileBytes(path), "two");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(folder.names(), Names{"a.svg"});
}

TEST(Output, NewFilesHaveThePermissionsOfTheUmask) {
    const TemporaryFolder folder;
    const mode_t former = umask(027);
    EXPECT_FALSE(write((folder.path() / "a.svg").string(), "x"));
    umask(former);
    struct stat facts {};
    ASSERT_EQ(stat((folder.path() / "a.svg").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0640U);
}

TEST(Output, LinksAreFollowedAndKept) {
    const TemporaryFolder folder;
    folder.add("real.svg", "old");
    fs::create_symlink("real.svg", folder.path() / "link.svg");
    EXPECT_FALSE(write((folder.path() / "link.svg").string(), "new"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "link.svg"));
    EXPECT_EQ(fileBytes(folder.path() / "real.svg"), "new");
}

TEST(Output, NeverReplacesThePdfNorAFileThatNobodyNamed) {
    const TemporaryFolder folder;
    const std::string pdf = folder.add("in.pdf", "%PDF-1.4");
    fs::create_symlink("in.pdf", folder.path() / "soft.svg");
    fs::create_hard_link(pdf, folder.path() / "hard.svg");
    for (const char* name : {"in.pdf", "./in.pdf", "soft.svg", "hard.svg"}) {
        const auto fault = write((folder.path() / name).string(), "lost", pdf);
        ASSERT_TRUE(fault) << name;
        EXPECT_EQ(fault->code, code::io);
    }
    EXPECT_EQ(fileBytes(pdf), "%PDF-1.4");

    const std::string edited = folder.add("in-page1.svg", "hours of work");
    EXPECT_TRUE(write(edited, "lost", pdf, false));
    EXPECT_EQ(fileBytes(edited), "hours of work");

    // One that comes while the page is read is safe too.
    const std::string late = (folder.path() / "late.svg").string();
    OutputFile file(outputTarget(late, pdf, false));
    folder.add("late.svg", "hours of work");
    EXPECT_THROW(file.commit(file.write("lost")), Failure);
    EXPECT_EQ(fileBytes(late), "hours of work");
}

TEST(Output, FaultsHaveTheirCodes) {
    const TemporaryFolder folder;
    const std::string file = folder.add("file", "");
    struct Row {
        std::string path;
        std::int32_t code;
    };
    for (const Row& row : {Row{"/dev/full", code::diskFull},
                           Row{(folder.path() / "none" / "a.svg").string(), code::io},
                           Row{file + "/a.svg", code::io}, Row{folder.path().string(), code::io},
                           Row{(folder.path() / std::string(300, 'x')).string(), code::io}}) {
        const auto fault = write(row.path, "text");
        ASSERT_TRUE(fault) << row.path;
        EXPECT_EQ(fault->code, row.code) << row.path;
        EXPECT_NE(fault->sentence.find(row.path), std::string::npos);
    }
    EXPECT_EQ(folder.names(), Names{"file"});
    EXPECT_FALSE(write("/dev/null", "text"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(Output, NamesComeFromTheInputAndFitAFileSystem) {
    EXPECT_EQ(outputName("some/folder/report.pdf", 2), "report-page2.svg");
    EXPECT_EQ(outputName("REPORT.PDF", 12), "REPORT-page12.svg");
    EXPECT_EQ(outputName("a.b", 1), "a.b-page1.svg");
    const std::string ending = "-page1.svg";
    const std::string long_ = std::string(251, 'x') + ".pdf";
    EXPECT_EQ(outputName(long_, 1), std::string(255 - ending.size(), 'x') + ending);
    // Never half a character: 245 bytes would cut the last of them.
    std::string twos;
    for (int i = 0; i < 125; ++i) {
        twos += "\xC3\xA4";
    }
    EXPECT_EQ(outputName(twos, 1), twos.substr(0, 244) + ending);
}

TEST(ImageFolder, IsMadeWhenNeededAndGoesWhenUnused) {
    const TemporaryFolder folder;
    const std::string path = (folder.path() / imageFolderName("page2.svg")).string();
    EXPECT_EQ(fs::path(path).filename(), "page2-images");
    EXPECT_EQ(imageFolderName("-"), "");
    for (const bool isKept : {false, true}) {
        {
            ImageFolder images;
            images.setPath(path);
            EXPECT_FALSE(fs::exists(path));
            EXPECT_EQ(images.use(), path);
            EXPECT_TRUE(fs::is_directory(path));
            if (isKept) {
                images.keep();
            }
        }
        EXPECT_EQ(fs::exists(path), isKept);
    }
    {
        ImageFolder again;
        again.setPath(path);
        EXPECT_EQ(again.use(), path);
    }
    EXPECT_TRUE(fs::exists(path)) << "a folder that was there stays";
    ImageFolder impossible;
    impossible.setPath("/dev/null/images");
    EXPECT_EQ(impossible.use(), "");
}

TEST(FontFolder, HasAFileForEachFace) {
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "fonts").string();
    ArtworkBudget budget(1 << 20);
    FontTable fonts(budget);
    EXPECT_EQ(writeFontFiles(fonts, path, ""), 0);
    EXPECT_FALSE(fs::exists(path)) << "a page without fonts needs no folder";

    const std::array file{std::byte{'O'}, std::byte{0}, std::byte{0xFF}};
    const auto add = [&](const char* family, std::int32_t face) {
        const Font font = fonts.add({.family = family, .isPageFont = true});
        fonts.setFile(font, face, file);
    };
    add("Corvane 0A ../../etc/Foo:[2J", 0);
    add("Corvane 0A ../../etc/Foo:[2J", 2);
    add("Corvane 1 \xE3\x82\xB4", 0);
    add("CORVANE 1 \xE3\x83\x9F", 0);
    EXPECT_EQ(writeFontFiles(fonts, path, ""), 4);
    // Again: the files are replaced.
    EXPECT_EQ(writeFontFiles(fonts, path, ""), 4);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path)) {
        names.push_back(entry.path().filename());
        EXPECT_EQ(test::fileBytes(entry.path()), std::string("O\0\xFF", 3));
    }
    std::ranges::sort(names);
    EXPECT_EQ(names, (std::vector<std::string>{"CORVANE-1-2.otf", "Corvane-0A-etc-Foo-2J-3.otf",
                                               "Corvane-0A-etc-Foo-2J.otf", "Corvane-1.otf"}));
    EXPECT_EQ(folder.names(), std::vector<std::string>{"fonts"}) << "nothing is outside";
    EXPECT_THROW(writeFontFiles(fonts, "/dev/null/fonts", ""), Failure);
}

} // namespace
} // namespace corvane
