# Writes a source that holds the files of the page:
#
#     cmake -D OUTPUT=embedded_page.cpp -D FOLDER=FOLDER -P embed-files.cmake

set(rows)
foreach(name index.html app.js app.css)
    file(READ ${FOLDER}/${name} digits HEX)
    string(LENGTH "${digits}" count)
    math(EXPR count "${count} / 2")
    string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${digits}")
    string(APPEND rows "    EmbeddedFile{\"${name}\", {\"${bytes}\", ${count}}},\n")
endforeach()
file(WRITE ${OUTPUT} "// Made of the bundle by cmake/embed-files.cmake.
#include \"app/web/embedded_page.h\"

#include <array>

namespace corvane {

std::span<const EmbeddedFile> embeddedPage() {
    static constexpr std::array files{
${rows}    };
    return files;
}

} // namespace corvane
")
