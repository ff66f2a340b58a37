// Images from the previews that files have.
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/world/picture.h"
#include "output/xref.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "writer/image/mask_object.h"
#include "writer/image/mask_works.h"

#include <vector>

namespace corvane {

namespace {

struct HandleOwner {
    Handle handle;

    HandleOwner() = default;
    ~HandleOwner() { DisposeHandle(handle); }
    HandleOwner(const HandleOwner&) = delete;
    HandleOwner& operator=(const HandleOwner&) = delete;
};

/// A preview in numbers of the system's 256 colours, and those colours.
struct Preview {
    std::int32_t width = 0; ///< 0: there is none
    std::int32_t height = 0;
    std::vector<std::byte> pixels;
    std::vector<std::byte> colours;
};

Preview drawPreview(Art placed) {
    constexpr std::int32_t depth = 8;
    HandleOwner kept;
    callHost(slot::getPlacedPict, placed, &kept.handle);
    if (!kept.handle) {
        return {};
    }
    const auto size = static_cast<std::size_t>(GetHandleSize(kept.handle));
    const auto picture = readPicture({(*kept.handle).get(), size});
    if (!picture) {
        return {};
    }
    const PixelFrame frame{.right = picture->frame.width(), .bottom = picture->frame.height()};
    WorldOwner world = allocateWorld(frame.right, frame.bottom, depth, previewTables);
    if (world == nullptr) {
        return {};
    }
    pictureWorld(*picture, frame, world.get());
    return {.width = frame.right,
            .height = frame.bottom,
            .pixels = pixelWorld(frame.right, frame.bottom, world.get()),
            .colours = indexWorld(world.get(), depth, previewTables)};
}

} // namespace

bool quickMask(DocumentCache& cache, const Mask& mask) {
    Preview preview;
    if (guarded([&] { preview = drawPreview(mask.placed); }) != Exception::none) {
        resetException(); // a file without a preview can still be drawn as a square
        return false;
    }
    if (preview.width == 0) {
        return false;
    }
    Filter& output = *cache.output;
    const std::int32_t table = nextIdentity();
    beginMask(cache, mask, preview.width, preview.height, 8);
    stringOutput(output, "/ColorSpace [\r/Indexed\r/DeviceRGB 255 ");
    referenceOutput(output, table, 0);
    stringOutput(output, "]\r");
    storeMask(cache, preview.pixels);
    touchXRef(output, table, 0);
    objectOutput(output, table, 0);
    stringOutput(output, "<<\r");
    storeMask(cache, preview.colours);
    return true;
}

} // namespace corvane
