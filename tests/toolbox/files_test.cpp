#include "tests/toolbox/toolbox_fixture.h"

#include <csignal>
#include <cstring>
#include <filesystem>
#include <span>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

class Files : public ToolboxTest {
protected:
    /// Reads `count` bytes; the text and the result.
    std::pair<std::string, OSErr> read(std::int16_t reference, std::int16_t mode,
                                       std::int32_t offset, std::int32_t count) {
        std::string text(static_cast<std::size_t>(count), '?');
        ParamBlock block;
        block.ioRefNum = reference;
        block.ioPosMode = mode;
        block.ioPosOffset = offset;
        block.ioBuffer = std::as_writable_bytes(std::span(text)).data();
        block.ioReqCount = count;
        const OSErr result = PBReadSync(&block);
        text.resize(static_cast<std::size_t>(block.ioActCount));
        mark_ = block.ioPosOffset;
        return {text, result};
    }

    std::int32_t mark_ = 0; // after the last read
};

using Bytes = std::pair<std::string, OSErr>;

TEST_F(Files, ReadsCountFromWhatTheModeSays) {
    add("ten", "0123456789");
    std::int16_t file = 0;
    ASSERT_EQ(open("ten", fsRdPerm, &file), noErr);
    EXPECT_EQ(read(file, fsAtMark, 77, 3), Bytes("012", noErr)); // the offset is ignored
    EXPECT_EQ(read(file, fsFromMark, 2, 2), Bytes("56", noErr));
    EXPECT_EQ(read(file, fsFromStart, 1, 2), Bytes("12", noErr));
    EXPECT_EQ(read(file, fsFromLEOF | noCacheMask, -3, 2), Bytes("78", noErr));
    EXPECT_EQ(mark_, 9);
    EXPECT_EQ(read(file, fsFromMark, 0, 5), Bytes("9", eofErr));
    EXPECT_EQ(read(file, fsFromMark, 0, 5), Bytes("", eofErr));
    EXPECT_EQ(read(file, fsFromMark, -11, 1), Bytes("", posErr));
    EXPECT_EQ(mark_, -11); // untouched
    EXPECT_EQ(write(file, "x"), wrPermErr);
    ASSERT_EQ(close(file), noErr);
    EXPECT_EQ(read(file, fsFromStart, 0, 1), Bytes("", rfNumErr));
    EXPECT_EQ(close(file), rfNumErr);
}

TEST_F(Files, MarkAndLengthFollowEachOther) {
    add("ten", "0123456789");
    std::int16_t file = 0;
    ASSERT_EQ(open("ten", fsRdWrPerm, &file), noErr);
    ParamBlock block;
    block.ioRefNum = file;
    const auto set = [&](std::int16_t mode, std::int32_t offset) {
        block.ioPosMode = mode;
        block.ioPosOffset = offset;
        return std::pair(PBSetFPosSync(&block), block.ioPosOffset);
    };
    using Mark = std::pair<OSErr, std::int32_t>;
    EXPECT_EQ(set(fsFromLEOF, -1), Mark(noErr, 9));
    EXPECT_EQ(set(fsFromStart, 10), Mark(noErr, 10));
    EXPECT_EQ(set(fsFromStart, 11), Mark(eofErr, 10));
    EXPECT_EQ(set(fsFromStart, -1).first, posErr);
    block.ioMisc = 4;
    EXPECT_EQ(PBSetEOFSync(&block), noErr);
    EXPECT_EQ(PBGetFPosSync(&block), noErr);
    EXPECT_EQ(block.ioPosOffset, 4);
    EXPECT_EQ(write(file, "ab"), noErr);
    EXPECT_EQ(PBFlushFileSync(&block), noErr);
    EXPECT_EQ(PBGetEOFSync(&block), noErr);
    EXPECT_EQ(block.ioMisc, 6);
    // What another descriptor appends is seen.
    fs::resize_file(path("ten"), 20);
    EXPECT_EQ(set(fsFromStart, 20), Mark(noErr, 20));
    close(file);
    EXPECT_EQ(test::fileBytes(path("ten")).substr(0, 6), "0123ab");
}

TEST_F(Files, OnlyRegularFilesOpenAndNothingWaits) {
    add("plain", "");
    fs::create_directory(path("folder"));
    ASSERT_EQ(mkfifo(path("fifo").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", path("zero"));
    fs::create_symlink("nowhere", path("broken"));
    fs::create_symlink("plain", path("link"));
    for (const std::int8_t permission : {fsRdPerm, fsRdWrPerm, fsRdWrShPerm}) {
        EXPECT_NE(open("folder", permission), noErr);
        EXPECT_EQ(open("fifo", permission), notAFileErr);
        EXPECT_EQ(open("zero", permission), notAFileErr);
        EXPECT_EQ(open("broken", permission), fnfErr);
        EXPECT_EQ(open("none", permission), fnfErr);
    }
    EXPECT_EQ(open("folder", fsRdPerm), notAFileErr);
    EXPECT_EQ(open("link", fsRdPerm), noErr);
    EXPECT_EQ(open("plain", 5), paramErr);
    for (const std::string_view name : {"", ".", "..", "a/b", "a:b", "../plain"}) {
        EXPECT_EQ(open(name, fsRdPerm), bdNamErr) << name;
    }
    EXPECT_EQ(open(std::string_view("a\0b", 3), fsRdPerm), bdNamErr);
}

TEST_F(Files, NothingGrowsPastTwoGibibytes) {
    std::int16_t file = 0;
    add("small", "");
    ASSERT_EQ(open("small", fsRdWrPerm, &file), noErr);
    ParamBlock block;
    block.ioRefNum = file;
    block.ioMisc = INT32_MAX;
    if (PBSetEOFSync(&block) == dskFulErr) {
        GTEST_SKIP() << "no sparse files here";
    }
    block.ioPosMode = fsFromLEOF;
    ASSERT_EQ(write(file, "x", block), fileBoundsErr);
    EXPECT_EQ(block.ioActCount, 0);
    close(file);
    EXPECT_EQ(fs::file_size(path("small")), std::uintmax_t{INT32_MAX});
    fs::resize_file(path("small"), std::uintmax_t{INT32_MAX} + 1);
    EXPECT_EQ(open("small", fsRdPerm), fileBoundsErr);
}

TEST_F(Files, AFullDiskIsToldFromOtherFailures) {
    FileSpecification full;
    ASSERT_EQ(makeFileSpecification("/dev/full", full), noErr);
    ParamBlock block;
    block.ioNamePtr = full.name;
    ASSERT_EQ(OpenWD(full.volume, full.directory, 0, &block.ioVRefNum), noErr);
    block.ioPermssn = fsWrPerm;
    ASSERT_EQ(PBOpenSync(&block), noErr);
    EXPECT_EQ(write(block.ioRefNum, "x"), dskFulErr);
    close(block.ioRefNum);

    add("limited", "");
    EXPECT_EQ(inAnotherProcess([&] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit = {4, 4};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  std::int16_t file = 0;
                  ParamBlock written;
                  return open("limited", fsRdWrPerm, &file) == noErr &&
                                 write(file, "123456", written) == dskFulErr &&
                                 written.ioActCount == 4
                             ? 0
                             : 1;
              }),
              0);
}

TEST_F(Files, CreationIsExclusiveAndDeletionTakesTheForkAlong) {
    EXPECT_EQ(call(PBCreateSync, "new"), noErr);
    EXPECT_EQ(call(PBCreateSync, "new"), dupFNErr);
    fs::create_symlink("nowhere", path("broken"));
    EXPECT_EQ(call(PBCreateSync, "broken"), dupFNErr);
    EXPECT_FALSE(fs::exists(path("nowhere")));
    EXPECT_EQ(call(PBGetCatInfo, "new"), noErr);
    EXPECT_EQ(call(PBGetCatInfo, "broken"), noErr);
    EXPECT_EQ(call(PBGetCatInfo, "none"), fnfErr);

    ParamBlock block;
    block.ioVRefNum = volume_;
    ASSERT_EQ(PBSetVolSync(&block), noErr);
    CreateResFile(Prefixed("new").data());
    ASSERT_EQ(ResError(), noErr);
    add("other", "");
    add("._other", "somebody's notes");
    EXPECT_EQ(call(PBDeleteSync, "new"), noErr);
    EXPECT_EQ(call(PBDeleteSync, "other"), noErr);
    EXPECT_EQ(call(PBDeleteSync, "new"), fnfErr);
    EXPECT_EQ(folder_.names(), (std::vector<std::string>{"._other", "broken"}));
    fs::create_directory(path("folder"));
    EXPECT_EQ(call(PBDeleteSync, "folder"), notAFileErr);
}

TEST_F(Files, WritersKeepEachOtherOutAndReadersNever) {
    struct Case {
        std::int8_t held;
        bool changed; // the holder has written
        std::int8_t wanted;
        OSErr result;
    };
    const std::array cases{
        Case{fsRdPerm, false, fsRdWrPerm, noErr},
        Case{fsRdWrPerm, false, fsRdPerm, noErr},
        Case{fsRdWrPerm, false, fsRdWrPerm, opWrErr},
        Case{fsRdWrPerm, false, fsWrPerm, opWrErr},
        Case{fsWrPerm, false, fsRdWrShPerm, opWrErr},
        Case{fsRdWrShPerm, false, fsRdWrPerm, noErr},
        Case{fsRdWrShPerm, false, fsRdWrShPerm, noErr},
        Case{fsRdWrShPerm, true, fsRdWrPerm, opWrErr},
        Case{fsRdWrShPerm, true, fsRdPerm, noErr},
    };
    add("shared", "");
    for (const Case& one : cases) {
        std::int16_t holder = 0;
        ASSERT_EQ(open("shared", one.held, &holder), noErr);
        if (one.changed) {
            ASSERT_EQ(write(holder, "x"), noErr);
        }
        std::int16_t other = 0;
        EXPECT_EQ(open("shared", one.wanted, &other), one.result)
            << "held " << int{one.held} << " wanted " << int{one.wanted};
        const int elsewhere = inAnotherProcess([&] {
            const ToolboxScope fresh;
            std::int16_t volume = 0;
            FileSpecification file;
            makeFileSpecification(path("shared"), file);
            OpenWD(file.volume, file.directory, 0, &volume);
            volume_ = volume;
            return -open("shared", one.wanted);
        });
        EXPECT_EQ(elsewhere, one.result == noErr && other != 0 && one.wanted != fsRdPerm &&
                                     one.wanted != fsRdWrShPerm
                                 ? -opWrErr // this process has just been given it
                                 : -one.result);
        close(other);
        close(holder);
    }
    std::int16_t last = 0;
    EXPECT_EQ(open("shared", fsRdWrPerm, &last), noErr); // all were released
}

TEST_F(Files, TwoSharedWritersDoNotMixTheirBytes) {
    add("shared", "");
    std::int16_t mine = 0;
    ASSERT_EQ(open("shared", fsRdWrShPerm, &mine), noErr);
    ASSERT_EQ(write(mine, "mine"), noErr);
    EXPECT_EQ(inAnotherProcess([&] {
                  const test::TemporaryFolder unused;
                  const ToolboxScope fresh;
                  FileSpecification file;
                  makeFileSpecification(path("shared"), file);
                  OpenWD(file.volume, file.directory, 0, &volume_);
                  return -open("shared", fsRdWrShPerm);
              }),
              -opWrErr);
    EXPECT_EQ(test::fileBytes(path("shared")), "mine");
}

TEST_F(Files, AHostsLockKeepsOtherProcessesOutAndItsOwnPlugInIn) {
    add("report.pdf", "");
    fs::create_symlink("report.pdf", path("link.pdf"));
    std::int32_t lock = 0;
    ASSERT_EQ(lockFile(path("link.pdf"), lock), noErr);
    const auto elsewhere = [&] {
        return inAnotherProcess([&] {
            const ToolboxScope fresh;
            std::int32_t other = 0;
            return -lockFile(path("report.pdf"), other);
        });
    };
    EXPECT_EQ(elsewhere(), -opWrErr);
    std::int16_t file = 0;
    EXPECT_EQ(open("report.pdf", fsRdWrShPerm, &file), noErr);
    EXPECT_EQ(write(file, "x"), noErr);
    close(file);
    EXPECT_EQ(elsewhere(), -opWrErr); // closing a file gives the host's lock not up
    unlockFile(lock);
    unlockFile(lock);
    EXPECT_EQ(elsewhere(), 0);
    EXPECT_EQ(lockFile(path("none"), lock), fnfErr);
    EXPECT_EQ(lockFile(folder_.path().string(), lock), notAFileErr);
    EXPECT_EQ(lock, 0);
}

TEST_F(Files, FinderInformationIsKeptWhereOthersLookForIt) {
    const std::string file = add("image", "");
    std::array<unsigned char, 32> attribute{};
    attribute[31] = 7; // of the extended record, which is not ours
    const char* name = "user.com.apple.FinderInfo";
    if (setxattr(file.c_str(), name, attribute.data(), attribute.size(), 0) != 0) {
        GTEST_SKIP() << "no extended attributes here";
    }
    ParamBlock block;
    ASSERT_EQ(call(PBGetFInfoSync, "image", block), noErr);
    EXPECT_EQ(block.ioFlFndrInfo, FInfo());
    const FInfo info{fourCharacters("EPSF"), fourCharacters("ZNPX"), hasCustomIcon, -2, 3, 4};
    block.ioFlFndrInfo = info;
    ASSERT_EQ(call(PBSetFInfoSync, "image", block), noErr);
    ASSERT_EQ(getxattr(file.c_str(), name, attribute.data(), attribute.size()), 32);
    EXPECT_EQ(std::memcmp(attribute.data(), "EPSFZNPX\x04\x00\xFF\xFE\x00\x03\x00\x04", 16), 0);
    EXPECT_EQ(attribute[31], 7);
    block.ioFlFndrInfo = {};
    ASSERT_EQ(call(PBGetFInfoSync, "image", block), noErr);
    EXPECT_EQ(block.ioFlFndrInfo, info);

    add("bare", "");
    block.ioFlFndrInfo = {};
    ASSERT_EQ(call(PBSetFInfoSync, "bare", block), noErr);
    EXPECT_EQ(getxattr(path("bare").c_str(), name, nullptr, 0), -1); // nothing to say, nothing kept
    EXPECT_EQ(call(PBGetFInfoSync, "none", block), fnfErr);
    EXPECT_EQ(call(PBSetFInfoSync, "none", block), fnfErr);
}

TEST_F(Files, ReferenceNumbersAreUsedAgainAndRunOutPolitely) {
    add("file", "");
    std::vector<std::int16_t> all;
    std::int16_t reference = 0;
    OSErr result = noErr;
    while ((result = open("file", fsRdPerm, &reference)) == noErr) {
        EXPECT_GT(reference, 0);
        all.push_back(reference);
    }
    EXPECT_EQ(result, tmfoErr);
    ASSERT_GT(all.size(), 100U);
    close(all[50]);
    EXPECT_EQ(open("file", fsRdPerm, &reference), noErr);
    EXPECT_EQ(reference, all[50]);
}

} // namespace
} // namespace corvane
