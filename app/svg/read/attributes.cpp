#include "app/svg/read/attributes.h"

#include <algorithm>

namespace corvane {

void Attributes::load(pugi::xml_node element) {
    present_.reset();
    entries_.clear();
    for (pugi::xml_attribute attribute = element.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
        const Attribute name = attributeByName(attribute.name());
        if (name != Attribute::unknown && !has(name)) {
            present_.set(static_cast<std::size_t>(name));
            entries_.push_back({name, attribute.value()});
        }
    }
}

std::string_view Attributes::operator[](Attribute name) const {
    if (!has(name)) {
        return {};
    }
    const auto found = std::ranges::find(entries_, name, &Entry::name);
    return found == entries_.end() ? std::string_view{} : found->value;
}

} // namespace corvane
