// Groups, forms and layers of a page as one line of text, from the back to the front.
//
//   0,0 9,9@0:1     a path: its box, and the content and ordinal of its source
//   (...)           a group; <...> a clipped one, the clip at its end
//   5.1(...)@0:0    a form: its object, its content, its source
//   -Name(...)      a group of a layer of the file; + where it is shown
#pragma once

#include "app/artwork/document.h"
#include "runtime/fixed.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

namespace corvane {

inline std::string boxText(const Document& document, Art path) {
    Point low{INT32_MAX, INT32_MAX};
    Point high{INT32_MIN, INT32_MIN};
    for (const Segment& segment : document.segments(path)) {
        low = {std::min(low.x, segment.anchor.x), std::min(low.y, segment.anchor.y)};
        high = {std::max(high.x, segment.anchor.x), std::max(high.y, segment.anchor.y)};
    }
    std::array<char, 120> text{};
    std::snprintf(text.data(), text.size(), "%g,%g %g,%g", realFromFixed(low.x),
                  realFromFixed(low.y), realFromFixed(high.x), realFromFixed(high.y));
    return text.data();
}

inline std::string sourceText(const Document& document, Art art) {
    const auto source = document.source(art);
    return source ? "@" + std::to_string(source->content) + ":" + std::to_string(source->ordinal)
                  : "";
}

inline std::string structureText(const Document& document, Art container) {
    std::string text;
    for (Art art = document.lastChild(container); art != Art::null;
         art = document.previousSibling(art)) {
        text += text.empty() ? "" : " ";
        if (document.kind(art) == ArtKind::path) {
            text += boxText(document, art) + sourceText(document, art);
            continue;
        }
        if (document.kind(art) != ArtKind::group) {
            text += (document.kind(art) == ArtKind::text ? "text" : "other") + std::string();
            continue;
        }
        if (const auto form = document.form(art)) {
            text += std::to_string(form->object) + "." + std::to_string(form->content);
        }
        if (const ContentLayer layer = document.groupLayer(art); layer != ContentLayer::null) {
            const ContentLayerFacts facts = document.contentLayers().facts(layer);
            text += (facts.isVisible ? "+" : "-") + std::string(facts.name);
        }
        const bool clips = document.clipped(art);
        text += (clips ? "<" : "(") + structureText(document, art) + (clips ? ">" : ")");
        text += sourceText(document, art);
    }
    return text;
}

} // namespace corvane
