// Reads the text of a CMap: embedded ones, predefined ones, and those that give Unicode.
#pragma once

#include "reader/font/cmap/cmap.h"

#include <functional>
#include <string_view>

namespace corvane {

/// A CMap by its name, null where there is none.
using CMapFinder = std::function<std::shared_ptr<const CMap>(std::string_view name)>;

/// What is wrong in it is left out. `base` is what the CMap's stream refers to by UseCMap, or null;
/// a name in the text before "usecmap" is looked for by `find`.
std::shared_ptr<CMap> readCMap(std::span<const std::byte> file, std::shared_ptr<const CMap> base,
                               const CMapFinder& find);

} // namespace corvane
