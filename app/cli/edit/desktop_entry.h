// Programs as the desktop knows them: "*.desktop" files (Desktop Entry Specification 1.5).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct DesktopEntry {
    std::string path; ///< of the entry's file
    std::string name; ///< for people
    std::string exec; ///< the command line, with its codes for files
    std::string icon;
    std::vector<std::string> categories;
};

/// The entry in the file `path`. None where there is none for this machine: it is hidden, no
/// program, not installed (`TryExec`), or needs a terminal.
std::optional<DesktopEntry> readDesktopEntry(const std::string& path);

/// Whether what the entry says of itself leaves room for changing drawings. Viewers and browsers
/// open SVG as well, and are often the desktop's first choice.
bool isForDrawing(const DesktopEntry& entry);

/// The words that open `file`, an absolute path, with the entry's program. None where its command
/// line is not well formed, or takes no file.
std::optional<std::vector<std::string>> openingWords(const DesktopEntry& entry,
                                                     std::string_view file);

} // namespace corvane
