// Bytes as choices.
#pragma once

#include "fuzz/targets.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvane::fuzz {

/// One choice a byte; where there are none left the first.
class Recipe {
public:
    explicit Recipe(Bytes bytes) : bytes_(bytes) {}

    std::uint32_t below(std::size_t limit) {
        if (bytes_.empty()) {
            return 0;
        }
        const auto byte = std::to_integer<std::uint32_t>(bytes_.front());
        bytes_ = bytes_.subspan(1);
        return byte % static_cast<std::uint32_t>(limit);
    }

    template <std::size_t Count>
    std::string oneOf(const std::array<std::string_view, Count>& values) {
        return std::string(values[below(Count)]);
    }

    bool isEmpty() const { return bytes_.empty(); }

private:
    Bytes bytes_;
};

} // namespace corvane::fuzz
