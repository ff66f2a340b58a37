#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"

#include <gtest/gtest.h>

#include <array>

namespace corvane::test {
namespace {

const std::string square = "<path d=\"M0 0H10V10H0Z\"/>";
const std::string rectangle = "<rect width='10' height='10'/>";

TEST(ReadStructure, PagesOfOthers) {
    struct Row {
        const char* root;
        double width, height; ///< points
        const char* wanted;   ///< the square of 10 user units
    };
    const Row rows[] = {
        {"width='400' height='200'", 300, 150, "M0 0H7.5V7.5H0Z"},
        {"width='4in' height='25.4mm'", 288, 72, "M0 0H7.5V7.5H0Z"},
        {"viewBox='0 0 400 200'", 300, 150, "M0 0H7.5V7.5H0Z"},
        {"width='100%' height='100%' viewBox='-10 -20 400 200'", 300, 150, "M7.5 15H15V22.5H7.5Z"},
        {"width='200pt' viewBox='0 0 100 100'", 200, 200, "M0 0H20V20H0Z"},
        {"width='200pt' height='100pt' viewBox='0 0 10 10'", 200, 100, "M50 0H150V100H50Z"},
        {"width='200pt' height='100pt' viewBox='0 0 10 10' preserveAspectRatio='none'", 200, 100,
         "M0 0H200V100H0Z"},
        {"width='200pt' height='100pt' viewBox='0 0 10 10' preserveAspectRatio='xMaxYMin slice'",
         200, 100, "M0 0H200V200H0Z"},
        {"", 225, 112.5, "M0 0H7.5V7.5H0Z"},
    };
    for (const Row& row : rows) {
        const ReadArt art("<svg " + std::string(row.root) + ">" + rectangle + "</svg>");
        EXPECT_EQ(art.document.page().bounds(), (Rect{0, fixed(row.height), fixed(row.width), 0}))
            << row.root;
        EXPECT_EQ(art.document.page().artboard().width, fixed(row.width)) << row.root;
        EXPECT_EQ(art.drawn(), "<path d=\"" + std::string(row.wanted) + "\"/>") << row.root;
        EXPECT_FALSE(art.reading.ours);
    }
}

/// An editor counts the same page in other units, or the person changes it.
TEST(ReadStructure, PagesOfOursAfterAnEditor) {
    const std::string ours = "<svg data-producer='corvane' data-bounds='10 20 310 220'"
                             " data-artboard='400 300' ";
    const auto read = [&](const std::string& root, const std::string& body) {
        return ReadArt(ours + root + "><g inkscape:groupmode='layer'>" + body + "</g></svg>");
    };
    const ReadArt kept = read("width='300pt' height='200pt' viewBox='0 0 300 200'", rectangle);
    const ReadArt inPixels = read("width='400' height='266.66667' viewBox='0 0 400 266.66667'",
                                  "<g transform='scale(1.3333333)'>" + rectangle + "</g>");
    const ReadArt inMillimetres =
        read("width='105.833mm' height='70.5556mm' viewBox='0 0 300 200'", rectangle);
    for (const ReadArt* art : {&kept, &inPixels, &inMillimetres}) {
        EXPECT_EQ(art->document.page().bounds(),
                  (Rect{fixed(10), fixed(220), fixed(310), fixed(20)}));
        EXPECT_EQ(art->document.page().artboard().width, fixed(400));
        EXPECT_NE(art->drawn().find("M0 0H10V10H0Z"), std::string::npos) << art->drawn();
    }
    const ReadArt larger = read("width='600pt' height='200pt' viewBox='-300 0 600 200'", rectangle);
    EXPECT_EQ(larger.document.page().bounds(),
              (Rect{fixed(-290), fixed(220), fixed(310), fixed(20)}));
    EXPECT_EQ(larger.document.page().artboard().width, fixed(600));
    EXPECT_EQ(larger.drawn(), "<path d=\"M300 0H310V10H300Z\"/>");
    const ReadArt smaller = read("width='90pt' height='80pt' viewBox='0 0 90 80'", rectangle);
    EXPECT_EQ(smaller.document.page().bounds(),
              (Rect{fixed(10), fixed(220), fixed(100), fixed(140)}));
    EXPECT_EQ(smaller.document.page().artboard().width, fixed(400)) << "still cut from the media";
}

TEST(ReadStructure, LayersAndLooseArt) {
    const std::string layer = "<g inkscape:groupmode='layer' inkscape:label='";
    const ReadArt art(foreignSvg(rectangle + layer + "A' style='display:none'>" + rectangle +
                                 "</g>" + layer + "B' sodipodi:insensitive='true'/>" + "<g>" +
                                 rectangle + "</g>" + rectangle + "<g transform='scale(2)'>" +
                                 layer + "C'>" + rectangle + layer + "inner'>" + rectangle +
                                 "</g></g></g>"));
    std::vector<std::string> titles;
    const Document& document = art.document;
    for (Layer at = document.lastLayer(); at != Layer::null; at = document.previousLayer(at)) {
        titles.push_back(document.layerProperties(at).title);
    }
    EXPECT_EQ(titles, (std::vector<std::string>{"", "A", "B", "", "C"}));
    EXPECT_TRUE(art.reading.ignored.empty());
    const Layer hidden = document.previousLayer(document.lastLayer());
    EXPECT_FALSE(document.layerProperties(hidden).visible);
    EXPECT_NE(document.firstChild(document.layerArt(hidden)), Art::null);
    EXPECT_TRUE(document.layerProperties(document.previousLayer(hidden)).locked);
    EXPECT_NE(art.svg().find("M0 0H20V20H0Z"), std::string::npos);
}

/// The layers that groups show with, in the order of the file: their names, - hidden, ! locked, and
/// the number of those that the file has.
std::string layersOf(const Document& document) {
    std::string text;
    const auto add = [&](auto&& self, Art group) -> void {
        if (const ContentLayer layer = document.groupLayer(group); layer != ContentLayer::null) {
            const ContentLayerFacts facts = document.contentLayers().facts(layer);
            text += (text.empty() ? "" : " ") + std::string(facts.isVisible ? "" : "-") +
                    std::string(facts.name) + (facts.isLocked ? "!" : "");
            text += facts.object == 0 ? "" : std::to_string(facts.object);
        }
        for (Art art = document.lastChild(group); art != Art::null;
             art = document.previousSibling(art)) {
            if (document.kind(art) == ArtKind::group) {
                self(self, art);
            }
        }
    };
    for (Layer at = document.lastLayer(); at != Layer::null; at = document.previousLayer(at)) {
        add(add, document.layerArt(at));
    }
    return text;
}

TEST(ReadStructure, LayersThatAPersonMadeAndChanged) {
    const auto layer = [](const std::string& attributes, const std::string& within = "") {
        return "<g inkscape:groupmode='layer' " + attributes + ">" + within + rectangle + "</g>";
    };
    const std::string known = "data-layer='7' data-layer-name='A' ";
    struct Row {
        const char* name;
        std::string body;
        const char* layers;
        bool isOurs = true;
    };
    const std::vector<Row> rows{
        {"of another program", layer("inkscape:label='A'") + layer("display='none'"), "A -", false},
        {"beside that of the page",
         layer("inkscape:label='N' sodipodi:insensitive='true'") + layer("id='layer1'") +
             layer("inkscape:label='M'"),
         "N! M"},
        {"the page's has lost its id", layer("") + layer("inkscape:label='M'"), "M"},
        {"the page's is hidden", layer("id='layer1' inkscape:label='P' display='none'"), "-P"},
        {"within others",
         layer("id='layer1'",
               layer("inkscape:label='A'", layer("inkscape:label='B' display='none'"))),
         "A -B"},
        {"of the file", layer("id='layer1'", layer(known + "inkscape:label='A'")), "A7"},
        {"hidden", layer("id='layer1'", layer(known + "inkscape:label='A' style='display:none'")),
         "-A7"},
        {"shown and unlocked",
         layer("id='layer1'",
               layer(known + "data-layer-state='hidden locked' inkscape:label='B' display='none' "
                             "style='display:inline'")),
         "B7"},
        {"one of two groups is changed",
         layer("id='layer1'", layer(known + "inkscape:label='A'") +
                                  layer(known + "inkscape:label='A' display='none'") +
                                  layer(known + "inkscape:label='A'")),
         "-A7 -A7 -A7"},
        {"used again, and in a tile",
         layer("id='layer1'") + "<defs><pattern id='t' width='9' height='9'>" +
             layer("inkscape:label='T'") + "</pattern></defs>",
         ""},
    };
    for (const Row& row : rows) {
        const ReadArt art(row.isOurs ? foreignSvg(row.body, "data-producer='corvane'")
                                     : foreignSvg(row.body));
        EXPECT_EQ(layersOf(art.document), row.layers) << row.name;
        EXPECT_TRUE(art.reading.ignored.empty()) << row.name;
    }
}

TEST(ReadStructure, WhatIsUsed) {
    EXPECT_EQ(redrawn("<defs><g id='a'>" + rectangle +
                      "</g></defs><use href='#a' x='5'/>"
                      "<use xlink:href='#a' fill='red' transform='scale(2)'/>"),
              "<g><g><path d=\"M5 0H15V10H5Z\"/></g></g>"
              "<g><g><path fill=\"#ff0000\" d=\"M0 0H20V20H0Z\"/></g></g>");
    // A symbol shows its view box, and cuts what reaches out of it.
    EXPECT_EQ(redrawn("<symbol id='s' viewBox='0 0 10 10'>" + rectangle +
                      "</symbol><use href='#s' width='20' height='20'/>"),
              "<g><g><path d=\"M0 0H20V20H0Z\"/></g></g>");
    EXPECT_EQ(redrawn("<symbol id='s' viewBox='2 0 10 10'>" + rectangle +
                      "</symbol><use href='#s' x='9' y='9' width='20' height='20'/>"),
              "<g><clipPath><path d=\"M9 9H29V29H9Z\"/></clipPath>"
              "<g clip-path=\"url(#clip1)\"><path d=\"M5 9H25V29H5Z\"/></g></g>");
    EXPECT_EQ(redrawn("<svg x='10' y='5' width='20' height='40' viewBox='0 0 10 10'>" + rectangle +
                      "</svg>"),
              "<g><path d=\"M10 15H30V35H10Z\"/></g>");
    EXPECT_EQ(redrawn("<switch><path systemLanguage='xx' d='M0 0H1'/>" + rectangle +
                      "<path d='M0 0H2'/></switch>"),
              "<g>" + square + "</g>");
    const ReadArt bad(foreignSvg("<g id='a'><use href='#a'/></g><use href='#nothing'/>"
                                 "<use href='other.svg#a'/><use/>"));
    EXPECT_EQ(bad.ignored("circular reference"), 1);
    EXPECT_EQ(bad.ignored("use"), 2);
    EXPECT_EQ(bad.ignored("external reference"), 1);
}

TEST(ReadStructure, WhatCannotBeHeldIsCounted) {
    const ReadArt art(
        foreignSvg("<title>t</title><metadata><x:y/></metadata><sodipodi:namedview/><!-- c -->"
                   "<image href='a.png'/><foreignObject/><script/><blink/><filter id='f'/>"
                   "<rect width='1' height='1' filter='url(#f)' style='mask:url(#m)'>"
                   "<animate/><set/></rect><g opacity='.5'>" +
                   rectangle + "</g><g display='none'>" + rectangle +
                   "</g><rect width='1' height='1' visibility='hidden'/>"));
    const std::map<std::string, std::int32_t> wanted{
        {"image", 1},  {"foreignObject", 1}, {"script", 1},  {"unknown element", 1},
        {"filter", 1}, {"mask", 1},          {"animate", 2}, {"hidden element", 2}};
    EXPECT_EQ(art.reading.ignored, wanted);
}

TEST(ReadStructure, ImagesAreListedAndNotOpened) {
    const ReadArt art(foreignSvg(
        "<g transform='translate(10 20)'><image id='logo' href='no/such file.png' x='1' y='10%'"
        " width='2em' height='3' style='font-size:10px' transform='scale(2)'/></g>"
        "<symbol id='s'><image xlink:href=' data:image/png;base64,AAAA'/></symbol>"
        "<use href='#s'/><use href='#s'/>"));
    EXPECT_EQ(art.ignored("image"), 3);
    ASSERT_EQ(art.reading.images.size(), 3U);
    const SvgImage& image = art.reading.images.front();
    EXPECT_EQ(image.id, "logo");
    EXPECT_EQ(image.href, "no/such file.png");
    EXPECT_FALSE(image.embedded);
    EXPECT_EQ((std::array{image.x, image.y, image.width, image.height}),
              (std::array{1.0, 20.0, 20.0, 3.0}));
    EXPECT_EQ(image.matrix, (RealMatrix{2, 0, 0, -2, 10, 180}));
    EXPECT_TRUE(art.reading.images.back().embedded);
    EXPECT_EQ(art.reading.images.back().href, "data:image/png;base64");
}

TEST(ReadStructure, WhatIsNotUnderstoodInPlaceIsCounted) {
    const ReadArt art("<!DOCTYPE svg [<!ENTITY red 'fill:red'><!ENTITY box '<rect/>'>]>" +
                      foreignSvg("<rect width='1' height='1' style='&red;'/>&box;"
                                 "<rect width='1' height='1' style='cx:9px'/>"
                                 "<style>path{d:none} circle{r:5px}</style>",
                                 "style='width:100%'"));
    const std::map<std::string, std::int32_t> wanted{{"entity", 2}, {"geometry in a style", 2}};
    EXPECT_EQ(art.reading.ignored, wanted);
}

/// What is nothing to be seen takes time too.
TEST(ReadStructure, WhatIsReadAgainAndAgainIsLimited) {
    const auto times = [](int count, const std::string& text) {
        std::string all;
        for (int i = 0; i < count; ++i) {
            all += text;
        }
        return all;
    };
    const std::string uses = times(2'000, "<use href='#a'/>");
    const std::string files[] = {
        "<clipPath id='a'>" + times(2'000, "<rect display='none'/>") + "</clipPath>" +
            times(2'000, "<g clip-path='url(#a)'/>"),
        "<path id='a' d='M0 0" + times(400'000, " ") + "'/>" + uses,
        "<path id='a' d='M0 0'>" + times(2'000, "<desc/>") + "</path>" + uses,
        "<switch id='a'>" + times(2'000, "<g requiredExtensions='x'/>") + "</switch>" + uses,
        "<g id='a'>" + times(1'000, "a<![CDATA[]]>") + "</g>" + uses,
        "<linearGradient id='g'>" + times(2'000, "<stop offset='1'/>") +
            "</linearGradient><pattern id='p' width='1' height='1'>"
            "<rect width='9' height='9' fill='url(#g)'/></pattern>" +
            times(2'000, "<rect width='9' height='9' fill='url(#p)'/>"),
    };
    for (const std::string& file : files) {
        EXPECT_THROW(ReadArt(foreignSvg(file)), SvgError) << file.substr(0, 40);
    }
}

TEST(ReadStructure, NotesAndPrefixes) {
    const ReadArt art("<s:svg xmlns:s='http://www.w3.org/2000/svg'><s:path d='M0 0H1'>"
                      "<s:desc>cut &lt; here </s:desc></s:path></s:svg>");
    const Art path = art.document.firstChild(art.document.layerArt(art.document.firstLayer()));
    EXPECT_EQ(art.document.note(art.document.style(path).note), "cut < here ");
    const ReadArt both(
        foreignSvg("<s:rect width='9' height='9'/>", "xmlns:s='http://www.w3.org/2000/svg'"));
    EXPECT_EQ(both.drawn(), "<path d=\"M0 0H9V9H0Z\"/>");
}

TEST(ReadStructure, ThePauseEndsTheReadingAnywhere) {
    struct Stop {};
    const auto pausesOf = [](const std::string& body, int most) {
        Document document;
        int pauses = 0;
        try {
            readSvg(foreignSvg(body), document, [&](std::size_t) {
                if (++pauses == most) {
                    throw Stop();
                }
            });
        } catch (const Stop&) {
            return -pauses;
        }
        return pauses;
    };
    std::string paths;
    std::string uses;
    for (int i = 0; i < 20; ++i) {
        paths += "<path d='M0 0H1V1Z'/>";
        uses += "<use href='#g'/>";
    }
    // What is drawn again counts again: a file may be short and its reading long.
    for (const std::string& body : {paths, "<g id='g'><path/></g>" + uses,
                                    "<pattern id='p' width='1' height='1'>" + paths +
                                        "</pattern><rect width='9' height='9' fill='url(#p)'/>"}) {
        EXPECT_GE(pausesOf(body, 0), 20) << body.substr(0, 30);
        EXPECT_EQ(pausesOf(body, 15), -15) << body.substr(0, 30);
    }
}

TEST(ReadStructure, FaultsSayWhatAndWhere) {
    const auto fault = [](const std::string& text) {
        Document document;
        try {
            readSvg(text, document);
        } catch (const SvgError& error) {
            return std::string(error.what());
        }
        return std::string("read");
    };
    EXPECT_EQ(fault(""), "the file is no SVG: it holds no element");
    EXPECT_EQ(fault("\n\n<html/>"), "line 3: the file is no SVG: its outermost element is no svg");
    EXPECT_TRUE(fault("<svg\n>\n<g\n x='1'>\n</h>\n</svg>").starts_with("line 5: "));
    EXPECT_EQ(fault("<svg/>"), "read");
    std::string deep = "<svg>\n";
    for (int i = 0; i < 100000; ++i) {
        deep += "<g>\n";
    }
    EXPECT_EQ(fault(deep + "<path/>" + std::string(4, ' ')).substr(0, 5), "line ");
    std::string balanced = deep;
    for (int i = 0; i < 100000; ++i) {
        balanced += "</g>";
    }
    EXPECT_EQ(fault(balanced + "</svg>"), "line 4097: the art is nested too deeply");
}

/// What groups stand for in the file comes back as it was written.
TEST(ReadStructure, FormsAndLayersOfTheFile) {
    const char* rows[] = {
        "<g id=\"p1\" data-form=\"12 3\" data-source=\"5 9 0\">"
        "<path id=\"f3p1\" data-source=\"2 5 0 3\" d=\"M0 10H10V0H0Z\"/>"
        "<g id=\"f3p2\" data-form=\"0 4\" data-source=\"6 7 1 3\">"
        "<path id=\"f4p1\" d=\"M0 10H10V0H0Z\"/></g></g>"
        "<path id=\"p2\" d=\"M0 10H10V0H0Z\"/>",
        "<g id=\"g1\" inkscape:groupmode=\"layer\" inkscape:label=\"A&amp;B\" data-layer=\"7\""
        " data-layer-name=\"A&amp;B\" data-layer-state=\"hidden locked\""
        " xmlns:sodipodi=\"http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd\""
        " sodipodi:insensitive=\"true\" display=\"none\"><path id=\"p1\" d=\"M0 10H10V0H0Z\"/>"
        "<g id=\"g2\" inkscape:groupmode=\"layer\" inkscape:label=\"C\" data-layer=\"8\" "
        "data-layer-name=\"C\">"
        "<path id=\"p2\" d=\"M0 10H10V0H0Z\"/></g></g>",
    };
    for (const std::string row : rows) {
        const ReadArt art(ourSvg(row));
        std::string text = art.svg();
        std::erase(text, '\n');
        for (std::size_t at = text.find("> "); at != std::string::npos; at = text.find("> ", at)) {
            text.erase(at + 1, text.find('<', at) - at - 1);
        }
        EXPECT_NE(text.find(row), std::string::npos) << text;
        EXPECT_TRUE(art.reading.ignored.empty()) << row;
    }
    // In a file of another program these attributes mean nothing.
    const ReadArt foreign(foreignSvg(rows[0]));
    EXPECT_EQ(foreign.svg().find("data-form"), std::string::npos);
}

/// The art of an annotation that was deleted is an empty group.
TEST(ReadStructure, AnnotationsAreALayer) {
    const std::string drawn = "<g data-form='15 4'><path d='M0 0H10V10Z'/></g>";
    const auto read = [](const std::string& layer, const std::string& mode) {
        return ReadArt("<svg xmlns='http://www.w3.org/2000/svg' width='300pt' height='200pt'"
                       " data-producer='corvane'><g inkscape:groupmode='layer'/><g " +
                       mode + layer + "</g></svg>");
    };
    struct Row {
        std::string layer;
        int groups;
        int empty;
        std::string mode = "inkscape:groupmode='layer' "; ///< plain SVG has none
    };
    for (const Row& row : {Row{"data-annotations='15 4 16 5'>" + drawn, 2, 1},
                           Row{"id='annotations'>" + drawn, 1, 0},
                           Row{"data-annotations='15 4 x'><g>" + drawn + "</g>", 1, 0},
                           Row{"data-annotations='15 4'>", 1, 1},
                           Row{"data-annotations='15 4'>" + drawn, 1, 0, ""}}) {
        const ReadArt art = read(row.layer, row.mode);
        const Document& document = art.document;
        const Layer layer = document.firstLayer();
        EXPECT_EQ(document.layerProperties(layer).role, LayerRole::annotations) << row.layer;
        EXPECT_EQ(document.layerProperties(document.lastLayer()).role, LayerRole::page);
        int empty = 0;
        int groups = 0;
        for (Art child = document.firstChild(document.layerArt(layer)); child != Art::null;
             child = document.nextSibling(child)) {
            ++groups;
            empty += document.firstChild(child) == Art::null ? 1 : 0;
        }
        EXPECT_EQ(groups, row.groups) << row.layer;
        EXPECT_EQ(empty, row.empty) << row.layer;
        if (row.empty == 0) {
            EXPECT_NE(art.svg().find("id=\"annotations\""), std::string::npos) << art.svg();
        }
    }
}

} // namespace
} // namespace corvane::test
