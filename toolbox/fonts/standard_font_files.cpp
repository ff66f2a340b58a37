// The 14 standard fonts of PDF without a search: reading fontconfig's configuration takes longer
// than opening a small page.
#include "host/fonts.h"
#include "toolbox/fonts/font_names.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace corvane {

namespace {

struct StandardFile {
    std::string_view font;
    std::string_view file;
};

constexpr std::array<StandardFile, 14> standardFiles = {
    {{"Courier", "NimbusMonoPS-Regular.otf"},
     {"Courier-Bold", "NimbusMonoPS-Bold.otf"},
     {"Courier-BoldOblique", "NimbusMonoPS-BoldItalic.otf"},
     {"Courier-Oblique", "NimbusMonoPS-Italic.otf"},
     {"Helvetica", "NimbusSans-Regular.otf"},
     {"Helvetica-Bold", "NimbusSans-Bold.otf"},
     {"Helvetica-BoldOblique", "NimbusSans-BoldItalic.otf"},
     {"Helvetica-Oblique", "NimbusSans-Italic.otf"},
     {"Symbol", "StandardSymbolsPS.otf"},
     {"Times-Bold", "NimbusRoman-Bold.otf"},
     {"Times-BoldItalic", "NimbusRoman-BoldItalic.otf"},
     {"Times-Italic", "NimbusRoman-Italic.otf"},
     {"Times-Roman", "NimbusRoman-Regular.otf"},
     {"ZapfDingbats", "D050000L.otf"}}};

/// Where distributions put URW's base 35 fonts.
constexpr std::array<std::string_view, 3> folders = {"/usr/share/fonts/opentype/urw-base35",
                                                     "/usr/share/fonts/urw-base35",
                                                     "/usr/share/fonts/gsfonts"};

} // namespace

std::string standardFontFile(std::string_view name) {
    const auto* const found =
        std::ranges::find(standardFiles, withoutSubsetTag(name), &StandardFile::font);
    if (found == standardFiles.end()) {
        return {};
    }
    for (const std::string_view folder : folders) {
        const std::filesystem::path path = std::filesystem::path(folder) / found->file;
        std::error_code unreadable;
        if (std::filesystem::is_regular_file(path, unreadable)) {
            return path.string();
        }
    }
    return {};
}

} // namespace corvane
