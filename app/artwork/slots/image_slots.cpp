// Slots for images and the placed objects that show them.
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"

#include <span>

namespace corvane::answer {

namespace {

/// Throws `ArtworkError` where there is a size and no block, or the size has no meaning.
template <class Byte>
std::span<Byte> block(Byte* bytes, std::int64_t count) {
    if (count < 0) {
        throw ArtworkError("a size is negative");
    }
    return count == 0 ? std::span<Byte>()
                      : std::span(&target(bytes), static_cast<std::size_t>(count));
}

} // namespace

HostError addImage(const ImageFacts* facts, Image* image, std::uint8_t* wantsBytes) {
    return guardedSlot([&](CallbackScope& scope) {
        Image& made = target(image);
        std::uint8_t& wants = target(wantsBytes);
        bool isWanted = false;
        made = scope.document().images().add(target(facts), isWanted);
        wants = isWanted ? 1 : 0;
    });
}

HostError addImageBytes(Image image, const std::byte* bytes, std::int64_t count) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().images().addBytes(image, block(bytes, count));
    });
}

HostError endImage(Image image) {
    return guardedSlot([&](CallbackScope& scope) { scope.document().images().end(image); });
}

HostError giveUpImage(Image image) {
    return guardedSlot([&](CallbackScope& scope) { scope.document().images().giveUp(image); });
}

HostError getImageFacts(Image image, ImageFacts* facts) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(facts) = scope.document().images().facts(image); });
}

HostError openImageBytes(Image image) {
    return guardedSlot([&](CallbackScope& scope) { scope.document().images().open(image); });
}

HostError readImageBytes(Image image, std::byte* bytes, std::int64_t room, std::int64_t* count) {
    return guardedSlot([&](CallbackScope& scope) {
        std::int64_t& read = target(count);
        read = static_cast<std::int64_t>(scope.document().images().read(image, block(bytes, room)));
    });
}

HostError setPlacedImage(Art placed, const PlacedImage* image) {
    return guardedSlot(
        [&](CallbackScope& scope) { scope.document().setPlacedImage(placed, target(image)); });
}

HostError getPlacedImage(Art placed, PlacedImage* image) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(image) = scope.document().placedImage(placed); });
}

} // namespace corvane::answer
