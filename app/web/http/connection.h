// One connection: bytes in and out, none of them for ever.
#pragma once

#include "app/web/limits.h"
#include "toolbox/descriptor.h"

#include <array>
#include <atomic>
#include <chrono>
#include <httplib.h>
#include <string>
#include <string_view>

namespace corvane {

/// Reading fails past the time or the size of a head, and past the time of a body once one is
/// expected; writing when nothing moves. Both fail once the server ends.
class Connection final : public httplib::Stream {
public:
    Connection(int socket, const std::atomic<bool>& isEnding)
        : socket_(socket), isEnding_(isEnding) {}

    ssize_t read(char* bytes, std::size_t size) override;
    ssize_t write(const char* bytes, std::size_t size) override;

    /// The head was read, and a body may follow.
    void expectBody();

    /// Whether the client has closed its side.
    bool isLeft() const;

    /// Ends the answer, and waits for the client to have read it.
    void finish();

    bool is_readable() const override { return true; }
    bool is_writable() const override { return true; }
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return socket_.number(); }

private:
    using Clock = std::chrono::steady_clock;

    /// Waits for an event of poll(2).
    bool await(short event, Clock::time_point deadline) const;
    ssize_t receive(char* bytes, std::size_t size) const;

    Descriptor socket_;
    const std::atomic<bool>& isEnding_;
    Clock::time_point deadline_ = Clock::now() + limits::headTime;
    std::size_t headLeft_ = limits::head;
    bool isHead_ = true;
    std::array<char, 8192> buffer_{}; ///< the head is asked for byte by byte
    std::string_view ready_;          ///< in the buffer
};

} // namespace corvane
