#include "app/artwork/page.h"

#include "app/artwork/geometry/arithmetic.h"

namespace corvane {

Point Page::origin() const {
    if (profile_ == Profile::extended) {
        return {};
    }
    return {saturate(-std::int64_t{bounds_.left}), saturate(-std::int64_t{bounds_.bottom})};
}

Rect Page::boundsOnArtboard() const {
    const Point corner = origin();
    const auto shifted = [](Fixed coordinate, Fixed by) {
        return saturate(std::int64_t{coordinate} + by);
    };
    return {shifted(bounds_.left, corner.x), shifted(bounds_.top, corner.y),
            shifted(bounds_.right, corner.x), shifted(bounds_.bottom, corner.y)};
}

} // namespace corvane
