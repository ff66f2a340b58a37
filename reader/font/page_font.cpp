#include "reader/font/page_font.h"

#include "reader/font/font_entries.h"
#include "reader/font/kinds/composite_font.h"
#include "reader/font/kinds/simple_font.h"
#include "reader/font/kinds/type3_font.h"
#include "reader/font/substitute.h"
#include "runtime/exception.h"

namespace corvane {

namespace {

/// The first of DescendantFonts; null where there is none.
ObjectOwner descendantOf(DocumentCache& cache, const Object& font) {
    const ObjectOwner descendants = entryOf(cache, font, "DescendantFonts");
    if (descendants->type == ObjectType::array && sizeObject(descendants.get()) > 0) {
        return resolved(cache, elementsObject(descendants.get())[0]);
    }
    // Some writers leave the array out.
    return resolved(cache, descendants.get());
}

std::string baseFontOf(DocumentCache& cache, const Object& font, const Object& descriptor) {
    for (const auto& [object, key] :
         {std::pair(&font, "BaseFont"), std::pair(&descriptor, "FontName"),
          std::pair(&font, "Name")}) {
        std::string name = nameEntry(cache, *object, key);
        if (!name.empty()) {
            return name;
        }
    }
    return {};
}

/// The program that the document embeds, else one of the machine.
ShownProgram programOf(DocumentCache& cache, const Object& descriptor, std::string_view baseFont,
                       const FontNames& names, std::string_view collection) {
    EmbeddedProgram embedded = readEmbeddedProgram(cache, descriptor);
    if (embedded.program != nullptr) {
        return {.font = std::move(embedded), .isEmbedded = true};
    }
    return {.font = {.program = findSubstitute(baseFont, names, collection), .charge = {}},
            .isEmbedded = false};
}

} // namespace

std::unique_ptr<PageFont> readFont(DocumentCache& cache, const Object& dictionary,
                                   std::int32_t number) {
    if (!isDictionary(dictionary)) {
        failException(Exception::type);
    }
    const std::string subtype = nameEntry(cache, dictionary, "Subtype");
    ObjectOwner descendant = descendantOf(cache, dictionary);
    const bool isComposite = subtype == "Type0" || isDictionary(descendant.get());
    const ObjectOwner descriptor =
        entryOf(cache, isComposite ? *descendant : dictionary, "FontDescriptor");
    const std::string baseFont = baseFontOf(cache, dictionary, descriptor.get());
    FontNames names = namesOfFont(cache, dictionary, descriptor.get(), baseFont, number);
    if (subtype == "Type3") {
        return std::make_unique<Type3Font>(cache, dictionary, std::move(names));
    }
    if (isComposite) {
        CompositeParts parts(cache, dictionary, descendant.get());
        ShownProgram program =
            programOf(cache, descriptor.get(), baseFont, names, parts.collection);
        return std::make_unique<CompositeFont>(std::move(parts), std::move(names),
                                               std::move(program));
    }
    ShownProgram program = programOf(cache, descriptor.get(), baseFont, names, "");
    return std::make_unique<SimpleFont>(cache, dictionary, descriptor.get(), std::move(names),
                                        std::move(program), baseFont);
}

} // namespace corvane
