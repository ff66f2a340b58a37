#include "app/svg/path_data.h"

#include "app/svg/subpaths.h"
#include "host/number.h"

namespace corvane {

namespace {

/// A command letter and six numbers, each with a blank.
constexpr std::size_t commandRoom = 1 + 6 * (numberRoom + 1);

/// Writes into room that the caller reserves, one command at a time.
class PathPen {
public:
    explicit PathPen(PageCorner corner) : corner_(corner) {}

    char* move(char* out, Point to) {
        out = letter(out, 'M');
        out = pair(out, to);
        command_ = 'L'; // what numbers after those of a move mean
        return out;
    }

    char* line(char* out, Point to) {
        if (to.y == at_.y) {
            out = letter(out, 'H');
            out = number(out, corner_.x(to.x));
            at_ = to;
            return out;
        }
        if (to.x == at_.x) {
            out = letter(out, 'V');
            out = number(out, corner_.y(to.y));
            at_ = to;
            return out;
        }
        return pair(letter(out, 'L'), to);
    }

    char* curve(char* out, Point out1, Point in2, Point to) {
        return pair(pair(pair(letter(out, 'C'), out1), in2), to);
    }

    char* close(char* out) { return letter(out, 'Z'); }

private:
    char* letter(char* out, char command) {
        if (command != command_) {
            *out++ = command;
            command_ = command;
            blank_ = false;
        }
        return out;
    }

    char* pair(char* out, Point to) {
        at_ = to;
        return number(number(out, corner_.x(to.x)), corner_.y(to.y));
    }

    /// Two numbers need no blank between them where the second starts with a sign, or with a point
    /// and the first has one.
    char* number(char* out, std::int64_t value) {
        const bool startsWithPoint = value > 0 && value < fixedOne;
        if (blank_ && value >= 0 && !(startsWithPoint && pointBefore_)) {
            *out++ = ' ';
        }
        blank_ = true;
        pointBefore_ = (value & 0xFFFF) != 0;
        return writeNumber(out, value);
    }

    PageCorner corner_;
    Point at_;
    char command_ = 0;
    bool blank_ = false;
    bool pointBefore_ = false;
};

/// `at(i)` is a segment, `i` from 0 to `count` - 1.
template <class At>
void writeSubpath(TextOutput& output, PathPen& pen, std::int32_t count, bool closed, At at) {
    if (count == 0) {
        return;
    }
    const auto write = [&](auto command) { output.advance(command(output.room(commandRoom))); };
    const auto writeTo = [&](const Segment& from, const Segment& to) {
        if (from.out == from.anchor && to.in == to.anchor) {
            write([&](char* out) { return pen.line(out, to.anchor); });
        } else {
            write([&](char* out) { return pen.curve(out, from.out, to.in, to.anchor); });
        }
    };

    const Segment first = at(0);
    write([&](char* out) { return pen.move(out, first.anchor); });
    Segment last = first;
    for (std::int32_t i = 1; i < count; ++i) {
        const Segment next = at(i);
        writeTo(last, next);
        last = next;
    }
    if (closed) {
        const bool curved = last.out != last.anchor || first.in != first.anchor;
        if (curved || (count > 1 && last.anchor == first.anchor)) {
            writeTo(last, first);
        }
        write([&](char* out) { return pen.close(out); });
    }
}

} // namespace

void writePathData(TextOutput& output, const Document& document, Art shape, PageCorner corner) {
    PathPen pen(corner);
    forEachSubpath(document, shape, [&](Art path) {
        const Segments segments = document.segments(path);
        writeSubpath(output, pen, segments.size(), document.closed(path),
                     [&](std::int32_t i) { return segments[i]; });
    });
}

void writeSegmentData(TextOutput& output, std::span<const Segment> segments, bool closed,
                      PageCorner corner) {
    PathPen pen(corner);
    writeSubpath(output, pen, static_cast<std::int32_t>(segments.size()), closed,
                 [&](std::int32_t i) { return segments[static_cast<std::size_t>(i)]; });
}

void writeRectangleData(TextOutput& output, const Extent& extent, PageCorner corner) {
    output.text("M");
    output.number(extent.left - corner.left);
    output.text(" ");
    output.number(corner.top - extent.top);
    output.text("H");
    output.number(extent.right - corner.left);
    output.text("V");
    output.number(corner.top - extent.bottom);
    output.text("H");
    output.number(extent.left - corner.left);
    output.text("Z");
}

} // namespace corvane
