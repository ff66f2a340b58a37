// CCITT fax coding, ITU-T T.4 (Group 3, one- and two-dimensional) and T.6 (Group 4), by rows.
//
// Decoding: `SetupCCStm`, `CDReset`, then `CDFilBuf` for each row until the stream has ended or
// failed. Encoding: `SetupCCStm`, `CEReset`, then fill the row buffer and `CEFlush`, last
// `CEPutEOF`. A row has (columns + 7) / 8 bytes, the first pixel in the most significant bit.
// Memory grows with the columns only. Damaged data sets the error flag; nothing is raised for it.
#pragma once

#include "codecs/fax/stream.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace corvane {

struct CCParameters {
    std::int32_t columns = 1728;
    std::uint32_t rows = 0; ///< 0: as many as there are
    /// Below 0: Group 4. 0: one-dimensional. Above: mixed; the encoder writes a one-dimensional row
    /// at least every `k` rows.
    std::int32_t k = 0;
    bool encodedByteAlign = false;
    bool endOfBlock = true;
    bool endOfLine = false;
    bool blackIs1 = false;
    std::int32_t damagedRowsBeforeError = 0;
    bool uncompressedMode = false;    ///< permits it
    bool rowEndsUncompressed = false; ///< decoder: a row may end inside that mode
};

struct FaxState;

/// What the codec shares with its caller.
struct CCStream {
    CCStream();
    ~CCStream();
    CCStream(const CCStream&) = delete;
    CCStream& operator=(const CCStream&) = delete;

    bool ended = false;
    bool failed = false;
    bool reading = false;
    bool writing = false;
    std::size_t count = 0;        ///< bytes decoded and not yet taken, or room left in the row
    std::byte* current = nullptr; ///< the first of them
    std::byte* row = nullptr;     ///< start of the row buffer
    std::unique_ptr<FaxState> state;
};

/// Bytes of the vectors that a codec of these parameters needs; `CCFaxUncExtraBytes` of those it
/// needs besides when it may write in the uncompressed mode.
std::size_t CCFaxExtraBytes(const CCParameters& parameters);
std::size_t CCFaxUncExtraBytes(const CCParameters& parameters);

/// Makes the state for the direction of `bytes`, which outlives it, and charges the zone for it. No
/// columns raise `codec`, no memory raises `memory`.
void SetupCCStm(const CCParameters& parameters, FaxByteStream& bytes, CCStream& stream);
/// Bytes that the state holds; 0 without one.
std::size_t CheckCCStm(const CCStream& stream);
/// Gives unused bytes back to the byte stream and destroys the state.
void FinalCCStm(CCStream& stream);

/// Starts an image, below an imaginary white row.
void CDReset(CCStream& stream);
/// Decodes until a row is ready in the buffer, or the data ends. At the end the byte stream's port
/// stands just behind the last byte of the data.
void CDFilBuf(CCStream& stream);

/// Starts an image with an empty row buffer.
void CEReset(CCStream& stream);
/// Encodes the row buffer once it is full.
void CEFlush(CCStream& stream);
/// Ends the data: 0, or -1 where a byte was not accepted or part of a row is left over.
std::int32_t CEPutEOF(CCStream& stream);

} // namespace corvane
