// Objects as the text that says them in a file.
#pragma once

#include "objects/object.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The shortest decimal that reads back as the same number, and a space. What is no number, or
/// infinite, raises `type`.
std::string numberText(double number);

/// A name with its slash, bytes that it cannot hold as #xx.
std::string nameText(std::string_view name);

/// Says a string of an object: the file may have to encipher it.
using StringText = std::function<std::string(std::string_view bytes)>;

/// An object with all in it; what lies behind references stays there. None where it holds a stream,
/// or a string that nothing says.
std::optional<std::string> objectText(const Object& object, const StringText& stringText = {});

} // namespace corvane
