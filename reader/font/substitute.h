// A font of the machine in place of one that the document does not embed.
#pragma once

#include "fonts/font_program.h"
#include "reader/font/font_names.h"

#include <memory>
#include <string_view>

namespace corvane {

/// `collection` is the character collection of a composite font, or empty. Null where the machine
/// has no font.
std::shared_ptr<const FontProgram> findSubstitute(std::string_view baseFont, const FontNames& names,
                                                  std::string_view collection);

} // namespace corvane
