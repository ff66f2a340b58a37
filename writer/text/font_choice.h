// Which font of the machine shows letters of the artwork.
#pragma once

#include "host/text.h"
#include "runtime/reason.h"
#include "writer/font/new_fonts.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

class FontChoice {
public:
    explicit FontChoice(NewFonts& fonts) : fonts_(fonts) {}

    /// A font that shows all of the letters: the one that the artwork names, or that comes nearest
    /// to it; else one that has them. Null where none does.
    NewFont* find(Font wanted, bool isVertical, std::u32string_view letters);

    /// The letters are shown in that font.
    void note(Font wanted, const NewFont& font, std::u32string_view letters);

    /// Where the latest search found nothing: the font that the person named, or the first that
    /// has the letters, and that may not be put into files.
    const std::string& restricted(Font wanted, bool isVertical) {
        const Known& known = this->known(wanted, isVertical);
        return known.restricted.empty() ? known.passedOver : known.restricted;
    }

private:
    struct Known {
        bool isVertical = false; ///< for columns
        std::string family;      ///< what a person calls it
        std::string name;        ///< what is looked for
        FontFacts facts;         ///< without its strings
        bool isNamed = false;    ///< the first of the fonts is the one that is wanted
        std::string restricted;  ///< empty: it is not
        std::string passedOver;  ///< that has the letters looked for last, but is restricted
        std::vector<NewFont*> fonts;
    };

    Known& known(Font wanted, bool isVertical);
    NewFont* search(Known& known, std::u32string_view letters);

    NewFonts& fonts_;
    std::map<std::pair<Font, bool>, Known> known_; ///< by font, and whether for columns
};

} // namespace corvane
