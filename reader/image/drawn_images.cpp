#include "reader/image/drawn_images.h"

#include "reader/image/image_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/extension.h"

#include <cmath>
#include <string>
#include <string_view>

namespace corvane {

namespace {

std::string_view nameIn(const Object& object) {
    return typeObject(object) == ObjectType::literal ? literalObject(object) : std::string_view();
}

/// The name of a space or, of an array, of its family.
std::string spaceName(const ImageEntries& entries) {
    if (entries.boolean(imageKey::isMask)) {
        return "ImageMask";
    }
    const ObjectOwner space = entries.find(imageKey::space);
    if (typeObject(space.get()) == ObjectType::array && sizeObject(space.get()) > 0) {
        const ObjectOwner family = resolveObject(entries.cache(), elementsObject(space.get())[0]);
        return std::string(nameIn(family.get()));
    }
    return std::string(nameIn(space.get()));
}

std::string filterNames(const ImageEntries& entries) {
    const ObjectOwner filters = entries.find(imageKey::filter);
    if (typeObject(filters.get()) != ObjectType::array) {
        return std::string(nameIn(filters.get()));
    }
    std::string names;
    for (const Object& element : elementsObject(filters.get())) {
        const ObjectOwner filter = resolveObject(entries.cache(), element);
        names += (names.empty() ? "" : " ") + std::string(nameIn(filter.get()));
    }
    return names;
}

/// Pixels an inch along a side that becomes `x`, `y` on the page; 0 where it has no length.
double density(std::int32_t pixels, double x, double y) {
    constexpr double pointsPerInch = 72;
    const double length = std::hypot(x, y);
    return length > 0 ? pixels * pointsPerInch / length : 0;
}

} // namespace

void tellDrawnImage(Interpreter& interpreter, const Object& image, std::int32_t number) {
    const auto extension = knownExtension();
    if (!extension || extension->drawnImage == nullptr) {
        return;
    }
    attempted([&] {
        const ImageEntries entries(interpreter.cache, image);
        const std::string space = spaceName(entries);
        const std::string filters = filterNames(entries);
        DrawnImageFacts facts;
        facts.page = interpreter.cache.pageNumber;
        facts.object = number;
        facts.width = entries.integer(imageKey::width).value_or(0);
        facts.height = entries.integer(imageKey::height).value_or(0);
        facts.bits =
            entries.integer(imageKey::bits).value_or(entries.boolean(imageKey::isMask) ? 1 : 0);
        facts.colourSpace = space;
        facts.filters = filters;
        const RealMatrix& matrix = interpreter.state.exactCtm;
        facts.horizontalDensity = density(facts.width, matrix.a, matrix.b);
        facts.verticalDensity = density(facts.height, matrix.c, matrix.d);
        extension->drawnImage(extension->context, facts);
    });
}

} // namespace corvane
