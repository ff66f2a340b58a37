// Fax data: the decoder gives the same rows whatever the pieces that its bytes come in, and the
// pixels of libtiff where that has nothing to object to; what the encoder makes of pixels, the
// decoder and libtiff read back.
#include "fuzz/targets.h"
#include "host/memory.h"
#include "tests/support/fax_peer.h"
#include "tests/support/fax_run.h"
#include "toolbox/state.h"

#include <array>

namespace corvane::fuzz {

namespace {

constexpr std::size_t mostRows = 400;

CCParameters chooseParameters(Choices& choices) {
    constexpr std::array<std::uint16_t, 8> widths{1, 7, 8, 9, 64, 65, 1728, 65535};
    return {.columns = choices.below(3) == 0 ? widths[choices.below(8)]
                                             : static_cast<std::uint16_t>(1 + choices.below(300)),
            .rows = static_cast<std::uint16_t>(choices.below(2) * choices.below(20)),
            .k = std::array{0, 4, -1}[choices.below(3)],
            .encodedByteAlign = choices.below(3) == 0,
            .endOfBlock = choices.below(2) == 0,
            .endOfLine = choices.below(2) == 0,
            .blackIs1 = choices.below(2) == 0,
            .damagedRowsBeforeError = static_cast<std::int32_t>(choices.below(2) * 5),
            .uncompressedMode = choices.below(3) == 0,
            .rowEndsUncompressed = choices.below(2) == 0};
}

/// Group 4 data without ends of line, as both understand it. Where a run of no pixels lies inside a
/// row the standards compare pixels and libtiff compares codes; what our encoder writes of the
/// decoded pixels has no such run, so both must agree on that.
void compareWithPeer(const CCParameters& parameters, Bytes pixels) {
    const std::size_t rowBytes = (static_cast<std::size_t>(parameters.columns) + 7) / 8;
    const auto rows = static_cast<std::uint32_t>(pixels.size() / rowBytes);
    if (rows == 0) {
        return;
    }
    CCParameters coding{.columns = parameters.columns, .k = parameters.k, .blackIs1 = true};
    test::FaxKind kind{static_cast<std::uint32_t>(parameters.columns), rows, COMPRESSION_CCITTFAX4,
                       0};
    if (parameters.k >= 0) {
        coding.endOfLine = true;
        kind.compression = COMPRESSION_CCITTFAX3;
        kind.options = parameters.k > 0 ? GROUP3OPT_2DENCODING : 0U;
    }
    const std::vector<std::byte> data = test::encodeFax(coding, pixels);
    const test::FaxDecoded back = test::decodeFax(coding, data);
    require(back.consumed == data.size() && !back.failed);
    const std::vector<std::byte> peer = test::tiffDecode(kind, data);
    require(peer == back.pixels);
}

/// One-dimensional rows that libtiff accepts without a word.
void decodeAsPeer(Bytes input, std::uint16_t columns) {
    constexpr std::uint32_t rows = 3;
    const test::FaxKind kind{columns, rows, COMPRESSION_CCITTRLE, 0};
    const std::vector<std::byte> peer = test::tiffDecode(kind, input);
    if (!peer.empty()) {
        const CCParameters parameters{.columns = columns,
                                      .rows = rows,
                                      .encodedByteAlign = true,
                                      .endOfBlock = false,
                                      .blackIs1 = true};
        const test::FaxDecoded ours = test::decodeFax(parameters, input);
        require(ours.failed || ours.pixels.size() < peer.size() || ours.pixels == peer);
    }
}

} // namespace

void fuzzFaxDecode(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    const CCParameters parameters = chooseParameters(choices);
    const test::FaxDecoded whole = test::decodeFax(parameters, input, SIZE_MAX, mostRows);
    require(whole.consumed <= input.size());
    require(test::decodeFax(parameters, input, 1 + choices.below(64), mostRows) == whole);
    if (parameters.columns <= 2000) {
        compareWithPeer(parameters, whole.pixels);
        if (!input.empty()) {
            decodeAsPeer(input, static_cast<std::uint16_t>(parameters.columns));
        }
    }
    require(zoneBytesCharged() == 0);
}

void fuzzFaxEncode(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    CCParameters parameters = chooseParameters(choices);
    const std::size_t rowBytes = (static_cast<std::size_t>(parameters.columns) + 7) / 8;
    const std::size_t rows = std::min(input.size() / rowBytes, mostRows);
    const Bytes pixels = input.first(rows * rowBytes);
    parameters.rows = parameters.endOfBlock ? 0 : static_cast<std::uint16_t>(rows);
    if (rows == 0) {
        return;
    }
    const std::vector<std::byte> data = test::encodeFax(parameters, pixels);
    const test::FaxDecoded back = test::decodeFax(parameters, data);
    require(!back.failed && back.consumed == data.size());
    // Bits behind the last column are lost; a second pass keeps everything.
    require(back.pixels.size() == pixels.size());
    require(test::encodeFax(parameters, back.pixels) == data);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const bool last = i % rowBytes == rowBytes - 1 && parameters.columns % 8 != 0;
        const auto kept = last ? std::byte{0xFF} << (8 - parameters.columns % 8) : std::byte{0xFF};
        require((pixels[i] & kept) == (back.pixels[i] & kept));
    }
    require(zoneBytesCharged() == 0);
}

} // namespace corvane::fuzz
