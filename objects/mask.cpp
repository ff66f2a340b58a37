#include "objects/mask.h"

#include "objects/identity.h"
#include "objects/resource_list.h"

#include <string>

namespace corvane {

namespace {

detail::ResourceList<Mask> maskList;

} // namespace

void openMask() {
    closeMask();
}

std::string_view appendMask(Art placed) {
    BlockOwner name = detail::copyOfText("I" + std::to_string(maskList.count() + 1));
    Mask record;
    record.resourceName = name.get().as<char>();
    record.placed = placed;
    record.number = nextIdentity();
    const Ref<Mask> mask = maskList.add(record);
    name.release();
    return mask->resourceName.get();
}

std::int32_t countMask() {
    return maskList.count();
}

void forallMask(const std::function<void(const Mask&)>& procedure) {
    maskList.find([&procedure](const Mask& mask) {
        procedure(mask);
        return false;
    });
}

void closeMask() {
    maskList.close([](const Mask& mask) { freeRecord(mask.resourceName); });
}

} // namespace corvane
