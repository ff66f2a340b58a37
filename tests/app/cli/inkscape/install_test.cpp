#include "runtime/digest.h"
#include "tests/app/cli/inkscape/extensions.h"

#include <fstream>
#include <sys/stat.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using test::holds;

class Install : public Extensions {
protected:
    static void write(const fs::path& path, const std::string& bytes) {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << bytes;
    }

    /// A line of what an installation remembers.
    static std::string recorded(const std::string& name, const std::string& bytes) {
        Digest digest;
        digest.feed(std::as_bytes(std::span(bytes)));
        return std::to_string(digest.value()) + " " + name + "\n";
    }
};

TEST_F(Install, PutsAllFilesThereAndTakesThemAway) {
    for (int i = 0; i < 2; ++i) {
        const auto outcome = extensions("--install");
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_TRUE(holds(outcome.errors, "Extensions > PDF Page")) << outcome.errors;
    }
    int scripts = 0;
    for (const auto& entry : fs::directory_iterator(test::sourceFolder() / "inkscape")) {
        const fs::path name = entry.path().filename();
        EXPECT_EQ(test::fileBytes(place() / name), test::fileBytes(entry.path())) << name;
        ++scripts;
    }
    EXPECT_EQ(installed().size(), scripts + 2U) << "the program's path and the record";
    EXPECT_EQ(test::fileBytes(place() / "corvane_program"),
              (test::buildFolder() / "corvane").string() + "\n");
    write(place() / "mine.txt", "mine");
    EXPECT_EQ(extensions("--remove").status, 0);
    EXPECT_EQ(installed(), std::vector<std::string>{"mine.txt"});
    fs::remove(place() / "mine.txt");
    EXPECT_EQ(extensions("--install").status, 0);
    write(place() / "__pycache__/corvane_page.cpython-311.pyc", "made by Python of our file");
    write(place() / "__pycache__/mine.cpython-311.pyc", "made of another");
    EXPECT_EQ(extensions("--remove").status, 0);
    EXPECT_EQ(installed(), std::vector<std::string>{"__pycache__"});
    EXPECT_TRUE(fs::remove(place() / "__pycache__/mine.cpython-311.pyc"));
    EXPECT_TRUE(fs::remove(place() / "__pycache__")) << "ours is gone";
    fs::remove(place());
    EXPECT_TRUE(holds(extensions("--remove").errors, "nothing of ours"));
}

TEST_F(Install, WhatAPersonChangedStays) {
    ASSERT_EQ(extensions("--install").status, 0);
    write(place() / "corvane_save.py", "changed");
    fs::remove(place() / "corvane_open.py");
    const auto again = extensions("--install");
    EXPECT_EQ(again.status, 1);
    EXPECT_TRUE(holds(again.errors, "error 24") && holds(again.errors, "(corvane_save.py)"));
    EXPECT_FALSE(fs::exists(place() / "corvane_open.py")) << "nothing is written then";
    const auto removal = extensions("--remove");
    EXPECT_EQ(removal.status, 0);
    EXPECT_TRUE(holds(removal.errors, "warning 1050: corvane_save.py was changed"));
    EXPECT_EQ(installed(), std::vector<std::string>{"corvane_save.py"});
    EXPECT_EQ(test::fileBytes(place() / "corvane_save.py"), "changed");
}

TEST_F(Install, LinksAndPipesAreAPersonsOwn) {
    const fs::path kept = fs::path(profile()) / "kept";
    for (const char* const name : {"corvane_open.inx", "corvane_page.py", "corvane_files"}) {
        for (const bool isPipe : {false, true}) {
            ASSERT_EQ(extensions("--install").status, 0);
            const fs::path place = this->place() / name;
            write(kept, test::fileBytes(place));
            const std::string before = test::fileBytes(kept);
            fs::remove(place);
            if (isPipe) {
                ASSERT_EQ(mkfifo(place.c_str(), 0600), 0);
            } else {
                fs::create_symlink(kept, place);
            }
            const auto again = extensions("--install");
            EXPECT_EQ(again.status, 1) << name;
            EXPECT_TRUE(holds(again.errors, name)) << again.errors;
            const auto removal = extensions("--remove");
            EXPECT_TRUE(holds(removal.errors, std::string(name) + " was changed"))
                << removal.errors;
            EXPECT_TRUE(holds(removal.errors, "the rest is gone from ")) << removal.errors;
            EXPECT_TRUE(fs::exists(fs::symlink_status(place))) << name;
            EXPECT_EQ(test::fileBytes(kept), before) << name;
            EXPECT_EQ(installed(), std::vector<std::string>{name});
            EXPECT_TRUE(holds(extensions("--remove").errors, "nothing was removed from "));
            fs::remove(place);
        }
    }
}

TEST_F(Install, AFolderBehindALinkStays) {
    const fs::path real = fs::path(profile()) / "real";
    fs::create_directories(real / "cache");
    fs::create_directories(place().parent_path());
    fs::create_directory_symlink(real, place());
    ASSERT_EQ(extensions("--install").status, 0);
    write(real / "cache/corvane_page.cpython-311.pyc", "elsewhere");
    fs::create_directory_symlink("cache", real / "__pycache__");
    EXPECT_EQ(extensions("--remove").status, 0);
    EXPECT_TRUE(fs::is_symlink(place()) && fs::is_symlink(real / "__pycache__"));
    EXPECT_TRUE(fs::exists(real / "cache/corvane_page.cpython-311.pyc"));
}

TEST_F(Install, FilesOfAnotherVersionMakeRoom) {
    write(place() / "corvane_save.py", "older");
    write(place() / "corvane_gone.py", "gone");
    write(place() / "corvane_edited.py", "edited by the person");
    write(place() / "corvane_files",
          recorded("corvane_save.py", "older") + recorded("corvane_gone.py", "gone"));
    EXPECT_EQ(extensions("--install").status, 0);
    EXPECT_FALSE(fs::exists(place() / "corvane_gone.py"));
    EXPECT_NE(test::fileBytes(place() / "corvane_save.py"), "older");
    EXPECT_TRUE(fs::exists(place() / "corvane_edited.py"));
}

TEST_F(Install, AFileThatIsNoRecordIsAPersonsOwn) {
    const fs::path record = place() / "corvane_files";
    write(fs::path(profile()) / "kept", "kept");
    for (const std::string& text :
         {std::string("my corvane files\n"), recorded("../../kept", "kept"), std::string("\n"),
          recorded("corvane_save.py", "older") + "12\n", "9f" + recorded("two words", "")}) {
        write(record, text);
        const auto outcome = extensions("--install");
        EXPECT_EQ(outcome.status, 1) << text;
        EXPECT_TRUE(holds(outcome.errors, "(corvane_files)")) << outcome.errors;
        EXPECT_EQ(installed(), std::vector<std::string>{"corvane_files"});
        EXPECT_TRUE(holds(extensions("--remove").errors, "corvane_files was changed"));
        EXPECT_EQ(test::fileBytes(record), text);
    }
    EXPECT_TRUE(fs::exists(fs::path(profile()) / "kept")) << "a record leads nowhere else";
}

TEST_F(Install, AFullDiskLeavesNothingThatInkscapeWouldStart) {
    auto full = alone(process({"inkscape", "--install"}));
    full.fileSize = 4096; // less than the longest script
    EXPECT_EQ(test::run(full).status, 1);
    for (const std::string& name : installed()) {
        EXPECT_FALSE(name.ends_with(".inx")) << name;
        EXPECT_FALSE(name.starts_with(".")) << name;
        EXPECT_EQ(test::fileBytes(place() / name).empty(), false) << name;
    }
    EXPECT_EQ(extensions("--install").status, 0);
}

TEST_F(Install, InkscapeSaysWhereItsFolderIs) {
    struct Row {
        const char* says; ///< of a program with the name of Inkscape; null: there is none
        const char* folder;
    };
    for (const Row& row :
         {Row{"echo warning; echo $PWD/said", "said"}, Row{"echo nonsense", "config/inkscape"},
          Row{"kill -9 $$", "config/inkscape"}, Row{nullptr, "config/inkscape"}}) {
        fs::remove_all(folder_.path() / "bin");
        fs::create_directory(folder_.path() / "bin");
        if (row.says != nullptr) {
            const auto fake =
                folder_.add("bin/inkscape", std::string("#!/bin/sh\n") + row.says + "\n");
            fs::permissions(fake, fs::perms::owner_all);
        }
        auto command = process({"inkscape", "--install"});
        command.environment.emplace_back("PATH", path("bin"));
        command.environment.emplace_back("INKSCAPE_PROFILE_DIR", "");
        command.environment.emplace_back("XDG_CONFIG_HOME", path("config"));
        const auto outcome = test::run(command);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_TRUE(fs::exists(folder_.path() / row.folder / "extensions/corvane/corvane_open.inx"))
            << outcome.errors;
        EXPECT_EQ(holds(outcome.errors, "not installed here"), row.says == nullptr);
        fs::remove_all(folder_.path() / row.folder);
    }
}

} // namespace
} // namespace corvane
