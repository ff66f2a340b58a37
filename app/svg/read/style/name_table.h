// Names found by their hash.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvane {

/// A name's place in a fixed list, in the time of one comparison. `size` is a power of two, at
/// least twice the number of names.
template <std::size_t size>
class NameTable {
public:
    template <std::size_t count>
    constexpr explicit NameTable(const std::array<std::string_view, count>& names) {
        static_assert(count < 256 && count * 2 <= size);
        for (std::size_t i = 0; i < count; ++i) {
            std::size_t place = hashOf(names[i]);
            while (entries_[place].number != 0) {
                place = (place + 1) % size;
            }
            entries_[place] = {names[i], static_cast<std::uint8_t>(i + 1)};
        }
    }

    /// From 0; `otherwise` where the list has no such name.
    constexpr std::size_t find(std::string_view name, std::size_t otherwise) const {
        for (std::size_t place = hashOf(name);; place = (place + 1) % size) {
            const Entry& entry = entries_[place];
            if (entry.number == 0) {
                return otherwise;
            }
            if (entry.name == name) {
                return std::size_t{entry.number} - 1;
            }
        }
    }

private:
    struct Entry {
        std::string_view name;
        std::uint8_t number = 0;
    };

    /// Of the length and a few letters: names in use differ in them.
    static constexpr std::size_t hashOf(std::string_view name) {
        const auto letter = [&](std::size_t i) {
            return std::size_t{static_cast<unsigned char>(name[i])};
        };
        const std::size_t length = name.size();
        if (length == 0) {
            return 0;
        }
        std::size_t hash = length * 31 + letter(0);
        hash = hash * 31 + letter(length - 1);
        hash = hash * 31 + letter(length / 2);
        hash = hash * 31 + letter(length * 3 / 4);
        return (hash ^ hash >> 7) % size;
    }

    std::array<Entry, size> entries_{};
};

} // namespace corvane
