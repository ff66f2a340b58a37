// Values of CSS: which are read, and which are as if they were not there.
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane::test {
namespace {

/// Two elements that are to be read as the same art.
struct Same {
    std::string one;
    std::string other;
};

void expectSame(std::initializer_list<Same> rows) {
    for (const Same& row : rows) {
        const ReadArt read(foreignSvg(row.one));
        EXPECT_EQ(read.drawn(), redrawn(row.other)) << row.one;
        EXPECT_TRUE(read.reading.ignored.empty()) << row.one;
    }
}

std::string square(const std::string& attributes) {
    return "<rect width='20' height='10' " + attributes + "/>";
}

TEST(ReadCss, ColoursOfEveryWriting) {
    for (const auto& [written, colour] : std::initializer_list<Same>{
             {"hsl(.5turn 100% 50%)", "#00ffff"},
             {"hsl(200grad,100%,50%)", "#00ffff"},
             {"hsl(3.14159265rad 100% 50%)", "#00ffff"},
             {"hwb(180 20% 20%)", "#33cccc"},
             {"hwb(90 60% 60%)", "#808080"},
             {"RGB(none 255 255)", "#00ffff"},
             {"rgb(0 100% 255)", "#00ffff"},
             {"CyAn", "#00ffff"},
             {"#0ff icc-color(p 1)", "#00ffff"},
         }) {
        EXPECT_EQ(redrawn(square("fill='" + written + "'")),
                  redrawn(square("fill='" + colour + "'")))
            << written;
    }
    expectSame({{square("fill='rgb(0 0 255 / 50%)'"), square("fill='#00f' fill-opacity='.5'")},
                {"<g color='rgb(0 0 255 / .5)'>" + square("fill='CURRENTCOLOR'") + "</g>",
                 "<g>" + square("fill='#00f' fill-opacity='.5'") + "</g>"}});
    for (const char* const wrong :
         {"rgb(1,2)", "rgb(1,2%,3)", "hsl(1,2,3)", "rgb(1deg 2 3)", "red blue", "#12", "#12345g",
          "rgb(1 2 3 4)", "rgb(1,2,3,4,5)", "hsl(1foo 2% 3%)", "lab(50% 40 59)"}) {
        const ReadArt read(foreignSvg(square("fill='" + std::string(wrong) + "'")));
        EXPECT_EQ(read.ignored("colour"), 1) << wrong;
        EXPECT_EQ(read.drawn(), redrawn(square(""))) << wrong;
    }
}

TEST(ReadCss, WrongValuesLoseAgainstRightOnes) {
    const std::string line = "fill='none' stroke='#f00' ";
    expectSame({
        {square("fill='#00f' style='fill:nonsense'"), square("fill='#00f'")},
        {"<style>.a{fill:#00f;fill:3px}</style>" + square("class='a'"), square("fill='#00f'")},
        {square(line + "stroke-width='4' style='stroke-width:wide'"),
         square(line + "stroke-width='4'")},
        {square(line + "stroke-linejoin='round' style='stroke-linejoin:arcs'"),
         square(line + "stroke-linejoin='round'")},
        {square(line + "stroke-dasharray='4' style='stroke-dasharray:a b'"),
         square(line + "stroke-dasharray='4'")},
        {square("opacity='.5' style='opacity:.7px'"), square("opacity='.5'")},
        {"<g fill-rule='evenodd'>" + square("fill-rule='odd'") + "</g>",
         "<g>" + square("fill-rule='evenodd'") + "</g>"},
        {square("visibility='maybe' style='DISPLAY:BLOCK;FILL:NONE'"), square("fill='none'")},
        {"<style>&lt;!-- rect{fill:#00f} --&gt;</style>" + square(""), square("fill='#00f'")},
        {"<style type='text/x'>rect{fill:#00f}</style>" + square(""), square("")},
    });
}

TEST(ReadCss, KeywordsStandForOtherValues) {
    const std::string outer = "<g fill='#00f' stroke='#f00' stroke-width='4' opacity='.5'>";
    const std::string whole = square("fill='#00f' stroke='#f00' stroke-width='4'");
    expectSame({
        {outer + square("style='opacity:inherit'") + "</g>",
         outer + square("opacity='.5'") + "</g>"},
        {outer + square("style='fill:initial;stroke:unset;opacity:unset'") + "</g>",
         outer + square("fill='#000'") + "</g>"},
        {outer + square("style='stroke:initial'") + "</g>",
         outer + square("stroke='none'") + "</g>"},
        {outer + square("style='fill:revert'") + "</g>", "<g opacity='.5'>" + whole + "</g>"},
        {"<g style='mix-blend-mode:multiply'>" + square("style='mix-blend-mode:inherit'") + "</g>",
         "<g style='mix-blend-mode:multiply'>" + square("style='mix-blend-mode:multiply'") +
             "</g>"},
    });
}

TEST(ReadCss, TransformsAsPropertiesAndTheirOrigins) {
    expectSame({
        {square("transform='scale(2)' transform-origin='10 5'"),
         square("transform='translate(-10 -5) scale(2)'")},
        {square("transform='scale(2)' transform-origin='top right'"),
         square("transform='translate(-300 0) scale(2)'")},
        {square("transform='scale(2)' transform-origin='50%'"),
         square("transform='translate(-150 -100) scale(2)'")},
        {square("style='transform:translate(10px,20px) rotate(.25turn)'"),
         square("transform='translate(10 20) rotate(90)'")},
        {square("style='transform:translate(10%) scale(200%) skew(45deg)'"),
         square("transform='translate(30 0) scale(2) matrix(1 0 1 1 0 0)'")},
        {square("transform='scale(9)' style='transform:none'"), square("")},
        {"<style>rect{transform:translateY(5px) scaleX(2)}</style>" + square(""),
         square("transform='translate(0 5) scale(2 1)'")},
        // The transform of a clip is of the box that it is fitted to, too.
        {"<clipPath id='c' clipPathUnits='objectBoundingBox' transform='translate(4 0)'>"
         "<path d='M0 0H.5V1z'/></clipPath>" +
             square("clip-path='url(#c)'"),
         "<clipPath id='c'><path d='M4 0H14V10z'/></clipPath>" + square("clip-path='url(#c)'")},
    });
    for (const auto& [kind, style] : std::initializer_list<Same>{
             {"transform", "transform:rotate(30)"},
             {"transform", "transform:translate(5,5)"},
             {"transform", "transform:rotateX(5deg)"},
             {"transform", "rotate:5deg"},
             {"transform-box", "transform-box:fill-box"},
             {"CSS value", "stroke-width:calc(1px + 1px)"},
             {"all", "all:unset"},
         }) {
        EXPECT_EQ(ReadArt(foreignSvg(square("style='" + style + "'"))).ignored(kind), 1) << style;
    }
}

TEST(ReadCss, LengthsOfTheLineFollowThePageOrThePath) {
    const std::string line = "<path d='M0 0H40' stroke='#f00' ";
    expectSame({
        {"<g transform='scale(4 2)'>" + line +
             "stroke-width='4' stroke-dasharray='8' vector-effect='non-scaling-stroke'/></g>",
         "<g><path d='M0 0H160' stroke='#f00' stroke-width='3' stroke-dasharray='6'/></g>"},
        {line + "pathLength='10' stroke-dasharray='2 1' stroke-dashoffset='.5'/>",
         line + "stroke-dasharray='8 4' stroke-dashoffset='2'/>"},
        {line + "pathLength='-1' stroke-dasharray='2'/>", line + "stroke-dasharray='2'/>"},
        {square("x='1PT' y='2Px'"), square("x='1pt' y='2px'")},
    });
    EXPECT_EQ(ReadArt(foreignSvg(square("x='2rem'"), "font-size='9'")).ignored("CSS value"), 1);
    for (const char* const length : {"5vw", "3ch", "calc(1px)", "var(--x)"}) {
        const std::string body = "<rect x='" + std::string(length) + "' width='2' height='3'/>";
        EXPECT_EQ(ReadArt(foreignSvg(body)).ignored("CSS value"), 1) << length;
    }
}

TEST(ReadCss, TheRootIsThePage) {
    const ReadArt painted(foreignSvg(square(""), "style='background:#fed'"));
    EXPECT_EQ(painted.drawn(), redrawn("<path d='M0 200H300V0H0Z' fill='#fed'/>" + square("")));
    EXPECT_EQ(ReadArt(foreignSvg(square(""), "style='background-color:white'")).drawn(),
              redrawn(square("")));
    for (const auto& [kind, attributes] : std::initializer_list<Same>{
             {"background", "style='background:url(a.png)'"},
             {"transform", "transform='scale(2)'"},
             {"clip-path", "clip-path='url(#c)'"},
             {"hidden element", "display='none'"},
         }) {
        EXPECT_EQ(ReadArt(foreignSvg(square(""), attributes)).ignored(kind), 1) << attributes;
    }
}

TEST(ReadCss, ElementsForOthersAreHidden) {
    for (const auto& [attributes, isShown] : std::initializer_list<std::pair<const char*, bool>>{
             {"systemLanguage='de, en-GB'", true},
             {"systemLanguage='EN'", true},
             {"systemLanguage='french'", false},
             {"systemLanguage=''", false},
             {"requiredExtensions='urn:x'", false},
         }) {
        const ReadArt read(foreignSvg(square(attributes)));
        EXPECT_EQ(read.ignored("hidden element"), isShown ? 0 : 1) << attributes;
    }
}

} // namespace
} // namespace corvane::test
