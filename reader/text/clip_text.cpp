#include "reader/text/clip_text.h"

#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "runtime/callbacks.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

bool isSeen(const ClipRun& run) {
    constexpr std::string_view noBreak = "\xC2\xA0";
    for (std::string_view text = run.text; !text.empty();) {
        if (text.starts_with(noBreak)) {
            text.remove_prefix(noBreak.size());
        } else if (text.front() == ' ') {
            text.remove_prefix(1);
        } else {
            return true;
        }
    }
    return false;
}

bool isLineSeen(const ClipLine& line) {
    return std::ranges::any_of(line.runs, isSeen);
}

Art makeLine(ClipLine& line, Art holder) {
    const Art text = newArt(ArtKind::text, Placement::inside, holder);
    callHost(slot::setTextLine, text, &line.line);
    for (ClipRun& kept : line.runs) {
        kept.run.text = kept.text;
        kept.run.pieces = kept.pieces;
        callHost(slot::addTextRun, text, &kept.run);
    }
    return text;
}

/// A clipped group in front of what is there; its clip.
Art clipWith(Interpreter& interpreter, std::deque<ClipLine>& lines) {
    const Art group = interpreter.containers.make(ArtKind::group);
    interpreter.containers.enter(group);
    interpreter.level.path.holder = Art::null; // a path under construction is clipped, too
    Art clip = Art::null;
    if (lines.size() == 1) {
        clip = makeLine(lines.front(), group);
    } else {
        clip = newArt(ArtKind::group, Placement::inside, group);
        for (ClipLine& line : lines) {
            makeLine(line, clip);
        }
    }
    callHost(slot::setGroupClipped, group, std::uint8_t{1});
    if (interpreter.level.tellsSources) {
        const ArtSource source = interpreter.sourceFrom(interpreter.level.span.start);
        callHost(slot::setArtSource, clip, &source);
    }
    return clip;
}

} // namespace

EndedText endClipText(Interpreter& interpreter) {
    ClipText text = std::exchange(interpreter.level.text.clip, {});
    std::erase_if(text.lines, [](const ClipLine& line) { return !isLineSeen(line); });
    EndedText ended{.clips = text.clips};
    if (!text.hides && !text.lines.empty()) {
        ended.clip = clipWith(interpreter, text.lines);
    }
    return ended;
}

} // namespace corvane
