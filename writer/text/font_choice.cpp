#include "writer/text/font_choice.h"

#include "host/fonts.h"
#include "runtime/callbacks.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Files that are passed over in one search: damaged ones, and those that may not be embedded.
constexpr std::size_t mostPassedOver = 64;

/// Families that mean any font of their kind.
bool isGeneric(std::string_view family) {
    constexpr std::array<std::string_view, 7> generic = {
        "sans-serif", "serif", "monospace", "cursive", "fantasy", "system-ui", ""};
    return std::ranges::find(generic, family) != generic.end();
}

} // namespace

FontChoice::Known& FontChoice::known(Font wanted, bool isVertical) {
    const auto [at, isNew] = known_.try_emplace({wanted, isVertical});
    Known& known = at->second;
    if (!isNew) {
        return known;
    }
    known.isVertical = isVertical;
    FontFacts facts;
    callHost(slot::getFontFacts, wanted, &facts);
    const bool hasReal = !facts.realFamily.empty();
    known.family = facts.isPageFont && hasReal ? facts.realFamily : facts.family;
    known.name = known.family;
    known.facts = facts;
    known.facts.realFamily = {};
    known.facts.family = {};
    if (NewFont* const first = search(known, {})) {
        known.fonts.push_back(first);
    }
    if (!known.isNamed && !facts.isPageFont && hasReal && known.restricted.empty()) {
        // The second family of a list.
        known.name = facts.realFamily;
        if (NewFont* const second = search(known, {}); second != nullptr && known.isNamed) {
            known.fonts.assign(1, second);
            known.isNamed = false;
        } else {
            known.name = known.family;
            known.restricted.clear();
        }
    }
    return known;
}

/// The best font that may be put into files; it has the letters where any has.
NewFont* FontChoice::search(Known& known, std::u32string_view letters) {
    FontRequest request{.name = isGeneric(known.name) ? std::string() : known.name,
                        .weight = known.facts.weight,
                        .isItalic = known.facts.italic,
                        .isSerif = known.facts.generic == GenericFamily::serif,
                        .isFixedPitch = known.facts.generic == GenericFamily::monospace,
                        .characters = std::u32string(letters),
                        .isOpenType = true};
    while (request.passedOver.size() < mostPassedOver) {
        const std::optional<FoundFont> found = findFont(request);
        if (!found) {
            return nullptr;
        }
        NewFont* const font = fonts_.open(found->path, found->face, known.isVertical);
        const bool isNamed = found->match == FontMatch::named && letters.empty();
        if (font != nullptr && font->font().mayBeEmbedded()) {
            known.isNamed = known.isNamed || isNamed;
            return font;
        }
        if (font != nullptr && isNamed && !known.facts.isPageFont) {
            known.restricted = font->font().facts().fullName;
            return nullptr;
        }
        if (font != nullptr && !letters.empty() && known.passedOver.empty() &&
            font->font().shows(letters)) {
            known.passedOver = font->font().facts().fullName;
        }
        request.passedOver.push_back(found->path);
    }
    return nullptr;
}

NewFont* FontChoice::find(Font wanted, bool isVertical, std::u32string_view letters) {
    Known& known = this->known(wanted, isVertical);
    const auto shows = [&](const NewFont* font) { return font->font().shows(letters); };
    if (const auto found = std::ranges::find_if(known.fonts, shows); found != known.fonts.end()) {
        return *found;
    }
    if (!known.restricted.empty()) {
        return nullptr;
    }
    known.passedOver.clear();
    NewFont* const font = search(known, letters);
    if (font == nullptr || !shows(font)) {
        return nullptr;
    }
    known.fonts.push_back(font);
    return font;
}

void FontChoice::note(Font wanted, const NewFont& font, std::u32string_view letters) {
    const Known& known = this->known(wanted, font.isVertical());
    const bool isWanted = known.isNamed && !known.facts.isPageFont && &font == known.fonts.front();
    const bool isAny = isGeneric(known.family) && &font == known.fonts.front();
    fonts_.noteLetters(font, isWanted || isAny ? std::string_view() : known.family, letters);
}

} // namespace corvane
