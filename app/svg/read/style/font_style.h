// Properties of fonts (CSS 2.1, 15).
#pragma once

#include "app/svg/read/style/computed_style.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// `font` and the properties that it stands for. `lengths` has the size of the font around.
void readFont(ComputedStyle& style, const Declared& declared, const LengthContext& lengths,
              Tally& tally);

struct FamilyName {
    std::string name;
    bool isKeyword = false; ///< "serif" and its like, without quotes
};
/// The names of a `font-family`.
std::vector<FamilyName> parseFamilies(std::string_view text);

} // namespace corvane
