// HTTP on the loopback address: a request for each connection, refused or answered.
#pragma once

#include "app/web/http/answer.h"
#include "app/web/http/connection.h"
#include "app/web/http/gate.h"
#include "app/web/http/route.h"

#include <atomic>
#include <functional>
#include <httplib.h>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace corvane {

/// A request that was let in.
struct WebRequest {
    Route route;
    std::optional<std::string> password; ///< of the file
    std::optional<std::string> start;    ///< of the program, which the page was loaded from
    /// Hands on what the client sends, piece by piece; false where it sends too much or too slowly,
    /// or `take` returns false.
    std::function<bool(const std::function<bool(std::string_view piece)>& take)> readBody;
    /// Whether the client waits for the answer no more.
    std::function<bool()> isLeft;
};

/// Threads of its own call `answer`, which raises what it likes.
class HttpServer final : private httplib::Server {
public:
    using Answering = std::function<Answer(const WebRequest&)>;

    /// Takes `port`, or a free one for 0. Raises `Failure`.
    explicit HttpServer(int port);
    ~HttpServer() override;
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    int port() const { return port_; }

    /// Begins to answer.
    void start(Gate& gate, Answering answering);

    /// Answers what comes over a connection of another kind, and closes it; once it was started.
    void serveConnection(int socket) { process_and_close_socket(socket); }

    /// Whether it answers no more, though nobody ended it.
    bool hasFailed() const { return hasFailed_; }

    /// Ends what goes on, and returns when nothing does.
    void end();

private:
    bool process_and_close_socket(socket_t number) override;
    HandlerResponse consider(const httplib::Request& request, httplib::Response& response);
    void answer(const httplib::Request& request, httplib::Response& response,
                const httplib::ContentReader& content);
    bool refuses(const httplib::Request& request, httplib::Response& response) const;
    std::optional<Answer> refusalOf(const httplib::Request& request) const;

    int port_ = 0;
    Gate* gate_ = nullptr;
    Answering answering_;
    std::atomic<bool> isEnding_ = false;
    std::atomic<bool> hasFailed_ = false;
    std::thread listener_;
};

} // namespace corvane
