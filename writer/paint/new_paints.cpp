#include "writer/paint/new_paints.h"

#include "filters/text_sink.h"
#include "objects/identity.h"
#include "objects/referenced.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/content/appearance.h"
#include "reader/font/font_entries.h"
#include "reader/page/page_matrix.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "writer/art/object_works.h"
#include "writer/art/walk.h"
#include "writer/page/needed_version.h"
#include "writer/page/stream_object.h"
#include "writer/paint/object_text.h"
#include "writer/paint/plain_spaces.h"

#include <algorithm>
#include <initializer_list>
#include <span>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

std::string numbersText(std::initializer_list<double> numbers) {
    std::string text = "[ ";
    for (const double number : numbers) {
        text += numberText(number);
    }
    return text + "]";
}

std::string matrixText(const RealMatrix& m) {
    return numbersText({m.a, m.b, m.c, m.d, m.tx, m.ty});
}

std::string boxText(const Box& box) {
    return numbersText({box.left, box.bottom, box.right, box.top});
}

GradientFacts gradientFacts(const Colour& colour) {
    GradientFacts facts;
    callHost(slot::getGradient, colour.source, &facts);
    if (facts.stops.empty()) {
        failException(Exception::host);
    }
    return facts;
}

/// A tile being drawn: so many are within one another.
class Nesting {
public:
    explicit Nesting(std::int32_t& depth) : depth_(depth) {
        if (depth_ == budget::patternNesting) {
            failException(Exception::limit);
        }
        ++depth_;
    }
    ~Nesting() { --depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    std::int32_t& depth_;
};

struct Drawing {
    TextSink sink;
    Walk walk{sink};
};

} // namespace

Box visibleArtboard() {
    Rect bounds;
    callHost(slot::getPageBounds, &bounds);
    return {realFromFixed(bounds.left), realFromFixed(bounds.bottom), realFromFixed(bounds.right),
            realFromFixed(bounds.top)};
}

NewPaints::Key NewPaints::keyOf(const Colour& colour, bool isMask, const PaintedContent& content) {
    const auto& [m, area] = content;
    return {colour.source,
            isMask,
            {m.a, m.b, m.c, m.d, m.tx, m.ty, area.left, area.bottom, area.right, area.top}};
}

void NewPaints::add(PaintObject object) {
    bytes_ +=
        static_cast<std::int64_t>(object.entries.size() + (object.data ? object.data->size() : 0));
    charge_.resize(bytes_);
    objects_.push_back(std::move(object));
}

std::int32_t NewPaints::hold(std::string function) {
    const std::int32_t number = nextIdentity();
    add({.number = number, .entries = std::move(function), .isDictionary = false});
    return number;
}

std::int32_t NewPaints::holdStream(std::string entries, std::string data) {
    const std::int32_t number = nextIdentity();
    add({.number = number, .entries = std::move(entries), .data = std::move(data)});
    return number;
}

std::int32_t NewPaints::pattern(const Colour& colour, const PaintedContent& content) {
    const Key key = keyOf(colour, false, content);
    if (const auto known = numbers_.find(key); known != numbers_.end()) {
        return known->second;
    }
    std::int32_t number = 0;
    if (colour.kind == ColourKind::gradient) {
        number = shadingPattern(gradientFacts(colour), content);
    } else {
        PatternFacts facts;
        callHost(slot::getPattern, colour.source, &facts);
        number = tilingPattern(facts, content);
    }
    numbers_.emplace(key, number);
    return number;
}

std::int32_t NewPaints::mask(const Colour& colour, const PaintedContent& content) {
    if (colour.kind != ColourKind::gradient) {
        return 0;
    }
    const Key key = keyOf(colour, true, content);
    if (const auto known = numbers_.find(key); known != numbers_.end()) {
        return known->second;
    }
    const GradientFacts facts = gradientFacts(colour);
    const std::int32_t number = hasOpacity(facts) ? opacityMask(facts, content) : 0;
    numbers_.emplace(key, number);
    return number;
}

std::int32_t NewPaints::shadingPattern(const GradientFacts& gradient,
                                       const PaintedContent& content) {
    needVersion(Feature::shading);
    const std::string shading = shadingText(gradient, StopPart::colour, content.area, *this);
    const RealMatrix matrix = multiply(shadingSpace(gradient), content.placement);
    const std::int32_t number = nextIdentity();
    add({.number = number,
         .entries = "/Type /Pattern /PatternType 2 /Matrix " + matrixText(matrix) +
                    "\r/Shading << " + shading + ">> "});
    return number;
}

/// A form that paints the opacities as light, and the state whose mask it is (PDF
/// Reference, 7.5.3).
std::int32_t NewPaints::opacityMask(const GradientFacts& gradient, const PaintedContent& content) {
    needVersion(Feature::transparency);
    const std::string shading = shadingText(gradient, StopPart::opacity, content.area, *this);
    std::string data;
    {
        const auto drawing = std::make_unique<Drawing>();
        drawing->walk.text.addMatrix(shadingSpace(gradient));
        drawing->walk.text.add("cm\n/Sh1 sh\n");
        drawing->walk.text.flush();
        data = drawing->sink.take();
    }
    const std::int32_t form = nextIdentity();
    add({.number = form,
         .entries = "/Type /XObject /Subtype /Form /BBox " + boxText(content.area) +
                    "\r/Group << /S /Transparency /CS /DeviceGray >> /Resources << /Shading << "
                    "/Sh1 << " +
                    shading + ">> >> >>\r",
         .data = std::move(data)});
    const std::int32_t state = nextIdentity();
    add({.number = state,
         .entries = "/Type /ExtGState /SMask << /Type /Mask /S /Luminosity /G " +
                    std::to_string(form) + " 0 R >> "});
    return state;
}

std::int32_t NewPaints::tilingPattern(const PatternFacts& pattern, const PaintedContent& content) {
    const Nesting nesting(depth_);
    const Box cell{pattern.left, pattern.bottom, pattern.right, pattern.top};
    auto drawn = std::make_unique<DrawnContent>(*cache_, pattern.tile, hostRect(cell));
    ContentPaints paints(*this, drawn->resources, {.placement = {}, .area = cell});
    const auto drawing = std::make_unique<Drawing>();
    drawing->walk.texts = &drawn->texts;
    drawing->walk.paints = &paints;
    drawing->walk.images = &drawn->images;
    drawing->walk.looks = hostHoldsAppearance() ? &drawn->looks : nullptr;
    objectWorks(drawing->walk, pattern.tile);
    drawing->walk.text.flush();
    const std::int32_t number = nextIdentity();
    add({.number = number,
         .entries = "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1\r/BBox " +
                    boxText(cell) + " /XStep " + numberText(pattern.stepX) + "/YStep " +
                    numberText(pattern.stepY) + "\r/Matrix " +
                    matrixText(multiply(pattern.matrix, content.placement)) + "\r",
         .data = drawing->sink.take(),
         .content = std::move(drawn)});
    return number;
}

void NewPaints::knowInks(const Object& resources) {
    inkSpaces_.know(resources);
    const ObjectOwner spaces = entryOf(*cache_, resources, "ColorSpace");
    if (typeObject(spaces.get()) != ObjectType::dictionary) {
        return;
    }
    const std::span<Object> entries = elementsObject(spaces.get());
    for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
        if (typeObject(entries[i + 1]) != ObjectType::reference) {
            continue;
        }
        const ObjectOwner space = resolved(*cache_, entries[i + 1]);
        if (typeObject(space.get()) != ObjectType::array || sizeObject(space.get()) < 4) {
            continue;
        }
        const std::span<Object> parts = elementsObject(space.get());
        if (nameOf(parts[0]) == "Separation") {
            inksOfPage_.emplace(nameOf(resolved(*cache_, parts[1]).get()),
                                referenced(entries[i + 1]));
        }
    }
}

/// The alternate of an ink, and the function that leads to it, which is left open.
std::string NewPaints::inkAlternate(const CustomColour& ink) {
    const std::string function = " << /FunctionType 2 /Domain [ 0 1 ] /N 1 ";
    const auto& inks = ink.process;
    if (plainSpace(ColourSpace::Kind::cmyk) == 0) {
        return " /DeviceCMYK" + function + "/C0 [ 0 0 0 0 ] /C1 " +
               numbersText({realFromFixed(std::clamp(inks[0], 0, fixedOne)),
                            realFromFixed(std::clamp(inks[1], 0, fixedOne)),
                            realFromFixed(std::clamp(inks[2], 0, fixedOne)),
                            realFromFixed(std::clamp(inks[3], 0, fixedOne))});
    }
    // A space of inks may not be the alternate of another.
    const auto light = [&](std::size_t i) {
        return 1 - std::min(1.0, std::max(0.0, realFromFixed(inks[i])) +
                                     std::max(0.0, realFromFixed(inks[3])));
    };
    return " " + spaceText(ColourSpace::Kind::rgb) + function + "/C0 [ 1 1 1 ] /C1 " +
           numbersText({light(0), light(1), light(2)});
}

std::int32_t NewPaints::plainSpace(ColourSpace::Kind device) {
    return corvane::plainSpace(*cache_, device);
}

std::string NewPaints::spaceText(ColourSpace::Kind device) {
    return plainSpaceText(*cache_, device);
}

/// All of the ink looks as the process colour that stands for it (PDF Reference, 4.5.5).
ObjectIdentifier NewPaints::ink(PaintSource custom) {
    if (const auto known = inks_.find(custom); known != inks_.end()) {
        return known->second;
    }
    CustomColour colour;
    callHost(slot::getColorInfo, custom, &colour);
    std::string name;
    for (std::size_t i = 1; i <= std::min<std::size_t>(colour.name[0], 63); ++i) {
        name += static_cast<char>(colour.name[i]);
    }
    ObjectIdentifier space;
    if (const auto same = inksOfPage_.find(name); same != inksOfPage_.end()) {
        space = same->second;
    } else {
        needVersion(Feature::separation);
        space = {hold("[ /Separation " + nameText(name) + inkAlternate(colour) + " >> ]"), 0};
    }
    inks_.emplace(custom, space);
    return space;
}

void NewPaints::write(DocumentCache& cache) const {
    Filter& output = *cache.output;
    for (const PaintObject& object : objects_) {
        if (object.content) {
            object.content->writeObjects(cache);
        }
        touchXRef(output, object.number, 0);
        objectOutput(output, object.number, 0);
        if (!object.isDictionary) {
            stringOutput(output, object.entries);
            stringOutput(output, "\rendobj\r");
            continue;
        }
        stringOutput(output, "<<\r");
        stringOutput(output, object.entries);
        if (object.content) {
            stringOutput(output, "/Resources <<\r");
            object.content->resources.write(cache, {object.number, 0});
            stringOutput(output, ">>\r");
        }
        if (object.data) {
            finishStream(cache, object.number, *object.data);
        } else {
            stringOutput(output, ">>\rendobj\r");
        }
    }
}

void ContentPaints::set(Walk& walk, const Colour& colour, bool isFill) {
    if (colour.kind == ColourKind::custom) {
        const ObjectIdentifier ink = paints_.ink(colour.source);
        walk.text.add("/");
        walk.text.add(resources_.add(ResourceCategory::colourSpace, ink.number, ink.generation));
        walk.text.add(isFill ? " cs " : " CS ");
        walk.text.add(fixedOne - std::clamp(colour.component[0], 0, fixedOne));
        walk.text.add(isFill ? "scn\n" : "SCN\n");
        return;
    }
    if (colour.kind == ColourKind::inks) {
        return setInks(walk, colour.source, isFill);
    }
    const std::int32_t number = paints_.pattern(colour, content_);
    walk.text.add(isFill ? "/Pattern cs /" : "/Pattern CS /");
    walk.text.add(resources_.add(ResourceCategory::pattern, number, 0));
    walk.text.add(isFill ? " scn\n" : " SCN\n");
}

void ContentPaints::setInks(Walk& walk, PaintSource mixture, bool isFill) {
    const ObjectIdentifier space = paints_.inkSpace(mixture);
    InkMixtureFacts facts;
    callHost(slot::getInkMixture, mixture, &facts);
    walk.text.add("/");
    walk.text.add(resources_.add(ResourceCategory::colourSpace, space.number, space.generation));
    walk.text.add(isFill ? " cs " : " CS ");
    for (const Fixed tint : facts.tints) {
        walk.text.add(tint);
    }
    walk.text.add(isFill ? "scn\n" : "SCN\n");
}

std::string_view ContentPaints::spaceOf(ColourSpace::Kind device) {
    const std::int32_t number = paints_.plainSpace(device);
    return number == 0 ? std::string_view()
                       : resources_.add(ResourceCategory::colourSpace, number, 0);
}

PaintDrawing& ContentPaints::onArtboard() {
    if (!onArtboard_) {
        onArtboard_ = std::make_unique<ContentPaints>(
            paints_, resources_, PaintedContent{.placement = {}, .area = content_.area});
    }
    return *onArtboard_;
}

std::string_view ContentPaints::maskOf(const Colour& colour) {
    const std::int32_t number = paints_.mask(colour, content_);
    return number == 0 ? std::string_view()
                       : resources_.add(ResourceCategory::graphicsState, number, 0);
}

} // namespace corvane
