// The elements of a file by their ids, its style sheets, and the lines that they stand in.
#pragma once

#include "app/svg/read/element_names.h"
#include "app/svg/read/style/style_sheet.h"

#include <cstdint>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// Lines of a text, taken before parsing changes it.
class LineIndex {
public:
    explicit LineIndex(std::string_view text);
    /// From 1, of the byte at `offset`.
    std::size_t lineOf(std::ptrdiff_t offset) const;

private:
    std::vector<std::uint32_t> ends_;
};

/// What one pass over a parsed file finds.
class FileIndex {
public:
    /// `root` is the element `svg`, perhaps with a namespace prefix.
    explicit FileIndex(pugi::xml_node root);

    /// Walks the file, once: ids, and the text of style sheets into `sheet`.
    void build(StyleSheet& sheet);

    /// The element of an id, or null. Most elements are shapes, which are seldom named: they are
    /// indexed when an id is asked for that no other element has.
    pugi::xml_node find(std::string_view id);

    /// What an element is: its name without a prefix that the file declares as SVG's. `foreign`:
    /// the name is of another namespace.
    Element elementOf(pugi::xml_node node, bool& foreign) const;
    Element elementOf(pugi::xml_node node) const {
        bool foreign = false;
        return elementOf(node, foreign);
    }
    /// The name that style sheets know an element by.
    std::string_view localName(pugi::xml_node node) const;

private:
    void addId(pugi::xml_node node);
    void addPrefixes(pugi::xml_node node);
    bool isShape(pugi::xml_node node) const;

    pugi::xml_node root_;
    bool shapesIndexed_ = false;
    std::vector<std::string> prefixes_; ///< of SVG, with their colons
    std::unordered_map<std::string_view, pugi::xml_node> byId_;
};

} // namespace corvane
