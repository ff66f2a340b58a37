// Marked content and rendering intents: nothing to draw, but something that the page has.
#include "objects/stack.h"
#include "reader/content/appearance.h"
#include "reader/content/content_operators.h"
#include "reader/content/losses.h"
#include "reader/font/font_entries.h"
#include "reader/paint/path_aside.h"
#include "reader/syntax/syntax.h"

namespace corvane {

void intentOperator(Interpreter& interpreter) {
    noteIntentLoss(interpreter, indexStack(0));
    if (interpreter.readsIntents) {
        interpreter.state.intent = intentOf(indexStack(0));
    }
}

namespace {

/// The layer that marked content names among the resources.
ContentLayer layerNamed(Interpreter& interpreter, const Object& name) {
    DocumentCache& cache = interpreter.cache;
    const ObjectOwner properties = entryOf(cache, cache.resources.get(), "Properties");
    return isDictionary(properties.get())
               ? interpreter.layers.find(cache,
                                         findEntry(cache, properties.get(), literalObject(name)))
               : ContentLayer::null;
}

} // namespace

void markPointOperator(Interpreter& interpreter) {
    interpreter.omissions.note(Omission::markedContent);
}

void beginMarkOperator(Interpreter& interpreter) {
    interpreter.omissions.note(Omission::markedContent);
    interpreter.containers.beginMark(ContentLayer::null);
}

void beginPropertiesOperator(Interpreter& interpreter) {
    const bool isLayer = literalObject(indexStack(1)) == "OC";
    ContentLayer layer = ContentLayer::null;
    if (isLayer && interpreter.readsForms && !interpreter.level.isGlyph &&
        typeObject(indexStack(0)) == ObjectType::literal) {
        layer = layerNamed(interpreter, indexStack(0));
    } else {
        interpreter.omissions.note(isLayer ? Omission::optionalContent : Omission::markedContent);
    }
    interpreter.containers.beginMark(layer);
}

void endMarkOperator(Interpreter& interpreter) {
    const Art ofPath = takePathAside(interpreter);
    interpreter.progress.charge(interpreter.containers.endMark());
    putPathBack(interpreter, ofPath);
}

} // namespace corvane
