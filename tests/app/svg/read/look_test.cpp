// Opacity, blending and masks in SVG: what is written comes back, and what others write is read.
#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace corvane::test {
namespace {

TEST(ReadLook, PropertiesOfOthers) {
    struct Row {
        const char* body;
        const char* drawn;
    };
    for (const Row& row : {
             Row{"<path opacity='.5' d='M0 0H9'/>", "<path opacity=\".5\" d=\"M0 0H9\"/>"},
             Row{"<path fill-opacity='0' d='M0 0H9'/>", "<path fill-opacity=\"0\" d=\"M0 0H9\"/>"},
             Row{"<path fill='rgba(0,0,0,.5)' fill-opacity='50%' d='M0 0H9'/>",
                 "<path fill-opacity=\".25\" d=\"M0 0H9\"/>"},
             Row{"<g stroke-opacity='.5'><path stroke='#000' d='M0 0H9'/></g>",
                 "<g><path stroke=\"#000000\" stroke-miterlimit=\"4\" stroke-opacity=\".5\""
                 " d=\"M0 0H9\"/></g>"},
             Row{"<g opacity='.5'><path opacity='.5' d='M0 0H9'/></g>",
                 "<g opacity=\".5\"><path opacity=\".5\" d=\"M0 0H9\"/></g>"},
             Row{"<use href='#a' opacity='.5'/><defs><path id='a' d='M0 0H9'/></defs>",
                 "<g opacity=\".5\"><path d=\"M0 0H9\"/></g>"},
             Row{"<g style='mix-blend-mode:screen;isolation:isolate'><path d='M0 0H9'/></g>",
                 "<g style=\"mix-blend-mode:screen;isolation:isolate\"><path d=\"M0 0H9\"/></g>"},
         }) {
        const ReadArt art(foreignSvg(row.body));
        EXPECT_EQ(art.drawn(), row.drawn) << row.body;
        EXPECT_TRUE(art.reading.ignored.empty()) << row.body;
    }
    EXPECT_EQ(ReadArt(foreignSvg("<path style='mix-blend-mode:plus-lighter' d='M0 0H9'/>"))
                  .ignored("mix-blend-mode"),
              1);
}

/// The art of the first mask, without the element itself.
std::string maskOf(const std::string& body) {
    const std::string drawn = redrawn(body);
    const std::size_t start = drawn.find('>', drawn.find("<mask")) + 1;
    return drawn.substr(start, drawn.find("</mask>") - start);
}

TEST(ReadLook, MasksOfOthers) {
    struct Row {
        const char* mask;
        const char* content;
    };
    const std::string shape = "<path mask='url(#m)' d='M100 50H200V100H100Z'/>";
    const std::string everywhere =
        "maskUnits='userSpaceOnUse' x='0' y='0' width='300' height='200'";
    for (const Row& row : {
             Row{"><path d='M0 0H9'/>", "<path d=\"M0 0H9\"/>"},
             Row{"><path fill='#0f0' d='M0 0H9'/>",
                 "<path fill=\"#b6b6b6\" data-fill-gray=\".7154\" d=\"M0 0H9\"/>"},
             Row{"mask-type='alpha'><path fill='#0f0' d='M0 0H9'/>",
                 "<path fill=\"#00ff00\" d=\"M0 0H9\"/>"},
             Row{"maskContentUnits='objectBoundingBox'><path d='M0 0H1V.5'/>",
                 "<path d=\"M100 50H200V75\"/>"},
         }) {
        const std::string mask = row.mask;
        EXPECT_EQ(maskOf("<mask id='m' " + everywhere + " " + mask + "</mask>" + shape),
                  row.content)
            << row.mask;
    }
    EXPECT_NE(maskOf("<mask id='m'><path d='M0 0H9'/></mask>" + shape)
                  .find("<clipPath><path d=\"M90 45H210V105H90Z\"/></clipPath>"),
              std::string::npos)
        << "the region that a mask has by itself";
}

TEST(ReadLook, MasksThatLeadNowhere) {
    EXPECT_EQ(ReadArt(foreignSvg("<path mask='url(#x)' d='M0 0H9'/>")).ignored("mask"), 1);
    const ReadArt itself(foreignSvg("<mask id='m'><path mask='url(#m)' d='M0 0H9'/></mask>"
                                    "<path mask='url(#m)' d='M0 0H9'/>"));
    EXPECT_EQ(itself.ignored("circular reference"), 1);
}

TEST(ReadLook, TheOriginalProfileCounts) {
    ReadArt art(
        ourSvg("<path opacity='0' d='M0 0H9'/><path fill-opacity='.5' d='M0 0H9'/>"
               "<g opacity='.5' style='mix-blend-mode:hue' mask='url(#m)'><path d='M0 0H9'/>"
               "</g>",
               "data-profile='original'"));
    EXPECT_EQ(art.ignored("opacity"), 2);
    EXPECT_EQ(art.ignored("mix-blend-mode"), 1);
    EXPECT_EQ(art.ignored("mask"), 1);
    EXPECT_EQ(art.drawn(), "<path fill=\"none\" d=\"M0 0H9\"/><path d=\"M0 0H9\"/><g><path "
                           "d=\"M0 0H9\"/></g>");
}

TEST(ReadLook, OursComesBack) {
    ArtBuilder art;
    Document& document = art.document;
    const auto addMask = [&](MaskFacts facts, SoftMask within) {
        facts.content = document.makeArtwork();
        const Art path = art.path(facts.content, box(10, 10, 90, 90), filled(0));
        document.setAppearance(path, {.mask = within});
        return document.addMask(facts);
    };
    const std::array<double, 3> curve{0, .75, 1};
    const std::array<double, 2> turned{1, 0};
    const SoftMask light =
        addMask({.isLuminosity = true, .backdrop = .4, .transfer = curve}, SoftMask::null);
    const SoftMask alpha = addMask({.transfer = turned}, light);
    const Art group = art.group(art.layerArt());
    document.setAppearance(group, {.opacity = .5, .isIsolated = true, .isKnockout = true});
    const Art inner = art.group(group);
    document.setAppearance(inner, {.blend = BlendMode::luminosity, .mask = light});
    document.setAppearance(art.path(inner, box(0, 0, 10, 10), filled()), {.fillOpacity = .25});
    document.setAppearance(art.path(group, box(0, 0, 50, 50), filled()), {.mask = alpha});
    const Art text = document.make(ArtKind::text, Placement::inside, group);
    TextLine line;
    const Fixed half = fixed(std::sqrt(.5));
    line.matrix = {half, half, -half, half, fixed(20), fixed(30)};
    document.setTextLine(text, line);
    document.addTextRun(text, {.font = document.addFont({.family = "Font"}),
                               .size = fixed(10),
                               .text = "Seen",
                               .style = filled(),
                               .fillOpacity = .5});
    PathStyle penned = stroked(3);
    penned.pen = {1, 0, .5};
    document.setAppearance(art.path(group, box(0, 0, 40, 50), penned),
                           {.opacity = .5, .mask = alpha});
    document.setAppearance(text, {.opacity = .75,
                                  .blend = BlendMode::darken,
                                  .mask = alpha,
                                  .overprint = {.strokes = true, .skipsZeros = true}});
    document.setAppearance(art.path(group, box(0, 0, 9, 9), filled()),
                           {.overprint = {.fills = true}, .intent = RenderingIntent::saturation});
    document.setAppearance(art.layerArt(), {.opacity = .9});

    const std::string written = art.svg();
    const ReadArt read(written);
    EXPECT_TRUE(read.reading.ignored.empty()) << read.reading.ignored.begin()->first;
    EXPECT_EQ(read.svg(), written);
    EXPECT_NE(written.find("<g opacity=\".5\" mask=\"url(#mask2)\"><path"), std::string::npos)
        << written;
}

} // namespace
} // namespace corvane::test
