// Encoding, row by row: header, strips of pixels, blocks, codes.
#pragma once

#include "codecs/dct/dct.h"
#include "codecs/dct/output.h"
#include "codecs/dct/samples/transform.h"
#include "runtime/memory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

class DctEncoder {
public:
    /// Bytes behind a row that may be read.
    static constexpr std::size_t rowSlack = 64;

    /// Checks the settings and writes the header.
    DctEncoder(const DctSettings& settings, DctSink& sink);

    std::size_t rowBytes() const { return settings_.width * settings_.components; }
    /// `rowBytes` bytes of pixels and `rowSlack` of anything.
    void putRow(const std::uint8_t* pixels);
    void finish();

private:
    struct Plane {
        std::size_t horizontal = 1;
        std::size_t vertical = 1;
        std::size_t table = 0;  ///< of quantiser and codes
        std::size_t stride = 0; ///< bytes from row to row of `full` and of `reduced`
        std::int32_t prediction = 0;
        std::vector<std::uint8_t> full{};    ///< a strip of the component in all pixels
        std::vector<std::uint8_t> reduced{}; ///< the same, subsampled
    };

    void check() const;
    void decideTables();
    void DCTEgenHeader();
    void DCTEgenPSSeg();
    void writeQuantisers();
    void writeFrame();
    void writeCodes();
    void writeScan();
    void DCTEFixRight(Plane& plane, std::size_t row) const;
    void DCTEFixBottom();
    void DCTEcodeStrip();
    void codeUnit(std::size_t unit);
    void codeBlock(Plane& plane, const std::uint8_t* samples);
    void putSymbol(const DctEncodeTable& table, unsigned symbol, std::int32_t value, unsigned size);
    void putRestart();

    DctSettings settings_;
    DctOutput output_;
    std::size_t most_ = 1;
    std::size_t tallest_ = 1;
    std::size_t units_ = 0; ///< in a strip
    std::size_t tables_ = 1;
    std::array<DctQuantiser, 2> quantisers_{};
    std::array<DctDivisors, 2> divisors_{};
    std::array<DctHuffmanSpec, 2> dcCodes_{};
    std::array<DctHuffmanSpec, 2> acCodes_{};
    std::array<DctEncodeTable, 2> dcTables_{};
    std::array<DctEncodeTable, 2> acTables_{};
    std::vector<Plane> planes_{};
    ZoneCharge charge_{};
    std::size_t row_ = 0;     ///< of the image
    std::size_t inStrip_ = 0; ///< rows that the strip holds
    std::size_t unitsLeft_ = 0;
    int nextRestart_ = 0;
};

} // namespace corvane
