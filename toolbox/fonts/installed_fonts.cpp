#include "toolbox/fonts/installed_fonts.h"
#include "toolbox/fonts/font_configuration.h"
#include "toolbox/fonts/font_names.h"

#include <algorithm>
#include <tuple>

namespace corvane {

namespace {

std::string textOf(FcPattern* pattern, const char* key, int place = 0) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, key, place, &text) != FcResultMatch) {
        return {};
    }
    return static_cast<const char*>(static_cast<const void*>(text));
}

int numberOf(FcPattern* pattern, const char* key, int otherwise) {
    int value = 0;
    return FcPatternGetInteger(pattern, key, 0, &value) == FcResultMatch ? value : otherwise;
}

InstalledFont fontOf(FcPattern* pattern) {
    InstalledFont font;
    font.path = textOf(pattern, FC_FILE);
    font.face = numberOf(pattern, FC_INDEX, 0);
    font.postScriptName = textOf(pattern, FC_POSTSCRIPT_NAME);
    for (int i = 0;; ++i) {
        const std::string family = textOf(pattern, FC_FAMILY, i);
        if (family.empty()) {
            break;
        }
        if (i == 0) {
            font.family = family;
        }
        font.families.push_back(fontStem(family));
    }
    font.weight = FcWeightToOpenType(numberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR));
    font.width = numberOf(pattern, FC_WIDTH, FC_WIDTH_NORMAL);
    font.isItalic = numberOf(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN;
    font.isFixedPitch = numberOf(pattern, FC_SPACING, FC_PROPORTIONAL) >= FC_MONO;
    const std::string format = textOf(pattern, FC_FONTFORMAT);
    font.isTrueType = format == "TrueType";
    font.isType1 = format == "Type 1";
    FcCharSet* characters = nullptr;
    if (FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) == FcResultMatch) {
        font.characters = characters;
    }
    return font;
}

bool isReadable(const InstalledFont& font) {
    return !font.path.empty() && !font.families.empty();
}

} // namespace

bool InstalledFont::covers(std::u32string_view text) const {
    return std::ranges::all_of(text, [this](char32_t character) {
        return characters != nullptr && FcCharSetHasChar(characters, character) == FcTrue;
    });
}

InstalledFonts::InstalledFonts() : config_(readFontConfiguration()) {
    const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> wanted(FcPatternCreate(),
                                                                         &FcPatternDestroy);
    const std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)> facts(
        FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FAMILY, FC_POSTSCRIPT_NAME, FC_WEIGHT, FC_WIDTH,
                         FC_SLANT, FC_SPACING, FC_FONTFORMAT, FC_CHARSET, nullptr),
        &FcObjectSetDestroy);
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcPatternAddBool(wanted.get(), FC_VARIABLE, FcFalse);
    set_.reset(FcFontList(config_.get(), wanted.get(), facts.get()));
    if (!set_) {
        return;
    }
    for (int i = 0; i < set_->nfont; ++i) {
        if (InstalledFont font = fontOf(set_->fonts[i]); isReadable(font)) {
            list_.push_back(std::move(font));
        }
    }
    std::ranges::sort(list_, {},
                      [](const InstalledFont& font) { return std::tie(font.path, font.face); });
}

const InstalledFonts& installedFonts() {
    static const InstalledFonts installed;
    return installed;
}

} // namespace corvane
