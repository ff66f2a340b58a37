// Images whose data a codec of images holds.
#include "codecs/dct/dct.h"
#include "reader/image/deliver_image.h"
#include "reader/syntax/syntax.h"
#include "runtime/warning.h"
#include "tests/reader/image/image_taker.h"
#include "tests/reader/reader_fixture.h"
#include "tests/support/picture.h"

#include <string>
#include <string_view>

namespace corvane {
namespace {

constexpr std::string_view jp2Head =
    "0000000c6a5020200d0a870a00000014667479706a703220000000006a703220";

/// Pictures of 8 bits without loss; what stands behind `jp2Head`.
const std::string grayJpx =
    std::string(jp2Head) +
    "0000002d6a703268000000166968647200000002000000020001070700000000000f636f6c72010000000000110000"
    "0"
    "0676a703263ff4fff51002900000000000200000002000000000000000000000002000000020000000000000000000"
    "1070101ff52000c00000001000004040001ff5c00044040ff6400040001ff90000a0000000000160001ff93df80280"
    "7b5f2da62ffd9";
const std::string alphaJpx =
    std::string(jp2Head) +
    "0000004f6a703268000000166968647200000001000000020004070700000000000f636f6c72010000000000100000"
    "00226364656600040000000000010001000000020002000000030003000100000000007e6a703263ff4fff51003200"
    "0000000002000000010000000000000000000000020000000100000000000000000004070101070101070101070101"
    "ff52000c00000001000004040001ff5c00044040ff6400040001ff90000a0000000000240001ff93cfb40c098e2fcf"
    "b40806cdcfb40c08561fcfb4080b17ffd9";
/// Luminance and colour differences: gray, and red.
const std::string yccJpx =
    std::string(jp2Head) +
    "0000002d6a703268000000166968647200000001000000020003070700000000000f636f6c72010000000000120000"
    "00746a703263ff4fff51002f0000000000020000000100000000000000000000000200000001000000000000000000"
    "03070101070101070101ff52000c00000001000004040001ff5c00044040ff6400040001ff90000a00000000001d00"
    "01ff93c7d4040c16c7d4040c3dcfb4080b17ffd9";
/// A bare codestream of 12 bits: 0x123 and 0xFFF.
const std::string deepJpx =
    "ff4fff5100290000000000020000000100000000000000000000000200000001000000000000000000010b0101ff52"
    "000c00000001000004040001ff5c00044060ff6400040001ff90000a0000000000140001ff93cfe40c09b72bffd9";

/// A page of 8 by `height`, and two equal rows of three black pixels in MMR coding.
std::string jbig2Page(const char* height) {
    return "00000000300001000000130000000800" + std::string(height) + "00000000000000000000" + "00";
}
const std::string jbig2Rows = "0000000126000100000018000000080000000200000000000000000001"
                              "26b780080080"
                              "0000000231000100000000";

std::string bytesOf(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    }
    return bytes;
}

/// A JPEG file of one colour; `marks` are bytes behind its first marker.
std::string jpegFile(std::size_t components, bool hasTransform, std::string_view marks = "",
                     bool statesTransform = true) {
    test::MemorySink sink;
    const auto state = DCTInitialize();
    state->settings.components = components;
    state->settings.width = 8;
    state->settings.height = 8;
    state->settings.transform = hasTransform;
    state->settings.suppressApplication = !statesTransform;
    const std::string bytes = bytesOf(marks);
    const auto marker = std::as_bytes(std::span(bytes));
    state->settings.markerBytes.assign(marker.begin(), marker.end());
    DCTEncodeOpen(*state, sink);
    for (int y = 0; y < 8; ++y) {
        std::ranges::fill(state->row, std::uint8_t{0});
        DCTEFlush(*state);
    }
    DCTfree(*state);
    return {static_cast<const char*>(static_cast<const void*>(sink.data.data())), sink.data.size()};
}

class CodedImageTest : public ReaderTest {
protected:
    std::string delivered(std::string_view data, const std::string& entries) {
        test::ImageTaker taker(std::span(table_->ref().get(), slotCount));
        DocumentCache& cache = open(PdfBuilder::onePage("").stream(5, data, entries));
        pageCache(cache, 1);
        ObjectOwner reference;
        indirectObject(reference.get(), 5, 0);
        const ObjectOwner stream = resolveObject(cache, reference.get());
        const Image image = deliverImage(cache, stream.get(), 5, Colour());
        bytes_ = taker[image].bytes;
        return test::imageText(taker[image]);
    }

    std::vector<std::byte> bytes_;
};

TEST_F(CodedImageTest, FaxedSheetsMayBeLong) {
    delivered(std::string(8750, '\xFF'),
              "/Width 8/Height 70000/ColorSpace/DeviceGray/Filter/CCITTFaxDecode/DecodeParms"
              "<</K -1/Columns 8/Rows 70000/EndOfBlock false/BlackIs1 true>>");
    ASSERT_EQ(bytes_.size(), 70000U);
    EXPECT_EQ(bytes_.back(), std::byte{0});
}

TEST_F(CodedImageTest, JpegIsKeptWhereBrowsersShowTheSame) {
    const std::string jfif = "ffe000104a46494600010100000100010000";
    const std::string turned = "ffe1001e4578696600004d4d002a00000008000101120003000000010006000000";
    const std::string upright =
        "ffe1001e4578696600004d4d002a00000008000101120003000000010001000000";
    const std::string whole = "/Width 8/Height 8/BitsPerComponent 8";
    const std::string rgb = whole + "/ColorSpace/DeviceRGB";
    const auto text = [&](const std::string& file, const std::string& entries) {
        const std::string seen = delivered(file, entries + "/Filter/DCTDecode");
        if (seen.starts_with("jpeg")) {
            EXPECT_EQ(test::hexText(bytes_), test::hexText(std::as_bytes(std::span(file))));
        }
        return seen.substr(0, seen.find("x8"));
    };
    EXPECT_EQ(text(jpegFile(3, true), rgb), "jpeg rgb 8");
    const std::string saysRgb = "ffee000e41646f626500640000000000";
    EXPECT_EQ(text(jpegFile(3, false, saysRgb, false), rgb), "jpeg rgb 8");
    EXPECT_EQ(text(jpegFile(3, false), rgb), "rgb8 8") << "a marker that browsers do not heed";
    EXPECT_EQ(text(jpegFile(3, true, jfif, false), rgb), "jpeg rgb 8");
    EXPECT_EQ(text(jpegFile(1, false), whole + "/ColorSpace/CalGray"), "jpeg gray 8");
    EXPECT_EQ(text(jpegFile(3, true), rgb + "/Decode[0 1 0 1 0 1]"), "jpeg rgb 8");
    EXPECT_EQ(text(jpegFile(3, true, upright), rgb), "jpeg rgb 8");
    // Its rows are worked out.
    EXPECT_EQ(text(jpegFile(3, false, jfif), rgb), "rgb8 8") << "browsers go by JFIF";
    EXPECT_EQ(text(jpegFile(3, true, turned), rgb), "rgb8 8");
    EXPECT_EQ(text(jpegFile(3, true), rgb + "/Decode[1 0 1 0 1 0]"), "rgb8 8");
    EXPECT_EQ(text(jpegFile(3, true), rgb + "/Mask[0 1 0 1 0 1]"), "rgb8a 8");
    EXPECT_EQ(text(jpegFile(3, true), rgb + "/SMask 5 0 R"), "jpeg rgb 8") << "no mask is RGB";
    EXPECT_EQ(text("\n" + jpegFile(3, true), rgb), "rgb8 8");
    EXPECT_TRUE(text(jpegFile(1, false), whole + "/ColorSpace[/Indexed/DeviceRGB 0<123456>]")
                    .starts_with("indexed8(123456ff,123456ff"));
}

TEST_F(CodedImageTest, StatedTransform) {
    const std::string entries = "/Width 8/Height 8/BitsPerComponent 8/ColorSpace/DeviceRGB"
                                "/Filter/DCTDecode/DecodeParms<</ColorTransform 0>>";
    EXPECT_TRUE(delivered(jpegFile(3, false, "", false), entries).starts_with("rgb8 8x8 000000"));
    EXPECT_TRUE(delivered(jpegFile(4, false), "/Width 8/Height 8/BitsPerComponent 8/ColorSpace"
                                              "/DeviceCMYK/Filter/DCTDecode")
                    .starts_with("rgb8 8x8 ffffff"));
}

TEST_F(CodedImageTest, OtherCodecs) {
    struct Row {
        std::string data;
        std::string entries;
        const char* wanted;
    };
    const std::string jpx = "/Filter/JPXDecode/Width 9/Height 9";
    const std::string jbig2 = "/Filter/JBIG2Decode/ColorSpace/DeviceGray/Width 8/Height 2";
    const std::string page = jbig2Page("000002");
    for (const Row& row : {
             Row{grayJpx, jpx, "gray8 2x2 0055aaff"},
             Row{grayJpx, jpx + "/ColorSpace/DeviceGray/Decode[1 0]", "gray8 2x2 ffaa5500"},
             Row{alphaJpx, jpx, "rgb8 2x1 010203fa8009"},
             Row{alphaJpx, jpx + "/SMaskInData 1", "rgb8a 2x1 01020380fa8009ff"},
             Row{alphaJpx, jpx + "/SMaskInData 2", "rgb8a 2x1 02040680fa8009ff"},
             Row{yccJpx, jpx, "rgb8 2x1 808080fe0000"},
             Row{deepJpx, jpx, "gray16 2x1 1231ffff"},
             Row{grayJpx.substr(0, 200), jpx, "placeholder 9x9"},
             Row{grayJpx.substr(0, 300), jpx, "given up 2x2"},
             Row{"0123", jpx, "placeholder 9x9"},
             Row{page + jbig2Rows, jbig2, "gray1 8x2 1f1f"},
             Row{page + jbig2Rows, jbig2 + "/Decode[1 0]", "gray1 8x2 e0e0"},
             Row{page + jbig2Rows.substr(0, 40), jbig2, "gray1 8x2 ffff"},
             Row{"00", jbig2, "given up 8x2"},
             // A page shorter than the dictionary says.
             Row{page + jbig2Rows, "/Filter/JBIG2Decode/ColorSpace/DeviceGray/Width 16/Height 3",
                 "gray1 16x3 1fff1fffffff"},
         }) {
        EXPECT_EQ(delivered(bytesOf(row.data), row.entries), row.wanted) << row.entries;
    }
}

/// Kinds that PDF has no filter for are named, so that a person knows what to convert.
TEST_F(CodedImageTest, JpegsOfOtherKindsAreNamed) {
    struct Row {
        char marker;
        char bits;
        Warning warning;
        const char* wanted = "given up 8x8";
    };
    for (const Row& row : {
             Row{'\xC0', 8, Warning::none, "jpeg gray 8x8"},
             Row{'\xC1', 12, Warning::deepJpeg},
             Row{'\xC3', 8, Warning::losslessJpeg},
             Row{'\xC5', 8, Warning::hierarchicalJpeg},
             Row{'\xC9', 8, Warning::arithmeticJpeg},
             Row{'\xCA', 8, Warning::arithmeticJpeg},
             Row{'\xCB', 8, Warning::losslessJpeg},
             Row{'\xCF', 12, Warning::hierarchicalJpeg},
         }) {
        std::string file = jpegFile(1, false);
        const std::size_t frame = file.find("\xFF\xC0");
        file[frame + 1] = row.marker;
        file[frame + 4] = row.bits;
        resetWarning();
        const std::string seen =
            delivered(file, "/Width 8/Height 8/BitsPerComponent 8/ColorSpace/DeviceGray"
                            "/Filter/DCTDecode");
        EXPECT_EQ(seen, row.wanted);
        EXPECT_EQ(resetWarning(), row.warning) << std::hex << int{row.marker};
    }
}

/// A few bytes that claim a great deal take next to nothing.
TEST_F(CodedImageTest, Claims) {
    std::string size = deepJpx;
    size.replace(size.find("00000002"), 16, "0000ea600000ea60");
    EXPECT_EQ(delivered(bytesOf(size), "/Filter/JPXDecode/Width 9/Height 9"), "placeholder 9x9");
    std::string page = jbig2Page("00ea60");
    page.replace(22, 8, "0000ea60");
    EXPECT_TRUE(delivered(bytesOf(page + jbig2Rows),
                          "/Filter/JBIG2Decode/ColorSpace/DeviceGray/Width 8/Height 60000")
                    .starts_with("given up"));
}

} // namespace
} // namespace corvane
