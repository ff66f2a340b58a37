// What an element inherits that is only referred to (a clip, a pattern): the style of the place
// where it stands, not of the element that uses it.
#pragma once

#include "app/svg/read/style/computed_style.h"

#include <cstddef>
#include <pugixml.hpp>
#include <unordered_map>

namespace corvane {

struct ReadingContext;

class InheritedStyles {
public:
    /// What the children of `parent` inherit. Throws `SvgError` past the budget.
    ComputedStyle within(pugi::xml_node parent, ReadingContext& context);

private:
    /// By node; those that stand together share it.
    std::unordered_map<std::size_t, ComputedStyle> known_;
};

} // namespace corvane
