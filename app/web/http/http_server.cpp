#include "app/web/http/http_server.h"

#include "app/cli/batch/page_ranges.h"
#include "toolbox/descriptor.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace corvane {

namespace {

constexpr auto tooLong = "the artwork is longer than 1 GiB";
constexpr auto loopback = "127.0.0.1";

/// That the thread works on.
thread_local Connection* current = nullptr;
/// The connection is one too many.
thread_local bool isCrowded = false;

/// Connections wait for nothing: each has a thread, or is refused at once.
class ConnectionQueue final : public httplib::TaskQueue {
public:
    ConnectionQueue() : threads_(limits::connections) {}

    void enqueue(std::function<void()> work) override {
        if (held_ >= limits::connections) {
            isCrowded = true;
            work();
            isCrowded = false;
            return;
        }
        ++held_;
        threads_.enqueue([this, work = std::move(work)] {
            work();
            --held_;
        });
    }
    void shutdown() override { threads_.shutdown(); }

private:
    std::atomic<int> held_ = 0;
    httplib::ThreadPool threads_;
};

void refuseCrowd(int socket) {
    constexpr std::string_view text = "HTTP/1.1 503 Service Unavailable\r\n"
                                      "Content-Length: 0\r\nConnection: close\r\n\r\n";
    send(socket, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    // What is unread when a connection is closed throws away what was sent.
    std::array<char, 4096> request{};
    recv(socket, request.data(), request.size(), MSG_DONTWAIT);
    close(socket);
}

/// Two servers never share a port, as they could by what the library sets of itself.
void setReuse(socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

const httplib::Headers& everyHeader() {
    static const httplib::Headers headers{
        {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"},
        {"Cache-Control", "no-store"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"X-Frame-Options", "DENY"},
    };
    return headers;
}

/// For all but the page's document: nothing in it runs or loads anything, wherever it is shown.
constexpr auto barePolicy = "default-src 'none'; style-src 'unsafe-inline'; img-src data:; "
                            "font-src data:; base-uri 'none'; form-action 'none'; "
                            "frame-ancestors 'none'; sandbox";

void setFile(const std::shared_ptr<const Descriptor>& file, const std::string& type,
             httplib::Response& response) {
    struct stat facts {};
    fstat(file->number(), &facts);
    response.set_content_provider(
        static_cast<std::size_t>(facts.st_size), type,
        [file](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
            std::vector<char> piece(std::min<std::size_t>(length, 64 * 1024));
            const ssize_t count =
                pread(file->number(), piece.data(), piece.size(), static_cast<off_t>(offset));
            return count > 0 && sink.write(piece.data(), static_cast<std::size_t>(count));
        });
}

void fill(Answer answer, httplib::Response& response) {
    bool hasPolicy = false;
    for (const auto& [name, value] : answer.headers) {
        response.set_header(name, value);
        hasPolicy = hasPolicy || name == "Content-Security-Policy";
    }
    if (!hasPolicy) {
        response.set_header("Content-Security-Policy", barePolicy);
    }
    response.status = answer.status;
    if (answer.file) {
        setFile(answer.file, answer.type, response);
    } else {
        response.body = std::move(answer.body);
        response.set_header("Content-Type", answer.type);
    }
}

/// Ranges and compression are nothing that a page on the same machine needs, and cost memory and
/// time.
void simplify(httplib::Request& request) {
    request.ranges.clear();
    request.headers.erase("Accept-Encoding");
}

} // namespace

HttpServer::HttpServer(int port) {
    set_address_family(AF_INET);
    set_socket_options(setReuse);
    set_default_headers(everyHeader());
    port_ = port == 0 ? bind_to_any_port(loopback) : bind_to_port(loopback, port) ? port : -1;
    if (port_ <= 0) {
        throw Failure({code::io, port == 0 ? std::string("no port of this machine is free")
                                           : "the port " + std::to_string(port) +
                                                 " cannot be taken; name another with --port, or "
                                                 "none"});
    }
    // The library's queue of five drops some of what a page asks for at once; a client tries again
    // after a second.
    ::listen(svr_sock_, limits::connections);
    new_task_queue = [] { return std::make_unique<ConnectionQueue>().release(); };
    set_tcp_nodelay(true);
    set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        return consider(request, response);
    });
    set_expect_100_continue_handler(
        [this](const httplib::Request& request, httplib::Response& response) {
            return refuses(request, response) ? response.status : 100;
        });
    Post(".*",
         [this](const httplib::Request& request, httplib::Response& response,
                const httplib::ContentReader& content) { answer(request, response, content); });
}

HttpServer::~HttpServer() {
    end();
}

void HttpServer::start(Gate& gate, Answering answering) {
    gate_ = &gate;
    answering_ = std::move(answering);
    listener_ = std::thread([this] {
        listen_after_bind();
        hasFailed_ = !isEnding_;
    });
    while (!is_running() && !hasFailed_) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void HttpServer::end() {
    isEnding_ = true;
    if (listener_.joinable()) {
        stop();
        listener_.join();
    }
}

bool HttpServer::process_and_close_socket(socket_t number) {
    if (isCrowded) {
        refuseCrowd(number);
        return true;
    }
    Connection connection(number, isEnding_);
    current = &connection;
    bool isClosed = false;
    process_request(connection, true, isClosed, simplify);
    connection.finish();
    current = nullptr;
    return true;
}

std::optional<Answer> HttpServer::refusalOf(const httplib::Request& request) const {
    const auto route = routeOf(request.target);
    if (!route) {
        return refusal(404, {code::access, "there is nothing at this address"});
    }
    if (route->posts != (request.method == "POST")) {
        return refusal(405, {code::access, "this address takes the other method"});
    }
    if (!route->hasBody) {
        return std::nullopt;
    }
    const std::string length = request.get_header_value("Content-Length");
    // Of anything but pieces nobody could tell the end from a client that was lost.
    const bool isInPieces = request.get_header_value("Transfer-Encoding") == "chunked";
    if (isInPieces ? request.has_header("Content-Length") : length.empty()) {
        return refusal(411, {code::access, "the length of the artwork is missing"});
    }
    if (request.get_header_value_count("Content-Length") > 1 ||
        request.get_header_value_count("Transfer-Encoding") > (isInPieces ? 1 : 0)) {
        return refusal(400, {code::access, "the artwork has more than one length"});
    }
    if (length.find_first_not_of("0123456789") != std::string::npos) {
        return refusal(400, {code::access, "the length of the artwork is no number"});
    }
    if (!length.empty() && length != "0" &&
        wholeNumber(length).value_or(INT32_MAX) > limits::body) {
        return refusal(413, {code::artwork, tooLong});
    }
    if (request.is_multipart_form_data() || request.has_header("Content-Encoding")) {
        return refusal(415, {code::artwork, "the artwork comes as it is, in no other form"});
    }
    return std::nullopt;
}

bool HttpServer::refuses(const httplib::Request& request, httplib::Response& response) const {
    auto refused = gate_->answer(request);
    refused = refused ? refused : refusalOf(request);
    if (refused) {
        fill(std::move(*refused), response);
    }
    return refused.has_value();
}

/// Called when the head was read, before anything else is.
httplib::Server::HandlerResponse HttpServer::consider(const httplib::Request& request,
                                                      httplib::Response& response) {
    if (refuses(request, response)) {
        return HandlerResponse::Handled;
    }
    if (request.method == "POST") {
        return HandlerResponse::Unhandled;
    }
    answer(request, response, httplib::ContentReader(nullptr, nullptr));
    return HandlerResponse::Handled;
}

void HttpServer::answer(const httplib::Request& request, httplib::Response& response,
                        const httplib::ContentReader& content) {
    WebRequest asked;
    asked.route = routeOf(request.target).value_or(Route());
    if (request.has_header("Corvane-Password")) {
        asked.password = request.get_header_value("Corvane-Password"); // the library has decoded it
    }
    if (request.has_header("Corvane-Start")) {
        asked.start = request.get_header_value("Corvane-Start");
    }
    asked.readBody = [&](const std::function<bool(std::string_view)>& take) {
        current->expectBody();
        return content([&](const char* bytes, std::size_t size) { return take({bytes, size}); });
    };
    asked.isLeft = [] { return current->isLeft(); };
    Answer answer;
    if (const auto fault = faultOf([&] { answer = answering_(asked); })) {
        answer = refusal(500, *fault);
    }
    fill(std::move(answer), response);
}

} // namespace corvane
