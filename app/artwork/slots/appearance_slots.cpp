// Slots for how art is laid over what is behind it.
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"

namespace corvane::answer {

HostError setAppearance(Art art, const Appearance* appearance) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setAppearance(art, target(appearance)); });
}

HostError getAppearance(Art art, Appearance* appearance) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(appearance) = scope.document().appearance(art); });
}

HostError addMask(const MaskFacts* facts, SoftMask* mask) {
    return guardedSlot([&](CallbackScope& scope) {
        SoftMask& made = target(mask);
        made = SoftMask::null;
        made = scope.document().addMask(target(facts));
    });
}

HostError getMask(SoftMask mask, MaskFacts* facts) {
    return guardedSlot([&](CallbackScope& scope) { target(facts) = scope.document().mask(mask); });
}

} // namespace corvane::answer
