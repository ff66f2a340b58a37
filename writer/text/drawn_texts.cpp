#include "writer/text/drawn_texts.h"

#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "writer/art/art_stack.h"
#include "writer/art/drawn_looks.h"
#include "writer/art/layers.h"
#include "writer/art/path_works.h"
#include "writer/art/style_works.h"
#include "writer/art/text/text_clip.h"
#include "writer/text/text_pen.h"

#include <vector>

namespace corvane {

namespace {

/// Kinds that hold others: also one that only the host knows.
bool mayHold(ArtKind kind) {
    return kind == ArtKind::group || kind == ArtKind::unknown;
}

std::int32_t runCount(Art text) {
    std::int32_t count = 0;
    callHost(slot::getTextRunCount, text, &count);
    return count;
}

TextRun runOf(Art text, std::int32_t run) {
    TextRun found;
    callHost(slot::getTextRun, text, run, &found);
    return found;
}

/// Of art that only its host knows, what it holds if that can be had.
Art firstWithin(Art art) {
    Art first = Art::null;
    if (guarded([&] { first = firstChild(art); }) != Exception::none) {
        resetException();
    }
    return first;
}

} // namespace

DrawnTexts::DrawnTexts(ResourceRegistry& resources) : names_(resources) {
    ChargedList<Art> layers = listDrawnArt();
    while (!layers.empty()) {
        addAll(layers.pop());
    }
    setText_.finish();
}

DrawnTexts::DrawnTexts(ResourceRegistry& resources, Art top) : names_(resources) {
    addAll(top);
    setText_.finish();
}

/// Looks at what a mask holds, too.
void DrawnTexts::addMask(SoftMask mask, ArtStack& pending) {
    if (mask == SoftMask::null || !masks_.insert(mask).second) {
        return;
    }
    MaskFacts facts;
    callHost(slot::getMask, mask, &facts);
    pending.push(facts.content);
}

void DrawnTexts::addAll(Art top) {
    ArtStack pending;
    pending.push(top);
    for (ArtStep step; pending.next(step);) {
        if (step.what != ArtStep::What::art) {
            continue;
        }
        if (hostHoldsAppearance()) {
            addMask(appearanceOf(step.art).mask, pending);
        }
        const ArtKind kind = artKind(step.art);
        if (kind == ArtKind::text) {
            add(step.art);
        } else if (mayHold(kind)) {
            pending.enter(firstWithin(step.art), ArtStep::What::end);
        }
    }
}

void DrawnTexts::add(Art text) {
    TextLine line;
    callHost(slot::getTextLine, text, &line);
    const std::int32_t count = runCount(text);
    std::vector<LineRun> runs;
    runs.reserve(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        runs.push_back({.run = runOf(text, i)});
    }
    const SetText::Index first = setText_.add(line, runs);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        setText_.refuse(first + static_cast<SetText::Index>(i));
    }
    first_.emplace(text, first);
}

SetText::Index DrawnTexts::firstOf(Art text) const {
    const auto first = first_.find(text);
    if (first == first_.end()) {
        failException(Exception::type);
    }
    return first->second;
}

void DrawnTexts::clipWithLine(Walk& walk, Art text) {
    SetText::Index set = firstOf(text);
    for (std::int32_t i = 0; i < runCount(text); ++i) {
        setText_.write(walk, set++, runOf(text, i), RealMatrix(), names_);
    }
}

void DrawnTexts::clip(Walk& walk, Art clip) {
    walk.text.add("BT\n");
    const ChargedList<Art> texts = clipTexts(clip);
    for (const Art text : texts.items()) {
        clipWithLine(walk, text);
    }
    walk.text.add("ET\n");
}

void DrawnTexts::write(Walk& walk, Art text) {
    TextLine line;
    callHost(slot::getTextLine, text, &line);
    SetText::Index set = firstOf(text);
    for (std::int32_t i = 0; i < runCount(text); ++i) {
        TextRun run = runOf(text, i);
        run.style.clip = 0; // only the clip of a group clips
        const LookState look =
            stateOf({.fillOpacity = run.fillOpacity, .strokeOpacity = run.strokeOpacity});
        const bool isLooked = walk.looks != nullptr && !look.isEmpty();
        const PennedText penned = pennedText(line.matrix, run.style);
        const bool isApart = isLooked || needsMask(walk, run.style) || !penned.isRound();
        if (isApart) {
            enterWorks(walk);
            maskWorks(walk, run.style);
        }
        if (isLooked) {
            stateWorks(walk, look);
        }
        enterPenOf(walk, penned);
        pathStyleWorks(walk, penned.style);
        setText_.decorate(walk, set, run, penned.back, LineDepth::behindLetters);
        walk.text.add("BT\n");
        setText_.write(walk, set, run, penned.back, names_);
        walk.text.add("ET\n");
        setText_.decorate(walk, set++, run, penned.back, LineDepth::beforeLetters);
        if (isApart) {
            leaveWorks(walk);
        }
    }
}

} // namespace corvane
