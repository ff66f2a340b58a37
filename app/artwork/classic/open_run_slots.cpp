// Slots by which text is made: its origin, and an open run.
#include "app/artwork/classic/slots.h"
#include "app/artwork/slots/guard.h"

namespace corvane {

namespace {

HostError setTextOrigin(Art path, const Matrix* matrix) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().setTextLine(path, {.matrix = withNegatedSlant(target(matrix))});
    });
}

HostError newTextRun(Art text, Placement placement, RunHandle* run) {
    return guardedSlot([&](CallbackScope& scope) {
        RunHandle& made = target(run);
        if (placement != Placement::inside) {
            throw ArtworkError("a run goes into a text object");
        }
        made = scope.openText().open(scope.document(), text);
    });
}

/// Runs `use` on an open run.
template <class Use>
HostError withStream(RunHandle run, Use use) {
    return guardedSlot([&](CallbackScope& scope) { use(scope.openText().stream(run)); });
}

HostError endTextRun(RunHandle run) {
    return guardedSlot([&](CallbackScope& scope) { scope.openText().close(run); });
}

HostError setRunPosition(RunHandle run, std::int32_t position, std::int32_t) {
    return withStream(run, [&](TextStream& stream) { stream.select(position); });
}

HostError adjustTextRun(RunHandle run, std::int32_t* position) {
    return withStream(run, [&](TextStream& stream) { target(position) = stream.length(); });
}

HostError setRunText(RunHandle run, const std::uint8_t* letters, std::int32_t* count) {
    return withStream(run, [&](TextStream& stream) {
        if (target(count) < 0) {
            throw ArtworkError("the count of letters is below 0");
        }
        stream.append({&target(letters), static_cast<std::size_t>(*count)});
    });
}

HostError setRunPaint(RunHandle run, const PathStyle* paint) {
    return withStream(run, [&](TextStream& stream) { stream.setPaint(target(paint)); });
}

HostStatus setRunFont(RunHandle run, const std::uint8_t* name) {
    bool isThere = false;
    const HostError failed =
        withStream(run, [&](TextStream& stream) { isThere = stream.setFont(prefixedText(name)); });
    return failed != HostError::none ? HostStatus::failed
           : isThere                 ? HostStatus::none
                                     : HostStatus::fontMissing;
}

HostError getCharStyle(RunHandle run, CharStyle* style) {
    return withStream(run, [&](TextStream& stream) { target(style) = stream.charStyle(); });
}

HostError setCharStyle(RunHandle run, const CharStyle* style) {
    return withStream(run, [&](TextStream& stream) { stream.setCharStyle(target(style)); });
}

HostError getParaStyle(RunHandle run, ParaStyle* style) {
    return withStream(run, [&](TextStream& stream) { target(style) = stream.paraStyle(); });
}

HostError setParaStyle(RunHandle run, const ParaStyle* style) {
    return withStream(run, [&](TextStream& stream) { stream.setParaStyle(target(style)); });
}

HostError getRunKerning(RunHandle run, Fixed* kern) {
    return withStream(run, [&](TextStream& stream) { target(kern) = stream.kerning(); });
}

HostError setRunKerning(RunHandle run, Fixed kern) {
    return withStream(run, [&](TextStream& stream) { stream.setKerning(kern); });
}

} // namespace

void fillOpenRunSlots(std::span<HostProcedure> table) {
    fillSlot(table, slot::setTextOrigin, setTextOrigin);
    fillSlot(table, slot::newTextRun, newTextRun);
    fillSlot(table, slot::endTextRun, endTextRun);
    fillSlot(table, slot::setRunPosition, setRunPosition);
    fillSlot(table, slot::adjustTextRun, adjustTextRun);
    fillSlot(table, slot::setRunText, setRunText);
    fillSlot(table, slot::setRunPaint, setRunPaint);
    fillSlot(table, slot::setRunFont, setRunFont);
    fillSlot(table, slot::getCharStyle, getCharStyle);
    fillSlot(table, slot::setCharStyle, setCharStyle);
    fillSlot(table, slot::getParaStyle, getParaStyle);
    fillSlot(table, slot::setParaStyle, setParaStyle);
    fillSlot(table, slot::getRunKerning, getRunKerning);
    fillSlot(table, slot::setRunKerning, setRunKerning);
}

} // namespace corvane
