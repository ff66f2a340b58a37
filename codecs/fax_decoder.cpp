// Rows out of data: where a row begins, how it is coded, where the data ends, what damage costs.
#include "codecs/fax_one_dimensional.h"
#include "codecs/fax_state.h"
#include "codecs/fax_two_dimensional.h"
#include "codecs/fax_uncompressed.h"

namespace corvane {

namespace {

/// Ends of line that end the data: RTC of Group 3, EOFB of Group 4, and what is taken for an RTC
/// when damage is to be expected.
constexpr std::int32_t endsOfRTC = 6;
constexpr std::int32_t endsOfEOFB = 2;
constexpr std::int32_t endsOfDamagedRTC = 3;

enum class RowStart { row, dataEnd, damaged };

struct Decoder {
    CCStream& stream;
    FaxState& state;
    const CCParameters& parameters = state.parameters;
    FaxBitReader& reader = state.reader;

    bool readTag() const {
        reader.need(1);
        const bool oneDimensional = reader.peek(1) != 0;
        reader.skip(1);
        return oneDimensional;
    }

    /// DecodeEOL, after a damaged row.
    RowStart resynchronise() const {
        if (parameters.k < 0 || !reader.findEndOfLine()) {
            return RowStart::dataEnd;
        }
        if (parameters.k > 0) {
            reader.need(endOfLineCode.length + 1U);
            if ((reader.peek(endOfLineCode.length + 1U) & 1) == 0) {
                // A two-dimensional row, whose reference row is lost.
                reader.skip(endOfLineCode.length + 1U);
                return RowStart::damaged;
            }
        }
        return RowStart::row;
    }

    /// TestForRTC: takes the ends of line that stand here.
    RowStart takeEndsOfLine() const {
        const std::int32_t wanted = parameters.k < 0 ? endsOfEOFB : endsOfRTC;
        std::int32_t ends = 0;
        while (ends < wanted) {
            const auto here = reader.lookHere();
            if (here == FaxBitReader::Here::dataEnd) {
                return RowStart::dataEnd;
            }
            if (here == FaxBitReader::Here::code) {
                break;
            }
            reader.skip(endOfLineCode.length);
            if (parameters.k > 0) {
                reader.need(1);
                if (reader.peek(1) == 0) {
                    // A two-dimensional row follows, its tag still to be read.
                    return ends == 0 ? RowStart::row : RowStart::damaged;
                }
                reader.skip(1);
            }
            ++ends;
        }
        if (ends == wanted ||
            (parameters.damagedRowsBeforeError > 0 && ends >= endsOfDamagedRTC)) {
            return RowStart::dataEnd;
        }
        return ends < 2 ? RowStart::row : RowStart::damaged;
    }

    RowStart startRow() const {
        if (parameters.rows != 0 && state.rowCount >= parameters.rows) {
            return RowStart::dataEnd;
        }
        if (parameters.encodedByteAlign && !parameters.endOfLine) {
            reader.alignToByte();
        }
        return RowStart::row;
    }
};

} // namespace

} // namespace corvane
