// The state of text, and the numbers and strings of what is shown, as operators.
#pragma once

#include "host/matrix.h"
#include "writer/art/walk.h"

#include <cstdint>
#include <string_view>

namespace corvane {

/// The text state of a text object; it may be any other in front of it.
struct NewTextState {
    double characterSpacing = 0;
    double wordSpacing = 0;
    double horizontalScale = 1;
    double rise = 0;
    std::int32_t mode = 0;
};

void textStateWorks(Walk& walk, const NewTextState& state);
void riseWorks(Walk& walk, double rise);
void textMatrixWorks(Walk& walk, const RealMatrix& matrix);

/// The mode in which letters of that style are shown.
std::int32_t textModeOf(const PathStyle& style);

/// An element of an array: a string, of no bytes none.
void stringWorks(Walk& walk, std::string_view codes);
/// An element that moves by so many ems.
void gapWorks(Walk& walk, double ems);
/// Digits behind the point of a thousandth of an em.
inline constexpr int gapDigits = 2;

} // namespace corvane
