// Artwork as a person sees it: what is painted, from the back to the front, and how it is clipped.
#pragma once

#include "app/artwork/document.h"
#include "tests/reader/art_text.h"
#include "tests/reader/seen_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace corvane::test {

struct SeenOutline {
    std::vector<Segment> segments;
    bool closed = false;
};

struct SeenClip {
    std::vector<SeenOutline> outlines;
    FillRule rule = FillRule::nonzero;
    std::string letters; ///< of text
};

struct SeenPath {
    std::vector<SeenOutline> outlines;
    PathStyle style;
    std::vector<SeenClip> clips; ///< from the outermost
    std::string text;            ///< for messages
};

struct SeenBox {
    std::int64_t left = INT64_MAX;
    std::int64_t bottom = INT64_MAX;
    std::int64_t right = INT64_MIN;
    std::int64_t top = INT64_MIN;

    void add(Point point) {
        left = std::min<std::int64_t>(left, point.x);
        bottom = std::min<std::int64_t>(bottom, point.y);
        right = std::max<std::int64_t>(right, point.x);
        top = std::max<std::int64_t>(top, point.y);
    }
};

inline std::vector<SeenOutline> outlinesOf(const Document& document, Art art) {
    std::vector<SeenOutline> outlines;
    const auto add = [&](Art path) {
        const Segments segments = document.segments(path);
        outlines.push_back({{segments.begin(), segments.end()}, document.closed(path)});
    };
    if (document.kind(art) == ArtKind::path) {
        add(art);
        return outlines;
    }
    for (Art path = document.lastChild(art); path != Art::null;
         path = document.previousSibling(path)) {
        add(path);
    }
    return outlines;
}

inline Art frontPath(const Document& document, Art art) {
    return document.kind(art) == ArtKind::compound ? document.firstChild(art) : art;
}

/// Letters of text that clips, and about where they are.
inline std::string clipLetters(const Document& document, Art clip) {
    std::string letters;
    const auto add = [&](Art text) {
        walkLine(document, text, [&](const TextRun& run, std::size_t at, const RealMatrix& em) {
            if (run.text[at] != ' ' && run.style.clip != 0) {
                std::array<char, 96> place{};
                std::snprintf(place.data(), place.size(), "%c%.0f,%.0f,%.0f ", run.text[at], em.tx,
                              em.ty, em.a);
                letters += place.data();
            }
        });
    };
    if (document.kind(clip) == ArtKind::text) {
        add(clip);
        return letters;
    }
    for (Art text = document.lastChild(clip); text != Art::null;
         text = document.previousSibling(text)) {
        add(text);
    }
    return letters;
}

inline bool isTextClip(const Document& document, Art clip) {
    return document.kind(clip) == ArtKind::text || document.kind(clip) == ArtKind::group;
}

/// Lists what is painted within containers.
class SeenList {
public:
    explicit SeenList(const Document& document) : document_(document) {
        for (Layer layer = document.lastLayer(); layer != Layer::null;
             layer = document.previousLayer(layer)) {
            list(document.layerArt(layer));
        }
    }

    std::vector<SeenPath> paths; ///< all that can be seen
    std::vector<Art> objects;    ///< paths and compound paths, clips left out
    std::vector<Art> clips;      ///< of groups
    std::int32_t texts = 0;      ///< runs of text

private:
    void list(Art container) {
        const Art first = document_.firstChild(container);
        const bool isClip = document_.clipped(container) && first != Art::null;
        if (isClip) {
            clips.push_back(first);
        }
        if (isClip && isTextClip(document_, first)) {
            around_.push_back({.outlines = {}, .letters = clipLetters(document_, first)});
        } else if (isClip) {
            const PathStyle& style = document_.style(frontPath(document_, first));
            around_.push_back({outlinesOf(document_, first), style.rule, {}});
        }
        for (Art art = document_.lastChild(container); art != Art::null;
             art = document_.previousSibling(art)) {
            if (document_.kind(art) == ArtKind::placed || (isClip && art == first)) {
                continue;
            }
            if (document_.kind(art) == ArtKind::text) {
                texts += document_.textRunCount(art);
                continue;
            }
            document_.kind(art) == ArtKind::group ? list(art) : add(art);
        }
        if (isClip) {
            around_.pop_back();
        }
    }

    void add(Art art) {
        objects.push_back(art);
        const Art front = frontPath(document_, art);
        SeenPath path{outlinesOf(document_, art), document_.style(front), {}, {}};
        const bool isPainted = path.style.fillPaint != 0 || path.style.strokePaint != 0;
        if (!isPainted || document_.guide(front)) {
            return;
        }
        path.text = document_.kind(art) == ArtKind::path ? pathText(document_, art)
                                                         : "(" + artText(document_, art) + ")";
        for (const SeenClip& clip : around_) {
            if (!contains(clip, path)) {
                path.clips.push_back(clip);
                path.text += " clip " + (clip.letters.empty()
                                             ? pointText(clip.outlines[0].segments[0].anchor)
                                             : clip.letters);
            }
        }
        paths.push_back(std::move(path));
    }

    /// Whether the clip is a rectangle around all of the path.
    static bool contains(const SeenClip& clip, const SeenPath& path) {
        if (clip.outlines.size() != 1 || !isRectangle(clip.outlines[0].segments)) {
            return false;
        }
        SeenBox outer;
        for (const Segment& segment : clip.outlines[0].segments) {
            outer.add(segment.anchor);
        }
        SeenBox inner;
        for (const SeenOutline& outline : path.outlines) {
            for (const Segment& segment : outline.segments) {
                inner.add(segment.anchor);
                inner.add(segment.in);
                inner.add(segment.out);
            }
        }
        const Fixed reach = path.style.strokePaint != 0 ? path.style.lineWidth / 2 : 0;
        return outer.left <= inner.left - reach && outer.bottom <= inner.bottom - reach &&
               outer.right >= inner.right + reach && outer.top >= inner.top + reach;
    }

    static bool isRectangle(const std::vector<Segment>& corners) {
        bool isOne = corners.size() == 4 || (corners.size() == 5 && corners[4] == corners[0]);
        for (std::size_t i = 0; isOne && i < 4; ++i) {
            const Point a = corners[i].anchor;
            const Point b = corners[(i + 1) % 4].anchor;
            const Point c = corners[(i + 2) % 4].anchor;
            isOne = corners[i].in == a && corners[i].out == a &&
                    ((a.x == b.x && b.y == c.y) || (a.y == b.y && b.x == c.x));
        }
        return isOne;
    }

    const Document& document_;
    std::vector<SeenClip> around_;
};

/// Points may differ by what nobody sees, or by nothing at all.
struct SeenTolerance {
    Fixed point = fixedOne / 512;
    Fixed length = fixedOne / 1024; ///< and a thousandth
    Fixed colour = fixedOne / 1024;
};

class SeenComparison {
public:
    explicit SeenComparison(SeenTolerance tolerance) : tolerance_(tolerance) {}

    bool same(const SeenPath& a, const SeenPath& b) const {
        // Filling closes what is open.
        const bool closes = a.style.strokePaint == 0;
        return sameOutlines(a.outlines, b.outlines, closes) && sameStyle(a.style, b.style) &&
               std::ranges::equal(a.clips, b.clips, [&](const SeenClip& x, const SeenClip& y) {
                   return x.rule == y.rule && x.letters == y.letters &&
                          sameOutlines(x.outlines, y.outlines, true);
               });
    }

private:
    static bool isNear(std::int64_t a, std::int64_t b, std::int64_t room) {
        return std::abs(a - b) <= room;
    }
    bool isNear(Point a, Point b) const {
        return isNear(a.x, b.x, tolerance_.point) && isNear(a.y, b.y, tolerance_.point);
    }
    bool sameLength(Fixed a, Fixed b) const { return isNear(a, b, tolerance_.length + a / 1000); }

    bool sameOutlines(const std::vector<SeenOutline>& a, const std::vector<SeenOutline>& b,
                      bool closes) const {
        return std::ranges::equal(a, b, [&](const SeenOutline& x, const SeenOutline& y) {
            if (x.segments.size() != y.segments.size() || (!closes && x.closed != y.closed)) {
                return false;
            }
            const std::size_t last = x.segments.size() - 1;
            bool same = true;
            for (std::size_t i = 0; i <= last; ++i) {
                const Segment& s = x.segments[i];
                const Segment& t = y.segments[i];
                // The outer handles of an open path shape nothing.
                const bool isOpen = !x.closed || !y.closed;
                same = same && isNear(s.anchor, t.anchor) &&
                       ((isOpen && i == 0) || isNear(s.in, t.in)) &&
                       ((isOpen && i == last) || isNear(s.out, t.out));
            }
            return same;
        });
    }

    bool sameColour(const Colour& a, const Colour& b) const {
        bool same = a.kind == b.kind;
        for (std::size_t i = 0; i < (a.kind == ColourKind::process ? 4 : 1); ++i) {
            same = same && isNear(a.component[i], b.component[i], tolerance_.colour);
        }
        return same;
    }

    bool sameStyle(const PathStyle& a, const PathStyle& b) const {
        const bool fills = a.fillPaint != 0;
        const bool strokes = a.strokePaint != 0;
        if (fills != (b.fillPaint != 0) || strokes != (b.strokePaint != 0)) {
            return false;
        }
        bool same = !fills || (a.rule == b.rule && sameColour(a.fill, b.fill));
        if (strokes) {
            same = same && sameColour(a.stroke, b.stroke) && a.cap == b.cap && a.join == b.join &&
                   sameLength(a.miterLimit, b.miterLimit) && sameLength(a.lineWidth, b.lineWidth) &&
                   (a.lineWidth == 0 || samePen(a.pen, b.pen)) && a.dashCount == b.dashCount &&
                   sameLength(a.dashPhase, b.dashPhase);
            for (std::int16_t i = 0; i < a.dashCount; ++i) {
                same = same && sameLength(a.dash[i], b.dash[i]);
            }
        }
        return same;
    }

    static bool samePen(const Pen& a, const Pen& b) {
        return std::abs(a.xx - b.xx) + std::abs(a.xy - b.xy) + std::abs(a.yy - b.yy) < 1e-4;
    }

    SeenTolerance tolerance_;
};

/// What differs, or nothing.
inline std::string differenceOf(const std::vector<SeenPath>& edited,
                                const std::vector<SeenPath>& saved, SeenTolerance tolerance = {}) {
    const SeenComparison comparison(tolerance);
    const auto at = std::ranges::mismatch(
        edited, saved, [&](const SeenPath& a, const SeenPath& b) { return comparison.same(a, b); });
    if (at.in1 == edited.end() && at.in2 == saved.end()) {
        return {};
    }
    const auto all = [](const std::vector<SeenPath>& paths) {
        std::string text;
        for (const SeenPath& path : paths) {
            text += "  " + path.text + "\n";
        }
        return text;
    };
    return "from object " + std::to_string(at.in1 - edited.begin()) + " on; edited:\n" +
           all(edited) + "saved:\n" + all(saved);
}

} // namespace corvane::test
