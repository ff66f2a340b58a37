// `sh`: the area of the clip in force, filled with a shading.
#include "objects/stack.h"
#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/content/content_operators.h"
#include "reader/shading/box_art.h"
#include "reader/shading/shading_gradient.h"
#include "reader/shading/shading_image.h"
#include "reader/shading/take_shading.h"
#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"

#include <algorithm>

namespace corvane {

namespace {

/// The part of the artboard that the innermost clip shows; those around it cut the rest. How far
/// letters reach is not known.
Box shownArea(const Interpreter& interpreter) {
    const Box& all = interpreter.level.area;
    const Art clip = interpreter.containers.clip();
    if (clip == Art::null || isTextClip(clip)) {
        return all;
    }
    const Box box = boxOfArt(clip);
    return {std::max(all.left, box.left), std::max(all.bottom, box.bottom),
            std::min(all.right, box.right), std::min(all.top, box.top)};
}

Object shadingEntry(DocumentCache& cache, std::string_view name, ObjectOwner& category) {
    if (typeObject(cache.resources.get()) != ObjectType::dictionary) {
        return {};
    }
    category = lookupObject(cache, cache.resources.get(), "Shading");
    return typeObject(category.get()) == ObjectType::dictionary
               ? findEntry(cache, category.get(), name)
               : Object();
}

Art paintShading(Interpreter& interpreter, const Shading& shading, const Object& entry,
                 const Box& area) {
    const RealMatrix& ctm = interpreter.state.exactCtm;
    if (!isGradient(shading)) {
        const auto placed = shadingImage(interpreter, shading, entry, ctm, area, false);
        if (!placed) {
            return Art::null;
        }
        const Art art = interpreter.containers.make(ArtKind::placed);
        callHost(slot::setPlacedImage, art, &*placed);
        tellAppearanceAsOne(interpreter, art, imageAppearance(interpreter.state));
        return art;
    }
    PathStyle style;
    style.fillPaint = 1;
    style.fill = gradientOf(interpreter.progress, shading, ctm, false);
    const Art art = interpreter.containers.make(ArtKind::path);
    if (shading.box) {
        setCorners(art, *shading.box, ctm);
    } else {
        setCorners(art, area);
    }
    callHost(slot::setPathStyle, art, &style);
    tellAppearance(interpreter, art, {.fills = true});
    return art;
}

} // namespace

void shadingOperator(Interpreter& interpreter) {
    ContentLevel& level = interpreter.level;
    level.shaded = Art::null;
    const ObjectOwner name = popLiteral();
    ObjectOwner category;
    const Object entry = shadingEntry(interpreter.cache, literalObject(name.get()), category);
    const std::optional<Shading> shading = takeShading(interpreter, entry);
    if (!shading) {
        interpreter.omissions.note(Omission::shading);
        return;
    }
    const Box area = shownArea(interpreter);
    if (!inverse(interpreter.state.exactCtm) ||
        !(area.left < area.right && area.bottom < area.top)) {
        return;
    }
    level.shaded = paintShading(interpreter, *shading, entry, area);
    if (level.shaded == Art::null) {
        return;
    }
    if (level.tellsSources) {
        const ArtSource source = interpreter.sourceFrom(level.span.start);
        callHost(slot::setArtSource, level.shaded, &source);
    }
    ++level.painted;
}

} // namespace corvane
