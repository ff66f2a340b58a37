#include "fonts/encodings.h"
#include "fonts/glyph_list.h"
#include "fonts/glyph_names.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace corvane {
namespace {

TEST(GlyphNames, MeanCharacters) {
    const std::pair<const char*, std::u32string> rows[] = {
        {"A", U"A"},
        {"zukatakana", U"\u30BA"},
        {"afii10017", U"\u0410"},
        {"dalethatafpatah", U"\u05D3\u05B2"},
        {"f_f_i", U"ffi"},
        {"a.alt", U"a"},
        {".notdef", U""},
        {"uni00410042", U"AB"},
        {"uniD800", U""},
        {"uni004", U""},
        {"uni00e9", U""},
        {"u1F600", U"\U0001F600"},
        {"u110000", U""},
        {"Lcommaaccent_uni20AC0308_u1040C.alternate", U"\u013B\u20AC\u0308\U0001040C"},
        {"foo_A", U"A"},
        {"g123", U""},
        {"cid123", U""},
        {"glyph12", U""},
        {"", U""},
        {"_", U""}};
    for (const auto& [name, wanted] : rows) {
        EXPECT_EQ(charactersOfName(name), wanted) << name;
    }
    EXPECT_EQ(dingbatOfName("a1"), U'\u2701');
    EXPECT_EQ(dingbatOfName("a206"), U'\u2770');
    EXPECT_EQ(dingbatOfName("A"), 0U);
}

/// The names that are known without the list mean what it says.
TEST(GlyphNames, AgreeWithTheList) {
    const GlyphList list(packedGlyphList);
    for (int code = 0; code < 256; ++code) {
        const auto name =
            glyphNameOf(StandardEncodingKind::winAnsi, static_cast<std::uint8_t>(code));
        EXPECT_EQ(charactersOfName(name), list.find(name)) << name;
    }
}

TEST(Encodings, NameGlyphs) {
    using enum StandardEncodingKind;
    struct Row {
        StandardEncodingKind kind;
        std::uint8_t code;
        const char* wanted;
    };
    const Row rows[] = {
        {standard, 'A', "A"},          {standard, 39, "quoteright"}, {standard, 251, "germandbls"},
        {standard, 128, ""},           {winAnsi, 39, "quotesingle"}, {winAnsi, 128, "Euro"},
        {winAnsi, 129, "bullet"},      {winAnsi, 255, "ydieresis"},  {macRoman, 128, "Adieresis"},
        {macRoman, 222, "fi"},         {macRoman, 255, "caron"},     {macExpert, 87, "fi"},
        {macExpert, 251, "Ringsmall"}, {symbol, 97, "alpha"},        {symbol, 254, "bracerightbt"},
        {zapfDingbats, 33, "a1"},      {zapfDingbats, 254, "a191"},  {winAnsi, 31, ""}};
    for (const auto& [kind, code, wanted] : rows) {
        EXPECT_EQ(glyphNameOf(kind, code), wanted) << int{code};
    }
    EXPECT_EQ(macintoshCodeOf("Adieresis"), 128);
    EXPECT_EQ(macintoshCodeOf("notequal"), 173);
    EXPECT_EQ(macintoshCodeOf("alpha"), std::nullopt);
    EXPECT_EQ(macintoshCodeOf(""), std::nullopt);
}

/// A typing error in a table would give a name without a meaning.
TEST(Encodings, NamesHaveMeanings) {
    using enum StandardEncodingKind;
    for (const auto kind : {standard, winAnsi, macRoman, macExpert, symbol, zapfDingbats}) {
        for (int code = 0; code < 256; ++code) {
            const std::string_view name = glyphNameOf(kind, static_cast<std::uint8_t>(code));
            if (!name.empty()) {
                EXPECT_TRUE(!charactersOfName(name).empty() || dingbatOfName(name) != 0) << name;
            }
        }
    }
}

} // namespace
} // namespace corvane
