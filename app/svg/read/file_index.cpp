#include "app/svg/read/file_index.h"

#include "app/svg/read/style/attributes.h"
#include "app/svg/read/values/number.h"

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

/// Lines behind these are not counted: the index is to stay small beside the text.
constexpr std::size_t mostLines = std::size_t{1} << 24;

constexpr std::string_view svgNamespace = "http://www.w3.org/2000/svg";

/// Names for that which a file may have.
constexpr std::size_t mostPrefixes = 4;

/// All nodes below `top`, each before those within it.
pugi::xml_node following(pugi::xml_node node, pugi::xml_node top) {
    if (node.first_child()) {
        return node.first_child();
    }
    while (node != top && !node.next_sibling()) {
        node = node.parent();
    }
    return node == top ? pugi::xml_node() : node.next_sibling();
}

} // namespace

LineIndex::LineIndex(std::string_view text) {
    for (std::size_t at = 0; at < text.size() && ends_.size() < mostLines; ++at) {
        const void* const end = std::memchr(text.data() + at, '\n', text.size() - at);
        if (end == nullptr) {
            break;
        }
        at = static_cast<std::size_t>(static_cast<const char*>(end) - text.data());
        ends_.push_back(static_cast<std::uint32_t>(at));
    }
}

std::size_t LineIndex::lineOf(std::ptrdiff_t offset) const {
    const auto place = static_cast<std::uint32_t>(std::max<std::ptrdiff_t>(offset, 0));
    return static_cast<std::size_t>(std::ranges::lower_bound(ends_, place) - ends_.begin()) + 1;
}

FileIndex::FileIndex(pugi::xml_node root) : root_(root) {
    const std::string_view name = root.name();
    const std::size_t colon = name.find(':');
    if (colon != std::string_view::npos) {
        prefixes_.emplace_back(name.substr(0, colon + 1));
    }
    addPrefixes(root);
}

/// A prefix counts for the whole file: none is used for two namespaces in practice.
void FileIndex::addPrefixes(pugi::xml_node node) {
    constexpr std::string_view declaration = "xmlns:";
    for (const pugi::xml_attribute attribute : node.attributes()) {
        const std::string_view prefix = attribute.name();
        if (prefixes_.size() < mostPrefixes && prefix.starts_with(declaration) &&
            attribute.value() == svgNamespace) {
            prefixes_.push_back(std::string(prefix.substr(declaration.size())) + ':');
        }
    }
}

bool FileIndex::isShape(pugi::xml_node node) const {
    const Element element = elementOf(node);
    return element >= Element::path && element <= Element::polygon;
}

void FileIndex::addId(pugi::xml_node node) {
    if (const char* const id = node.attribute("id").value(); *id != '\0') {
        byId_.try_emplace(id, node);
    }
}

void FileIndex::build(StyleSheet& sheet) {
    for (pugi::xml_node node = root_; node; node = following(node, root_)) {
        if (node.type() != pugi::node_element || isShape(node)) {
            continue;
        }
        addId(node);
        addPrefixes(node);
        if (elementOf(node) == Element::style) {
            const Attributes attributes(node);
            const std::string_view type = attributes[Attribute::type];
            for (const pugi::xml_node text : node.children()) {
                if (type.empty() || isWord(type, "text/css")) {
                    sheet.add(text.value(), attributes[Attribute::media]);
                }
            }
        }
    }
}

pugi::xml_node FileIndex::find(std::string_view id) {
    auto found = byId_.find(id);
    if (found == byId_.end() && !shapesIndexed_) {
        shapesIndexed_ = true;
        for (pugi::xml_node node = root_; node; node = following(node, root_)) {
            if (node.type() == pugi::node_element && isShape(node)) {
                addId(node);
            }
        }
        found = byId_.find(id);
    }
    return found == byId_.end() ? pugi::xml_node() : found->second;
}

std::string_view FileIndex::localName(pugi::xml_node node) const {
    std::string_view name = node.name();
    for (const std::string& prefix : prefixes_) {
        if (name.starts_with(prefix)) {
            name.remove_prefix(prefix.size());
            break;
        }
    }
    return name;
}

Element FileIndex::elementOf(pugi::xml_node node, bool& foreign) const {
    const std::string_view name = localName(node);
    foreign = name.find(':') != std::string_view::npos;
    return elementByName(name);
}

} // namespace corvane
