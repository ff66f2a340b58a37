#include "codecs/dct/scan.h"

#include "codecs/dct/error.h"
#include "codecs/dct/markers.h"

namespace corvane {

DctScanReader::DctScanReader(DctInput& input, const DctHeader& header, const DctScan& scan)
    : bits_(input), scan_(scan), interval_(header.restartInterval), unitsLeft_(interval_) {
    const bool progressive = header.frame->progressive;
    const bool needsDc = !progressive || (scan.first == 0 && scan.highBit == 0);
    const bool needsAc = !progressive || scan.first != 0;
    for (std::size_t i = 0; i < scan.components.size(); ++i) {
        tables_[i] = {.dc = header.dcTables[scan.components[i].dcTable].get(),
                      .ac = header.acTables[scan.components[i].acTable].get()};
        if ((needsDc && tables_[i].dc == nullptr) || (needsAc && tables_[i].ac == nullptr)) {
            dct_error();
        }
    }
}

void DctScanReader::countUnit() {
    if (unitsLeft_ == 0) {
        restart();
    }
    --unitsLeft_;
}

void DctScanReader::restart() {
    bits_.forget();
    if (bits_.takeMarker() != dctMarker::rst0 + nextRestart_) {
        DCTDNoMarker();
    }
    nextRestart_ = (nextRestart_ + 1) % 8;
    predictions_ = {};
    endOfBlockRun_ = 0;
    unitsLeft_ = interval_;
}

void DctScanReader::endUnit() const {
    if (bits_.overrun()) {
        DCTDTruncateError();
    }
}

std::int16_t DctScanReader::nextDc(std::size_t index) {
    const DctDecodeTable& table = *tables_[index].dc;
    bits_.need();
    const DctLook& look = table.look(bits_);
    std::int32_t difference = look.value;
    if ((look.length & DctLook::whole) != 0) {
        bits_.drop(look.length & ~unsigned{DctLook::whole});
    } else {
        difference = bits_.extended(table.symbol(bits_));
    }
    // Damaged data may leave 16 bits; it wraps.
    return predictions_[index] = static_cast<std::int16_t>(predictions_[index] + difference);
}

std::size_t DctScanReader::sequentialBlock(std::size_t index, DctBlock& block) {
    block.values[0] = nextDc(index);
    const DctDecodeTable& table = *tables_[index].ac;
    std::size_t last = 0;
    for (std::size_t k = 1; k < dctBlockSize; ++k) {
        bits_.need();
        const DctLook look = table.look(bits_);
        if ((look.length & DctLook::whole) != 0) {
            k += look.symbol >> 4;
            bits_.drop(look.length & ~unsigned{DctLook::whole});
            block.values[dctNaturalOrder[k]] = look.value;
            last = k;
            continue;
        }
        std::uint8_t symbol = look.symbol;
        if (look.length != 0) {
            bits_.drop(look.length);
        } else {
            symbol = table.longSymbol(bits_);
        }
        const unsigned size = symbol & 15U;
        const std::size_t run = symbol >> 4;
        if (size == 0) {
            if (run != 15) {
                break;
            }
            k += 15;
            continue;
        }
        k += run;
        block.values[dctNaturalOrder[k]] = static_cast<std::int16_t>(bits_.extended(size));
        last = k;
    }
    if (last >= dctBlockSize) {
        DCTDBadHuff();
    }
    return last;
}

} // namespace corvane
