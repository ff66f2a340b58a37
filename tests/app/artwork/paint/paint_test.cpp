// Gradients, patterns, custom colours and notes of a document: handles, budget, what styles may
// use.
#include "tests/app/artwork/host_table.h"

#include "app/artwork/paint/paint.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace corvane {
namespace {

Gradient gradientTo(double x) {
    Gradient gradient;
    gradient.x2 = x;
    gradient.stops = {{0, {}}, {1, {}}};
    return gradient;
}

struct PaintTest : testing::Test {
    Art layerArt() const { return host.document.layerArt(host.document.firstLayer()); }
    Art path(Art in) { return host.make(ArtKind::path, Placement::inside, in); }

    bool takes(Art path, ColourKind kind, PaintSource source) {
        PathStyle style = host.document.style(path);
        style.fill.kind = kind;
        style.fill.source = source;
        return host(slot::setPathStyle, path, &style) == HostError::none;
    }

    Pattern pattern(Art tile) {
        Pattern made;
        made.tile = tile;
        made.right = made.top = made.stepX = made.stepY = 4;
        return made;
    }

    HostTable host;
};

TEST_F(PaintTest, equalRecordsAreOne) {
    Document& document = host.document;
    const PaintSource first = document.addGradient(gradientTo(1));
    const std::int64_t used = document.budget().used();
    Gradient same = gradientTo(1);
    same.y1 = -0.0;
    for (int i = 0; i < 10000; ++i) {
        ASSERT_EQ(document.addGradient(same), first);
    }
    EXPECT_EQ(document.budget().used(), used);
    EXPECT_NE(document.addGradient(gradientTo(2)), first);
    EXPECT_EQ(document.gradient(first), gradientTo(1));

    const PaintSource red = document.addSpotColour({"Red", {0, 1, 2, 3}});
    EXPECT_EQ(document.addSpotColour({"Red", {0, 1, 2, 3}}), red);
    EXPECT_NE(document.addSpotColour({"Red", {0, 1, 2, 4}}), red);
    const Note note = document.addNote("x");
    EXPECT_EQ(document.addNote("x"), note);
    EXPECT_NE(document.addNote(""), note);
    EXPECT_EQ(document.note(note), "x");
}

TEST_F(PaintTest, manyRecordsAreFoundAgainAndStayWhereTheyAre) {
    const PaintSource first = host.document.addGradient(gradientTo(0));
    const Gradient* const at = &host.document.gradient(first);
    std::vector<PaintSource> sources;
    for (int i = 0; i < 5000; ++i) {
        sources.push_back(host.document.addGradient(gradientTo(i)));
    }
    EXPECT_EQ(at, &host.document.gradient(first));
    for (int i = 0; i < 5000; ++i) {
        const PaintSource source = sources[static_cast<std::size_t>(i)];
        ASSERT_EQ(host.document.gradient(source).x2, i);
        ASSERT_EQ(host.document.addGradient(gradientTo(i)), source);
    }
}

TEST_F(PaintTest, handlesOfNothingAndOfOtherKindsAreRefused) {
    Document& document = host.document;
    const Art tile = document.makeArtwork();
    const std::array sources{document.addGradient(gradientTo(1)),
                             document.addPattern(pattern(tile)),
                             document.addSpotColour({"Red", {}})};
    constexpr std::array kinds{ColourKind::gradient, ColourKind::pattern, ColourKind::custom};
    const Art art = path(layerArt());
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        for (std::size_t source = 0; source < sources.size(); ++source) {
            EXPECT_EQ(takes(art, kinds[kind], sources[source]), kind == source);
        }
        const auto handle = static_cast<std::uint32_t>(sources[kind]);
        for (const std::uint32_t wrong : {0U, 1U, handle + 1, handle - 1, 0xFFFFFFFFU}) {
            EXPECT_FALSE(takes(art, kinds[kind], static_cast<PaintSource>(wrong)));
        }
        EXPECT_EQ(document.paintKind(sources[kind]), kinds[kind]);
    }
    EXPECT_FALSE(takes(art, static_cast<ColourKind>(6), sources[0]));
    EXPECT_TRUE(takes(art, ColourKind::gray, static_cast<PaintSource>(77)));
    EXPECT_THROW(document.gradient(sources[1]), ArtworkError);
    EXPECT_THROW(document.pattern(sources[0]), ArtworkError);
    EXPECT_THROW(document.spotColour(PaintSource::null), ArtworkError);
    EXPECT_THROW(document.paintKind(PaintSource::null), ArtworkError);
    EXPECT_THROW(document.note(Note::null), ArtworkError);

    PathStyle style;
    style.note = static_cast<Note>(1);
    EXPECT_EQ(host(slot::setPathStyle, art, &style), HostError::failed);
    style.note = document.addNote("seen");
    EXPECT_EQ(host(slot::setPathStyle, art, &style), HostError::none);
    EXPECT_EQ(document.style(art).note, style.note);
}

TEST_F(PaintTest, valuesWithoutMeaningAreRefused) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double endless = std::numeric_limits<double>::infinity();
    const std::function<void(Gradient&)> wrongGradients[] = {
        [](Gradient& g) { g.stops.clear(); },
        [](Gradient& g) { g.stops[1].offset = 1.01; },
        [](Gradient& g) { g.stops[0].offset = -0.01; },
        [](Gradient& g) { std::swap(g.stops[0].offset, g.stops[1].offset); },
        [](Gradient& g) { g.stops[1].offset = nan; },
        [](Gradient& g) { g.stops[1].colour.kind = ColourKind::gradient; },
        [](Gradient& g) { g.r1 = -1; },
        [](Gradient& g) { g.x2 = endless; },
        [](Gradient& g) { g.matrix.ty = nan; },
        [](Gradient& g) { g.spread = static_cast<GradientSpread>(3); },
    };
    const std::int64_t used = host.document.budget().used();
    for (const auto& spoil : wrongGradients) {
        Gradient gradient = gradientTo(1);
        spoil(gradient);
        EXPECT_THROW(host.document.addGradient(gradient), ArtworkError);
    }
    EXPECT_EQ(host.document.budget().used(), used);
    const Art tile = host.document.makeArtwork();
    const std::function<void(Pattern&)> wrongPatterns[] = {
        [](Pattern& p) { p.right = p.left; },     [](Pattern& p) { p.top = -1; },
        [](Pattern& p) { p.stepX = 0; },          [](Pattern& p) { p.stepY = -4; },
        [](Pattern& p) { p.matrix.a = nan; },     [](Pattern& p) { p.tile = Art::null; },
        [&](Pattern& p) { p.tile = layerArt(); },
    };
    for (const auto& spoil : wrongPatterns) {
        Pattern wrong = pattern(tile);
        spoil(wrong);
        EXPECT_THROW(host.document.addPattern(wrong), ArtworkError);
    }
}

TEST_F(PaintTest, mixturesOfInks) {
    const std::string names("\4Cyan\2\xFF;", 8);
    const std::vector<Fixed> tints = {0, fixedOne};
    InkMixtureFacts facts{.names = names, .tints = tints, .seen = {}};
    PaintSource source{};
    PaintSource same{};
    ASSERT_EQ(host(slot::addInkMixture, &facts, &source), HostError::none);
    ASSERT_EQ(host(slot::addInkMixture, &facts, &same), HostError::none);
    EXPECT_EQ(source, same);
    EXPECT_EQ(host.document.paintKind(source), ColourKind::inks);
    InkMixtureFacts told;
    ASSERT_EQ(host(slot::getInkMixture, source, &told), HostError::none);
    EXPECT_EQ(told.names, names);
    EXPECT_TRUE(std::ranges::equal(told.tints, tints));
    const Art art = path(layerArt());
    EXPECT_TRUE(takes(art, ColourKind::inks, source));
    EXPECT_FALSE(takes(art, ColourKind::custom, source));
    const std::function<void(InkMixture&)> wrong[] = {
        [](InkMixture& m) { m.names.clear(); },
        [](InkMixture& m) { m.tints.pop_back(); },
        [](InkMixture& m) { m.tints[0] = -1; },
        [](InkMixture& m) { m.tints[1] = fixedOne + 1; },
        [](InkMixture& m) { m.names[0] = 0; },
        [](InkMixture& m) { m.names[5] = 3; },
        [](InkMixture& m) { m.names.assign(1, '\x7F') += std::string(126, 'x'); },
        [](InkMixture& m) { m.seen.kind = ColourKind::inks; },
        [](InkMixture& m) {
            m.names.clear();
            for (m.tints.clear(); m.tints.size() <= mostInks; m.tints.push_back(0)) {
                m.names += "\x01x";
            }
        },
    };
    for (const auto& spoil : wrong) {
        InkMixture mixture{.names = names, .tints = tints, .seen = {}};
        spoil(mixture);
        EXPECT_THROW(host.document.addInkMixture(mixture), ArtworkError);
    }
}

TEST_F(PaintTest, recordsAreChargedAndRefusedPastTheLimit) {
    Document small(1 << 20);
    const std::int64_t before = small.budget().used();
    Gradient gradient = gradientTo(1);
    gradient.stops.assign(1000, gradient.stops[0]);
    small.addGradient(gradient);
    EXPECT_GE(small.budget().used() - before, 1000 * static_cast<int>(sizeof(GradientStop)));
    EXPECT_THROW(small.addNote(std::string(1 << 20, 'x')), ArtworkError);
    EXPECT_THROW(small.addSpotColour({std::string(1 << 20, 'x'), {}}), ArtworkError);
    EXPECT_THROW(
        for (int i = 0; i < 100; ++i) {
            gradient.x1 = i;
            small.addGradient(gradient);
        },
        ArtworkError);
    EXPECT_LE(small.budget().used(), 1 << 20);
    const PaintSource note = small.addGradient(gradientTo(7));
    EXPECT_EQ(small.gradient(note).x2, 7);
}

/// Tiles are in no layer, stay, and lead round to no pattern that they belong to.
TEST_F(PaintTest, noPatternUsesItself) {
    Document& document = host.document;
    const Art inner = document.makeArtwork();
    const PaintSource first = document.addPattern(pattern(inner));
    const Art outer = document.makeArtwork();
    const Art user = path(outer);
    EXPECT_TRUE(takes(user, ColourKind::pattern, first));
    const PaintSource second = document.addPattern(pattern(outer));
    EXPECT_TRUE(takes(user, ColourKind::pattern, first));
    EXPECT_FALSE(takes(user, ColourKind::pattern, second));
    EXPECT_FALSE(takes(path(host.make(ArtKind::group, Placement::inside, inner)),
                       ColourKind::pattern, second));
    EXPECT_EQ(host.scope.failure(), "a pattern's tile can only use patterns made before it");

    const Art group = host.make(ArtKind::group, Placement::inside, layerArt());
    const Art drawn = path(group);
    EXPECT_TRUE(takes(drawn, ColourKind::pattern, second));
    Art copy{};
    EXPECT_EQ(host(slot::duplicateArt, group, Placement::inside, inner, &copy), HostError::failed);
    EXPECT_EQ(host(slot::reorderArt, group, Placement::inside, outer), HostError::failed);
    EXPECT_TRUE(takes(drawn, ColourKind::pattern, first));
    EXPECT_EQ(host(slot::reorderArt, group, Placement::inside, outer), HostError::none);
    EXPECT_EQ(document.top(drawn), outer);

    // A tile with a second pattern keeps to what was there before its first.
    Pattern wider = pattern(inner);
    wider.stepX = 9;
    const PaintSource third = document.addPattern(wider);
    EXPECT_FALSE(takes(path(inner), ColourKind::pattern, second));
    EXPECT_FALSE(takes(path(inner), ColourKind::pattern, third));
}

TEST_F(PaintTest, artworksStandAlone) {
    Document& document = host.document;
    Art artwork{};
    ASSERT_EQ(host(slot::newArtwork, &artwork), HostError::none);
    EXPECT_EQ(document.parent(artwork), Art::null);
    EXPECT_EQ(document.firstChild(layerArt()), Art::null);
    path(artwork);
    EXPECT_EQ(host(slot::disposeArt, artwork), HostError::failed);
    EXPECT_EQ(host(slot::reorderArt, artwork, Placement::inside, layerArt()), HostError::failed);
    Art made{};
    EXPECT_EQ(host(slot::newArt, ArtKind::path, Placement::behind, artwork, &made),
              HostError::failed);
    Art copy{};
    ASSERT_EQ(host(slot::duplicateArt, artwork, Placement::inside, layerArt(), &copy),
              HostError::none);
    for (const Art none : {Art::null, layerArt(), copy}) {
        EXPECT_EQ(host(slot::disposeArtwork, none), HostError::failed);
    }
    ASSERT_EQ(host(slot::disposeArtwork, artwork), HostError::none);
    EXPECT_THROW(document.kind(artwork), ArtworkError);
    EXPECT_EQ(host(slot::newArtwork, nullptr), HostError::failed);

    const Art used = document.makeArtwork();
    document.addPattern(pattern(used));
    EXPECT_EQ(host(slot::disposeArtwork, used), HostError::failed);
    EXPECT_EQ(document.kind(used), ArtKind::group);
}

/// A page is read into one again and again: with all kinds of paint, art that comes from a layer,
/// and art that goes there.
TEST_F(PaintTest, artworksHoldWhatLayersHold) {
    Document& document = host.document;
    const PaintSource patterned = document.addPattern(pattern(document.makeArtwork()));
    const Art seen = path(layerArt());
    std::int64_t before = 0;
    for (int round = 0; round < 300; ++round) {
        Art artwork{};
        ASSERT_EQ(host(slot::newArtwork, &artwork), HostError::none);
        const Art group = host.make(ArtKind::group, Placement::inside, artwork);
        ASSERT_EQ(host(slot::setGroupClipped, group, std::uint8_t{1}), HostError::none);
        const Art first = path(group);
        ASSERT_EQ(host(slot::setPathSegmentCount, first, 5), HostError::none);
        ASSERT_TRUE(takes(first, ColourKind::pattern, patterned));
        Art copy{};
        ASSERT_EQ(host(slot::duplicateArt, first, Placement::behind, seen, &copy), HostError::none);
        ASSERT_EQ(host(slot::reorderArt, copy, Placement::inFront, first), HostError::none);
        EXPECT_EQ(document.top(copy), artwork);
        ASSERT_EQ(host(slot::disposeArtwork, artwork), HostError::none);
        EXPECT_THROW(document.kind(copy), ArtworkError);
        before = round == 0 ? document.budget().used() : before;
    }
    EXPECT_EQ(document.firstChild(layerArt()), seen);
    EXPECT_LT(document.budget().used() - before, 4096) << "what was disposed of is free again";
}

TEST_F(PaintTest, slotsTellCustomColoursAndNotes) {
    const std::string longName = std::string(62, 'n') + "\xC3\xBC";
    CustomColour told;
    const PaintSource spot = host.document.addSpotColour({longName, {1, -2, 3, 4}});
    host(slot::getColorInfo, spot, &told);
    EXPECT_EQ(told.name[0], 62); // not half a letter
    EXPECT_EQ(std::string(told.name + 1, told.name + 63), std::string(62, 'n'));
    EXPECT_EQ(told.process[1], -2);
    const PaintSource gradient = host.document.addGradient(gradientTo(1));
    host(slot::getColorInfo, gradient, &told);
    host(slot::getColorInfo, spot, nullptr);
    EXPECT_EQ(told.process[1], -2) << "what is no custom colour changes nothing";

    std::uint8_t text[257] = {};
    text[256] = 99;
    const Note note = host.document.addNote(std::string(300, 'x'));
    ASSERT_EQ(host(slot::getNote, note, text), HostError::none);
    EXPECT_EQ(text[0], 255);
    EXPECT_EQ(text[255], 'x');
    EXPECT_EQ(text[256], 99);
    EXPECT_EQ(host(slot::getNote, Note::null, text), HostError::failed);
    EXPECT_EQ(host(slot::getNote, note, nullptr), HostError::failed);
}

} // namespace
} // namespace corvane
