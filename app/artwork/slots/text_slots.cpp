// Slots for text: fonts, lines and runs.
#include "app/artwork/slots/guard.h"
#include "app/artwork/slots/slots.h"

#include <span>

namespace corvane::answer {

HostError addFont(const FontFacts* facts, Font* font) {
    return guardedSlot([&](CallbackScope& scope) {
        Font& made = target(font);
        made = scope.document().addFont(target(facts));
    });
}

HostError setFontFile(Font font, std::int32_t face, const std::byte* file, std::int32_t length) {
    return guardedSlot([&](CallbackScope& scope) {
        if (length <= 0) {
            throw ArtworkError("the font's file is empty");
        }
        scope.document().setFontFile(font, face, {&target(file), static_cast<std::size_t>(length)});
    });
}

HostError getFontFacts(Font font, FontFacts* facts) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(facts) = scope.document().fonts().facts(font); });
}

HostError setTextLine(Art text, const TextLine* line) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().setTextLine(text, target(line));
        scope.openText().forget();
    });
}

HostError getTextLine(Art text, TextLine* line) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(line) = scope.document().textLine(text); });
}

HostError addTextRun(Art text, const TextRun* run) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().addTextRun(text, target(run));
        scope.openText().forget();
    });
}

HostError addTextRunBefore(Art text, const TextLine* line, const TextRun* run, Fixed gap) {
    return guardedSlot([&](CallbackScope& scope) {
        scope.document().addTextRunBefore(text, target(line), target(run), gap);
        scope.openText().forget();
    });
}

HostError setTextRuns(Art text, const TextRun* runs, std::int32_t count) {
    return guardedSlot([&](CallbackScope& scope) {
        if (count <= 0) {
            throw ArtworkError("the text has no runs");
        }
        scope.document().setTextRuns(text, {&target(runs), static_cast<std::size_t>(count)});
        scope.openText().forget();
    });
}

HostError getTextRunCount(Art text, std::int32_t* count) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(count) = scope.document().textRunCount(text); });
}

HostError getTextRun(Art text, std::int32_t index, TextRun* run) {
    return guardedSlot(
        [&](CallbackScope& scope) { target(run) = scope.document().textRun(text, index); });
}

} // namespace corvane::answer
