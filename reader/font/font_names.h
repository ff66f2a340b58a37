// Names of fonts: what a font of the page is called, and what its name and descriptor tell.
#pragma once

#include "host/text.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

/// What `FontFacts` shows.
struct FontNames {
    std::string family;     ///< of its own: "Corvane 0A1B2C Times-Roman"
    std::string realFamily; ///< "Times"
    GenericFamily generic = GenericFamily::sansSerif;
    std::int16_t weight = 400;
    bool italic = false;

    FontFacts facts() const;
};

/// Without the tag of a subset: "ABCDEF+Times" is "Times".
std::string_view withoutTag(std::string_view baseFont);

/// "TimesNewRomanPS-BoldMT" taken apart.
struct NameParts {
    std::string family;      ///< "Times New Roman"
    std::int16_t weight = 0; ///< 0: the name does not tell
    bool italic = false;
};
NameParts partsOfName(std::string_view baseFont);

/// `descriptor` may be null. `number` is the font object's, 0 for a direct one: its entries tell
/// such fonts apart.
FontNames namesOfFont(DocumentCache& cache, const Object& font, const Object& descriptor,
                      std::string_view baseFont, std::int32_t number);

} // namespace corvane
