// Slots for paint that the host draws, and for notes.
#include "app/artwork/paint/gradient_drawing.h"
#include "app/artwork/slots/counted_text.h"
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"
#include "host/matrix.h"

#include <algorithm>
#include <utility>

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

HostError addGradient(const GradientFacts* facts, PaintSource* gradient) {
    return guardedSlot([&](CallbackScope& scope) {
        const GradientFacts& told = target(facts);
        PaintSource& made = target(gradient);
        made = scope.document().addGradient({.radial = told.isRadial,
                                             .x1 = told.x1,
                                             .y1 = told.y1,
                                             .r1 = told.r1,
                                             .x2 = told.x2,
                                             .y2 = told.y2,
                                             .r2 = told.r2,
                                             .matrix = told.matrix,
                                             .spread = told.spread,
                                             .stops = {told.stops.begin(), told.stops.end()}});
    });
}

HostError getGradient(PaintSource gradient, GradientFacts* facts) {
    return guardedSlot([&](CallbackScope& scope) {
        const Gradient& known = scope.document().gradient(gradient);
        target(facts) = {.isRadial = known.radial,
                         .x1 = known.x1,
                         .y1 = known.y1,
                         .r1 = known.r1,
                         .x2 = known.x2,
                         .y2 = known.y2,
                         .r2 = known.r2,
                         .matrix = known.matrix,
                         .spread = known.spread,
                         .stops = known.stops};
    });
}

HostError addPattern(const PatternFacts* facts, PaintSource* pattern) {
    return guardedSlot([&](CallbackScope& scope) {
        PaintSource& made = target(pattern);
        const PatternFacts& told = target(facts);
        made = scope.document().addPattern({.tile = told.tile,
                                            .left = told.left,
                                            .bottom = told.bottom,
                                            .right = told.right,
                                            .top = told.top,
                                            .stepX = told.stepX,
                                            .stepY = told.stepY,
                                            .matrix = told.matrix});
    });
}

HostError getPattern(PaintSource pattern, PatternFacts* facts) {
    return guardedSlot([&](CallbackScope& scope) {
        const Pattern& known = scope.document().pattern(pattern);
        target(facts) = {.tile = known.tile,
                         .left = known.left,
                         .bottom = known.bottom,
                         .right = known.right,
                         .top = known.top,
                         .stepX = known.stepX,
                         .stepY = known.stepY,
                         .matrix = known.matrix};
    });
}

HostError addCustomColour(const CustomColour* facts, PaintSource* custom) {
    return guardedSlot([&](CallbackScope& scope) {
        PaintSource& made = target(custom);
        const CustomColour& told = target(facts);
        SpotColour colour{.name = countedText(told.name)};
        if (colour.name.empty()) {
            throw ArtworkError("the custom colour has no name");
        }
        std::ranges::copy(told.process, colour.process.begin());
        made = scope.document().addSpotColour(std::move(colour));
    });
}

HostError addInkMixture(const InkMixtureFacts* facts, PaintSource* mixture) {
    return guardedSlot([&](CallbackScope& scope) {
        const InkMixtureFacts& told = target(facts);
        PaintSource& made = target(mixture);
        made = scope.document().addInkMixture({.names = std::string(told.names),
                                               .tints = {told.tints.begin(), told.tints.end()},
                                               .seen = told.seen});
    });
}

HostError getInkMixture(PaintSource mixture, InkMixtureFacts* facts) {
    return guardedSlot([&](CallbackScope& scope) {
        const InkMixture& known = scope.document().inkMixture(mixture);
        target(facts) = {.names = known.names, .tints = known.tints, .seen = known.seen};
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
