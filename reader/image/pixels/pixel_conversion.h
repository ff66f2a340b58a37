// From samples to pixels as they are seen.
//
// Where a component has at most 256 values, what becomes of them is worked out once: tables for
// gray, RGB and CMYK, and a palette for spaces of one component. In other spaces the colours that
// were met are remembered.
#pragma once

#include "host/image.h"
#include "reader/image/image_form.h"
#include "reader/image/pixels/packed_samples.h"
#include "reader/paint/seen_colour.h"
#include "runtime/work_meter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvane {

class PixelConversion {
public:
    /// `withAlpha`: pixels are to be gray or RGB of 8 or 16 bits, so that alpha can stand beside
    /// them. Else samples of one component stay as they are, and those that are transparent by the
    /// colour key are so in the palette. `fill`: what a stencil is painted in.
    PixelConversion(const ImageForm& form, bool withAlpha, SeenColour fill = {});

    ImageColours colours() const { return colours_; }
    std::int32_t bits() const { return bits_; }
    std::span<const std::uint8_t> palette() const { return palette_; }
    std::int64_t rowBytes() const;
    /// Whether rows stay what they are.
    bool keepsRows() const { return way_ == Way::same; }
    /// What stands for rows that are missing: white, or transparent.
    std::byte emptyByte() const { return empty_; }
    /// What stands for samples that are missing in a row.
    std::byte emptySample() const { return emptySample_; }

    /// A row of samples to a row of pixels. `steps` counts work on colours that are not in a table.
    void convert(std::span<const std::byte> row, std::span<std::byte> pixels, StepMeter& steps);
    /// The alpha of each pixel by the colour key or, without one, by the further sample.
    void alphaOf(std::span<const std::byte> row, std::span<std::uint8_t> alpha);

private:
    enum class Way : std::uint8_t {
        same,
        wide,
        bytes,
        palette,
        gray,
        rgb,
        cmyk,
        profile,
        computed
    };

    struct Remembered {
        std::uint64_t samples = 0;
        SeenColour colour;
        bool isUsed = false;
    };

    void prepareOne(bool withAlpha, SeenColour fill);
    void prepareMany();
    void makeTables();
    void chooseEmpty(bool withAlpha);
    bool usesOwnLevels(std::span<const SeenColour> colours);
    SeenColour computed(const std::uint8_t* samples, StepMeter& steps);
    void throughProfile(const std::uint8_t* samples, std::span<std::byte> pixels, StepMeter& steps);
    void chooseEmptySample();
    std::span<const std::uint8_t> unpack(std::span<const std::byte> row);
    void convertWide(std::span<const std::byte> row, std::span<std::byte> pixels) const;

    ImageForm form_;
    std::size_t width_;
    std::size_t components_;
    Way way_ = Way::same;
    ImageColours colours_ = ImageColours::gray;
    std::int32_t bits_ = 8;
    std::byte empty_{0xFF};
    std::byte emptySample_{0xFF};
    std::vector<std::uint8_t> palette_;
    std::array<std::byte, 256> bytes_{};  ///< of `bytes`: packed samples to packed levels
    std::optional<PackedSamples> packed_; ///< of fewer than 8 bits; of `gray` to levels
    std::vector<SeenColour> seen_;        ///< by sample, of one component
    std::vector<std::array<std::uint8_t, 256>> levels_; ///< by component and sample
    std::vector<std::array<double, 256>> values_;       ///< likewise, of `computed`
    bool hasPlainLevels_ = true;                        ///< `levels_` change nothing
    std::vector<Remembered> remembered_;
    std::vector<std::uint8_t> unpacked_;
    std::vector<std::uint8_t> decoded_; ///< of `profile`: what Decode made of a row
};

} // namespace corvane
