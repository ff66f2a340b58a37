// The predictor filter: undoes the differences that an encoder took before compressing (PDF
// Reference, table 3.7 and "LZW and Flate Predictor Functions"; TIFF 6.0, section 14; PNG,
// filters).
#pragma once

#include "filters/decoder.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

struct PredictorParameters {
    std::int32_t predictor = 1; ///< 1 none, 2 TIFF, 10 to 15 PNG (every row names its filter)
    std::int32_t colors = 1;    ///< samples of a pixel
    std::int32_t bitsPerComponent = 8;
    std::int32_t columns = 1; ///< pixels of a row
};

/// Reads rows, each beginning on a byte; a row cut short is delivered as far as it goes. A row that
/// names no PNG filter is taken as it stands. Writing raises `io`. Reads no rows but those that are
/// asked for, short ones many at a time.
class PredictorFilter final : public Decoder {
public:
    PredictorFilter(const PredictorParameters& parameters, std::size_t rowBytes);

private:
    std::size_t decode(std::span<std::byte> out) override;
    void restart() override;
    void readRows(std::size_t wanted);
    void undoRow(std::span<const std::byte> from, std::span<std::byte> to,
                 std::span<const std::byte> above) const;

    PredictorParameters parameters_;
    std::size_t prefix_;     ///< bytes in front of a row's samples: the filter's number
    std::size_t pixelBytes_; ///< distance to the sample on the left, one at least
    std::size_t position_ = 0;
    std::size_t available_ = 0;
    ZoneCharge charge_;
    std::vector<std::byte> rows_;
    std::vector<std::byte> above_;
};

/// Parameters that no row can have, predictor 1 among them, raise `range`.
FilterOwner setupPredictor(const PredictorParameters& parameters);

} // namespace corvane
