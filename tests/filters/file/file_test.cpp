#include "filters/file/file.h"

#include "filters/file/file_names.h"
#include "filters/file/file_resources.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "tests/toolbox/toolbox_fixture.h"

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

template <class Body>
Exception raised(Body body) {
    guarded(body);
    return resetException();
}

class FileLayer : public ToolboxTest {
protected:
    void SetUp() override {
        ToolboxTest::SetUp();
        selectRules(Profile::extended);
    }
    void TearDown() override { selectRules(Profile::original); }

    Exception open(FileRecord& file, std::string_view name, std::string_view mode) {
        return raised([&] { openFile(file, volume_, name, mode); });
    }

    static std::string read(FileRecord& file, std::size_t count) {
        std::string text(count, '?');
        text.resize(
            static_cast<std::size_t>(readFile(file, std::as_writable_bytes(std::span(text)))));
        return text;
    }

    static void write(FileRecord& file, std::string_view text) {
        EXPECT_EQ(writeFile(file, std::as_bytes(std::span(text))),
                  static_cast<std::int32_t>(text.size()));
    }

    static bool isFresh(const FileRecord& file) {
        return file.volume == 0 && file.mode == 0 && file.dataRef == 0 && file.resourceRef == -1;
    }

    FInfo info(std::string_view name) {
        ParamBlock block;
        EXPECT_EQ(call(PBGetFInfoSync, name, block), noErr);
        return block.ioFlFndrInfo;
    }

    bool keepsAttributes() {
        const std::string probe = add("probe", "");
        const bool kept = setxattr(probe.c_str(), "user.probe", "x", 1, 0) == 0;
        fs::remove(probe);
        return kept;
    }
};

TEST_F(FileLayer, ReadsToTheEndAndNoFurther) {
    add("ten", "0123456789");
    FileRecord file;
    ASSERT_EQ(open(file, "ten", "read"), Exception::none);
    EXPECT_EQ(read(file, 4), "0123");
    EXPECT_EQ(markFile(file), 4);
    EXPECT_EQ(read(file, 40), "456789");
    EXPECT_EQ(read(file, 40), "");
    EXPECT_EQ(read(file, 0), "");
    EXPECT_EQ(seekFile(file, -1), 9);
    EXPECT_EQ(read(file, 1), "9");
    EXPECT_EQ(seekFile(file, 10), 10);
    EXPECT_EQ(lengthFile(file), 10);
    EXPECT_EQ(raised([&] { seekFile(file, 11); }), Exception::io);
    EXPECT_EQ(raised([&] { seekFile(file, -11); }), Exception::io);
    EXPECT_EQ(raised([&] { write(file, "x"); }), Exception::access);
    closeFile(file);
    EXPECT_TRUE(isFresh(file));
    closeFile(file);
    EXPECT_EQ(raised([&] { read(file, 1); }), Exception::io);
    EXPECT_EQ(raised([&] { markFile(file); }), Exception::io);
    EXPECT_EQ(raised([&] { lengthFile(file); }), Exception::io);
    EXPECT_EQ(raised([&] { backupFile(file, 0); }), Exception::io);
}

TEST_F(FileLayer, WritingMakesANewFileAndNeverReplacesOne) {
    FileRecord file;
    ASSERT_EQ(open(file, "new", "write"), Exception::none);
    write(file, "abc");
    EXPECT_EQ(raised([&] { read(file, 1); }), Exception::access);
    flushFile(file);
    closeFile(file);
    EXPECT_EQ(test::fileBytes(path("new")), "abc");
    EXPECT_EQ(folder_.names(), std::vector<std::string>{"new"});
    if (keepsAttributes()) {
        EXPECT_EQ(info("new").fdType, fourCharacters("PDF "));
        EXPECT_EQ(info("new").fdCreator, fourCharacters("CVRN"));
    }
    EXPECT_EQ(open(file, "new", "write"), Exception::io);
    EXPECT_EQ(test::fileBytes(path("new")), "abc");

    selectRules(Profile::original);
    ASSERT_EQ(open(file, "classic", "write"), Exception::none);
    closeFile(file);
    EXPECT_EQ(folder_.names(), (std::vector<std::string>{"._classic", "classic", "new"}));
}

TEST_F(FileLayer, AppendingStandsAtTheEndAndIsCutBack) {
    add("old", "0123456789");
    FileRecord file;
    ASSERT_EQ(open(file, "old", "append"), Exception::none);
    EXPECT_EQ(markFile(file), 10);
    EXPECT_EQ(raised([&] { read(file, 1); }), Exception::access);
    write(file, "abc");
    EXPECT_EQ(lengthFile(file), 13);
    backupFile(file, 10);
    EXPECT_EQ(markFile(file), 10);
    closeFile(file);
    EXPECT_EQ(test::fileBytes(path("old")), "0123456789");
}

TEST_F(FileLayer, OpeningTellsRefusalFromFailure) {
    add("file", "");
    fs::create_directory(path("folder"));
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    struct Case {
        std::string name;
        std::string_view mode;
        Exception code;
    };
    const std::array cases{
        Case{"file", "Read", Exception::type},
        Case{"file", "", Exception::type},
        Case{std::string(1025, 'n'), "read", Exception::type},
        Case{std::string(1024, 'n'), "read", Exception::io}, // longer than any file's
        Case{std::string(255, 'n'), "read", Exception::io},
        Case{"none", "read", Exception::io},
        Case{"none", "append", Exception::io},
        Case{"folder", "read", Exception::io},
        Case{"folder", "write", Exception::io},
        Case{"fifo", "read", Exception::io},
        Case{"../file", "read", Exception::io},
    };
    for (const Case& one : cases) {
        FileRecord file;
        EXPECT_EQ(open(file, one.name, one.mode), one.code) << one.name << " " << one.mode;
        EXPECT_EQ(file.dataRef, 0);
    }
    EXPECT_FALSE(fs::exists(path("none")));

    // Another process keeps the file: reading goes on, writing is refused.
    std::int32_t lock = 0;
    ASSERT_EQ(lockFile(path("file"), lock), noErr);
    EXPECT_EQ(inAnotherProcess([&] {
                  const ToolboxScope fresh;
                  ToolboxTest::SetUp();
                  FileRecord file;
                  const bool reads = open(file, "file", "read") == Exception::none;
                  return reads && open(file, "file", "append") == Exception::access ? 0 : 1;
              }),
              0);
    unlockFile(lock);
    if (geteuid() != 0) {
        fs::permissions(path("file"), fs::perms::owner_read);
        FileRecord file;
        EXPECT_EQ(open(file, "file", "read"), Exception::none);
        closeFile(file);
        EXPECT_EQ(open(file, "file", "append"), Exception::access);
    }
}

TEST_F(FileLayer, AFullDiskIsItsOwnException) {
    add("limited", "");
    EXPECT_EQ(inAnotherProcess([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit = {4, 4};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  FileRecord file;
                  openFile(file, volume_, "limited", "append");
                  const bool full = raised([&] { write(file, "123456"); }) == Exception::diskFull;
                  backupFile(file, 0);
                  return full && lengthFile(file) == 0 ? 0 : 1;
              }),
              0);
}

TEST_F(FileLayer, UniqueNamesAreThoseThatNothingHas) {
    EXPECT_EQ(uniqueFile(volume_, "image^0.eps"), "image0.eps");
    add("image0.eps", "");
    fs::create_directory(path("image1.eps"));
    fs::create_symlink("nowhere", path("image2.eps"));
    add("image4.eps", "");
    EXPECT_EQ(uniqueFile(volume_, "image^0.eps"), "image3.eps");
    EXPECT_EQ(uniqueFile(volume_, "^0^0"), "0^0");
    EXPECT_EQ(uniqueFile(volume_, "plain"), "plain");
    EXPECT_EQ(raised([&] { uniqueFile(volume_, "image0.eps"); }), Exception::type);
}

TEST_F(FileLayer, ResourcesGoIntoTheFileBeingWritten) {
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        const std::string name = uniqueFile(volume_, "image^0");
        FileRecord file;
        openFile(file, volume_, name, "write");
        write(file, "data");
        pushFile(file, name);
        Handle icon;
        ASSERT_EQ(PtrToHand("icon", &icon, 4), noErr);
        saveFile(icon, fourCharacters("ICN#"), -16'455, "");
        Handle picture;
        ASSERT_EQ(PtrToHand("picture", &picture, 7), noErr);
        saveFile(picture, fourCharacters("PICT"), 256, "preview");
        EXPECT_EQ(GetHandleSize(loadFile(fourCharacters("ICN#"), -16'455)), 4);
        EXPECT_EQ(GetHandleSize(loadFile(fourCharacters("PICT"), 0, "preview")), 7);
        EXPECT_FALSE(loadFile(fourCharacters("PICT"), 1));
        tossFile(file);
        EXPECT_EQ(file.resourceRef, -1);
        tossFile(file);
        closeFile(file);
        EXPECT_TRUE(fs::exists(path("._" + name)));
        EXPECT_EQ(zoneBlocksInUse(), 0);

        EXPECT_EQ(finishFile(volume_, name, fourCharacters("EPSF"), fourCharacters("ZNPX"), true),
                  noErr);
        if (keepsAttributes()) {
            EXPECT_EQ(info(name).fdType, fourCharacters("EPSF"));
            EXPECT_EQ(info(name).fdFlags, hasCustomIcon);
        }
        EXPECT_EQ(deleteFile(volume_, name), noErr);
        EXPECT_EQ(deleteFile(volume_, name), fnfErr);
        EXPECT_TRUE(folder_.names().empty());
    }
    FileRecord closed;
    closed.volume = volume_;
    add("notes", "");
    add("._notes", "no fork");
    EXPECT_EQ(raised([&] { pushFile(closed, "notes"); }), Exception::io);
    EXPECT_EQ(closed.resourceRef, -1);
    Handle nowhere;
    ASSERT_EQ(PtrToHand("x", &nowhere, 1), noErr);
    EXPECT_EQ(raised([&] { saveFile(nowhere, 1, 1); }), Exception::io);
    EXPECT_EQ(zoneBlocksInUse(), 0);
    EXPECT_EQ(finishFile(volume_, "none", 1, 1, false), fnfErr);
}

TEST_F(FileLayer, FoldersAreMadeAndSpelled) {
    std::int16_t volume = wholeMachine;
    std::int32_t directory = directory_;
    EXPECT_EQ(newDirFile(volume, directory, "made"), noErr);
    EXPECT_TRUE(fs::is_directory(path("made")));
    std::string spelled;
    EXPECT_EQ(PathNameFromDirID(directory, volume, spelled), fsRtDirID);
    std::string expected = path("made") + "/";
    std::replace(expected.begin(), expected.end(), '/', ':');
    EXPECT_EQ(spelled, "Root" + expected);

    const std::int16_t reference = workingDirRef(volume, directory);
    EXPECT_EQ(posixPathOf(reference, 0, nullptr), path("made"));
    EXPECT_EQ(workingDirRef(volume, 4711), 0);

    const std::int32_t made = std::exchange(directory, directory_);
    EXPECT_EQ(newDirFile(volume, directory, "made"), dupFNErr);
    EXPECT_EQ(newDirFile(volume, directory, "a:b"), bdNamErr);
    EXPECT_EQ(directory, directory_);
    directory = 4711;
    EXPECT_EQ(newDirFile(volume, directory, "x"), 18);
    fs::remove(path("made"));
    directory = made;
    EXPECT_EQ(newDirFile(volume, directory, "x"), 18);
    EXPECT_EQ(PathNameFromDirID(made, volume, spelled), dirNFErr);
}

} // namespace
} // namespace corvane
