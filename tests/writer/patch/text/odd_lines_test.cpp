// Lines without sources, from the right, and with letters that are turned or underlined: edited and
// saved as patches.
#include "tests/writer/patch/text/text_patch_fixture.h"

#include <functional>

namespace corvane {
namespace {

class OddLinesTest : public TextPatchTest {
protected:
    struct HebrewEdit {
        const char* name;
        std::function<void(Typist&)> edit;
        std::string facts;
        std::string saved;      ///< the content; empty: the file stays
        std::string lines = {}; ///< of the page that was saved; empty: as they were edited
    };

    /// Of a page whose font /H has the letters a to d for the first of the Hebrew alphabet, each
    /// half an em wide.
    void expectEditsOfHebrew(const std::string& content, const std::vector<HebrewEdit>& rows) {
        for (const HebrewEdit& row : rows) {
            SCOPED_TRACE(row.name);
            openFile(PdfBuilder::onePage(content, "/Resources << /Font << /H 20 0 R >> >>")
                         .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica "
                                     "/FirstChar 97 /Widths [500 500 500 500] /ToUnicode 21 0 R >>")
                         .stream(21, "beginbfrange <61> <64> <05D0> endbfrange")
                         .bytes());
            Typist edits = typist();
            row.edit(edits);
            const std::string edited = test::runsText(*document_);
            ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
            EXPECT_EQ(facts(), row.facts);
            EXPECT_EQ(saved_.back().isNothing ? "" : newContent(), row.saved);
            ASSERT_EQ(open(), 0U);
            EXPECT_EQ(test::runsText(*document_), row.lines.empty() ? edited : row.lines);
        }
    }
};

/// Lines that do not say what made them are known by their letters, fonts and places.
TEST_F(OddLinesTest, LinesWithoutSources) {
    const std::string twice = "BT /F 10 Tf 100 700 Td (ab) Tj ET BT /F 10 Tf 100 700 Td (ab) Tj ET "
                              "BT /F 10 Tf 100 600 Td (ab) Tj ET";
    const Edit rows[] = {
        {"beside a line that is moved", threeRuns,
         [](Typist& it) {
             it.unmark(0);
             it.move(1, 5, 3);
         },
         "2 1 0 0 0", ""},
        {"painted otherwise", threeRuns,
         [](Typist& it) {
             it.gray(1, 0);
             it.unmark(0);
             it.unmark(1);
         },
         "2 1 0 0 0", ""},
        {"moved: it is a new one", threeRuns,
         [](Typist& it) {
             it.move(1, 5, 3);
             it.unmark(1);
         },
         "2 0 1 1 0", ""},
        {"columns of one line", columns,
         [](Typist& it) {
             for (std::size_t line = 0; line < 3; ++line) {
                 it.unmark(line);
             }
             it.retype(2, 0, "no end");
         },
         "2 0 2 2 0", ""},
        {"one of two that lie over each other goes", twice,
         [](Typist& it) {
             it.unmark(0);
             it.unmark(2);
             it.remove(1);
         },
         "2 0 0 1 0", ""},
        {"the paint tells two of them", twice + " 0 g",
         [](Typist& it) {
             it.gray(1, 0);
             it.unmark(0);
             it.unmark(1);
         },
         "2 1 0 0 0", ""},
    };
    expectEdits(rows);
}

/// Of a table, whose cells often read alike.
TEST_F(OddLinesTest, ManyLinesOfTheSameLetters) {
    constexpr int across = 8;
    constexpr int down = 12;
    std::string content = "BT /F 10 Tf ";
    for (int i = 0; i < across * down; ++i) {
        content += "1 0 0 1 " + std::to_string(50 + 20 * (i % across)) + " " +
                   std::to_string(700 - 15 * (i / across)) + " Tm (0) Tj ";
    }
    openPage(content + "ET");
    Typist edits = typist();
    const auto count = static_cast<std::size_t>(across * down);
    ASSERT_EQ(edits.texts.size(), count);
    for (std::size_t line = 0; line < count; ++line) {
        if (line % 3 == 0) {
            edits.remove(line);
        } else {
            edits.unmark(line);
            edits.move(line, line % 2 == 0 ? 1.0 / 100 : -1.0 / 100, 0); // as editors round
        }
    }
    ASSERT_NO_FATAL_FAILURE(expectTextSaved());
    EXPECT_EQ(facts(), "64 0 0 32 0");
}

/// Each letter is shown left of the one before; the line of art has them as they stand.
TEST_F(OddLinesTest, LinesFromTheRight) {
    const std::string begin = "BT /H 10 Tf 100 700 Td ";
    const std::string shown = "[(a) 1000 (b) 1000 (c) 7000 (d) 1000 (a)] TJ";
    expectEditsOfHebrew(
        begin + shown + " (b) Tj ET",
        {
            {"nothing", [](Typist&) {}, "3 0 0 0 0", ""},
            {"a line is moved", [](Typist& it) { it.move(0, 7, 3); }, "2 1 0 0 0",
             "\nq\nq\nBT\n/H 10 Tf\n" + plain +
                 "1 0 0 1 107 703 Tm\n[(a) 1000 (b) 1000 (c) 7000 ] TJ\nET\nQ\nQ\n" + begin +
                 " [7500 (d) 1000 (a) ] TJ\n (b) Tj ET\n"},
            {"a line goes", [](Typist& it) { it.remove(1); }, "2 0 0 1 0",
             begin + " [(a) 1000 (b) 1000 (c) 7000 ] TJ\n (b) Tj ET\n"},
            {"a line is typed anew", [](Typist& it) { it.retype(0, 0, "\u05D0\u05D1"); },
             "2 1 0 0 0",
             "\nq\nq\nBT\n/H 10 Tf " + plain + "1 0 0 1 90 700 Tm\n[<6162> ] TJ\nET\nQ\nQ\n" +
                 begin + " [7500 (d) 1000 (a) ] TJ\n (b) Tj ET\n"},
        });
}

/// Each word is shown left of the one before. What is written apart is a line of its own.
TEST_F(OddLinesTest, WordsFromTheRight) {
    const auto apart = [](const std::string& place, const std::string& shown) {
        return "q\nBT\n/H 10 Tf\n" + plain + "1 0 0 1 " + place + " Tm\n" + shown + " TJ\nET\nQ\n";
    };
    const std::string begin = "BT /H 10 Tf 1 0 0 1 100 700 Tm ";
    const std::string last = " 1 0 0 1 80 700 Tm (a) Tj ET";
    const std::string rest = " [-1000 ] TJ\n 1 0 0 1 87.5 700 Tm (dc) Tj" + last + "\n";
    const std::string none = begin + " [-1000 ] TJ\n 1 0 0 1 87.5 700 Tm  [-1000 ] TJ\n "
                                     "1 0 0 1 80 700 Tm  [-500 ] TJ\n ET\nq\n";
    expectEditsOfHebrew(
        begin + "(ba) Tj 1 0 0 1 87.5 700 Tm (dc) Tj" + last,
        {
            {"nothing", [](Typist&) {}, "3 0 0 0 0", ""},
            {"a line that names no source", [](Typist& it) { it.unmark(0); }, "3 0 0 0 0", ""},
            {"the line is moved", [](Typist& it) { it.move(0, 7, 3); }, "0 3 0 0 0",
             none + apart("107 703", "[(ba) ]") + apart("94.5 703", "[(dc) ]") +
                 apart("87 703", "[(a) ]") + "Q\n\n"},
            {"another colour", [](Typist& it) { it.gray(0, 1); }, "2 1 0 0 0",
             begin + "(ba) Tj 1 0 0 1 87.5 700 Tm  [-1000 ] TJ\n 1 0 0 1 80 700 Tm\nET\nq\n" +
                 "q\n.5 g\nBT\n/H 10 Tf\n" + plain +
                 "1 0 0 1 87.5 700 Tm\n[(dc) ] TJ\nET\nQ\nQ\nBT\n1 0 0 1 80 700 Tm\n (a) Tj ET\n"},
            {"a word goes", [](Typist& it) { it.removeRun(0, 2); }, "2 0 0 1 0", begin + rest,
             "\u05D0 @80,700 10 + \u05D3\u05D2@93.9,700 10"},
            {"a word is typed anew", [](Typist& it) { it.retype(0, 2, "\u05D3\u05D2\u05D1"); },
             "2 1 0 0 0",
             "\nq\nq\nBT\n/H 10 Tf " + plain + "1 0 0 1 100 700 Tm\n[<646362> ] TJ\nET\nQ\nQ\n" +
                 begin + rest},
        });
}

/// As a line is read whose place is its right end.
void placeAtEnd(Typist& it, std::size_t line) {
    TextLine placed = it.document.textLine(it.texts.at(line));
    ASSERT_NE(placed.reach, 0);
    placed.matrix.tx += placed.reach;
    placed.anchor = TextAnchor::end;
    placed.reach = 0;
    it.document.setTextLine(it.texts[line], placed);
}

TEST_F(OddLinesTest, LinesThatEndAtTheirPlace) {
    const std::string begin = "BT /H 10 Tf 1 0 0 1 100 700 Tm (ba) Tj ";
    const std::string opened =
        "\u05D0 @80,700 10 + \u05D3\u05D2 @93.9,700 10 + \u05D1\u05D0@118.9,700 10";
    const std::string setAnew = " [-500 ] TJ\n ET\nq\nq\nBT\n/H 10 Tf " + plain;
    expectEditsOfHebrew(
        begin + "1 0 0 1 87.5 700 Tm (dc) Tj 1 0 0 1 80 700 Tm (a) Tj ET",
        {
            {"nothing", [](Typist& it) { placeAtEnd(it, 0); }, "3 0 0 0 0", "", opened},
            {"no source",
             [](Typist& it) {
                 it.unmark(0);
                 placeAtEnd(it, 0);
             },
             "3 0 0 0 0", "", opened},
            {"what is read last is typed anew",
             [](Typist& it) {
                 it.retype(0, 0, "\u05D1\u05D0 ");
                 placeAtEnd(it, 0);
             },
             "2 1 0 0 0",
             begin + "1 0 0 1 87.5 700 Tm (dc) Tj 1 0 0 1 80 700 Tm " + setAnew +
                 "1 0 0 1 75 700 Tm\n[<6261> ] TJ\nET\nQ\nQ\n\n",
             "\u05D1\u05D0 @75,700 10 + \u05D3\u05D2 @100,700 10 + \u05D1\u05D0@125,700 10"},
            {"a word that grows",
             [](Typist& it) {
                 it.retype(0, 1, "\u05D1\u05D3\u05D2");
                 placeAtEnd(it, 0);
             },
             "1 2 0 0 0",
             begin + "1 0 0 1 87.5 700 Tm  [-1000 ] TJ\n 1 0 0 1 80 700 Tm " + setAnew +
                 "1 0 0 1 85 700 Tm\n[<626463> ] TJ\nET\nQ\nq\nBT\n/H 10 Tf\n" + plain +
                 "1 0 0 1 77.5 700 Tm\n[(a) ] TJ\nET\nQ\nQ\n\n",
             "\u05D0 @77.5,700 10 + \u05D1\u05D3\u05D2@91.4,700 10 + \u05D1\u05D0@124.8,700 10"},
        });
}

const TextDecoration underlined[] = {{.isUnder = true, .size = 10 * fixedOne}};
const TextDecoration redThrough[] = {
    {.isThrough = true,
     .size = 10 * fixedOne,
     .thickness = 2 * fixedOne,
     .hasColour = true,
     .colour = {ColourKind::process, {0, fixedOne, fixedOne, 0}, ColourOrigin::fromRgb}}};
const TextPiece quarterTurn[] = {{.start = 1, .turn = 90 * fixedOne}};

/// Opened again, lines along letters are paths, and turned letters are lines.
TEST_F(OddLinesTest, LinesAlongLettersAndTurnedLetters) {
    const Edit rows[] = {
        {"a line under letters of the page", threeRuns,
         [](Typist& it) { it.decorate(1, underlined); }, "2 1 0 0 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj (cd) Tj 0 -20 Td  [-834 ] TJ\n ET\nq\nq\n"
         "100 679 m\n108.34 679 l\n108.34 678.5 l\n100 678.5 l\nh\nf\nBT\n/F 10 Tf\n" +
             plain + "1 0 0 1 100 680 Tm\n[(ef) ] TJ\nET\nQ\nQ\n\n"},
        {"a red line through letters", threeRuns, [](Typist& it) { it.decorate(1, redThrough); },
         "2 1 0 0 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj (cd) Tj 0 -20 Td  [-834 ] TJ\n ET\nq\nq\nBT\n/F 10 Tf\n" +
             plain +
             "1 0 0 1 100 680 Tm\n[(ef) ] TJ\nET\nq\n1 0 0 rg\n"
             "100 683 m\n108.34 683 l\n108.34 681 l\n100 681 l\nh\nf\nQ\nQ\nQ\n\n"},
        {"turned letters", threeRuns,
         [](Typist& it) {
             it.change(1, 0, [](TextRun& run) {
                 run.text = "efh";
                 run.pieces = quarterTurn;
                 run.rise = 2 * fixedOne;
             });
         },
         "2 1 0 0 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj (cd) Tj 0 -20 Td  [-834 ] TJ\n ET\nq\nq\nBT\n/F 10 Tf "
         "0 Tc 0 Tw 100 Tz 2 Ts 0 Tr\n1 0 0 1 100 680 Tm\n[<65> ] TJ\n"
         "0 -1 1 0 103.56 682 Tm\n[<66> ] TJ\n0 -1 1 0 106.34 682 Tm\n[<68> ] TJ\nET\nQ\nQ\n\n"},
    };
    for (const Edit& row : rows) {
        SCOPED_TRACE(row.name);
        openPage(row.content);
        Typist edits = typist();
        row.edit(edits);
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_EQ(facts(), row.facts);
        EXPECT_EQ(newContent(), row.saved);
    }
}

} // namespace
} // namespace corvane
