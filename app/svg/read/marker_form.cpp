#include "app/svg/read/marker_form.h"

#include "app/svg/read/basic_shapes.h"
#include "app/svg/read/style/attributes.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/read/style/property_values.h"
#include "app/svg/read/values/transform.h"

namespace corvane {

namespace {

constexpr double usualSide = 3;

/// A coordinate of the point that is laid onto the vertex.
double reference(const Attributes& attributes, Attribute name, Axis axis,
                 const LengthContext& lengths) {
    const std::string_view text = trimmed(attributes[name]);
    const double whole = axis == Axis::x ? lengths.viewport.width : lengths.viewport.height;
    const auto word = axis == Axis::x ? keywordIn(text, {"left", "center", "right"})
                                      : keywordIn(text, {"top", "center", "bottom"});
    return word ? whole * static_cast<double>(*word) / 2
                : parseLength(text, axis, lengths).value_or(0);
}

void readTurn(MarkerForm& form, std::string_view text) {
    if (text == "auto" || text == "auto-start-reverse") {
        form.turn =
            text == "auto" ? MarkerForm::Turn::along : MarkerForm::Turn::alongButBackAtTheStart;
    } else {
        form.angle = parseAngle(text, false).value_or(0);
    }
}

} // namespace

std::optional<MarkerForm> readMarkerForm(std::string_view id, ReadingContext& context) {
    MarkerForm form;
    form.element = context.index.find(id);
    if (context.index.elementOf(form.element) != Element::marker) {
        context.tally.add("marker");
        return std::nullopt;
    }
    const Attributes attributes(form.element);
    Tally counted; // where its content is read
    const ComputedStyle outer = context.inherited.within(form.element.parent(), context);
    const ComputedStyle style = computeStyle(outer, cascade(form.element, attributes, context),
                                             attributes, outer.viewport, counted);
    LengthContext lengths{outer.viewport, style.fontSize};
    const ViewBox area{0, 0,
                       lengthOf(attributes, Attribute::markerWidth, Axis::x, lengths, usualSide),
                       lengthOf(attributes, Attribute::markerHeight, Axis::y, lengths, usualSide)};
    const auto box = parseViewBox(attributes[Attribute::viewBox]);
    if (!(area.width > 0 && area.height > 0) || (box && !(box->width > 0 && box->height > 0))) {
        return std::nullopt;
    }
    const RealMatrix fitted =
        box ? viewBoxMatrix(*box, area, attributes[Attribute::preserveAspectRatio]) : RealMatrix();
    form.viewport = box ? Viewport{box->width, box->height} : Viewport{area.width, area.height};
    lengths.viewport = form.viewport;
    const RealPoint point =
        transform(fitted, {reference(attributes, Attribute::refX, Axis::x, lengths),
                           reference(attributes, Attribute::refY, Axis::y, lengths)});
    form.toPoint = multiply(fitted, {1, 0, 0, 1, -point.x, -point.y});
    form.window = {-point.x, -point.y, area.width, area.height};
    form.overflows = style.overflows;
    form.growsWithLine = attributes[Attribute::markerUnits] != "userSpaceOnUse";
    readTurn(form, trimmed(attributes[Attribute::orient]));
    return form;
}

} // namespace corvane
