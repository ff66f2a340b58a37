// Text that clips what comes behind its text object.
#include "tests/reader/extension_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

/// Art from the back to the front: paths are "p", letters those of all runs of a line, with "*"
/// where they clip; clips stand in front of what they clip.
std::string structure(const Document& document, Art container) {
    std::string text;
    const Art clip = document.clipped(container) ? document.firstChild(container) : Art::null;
    const auto add = [&](Art art) {
        text += text.empty() ? "" : " ";
        if (document.kind(art) == ArtKind::text) {
            for (std::int32_t run = 0; run < document.textRunCount(art); ++run) {
                const TextRun letters = document.textRun(art, run);
                text += std::string(run == 0 ? "" : "+") + std::string(letters.text) +
                        (letters.style.clip != 0 ? "*" : "");
            }
        } else if (document.kind(art) == ArtKind::group) {
            const bool clips = document.clipped(art);
            text += (clips ? "{" : "[") + structure(document, art) + (clips ? "}" : "]");
        } else {
            text += document.style(art).clip != 0 ? "c" : "p";
        }
    };
    if (clip != Art::null) {
        add(clip);
    }
    for (Art art = document.lastChild(container); art != Art::null;
         art = document.previousSibling(art)) {
        if (art != clip) {
            add(art);
        }
    }
    return text;
}

class ClipTextTest : public ExtensionTest {
protected:
    std::string drawn(const std::string& content) {
        omissions_.clear();
        draw(PdfBuilder::onePage(content,
                                 "/Resources << /Font << /F 20 0 R /T 21 0 R >> /XObject << /A 22 "
                                 "0 R >> /Shading << /S 23 0 R >> >>")
                 .object(20, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>")
                 .object(21, "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [.1 0 "
                             "0 .1 0 0] /CharProcs << /a 24 0 R >> /Encoding << /Differences [97 "
                             "/a] >> /FirstChar 97 /LastChar 97 /Widths [10] >>")
                 .stream(22, "/F 9 Tf BT 7 Tr (ef) Tj ET 0 0 9 9 re f",
                         "/Type /XObject /Subtype /Form /BBox [0 0 99 99]")
                 .object(23,
                         "<< /ShadingType 2 /ColorSpace /DeviceGray /Coords [0 0 9 9] /Function "
                         "<< /FunctionType 2 /Domain [0 1] /N 1 >> >>")
                 .stream(24, "10 0 d0 0 0 9 9 re f")
                 .bytes());
        return structure(document(), document().layerArt(document().firstLayer()));
    }
};

TEST_F(ClipTextTest, WhatFollowsUpToTheEndOfTheState) {
    struct Row {
        const char* name;
        std::string content;
        std::string drawn;
        std::int32_t omitted = 0;
    };
    const std::string square = " 0 0 9 9 re f ";
    const Row rows[] = {
        {"unpainted", "q BT /F 9 Tf 7 Tr (ab) Tj ET" + square + "Q" + square, "{ab* p} p"},
        {"painted as well", "BT /F 9 Tf 4 Tr (ab) Tj 6 Tr (cd) Tj ET" + square, "ab+cd {abcd* p}"},
        {"some of a text object", "BT /F 9 Tf (ab) Tj 7 Tr (cd) Tj 3 Tr (ef) Tj ET" + square,
         "ab ef {cd* p}"},
        {"runs that look alike are one",
         "BT /F 9 Tf 7 Tr (ab) Tj (cd) Tj /F 7 Tf (e) Tj [-500 (f) 90 (g)] TJ ET" + square,
         "{abcd*+e fg* p}"},
        {"lines", "BT /F 9 Tf 7 Tr (ab) Tj 0 -20 Td (cd) Tj ET" + square, "{[ab* cd*] p}"},
        {"nothing behind it", "BT /F 9 Tf 7 Tr (ab) Tj ET", ""},
        {"text objects within one another's clips",
         "BT /F 9 Tf 7 Tr (ab) Tj ET" + square + "BT (cd) Tj ET" + square, "{ab* p {cd* p}}"},
        {"within a path's clip", "q 0 0 9 9 re W n BT /F 9 Tf 7 Tr (ab) Tj ET" + square + "Q",
         "{c {ab* p}}"},
        {"text within it", "BT /F 9 Tf 7 Tr (ab) Tj ET BT 0 Tr (cd) Tj ET", "{ab* cd}"},
        {"no end and a new beginning", "BT /F 9 Tf 7 Tr (ab) Tj BT 0 -20 Td (cd) Tj ET" + square,
         "{[ab* cd*] p}"},
        {"a path that was begun before", "BT /F 9 Tf 7 Tr (ab) Tj 0 0 m 9 0 l ET 9 9 l f",
         "{ab* p}"},
        {"in a form", "/A Do" + square, "{c {ef* p}} p"},
        {"of a shading, how far is not known", "q BT /F 9 Tf 7 Tr (ab) Tj ET /S sh Q", "{ab* p}"},
        // What shows no outlines clips nothing.
        {"nothing shown", "BT /F 9 Tf 7 Tr ET" + square, "p"},
        {"blanks", "BT /F 9 Tf 7 Tr (  ) Tj ET" + square, "p"},
        {"no size", "BT /F 0 Tf 7 Tr (ab) Tj ET" + square, "p"},
        {"invisible text", "BT /F 9 Tf 3 Tr (ab) Tj ET" + square, "ab p"},
        {"glyphs of procedures", "BT /T 9 Tf 4 Tr (a) Tj ET" + square, "[p] p"},
        // A part that cannot be had would hide too much.
        {"no font", "BT /F 9 Tf 7 Tr (ab) Tj /None 9 Tf (cd) Tj ET" + square, "p", 1},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(drawn(row.content), row.drawn) << row.name;
        EXPECT_EQ(omitted(Omission::text), row.omitted) << row.name;
    }
}

} // namespace
} // namespace corvane
