// Who is refused, and what it costs to ask.
#include "app/web/limits.h"
#include "tests/app/cli/fake_program.h"
#include "tests/app/web/served.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <sys/stat.h>

namespace corvane {
namespace {

using test::Client;
using test::holds;
using test::Reply;
using test::Served;

class ServeSafety : public ::testing::Test {
protected:
    const test::TemporaryFolder folder_;
    const std::string pdf_ =
        folder_.add("a.pdf", test::fileBytes(test::sourceFolder() / "examples" / "two-pages.pdf"));
    const Served served_{folder_.path(), {"a.pdf"}, {{"TMPDIR", folder_.path()}}};
    const std::string port_ = std::to_string(served_.port());
    const std::string head_ = served_.host() + served_.cookie();

    /// All at once; how many came with each status.
    std::map<int, int> flood(int count, const std::string& bytes) const {
        std::map<int, int> statuses;
        std::mutex mutex;
        std::vector<std::jthread> threads;
        for (int i = 0; i < count; ++i) {
            threads.emplace_back([&] {
                const int status = served_.raw(bytes).status;
                const std::lock_guard lock(mutex);
                ++statuses[status];
            });
        }
        threads.clear();
        return statuses;
    }
};

TEST_F(ServeSafety, OnlyThePersonsPageGetsAnything) {
    const std::string from = served_.fromPage();
    const std::string secret = served_.secret();
    const std::string empty = "Content-Length: 0\r\n";
    const std::string similar = std::string(31, '0') + "x";
    struct Row {
        std::string line;
        std::string head;
        int status;
    };
    const std::vector<Row> rows{
        {"GET /api/files", head_, 200},
        {"GET /api/files", served_.host(), 401},
        {"GET /app.js", served_.host(), 401},
        {"GET /", served_.host(), 401},
        {"GET /api/files", served_.host() + "Cookie: corvane-" + port_ + "=" + similar + "\r\n",
         401},
        {"GET /api/files", served_.host() + "Cookie: corvane-" + port_ + "=\r\n", 401},
        {"GET /api/files", served_.host() + "Cookie: corvane-1=" + secret + "\r\n", 401},
        {"GET /api/files",
         served_.host() + "Cookie: a=b; corvane-" + port_ + "=" + secret + "; c\r\n", 200},
        {"GET /api/files?secret=" + secret, served_.host(), 401},
        {"GET /?secret=" + secret, served_.host(), 303},
        {"GET /?secret=" + similar, served_.host(), 403},
        {"GET /?secret=", served_.host(), 403},
        {"GET /?secret=" + secret, "Host: evil.example\r\n", 403},
        // A name that resolves to this machine.
        {"GET /api/files", "Host: evil.example:" + port_ + "\r\n" + served_.cookie(), 403},
        {"GET /api/files", "Host: 127.0.0.1\r\n" + served_.cookie(), 403},
        {"GET /api/files", "Host: 127.0.0.1.evil.example:" + port_ + "\r\n" + served_.cookie(),
         403},
        {"GET /api/files", "Host: localhost:" + port_ + "\r\n" + served_.cookie(), 200},
        {"GET /api/files", served_.cookie(), 403},
        {"GET /api/files", head_ + "Host: evil.example\r\n", 403},
        // Another site's page.
        {"GET /api/files", head_ + "Origin: http://evil.example\r\n", 403},
        {"GET /api/files", head_ + "Origin: null\r\n", 403},
        {"GET /api/files", head_ + "Origin: http://127.0.0.1:1\r\n", 403},
        {"GET /api/files", head_ + "Origin: https://127.0.0.1:" + port_ + "\r\n", 403},
        {"GET /api/files", head_ + from + "Origin: http://evil.example\r\n", 403},
        {"GET /api/files", head_ + from, 200},
        {"GET /api/files", head_ + "Sec-Fetch-Site: cross-site\r\n", 403},
        {"GET /api/files", head_ + "Sec-Fetch-Site: same-site\r\n", 403},
        {"GET /", head_ + "Sec-Fetch-Site: none\r\n", 200},
        {"GET /api/files", head_ + "Sec-Fetch-Site: same-origin\r\n", 200},
        {"POST /api/alive", head_ + empty, 403},
        {"POST /api/alive", head_ + empty + "Sec-Fetch-Site: none\r\n", 403},
        {"POST /api/alive", head_ + empty + "Sec-Fetch-Site: same-origin\r\n", 204},
        {"POST /api/alive", head_ + empty + from, 204},
        {"POST /api/alive", head_ + empty + from + "Sec-Fetch-Site: cross-site\r\n", 403},
        {"POST /api/files/1/revert", served_.host() + empty + from, 401},
        // Ways out.
        {"GET /../../etc/passwd", head_, 404},
        {"GET /%2e%2e/%2e%2e/etc/passwd", head_, 404},
        {"GET /api/files/../../a.pdf", head_, 404},
        {"GET /api/files/..%2fa.pdf/log", head_, 404},
        {"GET /api/files/1/pages/../../log", head_, 404},
        {"GET /api/artworks/../a.pdf", head_, 404},
        {"GET /api/artworks/" + secret, head_, 404},
        {"GET /a.pdf", head_, 404},
        {"GET /api/files/2", head_, 404},
        {"POST /api/files/../pages/1/save", head_ + from + empty, 404},
        {"GET http://127.0.0.1:" + port_ + "/api/files", head_, 404},
        // Methods and bodies.
        {"POST /api/files", head_ + from + empty, 405},
        {"GET /api/files/1/revert", head_, 405},
        {"HEAD /", head_, 405},
        {"OPTIONS /api/files", head_ + from, 405},
        {"DELETE /api/files/1", head_ + from, 405},
        {"POST /api/files/1/pages/1/save", head_ + from, 411},
        {"POST /api/files/1/pages/1/save", head_ + from + "Transfer-Encoding: gzip\r\n", 411},
        {"POST /api/files/1/pages/1/save",
         head_ + from + "Transfer-Encoding: chunked\r\nContent-Length: 1\r\n", 411},
        {"POST /api/files/1/pages/1/save",
         head_ + from + "Transfer-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n", 411},
        {"POST /api/files/1/pages/1/save",
         head_ + from + "Transfer-Encoding: gzip\r\nContent-Length: 1\r\n", 400},
        {"POST /api/files/1/pages/1/save",
         head_ + from + "Content-Length: 1\r\nContent-Length: 2\r\n", 400},
        {"POST /api/files/1/pages/1/save", head_ + from + "Content-Length: -1\r\n", 400},
        {"POST /api/files/1/pages/1/save", head_ + from + "Content-Length: 4294967296\r\n", 413},
        {"POST /api/files/1/pages/1/save", head_ + from + "Content-Length: 1073741825\r\n", 413},
        {"POST /api/files/1/pages/1/save",
         head_ + from + "Expect: 100-continue\r\nContent-Length: 4294967296\r\n", 413},
        {"POST /api/files/1/pages/1/save",
         head_ + from + "Content-Length: 1\r\nContent-Type: multipart/form-data; boundary=x\r\n",
         415},
        {"POST /api/files/1/pages/1/save",
         head_ + from + "Content-Length: 1\r\nContent-Encoding: gzip\r\n", 415},
        {"GET /" + std::string(9000, 'a'), head_, 414},
        {"GET /", head_ + "X: " + std::string(9000, 'a') + "\r\n", 400},
    };
    for (const Row& row : rows) {
        const std::string shown = row.line.substr(0, 80) + "\n" + row.head.substr(0, 400);
        const Reply reply = served_.raw(row.line + " HTTP/1.1\r\n" + row.head + "\r\n");
        EXPECT_EQ(reply.status, row.status) << shown;
        EXPECT_TRUE(holds(reply.head, "nosniff") && holds(reply.head, "no-store")) << shown;
        if (row.status >= 400) {
            EXPECT_LT(reply.body.size(), 300U) << shown;
            EXPECT_FALSE(holds(reply.head, "Set-Cookie")) << shown;
            EXPECT_FALSE(holds(reply.head + reply.body, secret)) << shown;
        }
    }
    EXPECT_EQ(test::fileBytes(pdf_).size(),
              test::fileBytes(test::sourceFolder() / "examples" / "two-pages.pdf").size());
}

TEST_F(ServeSafety, NothingIsSharedWithOtherSites) {
    const Reply page = served_.get("/");
    for (const char* part :
         {"script-src 'self';", "default-src 'none';", "frame-ancestors 'none'", "no-referrer",
          "Cross-Origin-Resource-Policy: same-origin", "X-Frame-Options: DENY"}) {
        EXPECT_TRUE(holds(page.head, part)) << part;
    }
    EXPECT_FALSE(holds(page.head, "sandbox"));
    EXPECT_FALSE(holds(page.body, "<script>")) << "an inline one would not run";
    const Reply picture = served_.get("/api/files/1/pages/1/picture");
    EXPECT_TRUE(holds(picture.head, "image/svg+xml") && holds(picture.head, "; sandbox"));
    EXPECT_FALSE(holds(picture.head, "script-src"));
    const Reply cookie =
        served_.raw("GET /?secret=" + served_.secret() + " HTTP/1.1\r\n" + served_.host() + "\r\n");
    EXPECT_TRUE(holds(cookie.head, "Set-Cookie: corvane-" + port_ + "=" + served_.secret() +
                                       "; Path=/; HttpOnly; SameSite=Strict\r\n"));
    EXPECT_TRUE(holds(cookie.head, "Location: /\r\n"));
    const Reply linked = served_.raw("GET /?secret=" + served_.secret() + " HTTP/1.1\r\n" +
                                     served_.host() + "Sec-Fetch-Site: cross-site\r\n\r\n");
    EXPECT_EQ(linked.status, 200) << "behind a redirect from there the cookie would not be sent";
    EXPECT_TRUE(holds(linked.body, "http-equiv=\"refresh\""));
}

TEST_F(ServeSafety, OnlyLoopbackIsServed) {
    std::ifstream table("/proc/net/tcp");
    std::array<char, 8> hex{};
    std::snprintf(hex.data(), hex.size(), ":%04X", served_.port());
    int count = 0;
    for (std::string line; std::getline(table, line);) {
        if (holds(line, std::string(hex.data()) + " 00000000:0000 0A")) {
            EXPECT_TRUE(holds(line, "0100007F" + std::string(hex.data()))) << line;
            ++count;
        }
    }
    EXPECT_EQ(count, 1);
    test::Process again;
    again.words = {
        (test::buildFolder() / "corvane").string(), "serve", pdf_, "--port", port_, "--no-browser"};
    const auto second = test::run(again);
    EXPECT_EQ(second.status, 1) << "two servers never share a port";
    EXPECT_TRUE(holds(second.errors, "port " + port_ + " cannot be taken")) << second.errors;
}

TEST_F(ServeSafety, MemoryIsFlatWhateverComes) {
    const std::string stranger = "GET /api/files HTTP/1.1\r\n" + served_.host() + "\r\n";
    const std::string save = "POST /api/files/1/pages/1/save HTTP/1.1\r\n" + served_.host() +
                             served_.fromPage() + "Content-Length: 4294967296\r\n";
    flood(200, stranger); // the threads' own memory
    const long before = served_.memory("VmHWM");
    for (const std::string& bytes : {stranger, save + "\r\n" + std::string(5000, 'x')}) {
        auto statuses = flood(1000, bytes);
        EXPECT_GE(statuses[401], limits::connections);
        EXPECT_EQ(statuses[401] + statuses[503] + statuses[0], 1000) << "0: closed before";
    }

    for (const std::string& start :
         {save + "\r\n", save + served_.cookie() + "\r\n", std::string("GET /"), head_ + "X: a\r\n",
          "GET / HTTP/1.1\r\n" + head_}) {
        const Client client(served_.port());
        client.send(start);
        std::size_t sent = 0;
        for (const std::string more(1 << 20, 'x'); sent < (std::size_t{200} << 20);) {
            const std::size_t count = client.send(more);
            sent += count;
            if (count < more.size()) {
                break;
            }
        }
        EXPECT_LT(sent, std::size_t{16} << 20) << start.substr(0, 60);
    }
    const Client headers(served_.port());
    std::string line = "GET / HTTP/1.1\r\n" + head_;
    for (int i = 0; i < 3'000'000; ++i) {
        line += "X: y\r\n";
    }
    EXPECT_LT(headers.send(line), line.size());
    if (!test::underAddressSanitizer) {
        EXPECT_LT(served_.memory("VmHWM") - before, 8 * 1024) << "kilobytes";
    }
}

TEST_F(ServeSafety, TooManyAreRefusedAtOnce) {
    std::vector<std::unique_ptr<Client>> idle;
    for (int i = 0; i < limits::connections; ++i) {
        idle.push_back(std::make_unique<Client>(served_.port()));
    }
    ASSERT_TRUE(test::soon([&] { return served_.get("/api/files").status == 503; }));
    idle.resize(idle.size() - 3);
    EXPECT_TRUE(test::soon([&] { return served_.get("/api/files").status == 200; }));
    EXPECT_EQ(served_.memory("Threads"), limits::connections + 2);
}

TEST_F(ServeSafety, SlowClientsAreLeft) {
    const Client client(served_.port());
    client.send("GET / HT");
    const Reply reply = client.reply();
    EXPECT_EQ(reply.status, 0);
    EXPECT_TRUE(reply.isEnded);
}

/// What the browser is started with can be read by other people of the machine.
TEST(ServeBrowser, GetsAnAddressThatIsGoodOnce) {
    const test::TemporaryFolder folder;
    folder.add("a.pdf", test::fileBytes(test::sourceFolder() / "examples" / "two-pages.pdf"));
    const std::string opener = folder.add(
        "xdg-open", "#!/bin/sh\necho \"$1 ${CORVANE_PASSWORD-none}\" >told && mv told opened\n");
    ASSERT_EQ(chmod(opener.c_str(), 0700), 0);
    Served served(folder.path(), {"a.pdf"},
                  {{"DISPLAY", ":0"},
                   {"PATH", folder.path().string() + ":/usr/bin:/bin"},
                   {"CORVANE_PASSWORD", "word"}});
    ASSERT_TRUE(test::soon([&] { return std::filesystem::exists(folder.path() / "opened"); }));
    std::istringstream told(test::fileBytes(folder.path() / "opened"));
    std::string address;
    std::string password;
    told >> address >> password;
    EXPECT_EQ(password, "none");
    EXPECT_NE(address, served.address());
    const auto open = [&](const std::string& whole, const std::string& more) {
        return served
            .raw("GET " + whole.substr(served.origin().size()) + " HTTP/1.1\r\n" + served.host() +
                 more + "\r\n")
            .status;
    };
    EXPECT_EQ(open(address, ""), 303);
    EXPECT_EQ(open(address, ""), 403) << "somebody else";
    EXPECT_EQ(open(address, served.cookie()), 303) << "the same browser once more";
    EXPECT_EQ(open(served.address(), ""), 303);
    EXPECT_EQ(open(served.address(), ""), 303);
    EXPECT_EQ(served.end(), 0);
}

/// A plug-in that acts a part, in the processes that work for the page.
class ServeFakes : public FakeProgram {
protected:
    Served served(const std::string& part, const std::string& file) const {
        return Served(folder_.path(), {file, "--stay", "--no-browser"},
                      {{"CORVANE_PLUGIN", (test::buildFolder() / "fake-plugin.so").string()},
                       {"CORVANE_FAKE", part},
                       {"TMPDIR", folder_.path()}});
    }
};

TEST_F(ServeFakes, AFileThatKillsItsProcessIsAnError) {
    folder_.add("crash.pdf", "%PDF-1.4");
    const Served served = this->served("crash", "crash.pdf");
    const std::string page = "/api/files/1/pages/1/";
    for (const Reply& reply : {served.post(page + "open"), served.get(page + "picture")}) {
        EXPECT_EQ(reply.status, 500);
        EXPECT_EQ(reply.error(), 52) << reply.body;
    }
    EXPECT_EQ(served.get("/api/files").status, 200);
}

TEST_F(ServeFakes, WorkEndsWhenNobodyWaitsForIt) {
    Served served = this->served("wait", "in.pdf");
    {
        const Client client(served.port());
        client.send("POST /api/files/1/pages/1/open HTTP/1.1\r\n" + served.host() +
                    served.cookie() + served.fromPage() + "\r\n");
        ASSERT_TRUE(test::soon([&] { return served.children() == 1; }));
    }
    EXPECT_TRUE(test::soon([&] { return served.children() == 0; })) << "the tab was closed";

    std::jthread asking([&, port = served.port()] {
        const Client client(port);
        client.send("POST /api/files/1/pages/1/open HTTP/1.1\r\n" + served.host() +
                    served.cookie() + served.fromPage() + "\r\n");
        client.reply();
    });
    ASSERT_TRUE(test::soon([&] { return served.children() == 1; }));
    EXPECT_EQ(served.end(SIGTERM), 0);
    asking.join();
    EXPECT_EQ(folder_.names(), (std::vector<std::string>{"in.pdf"})) << "the artwork's folder went";
}

TEST_F(ServeFakes, SoManyWorkAtATimeAndNoMore) {
    const Served served = this->served("wait", "in.pdf");
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < 30; ++i) {
        clients.push_back(std::make_unique<Client>(served.port()));
        clients.back()->send("POST /api/files/1/pages/1/open HTTP/1.1\r\n" + served.host() +
                             served.cookie() + served.fromPage() + "\r\n");
    }
    const int most = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 2, 8) + 1;
    ASSERT_TRUE(test::soon([&] { return served.children() == most; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(served.children(), most);
    clients.clear();
    EXPECT_TRUE(test::soon([&] { return served.children() == 0; }));
}

} // namespace
} // namespace corvane
