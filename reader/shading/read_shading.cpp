// What an object says of a shading.
#include "reader/shading/shading.h"
#include "reader/syntax/syntax.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Numbers of an array that count: no entry of a shading or a pattern has more.
constexpr std::size_t mostNumbers = functionArity;

bool isOn(const Object& object) {
    return typeObject(object) == ObjectType::boolean && booleanObject(object);
}

std::vector<FunctionPointer> readFunctions(DocumentCache& cache, const Object& dictionary) {
    std::vector<FunctionPointer> functions;
    const ObjectOwner entry = lookupObject(cache, dictionary, "Function");
    if (typeObject(entry.get()) == ObjectType::array) {
        const std::span<Object> elements = elementsObject(entry.get());
        for (const Object& element : elements.first(std::min(elements.size(), functionArity))) {
            functions.push_back(readFunction(cache, element));
        }
    } else if (typeObject(entry.get()) != ObjectType::null) {
        functions.push_back(readFunction(cache, findEntry(cache, dictionary, "Function")));
    }
    return functions;
}

/// Whether colours can be computed.
bool isWhole(const Shading& shading) {
    if (shading.space == nullptr || shading.space->kind == ColourSpace::Kind::pattern) {
        return false;
    }
    if (shading.functions.empty()) {
        return shading.isMesh();
    }
    const std::size_t inputs = shading.inputs();
    return std::ranges::all_of(shading.functions, [&](const FunctionPointer& function) {
        return function != nullptr && function->inputs() == inputs;
    });
}

/// Takes over as many numbers as there are.
template <std::size_t size>
void overlay(std::array<double, size>& into, std::span<const double> numbers) {
    std::ranges::copy(numbers.first(std::min(numbers.size(), size)), into.begin());
}

} // namespace

std::int32_t integerEntry(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    const ObjectOwner entry = lookupObject(cache, dictionary, key);
    return typeObject(entry.get()) == ObjectType::integer ? integerObject(entry.get()) : 0;
}

std::vector<double> numberEntries(DocumentCache& cache, const Object& dictionary,
                                  std::string_view key) {
    std::vector<double> numbers;
    const ObjectOwner array = lookupObject(cache, dictionary, key);
    if (typeObject(array.get()) == ObjectType::array) {
        const std::span<Object> elements = elementsObject(array.get());
        for (const Object& element : elements.first(std::min(elements.size(), mostNumbers))) {
            numbers.push_back(realNumber(resolveObject(cache, element).get()));
        }
    }
    return numbers;
}

RealMatrix matrixEntry(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    const std::vector<double> n = numberEntries(cache, dictionary, key);
    return n.size() == 6 ? RealMatrix{n[0], n[1], n[2], n[3], n[4], n[5]} : RealMatrix();
}

std::optional<Box> rectangleEntry(DocumentCache& cache, const Object& dictionary,
                                  std::string_view key) {
    const std::vector<double> n = numberEntries(cache, dictionary, key);
    if (n.size() != 4) {
        return std::nullopt;
    }
    return Box{std::min(n[0], n[2]), std::min(n[1], n[3]), std::max(n[0], n[2]),
               std::max(n[1], n[3])};
}

Box spannedBox(const Box& box, const RealMatrix& matrix) {
    const std::array corners = {
        transform(matrix, {box.left, box.bottom}), transform(matrix, {box.right, box.bottom}),
        transform(matrix, {box.left, box.top}), transform(matrix, {box.right, box.top})};
    const auto [left, right] = std::ranges::minmax(corners, {}, &RealPoint::x);
    const auto [bottom, top] = std::ranges::minmax(corners, {}, &RealPoint::y);
    return {left.x, bottom.y, right.x, top.y};
}

std::int64_t Shading::cost() const {
    std::int64_t work = costOf(*space);
    for (const FunctionPointer& function : functions) {
        work += function->cost();
    }
    return work;
}

Colour Shading::colourAt(std::span<const double> values) const {
    if (functions.empty()) {
        return colourIn(*space, values);
    }
    std::array<double, functionArity> components{};
    if (functions.size() == 1) {
        functions.front()->evaluate(values, components);
        return colourIn(*space, std::span(components).first(functions.front()->outputs()));
    }
    std::array<double, functionArity> results{};
    for (std::size_t i = 0; i < functions.size(); ++i) {
        functions[i]->evaluate(values, results);
        components[i] = results[0];
    }
    return colourIn(*space, std::span(components).first(functions.size()));
}

std::optional<Shading> readShading(DocumentCache& cache, const Object& object) {
    ObjectOwner owner = resolveObject(cache, object);
    const Object& dictionary = owner.get();
    const ObjectType type = typeObject(dictionary);
    if (type != ObjectType::dictionary && type != ObjectType::stream) {
        return std::nullopt;
    }
    Shading shading;
    const std::int32_t kind = integerEntry(cache, dictionary, "ShadingType");
    if (kind < 1 || kind > 7) {
        return std::nullopt;
    }
    shading.kind = static_cast<ShadingKind>(kind);
    shading.space = readColourSpace(cache, findEntry(cache, dictionary, "ColorSpace"));
    shading.functions = readFunctions(cache, dictionary);
    if (!isWhole(shading) || (shading.isMesh() && type != ObjectType::stream)) {
        return std::nullopt;
    }
    shading.background = numberEntries(cache, dictionary, "Background");
    shading.box = rectangleEntry(cache, dictionary, "BBox");
    overlay(shading.domain, numberEntries(cache, dictionary, "Domain"));
    shading.matrix = matrixEntry(cache, dictionary, "Matrix");
    if (shading.isMesh()) {
        shading.stream = std::move(owner);
        return shading;
    }
    const std::vector<double> coordinates = numberEntries(cache, dictionary, "Coords");
    const std::size_t needed = shading.kind == ShadingKind::radial  ? 6U
                               : shading.kind == ShadingKind::axial ? 4U
                                                                    : 0U;
    if (coordinates.size() < needed) {
        return std::nullopt;
    }
    overlay(shading.coordinates, coordinates);
    const ObjectOwner extend = lookupObject(cache, dictionary, "Extend");
    if (typeObject(extend.get()) == ObjectType::array && sizeObject(extend.get()) >= 2) {
        const std::span<Object> ends = elementsObject(extend.get());
        shading.extendsStart = isOn(resolveObject(cache, ends[0]).get());
        shading.extendsEnd = isOn(resolveObject(cache, ends[1]).get());
    }
    return shading;
}

} // namespace corvane
