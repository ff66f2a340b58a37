#include "app/svg/writer.h"

#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <algorithm>
#include <map>

namespace corvane::test {
namespace {

/// What a reader of XML finds in a text.
struct Markup {
    explicit Markup(const std::string& text) {
        wellFormed = static_cast<bool>(document.load_buffer(text.data(), text.size()));
        struct Counter : pugi::xml_tree_walker {
            bool for_each(pugi::xml_node& node) override {
                deepest = std::max(deepest, depth() + 1);
                ++elements[node.name()];
                return true;
            }
            int deepest = 0;
            std::map<std::string, int> elements;
        } counter;
        document.traverse(counter);
        deepest = counter.deepest;
        elements = counter.elements;
    }
    pugi::xml_document document;
    bool wellFormed = false;
    int deepest = 0;
    std::map<std::string, int> elements;
};

TEST(WriteSvg, RootTellsThePageAndWhereItCameFrom) {
    ArtBuilder art;
    art.document.page().setBounds({fixed(-10), fixed(782.5), fixed(602), fixed(-9.5)});
    art.document.page().setArtboard({fixed(700), fixed(800)});
    Provenance from;
    from.sourceFile = "r\"&\xE9.pdf";
    from.page = 2;
    from.identity = PageIdentity{};
    from.identity->page.objectNumber = 12;
    from.identity->page.mediaBox = {0, 0, 350, 400};
    from.identity->page.rotate = 90;
    from.identity->page.userUnit = 2;
    from.identity->digest = 0xAB54A98CEB1F0AD2;
    from.artwork = 0x1F;
    from.omitted = {{"text", 12}, {"softMask", 3}, {"a<b", 1}};
    art.path(art.layerArt(), box(0, 0, 10, 10), filled());
    EXPECT_EQ(art.svg(from),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<svg xmlns=\"http://www.w3.org/2000/svg\""
              " xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\" version=\"1.1\""
              " width=\"1224pt\" height=\"1584pt\" viewBox=\"0 0 612 792\" stroke-miterlimit=\"10\""
              " data-producer=\"corvane\" data-version=\"1\" data-file=\"r&quot;&amp;\xC3\xA9.pdf\""
              " data-page=\"2\" data-object=\"12 0\" data-digest=\"ab54a98ceb1f0ad2\""
              " data-media-box=\"0 0 350 400\" data-rotate=\"90\" data-user-unit=\"2\""
              " data-artwork=\"000000000000001f\""
              " data-omitted=\"a&lt;b:1 softMask:3 text:12\" data-bounds=\"-10 -9.5 602 782.5\""
              " data-artboard=\"700 800\">\n"
              " <g id=\"layer1\" inkscape:groupmode=\"layer\">\n"
              "  <path id=\"p1\" d=\"M10 782.5H20V772.5H10Z\"/>\n"
              " </g>\n"
              "</svg>\n");
}

/// Art blends with what is on the paper, and not with the paper; annotations do.
TEST(WriteSvg, APageOnWhichSomethingBlendsIsIsolated) {
    const auto isIsolated = [](const ArtBuilder& art) {
        const std::string svg = art.svg();
        return svg.substr(0, svg.find("<g")).find("isolation:isolate") != std::string::npos;
    };
    ArtBuilder art;
    const Art group = art.document.make(ArtKind::group, Placement::inside, art.layerArt());
    art.path(group, box(0, 0, 10, 10), filled());
    const Art path = art.path(group, box(0, 0, 20, 10), filled());
    art.path(art.layerArt(), box(0, 0, 10, 10), filled());
    art.document.setAppearance(path, {.fillOpacity = .5});
    EXPECT_FALSE(isIsolated(art));
    art.document.setAppearance(path, {.blend = BlendMode::screen});
    EXPECT_TRUE(isIsolated(art));
    const ReadArt read(art.svg());
    EXPECT_TRUE(read.reading.ignored.empty());
    EXPECT_EQ(read.svg(), art.svg());
    LayerProperties layer = art.document.layerProperties(art.document.firstLayer());
    layer.role = LayerRole::annotations;
    art.document.setLayerProperties(art.document.firstLayer(), layer);
    EXPECT_FALSE(isIsolated(art));
}

TEST(WriteSvg, LayersStandBackToFrontWithTheirFlags) {
    ArtBuilder art;
    Document& document = art.document;
    const Layer front =
        document.addLayer({.title = "Notes <&> \"1\"\x01", .visible = false, .dimmed = true});
    document.addLayerBehind({.title = "Back", .preview = false, .locked = true, .printing = false});
    const Art compound = art.compound(document.layerArt(front));
    art.path(compound, box(0, 0, 10, 10), filled());
    const std::string text = art.svg();
    EXPECT_EQ(text.substr(text.find("\n <g")),
              "\n <g id=\"layer1\" inkscape:groupmode=\"layer\" inkscape:label=\"Back\""
              " data-preview=\"false\" data-locked=\"true\" data-printing=\"false\"/>\n"
              " <g id=\"layer2\" inkscape:groupmode=\"layer\"/>\n"
              " <g id=\"layer3\" inkscape:groupmode=\"layer\""
              " inkscape:label=\"Notes &lt;&amp;&gt; &quot;1&quot;\" display=\"none\""
              " data-dimmed=\"true\">\n"
              "  <path id=\"p1\" data-compound=\"true\" d=\"M0 200H10V190H0Z\"/>\n"
              " </g>\n"
              "</svg>\n");
}

TEST(WriteSvg, FrontmostArtComesLastAndEmptyGroupsAreLeftOut) {
    ArtBuilder art;
    art.path(art.layerArt(), {at(1, 199)}, filled());
    const Art group = art.group(art.layerArt());
    art.group(group);
    art.clippedGroup(group, box(0, 0, 9, 9));
    const Art inner = art.group(group);
    art.path(inner, {at(2, 198)}, PathStyle{});
    art.group(art.group(art.layerArt()));
    art.path(art.layerArt(), {at(3, 197)}, filled());
    EXPECT_EQ(art.layerText(), "  <path id=\"p1\" d=\"M1 1Z\"/>\n"
                               "  <g id=\"g1\">\n"
                               "   <g id=\"g2\">\n"
                               "    <path id=\"p2\" fill=\"none\" d=\"M2 2Z\"/>\n"
                               "   </g>\n"
                               "  </g>\n"
                               "  <path id=\"p3\" d=\"M3 3Z\"/>");
}

TEST(WriteSvg, StylesAreAttributesThatDifferFromTheDefaults) {
    const auto process = [](ColourOrigin origin, double c, double m, double y, double k) {
        return Colour{ColourKind::process, {fixed(c), fixed(m), fixed(y), fixed(k)}, origin};
    };
    const auto fill = [](Colour colour) {
        PathStyle style = filled();
        style.fill = colour;
        return style;
    };
    const auto line = [](auto change) {
        PathStyle style = stroked(1);
        change(style);
        return style;
    };
    const auto dashed = [&](std::vector<double> lengths, double phase) {
        return line([&](PathStyle& style) {
            style.dashCount = static_cast<std::int16_t>(lengths.size());
            std::transform(lengths.begin(), lengths.end(), style.dash, fixed);
            style.dashPhase = fixed(phase);
        });
    };
    const std::string stroke = "fill=\"none\" stroke=\"#000000\"";
    const struct {
        PathStyle style;
        std::string wanted;
    } rows[] = {
        {PathStyle{}, "fill=\"none\""},
        {fill({}), ""},
        {fill(process(ColourOrigin::fromRgb, 0, .8, .6, 0)), "fill=\"#ff3366\""},
        {fill(process(ColourOrigin::fromRgb, .25, .25, .25, .75)), "data-fill-rgb=\"0 0 0\""},
        {fill(process(ColourOrigin::fromRgb, .1, .9, .2, 0)),
         "fill=\"#e51acc\" data-fill-origin=\"rgb\" data-fill-cmyk=\".1 .9 .2 0\""},
        {filled(fixed(.7)), "fill=\"#4d4d4d\" data-fill-gray=\".3\""},
        {filled(-fixedOne), "fill=\"#ffffff\" data-fill-gray=\"2\""},
        {fill(process(ColourOrigin::given, 0, 1.5, 1, 0)),
         "fill=\"#ff0000\" data-fill-cmyk=\"0 1.5 1 0\""},
        {stroked(1), stroke},
        {stroked(.5), stroke + " stroke-width=\".5\""},
        {stroked(0), stroke + " stroke-width=\".25\" data-stroke-width=\"0\""},
        {stroked(-2), stroke + " stroke-width=\"2\" data-stroke-width=\"-2\""},
        {dashed({3}, 1.5), stroke + " stroke-dasharray=\"3\" stroke-dashoffset=\"1.5\""},
        {dashed({0, 0}, 0), stroke + " data-stroke-dasharray=\"0 0\""},
        {dashed({3, -1, 2}, 0), stroke + " data-stroke-dasharray=\"3 -1 2\""},
        {line([](PathStyle& style) { style.cap = 2, style.join = 1; }),
         stroke + " stroke-linecap=\"square\" stroke-linejoin=\"round\""},
        {line([](PathStyle& style) { style.miterLimit = fixed(4); }),
         stroke + " stroke-miterlimit=\"4\""},
        {line([](PathStyle& style) { style.miterLimit = fixed(.5); }),
         stroke + " stroke-miterlimit=\"1\" data-stroke-miterlimit=\".5\""},
        {line([](PathStyle& style) { style.resolution = fixed(200); }),
         stroke + " data-resolution=\"200\""},
    };
    for (const auto& row : rows) {
        ArtBuilder art;
        art.path(art.layerArt(), {at(0, 200)}, row.style);
        const std::string blank = row.wanted.empty() ? "" : " ";
        EXPECT_EQ(art.layerText(), "  <path id=\"p1\"" + blank + row.wanted + " d=\"M0 0Z\"/>");
    }
    ArtBuilder art;
    PathStyle ruled = filled();
    ruled.rule = FillRule::evenOdd;
    const Art guide = art.path(art.layerArt(), {at(0, 200)}, ruled);
    EXPECT_NE(art.layerText().find("fill-rule=\"evenodd\""), std::string::npos);
    art.document.setGuide(guide, true);
    EXPECT_EQ(art.layerText(), "  <path id=\"p1\" fill=\"none\" data-guide=\"true\" d=\"M0 0Z\"/>");
}

/// Groups inside one another, `depth` of them; `clips` are the polygons that clip some. The
/// innermost holds a path as large as the page.
void deepen(ArtBuilder& art, int depth, const std::map<int, std::vector<Point>>& clips) {
    Art group = art.layerArt();
    for (int i = 1; i <= depth; ++i) {
        group = art.document.clipped(group) ? art.groupBehindClip(group) : art.group(group);
        if (const auto clip = clips.find(i); clip != clips.end()) {
            art.path(group, clip->second, PathStyle{});
            art.document.setClipped(group, true);
        }
    }
    art.path(group, box(0, 0, 300, 200), filled(), true, Placement::inside);
    if (art.document.clipped(group)) {
        art.document.reorder(art.document.firstChild(group), Placement::behind,
                             art.document.nextSibling(art.document.firstChild(group)));
    }
}

TEST(WriteSvg, DeepGroupsAreFlattenedWithTheirClips) {
    const std::vector<Point> triangle{at(0, 0), at(300, 0), at(150, 190)};
    const struct {
        std::map<int, std::vector<Point>> clips;
        std::string wanted; ///< from the first clip on
    } rows[] = {
        {{}, "<path id=\"p1\" d=\"M0 200H300V0H0Z\"/>"},
        {{{3800, triangle}, {3900, box(10, 0, 100, 200)}, {4000, box(0, 20, 300, 180)}},
         "<clipPath id=\"clip1\"><path d=\"M0 200H300L150 10Z\"/></clipPath>\n"
         "                <clipPath id=\"clip2\" clip-path=\"url(#clip1)\">"
         "<path d=\"M10 0H100V200H10Z\"/></clipPath>\n"
         "                <clipPath id=\"clip3\" clip-path=\"url(#clip1)\">"
         "<path d=\"M10 20H100V180H10Z\"/></clipPath>\n"
         "                <path id=\"p1\" clip-path=\"url(#clip3)\" d=\"M0 200H300V0H0Z\"/>"},
        {{{3800, box(10, 0, 100, 200)}, {3900, box(200, 0, 280, 200)}},
         "<path id=\"p1\" display=\"none\" d=\"M0 200H300V0H0Z\"/>"},
        {{{3800, triangle}, {3900, triangle}},
         "<clipPath id=\"clip1\"><path d=\"M0 200H300L150 10Z\"/></clipPath>\n"
         "                <clipPath id=\"clip2\" clip-path=\"url(#clip1)\">"
         "<path d=\"M0 200H300L150 10Z\"/></clipPath>\n"
         "                <path id=\"p1\" clip-path=\"url(#clip2)\" d=\"M0 200H300V0H0Z\"/>"},
    };
    for (const auto& row : rows) {
        ArtBuilder art;
        deepen(art, 4050, row.clips);
        const std::string text = art.svg();
        EXPECT_NE(text.find(row.wanted + "\n"), std::string::npos) << row.wanted;
        const Markup markup(text);
        EXPECT_TRUE(markup.wellFormed);
        EXPECT_GT(markup.deepest, 150);
        EXPECT_LT(markup.deepest, 200);
    }
}

TEST(WriteSvg, ManySiblingsTakeTheirTimeOnce) {
    ArtBuilder art;
    constexpr int count = 100'000;
    for (int i = 0; i < count; ++i) {
        art.path(art.layerArt(), box(0, 0, 1, 1), filled());
    }
    const Markup markup(art.svg());
    EXPECT_TRUE(markup.wellFormed);
    EXPECT_EQ(markup.elements.at("path"), count);
}

TEST(WriteSvg, HostileNamesStayInsideTheirAttributes) {
    using namespace std::string_view_literals;
    ArtBuilder art;
    art.document.setLayerProperties(art.document.firstLayer(),
                                    {.title = std::string("\"/><script>\0]]>--&#0;\xFF\n"sv)});
    art.path(art.layerArt(), box(0, 0, 1, 1), filled());
    Provenance from;
    from.sourceFile = "\"><!--\x1B\xED\xA0\x80.pdf";
    const Markup markup(art.svg(from));
    ASSERT_TRUE(markup.wellFormed);
    EXPECT_EQ(markup.elements, (std::map<std::string, int>{{"svg", 1}, {"g", 1}, {"path", 1}}));
    const pugi::xml_node root = markup.document.child("svg");
    EXPECT_STREQ(root.attribute("data-file").value(), "\"><!--\xC3\xAD\xC2\xA0.pdf");
    EXPECT_STREQ(root.child("g").attribute("inkscape:label").value(),
                 "\"/><script>]]>--&#0;\xC3\xBF\n");
}

} // namespace
} // namespace corvane::test
