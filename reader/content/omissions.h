// What a page has and the artwork does not hold: counted by kind, told to the host at the end.
#pragma once

#include "host/extension.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

class Omissions {
public:
    /// Counts one thing that was left out; the first of its kind raises its warning, if it has one.
    void note(Omission kind);
    /// Counts one that a warning of its own was raised for.
    void count(Omission kind) { ++counts_[static_cast<std::size_t>(kind)]; }
    /// Tells the host extension, if there is one.
    void report() const;

private:
    std::array<std::int32_t, omissionKinds> counts_{};
};

} // namespace corvane
