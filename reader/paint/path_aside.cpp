#include "reader/paint/path_aside.h"

#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"
#include "runtime/rules.h"

#include <utility>

namespace corvane {

namespace {

bool isUnderWay(const Interpreter& interpreter) {
    return rules().lazyGroups && interpreter.level.path.compound != Art::null;
}

/// In front of all else in the group, but behind its clip.
void moveInto(Art group, Art path) {
    std::uint8_t clipped = 0;
    callHost(slot::getGroupClipped, group, &clipped);
    if (clipped != 0) {
        callHost(slot::reorderArt, path, Placement::behind, firstChild(group));
    } else {
        callHost(slot::reorderArt, path, Placement::inside, group);
    }
}

} // namespace

Art takePathAside(Interpreter& interpreter) {
    if (!isUnderWay(interpreter)) {
        return Art::null;
    }
    PathConstruction& path = interpreter.level.path;
    moveInto(interpreter.containers.layer(), path.compound);
    return std::exchange(path.holder, Art::null);
}

void putPathBack(Interpreter& interpreter, Art group) {
    if (isUnderWay(interpreter) && interpreter.containers.isOpen(group)) {
        PathConstruction& path = interpreter.level.path;
        moveInto(group, path.compound);
        path.holder = group;
    }
}

} // namespace corvane
