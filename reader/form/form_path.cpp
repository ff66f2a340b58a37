#include "reader/form/form_path.h"

#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>

namespace corvane {

void outlineBox(Art path, const FormBox& box, const RealMatrix& matrix) {
    std::array<Segment, 4> segments;
    std::ranges::transform(box.corners(), segments.begin(), [&](RealPoint corner) {
        const RealPoint to = transform(matrix, corner);
        const Point at{fixedFromReal(to.x), fixedFromReal(to.y)};
        return Segment{.anchor = at, .in = at, .out = at};
    });
    callHost(slot::setPathSegmentCount, path, std::int32_t{4});
    callHost(slot::setPathSegments, path, std::int32_t{0}, std::int32_t{4}, segments.data());
    callHost(slot::setPathClosed, path, std::uint8_t{1});
}

Art clipGroup(Art group, const FormBox& box, const RealMatrix& matrix) {
    const Art clip = newArt(ArtKind::path, Placement::inside, group);
    outlineBox(clip, box, matrix);
    PathStyle style;
    style.clip = 1;
    callHost(slot::setPathStyle, clip, &style);
    callHost(slot::setGroupClipped, group, std::uint8_t{1});
    return clip;
}

} // namespace corvane
