#include "fonts/made/charstring.h"

#include <array>
#include <span>

namespace corvane {

namespace {

constexpr std::size_t stackDepth = 48; ///< operands of one operator, at most

/// Operators that draw. Those in pairs take turns: the second of two steps is of the other kind.
enum class Drawing : std::uint8_t {
    lines = 5,
    horizontalLine = 6,
    verticalLine = 7,
    curves = 8,
    verticalCurves = 26,   ///< start and end vertical
    horizontalCurves = 27, ///< start and end horizontal
    risingCurve = 30,      ///< starts vertical, ends horizontal
    fallingCurve = 31      ///< starts horizontal, ends vertical
};

constexpr std::uint32_t endOfGlyph = 14;
constexpr std::uint32_t move = 21;
constexpr std::uint32_t horizontalMove = 22;
constexpr std::uint32_t verticalMove = 4;

/// The kind that may follow under the same operator.
constexpr Drawing partner(Drawing drawing) {
    switch (drawing) {
    case Drawing::horizontalLine:
        return Drawing::verticalLine;
    case Drawing::verticalLine:
        return Drawing::horizontalLine;
    case Drawing::risingCurve:
        return Drawing::fallingCurve;
    case Drawing::fallingCurve:
        return Drawing::risingCurve;
    case Drawing::lines:
    case Drawing::curves:
    case Drawing::verticalCurves:
    case Drawing::horizontalCurves:
        break;
    }
    return drawing;
}

UnitPoint operator-(UnitPoint a, UnitPoint b) {
    return {a.x - b.x, a.y - b.y};
}

class Charstring {
public:
    /// The width stands before the operands of the first operator.
    explicit Charstring(std::int32_t width) {
        if (width != 0) {
            number(width);
        }
    }

    void contour(const Contour& contour) {
        const UnitPoint start = unitsOf(contour.start);
        moveTo(start);
        for (const OutlineStep& step : contour.steps) {
            const UnitPoint to = unitsOf(step.to);
            if (step.isCurve) {
                curveTo(unitsOf(step.first), unitsOf(step.second), to);
            } else if (to != here_) {
                lineTo(to);
            }
        }
        flush();
    }

    TableBytes finish() {
        bytes_.u8(endOfGlyph);
        return std::move(bytes_);
    }

private:
    void moveTo(UnitPoint to) {
        const UnitPoint by = to - here_;
        here_ = to;
        if (by.y == 0) {
            number(by.x);
            bytes_.u8(horizontalMove);
        } else if (by.x == 0) {
            number(by.y);
            bytes_.u8(verticalMove);
        } else {
            number(by.x);
            number(by.y);
            bytes_.u8(move);
        }
    }

    void lineTo(UnitPoint to) {
        const UnitPoint by = to - here_;
        here_ = to;
        if (by.y == 0) {
            draw(Drawing::horizontalLine, std::array{by.x});
        } else if (by.x == 0) {
            draw(Drawing::verticalLine, std::array{by.y});
        } else {
            draw(Drawing::lines, std::array{by.x, by.y});
        }
    }

    void curveTo(UnitPoint first, UnitPoint second, UnitPoint to) {
        const UnitPoint a = first - here_;
        const UnitPoint b = second - first;
        const UnitPoint c = to - second;
        here_ = to;
        if (a.y == 0 && c.x == 0) {
            draw(Drawing::fallingCurve, std::array{a.x, b.x, b.y, c.y});
        } else if (a.x == 0 && c.y == 0) {
            draw(Drawing::risingCurve, std::array{a.y, b.x, b.y, c.x});
        } else if (a.y == 0 && c.y == 0) {
            draw(Drawing::horizontalCurves, std::array{a.x, b.x, b.y, c.x});
        } else if (a.x == 0 && c.x == 0) {
            draw(Drawing::verticalCurves, std::array{a.y, b.x, b.y, c.y});
        } else {
            draw(Drawing::curves, std::array{a.x, a.y, b.x, b.y, c.x, c.y});
        }
    }

    void draw(Drawing drawing, std::span<const std::int32_t> operands) {
        if (count_ == 0 || drawing != next_ || count_ + operands.size() > stackDepth) {
            flush();
            drawing_ = drawing;
        }
        for (const std::int32_t operand : operands) {
            number(operand);
        }
        count_ += operands.size();
        next_ = partner(drawing);
    }

    /// Writes the operator of the operands that stand there.
    void flush() {
        if (count_ != 0) {
            bytes_.u8(static_cast<std::uint32_t>(drawing_));
            count_ = 0;
        }
    }

    void number(std::int32_t value) {
        if (value >= -107 && value <= 107) {
            bytes_.u8(static_cast<std::uint32_t>(value + 139));
        } else if (value >= 108 && value <= 1131) {
            bytes_.u16(static_cast<std::uint32_t>(value - 108 + (247 << 8)));
        } else if (value >= -1131 && value <= -108) {
            bytes_.u16(static_cast<std::uint32_t>(-value - 108 + (251 << 8)));
        } else {
            bytes_.u8(28);
            bytes_.i16(value);
        }
    }

    TableBytes bytes_;
    UnitPoint here_;
    Drawing drawing_ = Drawing::lines; ///< of the operands that wait for their operator
    Drawing next_ = Drawing::lines;    ///< what may join them
    std::size_t count_ = 0;
};

} // namespace

TableBytes charstringOf(const UnitGlyph& glyph) {
    Charstring charstring(glyph.advance);
    if (glyph.outline != nullptr) {
        for (const Contour& contour : *glyph.outline) {
            charstring.contour(contour);
        }
    }
    return charstring.finish();
}

} // namespace corvane
