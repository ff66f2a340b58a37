// The attributes of one element, found by number.
#pragma once

#include "app/svg/read/style/attribute_names.h"

#include <bitset>
#include <cstdint>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

namespace corvane {

class Attributes {
public:
    Attributes() = default;
    explicit Attributes(pugi::xml_node element) { load(element); }

    /// Replaces the attributes by those of another element. Values live as long as the file's text.
    void load(pugi::xml_node element);

    bool has(Attribute name) const { return present_[static_cast<std::size_t>(name)]; }
    /// Empty where there is none.
    std::string_view operator[](Attribute name) const;
    /// The work of reading them, in elements of usual size.
    std::int64_t cost() const { return cost_; }
    bool isTrue(Attribute name) const { return (*this)[name] == "true"; }

    struct Entry {
        Attribute name;
        const char* value;
    };
    const std::vector<Entry>& entries() const { return entries_; }

private:
    std::bitset<attributeCount> present_;
    std::vector<Entry> entries_;
    std::int64_t cost_ = 0;
};

} // namespace corvane
