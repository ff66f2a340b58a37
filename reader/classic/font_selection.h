// `Tf`: the font of the page that a name stands for, as a font of the host and an encoding.
#pragma once

#include "objects/object.h"
#include "reader/classic/text_state.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace corvane {
struct Interpreter;
}

namespace corvane::classic {

/// Fonts that were selected, by the names that one "Font" dictionary gives them. What cannot be
/// selected is not kept, and fails anew.
struct SelectedFonts {
    ObjectOwner dictionary; ///< held, so that nothing else takes its place in memory
    std::map<std::string, std::shared_ptr<const SelectedFont>, std::less<>> fonts;
};

/// Makes the font of that name the one in use. Where it cannot be selected, raises `structure` or
/// `range`; what was known by then is in use.
void selectFont(Interpreter& interpreter, std::string_view name);

} // namespace corvane::classic
