#include "reader/shading/page_patterns.h"

#include "objects/referenced.h"
#include "reader/content/interpreter.h"
#include "reader/shading/shading_gradient.h"
#include "reader/shading/shading_image.h"
#include "reader/shading/take_shading.h"
#include "reader/shading/tiling_pattern.h"
#include "reader/syntax/syntax.h"
#include "runtime/extension.h"
#include "runtime/rules.h"

#include <bit>
#include <utility>

namespace corvane {

namespace {

/// Paints that are kept, as colours and contents of patterns differ; past it they are made anew.
constexpr std::size_t mostKnown = 1 << 16;

/// Numbers that tell colours of a pattern apart; what is no number equals itself as well.
std::array<std::int64_t, 6> numbersOf(const Colour& colour) {
    return {static_cast<std::int64_t>(colour.kind),
            colour.component[0],
            colour.component[1],
            colour.component[2],
            colour.component[3],
            static_cast<std::int64_t>(colour.origin)};
}

std::array<std::uint64_t, 6> bitsOf(const RealMatrix& matrix) {
    const auto bits = [](double number) { return std::bit_cast<std::uint64_t>(number); };
    return {bits(matrix.a), bits(matrix.b),  bits(matrix.c),
            bits(matrix.d), bits(matrix.tx), bits(matrix.ty)};
}

std::optional<Colour> shadingPaint(Interpreter& interpreter, const Object& pattern,
                                   const RealMatrix& base) {
    DocumentCache& cache = interpreter.cache;
    const Object entry = findEntry(cache, pattern, "Shading");
    const std::optional<Shading> shading = takeShading(interpreter, entry);
    const RealMatrix matrix = multiply(matrixEntry(cache, pattern, "Matrix"), base);
    if (!shading || !inverse(matrix)) {
        return std::nullopt;
    }
    return isGradient(*shading) && !shading->box
               ? gradientOf(interpreter.progress, *shading, matrix, true)
               : shadingTile(interpreter, *shading, entry, matrix);
}

std::optional<Colour> tilingPaint(Interpreter& interpreter, const Object& stream,
                                  std::int32_t number, const RealMatrix& base,
                                  const Colour& colour) {
    const std::optional<TilingPattern> pattern = readTiling(interpreter.cache, stream);
    const std::optional<PaintSource> source =
        pattern ? drawTiling(interpreter, *pattern, stream, number, base, colour) : std::nullopt;
    if (!source) {
        return std::nullopt;
    }
    return Colour{.kind = ColourKind::pattern, .component = {}, .source = *source};
}

} // namespace

bool hostHoldsPatterns() {
    constexpr std::uint32_t firstVersion = 6;
    const auto extension = knownExtension();
    return rules().profile == Profile::extended && extension && extension->version >= firstVersion;
}

std::optional<Colour> PagePatterns::find(Interpreter& interpreter, std::string_view name,
                                         const Colour& colour) {
    DocumentCache& cache = interpreter.cache;
    if (typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return std::nullopt;
    }
    ObjectOwner category = lookupObject(cache, cache.resources.get(), "Pattern");
    if (typeObject(category.get()) != ObjectType::dictionary) {
        return std::nullopt;
    }
    const Object entry = findEntry(cache, category.get(), name);
    const std::int32_t number = referenced(entry).number;
    const ObjectOwner pattern = resolveObject(cache, entry);
    if (typeObject(pattern.get()) != ObjectType::dictionary &&
        typeObject(pattern.get()) != ObjectType::stream) {
        return std::nullopt;
    }
    constexpr std::int32_t shadingType = 2;
    constexpr std::int32_t uncoloured = 2;
    const bool isShading = integerEntry(cache, pattern.get(), "PatternType") == shadingType;
    const bool hasOwnColours =
        isShading || integerEntry(cache, pattern.get(), "PaintType") != uncoloured;
    const Colour counted = hasOwnColours ? Colour() : colour;
    const RealMatrix base = interpreter.level.base;
    Key key{number,
            number != 0 ? 0 : category->data,
            number != 0 ? "" : std::string(name),
            bitsOf(base),
            interpreter.colourSpaces.defaults().number(),
            numbersOf(counted)};
    if (const auto known = known_.find(key); known != known_.end()) {
        return known->second;
    }
    const std::optional<Colour> paint =
        isShading ? shadingPaint(interpreter, pattern.get(), base)
                  : tilingPaint(interpreter, pattern.get(), number, base, counted);
    if (number == 0) {
        held_.push_back(std::move(category));
    }
    // Within other contents one may be refused because it is being drawn.
    if (known_.size() < mostKnown && (paint || interpreter.openContents.empty())) {
        known_.emplace(std::move(key), paint);
    }
    return paint;
}

} // namespace corvane
