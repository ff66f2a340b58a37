// Text that artwork can hardly hold, or not at all, keeps no page from being opened and saved.
#include "fuzz/support/patch_page.h"
#include "fuzz/support/plugin_host.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <vector>

namespace corvane::fuzz {
namespace {

constexpr std::string_view box = "/MediaBox [0 0 612 792]";

struct OddText {
    std::string name;
    std::string content;
};

class Opened : public ::testing::TestWithParam<OddText> {};

TEST_P(Opened, WithoutRefusal) {
    const std::string file = patchPage({GetParam().content}, box);
    PluginHost host(std::as_bytes(std::span(file)), Profile::extended, 1);
    EXPECT_EQ(host.call(Selector::prepare), 0U);
    EXPECT_EQ(host.call(Selector::go), 0U);
    EXPECT_TRUE(host.document().importFinished());
    EXPECT_EQ(host.call(Selector::trial), 0U);
    EXPECT_TRUE(host.saved().isNothing);
}

INSTANTIATE_TEST_SUITE_P(
    Text, Opened,
    ::testing::Values(
        OddText{"SizeThatRoundsToZero", "BT /F2 .0001 Tf .01 0 0 .01 0 0 Tm (AB) Tj ET"},
        OddText{"WithinPath", "BT /F2 9 Tf 0 0 m (A) Tj 9 9 l 9 0 l f (B) Tj ET"},
        OddText{"NoWidth", "BT /F2 9 Tf 0 Tz (AB) Tj ET"},
        OddText{"Endless", "99999 0 0 99999 0 0 cm 99999 0 0 99999 0 0 cm BT /F2 32000 Tf "
                           "[(A) 32000 (B)] TJ ET"},
        OddText{"FourThousandMillionCodes", "BT /F6 9 Tf [<00000005> -400 <00000005>] TJ ET"}),
    [](const auto& text) { return text.param.name; });

/// Makes the one line of the page say something else.
void retype(Document& document, std::string_view letters) {
    const Art top = document.layerArt(document.firstLayer());
    const Art text = document.firstChild(top);
    const Art made = document.make(ArtKind::text, Placement::inFront, text);
    document.setTextLine(made, document.textLine(text));
    TextRun run = document.textRun(text, 0);
    run.text = letters;
    run.pieces = {};
    document.addTextRun(made, run);
    document.dispose(text);
}

TEST(OddTextSaved, NamesOfFontsKeepTheirEscapes) {
    const std::string file = patchPage({"BT /F#203 9 Tf 9 9 Td (A) Tj ET"}, box);
    PluginHost host(std::as_bytes(std::span(file)), Profile::extended, 1);
    ASSERT_EQ(host.call(Selector::prepare), 0U);
    ASSERT_EQ(host.call(Selector::go), 0U);
    const TextRun run = host.document().textRun(
        host.document().firstChild(host.document().layerArt(host.document().firstLayer())), 0);
    const std::string twice = std::string(run.text) + std::string(run.text);
    retype(host.document(), twice);
    ASSERT_EQ(host.call(Selector::go, Action::write), 0U);
    const std::string saved = PluginHost::fileBytes().substr(file.size());
    EXPECT_NE(saved.find("/F#203 9 Tf"), std::string::npos) << saved;
}

} // namespace
} // namespace corvane::fuzz
