// Finds records that are kept once: their numbers, by the hash of what they hold.
#pragma once

#include "app/artwork/budget.h"
#include "host/artwork.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

namespace corvane {

class Hash {
public:
    template <class... Values>
    void add(Values... values) {
        (addWord(static_cast<std::uint32_t>(values)), ...);
    }
    /// Numbers that are equal count as the same, 0 of either sign included.
    void addNumber(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value + 0.0);
        add(bits, bits >> 32);
    }
    void add(const Colour& colour) {
        add(static_cast<std::uint32_t>(colour.kind), colour.component[0], colour.component[1],
            colour.component[2], colour.component[3], static_cast<std::uint32_t>(colour.origin),
            static_cast<std::uint32_t>(colour.source));
    }
    void add(std::string_view text) {
        for (const char byte : text) {
            addWord(static_cast<unsigned char>(byte));
        }
        addWord(static_cast<std::uint32_t>(text.size()));
    }
    std::uint32_t value() const { return static_cast<std::uint32_t>(state_ >> 32 ^ state_ >> 7); }

private:
    static constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15;
    void addWord(std::uint32_t word) { state_ = (std::rotl(state_, 5) ^ word) * multiplier; }
    std::uint64_t state_ = 0;
};

/// Open addressing by hash. A bounded number of places is tried; a record that gets none is not
/// found again. So a file that is made for equal hashes costs memory, not time.
class NumberIndex {
public:
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    explicit NumberIndex(ArtworkBudget& budget) : budget_(&budget) {}
    ~NumberIndex();
    NumberIndex(const NumberIndex&) = delete;
    NumberIndex& operator=(const NumberIndex&) = delete;

    /// The number under `hash` of which `same(number)` holds, or `none`.
    template <class Same>
    std::uint32_t find(std::uint32_t hash, Same&& same) const {
        for (std::size_t probe = 0; probe < mostProbes && !places_.empty(); ++probe) {
            const Place& place = places_[(hash + probe) & (places_.size() - 1)];
            if (place.taken == 0) {
                break;
            }
            if (place.hash == hash && same(place.taken - 1)) {
                return place.taken - 1;
            }
        }
        return none;
    }

    /// Makes room for one more. Throws `ArtworkError` past the budget.
    void reserve();
    /// After `reserve`. Numbers are below `none`.
    void add(std::uint32_t hash, std::uint32_t number) noexcept;

private:
    static constexpr std::size_t firstPlaces = 64;
    static constexpr std::size_t mostProbes = 64;

    struct Place {
        std::uint32_t hash = 0;
        std::uint32_t taken = 0; ///< the number plus 1, or 0
    };

    ArtworkBudget* budget_;
    std::vector<Place> places_; ///< a power of two
    std::size_t used_ = 0;
};

} // namespace corvane
