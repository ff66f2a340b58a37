#include "writer/paint/plain_spaces.h"

#include "codecs/icc/screen_profile.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/paint/colour_space_cache.h"
#include "writer/page/needed_version.h"
#include "writer/page/stream_object.h"

#include <array>
#include <string_view>

namespace corvane {

namespace {

using Kind = ColourSpace::Kind;

/// A colour space, and the stream that it needs: a profile, or what mixes inks.
struct PlainSpace {
    std::int32_t space = 0; ///< 0: not named yet
    std::int32_t stream = 0;
};

/// Of gray, RGB and CMYK.
std::array<PlainSpace, 3> named{};

constexpr std::array deviceNames = {"/DeviceGray", "/DeviceRGB", "/DeviceCMYK"};

/// Light is what ink and black leave over (PDF Reference, 6.2.4).
constexpr std::string_view mixture = "{ dup 5 -1 roll add 1 exch sub exch dup 5 -1 roll add 1 exch "
                                     "sub exch 4 -1 roll add 1 exch sub }";

std::size_t indexOf(Kind device) {
    return static_cast<std::size_t>(device);
}

std::int32_t name(Kind device) {
    PlainSpace& plain = named[indexOf(device)];
    if (plain.space == 0) {
        needVersion(Feature::profile);
        if (device == Kind::cmyk) {
            name(Kind::rgb);
        }
        plain = {nextIdentity(), nextIdentity()};
    }
    return plain.space;
}

std::string reference(std::int32_t number) {
    return std::to_string(number) + " 0 R ";
}

std::string spaceText(Kind device, std::int32_t stream) {
    return device == Kind::cmyk
               ? "[ /DeviceN [ /Cyan /Magenta /Yellow /Black ] " +
                     reference(named[indexOf(Kind::rgb)].space) + reference(stream) + "]"
               : "[ /ICCBased " + reference(stream) + "]";
}

void beginObject(Filter& output, std::int32_t number) {
    touchXRef(output, number, 0);
    objectOutput(output, number, 0);
}

void writeProfile(DocumentCache& cache, Kind device, std::int32_t number) {
    beginObject(*cache.output, number);
    stringOutput(*cache.output, device == Kind::gray ? "<<\r/N 1 /Alternate /DeviceGray\r"
                                                     : "<<\r/N 3 /Alternate /DeviceRGB\r");
    finishStream(cache, number, screenProfile(device == Kind::gray));
}

void writeMixture(DocumentCache& cache, std::int32_t number) {
    beginObject(*cache.output, number);
    stringOutput(*cache.output, "<<\r/FunctionType 4 /Domain [ 0 1 0 1 0 1 0 1 ] /Range [ 0 1 0 1 "
                                "0 1 ]\r");
    finishStream(cache, number, mixture);
}

} // namespace

void openPlainSpaces() {
    named = {};
}

std::int32_t plainSpace(DocumentCache& cache, Kind device) {
    return colourSpacesOf(cache).defaults().haveAny(device) ? name(device) : 0;
}

std::string plainSpaceText(DocumentCache& cache, Kind device) {
    const std::int32_t number = plainSpace(cache, device);
    return number == 0 ? deviceNames[indexOf(device)] : reference(number);
}

void writePlainSpaces(DocumentCache& cache) {
    for (const Kind device : {Kind::gray, Kind::rgb, Kind::cmyk}) {
        const auto [space, stream] = named[indexOf(device)];
        if (space == 0) {
            continue;
        }
        beginObject(*cache.output, space);
        stringOutput(*cache.output, spaceText(device, stream));
        stringOutput(*cache.output, "\rendobj\r");
        if (device == Kind::cmyk) {
            writeMixture(cache, stream);
        } else {
            writeProfile(cache, device, stream);
        }
    }
}

} // namespace corvane
