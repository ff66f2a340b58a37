// Whether anybody has the page open.
#pragma once

#include <atomic>
#include <chrono>

namespace corvane {

/// Used by several threads.
class Life {
public:
    using Clock = std::chrono::steady_clock;

    /// A page was heard, or is being answered.
    void note(Clock::time_point now = Clock::now()) { last_ = now; }

    Clock::duration silence(Clock::time_point now = Clock::now()) const {
        return now - last_.load();
    }

private:
    std::atomic<Clock::time_point> last_ = Clock::now();
};

} // namespace corvane
