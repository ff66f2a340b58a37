#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

namespace corvane::test {
namespace {

TEST(ReadStyle, ColoursOfEveryForm) {
    struct Row {
        const char* text;
        const char* wanted; ///< empty: not painted
    };
    const Row rows[] = {
        {"#f80", "#ff8800"},
        {"#F80c", "#ff8800\" fill-opacity=\".8"},
        {"#0a141E", "#0a141e"},
        {"rgb(10, 20,30)", "#0a141e"},
        {"rgb(100%,50%,0%)", "#ff8000"},
        {"rgba(10,20,30,.5)", "#0a141e\" fill-opacity=\".5"},
        {"rgb(300 -5 30 / 1)", "#ff001e"},
        {"hsl(120, 100%, 25%)", "#008000"},
        {"hsla(-120deg,100%,50%,1)", "#0000ff"},
        {"LightGoldenrodYellow", "#fafad2"},
        {"rebeccapurple", "#663399"},
        {"yellowgreen", "#9acd32"},
        {"currentColor", "#00ffff"},
        {"#cd853f icc-color(profile, 0.1, 0.4)", "#cd853f"},
        {"url(#nothing) red", "#ff0000"},
        {"url('other.svg#a') #0f0", "#00ff00"},
        {"url(#nothing)", ""},
        {"none", ""},
        {"transparent", ""},
        {"inherit", "#0000ff"},
        {"nonsense", "#0000ff"},
        {"#12345", "#0000ff"},
        {"rgb(1,2)", "#0000ff"},
    };
    for (const Row& row : rows) {
        const std::string drawn = redrawn("<g fill='blue' color='cyan'><path fill=\"" +
                                          std::string(row.text) + "\" d='M0 0H9'/></g>");
        const std::string fill = *row.wanted == '\0' ? "none" : row.wanted;
        EXPECT_EQ(drawn, "<g><path fill=\"" + fill + "\" d=\"M0 0H9\"/></g>") << row.text;
    }
}

TEST(ReadStyle, WhatIsSaidLastAndNearestWins) {
    struct Row {
        const char* sheet;
        const char* attributes;
        const char* wanted;
    };
    const Row rows[] = {
        {"", "fill='red'", "#ff0000"},
        {"", "fill='red' style='fill:lime'", "#00ff00"},
        {"path{fill:blue}", "fill='red'", "#0000ff"},
        {"path{fill:blue}", "style='fill : lime ;'", "#00ff00"},
        {"path{fill:blue!important}", "style='fill:lime'", "#0000ff"},
        {"path{fill:blue ! important}", "style='fill:lime !important'", "#00ff00"},
        {".a{fill:blue} path{fill:red}", "class='x a'", "#0000ff"},
        {"#p{fill:blue} .a.b{fill:red}", "class='b a' id='p'", "#0000ff"},
        {".a.b{fill:blue} .a{fill:red}", "class='b a'", "#0000ff"},
        {".a{fill:red} .b{fill:blue}", "class='b a'", "#0000ff"},
        {"path.a{fill:blue} .a{fill:red}", "class='a'", "#0000ff"},
        {"rect.a, .c , path#p.a{fill:blue}", "class='a' id='p'", "#0000ff"},
        {"*{fill:blue} rect{fill:red} .b{fill:red}", "class='ab'", "#0000ff"},
        {"/* path{fill:red} */ @media x{path{fill:red}} path{fill:blue}", "", "#0000ff"},
        {"path{fill:url(\"a;}#b\") blue;stroke:none}", "", "#0000ff"},
        {"g path{fill:red} path:hover{fill:red} path{fill:blue}", "", "#0000ff"},
    };
    for (const Row& row : rows) {
        const ReadArt art(foreignSvg("<style>" + std::string(row.sheet) + "</style><path " +
                                     row.attributes + " d='M0 0H9'/>"));
        EXPECT_EQ(art.drawn(), "<path fill=\"" + std::string(row.wanted) + "\" d=\"M0 0H9\"/>")
            << row.sheet << row.attributes;
    }
    const ReadArt counted(foreignSvg("<style>g a{fill:red} @import 'x'; a>b,c{}</style>"));
    EXPECT_EQ(counted.ignored("style rule"), 3);
}

TEST(ReadStyle, CommentsStandAnywhere) {
    EXPECT_EQ(redrawn("<path d='M0 0H9' style='/* a;b:c */fill:/**/red/* d */;"
                      "/* stroke:blue; */ stroke /**/: lime;fill-rule:evenodd/* stroke:red; */; /* "
                      "open; stroke:red'/>"),
              redrawn("<path d='M0 0H9' style='fill:red;stroke:lime;fill-rule:evenodd'/>"));
}

TEST(ReadStyle, StrokesInArtUnits) {
    const auto stroke = [](const std::string& attributes) {
        const std::string drawn = redrawn("<g transform='scale(2)'><path stroke='#000' fill='none' "
                                          "stroke-miterlimit='10' " +
                                          attributes + " d='M0 0H9'/></g>");
        const std::string before = "<g><path fill=\"none\" stroke=\"#000000\"";
        return drawn.substr(before.size(), drawn.find(" d=") - before.size());
    };
    EXPECT_EQ(stroke(""), " stroke-width=\"2\"");
    EXPECT_EQ(stroke("stroke-width='.5'"), "");
    EXPECT_EQ(stroke("stroke-width='.5' stroke-dasharray='1,2' stroke-dashoffset='3'"),
              " stroke-dasharray=\"2 4\" stroke-dashoffset=\"6\"");
    EXPECT_EQ(stroke("stroke-width='.5' stroke-dasharray='1 2 3'"), " stroke-dasharray=\"2 4 6\"");
    EXPECT_EQ(stroke("stroke-width='.5' stroke-dasharray='1 2 1 2 1 2 1 2'"),
              " stroke-dasharray=\"2 4\"");
    EXPECT_EQ(stroke("stroke-width='.5' stroke-dasharray='0 0'"), "");
    EXPECT_EQ(stroke("stroke-width='.5' stroke-dasharray='1 -1'"), "");
    EXPECT_EQ(stroke("style='stroke-width:.5;stroke-linecap:round;stroke-linejoin:bevel;"
                     "stroke-miterlimit:3'"),
              " stroke-linecap=\"round\" stroke-linejoin=\"bevel\" stroke-miterlimit=\"3\"");
    EXPECT_EQ(redrawn("<path stroke='red' stroke-width='0' d='M0 0H9'/>"), "<path d=\"M0 0H9\"/>");
    const ReadArt many(foreignSvg("<path stroke='red' stroke-dasharray='1 2 3 4 5 6 7 8'/>"));
    EXPECT_EQ(many.ignored("stroke-dasharray"), 1);
}

/// What a person changed in an editor wins over the exact value beside it; what an editor only
/// wrote in another way does not.
TEST(ReadStyle, TwinsHoldAsLongAsTheyLookAlike) {
    struct Row {
        const char* written;
        bool holds;
    };
    const Row rows[] = {
        {"fill='#e5ccb2' data-fill-cmyk='.1 .2 .3 0'", true},
        {"style='fill:rgb(229,204,178)' data-fill-cmyk='.1 .2 .3 0'", true},
        {"fill='#e5ccb3' data-fill-cmyk='.1 .2 .3 0'", false},
        {"fill='none' stroke='#000' stroke-width='0.2500001' data-stroke-width='0'", true},
        {"fill='none' stroke='#000' stroke-width='.5' data-stroke-width='0'", false},
        {"fill='none' stroke='#000' data-stroke-dasharray='0 0'", true},
        {"fill='none' stroke='#000' stroke-dasharray='1' data-stroke-dasharray='0 0'", false},
        {"style='fill:none' data-guide='true'", true},
        {"fill='red' data-guide='true'", false},
        {"fill='#4d4d4d' data-fill-gray='.3'", true},
        {"fill='#cfbda6' data-fill-spot='Sand' data-fill-cmyk='.1 .2 .3 .1'", false},
        {"fill='#ccb299' data-fill-spot='Sand' data-fill-cmyk='.1 .2 .3 .1'", true},
    };
    for (const Row& row : rows) {
        const ReadArt art(ourSvg("<path " + std::string(row.written) + " d='M0 0H9'/>"));
        EXPECT_EQ(art.svg().find(" data-", art.svg().find("<path")) != std::string::npos, row.holds)
            << row.written << '\n'
            << art.drawn();
    }
    const ReadArt moved(ourSvg("<g fill='#e5ccb2' data-fill-cmyk='.1 .2 .3 0'>"
                               "<path d='M0 0H9'/><path fill='red' d='M0 0H9'/></g>"));
    EXPECT_EQ(moved.drawn(), "<g><path fill=\"#e5ccb2\" data-fill-cmyk=\".1 .2 .3 0\" "
                             "d=\"M0 0H9\"/><path fill=\"#ff0000\" d=\"M0 0H9\"/></g>");
}

} // namespace
} // namespace corvane::test
