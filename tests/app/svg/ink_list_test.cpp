// Mixtures of inks as attributes, and back.
#include "app/svg/paint/ink_list.h"
#include "host/inks.h"
#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace corvane::test {
namespace {

InkMixture mixed(const std::vector<std::pair<std::string, double>>& inks) {
    InkMixture mixture;
    for (const auto& [name, tint] : inks) {
        appendInkName(mixture.names, name);
        mixture.tints.push_back(fixed(tint));
    }
    mixture.seen = {.kind = ColourKind::process,
                    .component = {0, fixed(.25), fixed(.5), 0},
                    .origin = ColourOrigin::given};
    return mixture;
}

std::string listOf(const InkMixture& mixture) {
    StringSink sink;
    TextOutput out(sink);
    writeInkList(out, "inks", mixture);
    out.flush();
    return sink.text();
}

TEST(InkList, NoNameBreaksIt) {
    struct Row {
        std::string name;
        const char* text;
    };
    for (const Row& row : {
             Row{"Cyan", "Cyan"},
             Row{"PANTONE 123 C", "PANTONE 123 C"},
             Row{" a  b ", "%20a %20b%20"},
             Row{"1;2", "1%3B2"},
             Row{"50%", "50%25"},
             Row{"\"<&'>\"", "&quot;&lt;&amp;'&gt;&quot;"},
             Row{"Gr\xC3\xBCn", "Gr\xC3\xBCn"},
             Row{"Gr\xFCn\xC3", "Gr%FCn%C3"},
             Row{std::string("\0\n\x7F", 3), "%00%0A%7F"},
             Row{"\xEF\xBF\xBE\xC2\x85", "%EF%BF%BE%C2%85"},
             Row{std::string(longestInkName, ';'), nullptr},
         }) {
        const InkMixture mixture = mixed({{row.name, .5}, {"None", 0}, {row.name, 1}});
        if (row.text != nullptr) {
            const std::string name(row.text);
            EXPECT_EQ(listOf(mixture), " inks=\"" + name + " .5; None 0; " + name + " 1\"");
        }
        ArtBuilder art;
        PathStyle style = filled();
        style.fill = {.kind = ColourKind::inks};
        style.fill.source = art.document.addInkMixture(mixture);
        art.path(art.layerArt(), box(0, 0, 9, 9), style);
        const ReadArt read(art.svg());
        const Colour& fill =
            read.document
                .style(read.document.firstChild(read.document.layerArt(read.document.firstLayer())))
                .fill;
        ASSERT_EQ(fill.kind, ColourKind::inks) << row.name;
        EXPECT_EQ(read.document.inkMixture(fill.source), mixture) << row.name;
    }
}

TEST(InkList, WhatIsWrongIsNoList) {
    const Colour seen;
    const auto read = [&](std::string_view text) { return parseInkList(text, seen); };
    for (const char* const wrong : {"", ";", "Cyan", "Cyan .5 Gold", ".5", "%zz .5", "%4 .5",
                                    "Cyan nan", "Cyan 1,5", "Cyan .5; ;Gold x"}) {
        EXPECT_FALSE(read(wrong)) << wrong;
    }
    EXPECT_FALSE(read(std::string(longestInkName + 1, 'a') + " 1"));
    std::string many;
    for (std::size_t i = 0; i < mostInks; ++i) {
        many += "None 1;";
    }
    EXPECT_TRUE(read(many));
    EXPECT_FALSE(read(many + "None 1"));
    const auto edited = read("\n Cyan\t2 ;Deep  Sea -1; ");
    ASSERT_TRUE(edited);
    EXPECT_EQ(edited->tints, (std::vector<Fixed>{fixedOne, 0}));
    EXPECT_EQ(inkNames(edited->names), (std::vector<std::string_view>{"Cyan", "Deep  Sea"}));
}

/// What is seen is said exactly even where the visible colour says it, so that a change is noticed.
TEST(InkList, CountsWhileItsColourIsSeen) {
    struct Row {
        const char* paint;
        ColourKind kind;
    };
    for (const Row& row : {
             Row{"fill='#ff0000' data-fill-rgb='1 0 0' data-fill-inks='A .5; B 1'",
                 ColourKind::inks},
             Row{"fill='#808080' data-fill-gray='.5' data-fill-inks='A .5; B 1'", ColourKind::inks},
             Row{"fill='#00ff00' data-fill-rgb='1 0 0' data-fill-inks='A .5; B 1'",
                 ColourKind::process},
             Row{"fill='#ff0000' data-fill-inks='A .5; B 1'", ColourKind::process},
             Row{"fill='#ff0000' data-fill-rgb='1 0 0' data-fill-inks='A'", ColourKind::process},
         }) {
        const ReadArt read(ourSvg("<path " + std::string(row.paint) + " d='M0 0H9V9Z'/>"));
        const Art layer = read.document.layerArt(read.document.firstLayer());
        EXPECT_EQ(read.document.style(read.document.firstChild(layer)).fill.kind, row.kind)
            << row.paint;
    }
}

} // namespace
} // namespace corvane::test
