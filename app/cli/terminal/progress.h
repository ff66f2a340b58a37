// One line on a terminal that says how far long work has come.
#pragma once

#include "app/cli/options/arguments.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

namespace corvane {

/// Standard error where that is a terminal, and the person wants to see progress; else null.
std::FILE* progressTerminal(const Arguments& arguments);

class ProgressLine {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr Clock::duration interval = std::chrono::milliseconds(100);
    /// Work that takes longer also says how fast it goes and how long it will take.
    static constexpr Clock::duration longWork = std::chrono::seconds(1);

    /// `terminal` null: nothing is ever shown. Not an owner. `now` tells the time.
    ProgressLine(std::FILE* terminal, std::string label, Clock::time_point (*now)() = &Clock::now);
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Shows the share of `done` in `total`: "12 %, 3.5 % a second, 25 s left". At most once in
    /// each interval; the first interval shows nothing, so quick work never flickers.
    void update(std::int64_t done, std::int64_t total);

    /// The same for things that are counted: "12 of 40 pages, 8 a second, 4 s left". The total may
    /// be unknown.
    void count(std::int64_t done, const std::optional<std::int64_t>& total,
               const std::string& noun);

    /// Takes the line off the terminal again.
    void clear();

private:
    bool isDue();
    void show(const std::string& text);
    std::string rate(double share) const;
    std::string timeLeft(double share) const;

    std::FILE* terminal_;
    std::string label_;
    Clock::time_point (*now_)();
    Clock::time_point start_ = now_();
    Clock::time_point last_ = start_;
    std::int64_t former_ = 0; ///< what was done at the last update
    bool isShown_ = false;
};

} // namespace corvane
