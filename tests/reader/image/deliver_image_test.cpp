#include "reader/image/deliver_image.h"

#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "tests/reader/image/image_taker.h"
#include "tests/reader/reader_fixture.h"

#include <lcms2.h>
#include <optional>
#include <string>

namespace corvane {
namespace {

/// Bytes by their digits, for the tables.
std::string hexData(std::string_view digits) {
    return std::string(digits) + ">";
}

/// A file of an image (5) of these entries; its data are hexadecimal where they name no filter.
PdfBuilder imageFile(std::string_view entries, std::string_view digits) {
    const bool isCoded = entries.find("/Filter") != std::string_view::npos;
    PdfBuilder file = PdfBuilder::onePage("");
    file.stream(5, hexData(digits),
                "/Subtype /Image " + std::string(isCoded ? "" : "/Filter /ASCIIHexDecode ") +
                    std::string(entries));
    return file;
}

class DeliverImageTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        taker_.emplace(std::span(table_->ref().get(), slotCount));
    }
    void TearDown() override {
        taker_.reset();
        ReaderTest::TearDown();
    }

    /// What the host gets of object 5.
    std::string delivered(const PdfBuilder& file, const Colour& fill = {}) {
        taker_->images.clear();
        DocumentCache& cache = open(file);
        pageCache(cache, 1);
        return deliveredAgain(fill);
    }
    std::string deliveredAgain(const Colour& fill = {}) {
        ObjectOwner reference;
        indirectObject(reference.get(), 5, 0);
        const ObjectOwner stream = resolveObject(*cache_, reference.get());
        const Image image = deliverImage(*cache_, stream.get(), 5, fill);
        return image == Image::null ? "null" : test::imageText((*taker_)[image]);
    }

    std::optional<test::ImageTaker> taker_;
};

Colour red() {
    Colour colour;
    colour.kind = ColourKind::process;
    colour.component[0] = 0;
    colour.component[1] = fixedOne;
    colour.component[2] = fixedOne;
    colour.component[3] = 0;
    return colour;
}

TEST_F(DeliverImageTest, SpacesBitsAndDecode) {
    struct Row {
        const char* entries;
        const char* data;
        const char* wanted;
    };
    for (const Row& row : {
             Row{"/Width 10/Height 2/BitsPerComponent 1/ColorSpace/DeviceGray", "a5c05a40",
                 "gray1 10x2 a5c05a40"},
             Row{"/Width 10/Height 1/BitsPerComponent 1/ColorSpace/DeviceGray/Decode[1 0]", "a5c0",
                 "gray1 10x1 5a3f"},
             Row{"/Width 3/Height 1/BitsPerComponent 2/ColorSpace/DeviceGray/Decode[1 0]", "1b",
                 "gray2 3x1 e4"},
             Row{"/Width 2/Height 1/BitsPerComponent 4/ColorSpace/CalGray", "4f", "gray4 2x1 4f"},
             // A level that no sample of 4 bits has.
             Row{"/Width 2/Height 1/BitsPerComponent 1/ColorSpace/DeviceGray/Decode[0 .5]", "40",
                 "indexed1(000000ff,808080ff) 2x1 40"},
             Row{"/Width 2/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray/Decode[1 0]", "00f0",
                 "gray8 2x1 ff0f"},
             Row{"/Width 2/Height 1/BitsPerComponent 16/ColorSpace/DeviceGray", "01020304",
                 "gray16 2x1 01020304"},
             Row{"/Width 2/Height 1/BitsPerComponent 16/ColorSpace/DeviceGray/Decode[1 0]",
                 "01020304", "gray8 2x1 fefc"},
             Row{"/Width 2/Height 1/BitsPerComponent 8/ColorSpace/DeviceRGB", "0102030405ff",
                 "rgb8 2x1 0102030405ff"},
             Row{"/Width 2/Height 1/BitsPerComponent 4/ColorSpace/DeviceRGB", "0f1248",
                 "rgb8 2x1 00ff11224488"},
             Row{"/Width 1/Height 1/BitsPerComponent 8/ColorSpace/DeviceRGB/Decode[1 0 0 1 0 .5]",
                 "0102ff", "rgb8 1x1 fe0280"},
             Row{"/Width 1/Height 1/BitsPerComponent 16/ColorSpace/DeviceRGB", "010203040506",
                 "rgb16 1x1 010203040506"},
             Row{"/Width 2/Height 1/BitsPerComponent 8/ColorSpace/DeviceCMYK", "10203040ffffffff",
                 "rgb8 2x1 af9f8f000000"},
             Row{"/Width 2/Height 1/BitsPerComponent 16/ColorSpace/DeviceRGB/Mask[65535 65535 "
                 "65535 "
                 "65535 65535 65535]",
                 "ffffffffffff7fff7fff7fff", "rgb16a 2x1 ffffffffffff00007fff7fff7fffffff"},
             Row{"/Width 1/Height 1/BitsPerComponent 8/ColorSpace/DeviceCMYK/Decode[1 0 1 0 1 0 1 "
                 "0]",
                 "efdfcfbf", "rgb8 1x1 af9f8f"},
             Row{"/Width 1/Height 1/BitsPerComponent 8/ColorSpace[/Lab<<>>]", "ff8080",
                 "rgb8 1x1 fffffe"},
             Row{"/Width 4/Height 1/BitsPerComponent 2/ColorSpace[/Indexed/DeviceRGB "
                 "2<ff000000ff000000ff>]",
                 "1b", "indexed2(ff0000ff,00ff00ff,0000ffff,0000ffff) 4x1 1b"},
             Row{"/Width 2/Height 1/BitsPerComponent 1/ColorSpace[/Indexed/DeviceCMYK "
                 "1<00000000ff000000>]",
                 "40", "indexed1(ffffffff,00ffffff) 2x1 40"},
             Row{"/Width 1/Height 1/BitsPerComponent 1/ColorSpace[/Separation/S/DeviceRGB 6 0 R]",
                 "80", "indexed1(ffffffff,ff0000ff) 1x1 80"},
             Row{"/Width 1/Height 1/BitsPerComponent 8/ColorSpace[/DeviceN[/A/B]/DeviceCMYK 7 0 R]",
                 "40ff", "rgb8 1x1 bf00ff"},
             Row{"/Width 1/Height 1/BitsPerComponent 8/ColorSpace[/DeviceN[/A/B]/DeviceRGB 8 0 R]",
                 "0080", "rgb8 1x1 ff7f7f"},
             Row{"/Width 1/Height 1/BitsPerComponent 2/ColorSpace[/Separation/S/DeviceRGB 9 0 R]",
                 "40", "indexed2(ffffffff,ff5555ff,ff5555ff,ffffffff) 1x1 40"},
             Row{"/Width 8/Height 1/ImageMask true", "a5", "indexed1(ff0000ff,ff000000) 8x1 a5"},
             Row{"/Width 8/Height 1/ImageMask true/Decode[1 0]", "a5",
                 "indexed1(ff000000,ff0000ff) 8x1 a5"},
             // No picture, and pictures of what nobody knows.
             Row{"/Width 0/Height 1/ColorSpace/DeviceGray", "00", "null"},
             Row{"/Width 2/Height 3/ColorSpace/DeviceGray/BitsPerComponent 3", "00",
                 "placeholder 2x3"},
             Row{"/Width 2/Height 3/ColorSpace[/Odd]/BitsPerComponent 8", "00", "placeholder 2x3"},
             Row{"/Width 2/Height 3/ColorSpace/DeviceGray/BitsPerComponent 8/Filter/Odd", "00",
                 "placeholder 2x3"},
         }) {
        PdfBuilder file = imageFile(row.entries, row.data);
        file.object(6, "<</FunctionType 2/Domain[0 1]/N 1/C0[1 1 1]/C1[1 0 0]>>")
            .stream(7, "{ 0 0 }", "/FunctionType 4/Domain[0 1 0 1]/Range[0 1 0 1 0 1 0 1]")
            .object(9, "<</FunctionType 3/Domain[0 1]/Bounds[.5]/Encode[0 1 1 0]/Functions[6 0 R 6 "
                       "0 R]>>")
            .stream(8, hexData("ffffff00ffffff0000000000"),
                    "/FunctionType 0/Domain[0 1 0 1]/Range[0 1 0 1 0 1]/Size[2 2]/BitsPerSample 8"
                    "/Filter/ASCIIHexDecode");
        EXPECT_EQ(delivered(file, red()), row.wanted) << row.entries;
    }
}

/// Renderers in use draw no more than 32,767 pixels along a side.
TEST_F(DeliverImageTest, PicturesGrowToMasksAsLongAsTheyAreDrawn) {
    for (const auto& [side, grown] : {std::pair(32767, 32767), {40000, 20000}, {65536, 16384}}) {
        PdfBuilder file = imageFile(
            "/Width 2/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray/SMask 6 0 R", "0102");
        file.stream(6, hexData("80"),
                    "/Width 1/Height " + std::to_string(side) +
                        "/BitsPerComponent 8/ColorSpace/DeviceGray/Filter/ASCIIHexDecode");
        delivered(file);
        EXPECT_EQ(taker_->images[0].facts.height, grown) << side;
    }
}

TEST_F(DeliverImageTest, Masks) {
    struct Row {
        const char* entries;
        const char* data;
        const char* maskEntries; ///< of object 6
        const char* mask;
        const char* wanted;
    };
    const char* const two = "/Width 2/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray";
    const char* const stencil = "/Width 2/Height 1/ImageMask true";
    for (const Row& row : {
             Row{"/ColorSpace/DeviceRGB/SMask 6 0 R", "010203040506", two, "80ff",
                 "rgb8a 2x1 01020380040506ff"},
             Row{"/ColorSpace/DeviceGray/SMask 6 0 R", "0102",
                 "/Width 1/Height 2/BitsPerComponent 1/ColorSpace/DeviceGray/Decode[1 0]", "8000",
                 "gray8a 2x2 0100020001ff02ff"},
             Row{"/ColorSpace[/Indexed/DeviceRGB 1<ff000000ff00>]/SMask 6 0 R", "0001", two, "0102",
                 "rgb8a 2x1 ff00000100ff0002"},
             Row{"/ColorSpace/DeviceGray/SMask 6 0 R", "4080",
                 "/Width 2/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray/Matte[0]", "8040",
                 "gray8a 2x1 8080ff40"},
             Row{"/ColorSpace/DeviceGray/Mask 6 0 R", "0102", stencil, "40", "gray8a 2x1 01ff0200"},
             Row{"/ColorSpace/DeviceGray/Mask[2 5]", "0102", two, "", "indexed8 2x1 0102"},
             Row{"/ColorSpace/DeviceRGB/Mask[1 1 2 9 3 3]", "010203040506", two, "",
                 "rgb8a 2x1 01020300040506ff"},
             // A mask much larger than what can be delivered.
             Row{"/ColorSpace/DeviceGray/SMask 6 0 R", "0102",
                 "/Width 60000/Height 60000/BitsPerComponent 8/ColorSpace/DeviceGray/Filter/Odd",
                 "", "gray8 2x1 0102"},
             // A mask that cannot be decoded leaves the picture.
             Row{"/ColorSpace/DeviceGray/SMask 6 0 R", "0102", "/Width 0/Height 1", "",
                 "gray8 2x1 0102"},
             Row{"/ColorSpace/DeviceGray/SMask 6 0 R", "0102",
                 "/Width 2/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray/Filter/JBIG2Decode",
                 "00", "gray8a 2x1 01ff02ff"},
         }) {
        PdfBuilder file =
            imageFile("/Width 2/Height 1/BitsPerComponent 8" + std::string(row.entries), row.data);
        const std::string mask = row.maskEntries;
        file.stream(
            6, hexData(row.mask),
            mask + (mask.find("/Filter") == std::string::npos ? "/Filter/ASCIIHexDecode" : ""));
        std::string text = delivered(file);
        if (const std::size_t palette = text.find("("); palette != std::string::npos) {
            EXPECT_EQ(taker_->images[0].palette[4 * 2 + 3], 0);
            EXPECT_EQ(taker_->images[0].palette[4 * 1 + 3], 255);
            text.erase(palette, text.find(")") + 1 - palette);
        }
        EXPECT_EQ(text, row.wanted) << row.entries << row.maskEntries;
    }
}

TEST_F(DeliverImageTest, DataThatEndEarly) {
    const std::string gray = "/Width 2/Height 3/BitsPerComponent 8/ColorSpace/DeviceGray";
    EXPECT_EQ(delivered(imageFile(gray, "010203")), "gray8 2x3 010203ffffff");
    EXPECT_EQ(delivered(imageFile(gray, "")), "given up 2x3");
    EXPECT_EQ(delivered(imageFile(gray + "/Decode[1 0]", "0102")), "gray8 2x3 fefdffffffff");
    EXPECT_EQ(delivered(imageFile(gray + "/Mask 6 0 R", "0102")
                            .stream(6, "\0\0\0", "/Width 2/Height 3/ImageMask true")),
              "gray8a 2x3 01ff02ff0000000000000000");
    EXPECT_EQ(delivered(imageFile("/Width 8/Height 2/ImageMask true", "0f")),
              "indexed1(000000ff,00000000) 8x2 0fff");
    EXPECT_TRUE(delivered(imageFile("/Width 16/Height 2/ImageMask true/Decode[1 0]", "0f0f0f"))
                    .ends_with("16x2 0f0f0f00"));
    // Next to nothing of much.
    const std::string huge = "/BitsPerComponent 8/ColorSpace/DeviceGray/Width 60000/Height ";
    EXPECT_EQ(delivered(imageFile(huge + "10000", "00")), "given up 60000x10000");
    EXPECT_EQ(delivered(imageFile(huge + "60000", "00")), "placeholder 32767x32767");
    EXPECT_LT(taker_->total, 4 << 20);
}

/// A profile of gray whose levels count light.
std::string linearProfile() {
    cmsToneCurve* const curve = cmsBuildGamma(nullptr, 1.0);
    const cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
    cmsUInt32Number length = 0;
    cmsSaveProfileToMem(profile, nullptr, &length);
    std::string bytes(length, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &length);
    cmsCloseProfile(profile);
    cmsFreeToneCurve(curve);
    return bytes;
}

TEST_F(DeliverImageTest, ProfilesChangeWhatIsSeen) {
    const std::string gray = "/Width 1/Height 1/BitsPerComponent 8/ColorSpace";
    const std::string good = linearProfile();
    const std::string broken = good.substr(0, good.size() / 2);
    const std::string light = "gray8 1x1 bc"; // half of the light
    struct Row {
        std::string space;
        std::string profile;
        std::string seen;
    };
    for (const Row& row : {
             Row{"[/ICCBased 7 0 R]", good, light},
             Row{"[/Indexed[/ICCBased 7 0 R]255(" + std::string(256, '\x80') + ")]", good, light},
             Row{"[/ICCBased 7 0 R]", broken, "gray8 1x1 80"},
             Row{"[/ICCBased 7 0 R]", "", "gray8 1x1 80"},
             Row{"[/CalGray<</WhitePoint[.9505 1 1.089]>>]", "", light},
             Row{"[/CalGray<</WhitePoint[.9505 1 1.089]/Gamma 2.2>>]", "", "gray8 1x1 81"},
             Row{"[/CalGray<</WhitePoint[0 0 0]>>]", "", "gray8 1x1 80"},
         }) {
        PdfBuilder file = imageFile(gray + row.space, "80");
        file.stream(7, row.profile, "/N 1");
        EXPECT_EQ(delivered(file), row.seen) << row.space;
    }
}

TEST_F(DeliverImageTest, APageTellsNoEndOfImages) {
    const PdfBuilder file =
        imageFile("/Width 1/Height 1/BitsPerComponent 8/ColorSpace/DeviceGray", "80");
    EXPECT_EQ(delivered(file), "gray8 1x1 80");
    cache_->work.images = budget::pageImages;
    taker_->images.clear();
    EXPECT_EQ(deliveredAgain(), "placeholder 1x1");
}

TEST_F(DeliverImageTest, ColoursThatTakeLongEndTheImage) {
    std::string program = "{";
    for (int i = 0; i < 1600; ++i) {
        program += " exch 2 exp";
    }
    std::string samples;
    for (int i = 0; i < 65536; ++i) {
        samples += static_cast<char>(i >> 8);
        samples += static_cast<char>(i);
    }
    PdfBuilder file = PdfBuilder::onePage("");
    file.stream(5, samples,
                "/Subtype/Image/Width 65536/Height 1/BitsPerComponent 8/ColorSpace"
                "[/DeviceN[/A/B]/DeviceGray 7 0 R]")
        .stream(7, program + "}", "/FunctionType 4/Domain[0 1 0 1]/Range[0 1]");
    DocumentCache& cache = open(file);
    pageCache(cache, 1);
    cache.work.imageColours = StepMeter(1'000'000);
    taker_->images.clear();
    EXPECT_EQ(deliveredAgain(), "given up 65536x1");
}

TEST_F(DeliverImageTest, TheKeyNamesTheLook) {
    const std::string entries = "/Width 2/Height 1/BitsPerComponent 8/ColorSpace 7 0 R";
    const auto keyOf = [&](const PdfBuilder& file, const Colour& fill = {}) {
        delivered(file, fill);
        return taker_->images.at(0).key;
    };
    const auto with = [&](const char* more, const char* data, const char* space) {
        PdfBuilder file = imageFile(entries + more, data);
        file.object(7, space).stream(6, "aa", "/Width 2/Height 1/ImageMask true");
        return file;
    };
    const std::string first = keyOf(with("", "0102", "/DeviceGray"));
    EXPECT_TRUE(first.starts_with("5-")) << first;
    EXPECT_EQ(first.size(), 18U);
    EXPECT_EQ(keyOf(with("/Name/X/Interpolate true", "0102", "/DeviceGray")), first);
    EXPECT_EQ(keyOf(with("", "0102", "/DeviceGray"), red()), first) << "no stencil has no colour";
    for (const PdfBuilder& other : {with("", "0103", "/DeviceGray"), with("", "0102", "/CalGray"),
                                    with("/Decode[1 0]", "0102", "/DeviceGray"),
                                    with("/Mask 6 0 R", "0102", "/DeviceGray")}) {
        EXPECT_NE(keyOf(other), first);
    }
    const PdfBuilder stencil = imageFile("/Width 8/Height 1/ImageMask true", "0f");
    const std::string black = keyOf(stencil);
    EXPECT_NE(keyOf(stencil, red()), black);
    // What the host knows is not decoded.
    const std::int64_t total = taker_->total;
    EXPECT_EQ(deliveredAgain(red()), "indexed1(ff0000ff,ff000000) 8x1 0f");
    EXPECT_EQ(taker_->total, total);
    EXPECT_EQ(cache_->work.pageBytes, 0) << "content has its own budget";
}

TEST_F(DeliverImageTest, InlineImages) {
    struct Row {
        const char* dictionary;
        std::string data;
        const char* wanted;
    };
    for (const Row& row : {
             Row{"<</W 2/H 1/BPC 8/CS/RGB>>", "abcdef", "rgb8 2x1 616263646566"},
             Row{"<</W 2/H 1/BPC 8/CS/RGB/F/AHx>>", "010203040506>", "rgb8 2x1 010203040506"},
             Row{"<</W 1/H 1/BPC 8/CS[/I/G 1<80ff>]/F[/AHx]/D[1 0]>>", "00>", "gray8 1x1 ff"},
             // Named by the page, and so not gray.
             Row{"<</W 1/H 1/BPC 8/CS/G>>", "abc", "rgb8 1x1 616263"},
             Row{"<</W 8/H 1/IM true>>", "a", "indexed1(000000ff,00000000) 8x1 61"},
         }) {
        taker_->images.clear();
        DocumentCache& cache =
            open(PdfBuilder::onePage("", "/Resources<</ColorSpace<</G/DeviceRGB>>>>")
                     .object(5, row.dictionary));
        pageCache(cache, 1);
        ObjectOwner reference;
        indirectObject(reference.get(), 5, 0);
        const ObjectOwner dictionary = resolveObject(cache, reference.get());
        const Image image = deliverInlineImage(cache, dictionary.get(),
                                               std::as_bytes(std::span(row.data)), Colour(), false);
        ASSERT_NE(image, Image::null) << row.dictionary;
        EXPECT_EQ(test::imageText((*taker_)[image]), row.wanted) << row.dictionary;
    }
}

} // namespace
} // namespace corvane
