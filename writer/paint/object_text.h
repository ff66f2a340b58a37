// Objects as the text that says them in a file.
#pragma once

#include "objects/object.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The shortest decimal that reads back as the same number, and a space. What is no number, or
/// infinite, raises `type`.
std::string numberText(double number);

/// A name with its slash, bytes that it cannot hold as #xx.
std::string nameText(std::string_view name);

/// An object with all in it; what lies behind references stays there. None where it holds a string,
/// which the file may have to encipher, or a stream.
std::optional<std::string> objectText(const Object& object);

} // namespace corvane
