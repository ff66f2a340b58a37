// The files of the page as they were compiled in.
#pragma once

#include <span>
#include <string_view>

namespace corvane {

struct EmbeddedFile {
    std::string_view name;
    std::string_view bytes;
};

std::span<const EmbeddedFile> embeddedPage();

} // namespace corvane
