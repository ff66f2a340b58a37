// What blends within clips: no element that is clipped may stand between it and what is behind.
#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace corvane::test {
namespace {

const std::vector<Point> triangle{at(10, 10), at(290, 20), at(150, 190)};
constexpr Appearance multiplied{.blend = BlendMode::multiply};

/// Each path by its place, with the number of clips around it and how it and they are mixed.
std::string looks(const Document& document, Art top, std::string around = "") {
    std::string text;
    for (Art art = document.lastChild(top); art != Art::null; art = document.previousSibling(art)) {
        const auto blend = static_cast<int>(document.appearance(art).blend);
        if (document.kind(art) == ArtKind::group) {
            const std::string clip = document.clipped(art) ? "c" : "";
            text += looks(document, art, around + clip + (blend != 0 ? std::to_string(blend) : ""));
        } else if (document.style(art).clip == 0) {
            text += std::to_string(document.segments(art)[0].anchor.x / fixedOne) + ":" + around +
                    "/" + std::to_string(blend) + " ";
        }
    }
    return text;
}

std::string readLooks(const std::string& svg) {
    const ReadArt read(svg);
    return looks(read.document, read.document.layerArt(read.document.firstLayer()));
}

struct BlendsInClips : ::testing::Test {
    Art blended(Art clipped, double left) {
        const Art path = art.behindClip(clipped, box(left, 20, left + 50, 150), filled());
        art.document.setAppearance(path, multiplied);
        return path;
    }
    /// What is written and read again is as it was.
    void expectSame() {
        const std::string before = looks(art.document, art.layerArt());
        const std::string written = art.svg();
        EXPECT_EQ(readLooks(written), before) << written;
        EXPECT_EQ(readLooks(ReadArt(written).svg()), before);
    }

    ArtBuilder art;
};

TEST_F(BlendsInClips, OneThingSaysItOnItsGroup) {
    blended(art.clippedGroup(art.layerArt(), triangle), 100);
    EXPECT_EQ(art.layerText(),
              "  <clipPath id=\"clip1\"><path d=\"M10 190 290 180 150 10Z\"/></clipPath>\n"
              "  <g id=\"g1\" style=\"mix-blend-mode:multiply\" clip-path=\"url(#clip1)\">\n"
              "   <path id=\"p1\" d=\"M100 180H150V50H100Z\"/>\n"
              "  </g>");
    expectSame();
}

TEST_F(BlendsInClips, ThingsThatBlendAreClippedByThemselves) {
    const Art group = art.clippedGroup(art.layerArt(), triangle);
    art.behindClip(group, box(20, 20, 90, 150), filled());
    art.behindClip(group, box(40, 20, 90, 150), filled());
    blended(group, 100);
    art.behindClip(group, box(200, 20, 250, 150), filled());
    const std::string text = art.layerText();
    EXPECT_EQ(text.substr(text.find('\n') + 1),
              "  <g id=\"g1\">\n"
              "   <g id=\"g2\" clip-path=\"url(#clip1)\">\n"
              "    <path id=\"p1\" d=\"M20 180H90V50H20Z\"/>\n"
              "    <path id=\"p2\" d=\"M40 180H90V50H40Z\"/>\n"
              "   </g>\n"
              "   <g id=\"g3\" style=\"mix-blend-mode:multiply\" clip-path=\"url(#clip1)\">\n"
              "    <path id=\"p3\" d=\"M100 180H150V50H100Z\"/>\n"
              "   </g>\n"
              "   <g id=\"g4\" clip-path=\"url(#clip1)\">\n"
              "    <path id=\"p4\" d=\"M200 180H250V50H200Z\"/>\n"
              "   </g>\n"
              "  </g>");
    expectSame();
}

TEST_F(BlendsInClips, ClipsWithinClipsGoAlong) {
    const Art outer = art.clippedGroup(art.layerArt(), triangle);
    art.behindClip(outer, box(200, 20, 250, 150), filled());
    const Art inner = art.groupBehindClip(outer);
    PathStyle clip;
    clip.clip = 1;
    art.path(inner, box(60, 60, 200, 90), clip);
    art.document.setClipped(inner, true);
    blended(inner, 100);
    art.behindClip(inner, box(40, 20, 90, 150), filled());
    const std::string text = art.layerText();
    EXPECT_NE(
        text.find("<g id=\"g4\" style=\"mix-blend-mode:multiply\" clip-path=\"url(#clip1)\">\n"
                  "     <g id=\"g5\" clip-path=\"url(#clip2)\">\n"
                  "      <path id=\"p2\" d="),
        std::string::npos)
        << text;
    expectSame();
}

/// A group that is painted by itself first keeps its clip: nothing in it is mixed with what is
/// behind it.
TEST_F(BlendsInClips, GroupsThatArePaintedApartKeepTheirClip) {
    for (const Appearance& look :
         {Appearance{.opacity = .5}, Appearance{.isIsolated = true}, multiplied}) {
        ArtBuilder page;
        const Art group = page.clippedGroup(page.layerArt(), triangle);
        const Art path = page.behindClip(group, box(100, 20, 150, 150), filled());
        page.behindClip(group, box(40, 20, 90, 150), filled());
        page.document.setAppearance(path, multiplied);
        page.document.setAppearance(group, look);
        const std::string text = page.layerText();
        EXPECT_NE(text.find("clip-path=\"url(#clip1)\">\n   <path id=\"p1\""), std::string::npos)
            << text;
        EXPECT_EQ(readLooks(page.svg()), looks(page.document, page.layerArt()));
    }
}

/// Browsers paint what is clipped by itself first, and editors draw it so.
TEST(ReadBlends, ClippedGroupsOfOtherProgramsAreIsolated) {
    const std::string clip = "<clipPath id='c'><path d='M0 0H50L9 90Z'/></clipPath>";
    const std::string mixed = "<path style='mix-blend-mode:multiply' d='M5 5H9V9Z'/>";
    const std::string other = "<path d='M1 1H9V9Z'/>";
    struct {
        std::string body;
        bool isIsolated;
    } const rows[] = {
        {"<g clip-path='url(#c)'>" + other + mixed + "</g>", true},
        {"<g clip-path='url(#c)'><g>" + mixed + "</g>" + other + "</g>", true},
        {"<g clip-path='url(#c)'>" + other + other + "</g>" + mixed, false},
        {"<g clip-path='url(#c)'><g opacity='.5'>" + mixed + "</g>" + other + "</g>", false},
        {"<g clip-path='url(#c)'>" + mixed + "</g>", true},
        {"<g>" + mixed + other + "</g>", false},
        {"<svg width='20' height='4'>" + mixed + other + "</svg>", false},
    };
    for (const auto& row : rows) {
        const ReadArt read(foreignSvg(clip + row.body));
        EXPECT_EQ(read.svg().find("isolation:isolate\" clip") != std::string::npos, row.isIsolated)
            << row.body;
    }
}

/// Groups of clips that hold one thing each, deeper than elements may stand.
TEST_F(BlendsInClips, DeepClipsStandNoDeeperThanOthers) {
    for (const bool hasOthers : {false, true}) {
        ArtBuilder deep;
        Art group = deep.clippedGroup(deep.layerArt(), triangle);
        for (int i = 0; i < 300; ++i) {
            if (hasOthers) {
                deep.behindClip(group, box(40, 20, 90, 150), filled());
            }
            const Art inner = deep.groupBehindClip(group);
            PathStyle clip;
            clip.clip = 1;
            deep.path(inner, triangle, clip);
            deep.document.setClipped(inner, true);
            group = inner;
        }
        deep.document.setAppearance(deep.behindClip(group, box(1, 1, 99, 99), filled()),
                                    multiplied);
        const std::string text = deep.svg();
        std::size_t indent = 0;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);) {
            indent = std::max(indent, line.find_first_not_of(' '));
        }
        EXPECT_LT(indent, 200U);
        EXPECT_NE(ReadArt(text).svg(), "failed");
    }
}

} // namespace
} // namespace corvane::test
