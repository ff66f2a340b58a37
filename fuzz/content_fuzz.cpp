// Any bytes as a page's content: they become artwork, and the artwork becomes SVG.
#include "app/svg/sink.h"
#include "app/svg/writer.h"
#include "fuzz/support/page_fonts.h"
#include "fuzz/support/plugin_host.h"
#include "tests/support/pdf_builder.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace corvane::fuzz {

namespace {

constexpr std::string_view formEntries = "/XObject << /F0 60 0 R /F1 61 0 R >> /Properties << /L0 "
                                         "62 0 R /L1 63 0 R >> ";
constexpr std::string_view stateEntries =
    "/ExtGState << /G0 << /ca .5 /CA .25 /BM [/Odd /Multiply] >> /G1 << /SMask << /S /Luminosity "
    "/G 60 0 R /BC [.5] /TR 65 0 R >> >> /G2 << /SMask << /S /Alpha /G 61 0 R >> >> /G3 << /SMask "
    "/None /ca 1 /BM /Normal >> >> ";

/// Forms that draw the page's content once more and a part of it, the latter with default colour
/// spaces, in layers of the file, and are groups of soft masks; an annotation that looks like one
/// of them.
void addForms(test::PdfBuilder& file, std::string_view content, std::size_t cut) {
    file.object(1, "<< /Type /Catalog /Pages 2 0 R /OCProperties << /D << /OFF [62 0 R] >> >> >>")
        .stream(
            60, content.substr(cut),
            "/Subtype /Form /BBox [0 0 90 90] /Matrix [.5 0 0 2 1 1] /Group << /S /Transparency "
            "/I true >>")
        .stream(61, content.substr(0, content.size() / 2),
                "/Subtype /Form /OC 63 0 R /Resources << /XObject << /F0 60 0 R >> /ColorSpace << "
                "/DefaultGray [/Separation /All /DeviceRGB 66 0 R] /DefaultRGB [/CalRGB << "
                "/WhitePoint [.95 1 1.09] >>] /I [/Indexed /DeviceGray 1 (ab)] >> >>")
        .object(62, "<< /Type /OCG /Name (L) >>")
        .object(63, "<< /Type /OCMD /VE [/Not 62 0 R] >>")
        .object(64, "<< /Type /Annot /Rect [5 5 50 50] /AP << /N 60 0 R >> >>")
        .object(65, "<< /FunctionType 2 /Domain [0 1] /N 2 /C0 [1] /C1 [0] >>")
        .object(66, "<< /FunctionType 2 /Domain [0 1] /N 1 /C0 [1 0 0] /C1 [0 0 1] >>");
}

/// A page whose content is `content`, in two streams where `cut` is not at its start.
std::string pageOf(std::string_view content, std::size_t cut) {
    const std::string resources = "/Annots [64 0 R] /Resources << " + std::string(fontEntry) +
                                  std::string(formEntries) + std::string(stateEntries) + ">> ";
    test::PdfBuilder file = test::PdfBuilder::onePage(content.substr(cut), resources);
    if (cut > 0) {
        file.stream(5, content.substr(0, cut))
            .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Rotate 90 "
                       "/Contents [5 0 R 4 0 R] " +
                           resources + ">>");
    }
    addFonts(file);
    addForms(file, content, cut);
    return file.bytes();
}

void requireWholeSvg(const Document& document) {
    StringSink sink;
    require(!writeSvg(document, {}, sink));
    const std::string& text = sink.text();
    require(text.ends_with("</svg>\n"));
    require(std::ranges::none_of(
        text, [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\n'; }));
}

} // namespace

void fuzzContent(Bytes input) {
    Choices choices(input);
    std::string content(input.size(), '\0');
    std::ranges::transform(input, content.begin(),
                           [](std::byte byte) { return static_cast<char>(byte); });
    const std::size_t cut =
        choices.below(4) == 0 ? choices.below(static_cast<std::uint32_t>(content.size()) + 1) : 0;
    const std::string file = pageOf(content, cut);
    const Profile profile = choices.below(4) == 0 ? Profile::original : Profile::extended;
    PluginHost host(std::as_bytes(std::span(file)), profile, 1);
    if (host.call(Selector::go) == 0) {
        require(host.document().importFinished());
        requireWholeSvg(host.document());
        if (profile == Profile::original) {
            host.call(Selector::go, Action::write); // walks what was made
        }
    }
}

} // namespace corvane::fuzz
