#include "writer/art/drawn_looks.h"

#include "filters/text_sink.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/content/appearance.h"
#include "reader/content/art.h"
#include "reader/shading/shading.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "writer/art/object_works.h"
#include "writer/art/outline.h"
#include "writer/art/paint_drawing.h"
#include "writer/art/path_works.h"
#include "writer/page/needed_version.h"
#include "writer/page/stream_object.h"
#include "writer/text/drawn_texts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <utility>

namespace corvane {

namespace {

/// A number from 0 to 1, in as many digits as can be seen.
std::string unitText(double number) {
    constexpr double digits = 1e5;
    std::array<char, 16> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(),
                                   std::round(number * digits) / digits, std::chars_format::fixed);
    return {text.data(), end.ptr};
}

std::string referenceTo(std::int32_t number) {
    return std::to_string(number) + " 0 R";
}

/// Of a form that lies on the artboard, with the same resources as the content around it.
struct Drawing {
    Drawing(const Walk& outer, TextDrawing* texts) {
        walk.texts = texts;
        walk.images = outer.images;
        walk.paints = outer.paints != nullptr ? &outer.paints->onArtboard() : nullptr;
        walk.looks = outer.looks;
    }
    std::string take() {
        walk.text.flush();
        return sink.take();
    }

    TextSink sink;
    Walk walk{sink};
};

MaskFacts factsOf(SoftMask mask) {
    MaskFacts facts;
    callHost(slot::getMask, mask, &facts);
    return facts;
}

/// The bounds of the page, beyond which nothing is seen. Without any, all that points can say.
Rect pageBounds() {
    Rect bounds;
    callHost(slot::getPageBounds, &bounds);
    constexpr Fixed far = 16000 * fixedOne;
    const bool isEmpty = bounds.left >= bounds.right || bounds.bottom >= bounds.top;
    return isEmpty ? Rect{-far, far, far, -far} : bounds;
}

/// Hosts show groups that are laid over others in any way as isolated ones.
bool isIsolated(const Appearance& appearance) {
    return appearance.isIsolated || appearance.opacity != 1 ||
           appearance.blend != BlendMode::normal || appearance.mask != SoftMask::null;
}

/// Writes the matrix of a form, and its box, which is as large on the artboard.
void spaceOutput(Filter& output, const RealMatrix& space, const Rect& area) {
    stringOutput(output, "/BBox [ ");
    if (space == RealMatrix()) {
        rectOutput(output, area);
        stringOutput(output, "]\r");
        return;
    }
    const Box box = spannedBox({realFromFixed(area.left), realFromFixed(area.bottom),
                                realFromFixed(area.right), realFromFixed(area.top)},
                               inverse(space).value_or(RealMatrix()));
    for (const double edge : {box.left, box.bottom, box.right, box.top}) {
        realOutput(output, edge);
    }
    stringOutput(output, "]\r/Matrix [ ");
    matrixOutput(output, withoutSignedZeros(space));
    stringOutput(output, "]\r");
}

} // namespace

Appearance appearanceOf(Art art) {
    Appearance appearance;
    callHost(slot::getAppearance, art, &appearance);
    return appearance;
}

LookState stateOf(const Appearance& appearance) {
    const auto opacity = [](double value) {
        return value == 1 ? std::nullopt : std::optional(value);
    };
    LookState state;
    state.fillOpacity = opacity(appearance.opacity * appearance.fillOpacity);
    state.strokeOpacity = opacity(appearance.opacity * appearance.strokeOpacity);
    if (appearance.blend != BlendMode::normal) {
        state.blend = appearance.blend;
    }
    if (appearance.mask != SoftMask::null) {
        state.mask = appearance.mask;
    }
    if (appearance.overprint != Overprint()) {
        state.overprint = appearance.overprint;
    }
    if (appearance.intent != RenderingIntent::relativeColorimetric) {
        state.intent = appearance.intent;
    }
    return state;
}

LookState wholeStateOf(const Appearance& appearance) {
    return {.fillOpacity = appearance.opacity * appearance.fillOpacity,
            .strokeOpacity = appearance.opacity * appearance.strokeOpacity,
            .blend = appearance.blend,
            .mask = appearance.mask};
}

std::string_view DrawnLooks::addState(const Walk& walk, const LookState& state) {
    if (state.mask && *state.mask != SoftMask::null) {
        maskOf(walk, *state.mask);
    }
    const auto [known, isNew] = states_.try_emplace(state);
    if (isNew) {
        known->second = nextIdentity();
    }
    return resources_->add(ResourceCategory::graphicsState, known->second, 0);
}

std::int32_t DrawnLooks::addForm(Form form) {
    if (sharedResources_ == 0) {
        sharedResources_ = nextIdentity();
    }
    form.number = nextIdentity();
    contentBytes_ += static_cast<std::int64_t>(form.content.size());
    charge_.resize(contentBytes_);
    forms_.push_back(std::move(form));
    return forms_.back().number;
}

std::string_view DrawnLooks::addGroup(std::string content, const Appearance& appearance,
                                      const RealMatrix& space) {
    const std::int32_t number = addForm({.content = std::move(content),
                                         .space = space,
                                         .isIsolated = isIsolated(appearance),
                                         .isKnockout = appearance.isKnockout});
    return resources_->add(ResourceCategory::object, number, 0);
}

std::string_view DrawnLooks::addGroup(const Walk& walk, Art art, const Appearance& inside,
                                      const Appearance& appearance) {
    return addGroup(drawn(walk, walk.texts, art, inside), appearance);
}

std::string DrawnLooks::drawn(const Walk& outer, TextDrawing* texts, Art art,
                              const Appearance& inside) {
    if (depth_ == budget::contentNesting) {
        failException(Exception::limit);
    }
    ++depth_;
    const auto drawing = std::make_unique<Drawing>(outer, texts);
    if (inside == Appearance()) {
        plainWorks(drawing->walk, art);
    } else {
        lookedWorks(drawing->walk, art, inside);
    }
    --depth_;
    return drawing->take();
}

const DrawnLooks::DrawnMask& DrawnLooks::maskOf(const Walk& walk, SoftMask mask) {
    const auto known = masks_.find(mask);
    if (known != masks_.end()) {
        return known->second;
    }
    const MaskFacts facts = factsOf(mask);
    DrawnMask made;
    made.group = addForm({.content = drawn(walk, textsOf(walk, facts.content), facts.content, {}),
                          .isIsolated = true,
                          .isMask = true});
    made.transfer = facts.transfer.empty() ? 0 : nextIdentity();
    return masks_.emplace(mask, made).first->second;
}

/// Where the text of the content itself is set otherwise, as in a page that is patched, a mask has
/// texts of its own.
TextDrawing* DrawnLooks::textsOf(const Walk& walk, Art content) {
    if (walk.texts != nullptr) {
        return walk.texts;
    }
    return texts_.emplace_back(std::make_shared<DrawnTexts>(*resources_, content)).get();
}

std::string DrawnLooks::textOf(const LookState& state) const {
    if (state != LookState{.overprint = state.overprint, .intent = state.intent}) {
        needVersion(Feature::transparency);
    }
    std::string text = "<< /Type /ExtGState";
    if (state.fillOpacity) {
        text += " /ca " + unitText(*state.fillOpacity);
    }
    if (state.strokeOpacity) {
        text += " /CA " + unitText(*state.strokeOpacity);
    }
    if (state.blend) {
        text += " /BM /";
        text += blendNames[static_cast<std::size_t>(*state.blend)];
    }
    if (state.overprint) {
        const auto word = [](bool isOn) { return isOn ? "true" : "false"; };
        text += std::string(" /OP ") + word(state.overprint->strokes) + " /op " +
                word(state.overprint->fills) + " /OPM " + (state.overprint->skipsZeros ? "1" : "0");
    }
    if (state.intent) {
        text += " /RI /";
        text += intentNames[static_cast<std::size_t>(*state.intent)];
    }
    if (state.mask == SoftMask::null) {
        text += " /SMask /None";
    } else if (state.mask) {
        const MaskFacts facts = factsOf(*state.mask);
        const DrawnMask& mask = masks_.at(*state.mask);
        text += "\r/SMask << /Type /Mask /S ";
        text += facts.isLuminosity ? "/Luminosity" : "/Alpha";
        text += " /G " + referenceTo(mask.group);
        if (facts.isLuminosity && facts.backdrop != 0) {
            const std::string level = unitText(facts.backdrop);
            text += " /BC [ " + level + ' ' + level + ' ' + level + " ]";
        }
        if (mask.transfer != 0) {
            text += " /TR " + referenceTo(mask.transfer);
        }
        text += " >>";
    }
    return text + " >>";
}

void DrawnLooks::writeForm(DocumentCache& cache, const Form& form) const {
    needVersion(Feature::transparency);
    Filter& output = *cache.output;
    touchXRef(output, form.number, 0);
    objectOutput(output, form.number, 0);
    stringOutput(output, "<<\r/Type /XObject /Subtype /Form ");
    spaceOutput(output, form.space, area_ ? *area_ : pageBounds());
    std::string group = "/Group << /S /Transparency";
    group += form.isMask ? " /CS /DeviceRGB" : "";
    group += form.isIsolated ? " /I true" : "";
    group += form.isKnockout ? " /K true" : "";
    stringOutput(output, group + " >> /Resources " + referenceTo(sharedResources_) + ' ');
    finishStream(cache, form.number, form.content);
}

/// A sampled function of eight bits (PDF Reference, 3.9.1).
void DrawnLooks::writeTransfer(DocumentCache& cache, SoftMask mask, std::int32_t number) const {
    const MaskFacts facts = factsOf(mask);
    std::string samples;
    for (const double value : facts.transfer) {
        samples += static_cast<char>(std::lround(value * 255));
    }
    Filter& output = *cache.output;
    touchXRef(output, number, 0);
    objectOutput(output, number, 0);
    stringOutput(output, "<<\r/FunctionType 0 /Domain [ 0 1 ] /Range [ 0 1 ] /BitsPerSample 8 "
                         "/Size [ " +
                             std::to_string(facts.transfer.size()) + " ] ");
    finishStream(cache, number, samples);
}

void DrawnLooks::write(DocumentCache& cache, const ResourceRegistry& resources) const {
    Filter& output = *cache.output;
    const auto open = [&](std::int32_t number) {
        touchXRef(output, number, 0);
        objectOutput(output, number, 0);
    };
    for (const std::shared_ptr<DrawnTexts>& texts : texts_) {
        texts->fonts().write(cache);
    }
    for (const auto& [state, number] : states_) {
        open(number);
        stringOutput(output, textOf(state) + "\rendobj\r");
    }
    for (const auto& [mask, drawn] : masks_) {
        if (drawn.transfer != 0) {
            writeTransfer(cache, mask, drawn.transfer);
        }
    }
    for (const Form& form : forms_) {
        writeForm(cache, form);
    }
    if (sharedResources_ != 0) {
        open(sharedResources_);
        stringOutput(output, "<<\r");
        resources.write(cache, {sharedResources_, 0});
        stringOutput(output, ">>\rendobj\r");
    }
}

void stateWorks(Walk& walk, const LookState& state) {
    if (walk.looks == nullptr || state.isEmpty()) {
        return;
    }
    const std::string_view name = walk.looks->addState(walk, state);
    walk.text.add("/");
    walk.text.add(name);
    walk.text.add(" gs\n");
}

namespace {

void groupWorks(Walk& walk, std::string_view name) {
    walk.text.add("/");
    walk.text.add(name);
    walk.text.add(" Do\n");
}

/// Whether it says something that a group does not drop: overprint, an intent.
bool outlastsGroups(const Appearance& appearance) {
    return appearance.overprint != Overprint() ||
           appearance.intent != RenderingIntent::relativeColorimetric;
}

/// The rest of its look may make a group of it, which begins with these settings around it.
void settledWorks(Walk& walk, Art art, Appearance rest) {
    const LookState all = stateOf(rest);
    rest.overprint = {};
    rest.intent = RenderingIntent::relativeColorimetric;
    enterWorks(walk);
    stateWorks(walk, {.overprint = all.overprint, .intent = all.intent});
    rest == Appearance() ? plainWorks(walk, art) : lookedWorks(walk, art, rest);
    leaveWorks(walk);
}

/// Strokes a path with tiles as a group: readers do not see through the tiles of a stroke.
void tiledStrokeWorks(Walk& walk, Art path, double opacity) {
    const auto drawing = std::make_unique<Drawing>(walk, walk.texts);
    strokeOnlyWorks(drawing->walk, path);
    const std::string_view name = walk.looks->addGroup(drawing->take(), {.opacity = opacity});
    stateWorks(walk, {.fillOpacity = opacity});
    groupWorks(walk, name);
}

} // namespace

void lookedWorks(Walk& walk, Art art, const Appearance& appearance) {
    if (outlastsGroups(appearance)) {
        return settledWorks(walk, art, appearance);
    }
    const ArtKind kind = artKind(art);
    const bool isPath = kind == ArtKind::path || kind == ArtKind::compound;
    const PathStyle style = isPath ? leadingStyle(art) : PathStyle();
    const bool paintsTwice = style.fillPaint != 0 && style.strokePaint != 0;
    const bool isDrawn = isPath && isDrawnByHost(style);
    const double ofStroke = appearance.opacity * appearance.strokeOpacity;
    const bool isTiled = style.strokePaint != 0 && style.stroke.kind == ColourKind::pattern &&
                         walk.paints != nullptr && ofStroke != 1;
    const bool isOneThing = appearance.opacity != 1 || appearance.blend != BlendMode::normal ||
                            appearance.mask != SoftMask::null;
    enterWorks(walk);
    if (isPath && !isDrawn && !(paintsTwice && isOneThing)) {
        stateWorks(walk, stateOf(appearance));
        const bool isApart = paintsTwice && appearance.strokeOpacity != 1;
        if (isApart) {
            // Readers do not agree whether the fill is seen through the stroke. Apart, it is.
            fillOnlyWorks(walk, art);
        }
        if (isTiled) {
            tiledStrokeWorks(walk, art, ofStroke);
        } else if (isApart) {
            strokeOnlyWorks(walk, art);
        } else {
            plainWorks(walk, art);
        }
    } else {
        // What several operators paint is laid over what is behind it as one thing.
        Appearance ofGroup = appearance;
        ofGroup.fillOpacity = ofGroup.strokeOpacity = 1;
        Appearance inside{.fillOpacity = appearance.fillOpacity,
                          .strokeOpacity = appearance.strokeOpacity};
        if (isDrawn || !isPath) {
            ofGroup.opacity *= inside.fillOpacity;
            inside = {};
        }
        const std::string_view name = walk.looks->addGroup(walk, art, inside, ofGroup);
        stateWorks(walk, stateOf(ofGroup));
        groupWorks(walk, name);
    }
    leaveWorks(walk);
}

} // namespace corvane
