// Ctrl-C and its relatives as a flag that long work asks for.
#pragma once

#include <array>
#include <csignal>
#include <cstddef>

namespace corvane {

/// While one exists, SIGINT, SIGTERM and SIGHUP only set the flag (a signal that was ignored stays
/// ignored), and a closed pipe or a file-size limit is an error of the write instead of the end of
/// the process. Blocking calls return EINTR. One at a time.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    static constexpr std::array<int, 5> signals{SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ};
    std::array<struct sigaction, signals.size()> former_{};
};

/// Whether the person asked to stop since the guard was made.
bool interrupted();

} // namespace corvane
