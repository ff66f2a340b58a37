// Files as a server finds them, and their beginnings as it copies them.
#include "app/web/served_files.h"

#include "app/cli/fault.h"
#include "app/web/file_start.h"
#include "app/web/limits.h"
#include "tests/app/cli/json/json_value.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(ServedFiles, AreTheFirstByNameOfALongFolder) {
    const test::TemporaryFolder folder;
    // More than twice the limit, so that the names are cut while they are gathered, too.
    constexpr int count = 2 * static_cast<int>(limits::files) + 3;
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(1'000'000 + (i * 7919) % count);
        folder.add(number + ".pdf", "");
    }
    ServedFiles files({folder.path().string()});
    const test::JsonValue list = test::JsonReader(files.listJson("start")).whole();
    EXPECT_EQ(list.find("leftOut")->text, std::to_string(count - int{limits::files}));
    const auto& rows = list.find("files")->items;
    ASSERT_EQ(rows.size(), limits::files);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ASSERT_EQ(rows[i].find("name")->text, std::to_string(1'000'000 + i) + ".pdf");
    }
}

TEST(FileStart, IsCopiedOfRegularFilesOnly) {
    const test::TemporaryFolder folder;
    const auto at = [&](const char* name) { return (folder.path() / name).string(); };
    folder.add("a.pdf", "0123456789");
    mkfifo(at("pipe").c_str(), 0600);
    const auto never = [] { return false; };
    copyStart(at("a.pdf"), at("whole"), 10, never);
    EXPECT_EQ(test::fileBytes(at("whole")), "0123456789");
    copyStart(at("a.pdf"), at("start"), 4, never);
    EXPECT_EQ(test::fileBytes(at("start")), "0123");
    struct Row {
        const char* from;
        std::int64_t length;
        std::int32_t code;
    };
    for (const Row& row :
         {Row{"pipe", 1, code::fileChanged}, Row{"/dev/zero", 1, code::fileChanged},
          Row{"a.pdf", 11, code::fileChanged}, Row{"none", 1, code::access},
          Row{"a.pdf", limits::formerBytes + 1, code::io}}) {
        const std::string from = *row.from == '/' ? row.from : at(row.from);
        const auto fault = faultOf([&] { copyStart(from, at("no"), row.length, never); });
        ASSERT_TRUE(fault) << row.from;
        EXPECT_EQ(fault->code, row.code) << row.from;
        EXPECT_FALSE(fs::exists(at("no"))) << row.from;
    }
    const auto fault = faultOf([&] { copyStart(at("a.pdf"), at("no"), 4, [] { return true; }); });
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->code, code::cancelled);
}

} // namespace
} // namespace corvane
