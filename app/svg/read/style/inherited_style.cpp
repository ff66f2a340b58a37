#include "app/svg/read/style/inherited_style.h"

#include "app/svg/read/context.h"
#include "app/svg/read/style/cascade.h"
#include "app/svg/reader.h"

#include <vector>

namespace corvane {

namespace {

/// Styles kept, more than elements stand within one another.
constexpr std::size_t mostKnown = 50'000;

} // namespace

ComputedStyle InheritedStyles::within(pugi::xml_node parent, ReadingContext& context) {
    if (known_.size() > mostKnown) {
        known_.clear();
    }
    std::vector<pugi::xml_node> unknown;
    ComputedStyle style;
    for (pugi::xml_node node = parent; node.type() == pugi::node_element; node = node.parent()) {
        const auto found = known_.find(node.hash_value());
        if (found != known_.end()) {
            style = found->second;
            break;
        }
        unknown.push_back(node);
        if (unknown.size() > context.budget.nesting) {
            throw SvgError("elements are nested too deeply");
        }
    }
    Tally counted; // where the elements themselves are read
    for (; !unknown.empty(); unknown.pop_back()) {
        const Attributes attributes(unknown.back());
        style = computeStyle(style, cascade(unknown.back(), attributes, context), attributes,
                             style.viewport, counted);
        style.transparent = false; // opacity is of what it is said of
        known_.emplace(unknown.back().hash_value(), style);
    }
    return style;
}

} // namespace corvane
