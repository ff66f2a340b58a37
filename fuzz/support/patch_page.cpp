#include "fuzz/support/patch_page.h"

#include "fuzz/support/page_fonts.h"
#include "tests/support/pdf_builder.h"

#include <cstddef>

namespace corvane::fuzz {

namespace {

constexpr std::string_view resources =
    "/Resources << /ExtGState << /GS0 << /LW 3 /CA 0.5 /ca 0.5 >> /GS1 << /SMask 10 0 R >> "
    "/GS2 << /SMask /None /BM /Multiply /D [[3 1] 0] >> >> "
    "/ColorSpace << /CS0 [/Separation /Spot /DeviceRGB << /FunctionType 2 /Domain [0 1] "
    "/C0 [0 0 0] /C1 [1 0 0] /N 1 >>] /CS1 [/Indexed /DeviceRGB 1 <FF000000FF00>] "
    "/CS2 [/Pattern /DeviceRGB] /CS3 [/DeviceN [/A#20b /None] /DeviceRGB 14 0 R] >> "
    "/XObject << /X0 12 0 R >> /Pattern << /P0 13 0 R >> /Shading << /S0 << /ShadingType 2 "
    "/ColorSpace /DeviceGray /Coords [0 0 9 9] /Function << /FunctionType 2 /Domain [0 1] /N 1 >> "
    ">> >> "
    "/Properties << /MC0 << /Type /OCG /Name (layer) >> >> ";

std::string hexadecimal(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value / 16];
        text += digits[value % 16];
    }
    return text + ">";
}

} // namespace

std::string patchPage(const std::vector<std::string>& streams, std::string_view boxes) {
    constexpr int firstStream = 20;
    test::PdfBuilder file;
    std::string contents;
    for (std::size_t i = 0; i < streams.size(); ++i) {
        const int number = firstStream + static_cast<int>(i);
        contents += std::to_string(number) + " 0 R ";
        if (i % 2 == 0) {
            file.stream(number, streams[i]);
        } else {
            file.stream(number, hexadecimal(streams[i]), "/Filter /ASCIIHexDecode");
        }
    }
    file.object(1, "<< /Type /Catalog /Pages 2 0 R >>")
        .object(2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>")
        .object(3, "<< /Type /Page /Parent 2 0 R " + std::string(boxes) + " /Contents [" +
                       contents + "] " + std::string(resources) + std::string(fontEntry) + ">> >>")
        .object(10, "<< /S /Luminosity /G 12 0 R >>")
        .stream(12, "0 0 9 9 re f", "/Type /XObject /Subtype /Form /BBox [0 0 9 9]")
        .stream(13, "0 0 9 9 re f",
                "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 9 9] /XStep 9 /YStep 9 "
                "/Resources << >>")
        .stream(14, "{ pop 1 exch sub dup dup }",
                "/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]");
    addFonts(file);
    return file.bytes();
}

} // namespace corvane::fuzz
