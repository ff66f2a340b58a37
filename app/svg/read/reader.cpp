#include "app/svg/reader.h"

#include "app/svg/read/root_reader.h"
#include "app/svg/read/tree/tree_reader.h"
#include "app/svg/read/values/limited.h"

#include <algorithm>
#include <cstddef>
#include <pugixml.hpp>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

template <class Error = SvgError>
[[noreturn]] void failAt(std::size_t line, std::string_view what) {
    throw Error("line " + std::to_string(line) + ": " + std::string(what));
}

/// A file's elements. Values keep their line ends, so that lines can be counted.
void parse(std::string& text, pugi::xml_document& xml, const LineIndex& lines) {
    // Blanks between elements mean something in text alone, and take much memory.
    const bool mayHoldText =
        text.find("<text") != std::string::npos || text.find(":text") != std::string::npos;
    const unsigned options = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_doctype |
                             (mayHoldText ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single);
    const pugi::xml_parse_result result =
        xml.load_buffer_inplace(text.data(), text.size(), options);
    if (result.status == pugi::status_out_of_memory) {
        throw std::bad_alloc();
    }
    if (result.status == pugi::status_no_document_element) {
        throw SvgError("the file is no SVG: it holds no element");
    }
    if (!result) {
        failAt(lines.lineOf(result.offset),
               std::string("the file is no XML: ") + result.description());
    }
}

/// How far a file was read. What is used again stands further to the front, and is no way back.
class Furthest {
public:
    void follow(const TreeReader& tree) { tree_ = &tree; }
    std::size_t offset() {
        if (tree_ != nullptr) {
            offset_ = std::max<std::ptrdiff_t>(offset_, tree_->current().offset_debug());
        }
        return static_cast<std::size_t>(offset_);
    }

private:
    const TreeReader* tree_ = nullptr;
    std::ptrdiff_t offset_ = 0;
};

/// Entities that stand for a file or address of their own are never looked up.
void countExternalEntities(const pugi::xml_document& xml, Tally& tally) {
    for (const pugi::xml_node node : xml.children()) {
        if (node.type() != pugi::node_doctype) {
            continue;
        }
        std::string_view declarations = node.value();
        constexpr std::string_view start = "<!ENTITY";
        for (std::size_t at = declarations.find(start); at != std::string_view::npos;
             at = declarations.find(start)) {
            declarations.remove_prefix(at + start.size());
            const std::string_view entity =
                declarations.substr(0, declarations.find_first_of("<>"));
            if (entity.find("SYSTEM") != std::string_view::npos ||
                entity.find("PUBLIC") != std::string_view::npos) {
                tally.add("external reference");
            }
        }
    }
}

} // namespace

SvgReading readSvg(std::string text, Document& document, const ReadingPause& pause,
                   const ImageFolders* files, const OpenedPage* opened) {
    return readSvg(std::move(text), document, ReadingBudget{}, pause, files, opened);
}

SvgReading readSvg(std::string text, Document& document, const ReadingBudget& budget,
                   const ReadingPause& pause, const ImageFolders* files, const OpenedPage* opened) {
    if (text.size() > budget.textSize) {
        throw SvgError("the file is too large");
    }
    const LineIndex lines(text);
    const bool hasSheetElsewhere =
        std::string_view(text).substr(0, text.find("<svg")).find("<?xml-stylesheet") !=
        std::string_view::npos;
    pugi::xml_document xml;
    parse(text, xml, lines);
    const pugi::xml_node root = xml.document_element();
    FileIndex index(root);
    if (index.elementOf(root) != Element::svg) {
        failAt(lines.lineOf(root.offset_debug()),
               "the file is no SVG: its outermost element is no svg");
    }
    Tally tally;
    StyleSheet sheet(budget, tally);
    countExternalEntities(xml, tally);
    if (hasSheetElsewhere) {
        tally.add("external reference");
    }
    SvgReading reading;
    Furthest furthest;
    const std::function<void()> pauseHere =
        pause ? [&] { pause(furthest.offset()); } : std::function<void()>();
    ImageLoader loader(document, files, pauseHere);
    ReadingContext context{document, index, sheet, tally, budget, pauseHere, loader};
    TreeReader tree(context);
    furthest.follow(tree);
    try {
        index.build(sheet);
        const RootReading found = readRoot(Attributes(root), document.page(), opened);
        reading.provenance = found.provenance;
        reading.ours = context.ours = found.ours;
        context.pixel = found.pixel;
        context.holdsAppearance = document.page().profile() == Profile::extended;
        context.sourceBase = sourceBase(found.provenance);
        tree.read(root, found.matrix, found.viewport);
    } catch (const SvgImageError& error) {
        failAt<SvgImageError>(lines.lineOf(tree.current().offset_debug()), error.what());
    } catch (const SvgError& error) {
        failAt(lines.lineOf(tree.current().offset_debug()), error.what());
    } catch (const ArtworkError& error) {
        failAt(lines.lineOf(tree.current().offset_debug()), error.what());
    }
    reading.ignored = tally.counts();
    reading.images = std::move(context.images);
    for (auto& [key, layer] : context.layerGroups) {
        if (layer.changed != 0 && layer.changed != layer.groups) {
            reading.splitLayers.push_back(std::move(layer));
        }
    }
    return reading;
}

} // namespace corvane
