// Slots for the page, and for control of the plug-in's work.
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"

#include <string>

namespace corvane::answer {

HostBoolean checkUserAbort() {
    const CallbackScope* const scope = CallbackScope::inForce();
    return scope != nullptr && scope->aborted() ? HostBoolean::yes : HostBoolean::no;
}

HostError finishImport(Art art, Art) {
    return guardedSlot([&](CallbackScope& scope) { scope.document().finishImport(art); });
}

HostBoolean modalFilter(void*, void*, std::int16_t*) {
    return HostBoolean::no;
}

HostError addFileFormat(const std::uint8_t* name, std::uint32_t type, std::int32_t options,
                        std::int32_t) {
    return guardedSlot([&](CallbackScope& scope) {
        const std::uint8_t length = target(name);
        scope.addFormat({std::string(name + 1, name + 1 + length), type, options});
    });
}

void getDocumentInfo(DocumentInfo* info) {
    guardedSlot([&](CallbackScope& scope) { target(info) = {scope.document().page().origin()}; });
}

HostError getPageOrigin(Point* origin) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(origin) = scope.document().page().origin(); });
}

HostError getPageBounds(Rect* bounds) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(bounds) = scope.document().page().boundsOnArtboard(); });
}

HostError setPageBounds(const Rect* bounds) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().page().setBounds(target(bounds)); });
}

HostError getArtboardSize(ArtboardSize* size) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(size) = scope.document().page().artboard(); });
}

HostError setArtboardSize(const ArtboardSize* size) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().page().setArtboard(target(size)); });
}

/// Nothing of the document is on a screen.
void redrawDocument() {}

} // namespace corvane::answer
