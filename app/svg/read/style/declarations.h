// Declarations of CSS: what attributes, `style` and style sheets say of one element's properties.
#pragma once

#include "app/svg/read/style/attribute_names.h"
#include "app/svg/read/values/number.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <string_view>

namespace corvane {

/// The value that won for each property.
class Declared {
public:
    bool has(Attribute property) const { return present_[place(property)]; }
    /// Empty where nothing was said.
    std::string_view operator[](Attribute property) const {
        return has(property) ? values_[place(property)] : std::string_view{};
    }
    bool any() const { return present_.any(); }
    void set(Attribute property, std::string_view value) {
        present_.set(place(property));
        values_[place(property)] = value;
    }
    /// The same, but a wrong value does not take the place of another one. What says several
    /// properties at once takes the place of each.
    void offer(Attribute property, std::string_view value);

private:
    static std::size_t place(Attribute property) { return static_cast<std::size_t>(property); }

    std::bitset<propertyCount> present_;
    std::array<std::string_view, propertyCount> values_;
};

/// What was said of a property, without blanks around it; empty where it is inherited.
std::string_view valueOf(const Declared&, Attribute property);

inline bool isProperty(Attribute name) {
    return static_cast<std::size_t>(name) < propertyCount;
}

std::string_view trimmed(std::string_view text);

/// Without blanks and comments before and behind.
std::string_view withoutCommentsAround(std::string_view text);

/// Text up to `end`, which is skipped, where that stands outside quotes, parentheses and comments.
std::string_view takeOutsideBrackets(TextCursor& cursor, char end);

/// Calls `use(std::string_view name, std::string_view value, bool important)` for each declaration
/// of a block's inside.
template <class Use>
void forEachDeclaration(std::string_view block, Use use) {
    TextCursor cursor(block);
    while (!cursor.atEnd()) {
        TextCursor declaration(withoutCommentsAround(takeOutsideBrackets(cursor, ';')));
        const std::string_view name = withoutCommentsAround(declaration.takeUntil(':'));
        std::string_view value = withoutCommentsAround(declaration.rest());
        const std::size_t mark = value.rfind('!');
        const bool important =
            mark != std::string_view::npos && trimmed(value.substr(mark + 1)) == "important";
        if (important) {
            value = trimmed(value.substr(0, mark));
        }
        if (!name.empty() && !value.empty()) {
            use(name, value, important);
        }
    }
}

} // namespace corvane
