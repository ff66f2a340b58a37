// Any bytes as a shading, a tiling pattern and a function, all in one: what stands before the first
// line "data" are the entries of a stream, the rest its data. A page paints with each, is written
// as SVG, and saved.
#include "app/svg/sink.h"
#include "app/svg/writer.h"
#include "fuzz/support/plugin_host.h"
#include "tests/support/pdf_builder.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace corvane::fuzz {

namespace {

constexpr std::string_view separator = "\ndata\n";

std::string pageOf(std::string_view input) {
    const std::size_t end = input.find(separator);
    const std::string_view entries = input.substr(0, end);
    const std::string_view data =
        end == std::string_view::npos ? std::string_view() : input.substr(end + separator.size());
    test::PdfBuilder file = test::PdfBuilder::onePage(
        "/Pattern cs /P scn 9 9 150 150 re f /T scn 0 0 99 99 re f q 0 0 80 90 re W n /S sh Q\n"
        "/U cs .5 /T scn 20 20 m 200 200 l 0 80 l B",
        "/Resources << /Shading << /S 5 0 R >> /Pattern << /P 6 0 R /T 5 0 R >> "
        "/ColorSpace << /U [/Pattern /DeviceGray] >> >>");
    file.stream(5, data, std::string(entries))
        .object(6, "<< /PatternType 2 /Shading 5 0 R /Matrix [1 .1 .2 1 3 4] >>");
    return file.bytes();
}

} // namespace

void fuzzShading(Bytes input) {
    std::string text(input.size(), '\0');
    std::ranges::transform(input, text.begin(),
                           [](std::byte byte) { return static_cast<char>(byte); });
    const std::string file = pageOf(text);
    PluginHost host(std::as_bytes(std::span(file)), Profile::extended, 1);
    if (host.call(Selector::go) != 0) {
        return;
    }
    StringSink sink;
    require(!writeSvg(host.document(), {}, sink));
    require(sink.text().ends_with("</svg>\n"));
    require(host.call(Selector::go, Action::write) == 0);
    require(host.saved().isNothing); // the page as it was read again is the same
}

} // namespace corvane::fuzz
