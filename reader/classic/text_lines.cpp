#include "reader/classic/text_lines.h"

#include "reader/classic/kerning.h"
#include "reader/classic/text_style.h"
#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"
#include "runtime/charged_list.h"
#include "runtime/fixed.h"

#include <array>
#include <cstring>
#include <utility>
#include <vector>

namespace corvane::classic {

namespace {

bool isDropped(const Interpreter& interpreter) {
    return interpreter.state.classicText.font->kind == FontKind::type3;
}

/// Gives letters of the host to the run, all of them.
void giveLetters(RunHandle run, std::span<const std::uint8_t> letters) {
    const auto wanted = static_cast<std::int32_t>(letters.size());
    std::int32_t taken = wanted;
    const std::uint8_t none = 0; // an empty span may have no address
    callHost(slot::setRunText, run, letters.empty() ? &none : letters.data(), &taken);
    if (taken != wanted) {
        failException(Exception::host);
    }
}

void giveStyles(Interpreter& interpreter, RunHandle run) {
    const GraphicsState& state = interpreter.state;
    const PathStyle paint = stateTextStyle(state);
    callHost(slot::setRunPaint, run, &paint);

    const std::string& name = state.classicText.font->name;
    std::array<std::uint8_t, 256> prefixed{};
    prefixed[0] = static_cast<std::uint8_t>(name.size());
    std::memcpy(prefixed.data() + 1, name.data(), name.size());
    const HostStatus status = callHost(slot::setRunFont, run, prefixed.data());
    if (status != HostStatus::none && status != HostStatus::fontMissing) {
        failException(Exception::host);
    }

    CharStyle letters;
    callHost(slot::getCharStyle, run, &letters);
    setCharacters(letters, state.classicText);
    callHost(slot::setCharStyle, run, &letters);

    ParaStyle paragraph;
    callHost(slot::getParaStyle, run, &paragraph);
    setParagraph(paragraph, scalarTextLine(interpreter, state.classicText.wordSpacing));
    callHost(slot::setParaStyle, run, &paragraph);
}

/// Gives every run that clip flag; text that clips is not painted.
void limitTextStyle(Art text, bool clips) {
    RunHandle run = RunHandle::null;
    callHost(slot::getFirstRun, text, &run);
    while (run != RunHandle::null) {
        PathStyle style;
        callHost(slot::getRunStyle, run, &style);
        if (clips) {
            style.fillPaint = 0;
            style.strokePaint = 0;
        }
        style.clip = clips ? 1 : 0;
        callHost(slot::setRunStyle, run, &style);
        const RunHandle former = run;
        callHost(slot::getNextRun, text, former, &run);
    }
}

/// Makes the text the clip of a new group, and leaves a copy where it is painted as well.
void clipWithText(Interpreter& interpreter, Art text, const PathStyle& style) {
    limitTextStyle(text, false);
    if (style.fillPaint != 0 || style.strokePaint != 0) {
        Art copy = Art::null;
        callHost(slot::duplicateArt, text, Placement::behind, text, &copy);
    }
    const Art group = newArt(ArtKind::group, Placement::behind, text);
    interpreter.containers.enter(group);
    callHost(slot::reorderArt, text, Placement::inside, group);
    callHost(slot::setGroupClipped, group, std::uint8_t{1});
    limitTextStyle(text, true);
    interpreter.omissions.count(Omission::text); // files of artwork may not keep such a clip
}

} // namespace

void startsTextLine(Interpreter& interpreter) {
    TextLineState& line = interpreter.level.classicText;
    if (line.run != RunHandle::null || isDropped(interpreter)) {
        return;
    }
    line.object = interpreter.containers.make(ArtKind::text);
    Art path = Art::null;
    callHost(slot::getTextPath, line.object, &path);
    if (path == Art::null) {
        failException(Exception::host);
    }
    Matrix origin;
    callHost(slot::multiplyMatrix, &line.matrix, &interpreter.state.ctm, &origin);
    origin.b = negateFixed(origin.b); // the host's own y axis points down
    origin.c = negateFixed(origin.c);
    callHost(slot::setTextOrigin, path, &origin);
    callHost(slot::newTextRun, line.object, Placement::inside, &line.run);
    if (line.run == RunHandle::null) {
        failException(Exception::host);
    }
}

void appendTextLine(Interpreter& interpreter, std::string_view string) {
    if (isDropped(interpreter)) {
        interpreter.omissions.count(Omission::text);
        return;
    }
    const RunHandle run = interpreter.level.classicText.run;
    if (run == RunHandle::null) {
        failException(Exception::context);
    }
    giveStyles(interpreter, run);
    const ZoneCharge charge(std::ssize(string));
    std::vector<std::uint8_t> letters;
    letters.reserve(string.size());
    for (const char code : string) {
        letters.push_back(
            interpreter.state.classicText.font->encoding[static_cast<unsigned char>(code)]);
    }
    giveLetters(run, letters);
}

void returnTextLine(Interpreter& interpreter) {
    const RunHandle run = interpreter.level.classicText.run;
    if (run != RunHandle::null && !isDropped(interpreter)) {
        constexpr std::array<std::uint8_t, 1> lineEnd{'\r'};
        giveLetters(run, lineEnd);
    }
}

void finishTextLine(Interpreter& interpreter) {
    TextLineState& line = interpreter.level.classicText;
    if (line.run == RunHandle::null) {
        return;
    }
    applyKerns(line);
    const RunHandle run = std::exchange(line.run, RunHandle::null);
    const Art text = std::exchange(line.object, Art::null);
    callHost(slot::endTextRun, run);
    const PathStyle style = stateTextStyle(interpreter.state);
    if (style.clip != 0) {
        clipWithText(interpreter, text, style);
    }
}

} // namespace corvane::classic
