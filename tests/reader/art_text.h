// Artwork as one line of text, front to back, for tables of what a page becomes.
//
//   <0,0 10,0>9,9 20,0<9,9 zFS>   a path: anchors with out (>) and in (<) points that differ from
//                                 them, then z closed, F filled (f: even-odd), S stroked, C clip
//                                 (c: even-odd)
//   (...) compound path, [...] group, {...} clipped group
#pragma once

#include "app/artwork/document.h"

#include <array>
#include <cstdio>
#include <string>

namespace corvane {

inline std::string pointText(Point point) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.6g,%.6g", point.x / 65536.0, point.y / 65536.0);
    return text.data();
}

inline std::string pathText(const Document& document, Art path) {
    std::string text = "<";
    for (const Segment& segment : document.segments(path)) {
        text += pointText(segment.anchor);
        text += segment.in == segment.anchor ? "" : "<" + pointText(segment.in);
        text += segment.out == segment.anchor ? "" : ">" + pointText(segment.out);
        text += " ";
    }
    const PathStyle& style = document.style(path);
    const bool evenOdd = style.rule == FillRule::evenOdd;
    text += document.closed(path) ? "z" : "";
    text += style.fillPaint == 0 ? "" : evenOdd && style.clip == 0 ? "f" : "F";
    text += style.strokePaint == 0 ? "" : "S";
    text += style.clip == 0 ? "" : evenOdd ? "c" : "C";
    return text + ">";
}

/// All that `container` holds.
inline std::string artText(const Document& document, Art container) {
    std::string text;
    for (Art art = document.firstChild(container); art != Art::null;
         art = document.nextSibling(art)) {
        text += text.empty() ? "" : " ";
        switch (document.kind(art)) {
        case ArtKind::path:
            text += pathText(document, art);
            break;
        case ArtKind::compound:
            text += "(" + artText(document, art) + ")";
            break;
        default:
            text += document.clipped(art) ? "{" + artText(document, art) + "}"
                                          : "[" + artText(document, art) + "]";
        }
    }
    return text;
}

} // namespace corvane
