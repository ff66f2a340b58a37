// The bottom of a chain that keeps what is written, for tests and benchmarks.
#pragma once

#include "filters/filter.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace corvane::test {

/// Takes up to `room` bytes; of what does not fit, only what does.
struct KeeperFilter : Filter {
    explicit KeeperFilter(std::int32_t size = INT32_MAX) : Filter(entryKeeper), room(size) {}

    static std::int32_t entryKeeper(Filter& filter, Operation operation, std::byte* buffer,
                                    std::int32_t* argument) {
        auto& keeper = static_cast<KeeperFilter&>(filter);
        const auto length = static_cast<std::int32_t>(keeper.text.size());
        if (operation == Operation::write) {
            ++keeper.writes;
            *argument = std::min(*argument, keeper.room - length);
            const auto size = keeper.text.size();
            keeper.text.resize(size + static_cast<std::size_t>(*argument));
            std::transform(buffer, buffer + *argument, keeper.text.data() + size,
                           [](std::byte byte) { return static_cast<char>(byte); });
        } else if (operation == Operation::mark) {
            *argument = length;
        }
        return argument == nullptr ? 0 : *argument;
    }

    std::string text;
    std::int32_t room;
    int writes = 0;
};

} // namespace corvane::test
