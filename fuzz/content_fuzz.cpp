// Any bytes as a page's content: they become artwork, and the artwork becomes SVG.
#include "app/svg/sink.h"
#include "app/svg/writer.h"
#include "fuzz/page_fonts.h"
#include "fuzz/plugin_host.h"
#include "tests/support/pdf_builder.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace corvane::fuzz {

namespace {

/// A page whose content is `content`, in two streams where `cut` is not at its start.
std::string pageOf(std::string_view content, std::size_t cut) {
    const std::string resources = "/Resources << " + std::string(fontEntry) + ">> ";
    test::PdfBuilder file = test::PdfBuilder::onePage(content.substr(cut), resources);
    if (cut > 0) {
        file.stream(5, content.substr(0, cut))
            .object(3, "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Rotate 90 "
                       "/Contents [5 0 R 4 0 R] " +
                           resources + ">>");
    }
    addFonts(file);
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
