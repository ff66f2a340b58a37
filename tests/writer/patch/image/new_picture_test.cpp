// Pictures that take the place of those of a page, or are new: each becomes one object.
#include "tests/writer/patch/image/image_patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace corvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// Its start, and a frame whose components are named R, G and B.
const std::string rgbJpeg("\xFF\xD8\xFF\xC0\0\x11\x08\0\x06\0\x05\x03R\x11\0G\x11\0B\x11\0\xFF\xD9",
                          23);

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

} // namespace
} // namespace corvane
