// The bottom of a chain that reads bytes of memory.
#pragma once

#include "filters/filter.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace corvane {

/// Reads and seeks as a file opened for "read"; writing raises `access`. The bytes are somebody
/// else's. No read delivers more than `longestRead` bytes, whatever was asked for: how a slow
/// source delivers.
class MemoryFilter : public Filter {
public:
    explicit MemoryFilter(std::span<const std::byte> bytes, std::int32_t longestRead = INT32_MAX)
        : Filter(entry), bytes_(bytes), longestRead_(longestRead) {}

private:
    static std::int32_t entry(Filter& filter, Operation operation, std::byte* buffer,
                              std::int32_t* argument) {
        auto& memory = static_cast<MemoryFilter&>(filter);
        switch (operation) {
        case Operation::read:
            return *argument = memory.read(buffer, *argument);
        case Operation::seek:
            return *argument = memory.seek(*argument);
        case Operation::mark:
            return *argument = static_cast<std::int32_t>(memory.position_);
        case Operation::write:
            failException(Exception::access);
        default:
            return 0;
        }
    }

    std::int32_t read(std::byte* to, std::int32_t count) {
        count = std::clamp(count, 0, longestRead_);
        const std::span<const std::byte> piece = bytes_.subspan(position_).first(
            std::min(bytes_.size() - position_, static_cast<std::size_t>(count)));
        std::ranges::copy(piece, to);
        position_ += piece.size();
        return static_cast<std::int32_t>(piece.size());
    }

    std::int32_t seek(std::int32_t position) {
        const auto length = static_cast<std::int32_t>(bytes_.size());
        const std::int32_t target = position < 0 ? length + position : position;
        if (target < 0 || target > length) {
            failException(Exception::io);
        }
        position_ = static_cast<std::size_t>(target);
        return target;
    }

    std::span<const std::byte> bytes_;
    std::int32_t longestRead_;
    std::size_t position_ = 0;
};

} // namespace corvane
