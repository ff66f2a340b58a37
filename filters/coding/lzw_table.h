// The tables of the LZW filter: strings by code for reading, codes by string for writing.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvane {

inline constexpr std::uint32_t adaptClear = 256;
inline constexpr std::uint32_t adaptEnd = 257;
inline constexpr std::uint32_t adaptFirst = 258;     ///< the first code given to a string
inline constexpr std::uint32_t adaptEntries = 4096;  ///< codes of twelve bits
inline constexpr std::uint32_t adaptNone = adaptEnd; ///< as a previous code: there is none

/// Which codes are in use.
struct AdaptCodes {
    std::uint32_t width = 9;
    std::uint32_t previous = adaptNone; ///< code before, since the last clear
    std::uint32_t next = adaptFirst;    ///< the next free code
    std::uint32_t limit = 512;          ///< the width grows at this, less `earlyChange`
    std::uint32_t earlyChange = 1;

    void clear() { *this = {.earlyChange = earlyChange}; }
    /// The next free code was given away.
    void advance() {
        ++next;
        if (next >= limit - earlyChange) {
            width = std::min(width + 1, 12U);
            limit = std::min(limit * 2, adaptEntries);
        }
    }
};

/// Strings by code. Each entry holds the last one to eight bytes of its string and the code of what
/// is before them, so that a string is written eight bytes at a time, from its end.
class AdaptDecodeTable {
    static constexpr std::size_t piece = 8;

public:
    /// Bytes that `expand` may write behind the string.
    static constexpr std::size_t overrun = piece - 1;
    static constexpr std::size_t longestString = adaptEntries - adaptFirst + 1;

    AdaptDecodeTable() {
        for (std::size_t i = 0; i < adaptClear; ++i) {
            const auto byte = static_cast<std::byte>(i);
            entries_[i] = {.tail = tailByte(byte, 0), .first = byte};
        }
    }

    std::size_t length(std::uint32_t code) const { return entries_[code].length; }

    /// Takes a code that was read, neither clear nor end, and gives the string of the code before
    /// with its own next byte an entry. False, and nothing is done, where the code can have none.
    bool admit(AdaptCodes& codes, std::uint32_t code) {
        const bool known = code < codes.next;
        const bool following = codes.previous != adaptNone;
        if (!known && (code > codes.next || !following)) {
            return false;
        }
        if (following && codes.next < adaptEntries) {
            append(codes.next, codes.previous, entries_[known ? code : codes.previous].first);
            codes.advance();
        }
        codes.previous = code;
        return true;
    }

    /// Writes the string of `code`; `to` has room for it and `overrun` more.
    void expand(std::uint32_t code, std::byte* to) const {
        const Entry* entry = &entries_[code];
        std::size_t at = (entry->length - 1U) / piece * piece;
        std::memcpy(to + at, &entry->tail, piece);
        while (at > 0) {
            entry = &entries_[entry->prefix];
            at -= piece;
            std::memcpy(to + at, &entry->tail, piece);
        }
    }

    /// A string for which its reader has no room is kept here.
    std::array<std::byte, longestString + overrun>& waiting() { return waiting_; }

private:
    struct Entry {
        std::uint64_t tail = 0;   ///< in the order of memory
        std::uint16_t prefix = 0; ///< code of the string without `tail`
        std::uint16_t length = 1;
        std::byte first{};
    };

    static std::uint64_t tailByte(std::byte byte, std::size_t at) {
        const std::size_t place = std::endian::native == std::endian::little ? at : piece - 1 - at;
        return std::to_integer<std::uint64_t>(byte) << (8 * place);
    }

    void append(std::uint32_t code, std::uint32_t prefix, std::byte last) {
        const Entry& before = entries_[prefix];
        Entry& entry = entries_[code];
        const std::size_t used = before.length % piece;
        entry.tail = (used == 0 ? 0 : before.tail) | tailByte(last, used);
        entry.prefix = used == 0 ? static_cast<std::uint16_t>(prefix) : before.prefix;
        entry.length = static_cast<std::uint16_t>(before.length + 1);
        entry.first = before.first;
    }

    std::array<Entry, adaptEntries> entries_{};
    std::array<std::byte, longestString + overrun> waiting_{};
};

/// Codes by the code of a string and the byte behind it.
class AdaptEncodeTable {
public:
    void clear() { slots_.fill(0); }

    /// The code, or `adaptNone`.
    std::uint32_t find(std::uint32_t prefix, std::byte last) const {
        const std::uint32_t key = keyOf(prefix, last);
        std::size_t at = slotOf(key);
        while (slots_[at] != 0 && slots_[at] >> codeBits != key) {
            at = (at + 1) % slots_.size();
        }
        return slots_[at] == 0 ? adaptNone : slots_[at] % adaptEntries;
    }
    void add(std::uint32_t prefix, std::byte last, std::uint32_t code) {
        const std::uint32_t key = keyOf(prefix, last);
        std::size_t at = slotOf(key);
        while (slots_[at] != 0) {
            at = (at + 1) % slots_.size();
        }
        slots_[at] = key << codeBits | code;
    }

private:
    static constexpr std::uint32_t codeBits = 12;

    static std::uint32_t keyOf(std::uint32_t prefix, std::byte last) {
        return prefix << 8 | std::to_integer<std::uint32_t>(last);
    }
    static std::size_t slotOf(std::uint32_t key) {
        const std::uint32_t mixed = key * 0x9E37'79B1U;
        return mixed >> 19;
    }

    /// Twice as many as there are codes, so that searches are short: key and code, 0 for none (no
    /// string has code 0).
    std::array<std::uint32_t, std::size_t{2} * adaptEntries> slots_{};
};

} // namespace corvane
