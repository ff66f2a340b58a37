#include "reader/content/content_trace.h"

#include "objects/stack.h"
#include "reader/content/art.h"
#include "reader/content/interpreter.h"
#include "reader/form/form_trace.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

bool setsState(OperatorRole role) {
    return role >= OperatorRole::fillSpace && role <= OperatorRole::external;
}

/// Positions stay below the budget of a page, which 32 bits hold.
std::uint32_t positionOf(std::int64_t bytes) {
    return static_cast<std::uint32_t>(bytes);
}

bool isOptionalContent(OperatorRole role) {
    return role == OperatorRole::beginMarked && countStack() >= 2 &&
           typeObject(indexStack(1)) == ObjectType::literal && literalObject(indexStack(1)) == "OC";
}

} // namespace

ContentTrace::ContentTrace() {
    clips_.push({});
    marks_.push({});
    setters_.push({});
    textPlaces_.push({});
    textSettings_.push({});
}

ContentTrace::~ContentTrace() = default;

void ContentTrace::begin(const Interpreter& interpreter) {
    setMatrix(interpreter);
    behind_.settings = interpreter.state.settings;
    atStart_ = behind_;
}

void ContentTrace::beginStream(std::int64_t start) {
    streamStarts_.push_back(positionOf(start));
    damaged_.push_back(false);
}

void ContentTrace::endStream(std::int64_t end, bool isInString) {
    endsOpen_ = isInString;
    damaged_.back() = damaged_.back() || isInString;
    if (std::exchange(isInData_, false)) {
        // Data without an EI are all the rest of the stream.
        cutImage_ = cutImage_.value_or(imageStart_);
        events_.push({.start = std::exchange(imageStart_, positionOf(end)),
                      .end = positionOf(end),
                      .isFailed = true,
                      .behind = behind_});
    }
}

void ContentTrace::setMatrix(const Interpreter& interpreter) {
    behind_.matrix = static_cast<TraceIndex>(matrices_.size());
    matrices_.push(interpreter.state.exactCtm);
}

void ContentTrace::addClip(Art art) {
    const auto link = static_cast<TraceIndex>(clips_.size());
    clips_.push({.outer = behind_.clip,
                 .event = next(),
                 .art = art,
                 .depth = clips_[behind_.clip].depth + 1});
    behind_.clip = link;
}

/// Something was painted within the clips in force.
void ContentTrace::markClips(bool ClipLink::*mark) {
    for (TraceIndex link = behind_.clip; link != 0 && !(clips_[link].*mark);
         link = clips_[link].outer) {
        clips_[link].*mark = true;
    }
}

void ContentTrace::hide() {
    hidesArt_ = true;
    markClips(&ClipLink::hides);
}

void ContentTrace::addForm(std::unique_ptr<FormTrace> form) {
    const std::size_t bytes =
        (forms_.size() + 1) * (sizeof(FormTrace) + sizeof(std::unique_ptr<FormTrace>));
    formsCharge_.resize(static_cast<std::int64_t>(bytes));
    form->event = next();
    forms_.push_back(std::move(form));
}

const FormTrace* ContentTrace::formAt(TraceIndex event) const {
    const auto at = std::ranges::lower_bound(
        forms_, event, {}, [](const std::unique_ptr<FormTrace>& form) { return form->event; });
    return at != forms_.end() && (*at)->event == event ? at->get() : nullptr;
}

void ContentTrace::applyPath(const Interpreter& interpreter, TraceEvent& event) {
    const ContentLevel& level = interpreter.level;
    event.word = event.start;
    event.start = positionOf(level.ended.start);
    event.art = level.ended.art;
    event.clip = level.ended.clip;
    event.hidesFill = level.ended.hidesFill;
    event.hidesStroke = level.ended.hidesStroke;
    if (event.art != Art::null) {
        painted_.push({.event = next(), .art = event.art});
        markClips(&ClipLink::holds);
    } else if (event.hidesFill || event.hidesStroke) {
        hide();
    }
    if (level.ended.clips) {
        addClip(event.clip);
    }
}

namespace {

bool isVertical(const TextState& text) {
    return text.font != nullptr && text.font->font->isVertical();
}

/// Or may be one, where artwork cannot hold it.
bool isPattern(const Paint& paint, const Colour& colour) {
    return paint.hidden || colour.kind == ColourKind::gradient ||
           colour.kind == ColourKind::pattern;
}

/// What a number of 1000 in an array moves by, in text space.
double unitOf(const TextState& text) {
    return isVertical(text) ? text.size : text.size * text.horizontalScale;
}

} // namespace

/// The text object has come to another place, or its unit is another one.
void ContentTrace::addTextPlace(const Interpreter& interpreter) {
    if (!behind_.isInText) {
        return;
    }
    const TextObject& text = interpreter.level.text;
    TextObjectPlace place = textPlaces_[behind_.text];
    place.line = text.lineMatrix;
    const std::optional<RealMatrix> back = inverse(text.lineMatrix);
    const RealPoint way = back ? transform(*back, {text.matrix.tx, text.matrix.ty}) : RealPoint();
    const bool goesDown = isVertical(interpreter.state.text);
    place.along = goesDown ? way.y : way.x;
    place.across = goesDown ? way.x : way.y;
    place.unit = unitOf(interpreter.state.text);
    textPlaces_.push(place);
    behind_.text = static_cast<TraceIndex>(textPlaces_.size() - 1);
}

void ContentTrace::applyShow(const Interpreter& interpreter, TraceEvent& event) {
    const TextState& text = interpreter.state.text;
    const ShownText& shown = interpreter.level.shown;
    if (behind_.isInText) {
        textPlaces_[behind_.text].addsToClip = interpreter.level.text.clip.clips;
        addTextPlace(interpreter);
    }
    if (shown.parts.empty()) {
        if (shown.hides || !interpreter.readsText) {
            hide();
        }
        return;
    }
    textSettings_.push({.event = next(),
                        .matrix = multiply(shown.matrix, interpreter.state.exactCtm),
                        .size = text.size,
                        .characterSpacing = text.characterSpacing,
                        .wordSpacing = text.wordSpacing,
                        .horizontalScale = text.horizontalScale,
                        .rise = text.rise,
                        .mode = text.renderMode,
                        .font = behind_.font,
                        .advance = shown.advance,
                        .unit = unitOf(text),
                        .isVertical = isVertical(text)});
    for (const ShownPart& part : shown.parts) {
        if (part.isBefore) {
            moveOn(part);
        }
        textParts_.push(part);
        painted_.push({.event = next(),
                       .art = part.art,
                       .setting = static_cast<TraceIndex>(textSettings_.size() - 1),
                       .part = static_cast<TraceIndex>(textParts_.size() - 1),
                       .isDrawn = shown.isDrawn});
    }
    event.art = shown.parts.front().art;
    markClips(&ClipLink::holds);
}

/// The runs of a line that got another one before them.
void ContentTrace::moveOn(const ShownPart& before) {
    for (std::size_t i = textParts_.size(); i-- > 0 && textParts_[i].art == before.art;) {
        ShownPart& part = textParts_[i];
        const bool wasFirst = part.run++ == 0;
        part.start += before.length + (wasFirst ? 0 : before.gap);
        part.length += wasFirst ? before.gap : 0;
    }
}

/// An image, a form, or something else that no art shows.
void ContentTrace::applyObject(const Interpreter& interpreter, TraceEvent& event) {
    event.art = interpreter.level.placed;
    const FormTrace* const form = formAt(next());
    if (form != nullptr ? form->trace.hidesArt() : event.art == Art::null) {
        hide();
    }
    if (event.art != Art::null) {
        const bool isForm = form != nullptr;
        const bool isStencil = !isForm && artKind(event.art) == ArtKind::path;
        painted_.push({.event = next(),
                       .art = event.art,
                       .isImage = !isForm && !isStencil,
                       .isForm = isForm,
                       .isStencil = isStencil});
        markClips(&ClipLink::holds);
    }
}

void ContentTrace::applyShading(const Interpreter& interpreter, TraceEvent& event) {
    event.art = interpreter.level.shaded;
    if (event.art == Art::null) {
        return hide();
    }
    painted_.push({.event = next(),
                   .art = event.art,
                   .isImage = artKind(event.art) == ArtKind::placed,
                   .isShading = true});
    markClips(&ClipLink::holds);
}

void ContentTrace::apply(const Interpreter& interpreter, TraceEvent& event) {
    switch (event.role) {
    case OperatorRole::paintPath:
        return applyPath(interpreter, event);
    case OperatorRole::save:
        if (saved_.size() == saved_.capacity()) {
            const std::size_t room = 2 * saved_.size() + 16;
            savedCharge_.resize(static_cast<std::int64_t>(room * sizeof(Surroundings)));
            saved_.reserve(room);
        }
        saved_.push_back(behind_);
        return;
    case OperatorRole::restore:
        event.isFailed = saved_.empty();
        if (!event.isFailed) {
            const Surroundings& former = saved_.back();
            behind_.matrix = former.matrix;
            behind_.clip = former.clip;
            behind_.setter = former.setter;
            behind_.font = former.font;
            behind_.settings = former.settings;
            saved_.pop_back();
        }
        return;
    case OperatorRole::matrix:
        return setMatrix(interpreter);
    case OperatorRole::show:
        return applyShow(interpreter, event);
    case OperatorRole::paint:
        return applyShading(interpreter, event);
    case OperatorRole::object:
        return applyObject(interpreter, event);
    case OperatorRole::endImage:
        event.start = isInImage_ ? cutImage_.value_or(imageStart_) : event.start;
        if (isInImage_ && cutImage_) {
            // Its bytes mean another image where they stand in one stream.
            for (std::size_t i = streamStarts_.size();
                 i-- > 0 &&
                 (i + 1 == streamStarts_.size() || streamStarts_[i + 1] > event.start);) {
                damaged_[i] = true;
            }
        }
        isInImage_ = false;
        isInData_ = false;
        return applyObject(interpreter, event);
    case OperatorRole::beginText:
        // A text object that did not end goes on to add to the clip.
        textPlaces_.push({.begin = next(), .addsToClip = interpreter.level.text.clip.clips});
        behind_.isInText = true;
        behind_.text = static_cast<TraceIndex>(textPlaces_.size() - 1);
        return;
    case OperatorRole::endText:
        behind_.isInText = false;
        behind_.text = 0;
        if (interpreter.level.endedText.clips) {
            event.clip = interpreter.level.endedText.clip;
            addClip(event.clip);
        }
        return;
    case OperatorRole::font:
        behind_.font = next() + 1;
        return addTextPlace(interpreter);
    case OperatorRole::textState:
        return addTextPlace(interpreter);
    case OperatorRole::beginMarked: {
        const auto link = static_cast<TraceIndex>(marks_.size());
        const bool isOptional = isOptionalContent(event.role);
        marks_.push(
            {.outer = behind_.mark,
             .event = next(),
             .isOptional = isOptional,
             .layer = isOptional ? interpreter.containers.markedLayer() : ContentLayer::null,
             .depth = marks_[behind_.mark].depth + 1});
        behind_.mark = link;
        return;
    }
    case OperatorRole::endMarked:
        event.isFailed = behind_.mark == 0;
        behind_.mark = marks_.items()[behind_.mark].outer;
        return;
    default:
        break;
    }
    if (setsState(event.role)) {
        const GraphicsState& state = interpreter.state;
        event.namesPattern =
            (event.role == OperatorRole::fillColour && isPattern(state.fill, state.style.fill)) ||
            (event.role == OperatorRole::strokeColour &&
             isPattern(state.stroke, state.style.stroke));
        event.setsLines = event.role == OperatorRole::external && interpreter.level.setsLines;
        const auto link = static_cast<TraceIndex>(setters_.size());
        setters_.push({behind_.setter, next(), behind_.matrix});
        behind_.setter = link;
        behind_.settings = interpreter.state.settings;
        if (event.role == OperatorRole::external && interpreter.level.setsFont) {
            behind_.font = next() + 1;
            addTextPlace(interpreter);
        }
    }
}

void ContentTrace::note(const Interpreter& interpreter, OperatorRole role) {
    const OperatorSpan& span = interpreter.level.span;
    switch (role) {
    case OperatorRole::operand:
    case OperatorRole::construct:
        return;
    case OperatorRole::imageData:
        isInData_ = true;
        if (isInImage_) {
            return;
        }
        [[fallthrough]]; // data without a BI
    case OperatorRole::beginImage:
        imageStart_ = positionOf(span.start);
        cutImage_.reset();
        isInImage_ = true;
        return;
    default:
        break;
    }
    TraceEvent event{.start = positionOf(span.start), .end = positionOf(span.end), .role = role};
    apply(interpreter, event);
    behind_.isInPath = interpreter.level.path.compound != Art::null;
    event.behind = behind_;
    events_.push(event);
}

void ContentTrace::noteFailed(const Interpreter& interpreter) {
    const OperatorSpan& span = interpreter.level.span;
    behind_.isInPath = interpreter.level.path.compound != Art::null;
    TraceEvent event{.start = positionOf(span.start), .end = positionOf(span.end)};
    event.isFailed = true;
    event.behind = behind_;
    events_.push(event);
}

TraceIndex ContentTrace::clipAround(TraceIndex event) const {
    const TraceIndex link = events_[event].behind.clip;
    return link != 0 && clips_[link].event == event ? clips_[link].outer : link;
}

std::uint32_t ContentTrace::countParts(std::uint32_t painted) const {
    std::uint32_t end = painted + 1;
    while (end < painted_.size() && painted_[end].event == painted_[painted].event) {
        ++end;
    }
    return end - painted;
}

void ContentTrace::end(const Interpreter& interpreter) {
    streamStarts_.push_back(positionOf(interpreter.level.streamStart));
    behind_.isInPath = interpreter.level.path.compound != Art::null;
    endsOpen_ = endsOpen_ || isInImage_ || interpreter.level.operands.isOpen();
}

} // namespace corvane
