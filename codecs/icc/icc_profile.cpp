#include "codecs/icc/icc_profile.h"

#include "codecs/icc/icc_library.h"
#include "runtime/budget.h"

#include <algorithm>
#include <cmath>
#include <lcms2.h>
#include <utility>

namespace corvane {

namespace {

struct EndProfile {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct EndTransform {
    void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
struct EndCurve {
    void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};
using Profile = std::unique_ptr<void, EndProfile>;
using Transform = std::unique_ptr<void, EndTransform>;
using Curve = std::unique_ptr<cmsToneCurve, EndCurve>;

constexpr std::size_t mostComponents = 4;

cmsUInt32Number formatOf(std::size_t components, cmsUInt32Number sampleBytes) {
    const cmsUInt32Number space = components == 1 ? PT_GRAY : components == 3 ? PT_RGB : PT_CMYK;
    return COLORSPACE_SH(space) | CHANNELS_SH(static_cast<cmsUInt32Number>(components)) |
           BYTES_SH(sampleBytes);
}

cmsColorSpaceSignature signatureOf(std::size_t components) {
    return components == 1 ? cmsSigGrayData : components == 3 ? cmsSigRgbData : cmsSigCmykData;
}

/// Of a profile, as its header says; the library keeps a copy of what lies behind it, too.
std::size_t statedLength(std::span<const std::byte> bytes) {
    std::size_t length = 0;
    for (const std::byte byte : bytes.first(std::min<std::size_t>(bytes.size(), 4))) {
        length = length << 8 | std::to_integer<std::size_t>(byte);
    }
    return length;
}

/// Kinds that describe colours, with transforms of a fixed number of steps: those of free form can
/// be made to take any time.
bool isUsable(cmsHPROFILE profile, std::size_t components) {
    const cmsProfileClassSignature kind = cmsGetDeviceClass(profile);
    const bool isOfColours = kind == cmsSigInputClass || kind == cmsSigDisplayClass ||
                             kind == cmsSigOutputClass || kind == cmsSigColorSpaceClass;
    const bool isFree = cmsIsTag(profile, cmsSigDToB0Tag) || cmsIsTag(profile, cmsSigDToB1Tag) ||
                        cmsIsTag(profile, cmsSigDToB2Tag) || cmsIsTag(profile, cmsSigDToB3Tag);
    return isOfColours && !isFree && cmsGetColorSpace(profile) == signatureOf(components);
}

cmsCIExyY chromaticity(const double* tristimulus) {
    const double sum = tristimulus[0] + tristimulus[1] + tristimulus[2];
    return sum > 0 ? cmsCIExyY{tristimulus[0] / sum, tristimulus[1] / sum, 1} : cmsCIExyY{0, 0, 1};
}

Profile profileOf(cmsContext context, const Calibration& calibration, std::size_t components) {
    const auto& [white, gamma, matrix] = calibration;
    const cmsCIExyY point = chromaticity(white.data());
    std::array<Curve, 3> curves;
    std::array<cmsToneCurve*, 3> pointers{};
    for (std::size_t i = 0; i < components; ++i) {
        curves[i].reset(cmsBuildGamma(context, std::clamp(gamma[i], 0.1, 10.0)));
        pointers[i] = curves[i].get();
        if (pointers[i] == nullptr) {
            return nullptr;
        }
    }
    if (components == 1) {
        return Profile(cmsCreateGrayProfileTHR(context, &point, pointers[0]));
    }
    const cmsCIExyYTRIPLE primaries{chromaticity(matrix.data()), chromaticity(matrix.data() + 3),
                                    chromaticity(matrix.data() + 6)};
    return Profile(cmsCreateRGBProfileTHR(context, &point, &primaries, pointers.data()));
}

} // namespace

IccLibraryPointer openIccLibrary(std::int64_t memory) {
    return std::make_shared<IccLibrary>(memory);
}

/// The library's records; it outlives them.
struct IccProfile::Engine {
    Engine(std::size_t count, IccLibraryPointer owner)
        : library(std::move(owner)), components(count) {}

    bool isAdmitted() const { return library->context() != nullptr && library->admit(); }

    Transform transform(cmsUInt32Number sampleBytes, cmsUInt32Number flags) const {
        if (!isAdmitted()) {
            return nullptr;
        }
        const Profile screen(cmsCreate_sRGBProfileTHR(library->context()));
        if (screen == nullptr) {
            return nullptr;
        }
        return Transform(cmsCreateTransformTHR(
            library->context(), profile.get(), formatOf(components, sampleBytes), screen.get(),
            formatOf(3, sampleBytes), INTENT_RELATIVE_COLORIMETRIC,
            flags | cmsFLAGS_BLACKPOINTCOMPENSATION));
    }

    IccLibraryPointer library;
    std::size_t components;
    Profile profile;   ///< null: all transforms are made
    Transform colours; ///< of 16 bits, exact
    Transform rows;    ///< of 8 bits, through tables; made when it is needed
    bool hasRows = false;
};

IccProfile::IccProfile(std::unique_ptr<Engine> engine) : engine_(std::move(engine)) {}
IccProfile::~IccProfile() = default;

std::shared_ptr<const IccProfile> IccProfile::made(std::unique_ptr<Engine> engine) {
    if (engine->profile == nullptr || !isUsable(engine->profile.get(), engine->components)) {
        return nullptr;
    }
    engine->colours = engine->transform(2, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE);
    if (engine->colours == nullptr) {
        return nullptr;
    }
    return std::shared_ptr<const IccProfile>(new IccProfile(std::move(engine)));
}

std::shared_ptr<const IccProfile> IccProfile::read(std::span<const std::byte> bytes,
                                                   std::size_t components,
                                                   IccLibraryPointer library) {
    if ((components != 1 && components != 3 && components != 4) ||
        bytes.size() > budget::profileBytes) {
        return nullptr;
    }
    auto engine = std::make_unique<Engine>(components, std::move(library));
    if (!engine->isAdmitted()) {
        return nullptr;
    }
    const std::size_t length = std::min(bytes.size(), statedLength(bytes));
    engine->profile.reset(cmsOpenProfileFromMemTHR(engine->library->context(), bytes.data(),
                                                   static_cast<cmsUInt32Number>(length)));
    return made(std::move(engine));
}

std::shared_ptr<const IccProfile> IccProfile::calibrated(const Calibration& calibration,
                                                         std::size_t components,
                                                         IccLibraryPointer library) {
    const auto& white = calibration.white;
    if ((components != 1 && components != 3) || !(white[0] > 0) || !(white[1] > 0) ||
        !(white[2] > 0)) {
        return nullptr;
    }
    auto engine = std::make_unique<Engine>(components, std::move(library));
    if (!engine->isAdmitted()) {
        return nullptr;
    }
    engine->profile = profileOf(engine->library->context(), calibration, components);
    return made(std::move(engine));
}

bool IccProfile::isLikeDevice() const {
    constexpr int steps = 8;
    constexpr double nearly = 1.0 / 255 + 1e-9;
    const std::size_t components = engine_->components;
    if (components == 4) {
        return false;
    }
    const int across = components == 1 ? 0 : steps;
    for (int red = 0; red <= steps; ++red) {
        for (int green = 0; green <= across; ++green) {
            for (int blue = 0; blue <= across; ++blue) {
                std::array<double, 3> given{1.0 * red / steps, 1.0 * green / steps,
                                            1.0 * blue / steps};
                const std::array<double, 3> seen = colour(given);
                if (components == 1) {
                    given[1] = given[2] = given[0];
                }
                for (std::size_t i = 0; i < given.size(); ++i) {
                    if (std::abs(given[i] - seen[i]) > nearly) {
                        return false;
                    }
                }
            }
        }
    }
    return true;
}

std::array<double, 3> IccProfile::colour(std::span<const double> components) const {
    constexpr double full = 65535;
    std::array<std::uint16_t, mostComponents> from{};
    for (std::size_t i = 0; i < std::min(components.size(), engine_->components); ++i) {
        const double value = components[i] > 0 ? std::min(components[i], 1.0) : 0;
        from[i] = static_cast<std::uint16_t>(std::lround(value * full));
    }
    std::array<std::uint16_t, 3> to{};
    cmsDoTransform(engine_->colours.get(), from.data(), to.data(), 1);
    return {to[0] / full, to[1] / full, to[2] / full};
}

bool IccProfile::convert(std::span<const std::uint8_t> from, std::span<std::uint8_t> rgb) const {
    if (!std::exchange(engine_->hasRows, true)) {
        engine_->rows = engine_->transform(1, 0);
        engine_->profile.reset();
    }
    if (engine_->rows == nullptr) {
        return false;
    }
    const std::size_t pixels = std::min(from.size() / engine_->components, rgb.size() / 3);
    cmsDoTransform(engine_->rows.get(), from.data(), rgb.data(),
                   static_cast<cmsUInt32Number>(pixels));
    return true;
}

} // namespace corvane
