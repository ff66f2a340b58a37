// Colours that are mixed of inks with names (PDF Reference, 4.5.5, "DeviceN Color Spaces").
#pragma once

#include "host/artwork.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

inline constexpr std::size_t mostInks = 32;
inline constexpr std::size_t longestInkName = 127; ///< bytes: PDF Reference, appendix C

/// Inks, how much there is of each, and what is seen of them all.
struct InkMixtureFacts {
    /// In the order of their space, each as a byte that counts and the bytes counted: 1 to 127 of
    /// any. "None" is an ink that is not printed. These and the tints live as long as the document.
    std::string_view names;
    std::span<const Fixed> tints; ///< one for each name: 0 to 1.0, full
    Colour seen;                  ///< gray or process
};

/// Adds a name of 1 to 127 bytes to names as above.
inline void appendInkName(std::string& names, std::string_view name) {
    names += static_cast<char>(name.size());
    names += name;
}

/// The names in such a list; empty where it is none, or one of more than 32.
inline std::vector<std::string_view> inkNames(std::string_view list) {
    std::vector<std::string_view> names;
    while (!list.empty()) {
        const auto length = static_cast<std::uint8_t>(list.front());
        list.remove_prefix(1);
        if (length == 0 || length > longestInkName || length > list.size() ||
            names.size() == mostInks) {
            return {};
        }
        names.push_back(list.substr(0, length));
        list.remove_prefix(length);
    }
    return names;
}

} // namespace corvane
