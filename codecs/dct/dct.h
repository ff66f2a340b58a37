// The DCT codec: JPEG data (ISO/IEC 10918-1) to rows of pixels and back.
//
// Decoding: Huffman-coded DCT frames of 8-bit samples, sequential with one or several scans, and
// progressive where the rules in force take it; 1 to 4 components with any sampling factors from 1
// to 4; restart intervals. Encoding: baseline. A row holds one byte for each component of each
// pixel, left to right; rows run from top to bottom. Memory is that of two rows of units, charged
// to the zone; frames of several scans keep their coefficients as well, two bytes a sample.
//
// Every failure raises `codec` (a full zone `memory`), after which the state can only be destroyed.
// Where the rules keep whole rows, an image that ends early or is damaged delivers the rows before
// the damage, if there are any, and raises warning `picture` in place of the exception.
#pragma once

#include "codecs/dct/frame.h"
#include "codecs/dct/stream.h"
#include "codecs/dct/tables.h"
#include "host/artwork.h"
#include "runtime/work_meter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace corvane {

class DctDecoder;
class DctEncoder;

struct DctSampling {
    std::uint8_t horizontal = 1; ///< 1 to 4
    std::uint8_t vertical = 1;
};

/// Set before `DCTEncodeOpen`.
struct DctSettings {
    std::size_t components = 0; ///< 1 to 4
    std::size_t width = 0;      ///< pixels, to 65,535
    std::size_t height = 0;
    std::array<DctSampling, dctComponentLimit> sampling{};
    bool transform = false;  ///< of three components or more, the first three are RGB: code YCbCr
    Fixed quality = 1 << 16; ///< factor of the quantisers; larger is coarser
    std::vector<DctQuantiser> quantisers{}; ///< one or two in place of the built-in ones
    std::vector<DctHuffmanSpec> dcCodes{};  ///< one or two, with as many `acCodes`
    std::vector<DctHuffmanSpec> acCodes{};
    std::size_t restartInterval = 0;      ///< units, to 65,535; 0: none
    bool suppressApplication = false;     ///< write no APP14 segment
    bool extendedFrame = false;           ///< SOF1 in place of SOF0
    bool extendedRange = false;           ///< says so in APP14
    std::vector<std::byte> markerBytes{}; ///< copied behind SOI as they are
};

struct DctState {
    DctState();
    ~DctState();
    DctState(const DctState&) = delete;
    DctState& operator=(const DctState&) = delete;

    DctSettings settings{};
    /// Set before `DCTDecodeOpen`: an APP14 segment with values that mean nothing is refused.
    bool strict = false;
    /// Set before `DCTDecodeOpen`: the colour transform where no APP14 segment states one.
    std::int32_t usualTransform = dctUnstatedTransform;
    /// Set before `DCTDecodeOpen`: holds the time that decoding takes against a budget; or null.
    CodecClock* clock = nullptr;
    /// Encoding: the row to be coded next, of width times components bytes.
    std::vector<std::uint8_t> row{};
    std::unique_ptr<DctDecoder> decoder{};
    std::unique_ptr<DctEncoder> encoder{};
};

std::unique_ptr<DctState> DCTInitialize();

/// Begins to decode what `source` gives; it must outlive the state.
void DCTDecodeOpen(DctState& state, DctSource& source);
/// The next row, valid until the next call; empty after the last one. Reads the header on first
/// use. With the last row the source stands just behind the end of the image.
std::span<const std::uint8_t> DCTDFilBuf(DctState& state);
/// What the header said; null before it was read.
const DctFrame* dctFrame(const DctState& state);

/// Checks the settings, decides the tables and writes the header to `sink`, which must outlive the
/// state. Wrong settings raise `codec`.
void DCTEncodeOpen(DctState& state, DctSink& sink);
/// Codes the row in the row buffer; rows beyond the height are ignored.
void DCTEFlush(DctState& state);

/// Finishes. Encoding: fills up rows that are missing with the last one and writes the end of the
/// image. Decoding: goes past the rest of the image without decoding it.
void DCTfree(DctState& state);
/// Destroys the state.
void DCTShutdown(std::unique_ptr<DctState> state);

} // namespace corvane
