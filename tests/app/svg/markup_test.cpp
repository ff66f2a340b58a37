#include "app/svg/markup.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

std::string escaped(std::string_view text) {
    StringSink sink;
    TextOutput out(sink);
    writeEscaped(out, text);
    out.flush();
    return sink.text();
}

TEST(Markup, AnyBytesBecomeTextThatXmlAllows) {
    using namespace std::string_view_literals;
    const struct {
        std::string_view bytes;
        std::string_view wanted;
    } rows[] = {
        {"a<b>&\"c\"'", "a&lt;b&gt;&amp;&quot;c&quot;'"},
        {"tab\tline\nreturn\r", "tab&#9;line&#10;return&#13;"},
        {"nul\0bell\x07 escape\x1b del\x7f!"sv, "nulbell escape del!"},
        {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xA8", "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xA8"},
        {"caf\xE9 \xFF", "caf\xC3\xA9 \xC3\xBF"}, // ISO 8859-1
        {"\xC3", "\xC3\x83"},                     // cut off
        {"\xC0\xBC", "\xC3\x80\xC2\xBC"},         // a longer way to say "<"
        {"\xE0\x80\xBC", "\xC3\xA0\xC2\xBC"},     // and a still longer one
        {"\xED\xA0\x80x", "\xC3\xAD\xC2\xA0x"},   // half a surrogate pair
        {"\xF4\x90\x80\x80", "\xC3\xB4"},         // past the last character
        {"\xEF\xBF\xBE|\xEF\xBF\xBF|\xEF\xBF\xBD", "||\xEF\xBF\xBD"},
        {"\xC2\x85 next", " next"}, // a control of C1
    };
    for (const auto& row : rows) {
        EXPECT_EQ(escaped(row.bytes), row.wanted);
    }
}

} // namespace
} // namespace corvane
