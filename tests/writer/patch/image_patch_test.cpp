// Images that are edited and saved as patches: what the page has keeps its object, what is new gets
// one.
#include "host/matrix.h"
#include "tests/reader/seen_text.h"
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class Pixels final : public ImageContent {
public:
    explicit Pixels(std::string bytes) : bytes_(std::move(bytes)) {}

    std::unique_ptr<ImageSource> open() const override { return std::make_unique<Source>(bytes_); }

private:
    class Source final : public ImageSource {
    public:
        explicit Source(std::string_view bytes) : bytes_(bytes) {}
        std::size_t read(std::span<std::byte> into) override {
            const std::string_view piece = bytes_.substr(0, into.size());
            std::ranges::copy(std::as_bytes(std::span(piece)), into.begin());
            bytes_.remove_prefix(piece.size());
            return piece.size();
        }

    private:
        std::string_view bytes_;
    };

    std::string bytes_;
};

class Hanger {
public:
    explicit Hanger(Document& edited) : document(edited) {
        for (Layer layer = document.lastLayer(); layer != Layer::null;
             layer = document.previousLayer(layer)) {
            list(document.layerArt(layer));
        }
    }

    void place(std::size_t index, const Matrix& matrix) {
        PlacedImage placed = document.placedImage(images.at(index));
        placed.matrix = matrix;
        document.setPlacedImage(images[index], placed);
    }
    void move(std::size_t index, double dx, double dy) {
        Matrix matrix = document.placedImage(images.at(index)).matrix;
        matrix.tx += fixedFromReal(dx);
        matrix.ty += fixedFromReal(dy);
        place(index, matrix);
    }
    Image picture(const ImageFacts& facts, std::string bytes) {
        return document.images().add(facts, ImageFile{},
                                     std::make_shared<Pixels>(std::move(bytes)));
    }
    void show(std::size_t index, Image image) {
        PlacedImage placed = document.placedImage(images.at(index));
        placed.image = image;
        document.setPlacedImage(images[index], placed);
    }
    Art add(Image image, const Matrix& matrix) {
        const Art placed = document.make(ArtKind::placed, Placement::inside,
                                         document.layerArt(document.firstLayer()));
        document.setPlacedImage(placed, {.image = image, .matrix = matrix});
        return placed;
    }

    Document& document;
    std::vector<Art> images; ///< from the back

private:
    void list(Art container) {
        for (Art art = document.lastChild(container); art != Art::null;
             art = document.previousSibling(art)) {
            if (document.kind(art) == ArtKind::placed) {
                images.push_back(art);
            } else if (document.kind(art) == ArtKind::group) {
                list(art);
            }
        }
    }
};

class ImagePatchTest : public PatchTest {
protected:
    void openImages(std::string_view content) {
        openFile(PdfBuilder::onePage(
                     content,
                     "/Resources << /XObject << /A 20 0 R /B 21 0 R /C 22 0 R >> /ExtGState "
                     "<< /Half << /ca .5 >> >> >>")
                     .stream(20, "abcd", gray)
                     .stream(21, "efgh", gray)
                     .stream(22, "ijkl", std::string(gray) + "/Intent /Perceptual")
                     .bytes());
    }
    Hanger hanger() { return Hanger(*document_); }

    /// Which images there are, from the back, and where they lie; new ones have the name "new".
    std::string look() {
        std::string text;
        for (const Art art : hanger().images) {
            const PlacedImage placed = document_->placedImage(art);
            const std::string key(document_->images().facts(placed.image).key);
            text += (key.empty() ? "new" : key.substr(0, key.find('-')));
            for (const Fixed number : {placed.matrix.a, placed.matrix.b, placed.matrix.c,
                                       placed.matrix.d, placed.matrix.tx, placed.matrix.ty}) {
                text += " " + test::realText(std::round(realFromFixed(number) * 64) / 64);
            }
            text += "\n";
        }
        return text;
    }

    /// Of so few pixels that they would not run into one another where the file did not say it.
    static constexpr std::string_view gray =
        "/Type /XObject /Subtype /Image /Width 2 /Height 2 /BitsPerComponent 8 /ColorSpace "
        "/DeviceGray /Interpolate true";
};

struct Edit {
    const char* name;
    std::string content;
    std::function<void(Hanger&)> edit;
    const char* facts; ///< kept, changed, added, removed, moved
    std::string saved; ///< the content; empty: only what is seen counts
};

/// Its start, and a frame whose components are named R, G and B.
const std::string rgbJpeg("\xFF\xD8\xFF\xC0\0\x11\x08\0\x06\0\x05\x03R\x11\0G\x11\0B\x11\0\xFF\xD9",
                          23);

const std::string two = "q 9 0 0 9 10 20 cm /A Do Q 0 0 5 5 re f q 8 0 0 8 50 60 cm /B Do Q";
const std::string own = "q 9 0 0 9 10 20 cm BI /W 2 /H 1 /BPC 8 /CS /G ID EI EI Q 0 0 5 5 re f";

TEST_F(ImagePatchTest, Edits) {
    const Edit rows[] = {
        {"one is moved", two, [](Hanger& it) { it.move(0, 9, 18); }, "2 1 0 0 0",
         "q 9 0 0 9 10 20 cm \nq\n1 0 0 1 1 2 cm\n/A Do\nQ\n Q 0 0 5 5 re f q 8 0 0 8 50 60 cm /B "
         "Do "
         "Q\n"},
        {"one is turned", two,
         [](Hanger& it) {
             it.place(1, {0, 8 * fixedOne, -8 * fixedOne, 0, 0, fixedOne});
         },
         "2 1 0 0 0", ""},
        {"one goes", two, [](Hanger& it) { it.document.dispose(it.images[0]); }, "2 0 0 1 0",
         "q 9 0 0 9 10 20 cm   Q 0 0 5 5 re f q 8 0 0 8 50 60 cm /B Do Q\n"},
        {"a copy", two,
         [](Hanger& it) {
             it.images[0] = it.document.duplicate(it.images[0], Placement::inFront, it.images[1]);
             it.move(0, 20, 0);
         },
         "3 0 1 0 0", ""},
        {"another order", two,
         [](Hanger& it) { it.document.reorder(it.images[0], Placement::inFront, it.images[1]); },
         "2 0 0 0 1", ""},
        {"an inline image is moved", own, [](Hanger& it) { it.move(0, 0, 9); }, "1 1 0 0 0",
         "q 9 0 0 9 10 20 cm \nq\n1 0 0 1 0 1 cm\nBI /W 2 /H 1 /BPC 8 /CS /G ID EI EI\nQ\n Q 0 0 5 "
         "5 re f\n"},
        {"an inline image goes", own, [](Hanger& it) { it.document.dispose(it.images[0]); },
         "1 0 0 1 0", "q 9 0 0 9 10 20 cm   Q 0 0 5 5 re f\n"},
        {"an inline image between text",
         "BT 9 0 0 9 0 0 Tm BI /W 2 /H 1 /BPC 8 /CS /G ID EI EI 5 5 Td ET 0 0 5 5 re f",
         [](Hanger& it) { it.move(0, 3, 9); }, "1 1 0 0 0", ""},
        {"in a space of its own, under transparency",
         "/Half gs q .5 .1 0 -.5 10 600 cm q 40 0 0 40 0 0 cm /A Do Q Q q 8 0 0 8 50 60 cm /B Do Q",
         [](Hanger& it) {
             it.move(0, 5, 3);
             it.document.reorder(it.images[1], Placement::behind, it.images[0]);
         },
         "1 1 0 0 0", ""},
    };
    for (const Edit& row : rows) {
        SCOPED_TRACE(row.name);
        openImages(row.content);
        Hanger edits = hanger();
        row.edit(edits);
        const std::string edited = look();
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_EQ(facts(), row.facts);
        EXPECT_EQ(look(), edited) << newContent();
        EXPECT_THAT(object("3"), Not(HasSubstr("/X1")));
        if (!row.saved.empty()) {
            EXPECT_EQ(newContent(), row.saved);
        }
    }
}

TEST_F(ImagePatchTest, AnotherPictureHasTheIntentOfTheOneBefore) {
    openImages("q 9 0 0 9 10 20 cm /C Do Q q 8 0 0 8 50 60 cm /B Do Q");
    Hanger edits = hanger();
    const Image picture = edits.picture({.width = 1, .height = 1}, "a");
    edits.show(0, picture);
    edits.show(1, picture);
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    expectInOrder({"q 9 0 0 9 10 20 cm", "cm\n/Perceptual ri\n/X1 Do", "Q", "cm\n/X1 Do"});
}

TEST_F(ImagePatchTest, AnotherPictureBecomesAnObject) {
    struct Row {
        const char* name;
        ImageFacts facts;
        std::string bytes;
        std::vector<std::string> entries; ///< of the new object
        std::string mask;                 ///< an entry of its soft mask
    };
    const std::uint8_t palette[] = {255, 0, 0, 255, 0, 0, 255, 128};
    const std::uint8_t opaque[] = {255, 0, 0, 255, 0, 0, 255, 255};
    const Row rows[] = {
        {"gray with few bits",
         {.width = 3, .height = 2, .bits = 2},
         std::string("\x18\xE4", 2),
         {"/Width 3 /Height 2 /BitsPerComponent 2", "/ColorSpace /DeviceGray", "/Colors 1"},
         ""},
        {"RGB",
         {.width = 1, .height = 2, .colours = ImageColours::rgb},
         "abcdef",
         {"/ColorSpace /DeviceRGB", "/Colors 3"},
         ""},
        {"RGB that is gray",
         {.width = 1, .height = 2, .colours = ImageColours::rgb},
         "aaaccc",
         {"/ColorSpace /DeviceGray", "/Colors 1"},
         ""},
        {"RGB with alpha",
         {.width = 1, .height = 2, .colours = ImageColours::rgb, .bits = 16, .hasAlpha = true},
         "abcdefghijklmnop",
         {"/ColorSpace /DeviceRGB", "/BitsPerComponent 16", "/SMask "},
         "/BitsPerComponent 16"},
        {"gray with alpha that is opaque",
         {.width = 1, .height = 2, .hasAlpha = true},
         "a\xFF"
         "b\xFF",
         {"/ColorSpace /DeviceGray"},
         ""},
        {"a palette",
         {.width = 9, .height = 1, .colours = ImageColours::indexed, .bits = 1, .palette = opaque},
         std::string("\x55\x80", 2),
         {"[ /Indexed /DeviceRGB 1 <FF00000000FF> ]"},
         ""},
        {"a palette with alpha",
         {.width = 9, .height = 1, .colours = ImageColours::indexed, .bits = 1, .palette = palette},
         std::string("\x55\x80", 2),
         {"[ /Indexed", "/SMask "},
         "/BitsPerComponent 8"},
        {"JPEG",
         {.width = 5,
          .height = 6,
          .coding = ImageCoding::jpeg,
          .colours = ImageColours::cmyk,
          .isInverted = true},
         "\xFF\xD8 any",
         {"/ColorSpace /DeviceCMYK", "/DCTDecode", "/Decode [ 1 0", "\xFF\xD8 any"},
         ""},
        {"JPEG of components that are named R, G and B",
         {.width = 5, .height = 6, .coding = ImageCoding::jpeg, .colours = ImageColours::rgb},
         rgbJpeg,
         {"/ColorSpace /DeviceRGB", "/DCTDecode\n/DecodeParms << /ColorTransform 0 >>", rgbJpeg},
         ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        openImages(two);
        Hanger edits = hanger();
        const Image picture = edits.picture(row.facts, row.bytes);
        edits.show(1, picture);
        edits.add(picture, {fixedOne, 0, 0, fixedOne, 0, 0});
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_EQ(facts(), "2 1 1 0 0");
        EXPECT_EQ(hanger().images.size(), 3U);
        const std::string content = newContent();
        const std::size_t at = content.find("/X1 Do");
        EXPECT_NE(at, std::string::npos) << content;
        EXPECT_NE(content.find("/X1 Do", at + 1), std::string::npos) << content;
        const std::string file = bytes();
        const std::string added = file.substr(file_.size());
        const bool hasMask = !row.mask.empty();
        EXPECT_EQ(std::ranges::count(added, '\xFF') > 0, row.bytes.starts_with('\xFF'));
        for (const std::string& entry : row.entries) {
            EXPECT_THAT(added, HasSubstr(entry));
        }
        EXPECT_EQ(added.find("/SMask") != std::string::npos, hasMask);
        EXPECT_THAT(added, HasSubstr(row.mask));
    }
}

/// There a device space would show other colours than those of the picture.
TEST_F(ImagePatchTest, PicturesOnAPageWithDefaultSpaces) {
    const std::uint8_t palette[] = {255, 0, 0, 255, 0, 0, 255, 255};
    const std::pair<ImageFacts, std::string> rows[] = {
        {{.width = 1, .height = 1, .colours = ImageColours::gray}, "a"},
        {{.width = 1, .height = 1, .colours = ImageColours::rgb}, "abc"},
        {{.width = 9, .height = 1, .colours = ImageColours::indexed, .bits = 1, .palette = palette},
         std::string("\x55\x80", 2)},
        {{.width = 5,
          .height = 6,
          .coding = ImageCoding::jpeg,
          .colours = ImageColours::cmyk,
          .isInverted = true},
         "\xFF\xD8 any"},
    };
    for (const auto& [facts, pixels] : rows) {
        openFile(
            PdfBuilder::onePage("q 9 0 0 9 10 20 cm /A Do Q",
                                "/Resources<</XObject<</A 20 0 R>>/ColorSpace<</DefaultGray"
                                "[/Separation/All/DeviceGray 7 0 R]/DefaultRGB[/DeviceN[/A/B"
                                "/C]/DeviceRGB 8 0 R]/DefaultCMYK[/DeviceN[/A/B/C/D]"
                                "/DeviceCMYK 9 0 R]>>>>")
                .object(7, "<</FunctionType 2/N 1/Domain[0 1]/C0[1]/C1[0]>>")
                .stream(8, "{3 1 roll}", "/FunctionType 4/Domain[0 1 0 1 0 1]/Range[0 1 0 1 0 1]")
                .stream(9, "{4 1 roll}",
                        "/FunctionType 4/Domain[0 1 0 1 0 1 0 1]/Range[0 1 0 1 0 1 0 1]")
                .stream(20, "abcd", gray)
                .bytes());
        Hanger edits = hanger();
        edits.show(0, edits.picture(facts, pixels));
        ASSERT_EQ(save(), 0U);
        const std::string added = bytes().substr(file_.size());
        EXPECT_THAT(added, HasSubstr("/ColorSpace"));
        EXPECT_THAT(added, Not(HasSubstr("/ColorSpace /Device")));
        EXPECT_THAT(added, Not(HasSubstr("/Indexed /Device")));
        ASSERT_EQ(open(), 0U);
        const ImageFacts& reopened =
            document_->images().facts(document_->placedImage(hanger().images.at(0)).image);
        EXPECT_FALSE(reopened.isPlaceholder && facts.coding == ImageCoding::samples);
    }
}

/// A soft mask of the image counts instead of that of the graphics state; no picture that takes its
/// place may get that one.
TEST_F(ImagePatchTest, ASoftMaskOfItsOwnCountsInsteadOfTheStates) {
    struct Row {
        const char* name;
        std::function<void(Hanger&)> edit;
        std::vector<bool> isMasked; ///< from the back
    };
    const auto picture = [](Hanger& hanger) {
        return hanger.picture({.width = 1, .height = 1, .colours = ImageColours::gray}, "a");
    };
    const auto raise = [](Hanger& hanger, std::size_t index) {
        hanger.document.reorder(hanger.images.at(index), Placement::inside,
                                hanger.document.layerArt(hanger.document.firstLayer()));
    };
    const Row rows[] = {
        {"opened", [](Hanger&) {}, {false, true}},
        {"another picture",
         [&](Hanger& hanger) { hanger.show(0, picture(hanger)); },
         {false, true}},
        {"another picture of the masked",
         [&](Hanger& hanger) { hanger.show(1, picture(hanger)); },
         {false, true}},
        {"moved", [](Hanger& hanger) { hanger.move(0, 5, 5); }, {false, true}},
        {"raised, another picture",
         [&](Hanger& hanger) {
             hanger.show(0, picture(hanger));
             raise(hanger, 0);
         },
         {true, false}},
        {"masked",
         [](Hanger& hanger) {
             const Appearance look = hanger.document.appearance(hanger.images.at(1));
             hanger.document.setAppearance(hanger.images.at(0), look);
         },
         {true, true}},
        {"masked and raised",
         [&](Hanger& hanger) {
             const Appearance look = hanger.document.appearance(hanger.images.at(1));
             hanger.document.setAppearance(hanger.images.at(0), look);
             raise(hanger, 0);
         },
         {true, true}},
    };
    for (const Row& row : rows) {
        openFile(PdfBuilder::onePage(
                     "/M gs q 9 0 0 9 10 20 cm /A Do Q q 9 0 0 9 10 40 cm /B Do Q",
                     "/Resources << /XObject << /A 20 0 R /B 21 0 R >> /ExtGState << /M << /SMask "
                     "<< /S /Alpha /G 23 0 R >> >> >> >>")
                     .stream(20, "abcd", std::string(gray) + " /SMask 22 0 R")
                     .stream(21, "efgh", gray)
                     .stream(22, "ijkl", gray)
                     .stream(23, "0 0 15 50 re f",
                             "/Type /XObject /Subtype /Form /BBox [0 0 50 50] /Group << /S "
                             "/Transparency >>")
                     .bytes());
        Hanger edited = hanger();
        row.edit(edited);
        ASSERT_EQ(save(), 0U) << row.name;
        ASSERT_EQ(open(), 0U) << row.name;
        std::vector<bool> isMasked;
        for (const Art image : hanger().images) {
            const Art around = document_->parent(image);
            isMasked.push_back(document_->appearance(image).mask != SoftMask::null ||
                               document_->appearance(around).mask != SoftMask::null);
        }
        EXPECT_EQ(isMasked, row.isMasked) << row.name << "\n" << newContent();
    }
}

/// Readers know the end of an inline image by what stands behind it.
TEST_F(ImagePatchTest, InlineImagesEndWhereTheyDidWhateverGoesBehindThem) {
    const std::string image = "BI /W 1 /H 1 /BPC 8 /CS /G ID @ EI ";
    const std::string clipped = " 0 0 90 90 re W n 1 1 5 5 re f";
    struct Row {
        std::string content;
        bool removesPath;
        std::size_t paths;
    };
    for (const Row& row : {Row{image + "Q words 9 9 5 5 re f" + clipped, false, 3},
                           Row{image + "Q Q words 9 9 5 5 re f" + clipped, false, 3},
                           Row{image + "9 9 5 5 re f words" + clipped, true, 2},
                           Row{image + "Q 9 9 5 5 re f words" + clipped, true, 2},
                           Row{image + "Q 9 9 5 5 re f" + clipped, true, 2}}) {
        openImages(row.content);
        Artist edits(*document_);
        if (row.removesPath) {
            edits.remove(edits.at(0));
        }
        edits.add(3, 3, 9, 9);
        ASSERT_EQ(save(), 0U) << row.content;
        ASSERT_EQ(open(), 0U) << row.content;
        EXPECT_EQ(hanger().images.size(), 1U) << newContent();
        EXPECT_EQ(artist().objects.size(), row.paths) << newContent();
    }
}

TEST_F(ImagePatchTest, SmoothnessMakesAnotherObjectOfTheSamePicture) {
    openImages(two);
    Hanger edits = hanger();
    const Image picture = edits.picture({.width = 1, .height = 1}, "a");
    edits.add(picture, {fixedOne, 0, 0, fixedOne, 0, 0});
    document_->setPlacedImage(edits.add(picture, {fixedOne, 0, 0, fixedOne, 9, 0}),
                              {picture, {fixedOne, 0, 0, fixedOne, 9, 0}, false});
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    const std::string added = bytes().substr(file_.size());
    EXPECT_THAT(added, HasSubstr("/Interpolate true"));
    EXPECT_THAT(added, HasSubstr("/Interpolate false"));
    EXPECT_THAT(newContent(), HasSubstr("/X2 Do"));
    std::vector<bool> smooth;
    for (const Art art : hanger().images) {
        smooth.push_back(document_->placedImage(art).isSmooth);
    }
    EXPECT_EQ(smooth, (std::vector<bool>{true, true, true, false}));

    openImages(two);
    PlacedImage rough = document_->placedImage(hanger().images[0]);
    rough.isSmooth = false;
    document_->setPlacedImage(hanger().images[0], rough);
    ASSERT_EQ(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre(HasSubstr("write 1011")));
    EXPECT_EQ(bytes(), file_);
}

TEST_F(ImagePatchTest, NamesThatContentUsesInVainStaySo) {
    const std::string form = "/Subtype /Form /BBox [0 0 9 9]";
    openFile(
        PdfBuilder::onePage("q 9 0 0 9 10 20 cm /A Do Q /X1 Do /Fm Do 0 0 5 5 re f /X",
                            "/Resources << /XObject << /A 20 0 R /Fm 21 0 R /Own 22 0 R >> /Font "
                            "<< /T 23 0 R >> >> /Annots [25 0 R]")
            .stream(20, "abcd", gray)
            .stream(21, "/X#32 Do", form)
            .stream(22, "/X3 Do", form + " /Resources << >>")
            .object(23, "<< /Subtype /Type3 /CharProcs << /a 24 0 R >> >>")
            .stream(24, "9 0 d0 /X4 Do")
            .object(25, "<< /Subtype /Stamp /Rect [0 0 9 9] /AP << /N << /On 26 0 R >> >> >>")
            .stream(26, "/X5 Do", form)
            .bytes());
    Hanger edits = hanger();
    for (int i = 0; i < 2; ++i) {
        edits.add(edits.picture({.width = 1, .height = 1}, "a"), {fixedOne, 0, 0, fixedOne, 9, 0});
    }
    ASSERT_EQ(save(), 0U);
    const std::string page = object("3");
    // Some readers look further out for what a form's own resources lack.
    for (const char* const name : {"/X1", "/X2", "/X3", "/X4", "/X5"}) {
        EXPECT_THAT(page, Not(HasSubstr(name)));
    }
    EXPECT_THAT(page, HasSubstr("/X6 "));
}

TEST_F(ImagePatchTest, AFrameFromElsewhereIsRefusedInItsOwnWords) {
    openImages(two);
    Hanger edits = hanger();
    bool wantsBytes = false;
    const Image elsewhere = document_->images().add(
        {.width = 2, .height = 2, .key = "20-1234", .isPlaceholder = true}, wantsBytes);
    edits.add(elsewhere, {fixedOne, 0, 0, fixedOne, 0, 0});
    EXPECT_NE(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre("error 31"));
    EXPECT_EQ(bytes(), file_);

    openImages(two);
    Hanger(*document_)
        .add(document_->images().add({.width = 2, .height = 2}, ImageFile{}, nullptr),
             {fixedOne, 0, 0, fixedOne, 0, 0});
    EXPECT_NE(save(), 0U);
    EXPECT_THAT(front_.taken(), ElementsAre("error 31"));
}

TEST_F(ImagePatchTest, TilesHoldImages) {
    openImages(two);
    Hanger edits = hanger();
    Pattern pattern{.tile = document_->makeArtwork(),
                    .left = 0,
                    .bottom = 0,
                    .right = 10,
                    .top = 10,
                    .stepX = 10,
                    .stepY = 10,
                    .matrix = {}};
    const Art placed = document_->make(ArtKind::placed, Placement::inside, pattern.tile);
    document_->setPlacedImage(placed, {.image = edits.picture({.width = 1, .height = 1}, "a"),
                                       .matrix = {5 * fixedOne, 0, 0, 5 * fixedOne, 0, 0}});
    const PaintSource source = document_->addPattern(pattern);
    Artist artist(*document_);
    artist.style(artist.add(0, 0, 20, 20), [&](PathStyle& style) {
        style.fill = {.kind = ColourKind::pattern, .component = {}, .source = source};
    });
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    const std::string added = bytes().substr(file_.size());
    EXPECT_THAT(added, HasSubstr("/X1 Do"));
    EXPECT_THAT(added, HasSubstr("/Subtype /Image /Width 1"));
}

TEST_F(ImagePatchTest, APageThatIsDrawnAnewHasItsImages) {
    openImages(two);
    Hanger edits = hanger();
    const Image picture = edits.picture({.width = 1, .height = 1}, "a");
    edits.show(1, picture);
    edits.add(picture, {fixedOne, 0, 0, fixedOne, 0, 0});
    const Art group = document_->make(ArtKind::group, Placement::inFront, edits.images[0]);
    document_->reorder(edits.images[0], Placement::inside, group);
    const std::string edited = look();
    digest_ = 1; // another page
    extension_.overwrites = true;
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    ASSERT_FALSE(saved_.back().isPatched);
    ASSERT_EQ(open(), 0U);
    std::string reopened = look(); // the new one has an object by now
    const std::string number = reopened.substr(reopened.find('\n') + 1, 2);
    for (std::size_t at = 0; (at = reopened.find("\n" + number + " ")) != std::string::npos;) {
        reopened.replace(at + 1, 2, "new");
    }
    EXPECT_EQ(reopened, edited);
    EXPECT_THAT(object("3"), HasSubstr("/XObject <<\n/X1 20 0 R\n/X2 "));
    EXPECT_THAT(object("3"), Not(HasSubstr("/X3")));
}

} // namespace
} // namespace corvane
