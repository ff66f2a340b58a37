// Text that is edited and saved as patches: what was edited is seen so, the rest is where it was.
#include "tests/writer/patch/text/text_patch_fixture.h"

#include <gmock/gmock.h>

#include <functional>
#include <ranges>

namespace corvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

const std::string next = "BT /F 10 Tf 12 TL 100 700 Td (ab) ' 2 1 (c d) \" (ef) ' T* (gh) Tj ET";

TEST_F(TextPatchTest, Edits) {
    const std::string states =
        "q BT /F 10 Tf 100 700 Td (ab) Tj ET Q q 0 0 612 792 re W n .2 g BT /F 10 Tf 111.12 700 Td "
        "(cd) Tj ET Q q 2 0 0 2 0 0 cm BT /F 5 Tf 60.84 350 Td (ef) Tj ET Q";
    const std::string exponent =
        "BT /F 10 Tf 100 700 Td (ab) Tj /F 7 Tf 11.12 4 Td (c) Tj /F 10 Tf 3.5 -4 Td (d) Tj ET";
    const Edit rows[] = {
        {"a line is moved", threeRuns, [](Typist& it) { it.move(1, 5, 3); }, "2 1 0 0 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj (cd) Tj 0 -20 Td  [-834 ] TJ\n ET\nq\nq\nBT\n/F 10 Tf\n" +
             plain + "1 0 0 1 105 683 Tm\n[(ef) ] TJ\nET\nQ\nQ\n\n"},
        {"a line of two runs is moved", threeRuns, [](Typist& it) { it.move(0, 5, 3); },
         "1 2 0 0 0", ""},
        {"a line is turned and grows", threeRuns,
         [](Typist& it) {
             it.transform(0, {0, 2, -2, 0, 900, 100});
         },
         "1 2 0 0 0", ""},
        {"another colour", threeRuns, [](Typist& it) { it.gray(0, 0); }, "2 1 0 0 0",
         "\nq\nq\n.5 g\nBT\n/F 10 Tf\n" + plain +
             "1 0 0 1 100 700 Tm\n[(ab) ] TJ\nET\nQ\nQ\n"
             "BT /F 10 Tf 100 700 Td  [-1112 ] TJ\n (cd) Tj 0 -20 Td (ef) Tj ET\n"},
        {"a run goes", threeRuns, [](Typist& it) { it.removeRun(0, 1); }, "2 0 0 1 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj  [-1056 ] TJ\n 0 -20 Td (ef) Tj ET\n"},
        {"a line of two runs goes", threeRuns, [](Typist& it) { it.remove(0); }, "1 0 0 2 0",
         "BT /F 10 Tf 100 700 Td  [-1112 ] TJ\n  [-1056 ] TJ\n 0 -20 Td (ef) Tj ET\n"},
        {"other letters", threeRuns, [](Typist& it) { it.retype(1, 0, "he (not) co"); },
         "2 1 0 0 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj (cd) Tj 0 -20 Td  [-834 ] TJ\n ET\nq\nq\nBT\n/F 10 Tf " +
             plain +
             "1 0 0 1 100 680 Tm\n[<686520286E6F742920636F> ] TJ\n"
             "ET\nQ\nQ\n\n"},
        {"longer letters push what follows", threeRuns,
         [](Typist& it) { it.retype(0, 0, "hello"); }, "1 2 0 0 0", ""},
        {"a size of its own", threeRuns,
         [](Typist& it) { it.change(1, 0, [](TextRun& run) { run.size *= 2; }); }, "2 1 0 0 0", ""},
        {"a letter without a meaning stays", "BT /F 10 Tf 100 700 Td (ab\\001) Tj ET",
         [](Typist& it) {
             const std::string typed =
                 "ba" + std::string(it.document.textRun(it.texts[0], 0).text).substr(2);
             it.retype(0, 0, typed);
         },
         "0 1 0 0 0",
         "BT /F 10 Tf 100 700 Td  [-1390 ] TJ\n ET\nq\nq\nBT\n/F 10 Tf " + plain +
             "1 0 0 1 100 700 Tm\n[<626101> ] TJ\nET\nQ\nQ\n\n"},
        {"a column goes", columns, [](Typist& it) { it.remove(1); }, "3 0 0 1 0",
         "BT /F 10 Tf 100 700 Td  [(ab) -3000 -4930 (gh) ] TJ\n (no) Tj ET\n"},
        // Nothing can be painted within an array: the column behind is written apart, too.
        {"a column is moved", columns, [](Typist& it) { it.move(1, 3, -30); }, "2 1 0 0 1", ""},
        {"a column gets other letters", columns, [](Typist& it) { it.retype(1, 0, "no end"); },
         "2 1 0 0 1", ""},
        {"what follows takes the place", columns, [](Typist& it) { it.removeRun(2, 0); },
         "2 1 0 1 0", ""},
        {"a show that begins a line", next, [](Typist& it) { it.remove(0); }, "3 0 0 1 0",
         "BT /F 10 Tf 12 TL 100 700 Td  T* [-1112 ] TJ\n 2 1 (c d) \" (ef) ' T* (gh) Tj ET\n"},
        {"a show that sets spacing, too", next, [](Typist& it) { it.remove(1); }, "3 0 0 1 0",
         "BT /F 10 Tf 12 TL 100 700 Td (ab) '  2 Tw 1 Tc T* [-1834 ] TJ\n (ef) ' T* (gh) Tj ET\n"},
        {"all of the state of text",
         "BT /F 10 Tf 100 700 Td 1 Tc 4 Tw 60 Tz 3 Ts (a b) Tj (c d) Tj [(e f) -9000 (g h)] TJ ET",
         [](Typist& it) {
             it.gray(0, 0);
             it.move(1, 3, 4);
         },
         "2 2 0 0 0", ""},
        {"letters in all of the state of text",
         "BT /F 10 Tf 100 700 Td 1 Tc 3 Ts (ab) Tj (cd) Tj (ef) Tj 100 0 Td (gh) Tj ET",
         [](Typist& it) { it.retype(0, 2, "no"); }, "3 1 0 0 0", ""},
        {"a line of pieces in states of their own is moved", states,
         [](Typist& it) { it.move(0, 5, 3); }, "0 3 0 0 0", ""},
        {"one of them gets another colour", states, [](Typist& it) { it.gray(0, 1); }, "2 1 0 0 0",
         ""},
        {"longer letters in the first", states, [](Typist& it) { it.retype(0, 0, "hello"); },
         "0 3 0 0 0", ""},
        {"one of them goes", states, [](Typist& it) { it.removeRun(0, 1); }, "1 1 0 1 0", ""},
        {"a line with an exponent is turned", exponent,
         [](Typist& it) {
             it.transform(0, {0, 2, -2, 0, 900, 100});
         },
         "0 3 0 0 0", ""},
        {"an exponent gets another colour", exponent, [](Typist& it) { it.gray(0, 1); },
         "2 1 0 0 0", ""},
        {"other letters of an exponent push what follows", exponent,
         [](Typist& it) { it.retype(0, 1, "no"); }, "1 2 0 0 0", ""},
        {"other letters in front of an exponent", exponent,
         [](Typist& it) { it.retype(0, 0, "hello"); }, "0 3 0 0 0", ""},
        {"in a space of its own",
         "q .5 .1 0 -.5 10 600 cm BT /F 20 Tf 100 70 Td (ab) Tj (cd) Tj 0 -20 Td (ef) Tj ET Q 0 0 "
         "9 9 re f",
         [](Typist& it) {
             it.move(0, 5, 3);
             it.retype(1, 0, "no");
         },
         "1 3 0 0 0", ""},
        {"a size below 0", "BT /F -10 Tf 100 700 Td 1 Tc (ab) Tj [(cd) 3000 (ef)] TJ (gh) Tj ET",
         [](Typist& it) {
             it.move(0, 1, 2);
             it.removeRun(1, 1);
         },
         "1 2 0 1 0", ""},
        {"a path in a text object",
         "BT /F 10 Tf 100 700 Td (ab) Tj 0 0 9 9 re f (cd) Tj (ef) Tj 0 -20 Td (gh) Tj ET",
         [](Typist& it) { it.gray(1, 0); }, "4 1 0 0 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj 0 0 9 9 re f  [-1056 ] TJ\n\nET\nq\nq\n.5 g\nBT\n/F 10 "
         "Tf\n" +
             plain +
             "1 0 0 1 111.12 700 Tm\n[(cd) ] TJ\nET\nQ\nQ\n"
             "BT\n1 0 0 1 100 700 Tm\n[-2168 ] TJ\n (ef) Tj 0 -20 Td (gh) Tj ET\n"},
        {"marked content",
         "/P << /MCID 0 >> BDC BT /F 10 Tf 100 700 Td (ab) Tj /Span BMC (cd) Tj EMC (ef) Tj ET EMC "
         "0 0 9 9 re f",
         [](Typist& it) { it.gray(0, 1); }, "3 1 0 0 0",
         "/P << /MCID 0 >> BDC BT /F 10 Tf 100 700 Td (ab) Tj /Span BMC  [-1056 ] TJ\n "
         "EMC\nET\nq\nq\n.5 g\nBT\n/F 10 Tf\n" +
             plain +
             "1 0 0 1 111.12 700 Tm\n[(cd) ] TJ\nET\nQ\nQ\n"
             "BT\n1 0 0 1 100 700 Tm\n[-2168 ] TJ\n (ef) Tj ET EMC 0 0 9 9 re f\n"},
        {"a tag stays around what is written apart",
         "/P <</MCID 0>> BDC BT /F 10 Tf 100 700 Td (ab) Tj ET EMC "
         "/P <</MCID 1>> BDC BT 100 680 Td (cd) Tj ET EMC 0 0 9 9 re f",
         [](Typist& it) { it.gray(0, 0); }, "2 1 0 0 0",
         "/P <</MCID 0>> BDC BT /F 10 Tf 100 700 Td  [-1112 ] TJ\n ET\nq\nq\n.5 g\nBT\n/F 10 Tf\n" +
             plain +
             "1 0 0 1 100 700 Tm\n[(ab) ] TJ\nET\nQ\nQ\n EMC "
             "/P <</MCID 1>> BDC BT 100 680 Td (cd) Tj ET EMC 0 0 9 9 re f\n"},
        {"what text reads as goes with its letters",
         "/P <</MCID 0/ActualText<FEFF0031>/E(x)>>BDC BT /F 10 Tf 100 700 Td (ab) Tj "
         "/Span<</ActualText(ef)>>BDC (cd) Tj EMC ET EMC "
         "/Span <</A <</ActualText (q)>> /Actual#54ext (g\\)h)>> BDC BT 100 680 Td (gh) Tj ET EMC "
         "/Span <</ActualText (on)>> BDC BT 100 660 Td (on) Tj ET EMC",
         [](Typist& it) {
             it.retype(0, 0, "ba");
             it.remove(1);
             it.gray(2, 0);
         },
         "1 2 0 1 0",
         "/P <</MCID 0/E(x)>>BDC\nq\nq\nBT\n/F 10 Tf " + plain +
             "1 0 0 1 100 700 Tm\n[<6261> ] TJ\nET\nQ\nQ\n BT /F 10 Tf 100 700 Td  [-1112 ] TJ\n "
             "/Span<</ActualText(ef)>>BDC (cd) Tj EMC ET EMC /Span <</A <</ActualText (q)>> >> BDC "
             "BT "
             "100 680 Td  [-1112 ] TJ\n ET EMC /Span <</ActualText (on)>> BDC BT 100 660 Td  "
             "[-1112 ] "
             "TJ\n ET\nq\nq\n.5 g\nBT\n/F 10 Tf\n" +
             plain + "1 0 0 1 100 660 Tm\n[(on) ] TJ\nET\nQ\nQ\n EMC\n"},
        {"tags within a text object stay",
         "BT /F 10 Tf 2 Ts 100 700 Td /P BMC (ab) Tj [(cd) 20 (ef)] TJ EMC 12 TL /P BMC (gh) ' EMC "
         "/P BMC T* (no) Tj EMC ET 0 0 9 9 re f",
         [](Typist& it) {
             it.retype(0, 1, "hello");
             it.retype(1, 0, "ab");
             it.move(2, 3, 4);
         },
         "2 3 0 0 0",
         "BT /F 10 Tf 2 Ts 100 700 Td /P BMC (ab) Tj  [] TJ\n/F 10 Tf 0 Tc 0 Tw 100 Tz 2 Ts 0 Tr\n"
         "1 0 0 1 111.12 700 Tm\n[<68656C6C6F> ] TJ\n/F 10 Tf\n0 Tc 0 Tw 100 Tz 2 Ts 0 Tr\n"
         "1 0 0 1 100 700 Tm\n[-2982 ] TJ\n EMC 12 TL /P BMC  T* [] TJ\n"
         "/F 10 Tf 0 Tc 0 Tw 100 Tz 2 Ts 0 Tr\n1 0 0 1 100 688 Tm\n[<6162> ] TJ\n/F 10 Tf\n"
         "0 Tc 0 Tw 100 Tz 2 Ts 0 Tr\n1 0 0 1 100 688 Tm\n[-1112 ] TJ\n EMC /P BMC T*  [] TJ\n"
         "/F 10 Tf\n0 Tc 0 Tw 100 Tz 2 Ts 0 Tr\n1 0 0 1 103 680 Tm\n[(no) ] TJ\n/F 10 Tf\n"
         "0 Tc 0 Tw 100 Tz 2 Ts 0 Tr\n1 0 0 1 100 676 Tm\n[-1112 ] TJ\n EMC ET 0 0 9 9 re f\n"},
        {"what is painted otherwise leaves the tags of others",
         "BT /F 10 Tf 100 700 Td (ab) Tj ET /P BMC BT 100 680 Td (cd) Tj ET EMC",
         [](Typist& it) {
             it.gray(0, 0);
             it.gray(1, 0);
         },
         "0 2 0 0 0",
         "BT /F 10 Tf 100 700 Td  [-1112 ] TJ\n ET\nq\nq\n.5 g\nBT\n/F 10 Tf\n" + plain +
             "1 0 0 1 100 700 Tm\n[(ab) ] TJ\nET\nQ\nQ\n /P BMC BT 100 680 Td  [-1056 ] TJ\n "
             "ET\nq\nq\n.5 g\nBT\n/F 10 Tf\n" +
             plain + "1 0 0 1 100 680 Tm\n[(cd) ] TJ\nET\nQ\nQ\n EMC\n"},
        {"text outside stays", "BT /F 10 Tf 9 9 Td (ab) Tj ET 1 0 0 1 100 600 Tm (cd) Tj (ef) Tj",
         [](Typist& it) { it.retype(0, 0, "no"); }, "2 1 0 0 0", ""},
        {"new text", threeRuns,
         [](Typist& it) { it.add(50, 50, "hello (no)", it.document.textRun(it.texts[0], 0).font); },
         "3 0 1 0 0", ""},
        {"new text whose stroke is stretched as its letters are",
         "BT /F 10 Tf 100 700 Td (ab) Tj ET 4 0 0 1 0 0 cm BT 1 Tr 3 w [6 3] 1 d 25 680 Td (ef) Tj "
         "ET",
         [](Typist& it) {
             it.change(1, 0, [](TextRun& run) {
                 run.source = {};
                 run.text = "fe"; // other letters than the page's, or it would be known by them
             });
         },
         "1 0 1 1 0",
         "BT /F 10 Tf 100 700 Td (ab) Tj ET 4 0 0 1 0 0 cm BT 1 Tr 3 w [6 3] 1 d 25 680 Td  [-834 "
         "] TJ\n ET\nq\n.25 0 0 1 0 0 cm\nq\n1 0 0 .25 0 0 cm\n0 G\n12 w\n[ 24 12 ] 4  d\n0 J\n0 "
         "j\n10 M\n0 i\nBT\n/F 10 Tf 0 Tc 0 Tw 100 Tz 0 Ts 1 Tr\n4 0 0 4 100 2720 Tm\n[<6665> ] "
         "TJ\nET\nQ\nQ\n\n"},
        {"stroked and unseen",
         "BT /F 10 Tf 1 Tr 100 700 Td (ab) Tj 0 -20 Td 3 Tr (cd) Tj 0 -20 Td 0 Tr (ef) Tj ET",
         [](Typist& it) {
             it.move(0, 1, 1);
             it.retype(1, 0, "no");
         },
         "1 2 0 0 0", ""},
        {"a copy", threeRuns,
         [](Typist& it) {
             const Art twin = it.document.duplicate(it.texts[0], Placement::inFront, it.texts[1]);
             it.document.transformText(twin, {.tx = 50, .ty = 50});
         },
         "3 0 2 0 0", ""},
        {"a font of an outer state",
         "/F 10 Tf 2 Tc q /F 7 Tf 1 Tc BT 0 20 Td (no) Tj ET Q BT 100 700 Td (ab) Tj (cd) Tj ET",
         [](Typist& it) { it.move(1, 7, 7); }, "1 2 0 0 0", ""},
        {"letters of a stretched line",
         "BT /F 10 Tf 60 Tz 2 Tc 100 700 Td (ab) Tj (cd) Tj (ef) Tj 0 -20 Td (gh) Tj ET",
         [](Typist& it) { it.retype(0, 1, "on (no)"); }, "2 2 0 0 0", ""},
        {"a text object that does not end",
         "BT /F 10 Tf 100 700 Td (ab) Tj 0 -20 Td (cd) Tj 0 -20 Td (ef) Tj",
         [](Typist& it) { it.move(2, 3, 3); }, "2 1 0 0 0", ""},
        {"text outside of text objects", "/F 10 Tf (ab) Tj 0 -20 Td (cd) Tj BT 9 9 Td (ef) Tj ET",
         [](Typist& it) { it.move(1, 3, 30); }, "2 1 0 0 0", ""},
        {"columns of a vertical font",
         "BT /V 10 Tf 100 700 Td 50 Tz [<0061> -500 <0062> 2000 <0063>] TJ <0064> Tj 20 0 Td "
         "<00650066> Tj ET",
         [](Typist& it) {
             it.move(0, 3, 4);
             it.remove(1);
         },
         "3 1 0 1 0", ""},
        {"letters of columns", "BT 1 Tc /V 10 Tf 100 700 Td <00610062> Tj 20 0 Td <0063> Tj ET",
         [](Typist& it) { it.retype(0, 0, "bad"); }, "1 1 0 0 0",
         "\nq\nq\nBT\n/V 10 Tf " + plain +
             "1 0 0 1 100 700 Tm\n[<0062> 100 <0061> 100 <0064> ] TJ\nET\nQ\nQ\n"
             "BT 1 Tc /V 10 Tf 100 700 Td  [1600 ] TJ\n 20 0 Td <0063> Tj ET\n"},
        {"text that clips as well", "q BT /F 10 Tf 100 700 Td 4 Tr [(ab) -3000 (cd)] TJ ET Q",
         [](Typist& it) { it.move(0, 3, 4); }, "1 1 0 0 0",
         "q\nq\nq\nBT\n/F 10 Tf\n" + plain +
             "1 0 0 1 103 704 Tm\n[(ab) -3000 ] TJ\nET\nQ\nQ\n"
             " BT /F 10 Tf 100 700 Td 4 Tr  [] TJ 7 Tr [(ab) -3000 ] TJ 4 Tr [(cd) ] TJ\n ET Q\n"},
        {"a font of a state", "/F 9 Tf 3 w /B gs 2 w BT 100 700 Td (ab) Tj 0 -20 Td (cd) Tj ET",
         [](Typist& it) { it.move(0, 3, 4); }, "1 1 0 0 0",
         "/F 9 Tf 3 w /B gs 2 w\nq\nq\n0 J\n0 j\n10 M\n[ ] 0 d\n/B gs\n/B gs\n2 w\nBT\n" + plain +
             "1 0 0 1 103 704 Tm\n[(ab) ] TJ\nET\nQ\nQ\n"
             " BT 100 700 Td  [-1112 ] TJ\n 0 -20 Td (cd) Tj ET\n"},
        {"comments and strings",
         "BT /F 10 Tf 100 700 Td [(a\\)b)% ] (x\n -3000 <63 64>-3000(e(f))]TJ ET",
         [](Typist& it) { it.remove(1); }, "2 0 0 1 0",
         "BT /F 10 Tf 100 700 Td  [(a\\)b) -3000 -4056 (e(f)) ] TJ\n ET\n"},
    };
    expectEdits(rows);
}

TEST_F(TextPatchTest, RunsThatArtworkHasAsOne) {
    const std::string kernedRuns = "BT /F 10 Tf 100 700 Td [(a) -50 (b)] TJ [-30 (c) 40 (d)] TJ "
                                   "(ef) Tj [(g) 60 (h)] TJ ET";
    const Edit rows[] = {
        {"as they were",
         threeRuns,
         [](Typist& it) {
             it.join(0, "abcd");
             it.move(1, 5, 0);
         },
         "2 1 0 0 0",
         {}},
        {"as they were, known by their number",
         threeRuns,
         [](Typist& it) {
             it.join(0, "abcd", true);
             it.move(1, 5, 0);
         },
         "2 1 0 0 0",
         {}},
        {"the second is typed over",
         threeRuns,
         [](Typist& it) { it.join(0, "abxd"); },
         "2 1 0 0 0",
         {}},
        {"the first goes", threeRuns, [](Typist& it) { it.join(0, "cd"); }, "1 1 0 1 0", {}},
        {"letters come between",
         threeRuns,
         [](Typist& it) { it.join(0, "abnncd"); },
         "1 2 0 0 0",
         {}},
        {"all is typed over", threeRuns, [](Typist& it) { it.join(0, "xy"); }, "1 1 0 1 0", {}},
        {"kerned letters as they were",
         kernedRuns,
         [](Typist& it) { it.join(0, "abcdefgh"); },
         "4 0 0 0 0",
         {}},
        {"one of the kerned letters is typed over",
         kernedRuns,
         [](Typist& it) { it.join(0, "abcdxfgh"); },
         "2 2 0 0 0",
         {}},
    };
    expectEdits(rows);
}

/// What the text of one tag no longer reads as may be what another text reads as.
TEST_F(TextPatchTest, ListsOfTheResourcesThatSayWhatTextReadsAs) {
    const std::string page = "/Span /R#31 BDC BT /F 10 Tf 100 700 Td (ab) Tj ET EMC\n"
                             "/Span /R1 BDC BT 100 680 Td (cd) Tj ET EMC\n"
                             "/Span /R1 BDC BT 100 660 Td (ef) Tj ET EMC\n"
                             "/Span /R2 BDC BT 100 640 Td (gh) Tj ET EMC\n"
                             "/Span /R3 BDC BT 100 620 Td (no) Tj ET EMC\n"
                             "/Span /R4 BDC BT 100 600 Td (on) Tj ET EMC";
    openFile(withResources(
                 PdfBuilder::onePage(
                     page, "/Resources << /Font << /F 20 0 R >> /Properties << /R1 30 0 R /R2 << "
                           "/MCID 7 /ActualText (x) /E 31 0 R >> /R3 << /MCID 8 >> >> >>"))
                 .object(30, "<< /MCID 5 /ActualText (both) /Alt (all) >>")
                 .object(31, "(whole)")
                 .bytes());
    Typist edits = typist();
    for (const std::size_t line : {0, 2, 3, 4, 5}) {
        edits.retype(line, 0, "he");
    }
    ASSERT_NO_FATAL_FAILURE(expectTextSaved());
    const std::string content = newContent();
    const auto listOf = [&](std::string_view place) {
        const std::size_t tag = content.rfind("/Span /", content.find(place)) + 7;
        return content.substr(tag, content.find(' ', tag) - tag);
    };
    EXPECT_THAT(content, HasSubstr("/Span /R1 BDC BT 100 680 Td (cd) Tj ET EMC"));
    EXPECT_EQ(listOf("100 700 Td"), "MC1"); // one copy for both
    EXPECT_EQ(listOf("100 660 Td"), "MC1");
    EXPECT_EQ(listOf("100 640 Td"), "MC2");
    EXPECT_EQ(listOf("100 620 Td"), "R3"); // says nothing of it
    EXPECT_EQ(listOf("100 600 Td"), "R4"); // leads nowhere
    const auto copyOf = [&](const std::string& name) {
        const std::string body = object("3");
        const std::size_t at = body.find("/" + name + " ") + name.size() + 2;
        return object(body.substr(at, body.find(' ', at) - at));
    };
    EXPECT_THAT(copyOf("MC1"), HasSubstr("/MCID 5"));
    EXPECT_THAT(copyOf("MC1"), HasSubstr("/Alt (all)"));
    EXPECT_THAT(copyOf("MC2"), HasSubstr("/E 31 0 R"));
    for (const char* const name : {"MC1", "MC2"}) {
        EXPECT_EQ(copyOf(name).find("ActualText"), std::string::npos) << copyOf(name);
    }
    EXPECT_THAT(object("30"), HasSubstr("/ActualText (both)"));
}

TEST_F(TextPatchTest, ATextObjectIsDividedForWhatGoesInBetween) {
    openPage("2 w BT /F 10 Tf 100 700 Td 1 Tc (ab) Tj (cd) Tj 12 TL T* (ef) Tj ET");
    Artist artist(*document_);
    const Typist edits = typist();
    Art square = artist.add(90, 695, 100, 9);
    document_->reorder(square, Placement::behind, edits.texts[1]);
    ASSERT_NO_FATAL_FAILURE(expectTextSaved());
    EXPECT_EQ(facts(), "3 0 1 0 0");
    EXPECT_EQ(newContent(), "2 w BT /F 10 Tf 100 700 Td 1 Tc (ab) Tj (cd) Tj 12 TL T*\nET\nq\n"
                            ".75 g\n0 i\n90 695 m\n190 695 l\n190 704 l\n90 704 l\nh\nf\nQ\n"
                            "BT\n1 0 0 1 100 688 Tm\n (ef) Tj ET\n");
    openPage("BT /F 10 Tf 100 700 Td (ab) Tj 0 0 9 9 re f (cd) Tj ET");
    square = Artist(*document_).at(0);
    document_->reorder(square, Placement::behind, typist().texts[0]);
    ASSERT_NO_FATAL_FAILURE(expectTextSaved());
}

TEST_F(TextPatchTest, NamesOfFontsAreEscaped) {
    openFile(withResources(PdfBuilder::onePage("BT /F#20#28b 10 Tf 100 700 Td (ab) Tj (cd) Tj ET",
                                               "/Resources << /Font << /F#20#28b 20 0 R >> >>"))
                 .bytes());
    typist().retype(0, 1, "no");
    ASSERT_NO_FATAL_FAILURE(expectTextSaved());
    EXPECT_EQ(facts(), "1 1 0 0 0");
    EXPECT_THAT(newContent(), HasSubstr("/F#20#28b 10 Tf 0 Tc"));
}

TEST_F(TextPatchTest, AFontThatOnlyAStateNames) {
    openFile(withResources(PdfBuilder::onePage(
                               "/B gs BT 100 700 Td (ab) Tj 0 -20 Td (cd) Tj ET",
                               "/Resources << /ExtGState << /B << /Font [20 0 R 10] >> >> >>"))
                 .bytes());
    typist().retype(1, 0, "no");
    ASSERT_NO_FATAL_FAILURE(expectTextSaved());
    EXPECT_THAT(newContent(), HasSubstr("/F1 10 Tf 0 Tc"));
}

TEST_F(TextPatchTest, ALetterThatNoFontHasRefusesTheSave) {
    openPage(threeRuns);
    typist().retype(1, 0, "ab\xEE\x9D\xB7");
    expectRefused(31, "\xEE\x9D\xB7");
}

TEST_F(TextPatchTest, ALineThatIsMissingCountsOnce) {
    openPage("BT /F 10 Tf 100 700 Td (a) Tj (b) Tj (c) Tj (d) Tj 0 -20 Td (ef) Tj 0 -20 Td (gh) Tj "
             "ET");
    typist().remove(0);
    ASSERT_NO_FATAL_FAILURE(expectTextSaved());
    EXPECT_EQ(facts(), "2 0 0 4 0");
    openPage(threeRuns);
    Typist edits = typist();
    edits.remove(0);
    edits.remove(1);
    expectRefused(30, "");
}

} // namespace
} // namespace corvane
