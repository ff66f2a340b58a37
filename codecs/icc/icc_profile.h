// Colour profiles (ISO 15076-1), over Little CMS: from colours of a profile to sRGB.
//
// Relative colorimetric, with the black points put on each other, as readers of documents do.
#pragma once

#include "runtime/budget.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace corvane {

/// White point and curves of colours that a document measures by itself (PDF Reference, 4.5.4).
struct Calibration {
    std::array<double, 3> white{};        ///< X, Y, Z
    std::array<double, 3> gamma{1, 1, 1}; ///< of gray the first
    std::array<double, 9> matrix{};       ///< X, Y, Z of red, then of green and blue
};

/// What the profiles of a file share.
class IccLibrary;
using IccLibraryPointer = std::shared_ptr<IccLibrary>;

/// `memory`: bytes that its profiles may take together, by default as much as those of ten presses,
/// with their transforms.
IccLibraryPointer openIccLibrary(std::int64_t memory = 2 * budget::profileMemory);

class IccProfile {
public:
    /// A profile of 1, 3 or 4 components: gray, RGB or CMYK. Null where it is of another kind, is
    /// damaged, it takes more memory than `budget::profileMemory`, or all take more memory or work
    /// than there is for them.
    static std::shared_ptr<const IccProfile>
    read(std::span<const std::byte> bytes, std::size_t components, IccLibraryPointer library);
    /// The same of calibrated gray or RGB.
    static std::shared_ptr<const IccProfile>
    calibrated(const Calibration& calibration, std::size_t components, IccLibraryPointer library);
    ~IccProfile();
    IccProfile(const IccProfile&) = delete;
    IccProfile& operator=(const IccProfile&) = delete;

    /// Whether gray and RGB look, within a level of 255, as they do without the profile.
    bool isLikeDevice() const;

    /// Red, green and blue, 0 to 1; so are components, further ones ignored.
    std::array<double, 3> colour(std::span<const double> components) const;

    /// Pixels of 8-bit components to pixels of RGB. False where it cannot be done.
    bool convert(std::span<const std::uint8_t> from, std::span<std::uint8_t> rgb) const;

private:
    struct Engine;
    explicit IccProfile(std::unique_ptr<Engine> engine);

    static std::shared_ptr<const IccProfile> made(std::unique_ptr<Engine> engine);

    std::unique_ptr<Engine> engine_;
};

} // namespace corvane
