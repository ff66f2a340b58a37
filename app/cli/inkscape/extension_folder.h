// Where Inkscape looks for a person's own extensions.
#pragma once

#include <string>

namespace corvane {

struct ExtensionFolder {
    std::string path;         ///< of our folder in it, which need not be there yet
    bool hasInkscape = false; ///< Inkscape is installed
};

/// As Inkscape says; where it is not installed or says nothing, as INKSCAPE_PROFILE_DIR and the XDG
/// Base Directory Specification have it. Raises `Failure` where none of them names a folder.
ExtensionFolder extensionFolder();

} // namespace corvane
