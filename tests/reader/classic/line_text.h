// Text objects of the artwork as one line each, for tables of what a page becomes.
//
//   Times-Roman 12 @60,700 F: A{-0.12}W    name and size of the font, where the line begins, F
//   filled,
//                                          S stroked, C clip; letters, kerns in ems between them
//   ... | @60,686: next                    a further line of the same object
//   [...] group, {...} clipped group, < > a path
#pragma once

#include "app/artwork/classic/host_fonts.h"
#include "app/artwork/document.h"

#include <array>
#include <cstdio>
#include <string>

namespace corvane {

template <class... Values>
std::string printed(const char* format, Values... values) {
    std::array<char, 160> text{};
    std::snprintf(text.data(), text.size(), format, values...);
    return text.data();
}

inline std::string matrixText(const Matrix& matrix) {
    const auto real = [](Fixed value) { return value / 65536.0; };
    std::string text = printed("@%.5g,%.5g", real(matrix.tx), real(matrix.ty));
    if (matrix.a != fixedOne || matrix.b != 0 || matrix.c != 0 || matrix.d != fixedOne) {
        text += printed("(%.3g %.3g %.3g %.3g)", real(matrix.a), real(matrix.b), real(matrix.c),
                        real(matrix.d));
    }
    return text;
}

inline std::string lineText(const Document& document, Art art) {
    std::string text;
    for (std::int32_t i = 0; i < document.textRunCount(art); ++i) {
        const TextRun run = document.textRun(art, i);
        const auto font = HostFonts::all().fontOf(document.fonts().facts(run.font));
        text += i == 0 ? "" : " | ";
        text += HostFonts::all().name(font.value_or(0)) + printed(" %.5g", run.size / 65536.0);
        text += run.rise == 0 ? "" : printed("^%.5g", run.rise / 65536.0);
        text += run.spacing == 0 ? "" : printed("+%.3g", run.spacing / 65536.0);
        if (i == 0 || run.line) {
            text += " " + matrixText(run.line.value_or(document.textLine(art).matrix));
        }
        text += " ";
        text += run.style.fillPaint == 0 ? "" : "F";
        text += run.style.strokePaint == 0 ? "" : "S";
        text += run.style.clip == 0 ? "" : "C";
        text += ": ";
        std::size_t at = 0;
        for (const TextPiece& piece : run.pieces) {
            const auto start = static_cast<std::size_t>(piece.start);
            text += run.text.substr(at, start - at);
            text += printed("{%.3g}", piece.shift / 65536.0);
            at = start;
        }
        text += run.text.substr(at);
    }
    return text;
}

/// From the back to the front, as it was painted.
inline std::string textsText(const Document& document, Art container) {
    std::string text;
    for (Art art = document.lastChild(container); art != Art::null;
         art = document.previousSibling(art)) {
        text += text.empty() ? "" : "\n";
        switch (document.kind(art)) {
        case ArtKind::text:
            text += lineText(document, art);
            break;
        case ArtKind::group:
            text += (document.clipped(art) ? "{" : "[") + textsText(document, art) +
                    (document.clipped(art) ? "}" : "]");
            break;
        default:
            text += "<>";
        }
    }
    return text;
}

} // namespace corvane
