#include "app/artwork/provenance.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

struct KindText {
    std::string_view name; ///< in files and reports
    std::string_view one;  ///< for people, behind the number
    std::string_view many;
};

/// In the order of `Omission`.
constexpr std::array<KindText, omissionKinds> kinds = {{
    {"text", "piece of text", "pieces of text"},
    {"image", "image", "images"},
    {"form", "reused drawing (form)", "reused drawings (forms)"},
    {"shading", "smooth shading", "smooth shadings"},
    {"other", "object of an unknown kind", "objects of unknown kinds"},
    {"pattern", "use of a pattern as a colour", "uses of patterns as colours"},
    {"colourSpace", "use of colours that are not supported",
     "uses of colours that are not supported"},
    {"colourProfile", "use of a colour profile", "uses of colour profiles"},
    {"ink", "use of a named ink (spot colour)", "uses of named inks (spot colours)"},
    {"transparency", "transparency setting", "transparency settings"},
    {"softMask", "transparency mask (soft mask)", "transparency masks (soft masks)"},
    {"overprint", "overprint setting", "overprint settings"},
    {"renderingIntent", "colour matching setting (rendering intent)",
     "colour matching settings (rendering intents)"},
    {"deviceSetting", "setting for the printer", "settings for the printer"},
    {"optionalContent", "part in a layer of the PDF", "parts in layers of the PDF"},
    {"markedContent", "tag (marked content)", "tags (marked content)"},
    {"unknownOperator", "unknown drawing command", "unknown drawing commands"},
    {"damagedOperator", "damaged drawing command", "damaged drawing commands"},
    {"longDash", "dash pattern of more than six lengths", "dash patterns of more than six lengths"},
    {"unequalStrokeScale", "line of uneven width", "lines of uneven width"},
    {"farPoint", "point too far from the page", "points too far from the page"},
}};
static_assert(!kinds.back().name.empty());

} // namespace

/// FNV-1a over the digest's bytes, the lowest first, and the file's name.
std::uint64_t artworkName(std::uint64_t pageDigest, std::string_view output) {
    std::uint64_t name = 0xCBF29CE484222325;
    const auto add = [&](std::uint64_t byte) { name = (name ^ byte) * 0x100000001B3; };
    for (int bit = 0; bit < 64; bit += 8) {
        add(pageDigest >> bit & 0xFF);
    }
    for (const char character : output) {
        add(static_cast<unsigned char>(character));
    }
    return name;
}

std::string_view omissionName(Omission kind) {
    const auto index = static_cast<std::size_t>(kind);
    return index < kinds.size() ? kinds[index].name : omissionName(Omission::other);
}

std::string omissionText(std::string_view name, std::int32_t count) {
    const std::string number = std::to_string(count) + " ";
    const auto kind = std::ranges::find(kinds, name, &KindText::name);
    if (kind == kinds.end()) {
        return number + "of a kind that this version does not know (" + std::string(name) + ")";
    }
    return number + std::string(count == 1 ? kind->one : kind->many);
}

} // namespace corvane
