// Code tables of ITU-T T.4 and T.6, shared by decoder and encoder.
//
// The decoder looks codes up by the next bits of the data, as many as the longest code has; the
// encoder looks them up by run length and by mode.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

struct FaxCode {
    std::uint16_t bits = 0; ///< right-aligned
    std::uint8_t length = 0;
};

/// Longest run that one make-up code says; longer runs repeat it.
inline constexpr std::int32_t longestMakeUp = 2560;

/// Codes of one colour. Tables 2/T.4 (terminating codes) and 3/T.4 (make-up codes, those from 1792
/// on are the same for both colours).
struct FaxRunCodes {
    std::array<FaxCode, 64> terminating; ///< by run length
    std::array<FaxCode, 41> makeUp;      ///< by run length / 64; the first is no code
};

extern const FaxRunCodes whiteCodes;
extern const FaxRunCodes blackCodes;

/// What the next bits of a run say.
struct FaxRunEntry {
    std::int16_t run = 0;     ///< pixels
    std::uint8_t length = 0;  ///< bits; 0: no run code
    bool terminating = false; ///< the run ends here, as against: a make-up code
};

inline constexpr unsigned whiteLookupBits = 12;
inline constexpr unsigned blackLookupBits = 13;
extern const std::array<FaxRunEntry, std::size_t{1} << whiteLookupBits> whiteLookup;
extern const std::array<FaxRunEntry, std::size_t{1} << blackLookupBits> blackLookup;

/// Two runs of some pixels, the second of the other colour, each of one terminating code; all 0:
/// the next bits begin otherwise. Most runs are that short, and one look tells both.
struct FaxPairEntry {
    std::uint16_t packed = 0;
    constexpr unsigned length() const { return packed & 15U; }
    constexpr std::int32_t first() const { return packed >> 4 & 63; }
    constexpr std::int32_t second() const { return packed >> 10; }
};

inline constexpr unsigned pairLookupBits = 12;
using FaxPairLookup = std::array<FaxPairEntry, std::size_t{1} << pairLookupBits>;
extern const FaxPairLookup whiteBlackLookup;
extern const FaxPairLookup blackWhiteLookup;

/// How far vertical mode reaches to each side, in pixels.
inline constexpr std::int32_t verticalReach = 3;

/// Modes of two-dimensional coding. Table 4/T.4, table 1/T.6.
inline constexpr FaxCode passCode{0b0001, 4};
inline constexpr FaxCode horizontalCode{0b001, 3};
/// By a1 - b1 + `verticalReach`.
inline constexpr std::array<FaxCode, 2 * verticalReach + 1> verticalCodes{{{0b0000010, 7},
                                                                           {0b000010, 6},
                                                                           {0b010, 3},
                                                                           {0b1, 1},
                                                                           {0b011, 3},
                                                                           {0b000011, 6},
                                                                           {0b0000011, 7}}};

/// The codes by name; those of vertical mode say a1 - b1, left below 0.
enum class FaxMode : std::uint8_t {
    none,
    left3,
    left2,
    left1,
    same,
    right1,
    right2,
    right3,
    pass,
    horizontal
};

inline constexpr unsigned modeLookupBits = 7;
extern const std::array<FaxMode, std::size_t{1} << modeLookupBits> modeLookup;

/// End of line: eleven zeros and a one. More zeros before it are fill.
inline constexpr FaxCode endOfLineCode{1, 12};
inline constexpr unsigned endOfLineZeros = 11;

/// Entry to the uncompressed mode: the extension codes of table 3/T.4 (note) and table 1/T.6 with
/// 111.
inline constexpr FaxCode uncompressedEntry1D{0b000000001111, 12};
inline constexpr FaxCode uncompressedEntry2D{0b0000001111, 10};

/// Uncompressed mode, table 5/T.4: a code is some zeros and a one. Up to four zeros: that many
/// white pixels and a black one. Five: five white pixels. Six to ten: exit, after six less than
/// that many white pixels; the next bit is the colour of the next run, black 1.
inline constexpr unsigned uncompressedWhites = 5;
inline constexpr unsigned uncompressedExitZeros = 6;
inline constexpr unsigned uncompressedMostZeros = 10;

} // namespace corvane
