// Artwork in a few words, for tests of the SVG writer.
#pragma once

#include "app/svg/writer.h"

#include <cmath>
#include <string>
#include <vector>

namespace corvane::test {

inline Fixed fixed(double value) {
    return static_cast<Fixed>(std::lround(value * fixedOne));
}
inline Point at(double x, double y) {
    return {fixed(x), fixed(y)};
}

inline std::vector<Point> box(double left, double bottom, double right, double top) {
    return {at(left, bottom), at(right, bottom), at(right, top), at(left, top)};
}

inline PathStyle filled(Fixed black = fixedOne) {
    PathStyle style;
    style.fillPaint = 1;
    style.fill.component[0] = black;
    return style;
}

inline PathStyle stroked(double width) {
    PathStyle style;
    style.strokePaint = 1;
    style.lineWidth = fixed(width);
    return style;
}

/// A document with a page of 300 by 200 points; art goes in front of what is there.
class ArtBuilder {
public:
    ArtBuilder() { document.page().setBounds({0, fixed(200), fixed(300), 0}); }

    Art layerArt() const { return document.layerArt(document.firstLayer()); }
    Art group(Art in) { return document.make(ArtKind::group, Placement::inside, in); }
    Art compound(Art in) { return document.make(ArtKind::compound, Placement::inside, in); }

    Art path(Art in, const std::vector<Point>& points, const PathStyle& style, bool closed = true,
             Placement placement = Placement::inside) {
        std::vector<Segment> segments;
        for (const Point point : points) {
            segments.push_back({point, point, point, 0});
        }
        const Art path = document.make(ArtKind::path, placement, in);
        document.setSegmentCount(path, static_cast<std::int32_t>(segments.size()));
        document.writeSegments(path, 0, segments);
        document.setStyle(path, style);
        document.setClosed(path, closed);
        return path;
    }

    /// A group clipped by a polygon; what follows goes behind the clip, by `behindClip`.
    Art clippedGroup(Art in, const std::vector<Point>& points, FillRule rule = FillRule::nonzero) {
        const Art clipped = group(in);
        PathStyle style;
        style.clip = 1;
        style.rule = rule;
        path(clipped, points, style);
        document.setClipped(clipped, true);
        return clipped;
    }
    Art behindClip(Art clipped, const std::vector<Point>& points, const PathStyle& style) {
        return path(document.firstChild(clipped), points, style, true, Placement::behind);
    }
    Art groupBehindClip(Art clipped) {
        return document.make(ArtKind::group, Placement::behind, document.firstChild(clipped));
    }

    std::string svg(const Provenance& provenance = {}) const {
        StringSink sink;
        return writeSvg(document, provenance, sink) ? "failed" : sink.text();
    }

    /// The lines inside the only layer.
    std::string layerText() const {
        const std::string text = svg();
        const std::size_t start = text.find('\n', text.find("<g id=\"layer1\"")) + 1;
        return text.substr(start, text.find("\n </g>\n</svg>") - start);
    }

    Document document;
};

} // namespace corvane::test
