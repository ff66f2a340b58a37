// When a server ends by itself, and what killed ones leave.
#include "app/web/life.h"
#include "app/web/serve.h"
#include "app/web/work_folder.h"
#include "tests/app/web/served.h"
#include "tests/support/pdf_builder.h"

#include <cstdlib>
#include <fcntl.h>
#include <future>
#include <pthread.h>
#include <sys/stat.h>

namespace corvane {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class ServeEnd : public ::testing::Test {
protected:
    void SetUp() override {
        folder_.add("a.pdf", test::PdfBuilder::onePage("").bytes());
        arguments_.command = Command::serve;
        arguments_.files = {(folder_.path() / "a.pdf").string()};
        arguments_.opensBrowser = false;
        arguments_.quiet = true;
    }

    test::TemporaryFolder folder_;
    Arguments arguments_;
};

TEST_F(ServeEnd, ComesWhenNoPageIsHeard) {
    bool isTold = false;
    ServeCall call{arguments_, [&](const std::string&) { isTold = true; }};
    call.silence = 0ns;
    serve(call); // nobody asks it anything, and nobody ends it
    EXPECT_TRUE(isTold);
    EXPECT_FALSE(call.fault);
}

TEST_F(ServeEnd, DoesNotComeForThoseThatStay) {
    arguments_.stays = true;
    std::promise<std::string> address;
    ServeCall call{arguments_, [&](const std::string& told) { address.set_value(told); }};
    call.silence = 0ns;
    std::thread server([&] { serve(call); });
    const std::string told = address.get_future().get();
    const int port = std::stoi(told.substr(told.rfind(':') + 1));
    const test::Client client(port);
    client.send("GET / HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) + "\r\n\r\n");
    EXPECT_EQ(client.reply().status, 401);
    pthread_kill(server.native_handle(), SIGTERM);
    server.join();
    EXPECT_FALSE(call.fault);
}

TEST(Life, BeginsAnewWithEachSign) {
    Life life;
    const auto start = Life::Clock::now();
    life.note(start);
    EXPECT_EQ(life.silence(start + 9min), 9min);
    life.note(start + 9min);
    EXPECT_EQ(life.silence(start + 11min), 2min);
}

class ServeFolder : public ::testing::Test {
protected:
    ServeFolder() { setenv("TMPDIR", folder_.path().c_str(), 1); }
    ~ServeFolder() override {
        former_ ? setenv("TMPDIR", former_->c_str(), 1) : unsetenv("TMPDIR");
    }

    fs::path make(const std::string& name, mode_t mode = 0700) {
        fs::create_directories(folder_.path() / name / "deep");
        folder_.add(name + "/art.svg", "art");
        chmod((folder_.path() / name).c_str(), mode);
        return folder_.path() / name;
    }

    std::optional<std::string> former_ = std::getenv("TMPDIR") != nullptr
                                             ? std::optional<std::string>(std::getenv("TMPDIR"))
                                             : std::nullopt;
    test::TemporaryFolder folder_;
};

TEST_F(ServeFolder, TakesAwayWhatKilledServersLeft) {
    const fs::path left = make("corvane-serve-aB3456");
    const fs::path target = make("mine");
    fs::create_directory_symlink(target, left / "link");
    const std::vector<fs::path> others = {make("corvane-serve-open12", 0755),
                                          make("corvane-serve-aB345"), make("corvane-serve-aB.456"),
                                          make("corvane-edit-aB3456"), target};
    fs::create_directory_symlink(target, folder_.path() / "corvane-serve-linked");
    folder_.add("corvane-serve-isfile", "a file");
    {
        const WorkFolder first;
        const WorkFolder second;
        EXPECT_TRUE(first.path().starts_with(folder_.path().string() + "/corvane-serve-"));
        EXPECT_TRUE(fs::exists(first.path())) << "its process lives";
        struct stat facts {};
        ASSERT_EQ(stat(first.path().c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode & 0777U, 0700U);
        EXPECT_FALSE(fs::exists(left));
        for (const fs::path& other : others) {
            EXPECT_TRUE(fs::exists(other / "art.svg")) << other;
        }
        EXPECT_TRUE(fs::is_symlink(folder_.path() / "corvane-serve-linked"));
        EXPECT_TRUE(fs::exists(folder_.path() / "corvane-serve-isfile"));
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_.path()), {}), 7);
}

} // namespace
} // namespace corvane
