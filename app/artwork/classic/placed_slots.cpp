// Slots of classic placed art: the file that it is linked to, and its matrix.
#include "app/artwork/classic/slots.h"
#include "app/artwork/geometry/geometry.h"
#include "app/artwork/slots/guard.h"

#include "host/resources.h"

#include <new>

namespace corvane {

namespace {

constexpr std::uint32_t pictureType = fourCharacters("PICT");
constexpr std::int16_t previewNumber = 256;

const PlacedFile& fileOf(const Document& document, Art placed) {
    const PlacedFile* const file = document.placedFile(placed);
    if (file == nullptr) {
        throw ArtworkError("an image is not linked to an EPSF file");
    }
    return *file;
}

/// From the unit square, which shows the picture, to the file's bounding box.
RealMatrix toFile(const Document& document, Art placed) {
    const PlacedFile* const file = document.placedFile(placed);
    return file == nullptr ? RealMatrix{}
                           : RealMatrix{.a = static_cast<double>(file->view.width),
                                        .d = static_cast<double>(file->view.height)};
}

HostError setPlacedMatrix(Art placed, const Matrix* matrix) {
    return guardedSlot([&](CallbackScope& scope) {
        Document& document = scope.document();
        PlacedImage image = document.placedImage(placed);
        const RealMatrix given = realMatrix(withNegatedSlant(target(matrix)));
        image.matrix = fixedMatrix(multiply(toFile(document, placed), given));
        document.setPlacedImage(placed, image);
    });
}

HostError getPlacedMatrix(Art placed, Matrix* matrix) {
    return guardedSlot([&](CallbackScope& scope) {
        const Document& document = scope.document();
        const auto fromFile = inverse(toFile(document, placed));
        const RealMatrix shown = realMatrix(document.placedImage(placed).matrix);
        target(matrix) =
            withNegatedSlant(fixedMatrix(multiply(fromFile.value_or(RealMatrix{}), shown)));
    });
}

HostError getPlacedFile(Art placed, FileSpecification* location) {
    return guardedSlot([&](CallbackScope& scope) {
        target(location) = fileOf(scope.document(), placed).location;
    });
}

HostError setPlacedFile(Art placed, const FileSpecification* location) {
    return guardedSlot([&](CallbackScope& scope) {
        Document& document = scope.document();
        document.setPlacedFile(placed, document.placedFiles().add(target(location)));
    });
}

/// A resource fork that is open.
class OpenFork {
public:
    explicit OpenFork(const FileSpecification& location) {
        std::int16_t folder = 0;
        if (OpenWD(location.volume, location.directory, 0, &folder) == noErr) {
            reference_ = OpenRFPerm(location.name, folder, fsRdPerm);
        }
    }
    ~OpenFork() {
        if (reference_ != none) {
            CloseResFile(reference_);
        }
    }
    OpenFork(const OpenFork&) = delete;
    OpenFork& operator=(const OpenFork&) = delete;

    bool isOpen() const { return reference_ != none; }

private:
    static constexpr std::int16_t none = -1;
    std::int16_t reference_ = none;
};

HostError getPlacedPict(Art placed, Handle* picture) {
    return guardedSlot([&](CallbackScope& scope) {
        target(picture) = Handle();
        const OpenFork fork(fileOf(scope.document(), placed).location);
        const Handle kept = fork.isOpen() ? Get1Resource(pictureType, previewNumber) : Handle();
        if (!kept) {
            return;
        }
        // The fork's own handle goes with the fork.
        const std::int32_t size = GetHandleSize(kept);
        const Handle copy = NewHandleClear(size);
        if (!copy) {
            throw std::bad_alloc();
        }
        BlockMove((*kept).get(), (*copy).get(), size);
        target(picture) = copy;
    });
}

} // namespace

void fillPlacedSlots(std::span<HostProcedure> table) {
    fillSlot(table, slot::setPlacedMatrix, setPlacedMatrix);
    fillSlot(table, slot::getPlacedMatrix, getPlacedMatrix);
    fillSlot(table, slot::getPlacedFile, getPlacedFile);
    fillSlot(table, slot::setPlacedFile, setPlacedFile);
    fillSlot(table, slot::getPlacedPict, getPlacedPict);
}

} // namespace corvane
