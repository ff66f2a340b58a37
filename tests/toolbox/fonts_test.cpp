#include "host/fonts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>

namespace corvane {
namespace {

std::string nameOf(const std::optional<FoundFont>& font) {
    return font ? std::filesystem::path(font->path).stem().string() : "";
}

/// The URW base 35 fonts are among the packages that the program needs.
TEST(Fonts, StandardFontsHaveStandIns) {
    const std::pair<const char*, const char*> rows[] = {
        {"Helvetica", "NimbusSans-Regular"},
        {"ABCDEF+Helvetica-BoldOblique", "NimbusSans-BoldItalic"},
        {"ArialMT", "NimbusSans-Regular"},
        {"Arial,Bold", "NimbusSans-Bold"},
        {"Arial-BoldItalicMT", "NimbusSans-BoldItalic"},
        {"Times-Roman", "NimbusRoman-Regular"},
        {"TimesNewRomanPSMT", "NimbusRoman-Regular"},
        {"TimesNewRomanPS-BoldItalicMT", "NimbusRoman-BoldItalic"},
        {"Times New Roman,Italic", "NimbusRoman-Italic"},
        {"CourierNew,Bold", "NimbusMonoPS-Bold"},
        {"CourierNewPS-BoldItalicMT", "NimbusMonoPS-BoldItalic"},
        {"Courier-Oblique", "NimbusMonoPS-Italic"},
        {"Symbol", "StandardSymbolsPS"},
        {"SymbolMT", "StandardSymbolsPS"},
        {"ZapfDingbats", "D050000L"},
        {"Palatino-BoldItalic", "P052-BoldItalic"},
        {"NewCenturySchlbk-Roman", "C059-Roman"},
        {"AvantGarde-DemiOblique", "URWGothic-DemiOblique"},
        {"NimbusRomNo9L-MediItal", "NimbusRoman-BoldItalic"},
        {"NimbusSanL-Regu", "NimbusSans-Regular"},
        {"Helvetica-Narrow-Bold", "NimbusSansNarrow-Bold"}};
    for (const auto& [name, wanted] : rows) {
        const auto found = findFont({.name = name});
        EXPECT_EQ(nameOf(found), wanted) << name;
        EXPECT_EQ(std::filesystem::path(found->path).extension(), ".otf") << name;
        EXPECT_EQ(found->match, FontMatch::standIn) << name;
    }
}

/// Where it has a file at all, it is the one that a search finds.
TEST(Fonts, StandardFontsNeedNoSearch) {
    for (const std::string style : {"", "-Bold", "-Oblique", "-BoldOblique"}) {
        for (const std::string family : {"Helvetica", "Courier"}) {
            EXPECT_EQ(standardFontFile(family + style), findFont({.name = family + style})->path);
        }
    }
    for (const std::string name : {"Times-Roman", "Times-Bold", "Times-Italic",
                                   "ABCDEF+Times-BoldItalic", "Symbol", "ZapfDingbats"}) {
        EXPECT_EQ(standardFontFile(name), findFont({.name = name})->path);
    }
    EXPECT_EQ(standardFontFile("Arial"), "");
    EXPECT_EQ(standardFontFile("../Courier"), "");
}

TEST(Fonts, AreFoundByNameStyleAndKind) {
    FontRequest request{.name = "P052-Italic"};
    EXPECT_EQ(findFont(request)->match, FontMatch::named);
    EXPECT_EQ(nameOf(findFont(request)), "P052-Italic");
    request = {.name = "Nimbus Roman", .weight = 700, .isItalic = true};
    EXPECT_EQ(nameOf(findFont(request)), "NimbusRoman-BoldItalic");
    EXPECT_EQ(findFont(request)->match, FontMatch::named);
    request = {.name = "No Such Family", .weight = 600, .isSerif = true};
    EXPECT_EQ(nameOf(findFont(request)), "NimbusRoman-Bold");
    EXPECT_EQ(findFont(request)->match, FontMatch::similar);
    // Many documents do not say that these have serifs.
    EXPECT_EQ(nameOf(findFont({.name = "ABCDEF+CMR10"})), "NimbusRoman-Regular");
    EXPECT_EQ(nameOf(findFont({.name = "LMMono10-Regular"})), "NimbusMonoPS-Regular");
    request = {.name = "", .isFixedPitch = true};
    EXPECT_EQ(nameOf(findFont(request)), "NimbusMonoPS-Regular");
    // Beside each of these fonts there is one in the form Type 1.
    request = {.name = "P052", .passedOver = {findFont({.name = "P052"})->path}};
    const auto type1 = findFont(request);
    if (type1 && std::filesystem::path(type1->path).extension() != ".otf") {
        request.isOpenType = true;
        EXPECT_EQ(std::filesystem::path(findFont(request)->path).extension(), ".otf");
    }
    // No font has all of these; the name decides.
    request = {.name = "Helvetica", .characters = U"\U0010FFFDA"};
    EXPECT_EQ(nameOf(findFont(request)), "NimbusSans-Regular");
    // Symbols have the first of these, and no sans serif.
    request = {.name = "Helvetica", .characters = U"\u2701"};
    EXPECT_EQ(findFont(request)->match, FontMatch::similar);
}

} // namespace
} // namespace corvane
