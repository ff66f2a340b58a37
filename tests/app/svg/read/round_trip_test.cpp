// What this program wrote comes back as it was: the SVG of the artwork read is the SVG read.
#include "app/svg/reader.h"

#include "app/artwork/geometry/path_walk.h"
#include "app/svg/paint/colour.h"

#include "host/pen.h"
#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <random>
#include <regex>

namespace corvane::test {
namespace {

void expectSameAgain(const ArtBuilder& art, const Provenance& provenance = {}) {
    const std::string written = art.svg(provenance);
    const ReadArt read(written);
    EXPECT_TRUE(read.reading.ours);
    EXPECT_TRUE(read.reading.ignored.empty()) << read.reading.ignored.begin()->first;
    EXPECT_EQ(read.svg(), written);
}

TEST(RoundTrip, PageAndProvenance) {
    for (const bool moved : {false, true}) {
        ArtBuilder art;
        Provenance from;
        from.sourceFile = "a&b \xC3\xA9.pdf";
        from.page = 7;
        PageIdentity& identity = from.identity.emplace();
        identity.digest = 0x00F4A98CEB1F0AD2;
        identity.page.objectNumber = 31;
        identity.page.generation = 2;
        identity.page.mediaBox = {-10, 0.5, 595.276, 841.89};
        identity.page.rotate = 270;
        identity.page.userUnit = 2.5;
        from.artwork = 0xF00000000000000F;
        from.omitted = {{"text", 3}, {"markedContent", 1}, {"ofALaterVersion", 2}};
        if (moved) {
            art.document.page().setBounds({fixed(-10.7), fixed(782.5), fixed(602), fixed(9.25)});
            art.document.page().setProfile(Profile::original);
        }
        art.document.page().setArtboard({fixed(700), fixed(800)});
        art.path(art.layerArt(), box(0, 0, 10, 10.1), filled());
        expectSameAgain(art, from);
        const ReadArt read(art.svg(from));
        EXPECT_EQ(read.document.page().bounds(), art.document.page().bounds());
        EXPECT_EQ(read.document.page().artboard().height, fixed(800));
        EXPECT_EQ(read.document.page().profile(), art.document.page().profile());
        EXPECT_EQ(read.reading.provenance.identity->digest, identity.digest);
        EXPECT_EQ(read.reading.provenance.identity->page.mediaBox, identity.page.mediaBox);
        EXPECT_EQ(read.reading.provenance.artwork, from.artwork);
        EXPECT_EQ(read.reading.provenance.omitted, from.omitted);
        EXPECT_EQ(read.reading.provenance.sourceFile, from.sourceFile);
    }
    for (const char* const wrong : {"", "1234", "000000000000123g", "00000000000012345"}) {
        const ReadArt read(ourSvg("", "data-artwork='" + std::string(wrong) + "'"));
        EXPECT_EQ(read.reading.provenance.artwork, std::nullopt) << wrong;
    }
}

TEST(RoundTrip, LayersKeepTheirOrderAndFlags) {
    ArtBuilder art;
    art.document.addLayer({.title = "Notes <&> \"1\"\n", .visible = false, .dimmed = true});
    art.document.addLayerBehind({.title = "", .preview = false, .locked = true, .printing = false});
    art.path(art.layerArt(), box(0, 0, 10, 10), filled());
    expectSameAgain(art);
    const ReadArt read(art.svg());
    EXPECT_EQ(read.document.layerProperties(read.document.firstLayer()),
              art.document.layerProperties(art.document.firstLayer()));
    EXPECT_EQ(read.document.layerProperties(read.document.lastLayer()),
              art.document.layerProperties(art.document.lastLayer()));
}

/// Styles whose exact values only data- attributes tell.
TEST(RoundTrip, HiddenTwins) {
    std::vector<PathStyle> styles(14, stroked(2));
    styles[0].lineWidth = 0;
    styles[1].lineWidth = fixed(-3.5);
    styles[2].dashCount = 2;
    styles[3].dashCount = 3;
    styles[3].dash[1] = fixed(4.1);
    styles[3].dashPhase = -1;
    styles[4].miterLimit = fixed(.5);
    styles[4].join = 2;
    styles[4].cap = 1;
    styles[5].resolution = fixed(300);
    styles[6].stroke.component[0] = fixed(.333);
    styles[7].stroke = {ColourKind::process, {fixed(.1), fixed(.2), fixed(.3), fixed(.4)}};
    styles[8].stroke = processColour({fixed(.11), fixed(.22), fixed(.333)});
    styles[9].stroke = {ColourKind::process, {1, 2, 3, 4}, ColourOrigin::fromRgb};
    styles[10].stroke.component[0] = fixed(2);
    styles[11] = PathStyle{};
    styles[12].fillPaint = 1;
    styles[12].rule = FillRule::evenOdd;
    styles[13].dashCount = 6;
    for (int i = 0; i < 6; ++i) {
        styles[13].dash[i] = fixed(i + .7);
    }
    ArtBuilder art;
    for (const PathStyle& style : styles) {
        art.path(art.layerArt(), box(0, 0, 10, 10), style, false);
    }
    art.document.setGuide(art.path(art.layerArt(), box(0, 0, 1, 1), {}), true);
    expectSameAgain(art);
    const ReadArt read(art.svg());
    Art path = read.document.lastChild(read.document.layerArt(read.document.firstLayer()));
    for (const PathStyle& style : styles) {
        EXPECT_EQ(read.document.style(path), style);
        path = read.document.previousSibling(path);
    }
    EXPECT_TRUE(read.document.guide(path));
}

TEST(RoundTrip, PensKeepEveryPoint) {
    std::mt19937 random(7);
    const auto place = [&] { return static_cast<Fixed>(random() % (2000U << 16)) - (500 << 16); };
    ArtBuilder art;
    for (int i = 0; i < 300; ++i) {
        const double angle = i * .1;
        const double wide = std::exp(i * .03);
        PathStyle style = stroked(1 + i / 7.0);
        style.pen = penUnder({wide * std::cos(angle), wide * std::sin(angle), -std::sin(angle),
                              std::cos(angle), 0, 0})
                        .value()
                        .pen;
        style.dashCount = 2;
        style.dash[0] = style.dash[1] = fixed(2.3);
        const std::vector<Point> points = {{place(), place()}, {place(), place()}, at(i, i)};
        art.path(art.layerArt(), points, style);
    }
    expectSameAgain(art);
    const ReadArt read(art.svg());
    Art was = art.document.lastChild(art.layerArt());
    for (Art is = read.document.lastChild(read.document.layerArt(read.document.firstLayer()));
         is != Art::null; is = read.document.previousSibling(is)) {
        EXPECT_EQ(read.document.style(is), art.document.style(was));
        for (std::int32_t i = 0; i < 3; ++i) {
            EXPECT_EQ(read.document.segments(is)[i], art.document.segments(was)[i]);
        }
        was = art.document.previousSibling(was);
    }
}

TEST(RoundTrip, PathsOfEveryForm) {
    ArtBuilder art;
    art.path(art.layerArt(), {}, filled(), false);
    art.path(art.layerArt(), {at(1, 1)}, filled(), false);
    art.path(art.layerArt(), {at(1, 1)}, filled(), true);
    art.path(art.layerArt(), {at(1, 1), at(5, 1), at(1, 1)}, filled(), true);
    art.path(art.layerArt(), {at(1, 1), at(1, 1)}, filled(), true);
    const Art curve = art.path(art.layerArt(), {at(1, 1), at(9, 1)}, stroked(1), true);
    art.document.writeSegments(
        curve, 0,
        std::vector<Segment>{{at(1, 1), at(0, 0), at(2, 3), 0}, {at(9, 1), at(8, 0), at(9, 3), 0}});
    const Art loop = art.path(art.layerArt(), {at(1, 1)}, stroked(1), true);
    art.document.writeSegments(loop, 0, std::vector<Segment>{{at(1, 1), at(0, 0), at(2, 3), 0}});
    const Art one = art.compound(art.layerArt());
    art.path(one, box(1, 1, 2, 2), filled());
    const Art two = art.compound(art.layerArt());
    art.path(two, box(1, 1, 20, 20), filled());
    art.path(two, box(3, 3, 18, 18), filled(), false);
    art.compound(art.layerArt());
    expectSameAgain(art);
}

TEST(RoundTrip, ClipsThatCutAndThatDoNot) {
    ArtBuilder art;
    const Art cut = art.clippedGroup(art.layerArt(), box(10, 10, 50, 50), FillRule::evenOdd);
    art.behindClip(cut, box(0, 0, 100, 100), filled());
    const Art unseen = art.clippedGroup(art.layerArt(), box(0, 0, 120, 120));
    art.behindClip(unseen, box(20, 20, 100, 100), stroked(3));
    const Art inner = art.groupBehindClip(unseen);
    art.path(inner, box(30, 30, 40, 40), filled());
    const Art blank = art.clippedGroup(art.layerArt(), {at(1, 1), at(5, 5)});
    art.behindClip(blank, box(0, 0, 100, 100), filled());
    const Art triangle = art.clippedGroup(art.layerArt(), {at(0, 0), at(90, 0), at(0, 90)});
    PathStyle painted = filled(fixed(.25));
    painted.clip = 1;
    art.document.setStyle(art.document.firstChild(triangle), painted);
    art.behindClip(triangle, box(0, 0, 100, 100), filled());
    expectSameAgain(art);
    const ReadArt read(art.svg());
    const Document& document = read.document;
    Art group = document.lastChild(document.layerArt(document.firstLayer()));
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(document.clipped(group)) << i;
        EXPECT_EQ(document.style(document.firstChild(group)).clip, 1);
        group = document.previousSibling(group);
    }
}

TEST(RoundTrip, SourcesOfArtOfEveryKind) {
    ArtBuilder art;
    Document& document = art.document;
    std::int32_t next = 1;
    const auto tag = [&](Art tagged) {
        document.setSource(tagged, {next, std::int64_t{next} << 40, next});
        ++next;
    };
    const Art layer = art.layerArt();
    tag(layer);
    tag(art.path(layer, box(0, 0, 10, 10), filled()));
    const Art compound = art.compound(layer);
    tag(compound);
    art.path(compound, box(0, 0, 20, 20), filled());
    art.path(compound, box(5, 5, 15, 15), filled());
    for (const double reach : {5.0, 50.0}) { // a clip that cuts, and one that does not
        const Art clipped = art.clippedGroup(layer, box(0, 0, reach, reach));
        tag(clipped);
        tag(document.firstChild(clipped));
        tag(art.behindClip(clipped, box(2, 2, 20, 20), filled()));
    }
    // Text without letters and placed images have no element: what stands beside them is as it was.
    document.make(ArtKind::text, Placement::inside, layer);
    document.make(ArtKind::placed, Placement::inside, layer);
    expectSameAgain(art);
    const std::string text = art.svg();
    std::int32_t told = 0;
    for (std::size_t at = text.find("source=\""); at != std::string::npos;
         at = text.find("source=\"", at + 1)) {
        ++told;
    }
    EXPECT_EQ(told, next - 1);

    const auto sourceFrom = [](const std::string& svg) {
        const ReadArt read(svg);
        const Art top = read.document.layerArt(read.document.firstLayer());
        return read.document.source(read.document.firstChild(top));
    };
    const auto path = [](const std::string& source) {
        return "<path d='M0 0H9' data-source='" + source + "'/>";
    };
    EXPECT_EQ(sourceFrom(ourSvg(path(" 1  9223372036854775807 2147483647 "))),
              (ArtSource{1, INT64_MAX, INT32_MAX}));
    EXPECT_EQ(sourceFrom(foreignSvg(path("1 2 3"))), std::nullopt);
    const auto sourceOn = [&](const std::string& digest, const std::string& source) {
        std::string svg = ourSvg(path(source));
        svg.insert(svg.find("data-producer"), "data-digest='" + digest + "' data-page='1' ");
        return sourceFrom(svg);
    };
    EXPECT_EQ(sourceOn("0123456789abcdef", "1 2 3 cdef"), (ArtSource{1, 2, 3}));
    EXPECT_EQ(sourceOn("0123456789abcdef", "1 2 3 cdef 4"), (ArtSource{1, 2, 3, 4}));
    EXPECT_EQ(sourceOn("0123456789abcdef", "1 2 3 cdee"), std::nullopt) << "of another page";
    EXPECT_EQ(sourceOn("0123456789abcdef", "1 2 3"), std::nullopt);
    for (const char* const wrong :
         {"", "1 2", "1 2 3 4 5", "1 2 3 x", "1 2 x", "-1 2 3", "1 2 -3", "+1 2 3", "2 1 3",
          "1,2,3", "1 2 3.0", "0x1 2 3", "1 9223372036854775808 3", "1 2 2147483648"}) {
        EXPECT_EQ(sourceFrom(ourSvg(path(wrong))), std::nullopt) << wrong;
    }
}

/// As an editor leaves it that drops `data-` attributes: ids tell the order of painting.
TEST(RoundTrip, SourcesByIdsAlone) {
    ArtBuilder art;
    Document& document = art.document;
    const Art layer = art.layerArt();
    std::vector<Art> painted{art.path(layer, box(0, 0, 10, 10), filled())};
    const Art cutting = art.clippedGroup(layer, box(0, 0, 5, 5));
    painted.push_back(art.behindClip(cutting, box(2, 2, 20, 20), filled()));
    const Art compound = art.compound(layer);
    art.path(compound, box(0, 0, 20, 20), filled());
    art.path(compound, box(5, 5, 15, 15), filled());
    painted.push_back(compound);
    painted.push_back(art.path(art.group(layer), {}, filled()));
    for (std::size_t i = 0; i < painted.size(); ++i) {
        const auto ordinal = static_cast<std::int32_t>(i);
        document.setSource(painted[i], {10 * ordinal, 10 * ordinal + 9, ordinal});
    }
    std::string text = art.svg();
    const std::string marked = " data-source=\"";
    for (std::size_t at = text.find(marked); at != std::string::npos; at = text.find(marked)) {
        text.erase(at, text.find('"', at + marked.size()) + 1 - at);
    }
    const ReadArt read(text);
    EXPECT_EQ(read.svg(), text) << "an ordinal alone is no source of a file";
    std::vector<std::int32_t> ordinals;
    const Art top = read.document.layerArt(read.document.firstLayer());
    for (Art at = top; at != Art::null; at = following(read.document, at, top)) {
        if (const auto source = read.document.source(at)) {
            EXPECT_EQ(source->end, 0);
            ordinals.push_back(source->ordinal);
        }
    }
    std::ranges::reverse(ordinals);
    EXPECT_EQ(ordinals, (std::vector<std::int32_t>{0, 1, 2, 3}));

    const auto sourceFrom = [](const std::string& id, const std::string& more, bool ours) {
        const std::string path = "<path d='M0 0H9' id='" + id + "' " + more + "/>";
        const ReadArt one(ours ? ourSvg(path) : foreignSvg(path));
        const Art only = one.document.layerArt(one.document.firstLayer());
        return one.document.source(one.document.firstChild(only));
    };
    EXPECT_EQ(sourceFrom("p2147483647", "", true), (ArtSource{0, 0, 2147483646}));
    EXPECT_EQ(sourceFrom("p7", "data-source='1 2 3'", true), (ArtSource{1, 2, 3}));
    EXPECT_EQ(sourceFrom("p7", "", false), std::nullopt);
    for (const char* const other : {"", "p", "p0", "p01", "p+1", "p-1", "P1", "p1-2", "p1.0", "xp1",
                                    "path1", "p2147483648", "p 1", "g1", "clip1"}) {
        EXPECT_EQ(sourceFrom(other, "", true), std::nullopt) << other;
    }
    const ReadArt tiled(ourSvg("<pattern id='t' patternUnits='userSpaceOnUse' width='9' height='9'>"
                               "<path id='p1' d='M0 0H5'/></pattern>"
                               "<path id='p2' d='M0 0H9V9Z' fill='url(#t)'/>"));
    const Document& drawn = tiled.document;
    const PathStyle style = drawn.style(drawn.firstChild(drawn.layerArt(drawn.firstLayer())));
    ASSERT_EQ(style.fill.kind, ColourKind::pattern);
    const Art tile = drawn.pattern(style.fill.source).tile;
    EXPECT_EQ(drawn.source(drawn.firstChild(tile)), std::nullopt) << "a page has no tiles";
}

/// Deeper than the writer nests elements, with clips that its objects carry themselves. Of those,
/// only what is used comes back; after that nothing changes.
TEST(RoundTrip, ArtDeeperThanElements) {
    std::mt19937 random(5);
    for (int run = 0; run < 40; ++run) {
        const bool clips = run % 4 != 0;
        ArtBuilder art;
        std::vector<Art> open{art.layerArt()};
        const auto number = [&](int below) { return static_cast<int>(random() % below); };
        for (int step = 0; step < 400; ++step) {
            const Art in = open.back();
            const double left = number(60);
            const double bottom = number(60);
            const std::vector<Point> area =
                number(4) == 0 ? std::vector{at(left, bottom), at(200, bottom), at(left, 150)}
                               : box(left, bottom, left + 30 + number(150), bottom + 40);
            const Art first = art.document.firstChild(in);
            const bool clipped = art.document.clipped(in);
            const auto place = [&](ArtKind kind) {
                return clipped ? art.document.make(kind, Placement::behind, first)
                               : art.document.make(kind, Placement::inside, in);
            };
            const int choice = open.size() < 188 ? 9 : number(10);
            if (choice >= 6) {
                const Art group = place(ArtKind::group);
                open.push_back(group);
                if (clips && open.size() > 185 && number(2) == 0) {
                    PathStyle style;
                    style.clip = 1;
                    art.path(group, area, style);
                    art.document.setClipped(group, true);
                }
            } else if (choice >= 3) {
                const Art path = place(ArtKind::path);
                art.document.setSegmentCount(path, 1);
                art.document.setStyle(path, stroked(1 + number(3)));
                art.document.setSegmentCount(path, 2);
                art.document.writeSegments(path, 0,
                                           std::vector<Segment>{{area[0], area[0], area[0], 0},
                                                                {area[2], area[2], area[2], 0}});
            } else {
                open.pop_back();
            }
        }
        const std::string written = art.svg();
        const std::string settled = ReadArt(written).svg();
        EXPECT_EQ(ReadArt(settled).svg(), settled);
        if (!clips) {
            EXPECT_EQ(settled, written);
        }
    }
}

/// Ids count the runs of the page, and an element that joins some has the first one's; a reader
/// of the artwork alone counts elements.
std::string withoutCounts(const std::string& svg) {
    static const std::regex counted(" id=\"(f[0-9]+)?p[0-9]+\"");
    return std::regex_replace(svg, counted, " id=\"p\"");
}

TEST(RoundTrip, EveryPageThatOpens) {
    std::vector<std::filesystem::path> files;
    for (const char* const folder :
         {"examples", "../shared/corpus/classic", "../shared/corpus/modern"}) {
        const auto path = sourceFolder() / folder;
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::directory_iterator(path)) {
                if (entry.path().extension() == ".pdf") {
                    files.push_back(entry.path());
                }
            }
        }
    }
    std::ranges::sort(files);
    ASSERT_FALSE(files.empty());
    for (const auto& file : files) {
        const TemporaryFolder folder;
        Process process;
        process.words = {(buildFolder() / "corvane").string(),
                         "open",
                         file.string(),
                         "--page",
                         "1",
                         "-o",
                         "page.svg",
                         "--fonts",
                         "none",
                         "--images",
                         "embed",
                         "--quiet"};
        process.folder = folder.path();
        if (run(process).status == 0) {
            const std::string written = fileBytes(folder.path() / "page.svg");
            const ReadArt read(written);
            // Without the page's fonts nothing tells where the pieces of stretched lines stand.
            const bool hasPlaces = written.find("data-exact") != std::string::npos;
            const std::string again = read.svg();
            EXPECT_TRUE(withoutCounts(hasPlaces ? ReadArt(again).svg() : written) ==
                        withoutCounts(again))
                << file;
            EXPECT_TRUE(read.reading.ignored.empty()) << file;
        }
    }
}

} // namespace
} // namespace corvane::test
