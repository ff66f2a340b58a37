// The intake: how a decoder reads the filter below it, in blocks, and gives back what it did not
// need.
#pragma once

#include "filters/filter.h"
#include "runtime/memory.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

/// Bytes held are those from the filter below that were not taken yet. The bytes last taken stay
/// before them, so that `putBack` can undo.
class Intake {
public:
    /// Bytes that `putBack` can always undo, and that `hold` can always bring together.
    static constexpr std::size_t longestUnit = 256;

    /// From which filter to read; nothing is held.
    void open(Filter& below);

    /// Bytes held, at least one but at the end of the data: a block is read where there are none.
    std::span<const std::byte> held() { return rest().empty() ? more() : rest(); }
    /// At least `count` bytes (no more than `longestUnit`), fewer at the end of the data.
    std::span<const std::byte> hold(std::size_t count);
    /// Goes past bytes held.
    void take(std::size_t count) { position_ += count; }
    /// Back by bytes taken since the last seek: those last held, and up to `longestUnit` before.
    void putBack(std::size_t count) { position_ -= count; }
    /// Bytes read from below and not taken.
    std::size_t readAhead() const { return fill_ - position_; }

    /// Leaves the filter below just after the last byte taken.
    void giveBack();
    /// Forgets what is held: the filter below is going elsewhere.
    void forget();

private:
    std::span<const std::byte> rest() const {
        return std::span(buffer_).subspan(position_, fill_ - position_);
    }
    std::span<const std::byte> more();

    Filter* below_ = nullptr;
    std::size_t position_ = 0;
    std::size_t fill_ = 0;
    ZoneCharge charge_;
    std::vector<std::byte> buffer_; ///< bytes taken, bytes held, room
};

} // namespace corvane
