// The server as it runs, and requests to it as bytes.
#pragma once

#include "tests/app/cli/json/json_value.h"
#include "tests/support/process.h"
#include "toolbox/descriptor.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace corvane::test {

struct Reply {
    int status = 0;       ///< 0: there was none
    bool isEnded = false; ///< the server closed the connection
    std::string head;
    std::string body;

    JsonValue json() const { return JsonReader(body).whole(); }
    /// Code of the object's error; 0 where it is null.
    int error() const {
        const JsonValue object = json();
        const JsonValue* const error = object.find("error");
        const JsonValue* const code = error != nullptr ? error->find("code") : nullptr;
        return code != nullptr ? std::stoi(code->text) : 0;
    }
};

class Client {
public:
    explicit Client(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const timeval limit{240, 0}; // a machine that does much else may be slow
        setsockopt(socket_.number(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        setsockopt(socket_.number(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
        // NOLINTNEXTLINE: the interface of sockets is of that kind
        isOpen_ = connect(socket_.number(), static_cast<sockaddr*>(static_cast<void*>(&address)),
                          sizeof address) == 0;
    }

    /// How many of the bytes were taken before the connection was closed.
    std::size_t send(std::string_view bytes) const {
        std::size_t sent = 0;
        while (isOpen_ && sent < bytes.size()) {
            const ssize_t count =
                ::send(socket_.number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
            if (count <= 0) {
                break;
            }
            sent += static_cast<std::size_t>(count);
        }
        return sent;
    }

    /// All that comes until the connection is closed.
    Reply reply() const {
        std::string text;
        std::array<char, 65536> piece{};
        ssize_t count = 0;
        while ((count = recv(socket_.number(), piece.data(), piece.size(), 0)) > 0) {
            text.append(piece.data(), static_cast<std::size_t>(count));
        }
        Reply reply;
        reply.isEnded = count == 0 || errno == ECONNRESET;
        const auto end = text.find("\r\n\r\n");
        if (text.starts_with("HTTP/1.1 ") && end != std::string::npos) {
            reply.status = std::stoi(text.substr(9, 3));
            reply.head = text.substr(0, end + 2);
            reply.body = text.substr(end + 4);
        }
        return reply;
    }

private:
    Descriptor socket_;
    bool isOpen_ = false;
};

/// `corvane serve` in a folder of its own, started and ended.
class Served {
public:
    using Words = std::vector<std::string>;
    using Environment = std::vector<std::pair<std::string, std::string>>;

    /// `words` behind "serve"; no browser is opened unless there is a DISPLAY among `environment`.
    Served(const std::filesystem::path& folder, const Words& words,
           const Environment& environment = {}) {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category());
        }
        Descriptor reading(ends[0]);
        Descriptor writing(ends[1]);
        const std::string program = (buildFolder() / "corvane").string();
        process_ = fork();
        if (process_ == 0) {
            start(folder, program, words, environment, writing.number());
        }
        writing.close();
        char c = 0;
        while (read(reading.number(), &c, 1) == 1 && c != '\n') {
            address_ += c;
        }
        const auto mark = address_.find("/?secret=");
        if (mark != std::string::npos) {
            secret_ = address_.substr(mark + 9);
            port_ = std::stoi(address_.substr(address_.rfind(':', mark) + 1));
        }
    }
    ~Served() { end(SIGKILL); }
    Served(const Served&) = delete;
    Served& operator=(const Served&) = delete;

    int port() const { return port_; }
    pid_t process() const { return process_; }
    const std::string& address() const { return address_; }
    const std::string& secret() const { return secret_; }
    std::string origin() const { return "http://127.0.0.1:" + std::to_string(port_); }
    std::string host() const { return "Host: 127.0.0.1:" + std::to_string(port_) + "\r\n"; }
    std::string cookie() const {
        return "Cookie: corvane-" + std::to_string(port_) + "=" + secret_ + "\r\n";
    }
    std::string fromPage() const { return "Origin: " + origin() + "\r\n"; }

    Reply raw(std::string_view bytes) const {
        const Client client(port_);
        client.send(bytes);
        return client.reply();
    }
    /// As the page asks. `more` are lines of the head.
    Reply get(const std::string& path, const std::string& more = "") const {
        return raw("GET " + path + " HTTP/1.1\r\n" + host() + cookie() + more + "\r\n");
    }
    Reply post(const std::string& path, const std::string& body = "",
               const std::string& more = "") const {
        return raw("POST " + path + " HTTP/1.1\r\n" + host() + cookie() + fromPage() + more +
                   "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    }

    /// The artwork of a page that is opened anew.
    std::string opened(int page) const {
        const JsonValue opening =
            post("/api/files/1/pages/" + std::to_string(page) + "/open").json();
        const JsonValue* const token = opening.find("artwork");
        return token != nullptr ? get("/api/artworks/" + token->text).body : "";
    }

    /// A number of kilobytes in the process's status.
    long memory(const std::string& name) const {
        std::ifstream lines("/proc/" + std::to_string(process_) + "/status");
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with(name + ":")) {
                return std::stol(line.substr(name.size() + 1));
            }
        }
        return 0;
    }

    /// How many processes work for it.
    int children() const {
        int count = 0;
        for (const auto& thread :
             std::filesystem::directory_iterator("/proc/" + std::to_string(process_) + "/task")) {
            std::ifstream list(thread.path() / "children");
            for (std::string number; list >> number;) {
                ++count;
            }
        }
        return count;
    }

    /// Ends it; the exit status, -1 where a signal ended it.
    int end(int signal = SIGINT) {
        if (process_ == 0) {
            return -1;
        }
        kill(process_, signal);
        int status = 0;
        waitpid(std::exchange(process_, 0), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    [[noreturn]] static void start(const std::filesystem::path& folder, const std::string& program,
                                   const Words& words, const Environment& environment, int output) {
        signal(SIGINT, SIG_DFL); // who runs tests in the background may ignore it
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
        unsetenv("CORVANE_WEB_FOLDER");
        for (const auto& [name, value] : environment) {
            setenv(name.c_str(), value.c_str(), 1);
        }
        Words all{program, "serve"};
        all.insert(all.end(), words.begin(), words.end());
        std::vector<char*> pointers;
        for (std::string& word : all) {
            pointers.push_back(word.data());
        }
        pointers.push_back(nullptr);
        const int silence = open("/dev/null", O_RDWR);
        if (chdir(folder.c_str()) != 0 || dup2(output, STDOUT_FILENO) < 0 ||
            dup2(silence, STDERR_FILENO) < 0) {
            _exit(1);
        }
        execv(program.c_str(), pointers.data());
        _exit(1);
    }

    pid_t process_ = 0;
    std::string address_; ///< the first line that it prints
    std::string secret_;
    int port_ = 0;
};

/// Waits for something to become true, for a while.
template <class Condition>
bool soon(Condition&& condition) {
    for (int i = 0; i < 3000; ++i) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

} // namespace corvane::test
