// Slots by which text that is there is walked: its runs, its lines, and their letters.
#include "app/artwork/classic/host_fonts.h"
#include "app/artwork/classic/slots.h"
#include "app/artwork/geometry/arithmetic.h"
#include "app/artwork/geometry/geometry.h"
#include "app/artwork/slots/guard.h"

namespace corvane {

namespace {

/// The text stands by itself: it is asked for the children that it does not have, and where it is.
HostError getTextPath(Art text, Art* path) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().textLine(text);
        target(path) = text;
    });
}

HostError getFirstRun(Art text, RunHandle* run) {
    return guardedSlot([&](CallbackScope& scope) {
        target(run) = OpenText::runAt(scope.openText().walk(scope.document(), text), 0);
    });
}

HostError getNextRun(Art text, RunHandle run, RunHandle* next) {
    return guardedSlot([&](CallbackScope& scope) {
        const auto place = scope.openText().run(scope.document(), run);
        if (place.text != text) {
            throw ArtworkError("the run is of another text object");
        }
        target(next) = OpenText::runAt(place.walk, OpenText::placeBehind(run));
    });
}

template <class Use>
HostError withRun(RunHandle run, Use use) {
    return guardedSlot([&](CallbackScope& scope) {
        use(scope.document(), scope.openText().run(scope.document(), run));
    });
}

HostError getRunLength(RunHandle run, std::int32_t* letters) {
    return withRun(run, [&](const Document&, const OpenText::RunPlace& place) {
        target(letters) = place.run.count;
    });
}

HostError getRunStyle(RunHandle run, PathStyle* style) {
    return withRun(run, [&](const Document& document, const OpenText::RunPlace& place) {
        target(style) = document.textRun(place.text, place.run.tableRun).style;
    });
}

HostError setRunStyle(RunHandle run, const PathStyle* style) {
    return withRun(run, [&](Document& document, const OpenText::RunPlace& place) {
        document.setTextRunStyle(place.text, place.run.tableRun, target(style));
    });
}

HostError getRunText(RunHandle run, RunText* text) {
    return withRun(run, [&](const Document&, const OpenText::RunPlace& place) {
        target(text).letters = place.walk.letters(place.run);
    });
}

HostError getRunCharStyle(RunHandle run, CharStyle* style) {
    return withRun(run, [&](const Document& document, const OpenText::RunPlace& place) {
        const TextRun shown = document.textRun(place.text, place.run.tableRun);
        const HostFonts& fonts = HostFonts::all();
        CharStyle& answer = target(style) = CharStyle();
        if (place.run.hostFont >= 0) {
            copyPrefixed(answer.font, fonts.name(place.run.hostFont));
            answer.technology = fonts.technology(place.run.hostFont);
        }
        answer.size = shown.size;
        answer.rise = shown.rise;
        answer.tracking = fixedNumber(1000.0 * shown.spacing / shown.size);
    });
}

HostError getRunParaStyle(RunHandle run, ParaStyle* style) {
    return withRun(
        run, [&](const Document&, const OpenText::RunPlace&) { target(style) = ParaStyle(); });
}

HostError getFirstLine(Art text, LineHandle* line) {
    return guardedSlot([&](CallbackScope& scope) {
        target(line) = OpenText::lineAt(scope.openText().walk(scope.document(), text), 0);
    });
}

template <class Use>
HostError withLine(LineHandle line, Use use) {
    return guardedSlot(
        [&](CallbackScope& scope) { use(scope.openText().line(scope.document(), line)); });
}

HostError getNextLine(LineHandle line, LineHandle* next) {
    return withLine(line, [&](const OpenText::LinePlace& place) {
        target(next) = OpenText::lineAt(place.walk, OpenText::placeBehind(line));
    });
}

HostError getLineLength(LineHandle line, std::int32_t* letters) {
    return withLine(line,
                    [&](const OpenText::LinePlace& place) { target(letters) = place.line.count; });
}

HostStatus getLinePlacement(LineHandle line) {
    bool isAlongPath = false;
    const HostError failed = withLine(
        line, [&](const OpenText::LinePlace& place) { isAlongPath = place.walk.isAlongPath(); });
    return failed != HostError::none ? HostStatus::failed
           : isAlongPath             ? HostStatus::none
                                     : HostStatus::notOnPath;
}

HostError getGlyphMatrix(LineHandle line, std::int32_t letter, Matrix* matrix) {
    return withLine(line, [&](const OpenText::LinePlace& place) {
        if (letter < 0 || letter >= place.line.count) {
            throw ArtworkError("the line has no such letter");
        }
        target(matrix) = withNegatedSlant(fixedMatrix(place.walk.glyphMatrix(place.line, letter)));
    });
}

HostError getLineStyle(LineHandle line, FlowStyle* style) {
    return withLine(line, [&](const OpenText::LinePlace&) { target(style) = FlowStyle(); });
}

} // namespace

void fillTextWalkSlots(std::span<HostProcedure> table) {
    fillSlot(table, slot::getTextPath, getTextPath);
    fillSlot(table, slot::getFirstRun, getFirstRun);
    fillSlot(table, slot::getNextRun, getNextRun);
    fillSlot(table, slot::getRunLength, getRunLength);
    fillSlot(table, slot::getRunStyle, getRunStyle);
    fillSlot(table, slot::setRunStyle, setRunStyle);
    fillSlot(table, slot::getRunText, getRunText);
    fillSlot(table, slot::getRunCharStyle, getRunCharStyle);
    fillSlot(table, slot::getRunParaStyle, getRunParaStyle);
    fillSlot(table, slot::getFirstLine, getFirstLine);
    fillSlot(table, slot::getNextLine, getNextLine);
    fillSlot(table, slot::getLineLength, getLineLength);
    fillSlot(table, slot::getLinePlacement, getLinePlacement);
    fillSlot(table, slot::getGlyphMatrix, getGlyphMatrix);
    fillSlot(table, slot::getLineStyle, getLineStyle);
}

} // namespace corvane
