// Drawing that shows with a layer of the file.
#pragma once

#include "reader/content/interpreter.h"
#include "runtime/exception.h"

namespace corvane {

/// Whether groups stand for layers of what is drawn now.
inline bool holdsLayers(const Interpreter& interpreter) {
    return interpreter.readsForms && !interpreter.level.isGlyph;
}

/// Draws in a group of the layer that an OC entry names, if it names one.
template <class Draw>
void withLayer(Interpreter& interpreter, const Object& entry, const Draw& draw) {
    if (typeObject(entry) != ObjectType::null && !holdsLayers(interpreter)) {
        interpreter.omissions.note(Omission::optionalContent);
    }
    const ContentLayer layer = holdsLayers(interpreter)
                                   ? interpreter.layers.find(interpreter.cache, entry)
                                   : ContentLayer::null;
    if (layer == ContentLayer::null) {
        draw();
        return;
    }
    interpreter.containers.beginMark(layer);
    const Exception code = guarded(draw);
    resetException();
    interpreter.containers.endMark();
    raiseException(code);
}

} // namespace corvane
