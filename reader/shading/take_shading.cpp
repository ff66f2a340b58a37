#include "reader/shading/take_shading.h"

#include "reader/content/interpreter.h"
#include "reader/content/losses.h"

namespace corvane {

namespace {

/// Tokens that reading a shading counts as, beside one for each step that one of its colours takes:
/// functions are read in as many.
constexpr std::int64_t shadingTokens = 100;

} // namespace

std::optional<Shading> takeShading(Interpreter& interpreter, const Object& object) {
    if (!interpreter.readsPatterns ||
        !interpreter.progress.hasRoom(interpreter.cache.work.pageBytes)) {
        return std::nullopt;
    }
    std::optional<Shading> shading = readShading(interpreter.cache, object);
    if (shading) {
        noteSpaceLosses(interpreter, *shading->space);
        interpreter.progress.charge(shadingTokens + shading->cost());
    }
    return shading;
}

} // namespace corvane
