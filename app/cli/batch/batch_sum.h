// How far many files have come, and what came of them.
#pragma once

#include "app/cli/fault.h"
#include "app/cli/options/arguments.h"
#include "app/cli/terminal/progress.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace corvane {

class BatchSum {
public:
    explicit BatchSum(const Arguments& arguments);

    void add(bool isDone) { ++(isDone ? done_ : failed_); }
    std::int64_t failed() const { return failed_; }

    /// How far the work is, on a terminal: "1,234 of 10,000 files, 812 a second, 11 s left".
    void show();
    /// Takes that off again.
    void clear() { line_.clear(); }

    /// The last line: how many, and how fast. `fault` is what ended the work early.
    void sumUp(const std::optional<Fault>& fault) const;

private:
    const Arguments& arguments_;
    ProgressLine line_;
    std::optional<std::int64_t> total_; ///< where it is known before
    std::int64_t done_ = 0;
    std::int64_t failed_ = 0;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace corvane
