// A CMap: how a string divides into codes, and which CID or which text a code has.
//
// Source: PDF Reference, 5.6.4 and 5.9.2; Technical Notes 5014 and 5411.
#pragma once

#include "reader/font/cmap/range_table.h"
#include "runtime/memory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// A code as it stands in a string.
struct StringCode {
    std::uint32_t code = 0;
    std::int32_t length = 1; ///< bytes
    friend constexpr bool operator==(const StringCode&, const StringCode&) = default;
};

inline constexpr std::size_t longestCode = 4; ///< bytes

/// Codes of `length` bytes, each of which is between those of `first` and `last`.
struct CodeSpace {
    std::int32_t length = 1;
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

class CMap {
public:
    /// Two bytes are a CID.
    static std::shared_ptr<const CMap> identity(bool isVertical);

    bool isVertical() const { return isVertical_; }
    /// The first code of a string that is not empty. Bytes that belong to no code space are taken
    /// as one code, as long as the codes that begin like it.
    StringCode firstCode(std::span<const std::byte> string) const;
    std::optional<std::uint32_t> cid(StringCode code) const;
    /// Whatever length the code has: many a ToUnicode CMap says another one than the font.
    std::optional<std::u32string> text(std::uint32_t code) const;
    /// All codes of these CIDs, the first CID of each range with all that follow; in no order.
    struct CidRange {
        std::int32_t length;
        NumberRange range;
    };
    std::vector<CidRange> cidRanges() const;
    std::size_t bytes() const;

    // Building; `finish` at the end.
    void setVertical(bool isVertical) { isVertical_ = isVertical; }
    void setBase(std::shared_ptr<const CMap> base) { base_ = std::move(base); }
    const CMap* base() const { return base_.get(); }
    void addSpace(const CodeSpace& space);
    void addCids(std::int32_t length, const NumberRange& range);
    void addNotdefs(std::int32_t length, const NumberRange& range);
    /// The last character goes up with the code.
    void addText(std::uint32_t first, std::uint32_t last, std::u32string_view text);
    void finish();

private:
    struct Text {
        std::uint32_t first; ///< code
        std::uint32_t start; ///< in `characters_`
        std::uint32_t length;
    };

    bool hasSpace(std::int32_t length, std::uint32_t code) const;
    std::int32_t strayLength(std::uint32_t firstByte) const;

    bool isVertical_ = false;
    std::shared_ptr<const CMap> base_; ///< asked for what is not here
    std::vector<CodeSpace> spaces_;
    std::array<RangeTable, longestCode> cids_; ///< by the length of the code, less 1
    std::array<RangeTable, longestCode> notdefs_;
    RangeTable texts_; ///< indexes into `textList_`
    std::vector<Text> textList_;
    std::u32string characters_;
    ZoneCharge charge_; ///< of `bytes`, once it is finished
};

} // namespace corvane
