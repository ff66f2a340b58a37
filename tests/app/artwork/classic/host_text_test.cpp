// The host's fonts, and its side of the classic slots for text.
#include "app/artwork/classic/host_fonts.h"
#include "app/artwork/slots/callbacks.h"
#include "app/svg/sink.h"
#include "app/svg/writer.h"
#include "tests/app/artwork/host_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace corvane {
namespace {

TEST(HostFonts, StandardFontsComeFirstWithTheirWidths) {
    const HostFonts& fonts = HostFonts::all();
    ASSERT_GT(fonts.count(), 14);
    EXPECT_EQ(fonts.name(0), "Courier");
    EXPECT_EQ(fonts.name(13), "ZapfDingbats");
    const struct {
        const char* font;
        std::uint8_t code;
        char32_t character;
        std::int32_t width; ///< thousandths, by the metrics of the standard fonts
    } rows[] = {{"Helvetica", 'A', 'A', 667},     {"Helvetica-Bold", 0x8E, U'é', 556},
                {"Times-Italic", 'm', 'm', 722},  {"Courier-Bold", 0xDE, U'ﬁ', 600},
                {"Symbol", 'a', U'α', 631},       {"Symbol", 0xA5, U'∞', 713},
                {"ZapfDingbats", '!', U'✁', 974}, {"Times-Roman", 0xCA, U'\u00A0', 250}};
    for (const auto& row : rows) {
        const auto font = fonts.find(row.font);
        ASSERT_TRUE(font) << row.font;
        const HostFonts::Measured& measured = fonts.measured(*font);
        EXPECT_EQ(measured.characters[row.code], row.character) << row.font;
        EXPECT_EQ((measured.info.widths[row.code] * 1000LL + 0x8000) >> 16, row.width)
            << row.font << ' ' << int{row.code};
        EXPECT_EQ(codeOf(measured, row.character), row.code) << row.font;
    }
    EXPECT_THROW(fonts.name(-1), ArtworkError);
    EXPECT_THROW(fonts.measured(fonts.count()), ArtworkError);
}

TEST(HostFonts, ArtworkKeepsWhichFontItIs) {
    const HostFonts& fonts = HostFonts::all();
    for (std::int32_t font = 0; font < fonts.count(); ++font) {
        EXPECT_EQ(fonts.fontOf(fonts.facts(fonts.name(font))), font) << fonts.name(font);
    }
    const auto drawn = [&](const FontFacts& facts) {
        return fonts.name(fonts.fontOf(facts).value());
    };
    EXPECT_EQ(drawn({.family = "courier", .weight = 600}), "Courier-Bold");
    EXPECT_EQ(drawn({.family = "Corvane 9D18C9 X", .realFamily = "Times", .italic = true}),
              "Times-Italic");
    EXPECT_EQ(drawn({.family = "Arial", .weight = 700}), "Helvetica-Bold");
    EXPECT_EQ(drawn({.family = "Nowhere", .generic = GenericFamily::serif}), "Times-Roman");
}

class OpenRunTest : public testing::Test {
protected:
    void SetUp() override {
        Art layer = Art::null;
        ASSERT_EQ(call(slot::getLayerArt, Layer::null, &layer), HostError::none);
        ASSERT_EQ(call(slot::newArt, ArtKind::text, Placement::inside, layer, &text_),
                  HostError::none);
        const Matrix origin{.b = fixedOne, .c = 2 * fixedOne, .d = 0, .tx = 7 * fixedOne};
        ASSERT_EQ(call(slot::setTextOrigin, text_, &origin), HostError::none);
        ASSERT_EQ(call(slot::newTextRun, text_, Placement::inside, &run_), HostError::none);
    }
    void put(const char* letters) {
        auto count = static_cast<std::int32_t>(std::strlen(letters));
        const std::vector<std::uint8_t> bytes(letters, letters + count);
        ASSERT_EQ(call(slot::setRunText, run_, bytes.data(), &count), HostError::none);
    }

    Document& document() { return call.document; }

    HostTable call;
    Art text_ = Art::null;
    RunHandle run_ = RunHandle::null;
};

TEST_F(OpenRunTest, WhatWasMadeIsWalked) {
    const std::uint8_t unknown[] = "\003Xyz";
    EXPECT_EQ(call(slot::setRunFont, run_, unknown), HostStatus::fontMissing);
    const std::uint8_t times[] = "\013Times-Roman";
    EXPECT_EQ(call(slot::setRunFont, run_, times), HostStatus::none);
    CharStyle letters;
    ASSERT_EQ(call(slot::getCharStyle, run_, &letters), HostError::none);
    EXPECT_EQ(letters.font[1], 'T');
    letters.size = 5 * fixedOne;
    letters.leading = 6 * fixedOne;
    ASSERT_EQ(call(slot::setCharStyle, run_, &letters), HostError::none);
    put("ab\rc");
    ASSERT_EQ(call(slot::setRunPosition, run_, 1, -1), HostError::none);
    ASSERT_EQ(call(slot::setRunKerning, run_, fixedOne / 2), HostError::none);
    Fixed kern = 0;
    ASSERT_EQ(call(slot::getRunKerning, run_, &kern), HostError::none);
    EXPECT_EQ(kern, fixedOne / 2);
    EXPECT_EQ(call(slot::setRunPosition, run_, 5, -1), HostError::failed);
    ASSERT_EQ(call(slot::endTextRun, run_), HostError::none);

    std::string seen;
    RunHandle run = RunHandle::null;
    ASSERT_EQ(call(slot::getFirstRun, text_, &run), HostError::none);
    while (run != RunHandle::null) {
        RunText shown;
        ASSERT_EQ(call(slot::getRunText, run, &shown), HostError::none);
        seen += std::string(shown.letters.begin(), shown.letters.end()) + ' ';
        const RunHandle former = run;
        ASSERT_EQ(call(slot::getNextRun, text_, former, &run), HostError::none);
    }
    EXPECT_EQ(seen, "a b c ") << "kerns and lines divide runs";
    // Letters twice as tall as wide, the baseline going down: b and c come back negated.
    LineHandle line = LineHandle::null;
    ASSERT_EQ(call(slot::getFirstLine, text_, &line), HostError::none);
    Matrix place;
    ASSERT_EQ(call(slot::getGlyphMatrix, line, 1, &place), HostError::none);
    const LineHandle first = line;
    ASSERT_EQ(call(slot::getNextLine, first, &line), HostError::none);
    Matrix below;
    ASSERT_EQ(call(slot::getGlyphMatrix, line, 0, &below), HostError::none);
    EXPECT_EQ(place.b, fixedOne / 2);
    EXPECT_EQ(place.c, fixedOne);
    EXPECT_EQ(below.tx, (7 + 12) * fixedOne) << "six units below, which the matrix doubles";
    EXPECT_EQ(call(slot::getGlyphMatrix, line, 1, &below), HostError::failed);
    EXPECT_EQ(call(slot::getLinePlacement, line), HostStatus::notOnPath);
}

TEST_F(OpenRunTest, WrongHandlesAreRefused) {
    RunHandle other = RunHandle::null;
    EXPECT_EQ(call(slot::newTextRun, text_, Placement::inside, &other), HostError::failed);
    put("a");
    ASSERT_EQ(call(slot::endTextRun, run_), HostError::none);
    EXPECT_EQ(call(slot::endTextRun, run_), HostError::failed) << "it is over";
    EXPECT_EQ(call(slot::newTextRun, text_, Placement::inside, &other), HostError::failed)
        << "there is text already";
    PathStyle style;
    for (const std::uint64_t handle : {0ULL, 1ULL, 5ULL << 32 | 1, ~0ULL}) {
        EXPECT_EQ(call(slot::getRunStyle, RunHandle{handle}, &style), HostError::failed) << handle;
        EXPECT_EQ(call(slot::getNextLine, LineHandle{handle}, nullptr), HostError::failed);
        EXPECT_EQ(call(slot::setRunText, RunHandle{handle}, nullptr, nullptr), HostError::failed);
    }
}

TEST_F(OpenRunTest, CopiesOfTextChangeByThemselves) {
    put("a\rb");
    ASSERT_EQ(call(slot::endTextRun, run_), HostError::none);
    const Art copy = document().duplicate(text_, Placement::behind, text_);
    PathStyle style;
    style.strokePaint = 1;
    document().setTextRunStyle(copy, 1, style);
    EXPECT_EQ(document().textRun(text_, 1).style.strokePaint, 0);
    EXPECT_EQ(document().textRun(copy, 1).style.strokePaint, 1);
    document().transformText(copy, {2, 0, 0, 2, 1, 0});
    EXPECT_EQ(document().textRun(copy, 1).size, 2 * document().textRun(text_, 1).size);
    const auto before = document().textRun(text_, 1).line;
    const auto after = document().textRun(copy, 1).line;
    ASSERT_TRUE(before && after);
    EXPECT_EQ(after->tx, 2 * before->tx + fixedOne);
    EXPECT_EQ(after->c, before->c);

    StringSink svg;
    ASSERT_FALSE(writeSvg(document(), {}, svg));
    std::size_t lines = 0;
    for (std::size_t at = 0; (at = svg.text().find("<text ", at)) != std::string::npos; ++at) {
        ++lines;
    }
    EXPECT_EQ(lines, 4U) << "one element for each line";
}

} // namespace
} // namespace corvane
