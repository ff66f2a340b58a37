#include "app/web/http/connection.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace corvane {

bool Connection::await(short event, Clock::time_point deadline) const {
    while (!isEnding_) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        pollfd polled{socket_.number(), event, 0};
        const int wait =
            static_cast<int>(std::min<std::chrono::milliseconds>(left, limits::turn).count());
        const int count = poll(&polled, 1, wait);
        if (count > 0) {
            return true; // also after an error, which the call that follows tells
        }
        if (count < 0 && errno != EINTR) {
            return false;
        }
    }
    return false;
}

ssize_t Connection::receive(char* bytes, std::size_t size) const {
    if (!await(POLLIN, deadline_)) {
        return -1;
    }
    ssize_t count = 0;
    do {
        count = recv(socket_.number(), bytes, size, MSG_DONTWAIT);
    } while (count < 0 && errno == EINTR);
    return count;
}

ssize_t Connection::read(char* bytes, std::size_t size) {
    if (isHead_ && headLeft_ < size) {
        return -1;
    }
    if (ready_.empty() && size >= buffer_.size()) {
        return receive(bytes, size);
    }
    if (ready_.empty()) {
        const ssize_t count = receive(buffer_.data(), buffer_.size());
        if (count <= 0) {
            return count;
        }
        ready_ = {buffer_.data(), static_cast<std::size_t>(count)};
    }
    const std::size_t taken = ready_.copy(bytes, size);
    ready_.remove_prefix(taken);
    headLeft_ -= isHead_ ? taken : 0;
    return static_cast<ssize_t>(taken);
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
    if (!await(POLLOUT, Clock::now() + limits::writeTime)) {
        return -1;
    }
    ssize_t count = 0;
    do {
        count = send(socket_.number(), bytes, size, MSG_NOSIGNAL | MSG_DONTWAIT);
    } while (count < 0 && errno == EINTR);
    return count < 0 && errno == EAGAIN ? 0 : count;
}

void Connection::expectBody() {
    isHead_ = false;
    deadline_ = Clock::now() + limits::bodyTime;
}

bool Connection::isLeft() const {
    pollfd polled{socket_.number(), POLLRDHUP, 0};
    return poll(&polled, 1, 0) > 0;
}

void Connection::finish() {
    shutdown(socket_.number(), SHUT_WR);
    const auto deadline = Clock::now() + limits::lingerTime;
    std::size_t left = limits::linger;
    while (await(POLLIN, deadline)) {
        const ssize_t count = recv(socket_.number(), buffer_.data(), buffer_.size(), MSG_DONTWAIT);
        if (count <= 0 || static_cast<std::size_t>(count) > left) {
            return;
        }
        left -= static_cast<std::size_t>(count);
    }
}

// Both ends are on this machine, whatever their numbers.
void Connection::get_remote_ip_and_port(std::string& /*ip*/, int& /*port*/) const {}
void Connection::get_local_ip_and_port(std::string& /*ip*/, int& /*port*/) const {}

} // namespace corvane
