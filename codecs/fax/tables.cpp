#include "codecs/fax/tables.h"

#include <span>
#include <string_view>

namespace corvane {

namespace {

using Digits = std::string_view;

// Table 2/T.4, terminating codes, white, runs of 0 to 63.
constexpr std::array<Digits, 64> whiteTerminating{
    "00110101", "000111",   "0111",     "1000",     "1011",     "1100",     "1110",     "1111",
    "10011",    "10100",    "00111",    "01000",    "001000",   "000011",   "110100",   "110101",
    "101010",   "101011",   "0100111",  "0001100",  "0001000",  "0010111",  "0000011",  "0000100",
    "0101000",  "0101011",  "0010011",  "0100100",  "0011000",  "00000010", "00000011", "00011010",
    "00011011", "00010010", "00010011", "00010100", "00010101", "00010110", "00010111", "00101000",
    "00101001", "00101010", "00101011", "00101100", "00101101", "00000100", "00000101", "00001010",
    "00001011", "01010010", "01010011", "01010100", "01010101", "00100100", "00100101", "01011000",
    "01011001", "01011010", "01011011", "01001010", "01001011", "00110010", "00110011", "00110100"};

// Table 2/T.4, terminating codes, black, runs of 0 to 63.
constexpr std::array<Digits, 64> blackTerminating{
    "0000110111",   "010",          "11",           "10",           "011",          "0011",
    "0010",         "00011",        "000101",       "000100",       "0000100",      "0000101",
    "0000111",      "00000100",     "00000111",     "000011000",    "0000010111",   "0000011000",
    "0000001000",   "00001100111",  "00001101000",  "00001101100",  "00000110111",  "00000101000",
    "00000010111",  "00000011000",  "000011001010", "000011001011", "000011001100", "000011001101",
    "000001101000", "000001101001", "000001101010", "000001101011", "000011010010", "000011010011",
    "000011010100", "000011010101", "000011010110", "000011010111", "000001101100", "000001101101",
    "000011011010", "000011011011", "000001010100", "000001010101", "000001010110", "000001010111",
    "000001100100", "000001100101", "000001010010", "000001010011", "000000100100", "000000110111",
    "000000111000", "000000100111", "000000101000", "000001011000", "000001011001", "000000101011",
    "000000101100", "000001011010", "000001100110", "000001100111"};

// Table 3a/T.4, make-up codes, white, runs of 64 to 1728 in steps of 64.
constexpr std::array<Digits, 27> whiteMakeUp{
    "11011",     "10010",     "010111",    "0110111",   "00110110",  "00110111",  "01100100",
    "01100101",  "01101000",  "01100111",  "011001100", "011001101", "011010010", "011010011",
    "011010100", "011010101", "011010110", "011010111", "011011000", "011011001", "011011010",
    "011011011", "010011000", "010011001", "010011010", "011000",    "010011011"};

// Table 3a/T.4, make-up codes, black, runs of 64 to 1728 in steps of 64.
constexpr std::array<Digits, 27> blackMakeUp{
    "0000001111",    "000011001000",  "000011001001",  "000001011011",  "000000110011",
    "000000110100",  "000000110101",  "0000001101100", "0000001101101", "0000001001010",
    "0000001001011", "0000001001100", "0000001001101", "0000001110010", "0000001110011",
    "0000001110100", "0000001110101", "0000001110110", "0000001110111", "0000001010010",
    "0000001010011", "0000001010100", "0000001010101", "0000001011010", "0000001011011",
    "0000001100100", "0000001100101"};

// Table 3b/T.4, make-up codes, both colours, runs of 1792 to 2560 in steps of 64.
constexpr std::array<Digits, 13> commonMakeUp{
    "00000001000",  "00000001100",  "00000001101",  "000000010010", "000000010011",
    "000000010100", "000000010101", "000000010110", "000000010111", "000000011100",
    "000000011101", "000000011110", "000000011111"};

constexpr FaxCode codeOf(Digits digits) {
    FaxCode code;
    for (const char digit : digits) {
        code.bits = static_cast<std::uint16_t>(code.bits << 1 | (digit == '1' ? 1 : 0));
        ++code.length;
    }
    return code;
}

constexpr FaxRunCodes runCodes(std::span<const Digits, 64> terminating,
                               std::span<const Digits, 27> makeUp) {
    FaxRunCodes codes{};
    for (std::size_t i = 0; i < terminating.size(); ++i) {
        codes.terminating[i] = codeOf(terminating[i]);
    }
    for (std::size_t i = 0; i < makeUp.size(); ++i) {
        codes.makeUp[1 + i] = codeOf(makeUp[i]);
    }
    for (std::size_t i = 0; i < commonMakeUp.size(); ++i) {
        codes.makeUp[1 + makeUp.size() + i] = codeOf(commonMakeUp[i]);
    }
    return codes;
}

/// Stores `entry` at every index that begins with the code.
template <class Entry, std::size_t size>
constexpr void spread(std::array<Entry, size>& table, unsigned tableBits, FaxCode code,
                      Entry entry) {
    const unsigned rest = tableBits - code.length;
    const std::size_t first = std::size_t{code.bits} << rest;
    for (std::size_t i = 0; i < std::size_t{1} << rest; ++i) {
        table[first + i] = entry;
    }
}

template <unsigned bits>
constexpr auto runLookup(const FaxRunCodes& codes) {
    std::array<FaxRunEntry, std::size_t{1} << bits> table{};
    for (std::size_t i = 0; i < codes.terminating.size(); ++i) {
        const FaxCode code = codes.terminating[i];
        spread(table, bits, code, {static_cast<std::int16_t>(i), code.length, true});
    }
    for (std::size_t i = 1; i < codes.makeUp.size(); ++i) {
        const FaxCode code = codes.makeUp[i];
        spread(table, bits, code, {static_cast<std::int16_t>(64 * i), code.length, false});
    }
    return table;
}

constexpr FaxPairLookup pairLookup(const FaxRunCodes& firstCodes, const FaxRunCodes& secondCodes) {
    FaxPairLookup table{};
    for (std::size_t first = 1; first < 64; ++first) {
        for (std::size_t second = 1; second < 64; ++second) {
            const FaxCode a = firstCodes.terminating[first];
            const FaxCode b = secondCodes.terminating[second];
            const unsigned length = a.length + 0U + b.length;
            if (length <= pairLookupBits) {
                const FaxCode both{static_cast<std::uint16_t>(a.bits << b.length | b.bits),
                                   static_cast<std::uint8_t>(length)};
                spread(table, pairLookupBits, both,
                       {static_cast<std::uint16_t>(second << 10 | first << 4 | length)});
            }
        }
    }
    return table;
}

constexpr auto modeTable() {
    std::array<FaxMode, std::size_t{1} << modeLookupBits> table{};
    spread(table, modeLookupBits, passCode, FaxMode::pass);
    spread(table, modeLookupBits, horizontalCode, FaxMode::horizontal);
    for (std::size_t i = 0; i < verticalCodes.size(); ++i) {
        spread(table, modeLookupBits, verticalCodes[i],
               static_cast<FaxMode>(static_cast<std::size_t>(FaxMode::left3) + i));
    }
    return table;
}

constexpr FaxRunCodes white = runCodes(whiteTerminating, whiteMakeUp);
constexpr FaxRunCodes black = runCodes(blackTerminating, blackMakeUp);

} // namespace

constinit const FaxRunCodes whiteCodes = white;
constinit const FaxRunCodes blackCodes = black;
constinit const std::array<FaxRunEntry, std::size_t{1} << whiteLookupBits> whiteLookup =
    runLookup<whiteLookupBits>(white);
constinit const std::array<FaxRunEntry, std::size_t{1} << blackLookupBits> blackLookup =
    runLookup<blackLookupBits>(black);
constinit const FaxPairLookup whiteBlackLookup = pairLookup(white, black);
constinit const FaxPairLookup blackWhiteLookup = pairLookup(black, white);
constinit const std::array<FaxMode, std::size_t{1} << modeLookupBits> modeLookup = modeTable();

} // namespace corvane
