#include "codecs/icc/screen_profile.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

namespace {

using namespace std::string_view_literals;

std::string bigEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        text += static_cast<char>(value >> static_cast<unsigned>(shift) & 0xFFU);
    }
    return text;
}

std::string zeros(std::size_t count) {
    return std::string(count, '\0');
}

std::string fixedPoint(double value) {
    return bigEndian(static_cast<std::uint32_t>(std::lround(value * 65536)), 4);
}

using Xyz = std::array<double, 3>;

constexpr Xyz whiteD50 = {.9642, 1, .8249};
/// Red, green and blue of sRGB, adapted to D50 (Bradford).
constexpr std::array<Xyz, 3> primaries = {
    {{.43607, .22249, .01392}, {.38515, .71687, .09708}, {.14307, .06061, .7141}}};

std::string xyzTag(const Xyz& value) {
    std::string text = "XYZ " + zeros(4);
    for (const double part : value) {
        text += fixedPoint(part);
    }
    return text;
}

/// A value for each level of a byte, between which readers go straight.
std::string curveTag() {
    constexpr std::uint32_t levels = 256;
    std::string text = "curv" + zeros(4) + bigEndian(levels, 4);
    for (std::uint32_t i = 0; i < levels; ++i) {
        const double level = i / (levels - 1.0);
        const double light =
            level <= .04045 ? level / 12.92 : std::pow((level + .055) / 1.055, 2.4);
        text += bigEndian(static_cast<std::uint32_t>(std::lround(light * 65535)), 2);
    }
    return text;
}

std::string nameTag(std::string_view name) {
    constexpr std::size_t otherScripts = 4 + 4 + 2 + 1 + 67; // none
    return "desc" + zeros(4) + bigEndian(static_cast<std::uint32_t>(name.size() + 1), 4) +
           std::string(name) + '\0' + zeros(otherScripts);
}

std::string header(std::size_t length, bool isGray) {
    std::string text = bigEndian(static_cast<std::uint32_t>(length), 4) + zeros(4);
    text += "\x02\x40\0\0mntr"sv;
    text += isGray ? "GRAYXYZ " : "RGB XYZ ";
    text += "\x07\xD0\0\x01\0\x01\0\0\0\0\0\0acsp"sv; // 2000-01-01: the same bytes always
    text += zeros(28);
    for (const double part : whiteD50) {
        text += fixedPoint(part);
    }
    return text + zeros(48);
}

} // namespace

std::string screenProfile(bool isGray) {
    std::vector<std::pair<std::string_view, std::string>> tags = {
        {"desc", nameTag(isGray ? "Gray of sRGB" : "sRGB")},
        {"cprt", "text" + zeros(4) + "Public domain" + '\0'},
        {"wtpt", xyzTag(whiteD50)}};
    if (isGray) {
        tags.emplace_back("kTRC", curveTag());
    } else {
        tags.emplace_back("rXYZ", xyzTag(primaries[0]));
        tags.emplace_back("gXYZ", xyzTag(primaries[1]));
        tags.emplace_back("bXYZ", xyzTag(primaries[2]));
        for (const std::string_view curve : {"rTRC", "gTRC", "bTRC"}) {
            tags.emplace_back(curve, curveTag());
        }
    }
    constexpr std::size_t headerBytes = 128;
    constexpr std::size_t rowBytes = 12;
    const std::size_t start = headerBytes + 4 + rowBytes * tags.size();
    std::string table = bigEndian(static_cast<std::uint32_t>(tags.size()), 4);
    std::string data;
    for (auto& [name, bytes] : tags) {
        table += name;
        table += bigEndian(static_cast<std::uint32_t>(start + data.size()), 4);
        table += bigEndian(static_cast<std::uint32_t>(bytes.size()), 4);
        data += bytes + zeros((4 - bytes.size() % 4) % 4);
    }
    return header(start + data.size(), isGray) + table + data;
}

} // namespace corvane
