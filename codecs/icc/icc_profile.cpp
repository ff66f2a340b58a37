#include "codecs/icc/icc_profile.h"

#include "runtime/budget.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <lcms2.h>
#include <lcms2_plugin.h>
#include <utility>

namespace corvane {

namespace {

/// Memory that all profiles of a file may take: those of ten presses, with their transforms.
constexpr std::int64_t sharedMemory = 2 * budget::profileMemory;

/// What one profile takes, and all.
struct MemoryCount {
    std::int64_t own = 0;
    IccMemory all;
    ~MemoryCount() { *all -= own; } // what the library took or gave back without an owner
};

/// Memory of one profile, each block behind its length. Its procedures are called by C code: they
/// answer null, and raise nothing. The library asks without an owner while it makes its context.
class ProfileMemory {
public:
    static void* allocate(cmsContext context, cmsUInt32Number size) {
        return reallocate(context, nullptr, size);
    }
    static void release(cmsContext context, void* block) {
        if (block != nullptr) {
            count(context, -static_cast<std::int64_t>(sizeOf(block)));
            std::free(startOf(block)); // NOLINT(cppcoreguidelines-no-malloc)
        }
    }
    static void* reallocate(cmsContext context, void* block, cmsUInt32Number size) {
        const std::size_t before = block == nullptr ? 0 : sizeOf(block);
        const std::int64_t more = std::int64_t{size} - static_cast<std::int64_t>(before);
        if (!count(context, more)) {
            return nullptr;
        }
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): the library wants blocks that can grow
        void* const made =
            std::realloc(block == nullptr ? nullptr : startOf(block), header + std::size_t{size});
        if (made == nullptr) {
            count(context, -more);
            return nullptr;
        }
        const std::size_t length = size;
        std::memcpy(made, &length, sizeof length);
        return static_cast<std::byte*>(made) + header;
    }

private:
    static constexpr std::size_t header = alignof(std::max_align_t);

    static bool count(cmsContext context, std::int64_t bytes) {
        auto* const used = context == nullptr
                               ? nullptr
                               : static_cast<MemoryCount*>(cmsGetContextUserData(context));
        if (used == nullptr) {
            return true;
        }
        if (bytes > 0 &&
            (used->own + bytes > budget::profileMemory || *used->all + bytes > sharedMemory)) {
            return false;
        }
        used->own += bytes;
        *used->all += bytes;
        return true;
    }
    static void* startOf(void* block) { return static_cast<std::byte*>(block) - header; }
    static std::size_t sizeOf(void* block) {
        std::size_t size = 0;
        std::memcpy(&size, startOf(block), sizeof size);
        return size;
    }
};

struct EndContext {
    using pointer = cmsContext;
    void operator()(cmsContext context) const { cmsDeleteContext(context); }
};
struct EndProfile {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
struct EndTransform {
    void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
struct EndCurve {
    void operator()(cmsToneCurve* curve) const { cmsFreeToneCurve(curve); }
};
using Context = std::unique_ptr<void, EndContext>;
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

} // namespace

/// The library's records, in the order in which they depend on one another.
struct IccProfile::Engine {
    Engine(std::size_t count, IccMemory memory)
        : used{.own = 0, .all = std::move(memory)}, components(count) {
        cmsPluginMemHandler handler{};
        handler.base = {cmsPluginMagicNumber, 2000, cmsPluginMemHandlerSig, nullptr};
        handler.MallocPtr = ProfileMemory::allocate;
        handler.FreePtr = ProfileMemory::release;
        handler.ReallocPtr = ProfileMemory::reallocate;
        context.reset(cmsCreateContext(&handler, &used));
    }

    Transform transform(cmsUInt32Number sampleBytes, cmsUInt32Number flags) const {
        const Profile screen(cmsCreate_sRGBProfileTHR(context.get()));
        if (screen == nullptr) {
            return nullptr;
        }
        return Transform(cmsCreateTransformTHR(
            context.get(), profile.get(), formatOf(components, sampleBytes), screen.get(),
            formatOf(3, sampleBytes), INTENT_RELATIVE_COLORIMETRIC,
            flags | cmsFLAGS_BLACKPOINTCOMPENSATION));
    }

    MemoryCount used; ///< bytes
    std::size_t components;
    Context context;
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
                                                   std::size_t components, IccMemory memory) {
    if ((components != 1 && components != 3 && components != 4) ||
        bytes.size() > budget::profileBytes) {
        return nullptr;
    }
    auto engine = std::make_unique<Engine>(components, std::move(memory));
    if (engine->context == nullptr) {
        return nullptr;
    }
    const std::size_t length = std::min(bytes.size(), statedLength(bytes));
    engine->profile.reset(cmsOpenProfileFromMemTHR(engine->context.get(), bytes.data(),
                                                   static_cast<cmsUInt32Number>(length)));
    return made(std::move(engine));
}

std::shared_ptr<const IccProfile> IccProfile::calibrated(const Calibration& calibration,
                                                         std::size_t components, IccMemory memory) {
    const auto& [white, gamma, matrix] = calibration;
    if ((components != 1 && components != 3) || !(white[0] > 0) || !(white[1] > 0) ||
        !(white[2] > 0)) {
        return nullptr;
    }
    auto engine = std::make_unique<Engine>(components, std::move(memory));
    if (engine->context == nullptr) {
        return nullptr;
    }
    const auto chromaticity = [](const double* tristimulus) {
        const double sum = tristimulus[0] + tristimulus[1] + tristimulus[2];
        return sum > 0 ? cmsCIExyY{tristimulus[0] / sum, tristimulus[1] / sum, 1}
                       : cmsCIExyY{0, 0, 1};
    };
    const cmsCIExyY point = chromaticity(white.data());
    std::array<Curve, 3> curves;
    std::array<cmsToneCurve*, 3> pointers{};
    for (std::size_t i = 0; i < components; ++i) {
        curves[i].reset(cmsBuildGamma(engine->context.get(), std::clamp(gamma[i], 0.1, 10.0)));
        pointers[i] = curves[i].get();
        if (pointers[i] == nullptr) {
            return nullptr;
        }
    }
    if (components == 1) {
        engine->profile.reset(cmsCreateGrayProfileTHR(engine->context.get(), &point, pointers[0]));
    } else {
        const cmsCIExyYTRIPLE primaries{chromaticity(matrix.data()),
                                        chromaticity(matrix.data() + 3),
                                        chromaticity(matrix.data() + 6)};
        engine->profile.reset(
            cmsCreateRGBProfileTHR(engine->context.get(), &point, &primaries, pointers.data()));
    }
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
