// Images in SVG: ours come back as they were, anybody's lie where SVG says.
#include "app/images/embedded_images.h"

#include "tests/app/images/png_images.h"
#include "tests/app/svg/art_builder.h"
#include "tests/app/svg/read/read_art.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

namespace corvane::test {
namespace {

/// An image of the page, of 2 by 1 grays, whose bytes are in the SVG.
Image addImage(Document& document, std::string_view key, int first) {
    EmbeddedImages store;
    document.images().setStore(&store);
    bool wantsBytes = false;
    const Image image = document.images().add({.width = 2, .height = 1, .key = key}, wantsBytes);
    EXPECT_TRUE(wantsBytes);
    document.images().addBytes(image, octets({first, 200}));
    document.images().end(image);
    document.images().setStore(nullptr);
    return image;
}

Art place(Document& document, Art in, Image image, const Matrix& matrix, bool isSmooth = true) {
    const Art art = document.make(ArtKind::placed, Placement::inside, in);
    document.setPlacedImage(art, {image, matrix, isSmooth});
    return art;
}

Art firstPlaced(const Document& document) {
    Art art = document.firstChild(document.layerArt(document.firstLayer()));
    while (document.kind(art) == ArtKind::group) {
        art = document.lastChild(art);
    }
    return art;
}

std::string placeholder(ArtBuilder& art, const Matrix& matrix) {
    bool wantsBytes = false;
    const Image image = art.document.images().add(
        {.width = 640, .height = 480, .key = "7-f", .isPlaceholder = true}, wantsBytes);
    place(art.document, art.layerArt(), image, matrix, false);
    return art.svg();
}

TEST(ImageRoundTrip, PlacedObjectsComeBackToTheBit) {
    ArtBuilder art;
    art.document.page().setBounds({fixed(-10.7), fixed(782.5), fixed(602), fixed(9.25)});
    const Image image = addImage(art.document, "12-0a", 3);
    const Image other = addImage(art.document, "13-0b", 4);
    const std::array matrices{
        Matrix{fixed(200), 0, 0, fixed(100), fixed(20), fixed(30)},
        Matrix{12345671, -7654321, 333333, 1, -65537, 99999999},
        Matrix{0, fixed(-7.3), fixed(.00002), 0, 1, -1},
        Matrix{0, 0, 0, 0, 0, 0},
        Matrix{0x7FFFFFFF, 0x7FFFFFFF, -0x7FFFFFFF, 5, 0x7FFFFFFF, -0x7FFFFFFF},
    };
    const Art clipped = art.clippedGroup(art.layerArt(), box(0, 0, 50, 60));
    for (const Matrix& matrix : matrices) {
        place(art.document, art.layerArt(), image, matrix);
        art.document.setSource(place(art.document, art.layerArt(), other, matrix, false),
                               {10, 20, 3});
        const Art inner =
            art.document.make(ArtKind::placed, Placement::behind, art.document.firstChild(clipped));
        art.document.setPlacedImage(inner, {image, matrix, true});
    }
    const std::string written = art.svg();
    // Browsers blur what is only said to be drawn fast.
    EXPECT_NE(written.find("image-rendering=\"pixelated\""), std::string::npos);
    const ReadArt read(written);
    EXPECT_TRUE(read.reading.ignored.empty());
    EXPECT_EQ(read.svg(), written);
    EXPECT_EQ(read.document.images().size(), 2U);
    EXPECT_EQ(read.document.images().facts(Image{1}).key, "12-0a");
}

/// Of 2 by 1 pixels.
TEST(ImageRoundTrip, SquaresAreShownWhereTheyAreLarge) {
    struct Row {
        Matrix matrix;
        const char* name;
    };
    for (const Row& row : {
             Row{{fixed(2.1), 0, 0, fixed(1.1), 0, 0}, " image-rendering=\"pixelated\""},
             Row{{0, fixed(9), fixed(-9), 0, 0, 0}, " image-rendering=\"pixelated\""},
             Row{{fixed(2), 0, 0, fixed(9), 0, 0}, " data-image-rendering=\"pixelated\""},
             Row{{fixed(9), 0, 0, fixed(.5), 0, 0}, " data-image-rendering=\"pixelated\""},
         }) {
        ArtBuilder art;
        place(art.document, art.layerArt(), addImage(art.document, "12-0a", 3), row.matrix, false);
        const std::string written = art.svg();
        EXPECT_NE(written.find(row.name), std::string::npos) << written;
        EXPECT_EQ(ReadArt(written).svg(), written);
    }
}

TEST(ImageReading, WhatIsSeenOfSmoothnessCounts) {
    ArtBuilder art;
    place(art.document, art.layerArt(), addImage(art.document, "12-0a", 3),
          {fixedOne, 0, 0, fixedOne, 0, 0}, false);
    std::string edited = art.svg();
    edited.insert(edited.find(" data-image-rendering"), " image-rendering=\"auto\"");
    const ReadArt read(edited);
    EXPECT_TRUE(read.document.placedImage(firstPlaced(read.document)).isSmooth);
}

TEST(ImageRoundTrip, AFrameStandsForWhatCannotBeShown) {
    for (const Matrix& matrix : {Matrix{fixed(64), 0, 0, fixed(48), fixed(20), fixed(30)},
                                 Matrix{12345671, -7654321, 333333, 1000000, -65537, 9999999}}) {
        ArtBuilder art;
        const std::string written = placeholder(art, matrix);
        const ReadArt read(written);
        EXPECT_EQ(read.svg(), written);
        const PlacedImage placed = read.document.placedImage(firstPlaced(read.document));
        EXPECT_EQ(placed.matrix, matrix);
        const ImageFacts facts = read.document.images().facts(placed.image);
        EXPECT_TRUE(facts.isPlaceholder);
        EXPECT_EQ(facts.key, "7-f");
        EXPECT_EQ(facts.width, 640);
    }
    ArtBuilder art;
    std::string moved = placeholder(art, {fixed(64), 0, 0, fixed(48), 0, 0});
    moved.insert(moved.find(" d=\"M"), " transform=\"translate(5 -7)\"");
    const ReadArt read(moved);
    EXPECT_EQ(read.document.placedImage(firstPlaced(read.document)).matrix,
              (Matrix{fixed(64), 0, 0, fixed(48), fixed(5), fixed(7)}));
    for (const char* const wrong : {"640", "640 480 ../a", "0 480 a", "a"}) {
        EXPECT_EQ(ReadArt(ourSvg("<path data-kept='" + std::string(wrong) +
                                 "' fill='none' d='M0 0H5V5H0ZM0 0L5 5M5 0L0 5'/>"))
                      .document.images()
                      .size(),
                  0U);
    }
    EXPECT_EQ(ReadArt(foreignSvg("<path data-kept='6 4 a' d='M0 0H5V5H0ZM0 0L5 5M5 0L0 5'/>"))
                  .document.images()
                  .size(),
              0U);
}

TEST(ImageReading, BytesTellWhatWasReplaced) {
    ArtBuilder art;
    const Matrix matrix{fixed(64), 0, 0, fixed(48), 0, 0};
    place(art.document, art.layerArt(), addImage(art.document, "12-0a", 3), matrix);
    const std::string written = art.svg();
    ArtBuilder other;
    place(other.document, other.layerArt(), addImage(other.document, "12-0a", 99), matrix);
    const auto address = [](const std::string& svg) {
        const std::size_t start = svg.find("data:");
        return svg.substr(start, svg.find('"', start) - start);
    };
    std::string replaced = written;
    replaced.replace(replaced.find("data:"), address(written).size(), address(other.svg()));
    const auto keyOf = [](const std::string& svg) {
        const ReadArt read(svg);
        return std::string(read.document.images().facts(Image{1}).key);
    };
    EXPECT_EQ(keyOf(written), "12-0a");
    EXPECT_EQ(keyOf(replaced), "");
    std::string unmarked = written;
    const std::size_t mark = unmarked.find(" data-image");
    EXPECT_EQ(keyOf(unmarked.erase(mark, unmarked.find('"', mark + 13) + 1 - mark)), "");
    std::string foreign = written;
    EXPECT_EQ(keyOf(foreign.replace(foreign.find("\"corvane\""), 9, "\"other\"")), "");
}

/// 4 by 2 pixels.
std::string picture() {
    const std::string bytes = text(pngOf({4, 2, 0, 8, {1, 2, 3, 4, 5, 6, 7, 8}}));
    std::string address = "data:image/png,";
    for (const char c : bytes) {
        constexpr std::string_view digits = "0123456789abcdef";
        address += '%';
        address += digits[static_cast<unsigned char>(c) >> 4];
        address += digits[static_cast<unsigned char>(c) & 15];
    }
    return address;
}

TEST(ImageReading, LiesWhereSvgSays) {
    struct Row {
        std::string attributes;
        std::array<double, 6> matrix; ///< of a page 200 high
        bool isClipped = false;
    };
    for (const Row& row : {
             Row{"", {4, 0, 0, 2, 0, 198}},
             Row{"x='10' y='20' width='40'", {40, 0, 0, 20, 10, 160}},
             Row{"height='10'", {20, 0, 0, 10, 0, 190}},
             Row{"width='40' height='40'", {40, 0, 0, 20, 0, 170}},
             Row{"width='40' height='40' preserveAspectRatio='xMinYMin'", {40, 0, 0, 20, 0, 180}},
             Row{"width='40' height='10' preserveAspectRatio='xMaxYMid meet'",
                 {20, 0, 0, 10, 20, 190}},
             Row{"width='40' height='40' preserveAspectRatio='none'", {40, 0, 0, 40, 0, 160}},
             Row{"width='40' height='40' preserveAspectRatio='xMidYMid slice'",
                 {80, 0, 0, 40, -20, 160},
                 true},
             Row{"width='40' height='40' overflow='visible' preserveAspectRatio='xMinYMid slice'",
                 {80, 0, 0, 40, 0, 160}},
             Row{"width='40' height='20' preserveAspectRatio='xMidYMid slice'",
                 {40, 0, 0, 20, 0, 180}},
             Row{"width='10%' height='20' transform='translate(5 5) rotate(90)'",
                 {0, -30, 15, 0, -12.5, 195}},
         }) {
        const ReadArt art(foreignSvg("<image " + row.attributes + " href='" + picture() + "'/>"));
        const Art placed = firstPlaced(art.document);
        ASSERT_EQ(art.document.kind(placed), ArtKind::placed) << row.attributes;
        const Matrix matrix = art.document.placedImage(placed).matrix;
        const auto& m = row.matrix;
        EXPECT_EQ(matrix, (Matrix{fixed(m[0]), fixed(m[1]), fixed(m[2]), fixed(m[3]), fixed(m[4]),
                                  fixed(m[5])}))
            << row.attributes << ' ' << matrix.a / 65536. << ' ' << matrix.b / 65536. << ' '
            << matrix.c / 65536. << ' ' << matrix.d / 65536. << ' ' << matrix.tx / 65536. << ' '
            << matrix.ty / 65536.;
        const bool isClipped =
            art.document.parent(placed) != art.document.layerArt(art.document.firstLayer()) &&
            art.document.clipped(art.document.parent(placed));
        EXPECT_EQ(isClipped, row.isClipped) << row.attributes;
        EXPECT_TRUE(art.reading.ignored.empty());
    }
    EXPECT_EQ(redrawn("<image width='0' href='" + picture() + "'/>"), "");
    EXPECT_EQ(redrawn("<image height='-1' href='" + picture() + "'/>"),
              redrawn("<image href='" + picture() + "'/>"));
}

TEST(ImageReading, StylesClipsAndUsesCountAsForPaths) {
    const std::string image = "<image id='i' width='40' height='20' href='" + picture() + "' ";
    const ReadArt hidden(foreignSvg(image + "display='none'/>"));
    EXPECT_EQ(hidden.ignored("hidden element"), 1);
    EXPECT_EQ(hidden.document.images().size(), 0U);
    const ReadArt half(foreignSvg(image + "opacity='.5' style='mix-blend-mode:hue'/>"));
    EXPECT_EQ(half.document.appearance(firstPlaced(half.document)),
              (Appearance{.opacity = .5, .blend = BlendMode::hue}));

    for (const char* const rough :
         {"image-rendering='pixelated'", "style='image-rendering:crisp-edges'",
          "image-rendering='optimizeSpeed'"}) {
        const ReadArt art(foreignSvg("<g " + std::string(rough) + ">" + image + "/></g>"));
        EXPECT_FALSE(art.document.placedImage(firstPlaced(art.document)).isSmooth) << rough;
    }
    const ReadArt used(
        foreignSvg("<defs>" + image + "/></defs><use href='#i'/><use href='#i' x='9'/>"));
    EXPECT_EQ(used.document.images().size(), 1U);
    for (const char* const units : {"userSpaceOnUse", "objectBoundingBox"}) {
        const ReadArt art(foreignSvg("<clipPath id='c' clipPathUnits='" + std::string(units) +
                                     "'><rect width='.5' height='1'/></clipPath>" + image +
                                     "clip-path='url(#c)'/>"));
        const Art group = art.document.parent(firstPlaced(art.document));
        EXPECT_TRUE(art.document.clipped(group)) << units;
        EXPECT_EQ(art.document.segments(art.document.firstChild(group))[1].anchor.x,
                  units[0] == 'o' ? fixed(20) : fixed(.5));
    }
}

TEST(ImageReading, OneFileIsReadOnceHoweverItIsSpelled) {
    const TemporaryFolder folder;
    folder.add("x.png", text(pngOf({4, 2, 0, 8, {1, 2, 3, 4, 5, 6, 7, 8}})));
    const ImageFolders files(folder.path().string(), {}, false);
    const auto pausesOf = [&](const std::vector<const char*>& addresses) {
        std::string body;
        for (const char* const address : addresses) {
            body += "<image href='" + std::string(address) + "'/>";
        }
        Document document;
        int pauses = 0;
        readSvg(
            foreignSvg(body), document, [&](std::size_t) { ++pauses; }, &files);
        EXPECT_EQ(document.images().size(), 1U);
        return pauses;
    };
    EXPECT_EQ(pausesOf({"x.png", "./x.png", "x.png#1", "%78.png"}),
              pausesOf({"x.png", "x.png", "x.png", "x.png"}));
    EXPECT_GT(pausesOf({"x.png"}), 1) << "a person may stop what is read";
}

/// An Exif segment, a frame of 4 by 2 pixels and an empty scan.
std::string turnedJpeg(int orientation) {
    const std::vector<std::byte> bytes = octets(
        {0xFF, 0xD8,        0xFF, 0xE1, 0,    34, 'E',  'x',  'i',  'f',  0,    0,   'M', 'M', 0,
         42,   0,           0,    0,    8,    0,  1,    1,    18,   0,    3,    0,   0,   0,   1,
         0,    orientation, 0,    0,    0,    0,  0,    0,    0xFF, 0xC0, 0,    11,  8,   0,   2,
         0,    4,           1,    0,    0x11, 0,  0xFF, 0xDA, 0,    2,    0xFF, 0xD9});
    std::string address = "data:,";
    for (const std::byte byte : bytes) {
        constexpr std::string_view digits = "0123456789abcdef";
        address += '%';
        address += digits[std::to_integer<std::size_t>(byte) >> 4];
        address += digits[std::to_integer<std::size_t>(byte) & 15];
    }
    return address;
}

TEST(ImageReading, AHeldCameraTurnsThePicture) {
    // Where the first pixel of the file's first row, and the last of it, are seen: in a picture of
    // 4 by 2 points, or 2 by 4, at the page's upper left, y up from the page's lower edge.
    struct Row {
        int orientation;
        RealPoint first;
        RealPoint last;
    };
    for (const Row& row :
         {Row{1, {0, 200}, {4, 200}}, Row{2, {4, 200}, {0, 200}}, Row{3, {4, 198}, {0, 198}},
          Row{4, {0, 198}, {4, 198}}, Row{5, {0, 200}, {0, 196}}, Row{6, {2, 200}, {2, 196}},
          Row{7, {2, 196}, {2, 200}}, Row{8, {0, 196}, {0, 200}}}) {
        for (const bool isHeeded : {true, false}) {
            const ReadArt art(foreignSvg(
                "<image style='image-orientation:" + std::string(isHeeded ? "from-image" : "none") +
                "' href='" + turnedJpeg(row.orientation) + "'/>"));
            const Matrix m = art.document.placedImage(firstPlaced(art.document)).matrix;
            EXPECT_EQ(ReadArt(art.svg()).svg(), art.svg()) << "turned once";
            const auto seen = [&](int x) {
                return Point{x * m.a + m.c + m.tx, x * m.b + m.d + m.ty};
            };
            const RealPoint first = isHeeded ? row.first : RealPoint{0, 200};
            const RealPoint last = isHeeded ? row.last : RealPoint{4, 200};
            EXPECT_EQ(seen(0), at(first.x, first.y)) << row.orientation;
            EXPECT_EQ(seen(1), at(last.x, last.y)) << row.orientation;
        }
    }
}

TEST(ImageReading, FilesAreReadWhereThatIsAllowed) {
    const TemporaryFolder folder;
    const std::string file = text(pngOf({4, 2, 0, 8, {1, 2, 3, 4, 5, 6, 7, 8}}));
    folder.add("a b.png", file);
    folder.add("copy.png", file);
    folder.add("broken.png", file.substr(0, 30));
    folder.add("other.gif", "GIF89a");
    const ImageFolders files(folder.path().string(), {}, false);
    const auto read = [&](const std::string& address, Document& document) {
        return readSvg(foreignSvg("<image href='" + address + "'/>"), document, {}, &files);
    };
    {
        Document document;
        readSvg(foreignSvg("<image xlink:href='no.png' href='a%20b.png'/>"
                           "<image xlink:href='copy.png'/>"),
                document, {}, &files);
        EXPECT_EQ(document.images().size(), 1U) << "one object";
        EXPECT_EQ(document.images().file(Image{1})->address, "a%20b.png");
    }
    for (const char* const lost : {"http://host/a.png", "other.gif"}) {
        Document document;
        EXPECT_EQ(read(lost, document).ignored.at("image"), 1) << lost;
    }
    struct Row {
        std::string address;
        std::string sentence;
    };
    for (const Row& row :
         {Row{"no.png", "the image no.png cannot be read (No such file or directory)"},
          Row{"broken.png", "the image broken.png is damaged"},
          Row{"../x.png", "the image ../x.png cannot be read"},
          Row{"/etc/passwd", "the image /etc/passwd lies outside the folder of the artwork"},
          Row{"data:;base64,!", "an embedded image is no base-64"}, Row{"data:,", "is empty"}}) {
        Document document;
        try {
            read(row.address, document);
            ADD_FAILURE() << row.address;
        } catch (const SvgImageError& error) {
            EXPECT_NE(std::string(error.what()).find(row.sentence), std::string::npos)
                << error.what();
            EXPECT_EQ(std::string(error.what()).substr(0, 8), "line 1: ");
        }
    }
}

} // namespace
} // namespace corvane::test
