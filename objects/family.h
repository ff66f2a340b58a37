// Font families: the fonts that a page being written refers to.
#pragma once

#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

namespace corvane {

/// A Type 1 font whose name holds "_" is an instance of a Multiple Master font.
enum class FontTechnology : std::int16_t { type1 = 0, trueType = 1 };

/// One record of the list, newest first. `resourceName` is a length byte, the text, a terminator.
struct Family {
    Ref<Family> next;
    std::int32_t number = 0; ///< of the font's object
    std::int32_t generation = 0;
    Ref<char> resourceName;
    Ref<char> fontName; ///< of the host, zero-terminated
    FontTechnology technology = FontTechnology::type1;
};
static_assert(offsetof(Family, resourceName) == 12 && offsetof(Family, technology) == 20);

void openFamily();
/// Finds the family of this font or adds one, which takes the next identity. Its resource name, its
/// length byte first: "F1" is 2, 'F', '1'. Valid until `closeFamily`. A full zone raises `memory`,
/// and nothing is added.
std::string_view appendFamily(std::string_view fontName, FontTechnology technology);
std::int32_t countFamily();
/// The resource name of a record as `appendFamily` returned it.
std::string_view resourceNameFamily(const Family& family);
/// Calls `procedure` for each family, newest first.
void forallFamily(const std::function<void(const Family&)>& procedure);
void closeFamily();

} // namespace corvane
