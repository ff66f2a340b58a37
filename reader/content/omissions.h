// What a page has and the artwork does not hold: counted by kind, told to the host at the end.
#pragma once

#include "host/extension.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

class Omissions {
public:
    struct Quiet {};
    Omissions() = default;
    /// Raises no warnings.
    explicit Omissions(Quiet) : isQuiet_(true) {}

    /// Counts one thing that was left out; the first of its kind raises its warning, if it has one.
    void note(Omission kind);
    /// Counts what another one counted.
    void add(const Omissions& other);
    /// Whether anything was counted that is painted, or shows what is painted otherwise.
    bool holdsHidden() const;
    /// Counts one that a warning of its own was raised for.
    void count(Omission kind) { ++counts_[static_cast<std::size_t>(kind)]; }
    /// Tells the host extension, if there is one.
    void report() const;

private:
    void add(Omission kind, std::int32_t count);

    std::array<std::int32_t, omissionKinds> counts_{};
    bool isQuiet_ = false;
};

} // namespace corvane
