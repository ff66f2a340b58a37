#include "runtime/work_meter.h"

#include "runtime/budget.h"
#include "runtime/callbacks.h"

#include <algorithm>

namespace corvane {

namespace {

/// Nobody, where a codec is used without a host.
void askHost() {
    if (callbacks != nullptr && callHost(slot::checkUserAbort)) {
        failException(Exception::cancelled);
    }
}

} // namespace

void StepMeter::check() {
    if (count_ > limit_) {
        failException(Exception::limit);
    }
    constexpr std::int64_t stepsPerQuestion = 1'000'000;
    if (count_ >= stepsPerQuestion) {
        askHost();
    }
    nextCheck_ = std::min(count_ + stepsPerQuestion, limit_ + 1);
}

void CodecClock::begin() {
    if (depth_++ == 0) {
        start_ = std::clock();
    }
}

void CodecClock::end() {
    if (--depth_ == 0) {
        spent_ += std::clock() - start_;
    }
}

std::clock_t CodecClock::spent() const {
    return spent_ + (depth_ > 0 ? std::clock() - start_ : 0);
}

std::clock_t CodecClock::allowed() const {
    const double seconds =
        std::min(budget::codecSeconds + static_cast<double>(fed_) * budget::codecSecondsPerByte,
                 budget::longestCodecSeconds);
    return static_cast<std::clock_t>(seconds * CLOCKS_PER_SEC);
}

void CodecClock::check() {
    raiseException(stopped_);
    const std::clock_t now = spent();
    if (now > allowed()) {
        failException(Exception::limit);
    }
    if (now >= nextQuestion_) {
        nextQuestion_ = now + CLOCKS_PER_SEC / 10;
        askHost();
    }
}

bool CodecClock::mustStop() {
    if (stopped_ == Exception::none) {
        stopped_ = guarded([&] { check(); });
        resetException();
    }
    return stopped_ != Exception::none;
}

} // namespace corvane
