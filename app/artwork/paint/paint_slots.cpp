// Slots for paint that the host draws, and for notes.
#include "app/artwork/counted_text.h"
#include "app/artwork/guard.h"
#include "app/artwork/paint/gradient_drawing.h"
#include "app/artwork/slots.h"
#include "host/matrix.h"

#include <algorithm>

namespace corvane::answer {

namespace {

/// All but `setRGB`.
void checkProcedures(const DrawingProcedures& draw) {
    if (draw.setGray == nullptr || draw.setCMYK == nullptr || draw.beginFill == nullptr ||
        draw.endFill == nullptr || draw.moveTo == nullptr || draw.lineTo == nullptr ||
        draw.curveTo == nullptr) {
        throw ArtworkError("a drawing procedure is missing");
    }
}

} // namespace

void getColorInfo(PaintSource custom, CustomColour* told) {
    guardedSlot([&](CallbackScope& scope) {
        const SpotColour& colour = scope.document().spotColour(custom);
        CustomColour& info = target(told);
        info = {};
        copyCounted(colour.name, info.name);
        std::ranges::copy(colour.process, info.process);
    });
}

HostError drawGradient(Art path, const DrawingProcedures* procedures) {
    return guardedSlot([&](CallbackScope& scope) {
        const Document& document = scope.document();
        checkProcedures(target(procedures));
        Gradient gradient = document.gradient(fillOf(document, path).source);
        if (document.segments(path).empty()) {
            return;
        }
        gradient.matrix = multiply(gradient.matrix, scope.tiling().placement(document, path));
        corvane::drawGradient(gradient, pathBounds(document, path), *procedures);
    });
}

HostError tilePattern(Art path, TileProcedure procedure) {
    return guardedSlot([&](CallbackScope& scope) {
        if (procedure == nullptr) {
            throw ArtworkError("a drawing procedure is missing");
        }
        scope.tiling().tile(scope.document(), path, procedure);
    });
}

HostError getNote(Note note, std::uint8_t* text) {
    return guardedSlot([&](CallbackScope& scope) {
        constexpr std::size_t size = 256;
        std::uint8_t& start = target(text);
        copyCounted(scope.document().note(note), {&start, size});
    });
}

} // namespace corvane::answer
