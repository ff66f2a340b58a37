#include "app/cli/interrupt.h"

#include <atomic>

namespace corvane {

namespace {

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");
std::atomic<bool> flag = false;

void noteInterrupt(int /*signal*/) {
    flag = true;
}

} // namespace

InterruptGuard::InterruptGuard() {
    flag = false;
    for (std::size_t i = 0; i < signals.size(); ++i) {
        sigaction(signals[i], nullptr, &former_[i]);
        if (former_[i].sa_handler == SIG_IGN) {
            continue;
        }
        struct sigaction action {};
        sigemptyset(&action.sa_mask);
        const bool isFailedWrite = signals[i] == SIGPIPE || signals[i] == SIGXFSZ;
        action.sa_handler = isFailedWrite ? SIG_IGN : noteInterrupt;
        sigaction(signals[i], &action, nullptr);
    }
}

InterruptGuard::~InterruptGuard() {
    for (std::size_t i = 0; i < signals.size(); ++i) {
        sigaction(signals[i], &former_[i], nullptr);
    }
}

bool interrupted() {
    return flag;
}

} // namespace corvane
