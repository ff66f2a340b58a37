#include "writer/art/placed_works.h"

#include "filters/buffer.h"
#include "filters/stream.h"
#include "host/files.h"
#include "objects/mask.h"
#include "reader/syntax/utility.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/string.h"

#include <algorithm>
#include <array>
#include <string>

namespace corvane {

namespace {

constexpr std::string_view boundsKey = "%%BoundingBox";

/// Four numbers behind the colon: left, bottom, right, top.
std::optional<Rect> parseBounds(std::string_view line) {
    std::optional<std::string_view> rest = advanceString(':', line);
    std::array<Fixed, 4> values{};
    for (Fixed& value : values) {
        if (!rest) {
            return std::nullopt;
        }
        const TextNumber number = fixedString(*rest);
        value = number.value;
        rest = number.rest;
    }
    if (!rest) {
        return std::nullopt;
    }
    Rect bounds;
    callHost(slot::setRect, &bounds, values[0], values[3], values[2], values[1]);
    return bounds;
}

} // namespace

Chain openPlacedFile(Art placed) {
    constexpr auto directoryOwner = static_cast<std::int32_t>(fourCharacters("HST5"));
    FileSpecification location;
    callHost(slot::getPlacedFile, placed, &location);
    std::int16_t folder = 0;
    if (OpenWD(location.volume, location.directory, directoryOwner, &folder) != noErr) {
        failException(Exception::io);
    }
    const auto length = std::min<std::size_t>(location.name[0], sizeof(location.name) - 1);
    const std::string name(location.name + 1, location.name + 1 + length);
    Chain chain;
    chain.link(setupStream(folder, name, "read"));
    chain.link(setupBuffer());
    return chain;
}

std::optional<Rect> boundsWorks(Art placed) {
    const Chain file = openPlacedFile(placed);
    std::array<char, 256> buffer{};
    while (readToLine(buffer, *file.top())) {
        const std::string_view line = viewString(buffer);
        if (!leftString(boundsKey, line) || line.find('(') != std::string_view::npos) {
            continue;
        }
        if (const std::optional<Rect> bounds = parseBounds(line)) {
            return bounds;
        }
    }
    return std::nullopt;
}

void placedWorks(Walk& walk, Art placed) {
    Matrix matrix;
    callHost(slot::getPlacedMatrix, placed, &matrix);
    matrix.b = negateFixed(matrix.b);
    matrix.c = negateFixed(matrix.c);
    const std::optional<Rect> bounds = boundsWorks(placed);
    if (!bounds) {
        return;
    }
    const auto difference = [](Fixed high, Fixed low) {
        return detail::saturated(std::int64_t{high} - low);
    };
    Matrix box;
    callHost(slot::setIdentityMatrix, &box);
    callHost(slot::scaleMatrix, &box, difference(bounds->right, bounds->left),
             difference(bounds->top, bounds->bottom));
    box.tx = bounds->left;
    box.ty = bounds->bottom;
    enterWorks(walk);
    for (const Matrix& each : {matrix, box}) {
        for (const Fixed entry : {each.a, each.b, each.c, each.d, each.tx, each.ty}) {
            walk.text.add(entry);
        }
        walk.text.add("cm\n");
    }
    walk.text.add("0 g\n");
    walk.text.addName(appendMask(placed));
    walk.text.add(" Do\n");
    leaveWorks(walk);
}

} // namespace corvane
