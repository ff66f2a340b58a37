#include "writer/font/new_fonts.h"

#include "objects/identity.h"
#include "reader/font/characters.h"
#include "runtime/budget.h"
#include "runtime/extension.h"
#include "runtime/warning.h"
#include "writer/font/font_objects.h"

namespace corvane {

NewFont* NewFonts::open(const std::string& path, std::int32_t face, bool isVertical) {
    if (const auto known = known_.find({path, face, isVertical}); known != known_.end()) {
        return known->second;
    }
    if (known_.size() >= budget::triedFonts) {
        return nullptr;
    }
    std::shared_ptr<const OpenTypeFont> font = OpenTypeFont::openFile(path, face);
    NewFont* const added = font ? &fonts_.emplace_back(std::move(font), isVertical) : nullptr;
    known_.emplace(std::tuple(path, face, isVertical), added);
    return added;
}

void NewFonts::noteLetters(const NewFont& font, std::string_view wanted,
                           std::u32string_view letters) {
    letters_[{&font, std::string(wanted)}].insert(letters.begin(), letters.end());
}

void NewFonts::finish() {
    for (NewFont& font : fonts_) {
        if (!font.codes().empty()) {
            font.finish();
        }
    }
}

std::string_view NewFonts::use(NewFont& font, ResourceRegistry& resources) {
    NewFontNumbers& numbers = font.numbers;
    if (numbers.font == 0) {
        for (std::int32_t* const number : {&numbers.font, &numbers.descendant, &numbers.descriptor,
                                           &numbers.program, &numbers.toUnicode}) {
            *number = nextIdentity();
        }
        if (!font.codesAreCids()) {
            numbers.encoding = nextIdentity();
        }
    }
    return resources.add(ResourceCategory::font, numbers.font, 0);
}

void NewFonts::write(DocumentCache& cache) const {
    for (const NewFont& font : fonts_) {
        if (font.numbers.font != 0) {
            writeFont(cache, font);
            tell(font);
        }
    }
}

void NewFonts::tell(const NewFont& font) const {
    const auto extension = knownExtension();
    for (const auto& [key, letters] : letters_) {
        const auto& [of, wanted] = key;
        if (of != &font) {
            continue;
        }
        if (!wanted.empty()) {
            raiseWarning(Warning::fontAdded);
        }
        if (extension && extension->fontAdded != nullptr) {
            const std::string text = toUtf8(std::u32string(letters.begin(), letters.end()));
            const OpenTypeFacts& facts = font.font().facts();
            const std::string& name =
                facts.fullName.empty() ? facts.postScriptName : facts.fullName;
            extension->fontAdded(extension->context,
                                 {.name = name, .letters = text, .wanted = wanted});
        }
    }
}

} // namespace corvane
