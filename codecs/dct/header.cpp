// The header that the encoder writes (ISO/IEC 10918-1, annex B).
#include "codecs/dct/encoder.h"
#include "codecs/dct/markers.h"

#include <string_view>

namespace corvane {

void DctEncoder::DCTEgenHeader() {
    output_.marker(dctMarker::soi);
    output_.bytes(settings_.markerBytes);
    if (!settings_.suppressApplication) {
        DCTEgenPSSeg();
    }
    writeQuantisers();
    writeFrame();
    writeCodes();
    if (settings_.restartInterval != 0) {
        output_.marker(dctMarker::dri);
        output_.word(4);
        output_.word(settings_.restartInterval);
    }
    writeScan();
}

/// APP14: which colour transform the components went through.
void DctEncoder::DCTEgenPSSeg() {
    constexpr std::string_view identifier = "Morel";
    output_.marker(dctMarker::app14);
    output_.word(14);
    output_.bytes(std::as_bytes(std::span(identifier)));
    output_.word(100);
    output_.word(settings_.extendedRange ? 0x8000 : 0);
    output_.word(0);
    output_.byte(settings_.transform ? 1 : 0);
}

void DctEncoder::writeQuantisers() {
    output_.marker(dctMarker::dqt);
    output_.word(2 + 65 * tables_);
    for (std::size_t i = 0; i < tables_; ++i) {
        output_.byte(static_cast<unsigned>(i));
        for (const std::uint16_t entry : quantisers_[i]) {
            output_.byte(entry);
        }
    }
}

void DctEncoder::writeFrame() {
    output_.marker(settings_.extendedFrame ? dctMarker::sof1 : dctMarker::sof0);
    output_.word(8 + 3 * planes_.size());
    output_.byte(8);
    output_.word(settings_.height);
    output_.word(settings_.width);
    output_.byte(static_cast<unsigned>(planes_.size()));
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        output_.byte(static_cast<unsigned>(i + 1));
        output_.byte(static_cast<unsigned>(planes_[i].horizontal << 4 | planes_[i].vertical));
        output_.byte(static_cast<unsigned>(planes_[i].table));
    }
}

void DctEncoder::writeCodes() {
    std::size_t length = 2;
    for (std::size_t i = 0; i < tables_; ++i) {
        length += 34 + symbolCount(dcCodes_[i]) + symbolCount(acCodes_[i]);
    }
    output_.marker(dctMarker::dht);
    output_.word(length);
    for (std::size_t i = 0; i < tables_; ++i) {
        for (unsigned use = 0; use < 2; ++use) {
            const DctHuffmanSpec& spec = use == 0 ? dcCodes_[i] : acCodes_[i];
            output_.byte(use << 4 | static_cast<unsigned>(i));
            output_.bytes(std::as_bytes(std::span(spec.counts)));
            output_.bytes(std::as_bytes(std::span(spec.symbols).first(symbolCount(spec))));
        }
    }
}

void DctEncoder::writeScan() {
    output_.marker(dctMarker::sos);
    output_.word(6 + 2 * planes_.size());
    output_.byte(static_cast<unsigned>(planes_.size()));
    for (std::size_t i = 0; i < planes_.size(); ++i) {
        output_.byte(static_cast<unsigned>(i + 1));
        output_.byte(static_cast<unsigned>(planes_[i].table << 4 | planes_[i].table));
    }
    output_.byte(0);
    output_.byte(63);
    output_.byte(0);
}

} // namespace corvane
