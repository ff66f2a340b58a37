// What the names of fonts say.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// A name without the tag of a subset: "ABCDEF+Arial" is "Arial".
std::string_view withoutSubsetTag(std::string_view name);

/// The family in small letters and digits, without words of style: "arial" for "Arial,Bold" and
/// "ArialMT", "timesnew" for "TimesNewRomanPS-ItalicMT". What is only style stays.
std::string fontStem(std::string_view name);

struct FontStyle {
    std::int32_t weight = 400;
    bool isItalic = false;
};

/// By the words in the name.
FontStyle fontStyle(std::string_view name);

/// The stem of the family with the same advances, among those of the URW base 35 fonts; empty:
/// none.
std::string_view standInStem(std::string_view stem);

/// The stem of the URW family that a font of that family looks most like; empty: not known.
std::string_view kindStem(std::string_view stem);

} // namespace corvane
