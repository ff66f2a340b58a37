// Pages whose text is edited and saved as patches.
#pragma once

#include "tests/reader/seen_text.h"
#include "tests/writer/patch/patch_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// Edits of the lines of a document, which are numbered from the back.
class Typist {
public:
    explicit Typist(Document& edited) : document(edited), texts(test::SeenTexts(edited).texts) {}

    void move(std::size_t line, double dx, double dy) { transform(line, {.tx = dx, .ty = dy}); }
    void transform(std::size_t line, const RealMatrix& map) {
        document.transformText(texts.at(line), map);
    }
    void remove(std::size_t line) { document.dispose(texts.at(line)); }
    /// Makes the line anew; `change` is given each run and whether it stays.
    void rewrite(std::size_t line, const std::function<bool(TextRun&, std::int32_t)>& change) {
        const Art old = texts.at(line);
        const Art text = document.make(ArtKind::text, Placement::inFront, old);
        document.setTextLine(text, document.textLine(old));
        for (std::int32_t i = 0; i < document.textRunCount(old); ++i) {
            TextRun run = document.textRun(old, i);
            if (change(run, i)) {
                document.addTextRun(text, run);
            }
        }
        document.dispose(old);
        texts[line] = text;
    }
    void change(std::size_t line, std::int32_t run, const std::function<void(TextRun&)>& change) {
        rewrite(line, [&](TextRun& each, std::int32_t number) {
            if (number == run) {
                change(each);
            }
            return true;
        });
    }
    void retype(std::size_t line, std::int32_t run, std::string_view letters) {
        change(line, run, [&](TextRun& each) {
            each.text = letters;
            each.pieces = {};
        });
    }
    void gray(std::size_t line, std::int32_t run) {
        change(line, run, [](TextRun& each) { each.style.fill.component[0] = fixedOne / 2; });
    }
    /// As an editor leaves a line that it wrote anew.
    void unmark(std::size_t line) {
        rewrite(line, [](TextRun& run, std::int32_t) {
            run.source = {};
            return true;
        });
    }
    /// Its runs are one, as where artwork has them as one element, with these letters.
    void join(std::size_t line, std::string_view letters, bool isNumberAlone = false) {
        const Art text = texts.at(line);
        TextRun run = document.textRun(text, 0);
        run.text = letters;
        std::vector<TextPiece> pieces;
        std::size_t length = 0;
        for (std::int32_t i = 0; i < document.textRunCount(text); ++i) {
            const TextRun each = document.textRun(text, i);
            for (TextPiece piece : each.pieces) {
                piece.start += static_cast<std::int32_t>(length);
                pieces.push_back(piece);
            }
            length += each.text.size();
            run.source.end = each.source.end;
        }
        std::erase_if(pieces, [&](const TextPiece& piece) {
            return static_cast<std::size_t>(piece.start) >= letters.size();
        });
        run.pieces = pieces;
        if (isNumberAlone) {
            run.source.start = run.source.end = 0;
        }
        document.setTextRuns(text, {&run, 1});
    }
    void removeRun(std::size_t line, std::int32_t run) {
        rewrite(line, [&](TextRun&, std::int32_t number) { return number != run; });
    }
    void decorate(std::size_t line, std::span<const TextDecoration> lines) {
        change(line, 0, [&](TextRun& run) { run.decorations = lines; });
    }
    /// Text of a font in front of everything else.
    void add(double x, double y, std::string_view letters, Font font) {
        const Art text = document.make(ArtKind::text, Placement::inside,
                                       document.layerArt(document.firstLayer()));
        document.setTextLine(
            text, {.matrix = {fixedOne, 0, 0, fixedOne, fixedFromReal(x), fixedFromReal(y)}});
        TextRun run{.font = font, .size = 12 * fixedOne, .text = letters};
        run.style.fillPaint = 1;
        document.addTextRun(text, run);
    }

    Document& document;
    std::vector<Art> texts;
};

inline std::string letterText(const test::SeenLetter& seen) {
    return std::string(1, seen.letter) + "@" + test::realText(seen.em.tx) + "," +
           test::realText(seen.em.ty) + " " + test::realText(seen.em.a);
}

/// Letters may miss their places by a 64th of a point: of what differs, the first; or nothing.
inline std::string differenceOfLetters(const std::vector<test::SeenLetter>& edited,
                                       const std::vector<test::SeenLetter>& saved) {
    const auto isNear = [](double a, double b) { return std::abs(a - b) <= 1.0 / 64; };
    const auto alike = [&](const test::SeenLetter& a, const test::SeenLetter& b) {
        const auto level = [](const test::SeenLetter& each) {
            return realFromFixed(each.style.fill.component[0]);
        };
        return a.letter == b.letter && isNear(a.em.a, b.em.a) && isNear(a.em.b, b.em.b) &&
               isNear(a.em.c, b.em.c) && isNear(a.em.d, b.em.d) && isNear(a.em.tx, b.em.tx) &&
               isNear(a.em.ty, b.em.ty) && a.style.fillPaint == b.style.fillPaint &&
               a.style.strokePaint == b.style.strokePaint && isNear(level(a), level(b));
    };
    const auto at = std::ranges::mismatch(edited, saved, alike);
    std::string text;
    if (at.in1 != edited.end()) {
        text += "edited: " + letterText(*at.in1);
    }
    if (at.in2 != saved.end()) {
        text += " saved: " + letterText(*at.in2);
    }
    return text;
}

class SentenceFront : public NotingFront {
public:
    void showError(std::int32_t code, std::string_view sentence) override {
        NotingFront::showError(code, sentence);
        latest = sentence;
    }
    std::string latest;
};

class TextPatchTest : public PatchTest {
protected:
    struct Edit {
        const char* name;
        std::string content;
        std::function<void(Typist&)> edit;
        const char* facts; ///< kept, changed, added, removed, moved
        std::string saved; ///< the content; empty: only what is seen counts
    };

    static inline const std::string threeRuns =
        "BT /F 10 Tf 100 700 Td (ab) Tj (cd) Tj 0 -20 Td (ef) Tj ET";
    static inline const std::string columns =
        "BT /F 10 Tf 100 700 Td [(ab) -3000 (cd) -40 (ef) -3000 (gh)] TJ "
        "(no) Tj ET";
    /// The state of text of what is written apart.
    static inline const std::string plain = "0 Tc 0 Tw 100 Tz 0 Ts 0 Tr\n";

    Typist typist() { return Typist(*document_); }

    /// Saves and opens again: letters are where they were edited to, and so are paths. What is
    /// saved twice is as it was.
    void expectTextSaved() {
        const std::vector<test::SeenLetter> letters = test::lettersOf(*document_);
        const std::vector<test::SeenPath> paths = seen();
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        ASSERT_TRUE(saved_.back().isPatched);
        const std::string counted = facts();
        const std::string content = newContent();
        ASSERT_EQ(save(), 0U);
        EXPECT_EQ(newContent(), content);
        EXPECT_EQ(facts(), counted);
        ASSERT_EQ(open(), 0U);
        EXPECT_EQ(differenceOfLetters(letters, test::lettersOf(*document_)), "") << content;
        EXPECT_EQ(differenceOf(paths, seen()), "") << content;
        digest_ = identity_;
        ASSERT_EQ(save(), 0U) << ::testing::PrintToString(front_.taken());
        EXPECT_TRUE(saved_.back().isNothing) << content;
        saved_.pop_back();
    }

    void expectEdits(std::span<const Edit> rows) {
        for (const Edit& row : rows) {
            SCOPED_TRACE(row.name);
            openPage(row.content);
            Typist edits = typist();
            row.edit(edits);
            ASSERT_NO_FATAL_FAILURE(expectTextSaved());
            EXPECT_EQ(facts(), row.facts);
            if (!row.saved.empty()) {
                EXPECT_EQ(newContent(), row.saved);
            }
        }
    }

    void expectRefused(int code, const std::string& reason) {
        SentenceFront front;
        setDialogFront(&front);
        const std::string before = bytes();
        EXPECT_EQ(save(), resultStopped);
        EXPECT_THAT(front.taken(), ::testing::ElementsAre("error " + std::to_string(code)));
        EXPECT_THAT(front.latest, ::testing::HasSubstr(reason));
        EXPECT_EQ(bytes(), before);
        setDialogFront(&front_);
    }
};

} // namespace corvane
