// Any bytes as what a client of `serve` sends: nobody gets in without the secret, and what gets in
// is one of the table's addresses.
//
// "$H" in the input stands for the server's host, "$C" for its cookie, "$S" for its secret: nobody
// could guess them.
#include "fuzz/targets.h"

#include "app/web/http/http_server.h"

#include <algorithm>
#include <array>
#include <sys/socket.h>

namespace corvane::fuzz {

namespace {

class Server {
public:
    Server() : server_(0), gate_(server_.port()) {
        const std::string address = gate_.address();
        secret_ = address.substr(address.find('=') + 1);
        server_.start(gate_, [this](const WebRequest& request) { return answer(request); });
    }

    /// What comes back for all that the client sends.
    void ask(Bytes input) {
        sent_ = filled(input);
        std::array<int, 2> ends{};
        require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0);
        const Descriptor client(ends[0]);
        const int whole = static_cast<int>(sent_.size()) + 4096;
        setsockopt(client.number(), SOL_SOCKET, SO_SNDBUF, &whole, sizeof whole);
        // What does not fit is a client that was lost.
        static_cast<void>(
            send(client.number(), sent_.data(), sent_.size(), MSG_DONTWAIT | MSG_NOSIGNAL));
        shutdown(client.number(), SHUT_WR);
        server_.serveConnection(ends[1]);
        check(received(client.number()));
    }

private:
    std::string filled(Bytes input) const {
        const std::string port = std::to_string(server_.port());
        std::string text;
        for (std::size_t i = 0; i < input.size(); ++i) {
            const char next = i + 1 < input.size() ? static_cast<char>(input[i + 1]) : '\0';
            const bool isMark =
                static_cast<char>(input[i]) == '$' && (next == 'H' || next == 'C' || next == 'S');
            if (!isMark) {
                text += static_cast<char>(input[i]);
                continue;
            }
            text += next == 'H'   ? "127.0.0.1:" + port
                    : next == 'C' ? "corvane-" + port + "=" + secret_
                                  : secret_;
            ++i;
        }
        return text;
    }

    Answer answer(const WebRequest& request) {
        const Route& route = request.route;
        require(sent_.find(secret_) != std::string::npos);
        require(route.file >= 0 && route.page >= 0 && route.update.value_or(0) >= 0);
        require(route.token.empty() ||
                (route.token.size() == 32 && std::ranges::all_of(route.token, [](char c) {
                     return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
                 })));
        require(route.kind == Route::Kind::page || route.name.empty());
        if (route.hasBody) {
            std::size_t length = 0;
            request.readBody([&](std::string_view piece) {
                length += piece.size();
                return true;
            });
            require(length <= sent_.size());
        }
        return {.body = "an answer"};
    }

    static std::string received(int client) {
        std::string text;
        std::array<char, 4096> piece{};
        for (ssize_t count = 0; (count = recv(client, piece.data(), piece.size(), 0)) > 0;) {
            text.append(piece.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

    void check(const std::string& reply) const {
        require(reply.empty() || reply.starts_with("HTTP/1.1 "));
        const bool knows = sent_.find(secret_) != std::string::npos;
        require(knows || reply.find(secret_) == std::string::npos);
        require(knows || reply.find("an answer") == std::string::npos);
    }

    HttpServer server_;
    Gate gate_;
    std::string secret_;
    std::string sent_;
};

} // namespace

void fuzzWebRequest(Bytes input) {
    static Server server;
    server.ask(input);
}

} // namespace corvane::fuzz
