// The fonts of the machine that a save puts into the file, each once.
#pragma once

#include "reader/document/cache.h"
#include "writer/font/new_font.h"
#include "writer/page/resource_registry.h"

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

namespace corvane {

class NewFonts {
public:
    NewFonts() = default;
    NewFonts(NewFonts&&) = default;
    NewFonts& operator=(NewFonts&&) = default;

    /// Null where no document can get it, or too many were tried.
    NewFont* open(const std::string& path, std::int32_t face, bool isVertical);
    /// Letters are in the font; `wanted` is the family that the artwork asks for and that does not
    /// show them, or empty.
    void noteLetters(const NewFont& font, std::string_view wanted, std::u32string_view letters);

    /// All text is laid out: codes are known from now on.
    void finish();
    /// The name of a font in the resources; it is written with the page then.
    std::string_view use(NewFont& font, ResourceRegistry& resources);

    /// Writes the objects of the fonts in use, and tells the host of them.
    void write(DocumentCache& cache) const;

private:
    using Letters = std::map<std::pair<const NewFont*, std::string>, std::set<char32_t>>;

    void tell(const NewFont& font) const;

    /// By place, and whether for columns; null: none.
    std::map<std::tuple<std::string, std::int32_t, bool>, NewFont*> known_;
    std::deque<NewFont> fonts_; // in the order of use
    Letters letters_;
};

} // namespace corvane
