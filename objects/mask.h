// Masks: the placed images that a page being written refers to.
#pragma once

#include "host/artwork.h"
#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace corvane {

/// One record of the list, newest first.
struct Mask {
    Ref<Mask> next;
    Ref<char> resourceName; ///< zero-terminated
    Art placed = Art::null;
    std::int32_t number = 0; ///< of the image's object
    std::int32_t generation = 0;
};
static_assert(offsetof(Mask, placed) == 8 && sizeof(Mask) == 20);

void openMask();
/// Adds a record, which takes the next identity; its resource name: "I1" and so on. Valid until
/// `closeMask`. The same art twice is two images. A full zone raises `memory`, and nothing is
/// added.
std::string_view appendMask(Art placed);
std::int32_t countMask();
/// Calls `procedure` for each mask, newest first.
void forallMask(const std::function<void(const Mask&)>& procedure);
void closeMask();

} // namespace corvane
