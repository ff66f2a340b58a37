#include "reader/page/page_titles.h"

#include "objects/referenced.h"
#include "reader/font/characters.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>

namespace corvane {

namespace {

/// Entries that are looked at; a chooser shows some dozen, and outlines may be loops.
constexpr int mostEntries = 4096;

constexpr std::size_t longestTitle = 200; ///< characters

/// A text string in UTF-16 or, nearly, ISO 8859-1; what is no text is a blank.
std::string plainText(std::string_view text) {
    std::u32string characters;
    if (text.starts_with("\xFE\xFF")) {
        characters = fromUtf16(std::as_bytes(std::span(text.substr(2))));
    } else {
        std::ranges::transform(text, std::back_inserter(characters), [](char c) {
            return static_cast<char32_t>(static_cast<unsigned char>(c));
        });
    }
    characters.resize(std::min(characters.size(), longestTitle));
    std::ranges::replace_if(
        characters, [](char32_t character) { return !isTextCharacter(character); }, U' ');
    return toUtf8(characters);
}

/// The number of the page's object that an entry leads to, or 0.
std::int32_t targetOf(DocumentCache& cache, const Object& entry) {
    ObjectOwner destination = lookupObject(cache, entry, "Dest");
    if (typeObject(destination.get()) == ObjectType::null) {
        const ObjectOwner action = lookupObject(cache, entry, "A");
        if (typeObject(action.get()) != ObjectType::dictionary) {
            return 0;
        }
        destination = lookupObject(cache, action.get(), "D");
    }
    if (typeObject(destination.get()) != ObjectType::array || sizeObject(destination.get()) == 0) {
        return 0;
    }
    const Object page = elementsObject(destination.get())[0];
    return referenced(page).number;
}

} // namespace

std::map<std::int32_t, std::string> pageTitles(DocumentCache& cache) {
    std::map<std::int32_t, std::string> titles;
    attempted([&] {
        const ObjectOwner root = lookupObject(cache, cache.trailer.get(), "Root");
        const ObjectOwner outline = lookupObject(cache, root.get(), "Outlines");
        if (typeObject(outline.get()) != ObjectType::dictionary) {
            return;
        }
        ObjectOwner entry = lookupObject(cache, outline.get(), "First");
        for (int i = 0; i < mostEntries; ++i) {
            if (typeObject(entry.get()) != ObjectType::dictionary) {
                return;
            }
            const ObjectOwner title = lookupObject(cache, entry.get(), "Title");
            const std::int32_t page = targetOf(cache, entry.get());
            if (page != 0 && typeObject(title.get()) != ObjectType::null) {
                titles.try_emplace(page, plainText(textObject(title.get())));
            }
            entry = lookupObject(cache, entry.get(), "Next");
        }
    });
    return titles;
}

} // namespace corvane
