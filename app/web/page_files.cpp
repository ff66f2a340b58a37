#include "app/web/page_files.h"

#include "app/web/embedded_page.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace corvane {

std::optional<std::string> pageFile(std::string_view name) {
    if (const char* const folder = std::getenv("CORVANE_WEB_FOLDER"); folder && *folder != '\0') {
        std::ifstream file(std::string(folder) + "/" + std::string(name), std::ios::binary);
        return file ? std::optional(std::string(std::istreambuf_iterator<char>(file), {}))
                    : std::nullopt;
    }
    const auto files = embeddedPage();
    const auto file = std::ranges::find(files, name, &EmbeddedFile::name);
    return file == files.end() ? std::nullopt : std::optional(std::string(file->bytes));
}

} // namespace corvane
