// The extensions for Inkscape, compiled in: what the folder inkscape/ of the sources holds.
#pragma once

#include <span>
#include <string_view>

namespace corvane {

struct ExtensionFile {
    std::string_view name;
    std::string_view bytes;
};

std::span<const ExtensionFile> extensionFiles();

} // namespace corvane
