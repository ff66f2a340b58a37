// Lengths of SVG and CSS, in user units: a user unit is a CSS pixel, 96 to the inch.
#pragma once

#include <optional>
#include <string_view>

namespace corvane {

/// The lengths that percentages refer to, in user units.
struct Viewport {
    double width = 0;
    double height = 0;
    /// The length for percentages that refer to neither width nor height (SVG 1.1, 7.10).
    double diagonal() const;
};

/// What a length may be relative to.
struct LengthContext {
    Viewport viewport;
    double fontSize = 16;
};

enum class Axis { x, y, other };

inline constexpr double pixelsPerPoint = 96.0 / 72;

/// A number with or without a unit (px, pt, pc, mm, cm, in, em, ex, rem, %); none where the text is
/// no length.
std::optional<double> parseLength(std::string_view text, Axis axis, const LengthContext& context);

/// Whether a value is of CSS that is not read: functions such as `calc()` and `var()`, and units of
/// windows and letters such as "vw" and "ch".
bool isUnreadValue(std::string_view text);

} // namespace corvane
