// In which order letters stand (UAX #9), and what script they are of (UAX #24).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The embedding level of each character of a line: odd ones run to the left.
using TextLevel = std::uint8_t;
std::vector<TextLevel> levelsOf(std::u32string_view line, bool isRightToLeft);

/// The order from left to right of things that are in the order of reading, by their levels.
std::vector<std::size_t> visualOrder(std::span<const TextLevel> levels);

/// What shows as the character does where the line runs to the left: the other bracket of a pair
/// (rule L4); itself where it has none.
char32_t mirrored(char32_t character);

/// How a line reads whose characters stand in the order of sight.
struct ReadLine {
    bool isRightToLeft = false;
    std::vector<std::size_t> order; ///< the places of its characters, as they are read
    std::vector<TextLevel> levels;  ///< of these; brackets of odd ones are turned
};
/// Of the two directions the one of most letters is tried first. Nothing where what is found would
/// not stand so again.
std::optional<ReadLine> readingOf(std::u32string_view standing);
/// The same; the direction that is tried first, from the right or not, is given.
std::optional<ReadLine> readingOf(std::u32string_view standing, bool isLikely);

/// The same of a line in which a character that `isBehind` goes with the one in front of it, as
/// marks of its glyph do. Where nothing is found, the line runs from the left.
ReadLine readingWithMarks(std::u32string_view standing, const std::vector<bool>& isBehind);

/// The text of one glyph as it stands, which is given as it is read, or the other way round:
/// letters from the right are turned round one by one, each with its marks behind it.
std::u32string inOtherOrder(std::u32string_view text);

/// The script of each character, as an ISO 15924 tag; what is common to several is of that of the
/// letters before it.
std::vector<std::uint32_t> scriptsOf(std::u32string_view line);

/// Whether letters of the script take other forms beside others, or other places: one by one they
/// cannot be read. Forms that have characters of their own do not count.
bool needsShaping(char32_t character);

/// Whether it is a letter of a script that runs from the right, or a mark of one.
bool isRightToLeft(char32_t character);
/// Whether both letters from the right and what stands from the left, or blanks, are in the text.
bool runsBothWays(std::u32string_view text);

/// Whether it belongs to the letter before it: a mark, or what only says how letters stand.
bool isMark(char32_t character);
/// The latter: nobody sees it.
bool isFormat(char32_t character);

} // namespace corvane
