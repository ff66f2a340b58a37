#include "app/cli/terminal/lines.h"

#include "app/cli/interrupt.h"

#include <array>
#include <csignal>
#include <poll.h>
#include <unistd.h>

namespace corvane {

bool waitForInput(int descriptor) {
    // Signals come only within the wait: none slips in between the look at the flag and the wait.
    sigset_t all;
    sigset_t former;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &former);
    pollfd polled{descriptor, POLLIN, 0};
    int ready = 0;
    while (!interrupted() && ready <= 0) {
        ready = ppoll(&polled, 1, nullptr, &former);
    }
    sigprocmask(SIG_SETMASK, &former, nullptr);
    return !interrupted();
}

std::optional<std::string> LineSource::next() {
    while (true) {
        const auto end = pending_.find('\n');
        if (end != std::string::npos) {
            std::string line = pending_.substr(0, end);
            pending_.erase(0, end + 1);
            return line;
        }
        if (!fill()) {
            return std::nullopt;
        }
    }
}

bool LineSource::fill() {
    std::array<char, 4096> block{};
    if (!waitForInput(descriptor_)) {
        return false;
    }
    const ssize_t count = read(descriptor_, block.data(), block.size());
    if (count <= 0) {
        return false;
    }
    pending_.append(block.data(), static_cast<std::size_t>(count));
    return true;
}

} // namespace corvane
