#include "reader/form/form_clip.h"

#include "reader/content/art.h"
#include "reader/form/form_path.h"
#include "runtime/callbacks.h"

#include <cstdint>

namespace corvane {

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
