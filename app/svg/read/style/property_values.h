// What values properties may have, and what they are where nothing is said.
#pragma once

#include "app/svg/read/style/attribute_names.h"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace corvane {

/// Whether a value, without blanks around it, is one of the property; a wrong one is as if it were
/// not there (CSS 2.1, 4.2). True where that is not known.
bool isValueOf(Attribute property, std::string_view value);

/// The value that the keywords "initial", "unset" and "revert" stand for: perhaps "inherit". Other
/// values are themselves.
std::string_view withoutKeywords(Attribute property, std::string_view value);

/// The place of a word, in letters of any case, in a list of words in small letters.
std::optional<std::size_t> keywordIn(std::string_view word,
                                     std::initializer_list<std::string_view> list);

/// The id in "url(#id)"; none where the text starts otherwise or names another file. `rest`, if
/// given, gets what follows.
std::optional<std::string_view> localReference(std::string_view text,
                                               std::string_view* rest = nullptr);

/// A number or percentage from 0 to 1.
std::optional<double> parseOpacity(std::string_view text);

} // namespace corvane
