// The blocks of one scan, in the order in which they are coded: units, restart intervals and the
// sequential coding of a block (ISO/IEC 10918-1, annex F); the progressive one is dct_progressive.
#pragma once

#include "codecs/dct/frame.h"
#include "codecs/dct/input.h"
#include "codecs/dct/samples/transform.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace corvane {

class DctScanReader {
public:
    /// Raises `codec` where a table that the scan needs is missing.
    DctScanReader(DctInput& input, const DctHeader& header, const DctScan& scan);

    /// Before each unit: at the end of an interval reads the restart marker.
    void beginUnit() {
        if (interval_ != 0) {
            countUnit();
        }
    }
    /// After each unit: `DCTDTruncateError` where the data ended inside it.
    void endUnit() const;

    /// Decodes a block of the component at `index` in the scan into zeros. Returns the zigzag
    /// position of its last coefficient.
    std::size_t sequentialBlock(std::size_t index, DctBlock& block);
    /// Adds what the scan says of a block of a progressive frame.
    void progressiveBlock(std::size_t index, DctBlock& block);

    /// The marker that ended the data, if it was met already: for who reads segments next.
    int takeMarker() { return bits_.takeMarker(); }

private:
    struct Tables {
        const DctDecodeTable* dc = nullptr;
        const DctDecodeTable* ac = nullptr;
    };

    void countUnit();
    void restart();
    std::int16_t nextDc(std::size_t index);
    void firstAc(const DctDecodeTable& table, DctBlock& block);
    void refineAc(const DctDecodeTable& table, DctBlock& block);
    void refine(std::int16_t& value);

    DctBits bits_;
    DctScan scan_;
    std::array<Tables, dctComponentLimit> tables_{};
    std::array<std::int16_t, dctComponentLimit> predictions_{};
    std::size_t interval_;
    std::size_t unitsLeft_;
    int nextRestart_ = 0;
    std::uint32_t endOfBlockRun_ = 0;
};

} // namespace corvane
