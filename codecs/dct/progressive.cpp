// Blocks of progressive frames (ISO/IEC 10918-1, annex G).
#include "codecs/dct/error.h"
#include "codecs/dct/scan.h"

namespace corvane {

void DctScanReader::progressiveBlock(std::size_t index, DctBlock& block) {
    if (scan_.first != 0) {
        if (scan_.highBit == 0) {
            firstAc(*tables_[index].ac, block);
        } else {
            refineAc(*tables_[index].ac, block);
        }
    } else if (scan_.highBit == 0) {
        block.values[0] = static_cast<std::int16_t>(nextDc(index) << scan_.lowBit);
    } else if (bits_.bit()) {
        block.values[0] = static_cast<std::int16_t>(block.values[0] | 1 << scan_.lowBit);
    }
}

void DctScanReader::firstAc(const DctDecodeTable& table, DctBlock& block) {
    if (endOfBlockRun_ > 0) {
        --endOfBlockRun_;
        return;
    }
    for (std::size_t k = scan_.first; k <= scan_.last; ++k) {
        bits_.need();
        const std::uint8_t symbol = table.symbol(bits_);
        const unsigned run = symbol >> 4;
        const unsigned size = symbol & 15U;
        if (size == 0 && run != 15) {
            endOfBlockRun_ = (1U << run) - 1 + (run > 0 ? bits_.take(run) : 0);
            return;
        }
        k += run;
        if (size != 0) {
            if (k >= dctBlockSize) {
                DCTDBadHuff();
            }
            block.values[dctNaturalOrder[k]] =
                static_cast<std::int16_t>(bits_.extended(size) * (1 << scan_.lowBit));
        }
    }
}

/// One more bit of a coefficient that is not zero.
void DctScanReader::refine(std::int16_t& value) {
    const int bit = 1 << scan_.lowBit;
    if (bits_.bit() && (value & bit) == 0) {
        value = static_cast<std::int16_t>(value < 0 ? value - bit : value + bit);
    }
}

void DctScanReader::refineAc(const DctDecodeTable& table, DctBlock& block) {
    std::size_t k = scan_.first;
    while (endOfBlockRun_ == 0 && k <= scan_.last) {
        bits_.need();
        const std::uint8_t symbol = table.symbol(bits_);
        unsigned run = symbol >> 4;
        int value = 0;
        if ((symbol & 15U) != 0) {
            value = bits_.bit() ? 1 << scan_.lowBit : -(1 << scan_.lowBit);
        } else if (run != 15) {
            endOfBlockRun_ = (1U << run) + (run > 0 ? bits_.take(run) : 0);
            break;
        }
        // Past `run` zeros; the others on the way get their bit.
        for (; k <= scan_.last; ++k) {
            std::int16_t& there = block.values[dctNaturalOrder[k]];
            if (there != 0) {
                refine(there);
            } else if (run-- == 0) {
                there = static_cast<std::int16_t>(value);
                value = 0;
                ++k;
                break;
            }
        }
        // A new coefficient that found no place.
        if (value != 0) {
            DCTDBadHuff();
        }
    }
    if (endOfBlockRun_ > 0) {
        --endOfBlockRun_;
        for (; k <= scan_.last; ++k) {
            std::int16_t& there = block.values[dctNaturalOrder[k]];
            if (there != 0) {
                refine(there);
            }
        }
    }
}

} // namespace corvane
