#include "app/cli/fault.h"
#include "app/web/kept_files.h"
#include "app/web/places.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace corvane {
namespace {

using Names = std::vector<std::string>;

TEST(KeptFiles, TheOldestGo) {
    const test::TemporaryFolder folder;
    KeptFiles files(3, 100);
    for (const std::string name : {"a", "b", "c"}) {
        files.keep(name, folder.add(name, std::string(10, 'x')));
    }
    EXPECT_TRUE(files.find("a"));
    files.keep("d", folder.add("d", "x"));
    EXPECT_EQ(folder.names(), (Names{"a", "c", "d"})) << "b was not used for longest";
    EXPECT_FALSE(files.find("b"));

    const auto former = files.keep("a", folder.add("a2", std::string(80, 'y')));
    EXPECT_EQ(folder.names(), (Names{"a2", "c", "d"})) << "91 bytes are not too many";
    files.keep("e", folder.add("e", std::string(70, 'z')));
    EXPECT_EQ(folder.names(), (Names{"e"})) << "151 are";
    char c = 0;
    EXPECT_EQ(pread(former->number(), &c, 1, 79), 1) << "who has it reads it to its end";
    EXPECT_EQ(c, 'y');
    files.keep("big", folder.add("big", std::string(1000, 'b')));
    EXPECT_TRUE(files.find("big")) << "the newest is kept whatever its size";
    EXPECT_THROW(files.keep("none", (folder.path() / "none").string()), Failure);
}

TEST(Places, PicturesLeaveOneToThePerson) {
    Places places(2);
    const auto never = [] { return true; };
    const auto picture = places.take(Places::Need::picture, never);
    ASSERT_TRUE(picture);
    EXPECT_FALSE(places.take(Places::Need::picture, never));
    auto person = places.take(Places::Need::person, never);
    ASSERT_TRUE(person);
    EXPECT_FALSE(places.take(Places::Need::person, never));
    std::jthread waiting([&] {
        EXPECT_TRUE(places.take(Places::Need::person, [] { return false; })) << "in the end";
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    person.reset();
}

} // namespace
} // namespace corvane
