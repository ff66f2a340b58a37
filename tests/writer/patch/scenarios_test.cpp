// What editors do, saved as patches: the page opens as the edited artwork, and all else is kept.
#include "tests/writer/patch/patch_fixture.h"

#include <functional>
#include <gmock/gmock.h>

namespace corvane {
namespace {

struct Scenario {
    const char* name;
    const char* content;
    std::function<void(Artist&)> edit;
    const char* facts; ///< kept, changed, added, removed, moved
    std::vector<std::string> kept;
};

const char* const three =
    "1 0 0 rg 10 10 20 20 re f\nBT /F 12 Tf 5 5 Td (one) Tj ET\n0 1 0 rg 3 w\n"
    "20 20 20 20 re B\n/X Do ?? % note\n0 0 1 rg 30 30 20 20 re f\n(two) ' ";
const std::vector<std::string> besideThree = {"BT /F 12 Tf 5 5 Td (one) Tj ET\n0 1 0 rg 3 w\n",
                                              "\n/X Do ?? % note\n0 0 1 rg", "(two) '"};
const char* const clipped =
    "q 1 0 0 rg 0 0 50 50 re f q 10 10 m 90 10 l 50 90 l W n\n"
    "0 0 100 100 re f 20 20 20 20 re S\nQ Q 0 0 1 rg 60 60 30 30 re f 1 1 2 2 re f";
const std::vector<std::string> besideClipped = {"q 1 0 0 rg", "q", "Q Q 0 0 1 rg"};

const Scenario scenarios[] = {
    {"raise", three, [](Artist& a) { a.raise(a.at(0), a.at(2)); }, "2 0 0 0 1", besideThree},
    {"lower", three, [](Artist& a) { a.lower(a.at(2), a.at(0)); }, "2 0 0 0 1", besideThree},
    {"raise one", three, [](Artist& a) { a.raise(a.at(0), a.at(1)); }, "2 0 0 0 1", besideThree},
    {"group", three,
     [](Artist& a) {
         a.group({a.at(0), a.at(1)});
     },
     "2 0 0 0 1", besideThree}, // over the text between them
    {"recolour", three, [](Artist& a) { a.fill(a.at(1), .5); }, "2 1 0 0 0", besideThree},
    {"move", three, [](Artist& a) { a.move(a.at(1), 3.5, -2); }, "2 1 0 0 0", besideThree},
    {"remove", three, [](Artist& a) { a.remove(a.at(1)); }, "2 0 0 1 0", besideThree},
    {"add behind all", three, [](Artist& a) { a.lower(a.add(1, 2, 3, 4), a.at(0)); }, "3 0 1 0 0",
     besideThree},
    {"add between", three, [](Artist& a) { a.add(1, 2, 3, 4, a.at(0)); }, "3 0 1 0 0", besideThree},
    {"add in front", three, [](Artist& a) { a.add(1, 2, 3, 4); }, "3 0 1 0 0", besideThree},
    {"duplicate", three, [](Artist& a) { a.copy(a.at(1)); }, "3 0 1 0 0", besideThree},
    {"duplicate and move", three, [](Artist& a) { a.move(a.copy(a.at(0)), 40, 0); }, "3 0 1 0 0",
     besideThree},
    {"raise and recolour", three,
     [](Artist& a) {
         a.fill(a.at(0), .5);
         a.raise(a.at(0), a.at(2));
     },
     "2 1 0 0 0", besideThree},
    {"reverse", three,
     [](Artist& a) {
         a.raise(a.at(0), a.at(2));
         a.raise(a.at(1), a.at(2));
     },
     "1 0 0 0 2", besideThree},
    {"new clip around one", three, [](Artist& a) { a.clip({a.at(1)}, a.add(25, 25, 5, 5)); },
     "2 0 0 0 1", besideThree},
    {"new clip around two", three,
     [](Artist& a) {
         a.clip({a.at(0), a.at(1)}, a.add(15, 15, 10, 10));
     },
     "1 0 0 0 2", besideThree},
    {"into a clip", clipped,
     [](Artist& a) { a.document.reorder(a.at(3), Placement::behind, a.clips[0]); }, "4 0 0 0 1",
     besideClipped},
    {"into a clip, behind", clipped, [](Artist& a) { a.lower(a.at(0), a.at(1)); }, "4 0 0 0 1",
     besideClipped},
    {"out of a clip", clipped, [](Artist& a) { a.raise(a.at(2), a.at(3)); }, "4 0 0 0 1",
     besideClipped},
    {"new in a clip", clipped, [](Artist& a) { a.add(1, 2, 33, 44, a.at(1)); }, "5 0 1 0 0",
     besideClipped},
    {"change in a clip", clipped, [](Artist& a) { a.move(a.at(1), 1, 2); }, "4 1 0 0 0",
     besideClipped},
    {"clip goes with all in it", clipped,
     [](Artist& a) { a.remove(a.document.parent(a.clips[0])); }, "3 0 0 2 0", besideClipped},
    {"release", clipped, [](Artist& a) { a.release(a.document.parent(a.clips[0])); }, "5 1 0 0 0",
     besideClipped},
    {"clip points", clipped, [](Artist& a) { a.move(a.clips[0], 5, 5); }, "5 1 0 0 0",
     besideClipped},
    {"clip in a clip", clipped,
     [](Artist& a) {
         a.clip({a.at(1), a.at(2)}, a.add(25, 25, 35, 15));
     },
     "3 0 0 0 2", besideClipped},
    {"page is one clip",
     "10 10 m 90 10 l 50 90 l W n 0 0 40 40 re f 9 0 0 9 0 0 cm 1 1 3 3 re f",
     [](Artist& a) {
         a.raise(a.at(0), a.at(1));
         a.add(1, 1, 70, 70);
     },
     "1 0 1 0 1",
     {"n", " 9 0 0 9 0 0 cm"}},
    {"page is one clip, out of it",
     "10 10 m 90 10 l 50 90 l W n 0 0 40 40 re f 5 5 30 30 re f",
     [](Artist& a) { a.raise(a.add(1, 1, 70, 70), a.document.parent(a.clips[0])); },
     "2 0 1 0 0",
     {"n"}},
    {"surplus Q",
     "10 10 m 90 10 l 50 90 l W n Q 0 0 40 40 re f Q",
     [](Artist& a) { a.raise(a.add(1, 1, 70, 70), a.document.parent(a.clips[0])); },
     "1 0 1 0 0",
     {}},
    {"missing Q",
     "q 3 0 0 3 0 0 cm q 10 10 m 90 10 l 50 90 l W n 0 0 40 40 re f (end) Tj",
     [](Artist& a) { a.raise(a.add(1, 1, 70, 70), a.document.parent(a.clips[0])); },
     "1 0 1 0 0",
     {"q 3 0 0 3 0 0 cm q ", "(end) Tj"}},
    {"ends in a path",
     "0 0 40 40 re f 5 5 m 9 9 l",
     [](Artist& a) { a.add(1, 1, 70, 70); },
     "1 0 1 0 0",
     {" 5 5 m 9 9 l"}},
    {"ends in text",
     "0 0 40 40 re f /F 9 Tf BT (end) Tj",
     [](Artist& a) { a.add(1, 1, 70, 70); },
     "1 0 1 0 0",
     {"/F 9 Tf BT (end) Tj"}},
    {"ends in marked content",
     "0 0 40 40 re f /OC /L BDC (end) Tj",
     [](Artist& a) { a.copy(a.at(0), 1, 1); },
     "1 0 1 0 0",
     {"/OC /L BDC (end) Tj"}},
    {"beside text",
     "BT /F 9 Tf (a) Tj ET 0 0 40 40 re f BT (b) Tj ET 1 1 2 2 re f BT (c) Tj ET",
     [](Artist& a) {
         a.add(2, 2, 9, 9, a.at(0));
         a.fill(a.at(0), .5);
         a.remove(a.at(1));
     },
     "0 1 1 1 0",
     {"BT /F 9 Tf (a) Tj ET ", " BT (b) Tj ET ", " BT (c) Tj ET"}},
    {"path in text, removed",
     "1 1 2 2 re f BT /F 9 Tf (a) Tj 0 0 40 40 re f (b) Tj ET",
     [](Artist& a) { a.remove(a.at(1)); },
     "1 0 0 1 0",
     {"BT /F 9 Tf (a) Tj ", " (b) Tj ET"}},
    {"path in text, changed",
     "1 1 2 2 re f BT /F 9 Tf (a) Tj 0 0 40 40 re f (b) Tj ET",
     [](Artist& a) { a.fill(a.at(1), .5); },
     "1 1 0 0 0",
     {"BT /F 9 Tf (a) Tj ", " (b) Tj ET"}},
    {"after text in a clip of text",
     "q BT 7 Tr /F 9 Tf (a) Tj ET 0 0 40 40 re f 9 9 3 3 re f Q 1 1 2 2 re f",
     [](Artist& a) {
         a.fill(a.at(0), .5);
         a.raise(a.at(2), a.add(5, 5, 5, 5));
     },
     "2 1 1 0 0",
     {"q BT 7 Tr /F 9 Tf (a) Tj ET ", " Q"}},
    {"hidden layer",
     "/OC /L BDC 0 0 40 40 re f EMC 9 9 3 3 re f",
     [](Artist& a) { a.add(5, 5, 5, 5, a.at(0)); },
     "2 0 1 0 0",
     {"/OC /L BDC ", " EMC"}},
    {"hidden, raised",
     "/OC /L BDC 0 0 40 40 re f EMC 9 9 3 3 re f 5 5 5 5 re f",
     [](Artist& a) { a.raise(a.document.parent(a.at(0)), a.at(2)); },
     "2 0 0 0 1",
     {"/OC /L BDC", "EMC", "/OC /MC1 BDC", "re \nf", "EMC"}},
    {"in front of what is hidden to the end",
     "/OC /L BDC 0 0 40 40 re f (end) Tj",
     [](Artist& a) { a.add(5, 5, 5, 5); },
     "1 0 1 0 0",
     {"/OC /L BDC 0 0 40 40 re f (end) Tj", "EMC", "f"}},
    {"copy of what is transparent",
     "/Half gs 0 0 40 40 re f /Full gs 9 9 3 3 re f",
     [](Artist& a) { a.raise(a.copy(a.at(0)), a.at(1)); },
     "2 0 1 0 0",
     {"/Half gs ", "/Full gs ", "/Half gs", "re \nf"}},
    {"beside what is transparent",
     "/Half gs 0 0 40 40 re f 9 9 3 3 re f",
     [](Artist& a) { a.add(5, 5, 5, 5, a.at(0)); },
     "2 0 1 0 0",
     {"/Half gs ", "/GS1 gs"}},
    {"stroke around a pattern",
     "/Pattern cs /P scn 3 w 0 0 50 50 re B",
     [](Artist& a) { a.style(a.at(0), [](PathStyle& s) { s.lineWidth *= 2; }); },
     "0 1 0 0 0",
     {"/Pattern cs /P scn 3 w ", "0 0 50 50 re ", "B"}},
    {"clip that paints, paint gone",
     "0 0 40 40 re W f 10 10 99 9 re f",
     [](Artist& a) { a.remove(a.at(0)); },
     "1 0 0 1 0",
     {}},
    {"clip that paints, recoloured",
     "0 0 40 40 re W* S 10 10 99 9 re f",
     [](Artist& a) { a.style(a.at(0), [](PathStyle& s) { s.lineWidth *= 3; }); },
     "1 1 0 0 0",
     {}},
    {"clip that paints, raised",
     "0 0 40 40 re W* B 10 10 99 9 re f",
     [](Artist& a) { a.raise(a.at(0), a.document.parent(a.clips[0])); },
     "1 0 0 0 1",
     {}},
    {"clip that paints, clip changed",
     "0 0 40 40 re W f 10 10 99 9 re f",
     [](Artist& a) { a.move(a.clips[0], 5, 5); },
     "2 1 0 0 0",
     {}},
    {"clip that paints, released",
     "0 0 40 40 re W f 10 10 99 9 re f",
     [](Artist& a) { a.release(a.document.parent(a.clips[0])); },
     "2 1 0 0 0",
     {}},
    {"flipped CTM",
     "q .24 0 0 -.24 10 800 cm 3 w 100 100 m 700 900 900 100 1300 2222 c S Q",
     [](Artist& a) { a.move(a.at(0), 0.7, 11.3); },
     "0 1 0 0 0",
     {"q .24 0 0 -.24 10 800 cm 3 w "}},
    {"state that comes later",
     "0 0 9 9 re B 1 0 0 rg 0 1 0 RG 5 w [3 2] 1 d 1 J 1 j 4 M 20 20 9 9 re B",
     [](Artist& a) { a.raise(a.at(0), a.at(1)); },
     "1 0 0 0 1",
     {}},
    {"state that comes later, copied",
     "0 0 9 9 re B 1 0 0 rg 5 w 20 20 9 9 re B 3 3 3 3 re f",
     [](Artist& a) { a.raise(a.copy(a.at(0)), a.at(1)); },
     "3 0 1 0 0",
     {}},
    {"copies in front of what is new",
     "0 0 9 9 re B 2 2 2 2 re f",
     [](Artist& a) {
         const Art twin = a.copy(a.at(0));
         const Art made = a.add(1, 1, 5, 5, a.at(0));
         a.style(made, [](PathStyle& s) {
             s.strokePaint = 1;
             s.lineWidth *= 3;
         });
         a.raise(twin, made);
     },
     "2 0 2 0 0",
     {}},
    {"transparent under a matrix that flattens",
     "/Half gs q 1 0 0 0 9 9 cm 0 0 9 9 re S Q",
     [](Artist& a) { a.move(a.at(0), 5, 5); },
     "0 1 0 0 0",
     {"/Half gs q 1 0 0 0 9 9 cm ", "q\n/Half gs\n0 G\n"}},
    {"operators within a path that goes",
     "5 5 9 9 re 1 w 2 J f 0 0 9 9 re B",
     [](Artist& a) { a.remove(a.at(0)); },
     "1 0 0 1 0",
     {"1 w", " ", "2 J"}},
    {"line under an uneven scale, moved",
     "q 9 0 0 .5 0 0 cm 2 w [3 1] 0 d 1 40 m 9 99 l S Q",
     [](Artist& a) { a.move(a.at(0), 3, 4); },
     "0 1 0 0 0",
     {"q 9 0 0 .5 0 0 cm 2 w [3 1] 0 d \nq\n1.3333333 48 m\n9.3333333 107 l\nS\nQ\n Q"}},
    {"line under a skew, wider",
     "q 1 0 .5 1 0 0 cm 2 w 1 40 m 9 99 l S Q",
     [](Artist& a) { a.style(a.at(0), [](PathStyle& s) { s.lineWidth *= 2; }); },
     "0 1 0 0 0",
     {"q 1 0 .5 1 0 0 cm 2 w \nq\n4 w\n1 40 m 9 99 l \nS\nQ\n Q"}},
    {"line that gets another pen",
     "q 2 0 0 1 0 0 cm .5 w [3 1] 0 d 1 40 m 9 99 l S 0 0 m 1 1 l S Q",
     [](Artist& a) { a.style(a.at(0), [](PathStyle& s) {
                         s.pen = {.5, 0, 1};
                     }); },
     "1 1 0 0 0",
     {"d \nq\n.25 0 0 1 0 0 cm\n1 w\n[ 6 2 ] 0 d\n4 40 m\n36 99 l\nS\nQ\n 0 0 m"}},
    {"line that gets a round pen",
     "q 4 0 0 1 0 0 cm 1 w 1 40 m 9 99 l S Q",
     [](Artist& a) { a.style(a.at(0), [](PathStyle& s) { s.pen = {}; }); },
     "0 1 0 0 0",
     {"q\n.25 0 0 1 0 0 cm\n4 w\n"}},
    {"fill under an uneven scale that gets an outline",
     "q 4 0 0 1 0 0 cm 1 w 1 40 m 9 99 l 9 4 l f Q",
     [](Artist& a) {
         a.style(a.at(0), [](PathStyle& s) {
             s.strokePaint = 1;
             s.pen = {};
         });
     },
     "0 1 0 0 0",
     {"q\n.25 0 0 1 0 0 cm\n"}},
    {"line with a pen, copied to the front",
     "q 1 .3 0 2 5 5 cm 1 w 1 40 m 9 99 l B Q 0 0 9 9 re f",
     [](Artist& a) { a.raise(a.copy(a.at(0), 7, 7), a.at(1)); },
     "2 0 1 0 0",
     {"0 0 9 9 re f", "1 w\n1 .3 0 2 5 5 cm\n8 "}},
    {"new line with a pen",
     "0 0 9 9 re f",
     [](Artist& a) {
         a.style(a.add(5, 5, 50, 50), [](PathStyle& s) {
             s.strokePaint = 1;
             s.lineWidth *= 6;
             s.pen = {.68, .24, .82};
         });
     },
     "1 0 1 0 0",
     {"0 0 9 9 re f", ".68 .24 .24 .82 0 0 cm", "6 w\n", "5.8 4.4 m\n", "B\nQ\n"}},
    {"clip that ends within a path",
     "q 5 5 30 30 re W n 9 9 9 9 re f 0 0 m 90 0 l Q 90 90 l f",
     [](Artist& a) { a.fill(a.at(0), .5); },
     "1 1 0 0 0",
     {"q 5 5 30 30 re W n ", " 0 0 m 90 0 l Q 90 90 l f"}},
    {"state that came before",
     "1 0 0 rg 5 w [3 2] 1 d 20 20 9 9 re B 0 g 1 w [] 0 d 0 0 9 9 re B",
     [](Artist& a) { a.lower(a.at(1), a.at(0)); },
     "1 0 0 0 1",
     {}},
};

class PatchScenarioTest : public PatchTest, public ::testing::WithParamInterface<Scenario> {};

TEST_P(PatchScenarioTest, IsSaved) {
    const Scenario& scenario = GetParam();
    openPage(scenario.content);
    Artist artist(*document_);
    ASSERT_FALSE(artist.objects.empty());
    scenario.edit(artist);
    ASSERT_NO_FATAL_FAILURE(expectSaved());
    saved_.back().kept -= artist.texts; // no scenario edits text
    EXPECT_EQ(facts(), scenario.facts);
    expectInOrder(scenario.kept);
}

void PrintTo(const Scenario& scenario, std::ostream* text) {
    *text << scenario.content;
}

std::string nameOf(const ::testing::TestParamInfo<Scenario>& scenario) {
    std::string name = scenario.param.name;
    std::erase_if(name, [](char c) { return c == ','; });
    std::ranges::replace(name, ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Edits, PatchScenarioTest, ::testing::ValuesIn(scenarios), nameOf);

} // namespace
} // namespace corvane
