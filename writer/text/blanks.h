// Characters that nobody sees: a font need not have them.
#pragma once

namespace corvane {

/// A blank, or a character that only says how others stand.
bool isUnseen(char32_t character);

/// How far such a character leads, in ems, in a font whose own blank leads so far.
double blankAdvance(char32_t character, double space);

} // namespace corvane
