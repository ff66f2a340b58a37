#include "tests/toolbox/toolbox_fixture.h"

#include <filesystem>

namespace corvane {
namespace {

namespace fs = std::filesystem;

using Directories = ToolboxTest;

TEST_F(Directories, ASpecificationNamesTheFileItWasMadeFor) {
    fs::create_directory(path("folder"));
    fs::create_directory_symlink("folder", path("link"));
    FileSpecification file;
    for (const std::string& form :
         {path("folder/a.pdf"), path("link/a.pdf"), path("folder/../folder/./a.pdf")}) {
        ASSERT_EQ(makeFileSpecification(form, file), noErr);
        EXPECT_EQ(posixPathOf(file.volume, file.directory, file.name), path("folder/a.pdf"));
    }
    EXPECT_EQ(posixPathOf(file.volume, file.directory, nullptr), path("folder"));
    EXPECT_EQ(makeFileSpecification(path("none/a.pdf"), file), dirNFErr);
    EXPECT_EQ(makeFileSpecification("", file), bdNamErr);
    EXPECT_EQ(makeFileSpecification("folder/", file), bdNamErr);
    EXPECT_EQ(makeFileSpecification("..", file), bdNamErr);
    EXPECT_EQ(makeFileSpecification(std::string_view("a\0b", 3), file), bdNamErr);
    EXPECT_EQ(posixPathOf(wholeMachine, 99, nullptr), "");

    const fs::path before = fs::current_path();
    fs::current_path(path("folder"));
    EXPECT_EQ(makeFileSpecification("a.pdf", file), noErr);
    fs::current_path(before);
    EXPECT_EQ(posixPathOf(file.volume, file.directory, file.name), path("folder/a.pdf"));
    ASSERT_EQ(makeFileSpecification("/a.pdf", file), noErr);
    EXPECT_EQ(file.directory, fsRtDirID);
    EXPECT_EQ(posixPathOf(file.volume, file.directory, file.name), "/a.pdf");
}

TEST_F(Directories, LongAndUnsayableNamesGetAnAlias) {
    const std::string accents = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9";
    const std::array names{std::string(64, 'n'), std::string(64, 'n') + "2", std::string("a:b.pdf"),
                           "x" + accents + accents + accents + accents + ".pdf",
                           std::string(250, 'n') + ".pdf"};
    add("a-b~1.pdf", "taken"); // what the alias of "a:b.pdf" would be
    std::vector<std::string> aliases;
    for (const std::string& name : names) {
        add(name, name);
        FileSpecification file;
        ASSERT_EQ(makeFileSpecification(path(name), file), noErr);
        const std::string alias = plain(file.name);
        EXPECT_LE(alias.size(), 63U);
        EXPECT_EQ(alias.find(':'), std::string::npos);
        EXPECT_EQ(fs::path(alias).extension(), fs::path(name).extension());
        EXPECT_FALSE(fs::exists(path(alias))) << alias;
        EXPECT_EQ(std::count(aliases.begin(), aliases.end(), alias), 0);
        EXPECT_EQ(posixPathOf(file.volume, file.directory, file.name), path(name));
        EXPECT_EQ(open(alias, fsRdPerm), noErr) << alias;
        aliases.push_back(alias);

        FileSpecification again;
        ASSERT_EQ(makeFileSpecification(path(name), again), noErr);
        EXPECT_EQ(plain(again.name), alias);
    }
    EXPECT_EQ(aliases[2], "a-b~2.pdf");
    // No character of UTF-8 is split.
    EXPECT_EQ(aliases[3].size() % 2, std::string("x~1.pdf").size() % 2);
    // A file that takes an alias's name later gets one of its own.
    add(aliases[0], "");
    FileSpecification late;
    ASSERT_EQ(makeFileSpecification(path(aliases[0]), late), noErr);
    EXPECT_NE(plain(late.name), aliases[0]);
    EXPECT_EQ(posixPathOf(late.volume, late.directory, late.name), path(aliases[0]));
}

TEST_F(Directories, WorkingDirectoriesStandForADirectoryAndItsOwner) {
    std::int16_t same = 0;
    std::int16_t other = 0;
    ASSERT_EQ(OpenWD(wholeMachine, directory_, 0, &same), noErr);
    ASSERT_EQ(OpenWD(wholeMachine, directory_, fourCharacters("HST5"), &other), noErr);
    EXPECT_EQ(same, volume_);
    EXPECT_NE(other, volume_);
    EXPECT_LT(other, wholeMachine);
    EXPECT_EQ(posixPathOf(other, 0, nullptr), folder_.path());
    EXPECT_EQ(posixPathOf(other, fsRtDirID, nullptr), "/"); // a directory id wins

    std::int16_t none = 5;
    EXPECT_EQ(OpenWD(wholeMachine, 4711, 0, &none), dirNFErr);
    EXPECT_EQ(none, 0);
    EXPECT_EQ(OpenWD(17, 0, 0, &none), nsvErr);
    fs::create_directory(path("gone"));
    FileSpecification file;
    ASSERT_EQ(makeFileSpecification(path("gone/x"), file), noErr);
    fs::remove(path("gone"));
    EXPECT_EQ(OpenWD(file.volume, file.directory, 0, &none), dirNFErr);

    ParamBlock block;
    block.ioVRefNum = other;
    ASSERT_EQ(PBSetVolSync(&block), noErr);
    EXPECT_EQ(posixPathOf(0, 0, nullptr), folder_.path());
    block.ioVRefNum = 17;
    EXPECT_EQ(PBSetVolSync(&block), nsvErr);
    EXPECT_EQ(PBFlushVolSync(&block), nsvErr);
}

TEST_F(Directories, FoldersAreMadeAndDescribed) {
    ParamBlock block;
    block.ioDirID = directory_;
    ASSERT_EQ(call(PBDirCreateSync, "made", block), noErr);
    EXPECT_TRUE(fs::is_directory(path("made")));
    EXPECT_EQ(posixPathOf(wholeMachine, block.ioDirID, nullptr), path("made"));

    Prefixed name("");
    block.ioNamePtr = name.data();
    block.ioVRefNum = wholeMachine;
    block.ioFDirIndex = -1;
    ASSERT_EQ(PBGetCatInfo(&block), noErr);
    EXPECT_EQ(plain(name.data()), "made");
    EXPECT_EQ(block.ioDrParID, directory_);
    block.ioDirID = fsRtDirID;
    ASSERT_EQ(PBGetCatInfo(&block), noErr);
    EXPECT_EQ(block.ioDrParID, fsRtParID);
    block.ioFDirIndex = 1;
    EXPECT_EQ(PBGetCatInfo(&block), paramErr);
    block.ioFDirIndex = -1;
    block.ioDirID = 4711;
    EXPECT_EQ(PBGetCatInfo(&block), dirNFErr);

    block.ioDirID = directory_;
    EXPECT_EQ(call(PBDirCreateSync, "made", block), dupFNErr);
    EXPECT_EQ(call(PBDirCreateSync, "a:b", block), bdNamErr);
    EXPECT_EQ(block.ioDirID, directory_);
}

} // namespace
} // namespace corvane
