#include "app/svg/read/style/attributes.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace corvane {

namespace {

/// Of one element: more than most have. Path data may be any length.
constexpr std::size_t bytesOfAnElement = 256;

} // namespace

void Attributes::load(pugi::xml_node element) {
    present_.reset();
    entries_.clear();
    std::size_t bytes = 0;
    for (pugi::xml_attribute attribute = element.first_attribute(); attribute;
         attribute = attribute.next_attribute()) {
        const Attribute name = attributeByName(attribute.name());
        bytes += std::strlen(attribute.value()) + 1;
        if (name != Attribute::unknown && !has(name)) {
            present_.set(static_cast<std::size_t>(name));
            entries_.push_back({name, attribute.value()});
        } else if (name == Attribute::href && attribute.name() == std::string_view("href")) {
            std::ranges::find(entries_, name, &Entry::name)->value =
                attribute.value(); // SVG 2, 16.1
        }
    }
    cost_ = static_cast<std::int64_t>(bytes / bytesOfAnElement);
}

std::string_view Attributes::operator[](Attribute name) const {
    if (!has(name)) {
        return {};
    }
    const auto found = std::ranges::find(entries_, name, &Entry::name);
    return found == entries_.end() ? std::string_view{} : found->value;
}

} // namespace corvane
