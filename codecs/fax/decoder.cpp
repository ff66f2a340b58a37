// Rows out of data: where a row begins, how it is coded, where the data ends, what damage costs.
#include "codecs/fax/one_dimensional.h"
#include "codecs/fax/state.h"
#include "codecs/fax/two_dimensional.h"
#include "codecs/fax/uncompressed.h"

#include <utility>

namespace corvane {

namespace {

/// Ends of line that end the data: RTC of Group 3, EOFB of Group 4, and what is taken for an RTC
/// where damage is to be expected.
constexpr std::int32_t endsOfRTC = 6;
constexpr std::int32_t endsOfEOFB = 2;
constexpr std::int32_t endsOfDamagedRTC = 3;

/// Zeros that bring an end of line to a byte boundary; more of them belong to something else.
constexpr unsigned mostAlignment = 7;

enum class RowStart { row, dataEnd, damaged };

std::int32_t endsOfData(const FaxState& state) {
    return state.parameters.k < 0 ? endsOfEOFB : endsOfRTC;
}

bool readTag(FaxBitReader& reader) {
    reader.need(1);
    const bool oneDimensional = reader.peek(1) != 0;
    reader.skip(1);
    return oneDimensional;
}

void alignRow(FaxState& state) {
    if (state.parameters.encodedByteAlign && !state.parameters.endOfLine) {
        state.reader.alignToByte();
    }
}

/// Takes the end mark behind the last of `rows` rows, where there is one.
void takeEndMark(FaxState& state) {
    FaxBitReader& reader = state.reader;
    alignRow(state);
    for (std::int32_t ends = 0; ends < endsOfData(state); ++ends) {
        reader.need(32);
        const unsigned zeros = reader.zeros();
        if (zeros < endOfLineZeros || zeros > endOfLineZeros + mostAlignment) {
            return;
        }
        reader.skip(zeros + 1);
        if (state.parameters.k > 0) {
            readTag(reader);
        }
    }
}

/// DecodeEOL: after a damaged row, goes to the next end of line that a row can follow.
RowStart findRow(FaxState& state) {
    FaxBitReader& reader = state.reader;
    if (state.endOfLineTaken) {
        return state.tag.value_or(true) ? RowStart::row : RowStart::damaged;
    }
    if (!reader.findEndOfLine()) {
        return RowStart::dataEnd;
    }
    if (state.parameters.k > 0) {
        const unsigned length = endOfLineCode.length + 1U;
        reader.need(length);
        if (reader.peek(length) % 2 == 0) {
            // A two-dimensional row, whose reference row is lost.
            reader.skip(length);
            return RowStart::damaged;
        }
    }
    return RowStart::row;
}

/// TestForRTC: takes the ends of line that stand here.
RowStart takeEndsOfLine(FaxState& state) {
    FaxBitReader& reader = state.reader;
    const CCParameters& parameters = state.parameters;
    std::int32_t ends = 0;
    while (ends < endsOfData(state)) {
        const auto here = reader.lookHere();
        if (here == FaxBitReader::Here::dataEnd) {
            return RowStart::dataEnd;
        }
        if (here == FaxBitReader::Here::code) {
            break;
        }
        reader.skip(endOfLineCode.length);
        if (parameters.k > 0) {
            state.tag = readTag(reader);
            if (!*state.tag) {
                break; // a two-dimensional row follows: not counted
            }
        }
        ++ends;
    }
    if (ends == endsOfData(state) ||
        (parameters.damagedRowsBeforeError > 0 && ends >= endsOfDamagedRTC)) {
        return RowStart::dataEnd;
    }
    if (ends < 2) {
        return RowStart::row;
    }
    state.endOfLineTaken = true;
    return RowStart::damaged;
}

RowStart startRow(FaxState& state) {
    const CCParameters& parameters = state.parameters;
    state.row.begin();
    if (parameters.rows != 0 && state.rowCount >= parameters.rows) {
        if (parameters.endOfBlock) {
            takeEndMark(state);
        }
        return RowStart::dataEnd;
    }
    alignRow(state);
    if (state.resynchronise) {
        const RowStart found = findRow(state);
        if (std::exchange(state.endOfLineTaken, false) || found != RowStart::row) {
            return found;
        }
    }
    state.tag.reset();
    // Group 4 has no ends of line; what a first one would be searched behind is its first row.
    if (state.rowCount == 0 && parameters.endOfLine && parameters.k >= 0 &&
        !state.reader.findEndOfLine()) {
        return RowStart::dataEnd;
    }
    return takeEndsOfLine(state);
}

/// Takes the code that enters the uncompressed mode, where it stands here and is permitted.
bool enterUncompressed(FaxState& state, bool oneDimensional) {
    const FaxCode entry = oneDimensional ? uncompressedEntry1D : uncompressedEntry2D;
    state.reader.need(entry.length);
    if (!state.parameters.uncompressedMode || state.uncompressed ||
        state.reader.peek(entry.length) != entry.bits) {
        return false;
    }
    state.reader.skip(entry.length);
    state.uncompressed = true;
    return true;
}

/// The runs of a row; true where they are complete.
bool decodeRow(FaxState& state) {
    const CCParameters& parameters = state.parameters;
    bool oneDimensional = parameters.k == 0;
    if (parameters.k > 0) {
        oneDimensional = state.tag ? *state.tag : readTag(state.reader);
    }
    for (;;) {
        FaxRowEnd end = FaxRowEnd::complete;
        if (state.uncompressed) {
            end = DecompressUnc(state.reader, state.row, parameters.rowEndsUncompressed,
                                state.uncompressed);
        } else if (oneDimensional) {
            end = Decompress1D(state.reader, state.row);
        } else {
            end = Decompress2D(state.reader, state.above, state.row);
        }
        if (end == FaxRowEnd::complete || state.reader.overrun()) {
            return !state.reader.overrun();
        }
        if (end != FaxRowEnd::left &&
            !(end == FaxRowEnd::noCode && enterUncompressed(state, oneDimensional))) {
            return false;
        }
    }
}

/// CCFaxRowDone: the row goes to the buffer.
void deliverRow(CCStream& stream) {
    FaxState& state = *stream.state;
    FaxAppendRuns(state.row, state.parameters.blackIs1, state.pixels);
    ++state.rowCount;
    stream.current = stream.row;
    stream.count = state.rowBytes();
}

void finishGoodRow(CCStream& stream) {
    FaxState& state = *stream.state;
    state.resynchronise = false;
    state.row.close();
    deliverRow(stream);
    state.finishRow();
}

/// Delivers what was decoded of the row, or gives up.
void finishDamagedRow(CCStream& stream) {
    FaxState& state = *stream.state;
    state.uncompressed = false;
    state.resynchronise = true;
    ++state.damagedRows;
    if (state.damagedRows > state.parameters.damagedRowsBeforeError || state.parameters.k < 0 ||
        !state.parameters.endOfLine) {
        stream.failed = true;
        return;
    }
    if (state.row.black()) {
        state.row.change();
    }
    state.row.close();
    deliverRow(stream);
}

void decodeNext(CCStream& stream) {
    FaxState& state = *stream.state;
    const RowStart start = startRow(state);
    if (start == RowStart::dataEnd) {
        stream.ended = true;
    } else if (start == RowStart::row && decodeRow(state)) {
        finishGoodRow(stream);
    } else {
        finishDamagedRow(stream);
    }
}

} // namespace

void CDReset(CCStream& stream) {
    FaxState& state = *stream.state;
    state.reader.ungetResidue();
    state.reader = FaxBitReader(state.byteStream);
    state.above.begin();
    state.above.close();
    state.rowCount = 0;
    state.damagedRows = 0;
    state.resynchronise = false;
    state.endOfLineTaken = false;
    state.uncompressed = false;
    stream.ended = false;
    stream.failed = false;
    stream.current = stream.row;
    stream.count = 0;
}

void CDFilBuf(CCStream& stream) {
    if (stream.ended || stream.failed || stream.count > 0) {
        return;
    }
    if (cc_ferror(stream.state->byteStream)) {
        stream.failed = true;
        return;
    }
    decodeNext(stream);
    stream.state->reader.ungetResidue();
    if (stream.ended || stream.failed) {
        cc_giveBack(stream.state->byteStream);
    }
}

} // namespace corvane
