// Data out of rows: fill, ends of line, the choice of a row's coding, and the end of the data.
#include "codecs/fax/one_dimensional.h"
#include "codecs/fax/state.h"
#include "codecs/fax/two_dimensional.h"
#include "codecs/fax/uncompressed.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr int endsOfRTC = 6;
constexpr int endsOfEOFB = 2;

/// Below this the uncompressed mode cannot win.
constexpr std::int32_t fewestRunsUncompressed = 3;

/// FillToByteAlignment: zeros before a row, so that it begins on a byte boundary; with ends of
/// line, so that the end of line ends on one (TIFF 6.0, section 11, has it so too).
unsigned fillToByteAlignment(const FaxState& state) {
    if (!state.parameters.encodedByteAlign) {
        return 0;
    }
    const unsigned ahead = state.parameters.endOfLine ? endOfLineCode.length : 0;
    return (16 - (state.writer.bitsInByte() + ahead) % 8) % 8;
}

FaxRowBits& beginRow(FaxRowBits& bits, const CCParameters& parameters, bool oneDimensional) {
    bits.clear();
    if (parameters.endOfLine) {
        bits.put(endOfLineCode);
    }
    if (parameters.k > 0) {
        bits.put(oneDimensional ? 1 : 0, 1);
    }
    return bits;
}

/// CECodeLineWithUnc: the whole row in the uncompressed mode.
const FaxRowBits& codeUncompressed(FaxState& state) {
    const bool oneDimensional = state.parameters.k >= 0;
    FaxRowBits& bits = beginRow(*state.withoutCompression, state.parameters, oneDimensional);
    bits.put(oneDimensional ? uncompressedEntry1D : uncompressedEntry2D);
    CodeUncompressed(state.row, bits);
    return bits;
}

/// The row's codes in the coding that is taken for it.
const FaxRowBits& codeRow(FaxState& state) {
    const std::int32_t k = state.parameters.k;
    const FaxRowBits* best = nullptr;
    if (k >= 0) {
        FaxRowBits& bits = beginRow(*state.oneDimensional, state.parameters, true);
        Code1DCompressed(state.row, bits);
        best = &bits;
    }
    if (k < 0 || (k > 0 && state.twoDimensionalLeft > 0)) {
        FaxRowBits& bits = beginRow(*state.twoDimensional, state.parameters, false);
        Code2DCompressed(state.above, state.row, bits);
        if (best == nullptr || bits.length() < best->length()) {
            best = &bits;
        }
    }
    if (state.withoutCompression && state.row.count + 1 >= fewestRunsUncompressed) {
        const FaxRowBits& bits = codeUncompressed(state);
        best = bits.length() < best->length() ? &bits : best;
    }
    const bool mixed = k > 0 && best == &*state.twoDimensional;
    state.twoDimensionalLeft = mixed ? state.twoDimensionalLeft - 1 : std::max(k - 1, 0);
    return *best;
}

} // namespace

void CEReset(CCStream& stream) {
    FaxState& state = *stream.state;
    state.writer = FaxBitWriter(state.byteStream);
    state.above.begin();
    state.above.close();
    state.rowCount = 0;
    state.twoDimensionalLeft = 0;
    stream.ended = false;
    stream.failed = false;
    stream.current = stream.row;
    stream.count = state.rowBytes();
}

void CEFlush(CCStream& stream) {
    if (stream.count > 0) {
        return;
    }
    FaxState& state = *stream.state;
    if (cc_ferror(state.byteStream) || stream.ended || stream.failed) {
        stream.failed = true;
        return;
    }
    ScanRuns(state.pixels, state.parameters.blackIs1, state.row);
    const FaxRowBits& bits = codeRow(state);
    state.writer.put(0, fillToByteAlignment(state));
    state.writer.put(bits);
    state.finishRow();
    ++state.rowCount;
    stream.current = stream.row;
    stream.count = state.rowBytes();
}

std::int32_t CEPutEOF(CCStream& stream) {
    if (stream.ended) {
        return stream.failed ? -1 : 0;
    }
    CEFlush(stream);
    FaxState& state = *stream.state;
    const CCParameters& parameters = state.parameters;
    if (parameters.endOfBlock) {
        state.writer.put(0, fillToByteAlignment(state));
        for (int i = 0; i < (parameters.k < 0 ? endsOfEOFB : endsOfRTC); ++i) {
            state.writer.put(endOfLineCode);
            if (parameters.k > 0) {
                state.writer.put(1, 1);
            }
        }
    }
    state.writer.padToByte();
    const bool partial = stream.count != state.rowBytes();
    stream.ended = true;
    stream.failed = stream.failed || cc_ferror(state.byteStream) || partial;
    return stream.failed ? -1 : 0;
}

} // namespace corvane
