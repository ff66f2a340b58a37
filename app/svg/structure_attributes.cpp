#include "app/svg/structure_attributes.h"

#include "app/svg/markup.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

namespace corvane {

namespace {

std::string textOf(const FormFacts& form) {
    return std::to_string(form.object) + ' ' + std::to_string(form.content);
}

/// Takes a number of digits alone, and the blanks before it.
bool takeNumber(std::string_view& text, std::int32_t& number) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return error == std::errc() && number >= 0 && (text.empty() || text.front() == ' ');
}

/// Editors do not let a person select what is in it.
void writeInsensitive(TextOutput& out) {
    writePlainAttribute(out, "xmlns:sodipodi",
                        "http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd");
    writePlainAttribute(out, "sodipodi:insensitive", "true");
}

bool takeForm(std::string_view& text, FormFacts& form) {
    return takeNumber(text, form.object) && takeNumber(text, form.content) && form.content > 0;
}

} // namespace

void writeFormFacts(TextOutput& out, const FormFacts& form) {
    writePlainAttribute(out, "data-form", textOf(form));
}

std::optional<FormFacts> parseFormFacts(std::string_view text) {
    FormFacts form;
    const bool isWhole =
        takeForm(text, form) && text.find_first_not_of(' ') == std::string_view::npos;
    return isWhole ? std::optional(form) : std::nullopt;
}

void writeContentLayer(TextOutput& out, const ContentLayerFacts& layer, bool isListed) {
    const bool isNew = layer.object == 0;
    if (isListed || isNew) {
        writePlainAttribute(out, "inkscape:groupmode", "layer");
    }
    if (!layer.name.empty()) {
        writeAttribute(out, "inkscape:label", layer.name);
    }
    if (!isNew) {
        writePlainAttribute(out, "data-layer", std::to_string(layer.object));
        if (!layer.name.empty()) {
            writeAttribute(out, "data-layer-name", layer.name);
        }
        if (!layer.isVisible || layer.isLocked) {
            writePlainAttribute(out, "data-layer-state",
                                layer.isVisible  ? "locked"
                                : layer.isLocked ? "hidden locked"
                                                 : "hidden");
        }
    }
    if (layer.isLocked) {
        writeInsensitive(out);
    }
    if (!layer.isVisible) {
        writePlainAttribute(out, "display", "none");
    }
}

void writeAnnotations(TextOutput& out, const Document& document, Art layer) {
    std::string list;
    for (Art art = document.lastChild(layer); art != Art::null;
         art = document.previousSibling(art)) {
        const bool isGroup = document.kind(art) == ArtKind::group;
        if (const auto form = isGroup ? document.form(art) : std::nullopt) {
            list += (list.empty() ? "" : " ") + textOf(*form);
        }
    }
    writePlainAttribute(out, "data-annotations", list);
    writeInsensitive(out);
}

std::vector<FormFacts> parseAnnotations(std::string_view text) {
    std::vector<FormFacts> annotations;
    for (FormFacts form; takeForm(text, form);) {
        annotations.push_back(form);
    }
    return annotations;
}

} // namespace corvane
