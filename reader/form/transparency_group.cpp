#include "reader/form/transparency_group.h"

#include "reader/content/appearance.h"
#include "reader/content/interpreter.h"
#include "reader/content/losses.h"
#include "reader/syntax/syntax.h"

#include <utility>

namespace corvane {

namespace {

bool isOn(DocumentCache& cache, const Object& group, std::string_view key) {
    const ObjectOwner value = lookupObject(cache, group, key);
    return typeObject(value.get()) == ObjectType::boolean && booleanObject(value.get());
}

} // namespace

std::optional<Appearance> enterTransparencyGroup(Interpreter& interpreter, const Object& form,
                                                 GraphicsState& inside) {
    DocumentCache& cache = interpreter.cache;
    if (!interpreter.readsTransparency) {
        return std::nullopt;
    }
    const ObjectOwner group = lookupObject(cache, form, "Group");
    if (typeObject(group.get()) != ObjectType::dictionary) {
        return std::nullopt;
    }
    const ObjectOwner kind = lookupObject(cache, group.get(), "S");
    if (typeObject(kind.get()) != ObjectType::literal ||
        literalObject(kind.get()) != "Transparency") {
        return std::nullopt;
    }
    const Transparency state = std::exchange(inside.transparency, {});
    inside.settings = withoutTransparency(inside.settings);
    Appearance appearance = appearanceAsOne(state);
    appearance.isIsolated = isOn(cache, group.get(), "I");
    appearance.isKnockout = isOn(cache, group.get(), "K");
    return appearance;
}

} // namespace corvane
