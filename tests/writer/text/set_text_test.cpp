// Text in fonts of the machine: retyped words and new lines, saved and read by others.
#include "tests/reader/seen_text.h"
#include "tests/support/drawing.h"
#include "tests/support/process.h"
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <numbers>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class SetTextTest : public PatchTest {
protected:
    void SetUp() override {
        PatchTest::SetUp();
        extension_.fontAdded = [](void* context, const AddedFont& font) {
            static_cast<SetTextTest*>(context)->fonts_.push_back(std::string(font.name) + "|" +
                                                                 std::string(font.letters) + "|" +
                                                                 std::string(font.wanted));
        };
    }

    Art art(std::size_t line) const { return test::SeenTexts(*document_).texts.at(line); }

    void retype(std::size_t line, std::string_view letters, Fixed spacing = 0) {
        const Art old = art(line);
        TextRun run = document_->textRun(old, 0);
        run.text = letters;
        run.pieces = {};
        run.spacing = spacing;
        const Art made = document_->make(ArtKind::text, Placement::inFront, old);
        document_->setTextLine(made, document_->textLine(old));
        document_->addTextRun(made, run);
        document_->dispose(old);
    }

    static TextLine at(double x, double y) {
        return {.matrix = {fixedOne, 0, 0, fixedOne, fixedFromReal(x), fixedFromReal(y)},
                .order = TextOrder::leftToRight};
    }

    void add(const TextLine& line, std::string_view letters, const FontFacts& font,
             Fixed spacing = 0) {
        const Art text = document_->make(ArtKind::text, Placement::inside,
                                         document_->layerArt(document_->firstLayer()));
        document_->setTextLine(text, line);
        TextRun run{.font = document_->addFont(font),
                    .size = 12 * fixedOne,
                    .spacing = spacing,
                    .text = letters};
        run.style.fillPaint = 1;
        document_->addTextRun(text, run);
    }

    static std::string output(std::vector<std::string> words) {
        words.insert(words.begin(), "/usr/bin/env");
        test::Process process;
        process.words = std::move(words);
        const auto outcome = test::run(process);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return outcome.output;
    }

    /// The words of the file as another reader finds them, a line each; without the marks of
    /// direction that it adds.
    std::string words() const {
        std::string text = output({"pdftotext", "-layout", path("in.pdf"), "-"});
        for (const std::string mark : {"\xE2\x80\xAA", "\xE2\x80\xAB", "\xE2\x80\xAC", "\f"}) {
            for (auto at = text.find(mark); at != text.npos; at = text.find(mark)) {
                text.erase(at, mark.size());
            }
        }
        return text;
    }

    /// Saves; others find the file in order, and it is saved again as it is.
    void expectSaved() {
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        const std::string content = newContent();
        const std::string once = bytes();
        if (test::isInstalled("qpdf")) {
            output({"qpdf", "--check", path("in.pdf")});
        }
        const std::vector<std::string> told = fonts_;
        ASSERT_EQ(open(), 0U);
        digest_ = identity_;
        ASSERT_EQ(save(), 0U);
        EXPECT_TRUE(saved_.back().isNothing) << content;
        EXPECT_EQ(bytes(), once);
        EXPECT_EQ(fonts_, told);
    }

    /// In what was appended.
    std::size_t count(const std::string& what) const {
        const std::string file = bytes().substr(file_.size());
        std::size_t found = 0;
        for (auto at = file.find(what); at != file.npos; at = file.find(what, at + 1)) {
            ++found;
        }
        return found;
    }

    std::vector<std::string> fonts_; ///< that the host was told of
};

const std::string twoLines = "BT /F 10 Tf 100 700 Td (ab) Tj (cd) Tj 0 -20 Td (ef gh) Tj ET";

TEST_F(SetTextTest, RetypedWords) {
    if (!test::isInstalled("pdftotext")) {
        GTEST_SKIP() << "needs pdftotext";
    }
    struct Row {
        const char* letters;
        const char* font; ///< that is told
        std::vector<std::string> content;
    };
    const Row rows[] = {
        // The word that the font shows stays in it.
        {"gh sch\xC3\xB6n ab",
         "NimbusSans-Regular|chns\xC3\xB6|Helvetica",
         {"/F 10 Tf ", "[<676820> ] TJ", "/F1 10 Tf ", "/F 10 Tf ", "[<6162> ] TJ"}},
        {"\xC3\xB6", "NimbusSans-Regular|\xC3\xB6|Helvetica", {"/F1 10 Tf "}},
        {"\xC3\xA4 much longer than it was: office",
         "NimbusSans-Regular|\xC3\xA4|Helvetica",
         {"/F1 10 Tf ", "/F 10 Tf "}},
        {"ab \xD0\xA9\xD0\xB8", "NimbusSans-Regular|\xD0\xA9\xD0\xB8|Helvetica", {"/F1 10 Tf "}},
        {"ab \xD9\x84\xD8\xA7", "DejaVu Sans|\xD8\xA7\xD9\x84|Helvetica", {"/F1 10 Tf "}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.letters);
        fonts_.clear();
        openPage(twoLines);
        retype(1, row.letters);
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_THAT(fonts_, ElementsAre(row.font));
        expectInOrder(row.content);
        EXPECT_THAT(front_.taken(), ElementsAre("write 1010 in in.pdf"));
        EXPECT_EQ(count("/Subtype /Type0"), 1U);
        // In a line of a page letters stand as they are shown.
        const bool isArabic = std::string_view(row.letters).ends_with("\xA7");
        EXPECT_THAT(words(), HasSubstr(isArabic ? "\xD8\xA7\xD9\x84" : row.letters));
        EXPECT_THAT(words(), HasSubstr("abcd"));
    }
}

TEST_F(SetTextTest, WhatFollowsARetypedWordMovesAlong) {
    openPage(twoLines);
    retype(0, "\xC3\xB6");
    // The second run of the line.
    const Art line = art(0);
    TextRun next = document_->textRun(line, 0);
    next.text = "cd";
    next.source = {};
    document_->addTextRun(line, next);
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    // "o" with a mark is as wide as "o".
    expectInOrder({"1 0 0 1 100 700 Tm", "1 0 0 1 105.56 700 Tm", "[<6364> ] TJ"});
}

TEST_F(SetTextTest, NewLinesInManyScripts) {
    if (!test::isInstalled("pdftotext")) {
        GTEST_SKIP() << "needs pdftotext";
    }
    struct Row {
        const char* letters;
        const char* family;
        TextOrder order;
    };
    const std::string hello = "\xD9\x85\xD8\xB1\xD8\xAD\xD8\xA8\xD8\xA7"; // marhaba
    const std::string shalom = "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D";
    const std::string chinese = "\xE4\xB8\xAD\xE6\x96\x87";
    const std::string mixed = "Latin " + chinese + " and " + hello + " end";
    const auto left = TextOrder::leftToRight;
    const auto right = TextOrder::rightToLeft;
    const Row rows[] = {
        {"office AVATAR", "DejaVu Sans", left},
        {hello.c_str(), "DejaVu Sans", right},
        {hello.c_str(), "DejaVu Sans", left},
        {shalom.c_str(), "DejaVu Sans", right},
        {chinese.c_str(), "Droid Sans Fallback", left},
        {mixed.c_str(), "DejaVu Sans", left},
        // One glyph is a part of several letters.
        {"\xE1\xBA\xA5 \xC3\xA2 x\xC3\xA2 \xE1\xBA\xAD", "DejaVu Sans Mono", left},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.letters);
        openPage(twoLines);
        add(at(300, 300), row.letters, {.family = row.family});
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        // Blanks at the borders of directions are the reader's.
        std::string found = words();
        std::erase(found, ' ');
        std::string wanted = row.letters;
        std::erase(wanted, ' ');
        EXPECT_THAT(found, HasSubstr(wanted));
        EXPECT_EQ(count("/Subtype /Type0"), row.letters == mixed ? 2U : 1U);
    }
}

/// What nobody sees is no reason for another font, or for none.
TEST_F(SetTextTest, BlanksThatAFontLacks) {
    for (const std::string blank :
         {"\xC2\xA0", "\xE1\x9A\x80", "\xE2\x80\x89", "\xE2\x80\x8B", "\xE2\x80\x8F", "\xC2\xAD"}) {
        SCOPED_TRACE(::testing::PrintToString(blank));
        fonts_.clear();
        openPage(twoLines);
        retype(1, "he" + blank + "ab");
        add(at(300, 300), "x" + blank + "y" + blank, {.family = "DejaVu Sans Mono"});
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        ASSERT_EQ(fonts_.size(), 1U);
        EXPECT_THAT(fonts_[0], ::testing::StartsWith("DejaVu Sans Mono|xy"));
        EXPECT_THAT(newContent(), Not(HasSubstr("<0000")));
    }
}

TEST_F(SetTextTest, Columns) {
    openPage("BT /V 10 Tf 100 700 Td <00610062> Tj ET");
    retype(0, "b\xE4\xB8\xAD");
    TextLine line = at(300, 300);
    line.isVertical = true;
    add(line, "\xE4\xB8\xAD\xE3\x80\x82", {.family = "Droid Sans Fallback"});
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_EQ(count("/Encoding /Identity-V"), 1U);
    expectInOrder({"1 0 0 1 100 700 Tm", "1 0 0 1 300 300 Tm"});
    for (const std::size_t column : {0U, 1U}) {
        SCOPED_TRACE(column);
        EXPECT_TRUE(document_->textLine(art(column)).isVertical);
        for (const TextPiece& piece : document_->textRun(art(column), 0).pieces) {
            EXPECT_NEAR(realFromFixed(piece.shift), 0, 0.01);
        }
    }
    if (test::isInstalled("pdftotext")) {
        EXPECT_THAT(words(), HasSubstr("\xE4\xB8\xAD"));
    }
}

/// They tell words apart, though nobody sees them.
TEST_F(SetTextTest, JoinersStay) {
    openPage(twoLines);
    const std::string joiner = "\xE2\x80\x8C";
    add(at(300, 300), "\xD9\x85\xDB\x8C" + joiner + "\xD8\xB1\xD9\x88", {.family = "DejaVu Sans"});
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_THAT(std::string(document_->textRun(art(2), 0).text), HasSubstr(joiner));
}

/// Letters that are set apart have a glyph each, where the font has one.
TEST_F(SetTextTest, LigaturesOfThePage) {
    openFile(PdfBuilder::onePage("BT /F 10 Tf 100 700 Td (f1i) Tj 0 -20 Td (f) Tj ET",
                                 "/Resources << /Font << /F 20 0 R >> >>")
                 .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding << "
                             "/Differences [49 /fi] >> /ToUnicode 21 0 R >>")
                 .stream(21, "beginbfchar <31> <00660069> endbfchar")
                 .bytes());
    retype(1, "fi");
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    EXPECT_THAT(newContent(), HasSubstr("[<31> ] TJ"));
    retype(1, "fi", fixedOne);
    ASSERT_EQ(save(), 0U);
    EXPECT_THAT(newContent(), HasSubstr("[<6669> ] TJ"));
}

/// What a line in the font says of its place when it is opened again.
TEST_F(SetTextTest, AnchorsAndLengths) {
    struct Row {
        const char* name;
        std::function<void(TextLine&)> change;
        double start;  ///< where it begins, in lengths of the line from its origin
        double length; ///< of the line, in the same
    };
    const Row rows[] = {
        {"start", [](TextLine&) {}, 0, 1},
        {"middle", [](TextLine& line) { line.anchor = TextAnchor::middle; }, -0.5, 1},
        {"end", [](TextLine& line) { line.anchor = TextAnchor::end; }, -1, 1},
        {"right to left", [](TextLine& line) { line.order = TextOrder::rightToLeft; }, 0, 1},
        {"right to left, end",
         [](TextLine& line) {
             line.order = TextOrder::rightToLeft;
             line.anchor = TextAnchor::end;
         },
         -1, 1},
        {"room", [](TextLine& line) { line.length = line.length / 10 * 11; }, 0, 1.1},
        {"room before the end",
         [](TextLine& line) {
             line.length = line.length / 10 * 11;
             line.anchor = TextAnchor::end;
         },
         -1.1, 1.1},
        {"stretched",
         [](TextLine& line) {
             line.length = line.length / 10 * 11;
             line.stretchesLetters = true;
         },
         0, 1.1},
    };
    // Five letters of a fixed width of 0.6 em.
    constexpr double whole = 5 * 0.6 * 12;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        openPage(twoLines);
        TextLine line = at(300, 300);
        line.length = fixedFromReal(whole);
        row.change(line);
        add(line, "nnnnn", {.family = "Courier", .generic = GenericFamily::monospace});
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        const Art saved = art(2);
        const Matrix matrix = document_->textLine(saved).matrix;
        EXPECT_NEAR(realFromFixed(matrix.tx), 300 + row.start * whole, 0.01);
        // Where the last letter begins, as pieces say it.
        const TextRun run = document_->textRun(saved, 0);
        double last = 4 * 0.6;
        for (const TextPiece& piece : run.pieces) {
            last += realFromFixed(piece.shift);
        }
        last = last * realFromFixed(run.size) * realFromFixed(matrix.a);
        const double wanted =
            line.stretchesLetters ? 4.0 / 5 * row.length * whole : (row.length - 1.0 / 5) * whole;
        EXPECT_NEAR(last, wanted, 0.05);
    }
}

TEST_F(SetTextTest, LettersOnAPath) {
    openPage(twoLines);
    // A quarter of a circle with the radius 50 around 300 300, from the right to the top, and 30
    // points straight to the left.
    const auto point = [](double x, double y) { return Point{fixedFromReal(x), fixedFromReal(y)}; };
    const double arm = 50 * 0.5522847;
    const std::vector<Segment> path = {{point(350, 300), point(350, 300), point(350, 300 + arm), 1},
                                       {point(300, 350), point(300 + arm, 350), point(300, 350), 1},
                                       {point(270, 350), point(270, 350), point(270, 350), 1}};
    TextLine line = at(0, 0);
    line.path = path;
    const double quarter = 25 * std::numbers::pi;
    line.pathStart = fixedFromReal(quarter / 2 - 3.6);
    // The first letter is in the middle of the arc; 14 more are 7.2 points wide each, and the last
    // ones find no room.
    add(line, "nnnnnnnnnnnnnnn", {.family = "Courier", .generic = GenericFamily::monospace});
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    const std::vector<Art> texts = test::SeenTexts(*document_).texts;
    const Matrix first = document_->textLine(texts.at(2)).matrix;
    const double turn = std::atan2(realFromFixed(first.b), realFromFixed(first.a));
    EXPECT_NEAR(turn, 3 * std::numbers::pi / 4, 0.02);
    // Half a letter before the middle of the arc, on the tangent.
    const double side = 50 * std::numbers::sqrt2 / 2;
    EXPECT_NEAR(realFromFixed(first.tx), 300 + side + 3.6 * std::numbers::sqrt2 / 2, 0.1);
    EXPECT_NEAR(realFromFixed(first.ty), 300 + side - 3.6 * std::numbers::sqrt2 / 2, 0.1);
    std::size_t letters = 0;
    for (std::size_t i = 2; i < texts.size(); ++i) {
        for (std::int32_t run = 0; run < document_->textRunCount(texts[i]); ++run) {
            letters += document_->textRun(texts[i], run).text.size();
        }
    }
    EXPECT_EQ(letters, static_cast<std::size_t>((quarter / 2 + 30) / 7.2) + 1);
}

TEST_F(SetTextTest, OneFontServesAllRunsAndBytesAreTheSame) {
    std::string former;
    for (int i = 0; i < 2; ++i) {
        openPage(twoLines);
        retype(1, "\xC3\xB6");
        add(at(200, 200), "\xC3\xBC", {.family = "Helvetica"});
        add(at(200, 220), "x", {.family = "Nimbus Sans"});
        add(at(200, 240), "bold", {.family = "Nimbus Sans", .weight = 700});
        ASSERT_NO_FATAL_FAILURE(expectSaved());
        EXPECT_EQ(count("/Subtype /Type0"), 2U);
        EXPECT_EQ(count("/FontFile3"), 2U);
        EXPECT_TRUE(former.empty() || former == bytes());
        former = bytes();
    }
    // What the person asks for is told without a warning of it.
    EXPECT_THAT(fonts_, ::testing::Contains("NimbusSans-Bold|bdlo|"));
    EXPECT_THAT(fonts_, Not(::testing::Contains("NimbusSans-Bold|bdlo|Nimbus Sans")));
}

/// Spacing goes behind letters, not between a letter and its marks.
TEST_F(SetTextTest, SpacingAndMarks) {
    openPage(twoLines);
    add(at(200, 200), "x\xCC\xA3n", {.family = "DejaVu Sans"}, 2 * fixedOne);
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    expectInOrder({"2 Tc 0 Tw", "1 0 0 1 200 200 Tm", "] TJ"});
    const Art saved = art(2);
    EXPECT_EQ(document_->textRun(saved, 0).spacing, 2 * fixedOne);
}

/// Another page stands there now: it is drawn anew, also its text.
TEST_F(SetTextTest, APageIsDrawnAnew) {
    openPage(twoLines + " 4 0 0 1 0 0 cm BT 1 Tr 3 w 25 600 Td (ab) Tj ET");
    add(at(200, 200), "gr\xC3\xBC\xC3\x9F", {.family = "DejaVu Sans"});
    digest_ = 1;
    extension_.overwrites = true;
    ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
    EXPECT_FALSE(saved_.back().isPatched);
    EXPECT_EQ(count("/Subtype /Type0"), 2U);
    EXPECT_THAT(newContent(), HasSubstr("1 0 0 .25 0 0 cm\n0 G\n12 w\n"));
    if (test::isInstalled("pdftotext")) {
        EXPECT_THAT(words(), HasSubstr("gr\xC3\xBC\xC3\x9F"));
        EXPECT_THAT(words(), HasSubstr("abcd"));
    }
    ASSERT_EQ(open(), 0U);
    EXPECT_EQ(test::SeenTexts(*document_).texts.size(), 4U);
    EXPECT_THAT(fonts_, ElementsAre("NimbusSans-Regular|abcdefgh|Helvetica",
                                    "DejaVu Sans|gr\xC3\x9F\xC3\xBC|"));
}

} // namespace
} // namespace corvane
