// Artwork read from SVG in a few words, told by what the writer makes of it.
#pragma once

#include "app/svg/reader.h"
#include "app/svg/writer.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace corvane::test {

/// A page of 300 by 200 points, as another program writes it: a user unit is a point.
inline std::string foreignSvg(const std::string& body, const std::string& attributes = "") {
    return "<svg xmlns='http://www.w3.org/2000/svg' width='300pt' height='200pt'"
           " viewBox='0 0 300 200' " +
           attributes + ">" + body + "</svg>";
}

/// The same as this program writes it.
inline std::string ourSvg(const std::string& body, const std::string& attributes = "") {
    return foreignSvg("<g inkscape:groupmode='layer'>" + body + "</g>",
                      "stroke-miterlimit='10' data-producer='corvane' data-version='1' " +
                          attributes);
}

struct ReadArt {
    explicit ReadArt(const std::string& text) : reading(readSvg(text, document)) {}

    std::string svg() const {
        StringSink sink;
        return writeSvg(document, reading.provenance, sink, {EmbeddedFonts::none}) ? "failed"
                                                                                   : sink.text();
    }
    /// What is in the only layer, without ids and ends of lines.
    std::string drawn() const {
        std::string text = svg();
        const std::size_t start = text.find('>', text.find("<g id=\"layer1\"")) + 1;
        const std::size_t end = text.rfind("</g>");
        text = end == std::string::npos || end < start ? "" : text.substr(start, end - start);
        std::string plain;
        for (std::size_t at = 0; at < text.size();) {
            const bool id = text.compare(at, 5, " id=\"") == 0;
            if (text[at] == '\n' || id) {
                at = id ? text.find('"', at + 5) + 1 : text.find_first_not_of("\n ", at);
                at = at == std::string::npos ? text.size() : at;
            } else {
                plain += text[at++];
            }
        }
        return plain;
    }
    std::int32_t ignored(const std::string& kind) const {
        const auto found = reading.ignored.find(kind);
        return found == reading.ignored.end() ? 0 : found->second;
    }

    Document document;
    SvgReading reading;
};

/// What becomes of elements of another program's file.
inline std::string redrawn(const std::string& body) {
    return ReadArt(foreignSvg(body)).drawn();
}

} // namespace corvane::test
