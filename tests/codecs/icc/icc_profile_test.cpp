#include "codecs/icc/icc_profile.h"

#include "codecs/icc/icc_library.h"
#include "codecs/icc/screen_profile.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <vector>

namespace corvane {
namespace {

const Calibration calibration{
    .white = {.95, 1, 1.09},
    .gamma = {2.2, 1.8, 1},
    .matrix = {0.4497, 0.2446, 0.0252, 0.3163, 0.672, 0.1412, 0.1845, 0.0833, 0.9227}};

/// The library asks for memory at many points. Each may be the one where there is no more.
TEST(IccProfileTest, MemoryMayEndAtAnyPoint) {
    const std::string screen = screenProfile(false);
    const std::vector<std::uint8_t> pixels(300, 100);
    int made = 0;
    int converted = 0;
    constexpr int steps = 300;
    for (int step = 0; step < steps; ++step) {
        const IccLibraryPointer library = openIccLibrary(std::int64_t{step} << 13);
        const std::int64_t before = library->used();
        {
            const std::array profiles = {
                IccProfile::calibrated(calibration, 1, library),
                IccProfile::calibrated(calibration, 3, library),
                IccProfile::read(std::as_bytes(std::span(screen)), 3, library)};
            made += profiles[2] != nullptr ? 1 : 0;
            std::vector<std::uint8_t> rgb(pixels.size());
            for (const auto& profile : profiles) {
                converted += profile != nullptr && profile->convert(pixels, rgb) ? 1 : 0;
            }
        }
        EXPECT_EQ(library->used(), before);
    }
    EXPECT_GT(made, 0);
    EXPECT_LT(made, steps);
    EXPECT_GT(converted, 0);
}

TEST(IccProfileTest, ProfilesOfAFileShareMemory) {
    const IccLibraryPointer library = openIccLibrary(1 << 20);
    std::vector<std::shared_ptr<const IccProfile>> profiles;
    for (int i = 0; i < 1000; ++i) {
        profiles.push_back(IccProfile::calibrated(calibration, 1, library));
        EXPECT_LE(library->used(), 1 << 20);
    }
    EXPECT_NE(profiles.front(), nullptr);
    EXPECT_EQ(profiles.back(), nullptr);
    profiles.clear();
    EXPECT_NE(IccProfile::calibrated(calibration, 1, library), nullptr);
}

} // namespace
} // namespace corvane
