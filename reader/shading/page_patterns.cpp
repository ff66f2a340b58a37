#include "reader/shading/page_patterns.h"

#include "reader/content/interpreter.h"
#include "reader/content/losses.h"
#include "reader/shading/shading_gradient.h"
#include "reader/shading/shading_image.h"
#include "reader/shading/tiling_pattern.h"
#include "reader/syntax/syntax.h"
#include "runtime/extension.h"
#include "runtime/rules.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// Paints that one pattern is, as colours and contents differ; past it they are made anew.
constexpr std::size_t mostKnown = 4096;

std::optional<Colour> shadingPaint(Interpreter& interpreter, const Object& pattern,
                                   const RealMatrix& base) {
    DocumentCache& cache = interpreter.cache;
    const Object entry = findEntry(cache, pattern, "Shading");
    const std::optional<Shading> shading = readShading(cache, entry);
    const RealMatrix matrix = multiply(matrixEntry(cache, pattern, "Matrix"), base);
    if (!shading || !inverse(matrix)) {
        return std::nullopt;
    }
    noteSpaceLosses(interpreter, *shading->space);
    interpreter.progress.charge(shadingTokens * shading->cost());
    return isGradient(*shading) && !shading->box
               ? gradientOf(*shading, matrix, true)
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
    std::int32_t number = 0;
    if (typeObject(entry) == ObjectType::reference) {
        std::int32_t generation = 0;
        referenceObject(entry, number, generation);
    }
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
    const Key key = number != 0 ? Key(number, 0, {}) : Key(0, category->data, std::string(name));
    std::vector<Known>& known = known_[key];
    const auto found = std::ranges::find_if(
        known, [&](const Known& each) { return each.base == base && each.colour == counted; });
    if (found != known.end()) {
        return found->paint;
    }
    const std::optional<Colour> paint =
        isShading ? shadingPaint(interpreter, pattern.get(), base)
                  : tilingPaint(interpreter, pattern.get(), number, base, counted);
    if (number == 0) {
        held_.push_back(std::move(category));
    }
    // What is drawn may have used patterns, too. Within other contents one may be refused because
    // it is being drawn.
    std::vector<Known>& all = known_[key];
    if (all.size() < mostKnown && (paint || interpreter.openContents.empty())) {
        all.push_back({base, counted, paint});
    }
    return paint;
}

} // namespace corvane
