// What decoder and encoder keep between rows.
#pragma once

#include "codecs/fax/bit_reader.h"
#include "codecs/fax/bit_writer.h"
#include "codecs/fax/codec.h"
#include "codecs/fax/row.h"
#include "runtime/memory.h"

#include <optional>
#include <vector>

namespace corvane {

struct FaxState {
    FaxState(const CCParameters& given, FaxByteStream& stream);

    std::size_t rowBytes() const { return faxRowBytes(parameters.columns); }
    /// CCFaxFinishRow: the row just coded becomes the reference of the next.
    void finishRow();

    CCParameters parameters;
    FaxByteStream& byteStream;
    ZoneCharge charge;
    FaxRow above;
    FaxRow row;
    std::vector<std::byte> pixels; ///< whole words
    std::uint32_t rowCount = 0;

    // Decoder
    FaxBitReader reader;
    std::int64_t damagedRows = 0;
    bool resynchronise = false;
    bool endOfLineTaken = false; ///< that of the next row is read already
    std::optional<bool> tag;     ///< the next row's, where it is read: one-dimensional
    bool uncompressed = false;   ///< inside that mode

    // Encoder
    FaxBitWriter writer;
    std::optional<FaxRowBits> oneDimensional;
    std::optional<FaxRowBits> twoDimensional;
    std::optional<FaxRowBits> withoutCompression;
    std::int32_t twoDimensionalLeft = 0; ///< rows before the next one-dimensional one
};

/// Bytes that the state holds.
std::size_t CCFaxCheckBytes(const FaxState& state);

} // namespace corvane
