// One line on a terminal that says how far long work has come.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

namespace corvane {

class ProgressLine {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr Clock::duration interval = std::chrono::milliseconds(100);

    /// `terminal` null: nothing is ever shown. Not an owner.
    ProgressLine(std::FILE* terminal, std::string label);
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Shows the share of `done` in `total`, at most once in each interval; the first interval
    /// shows nothing, so quick work never flickers.
    void update(std::int64_t done, std::int64_t total);

    /// Takes the line off the terminal again.
    void clear();

private:
    std::FILE* terminal_;
    std::string label_;
    Clock::time_point last_ = Clock::now();
    bool isShown_ = false;
};

} // namespace corvane
