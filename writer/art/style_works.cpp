#include "writer/art/style_works.h"

#include "runtime/callbacks.h"
#include "runtime/rules.h"
#include "runtime/string.h"
#include "writer/art/color_works.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string_view>

namespace corvane {

namespace {

/// From this resolution on, in dots per inch, curves are as flat as the device can draw them.
constexpr Fixed finestResolution = 800 * fixedOne;
/// Dots per inch at which a flatness is 1.
constexpr Fixed unitResolution = 2400 * fixedOne;
/// PDF Reference 4.3.3.
constexpr Fixed largestFlatness = 100 * fixedOne;

/// Writes `value` and its operator where another is in force.
void numberWorks(Walk& walk, std::optional<Fixed>& shadow, Fixed value, std::string_view word) {
    if (shadow != value) {
        walk.text.add(value);
        walk.text.add(word);
        shadow = value;
    }
}

void colourWorks(Walk& walk, std::optional<Colour>& shadow, const Colour& colour, bool isFill) {
    if (!shadow || !compareColor(*shadow, colour)) {
        colorWorks(walk, colour, isFill);
        shadow = colour;
    }
}

Dash dashOf(const PathStyle& style) {
    if (style.dashCount < 0 || style.dashCount > std::ssize(style.dash)) {
        failException(Exception::type);
    }
    Dash dash{style.dashCount, style.dashPhase, {}};
    std::copy_n(style.dash, style.dashCount, dash.length);
    return dash;
}

using ChoiceWords = std::array<std::string_view, 3>;
constexpr ChoiceWords capWords{"0 J\n", "1 J\n", "2 J\n"};
constexpr ChoiceWords joinWords{"0 j\n", "1 j\n", "2 j\n"};

void choiceWorks(Walk& walk, std::optional<std::int32_t>& shadow, std::int32_t choice,
                 const ChoiceWords& words) {
    if (shadow == choice) {
        return;
    }
    if (choice < 0 || choice > 2) {
        failException(Exception::type);
    }
    walk.text.add(words[static_cast<std::size_t>(choice)]);
    shadow = choice;
}

void strokeWorks(Walk& walk, const PathStyle& style) {
    Shadow& shadow = walk.shadow;
    colourWorks(walk, shadow.stroke, style.stroke, false);
    numberWorks(walk, shadow.lineWidth, style.lineWidth, "w\n");
    const Dash dash = dashOf(style);
    if (!shadow.dash || !compareDash(*shadow.dash, dash)) {
        dashWorks(walk, dash);
        shadow.dash = dash;
    }
    capWorks(walk, style.cap);
    joinWorks(walk, style.join);
    numberWorks(walk, shadow.miterLimit, std::max(style.miterLimit, fixedOne), "M\n");
}

Fixed resolutionOf(Fixed flatness) {
    return callHost(slot::fixedDivide, unitResolution, flatness);
}

/// The flatness that reads back as `resolution`, or the nearest: quotients go through single
/// precision, so the one there may not lead back.
Fixed exactFlatness(Fixed resolution) {
    const Fixed quotient = std::clamp(resolutionOf(resolution), 1, largestFlatness);
    const Fixed whole = (quotient + fixedOne / 2) / fixedOne * fixedOne;
    for (const Fixed flatness : {whole, quotient, quotient + 1, quotient - 1}) {
        if (flatness > 0 && resolutionOf(flatness) == resolution) {
            return flatness;
        }
    }
    return quotient;
}

std::string noteText(Note note) {
    if (note == Note::null) {
        return {};
    }
    std::array<std::uint8_t, 256> text{};
    callHost(slot::getNote, note, text.data());
    return commentText(text);
}

void noteWorks(Walk& walk, Note handle) {
    std::string note = noteText(handle);
    if (walk.shadow.note == note) {
        return;
    }
    if (!note.empty() || !rules().emptyLeftOut) {
        walk.text.add("%%Note: ");
        walk.text.add(note);
        walk.text.add("\n");
    }
    walk.shadow.note = std::move(note);
}

/// Of text in that style (PDF Reference, 5.2.5).
std::int32_t renderMode(const PathStyle& style) {
    constexpr std::int32_t clipping = 4;
    const bool fills = style.fillPaint != 0;
    const std::int32_t mode = style.strokePaint != 0 ? (fills ? 2 : 1) : (fills ? 0 : 3);
    return mode + (style.clip != 0 ? clipping : 0);
}

} // namespace

bool compareDash(const Dash& a, const Dash& b) {
    return a.count == b.count && a.phase == b.phase &&
           std::equal(a.length, a.length + a.count, b.length);
}

void dashWorks(Walk& walk, const Dash& dash) {
    walk.text.add("[ ");
    for (const Fixed length : std::span(dash.length).first(static_cast<std::size_t>(dash.count))) {
        walk.text.add(length);
    }
    walk.text.add("] ");
    walk.text.add(dash.phase);
    walk.text.add(" d\n");
}

void flatnessWorks(Walk& walk, Fixed resolution) {
    if (walk.shadow.resolution == resolution) {
        return;
    }
    Fixed flatness = 0;
    if (resolution < finestResolution) {
        flatness = rules().shortestNumbers ? exactFlatness(resolution) : resolutionOf(resolution);
    }
    walk.text.add(flatness);
    walk.text.add("i\n");
    walk.shadow.resolution = resolution;
}

void capWorks(Walk& walk, std::int32_t cap) {
    choiceWorks(walk, walk.shadow.cap, cap, capWords);
}

void joinWorks(Walk& walk, std::int32_t join) {
    choiceWorks(walk, walk.shadow.join, join, joinWords);
}

void pathStyleWorks(Walk& walk, const PathStyle& style) {
    if (style.fillPaint != 0) {
        colourWorks(walk, walk.shadow.fill, style.fill, true);
    }
    if (style.strokePaint != 0) {
        strokeWorks(walk, style);
    }
    flatnessWorks(walk, style.resolution);
    noteWorks(walk, style.note);
    walk.shadow.text.wanted.render = renderMode(style);
}

std::string commentText(std::span<const std::uint8_t> text) {
    std::string comment;
    for (const std::uint8_t byte : prefixedBytes(text)) {
        if (byte >= ' ' && byte != 127) {
            comment += static_cast<char>(byte);
        }
    }
    return comment;
}

std::optional<UserSpace> userSpace(const RealMatrix& ctm) {
    const std::optional<RealMatrix> back = inverse(ctm);
    if (!back) {
        return std::nullopt;
    }
    // Half of the last digit may move a point on the artboard by less than a quarter of the
    // smallest step of 16.16.
    constexpr double room = 1.0 / (4 * 65536);
    constexpr int mostDigits = 17;
    const double digits = std::ceil(std::log10(std::max(largestStretch(ctm), 1e-9) / room));
    return UserSpace{withoutSignedZeros(*back),
                     static_cast<int>(std::clamp(digits, 0.0, double{mostDigits}))};
}

void enterWorks(Walk& walk) {
    walk.text.add("q\n");
}

void leaveWorks(Walk& walk) {
    walk.text.add("Q\n");
    noneStyleWorks(walk);
}

void noneStyleWorks(Walk& walk) {
    walk.shadow = {};
}

} // namespace corvane
