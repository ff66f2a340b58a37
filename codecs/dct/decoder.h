// Decoding, row by row: header, scans, rows of units, pixels.
#pragma once

#include "codecs/dct/coefficients.h"
#include "codecs/dct/frame.h"
#include "codecs/dct/input.h"
#include "codecs/dct/samples/colour.h"
#include "codecs/dct/samples/upsample.h"
#include "codecs/dct/scan.h"
#include "codecs/dct/strips.h"
#include "runtime/work_meter.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

class DctDecoder {
public:
    /// `usualTransform`: of colours, where no APP14 segment states one.
    explicit DctDecoder(DctSource& source, bool strict = false,
                        std::int32_t usualTransform = dctUnstatedTransform,
                        CodecClock* clock = nullptr)
        : input_(source), clock_(clock) {
        header_.strict = strict;
        header_.application.transform = usualTransform;
    }

    /// The next row; empty after the last one.
    std::span<const std::uint8_t> nextRow();
    /// Goes past the end of the image without decoding.
    void skipRest();
    const DctFrame* frame() const { return header_.frame ? &*header_.frame : nullptr; }

private:
    enum class Phase : std::uint8_t { beforeImage, inHeader, decoding, ended };

    bool DCTDdecode_image();
    DctScan nextScan();
    bool readToScan(int marker);
    void latchTables(const DctScan& scan);
    void prepareRows();
    void readScans(DctScan scan);
    void readScan(const DctScan& scan, DctScanReader& reader);
    void readInterleaved(const DctScan& scan, DctScanReader& reader, std::size_t unitRow);
    void storedBlock(DctScanReader& reader, std::size_t index, DctBlock& block) const;
    std::size_t unitRowsReached() const;
    void decodeUnitRow();
    void decodeStreamed();
    void renderStored();
    void finish();
    void end();
    template <class Body>
    bool kept(Body&& body);

    void checkTime() const;

    DctInput input_;
    CodecClock* clock_;
    Phase phase_ = Phase::beforeImage;
    bool behind_ = false; ///< the end of the image was gone past
    DctHeader header_{};
    std::optional<DctScan> scan_{};
    std::optional<DctScanReader> reader_{};         ///< of the scan being read
    std::optional<DctCoefficients> coefficients_{}; ///< where all scans are read first
    std::vector<std::size_t> rowsReached_{};    ///< by component: rows of blocks of its first scan
    std::vector<DctMultipliers> multipliers_{}; ///< by component
    std::optional<DctStrips> strips_{};
    std::optional<DctUpsampler> upsampler_{};
    DctColour colour_ = DctColour::none;
    ZoneCharge charge_{};
    std::vector<std::uint8_t> pixels_{};
    std::size_t unitRows_ = 0; ///< decoded
    std::size_t unitRowLimit_ = 0;
    std::size_t row_ = 0; ///< delivered next
};

} // namespace corvane
