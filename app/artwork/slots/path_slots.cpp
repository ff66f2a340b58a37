// Slots for paths and their segments.
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"

#include <span>

namespace corvane::answer {

namespace {

/// The plug-in's array of `count` segments.
template <class T>
std::span<T> segmentsAt(T* segments, std::int32_t count) {
    if (count < 0 || (count > 0 && segments == nullptr)) {
        throw ArtworkError("the segments are missing");
    }
    return {segments, static_cast<std::size_t>(count)};
}

} // namespace

HostError getPathClosed(Art path, std::uint8_t* closed, std::int32_t) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(closed) = scope.document().closed(path); });
}

HostError setPathClosed(Art path, std::uint8_t closed) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setClosed(path, closed != 0); });
}

HostError getPathGuide(Art path, std::uint8_t* guide) {
    return guardedSlot([&](CallbackScope& scope) { target(guide) = scope.document().guide(path); });
}

HostError getPathSegmentCount(Art path, std::int32_t* count) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(count) = scope.document().segments(path).size(); });
}

HostError setPathSegmentCount(Art path, std::int32_t count) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setSegmentCount(path, count); });
}

HostError getPathSegments(Art path, std::int32_t first, std::int32_t count, Segment* segments) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().readSegments(path, first, segmentsAt(segments, count));
    });
}

HostError setPathSegments(Art path, std::int32_t first, std::int32_t count,
                          const Segment* segments) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().writeSegments(path, first, segmentsAt(segments, count));
    });
}

HostError getPathStyle(Art path, PathStyle* style) {
    return guardedSlot([&](CallbackScope& scope) { target(style) = scope.document().style(path); });
}

HostError setPathStyle(Art path, const PathStyle* style) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setStyle(path, target(style)); });
}

HostError getDefaultStyle(PathStyle* style) {
    return guardedSlot([&](CallbackScope&) { target(style) = {}; });
}

} // namespace corvane::answer
