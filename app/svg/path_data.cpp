#include "app/svg/path_data.h"

#include "app/svg/subpaths.h"
#include "host/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace corvane {

namespace {

/// Digits behind the point by which a place before a pen leads to the same 16.16 place: a pen makes
/// no way longer.
constexpr int penDigits = 6;
/// Sign, digits, point and digits: narrow pens lead to places far away.
constexpr std::size_t penRoom = 32;

/// A command letter and six numbers, each with a blank.
constexpr std::size_t commandRoom = 1 + 6 * (std::max(numberRoom, penRoom) + 1);

/// Writes into room that the caller reserves, one command at a time.
class PathPen {
public:
    explicit PathPen(PageCorner corner) : corner_(corner) {}
    /// In the space of an element that a pen transforms.
    PathPen(PageCorner corner, const RealMatrix& fromPage)
        : corner_(corner), fromPage_(fromPage), isTransformed_(true) {}

    char* move(char* out, Point to) {
        out = letter(out, 'M');
        out = pair(out, to);
        command_ = 'L'; // what numbers after those of a move mean
        return out;
    }

    char* line(char* out, Point to) {
        if (isTransformed_) {
            return pair(letter(out, 'L'), to);
        }
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
        if (isTransformed_) {
            constexpr double unit = fixedOne;
            const RealPoint on{static_cast<double>(corner_.x(to.x)) / unit,
                               static_cast<double>(corner_.y(to.y)) / unit};
            const RealPoint before = transform(fromPage_, on);
            return real(real(out, before.x), before.y);
        }
        return number(number(out, corner_.x(to.x)), corner_.y(to.y));
    }

    char* real(char* out, double value) {
        std::array<char, penRoom> text{};
        const char* end = std::to_chars(text.data(), text.data() + text.size(), value,
                                        std::chars_format::fixed, penDigits)
                              .ptr;
        while (end[-1] == '0') {
            --end;
        }
        end -= end[-1] == '.' ? 1 : 0;
        std::string_view digits(text.data(), end);
        digits = digits == "-0" ? "0" : digits;
        if (blank_ && !digits.starts_with('-')) {
            *out++ = ' ';
        }
        blank_ = true;
        return std::ranges::copy(digits, out).out;
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
    RealMatrix fromPage_;
    bool isTransformed_ = false;
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

namespace {

void writeShapeData(TextOutput& output, const Document& document, Art shape, PathPen pen) {
    forEachSubpath(document, shape, [&](Art path) {
        const Segments segments = document.segments(path);
        writeSubpath(output, pen, segments.size(), document.closed(path),
                     [&](std::int32_t i) { return segments[i]; });
    });
}

} // namespace

void writePathData(TextOutput& output, const Document& document, Art shape, PageCorner corner) {
    writeShapeData(output, document, shape, PathPen(corner));
}

void writePathData(TextOutput& output, const Document& document, Art shape, PageCorner corner,
                   const Pen& pen) {
    const std::optional<RealMatrix> back = inverse(penOnPage(pen));
    writeShapeData(output, document, shape,
                   pen == Pen() || !back ? PathPen(corner) : PathPen(corner, *back));
}

RealMatrix penOnPage(const Pen& pen) {
    return {pen.xx, -pen.xy, -pen.xy, pen.yy, 0, 0};
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
