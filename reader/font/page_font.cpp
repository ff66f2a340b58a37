#include "reader/font/page_font.h"

#include "reader/font/font_entries.h"
#include "reader/font/simple_font.h"
#include "runtime/exception.h"

namespace corvane {

std::unique_ptr<PageFont> readFont(DocumentCache& cache, const Object& dictionary,
                                   std::int32_t number) {
    if (!isDictionary(dictionary)) {
        failException(Exception::type);
    }
    const std::string baseFont = nameEntry(cache, dictionary, "BaseFont");
    const ObjectOwner descriptor = entryOf(cache, dictionary, "FontDescriptor");
    FontNames names = namesOfFont(cache, dictionary, descriptor.get(), baseFont, number);
    ShownProgram program{.font = readEmbeddedProgram(cache, descriptor.get()), .isEmbedded = true};
    program.isEmbedded = program.font.program != nullptr;
    return std::make_unique<SimpleFont>(cache, dictionary, descriptor.get(), std::move(names),
                                        std::move(program), baseFont);
}

} // namespace corvane
