// The AGL (list of glyph names), packed by cmake/pack-glyph-list, which says how.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

extern const std::string_view packedGlyphList;
extern const std::string_view packedDingbats;

/// Names and what they mean. Every page with text needs it, so it is unpacked into few blocks.
class GlyphList {
public:
    explicit GlyphList(std::string_view packed);

    /// Empty where the list does not have the name.
    std::u32string_view find(std::string_view name) const;

private:
    struct Entry {
        std::uint32_t name, meaning; ///< where they begin
        std::uint32_t nameLength, meaningLength;
    };

    std::size_t placeOf(std::string_view name) const;
    std::string_view nameOf(const Entry& entry) const;

    std::string names_;
    std::u32string meanings_;
    std::vector<Entry> entries_;
    std::vector<std::uint16_t> places_; ///< by hash: 1 more than the index of an entry; 0: free
};

} // namespace corvane
