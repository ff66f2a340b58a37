// The page, compiled in: its document, script and looks.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The bytes of "index.html", "app.js" or "app.css": those in the folder that CORVANE_WEB_FOLDER
/// names, else those of the program. None where there is no such file.
std::optional<std::string> pageFile(std::string_view name);

} // namespace corvane
