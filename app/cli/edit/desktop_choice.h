// Which program the desktop would open SVG with (MIME Application Associations 1.0), found out
// without running anything.
#pragma once

#include "app/cli/edit/desktop_entry.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Folders in which desktops keep their choices, best first.
struct DesktopFolders {
    std::vector<std::string> settings;     ///< of "mimeapps.list" alone
    std::vector<std::string> applications; ///< of entries, and of more such lists
    std::vector<std::string> desktops;     ///< names of the desktop in use, in lower case
};

/// As the environment says (XDG_CONFIG_HOME, XDG_DATA_DIRS, XDG_CURRENT_DESKTOP and so on).
/// Relative paths do not count.
DesktopFolders desktopFolders();

/// The first program for SVG that can be started here and is for drawing: of the defaults, then of
/// what was added by the person, then of what programs say of themselves.
std::optional<DesktopEntry> chosenForSvg(const DesktopFolders& folders);

} // namespace corvane
