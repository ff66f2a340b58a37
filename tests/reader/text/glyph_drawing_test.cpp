// Glyphs of Type 3 fonts as groups of paths.
#include "runtime/fixed.h"
#include "tests/reader/extension_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

namespace corvane {
namespace {

class GlyphDrawingTest : public ExtensionTest {
protected:
    void drawPage(const std::string& content, const std::string& glyph, const std::string& font) {
        omissions_.clear();
        draw(PdfBuilder::onePage(content, "/Resources << /Font << /T 20 0 R /F 22 0 R >> "
                                          "/ExtGState << /G << /LW 3 >> >> >>")
                 .object(20, "<< /Type /Font /Subtype /Type3 /Encoding << /Differences [97 /a "
                             "/b] >> /FirstChar 97 /Widths [10 10] " +
                                 font + " >>")
                 .stream(21, glyph)
                 .object(22, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                 .bytes());
    }

    /// What the page holds: "left,bottom right,top black" of a path, groups in brackets.
    std::string seen() { return seen(document().layerArt(document().firstLayer())); }

    std::string seen(Art container) {
        std::string all;
        for (Art art = document().lastChild(container); art != Art::null;
             art = document().previousSibling(art)) {
            all += all.empty() ? "" : " ";
            if (document().kind(art) == ArtKind::group) {
                const bool isObject = document().source(art).has_value();
                all += (isObject                  ? "["
                        : document().clipped(art) ? "<"
                                                  : "(") +
                       seen(art) +
                       (isObject                  ? "]"
                        : document().clipped(art) ? ">"
                                                  : ")");
            } else if (document().kind(art) == ArtKind::placed) {
                all += bitmap(document().placedImage(art));
            } else {
                all += path(art);
            }
        }
        return all;
    }

    static std::string bitmap(const PlacedImage& placed) {
        std::array<char, 120> text{};
        const Matrix& matrix = placed.matrix;
        std::snprintf(text.data(), text.size(), "bitmap %u: %g,%g %gx%g",
                      static_cast<unsigned>(placed.image), realFromFixed(matrix.tx),
                      realFromFixed(matrix.ty), realFromFixed(matrix.a), realFromFixed(matrix.d));
        return text.data();
    }

    std::string path(Art art) {
        Point low{INT32_MAX, INT32_MAX};
        Point high{INT32_MIN, INT32_MIN};
        for (const Segment& segment : document().segments(art)) {
            low = {std::min(low.x, segment.anchor.x), std::min(low.y, segment.anchor.y)};
            high = {std::max(high.x, segment.anchor.x), std::max(high.y, segment.anchor.y)};
        }
        const PathStyle& style = document().style(art);
        std::array<char, 120> text{};
        const auto real = [](Fixed value) { return realFromFixed(value); };
        std::snprintf(text.data(), text.size(), "%g,%g %g,%g", real(low.x), real(low.y),
                      real(high.x), real(high.y));
        std::string all = text.data();
        for (const auto& [isPainted, colour, name] :
             {std::tuple(style.fillPaint, style.fill, " f"),
              std::tuple(style.strokePaint, style.stroke, " s")}) {
            std::snprintf(text.data(), text.size(), "%s%g", name, real(colour.component[0]));
            all += isPainted != 0 ? text.data() : "";
        }
        return all;
    }
};

const std::string tenth = "/FontMatrix [.1 0 0 .1 0 0] /CharProcs << /a 21 0 R >>";

struct Row {
    const char* name;
    std::string glyph;   ///< of "a"
    std::string content; ///< in a text object, in /T 10 at 100,700, in gray .75
    std::string seen;
    std::int32_t omitted = 0;
    std::string font = tenth;
};

TEST_F(GlyphDrawingTest, ProceduresPaintInThePlaceOfGlyphs) {
    const std::string square = "10 0 0 0 4 8 d1 0 0 4 8 re f";
    const Row rows[] = {
        {"a shape is of the colour of text", square, "(a) Tj", "[100,700 104,708 f0.25]"},
        {"and sets none of its own", "10 0 0 0 4 8 d1 0 g /DeviceGray CS 1 SCN 0 0 4 8 re B",
         "(a) Tj", "[100,700 104,708 f0.25 s0.25]"},
        {"a glyph of its own colours", "10 0 d0 0 0 4 8 re f 0 g 0 0 1 1 re f", "(a) Tj",
         "[100,700 104,708 f0.25 100,700 101,701 f1]"},
        {"each begins anew", "10 0 d0 2 0 0 2 0 0 cm 0 0 1 1 re f 0 g q", "(aa) Tj",
         "[100,700 102,702 f0.25 110,700 112,702 f0.25]"},
        {"places", square, "2 Tc 50 Tz 1 Ts [(a) -1000 (a)] TJ (a) Tj",
         "[100,701 102,709 f0.25 111,701 113,709 f0.25] [117,701 119,709 f0.25]"},
        {"turned", square, "0 1 -1 0 50 60 Tm (a) Tj", "[42,60 50,64 f0.25]"},
        {"what is open is closed", "10 0 d0 q q 0 0 4 8 re W n 0 0 1 1 re f 5 5 m",
         "(a) Tj 0 0 9 9 re f", "[<100,700 101,701 f0.25 100,700 104,708>] 0,0 9,9 f0.25"},
        {"Q without q", "10 0 d0 Q Q 0 0 1 1 re f", "q (a) Tj Q", "[100,700 101,701 f0.25]"},
        {"glyphs that are not there", square, "(bc) Tj (a) Tj", "[110,700 114,708 f0.25]"},
        {"nothing in it", "10 0 d0", "(a) Tj", ""},
        {"a state of the page's resources", "10 0 d0 /G gs 0 0 4 8 re f", "(a) Tj",
         "[100,700 104,708 f0.25]"},
        {"resources of its own", "10 0 d0 /G gs 0 0 4 8 re f", "(a) Tj", "[100,700 104,708 f0.25]",
         0, tenth + " /Resources << /ExtGState << /G << /Font [20 0 R 1] >> >> >>"},
        {"words that fail", "d1 10 0 d0 f ) 0 0 4 8 re f", "(a) Tj", "[100,700 104,708 f0.25]"},
        {"unseen", square, "3 Tr (a) Tj", ""},
        {"stroked text is filled", square, "1 Tr (a) Tj", "[100,700 104,708 f0.25]"},
        {"as clip", square, "7 Tr (a) Tj", "", 1},
        {"no matrix", "10 0 d0 0 0 4000 8000 re f", "(a) Tj", "[100,700 140,780 f0.25]", 0,
         "/CharProcs << /a 21 0 R >>"},
        {"a matrix that flattens", square, "(a) Tj", "", 0,
         "/FontMatrix [.1 0 0 0 0 0] /CharProcs << /a 21 0 R >>"},
        {"no procedures", square, "(a) Tj", "", 0, "/FontMatrix [.1 0 0 .1 0 0]"},
        {"it shows itself", "10 0 d0 0 0 1 1 re f BT /T 10 Tf (a) Tj ET", "(a) Tj (a) Tj", "", 2},
        {"it shows text in the font in force", "10 0 d0 0 0 1 1 re f BT (a) Tj ET", "(a) Tj", "",
         1},
        {"a bitmap", "10 0 0 0 4 8 d1 4 0 0 8 0 0 cm BI /W 1 /H 1 /IM true ID a EI", "(aa) Tj",
         "[bitmap 1: 100,700 4x8 bitmap 1: 110,700 4x8]"},
        {"bitmaps are told apart by colour", "10 0 0 0 4 8 d1 BI /W 1 /H 1 /IM true ID a EI",
         "(a) Tj 0 g (a) Tj", "[bitmap 1: 100,700 1x1] [bitmap 2: 110,700 1x1]"},
        {"half of it is seen through", "10 0 d0 /H gs 0 0 4 8 re f", "(a) Tj",
         "[100,700 104,708 f0.25]", 0,
         tenth + " /Resources << /ExtGState << /H << /ca .5 >> >> >>"},
        {"a pattern", square, "/Pattern cs /P scn (a) Tj .75 g (a) Tj", "[110,700 114,708 f0.25]",
         1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        drawPage(".75 g .75 G BT /T 10 Tf 100 700 Td " + row.content + " ET", row.glyph, row.font);
        EXPECT_EQ(seen(), row.seen);
        EXPECT_EQ(omitted(Omission::text), row.omitted);
    }
    EXPECT_EQ(omissions_.size(), 2U) << "of the page itself: the pattern";
}

TEST_F(GlyphDrawingTest, ManyGlyphsComeToAnEnd) {
    const std::string glyphs(250'000, 'a');
    EXPECT_EQ(raisedBy([&] {
                  drawPage("BT /T 10 Tf (" + glyphs + ") Tj ET", "10 0 d0 0 0 1 1 re f",
                           "/FontMatrix [1 0 0 0 0 0] /CharProcs << /a 21 0 R >>");
              }),
              Exception::limit);
}

} // namespace
} // namespace corvane
