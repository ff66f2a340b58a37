// Style operators: the values that need care, what the shadow saves, colours of every kind.
#include "tests/writer/walk_fixture.h"

#include <gmock/gmock.h>

#include <functional>

namespace corvane {
namespace {

using ::testing::HasSubstr;

/// What each path here is made of.
constexpr std::string_view pathLines = "0 0 m\n10 0 l\n";

class StyleTest : public WalkTest {
protected:
    /// The operators before the second of two paths in this artwork, which differs from the first
    /// by what `change` does to its style.
    std::string changed(const std::function<void(PathStyle&)>& change) {
        return changed([](PathStyle&) {}, change);
    }
    std::string changed(const std::function<void(PathStyle&)>& first,
                        const std::function<void(PathStyle&)>& second) {
        document_.emplace();
        scope_.reset();
        scope_.emplace(document());
        for (const auto& change : {first, second}) {
            PathStyle style;
            style.strokePaint = 1;
            change(style);
            taps->styles[addLine(layerArt())] = style;
        }
        const std::string text = write();
        const std::size_t start = text.find(pathLines) + pathLines.size() + 2;
        return text.substr(start, text.rfind(pathLines) - start);
    }
    Exception refused(const std::function<void(PathStyle&)>& change) {
        return raisedBy([&] { changed(change); });
    }
};

TEST_F(StyleTest, OnlyWhatDiffersIsWritten) {
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        EXPECT_EQ(changed([](PathStyle&) {}), "");
        EXPECT_EQ(changed([](PathStyle& style) { style.lineWidth = points(2); }), "2 w\n");
        EXPECT_EQ(changed([](PathStyle& style) { style.cap = 2; }), "2 J\n");
        EXPECT_EQ(changed([](PathStyle& style) { style.join = 1; }), "1 j\n");
        EXPECT_EQ(changed([](PathStyle& style) { style.miterLimit = points(4); }), "4 M\n");
        EXPECT_EQ(changed([](PathStyle& style) { style.miterLimit = points(.5); }), "1 M\n");
        EXPECT_EQ(changed([](PathStyle& style) { style.miterLimit = points(1) - 1; },
                          [](PathStyle& style) { style.miterLimit = points(-3); }),
                  "");
        // Nothing of a stroke where there is none.
        EXPECT_EQ(changed([](PathStyle& style) {
                      style.strokePaint = 0;
                      style.lineWidth = points(3);
                      style.cap = 7;
                      style.dashCount = -1;
                  }),
                  "");
        EXPECT_EQ(changed([](PathStyle& style) {
                      style.fillPaint = 1;
                      style.fill.component[0] = 0;
                      style.stroke.component[0] = 0;
                      style.lineWidth = points(3);
                      style.dashCount = 1;
                      style.dash[0] = points(5);
                      style.cap = style.join = 1;
                      style.miterLimit = points(2);
                      style.resolution = points(300);
                  }),
                  "1 g\n1 G\n3 w\n[ 5 ] 0  d\n1 J\n1 j\n2 M\n8 i\n");
    }
}

TEST_F(StyleTest, Dashes) {
    const auto dashed = [](std::int16_t count, Fixed phase) {
        return [=](PathStyle& style) {
            style.dashCount = count;
            style.dashPhase = phase;
            for (int i = 0; i < 6; ++i) {
                style.dash[i] = points(i + .5);
            }
        };
    };
    selectRules(Profile::extended);
    EXPECT_EQ(changed(dashed(6, points(.25))), "[ .5 1.5 2.5 3.5 4.5 5.5 ] .25  d\n");
    EXPECT_EQ(changed(dashed(2, 0), dashed(1, 0)), "[ .5 ] 0  d\n");
    EXPECT_EQ(changed(dashed(2, 0), dashed(2, points(1))), "[ .5 1.5 ] 1  d\n");
    EXPECT_EQ(changed(dashed(0, 0), [](PathStyle& style) { style.dash[0] = 1; }), "")
        << "lengths that do not count";
    EXPECT_EQ(refused(dashed(7, 0)), Exception::type);
    EXPECT_EQ(refused(dashed(-1, 0)), Exception::type);
    selectRules(Profile::original);
    EXPECT_EQ(changed(dashed(2, points(-.25))), "[ 0.5000 1.5000 ] -0.2500  d\n");
    EXPECT_EQ(refused(dashed(7, 0)), Exception::type);
}

TEST_F(StyleTest, CapsAndJoinsOfNoKind) {
    for (const std::int32_t value : {-1, 3, INT32_MAX}) {
        EXPECT_EQ(refused([&](PathStyle& style) { style.cap = value; }), Exception::type);
        EXPECT_EQ(refused([&](PathStyle& style) { style.join = value; }), Exception::type);
    }
}

TEST_F(StyleTest, Flatness) {
    struct Row {
        Fixed resolution;
        const char* original;
        const char* extended;
    };
    const Row rows[] = {
        {points(300), "8 i\n", "8 i\n"},         {points(800) - 1, "3 i\n", "3 i\n"},
        {points(900), "0 i\n", "0 i\n"},         {points(100), "24 i\n", "24 i\n"},
        {51297996, "3.0661 i\n", "3.06613 i\n"}, // the quotient does not lead back
        {points(1), "2400 i\n", "100 i\n"},      {0, "32767.9999 i\n", "100 i\n"},
        {points(-5), "-480 i\n", ".00002 i\n"},
    };
    for (const Row& row : rows) {
        const auto change = [&](PathStyle& style) { style.resolution = row.resolution; };
        selectRules(Profile::original);
        EXPECT_EQ(changed(change), row.original) << row.resolution;
        selectRules(Profile::extended);
        EXPECT_EQ(changed(change), row.extended) << row.resolution;
    }
}

TEST_F(StyleTest, NotesWithoutControlBytes) {
    taps->note = [](Note note, std::uint8_t* text) {
        const std::string_view notes[] = {"", "first\n1 0 0 rg", "\r\n"};
        const std::string_view chosen = notes[static_cast<std::uint32_t>(note) - 1];
        text[0] = static_cast<std::uint8_t>(chosen.size());
        std::ranges::copy(chosen, text + 1);
        return HostError::none;
    };
    const auto noted = [](std::uint32_t note) {
        return [=](PathStyle& style) { style.note = Note{note}; };
    };
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        const std::string empty = profile == Profile::original ? "%%Note: \n" : "";
        EXPECT_EQ(changed(noted(2)), "%%Note: first1 0 0 rg\n");
        EXPECT_EQ(changed(noted(2), noted(2)), "");
        EXPECT_EQ(changed(noted(2), noted(3)), empty);
        EXPECT_EQ(changed(noted(2), noted(0)), empty);
        EXPECT_EQ(changed(noted(1), noted(3)), "") << "both are empty";
    }
}

TEST_F(StyleTest, NothingIsKnownAfterALeftState) {
    const Art group = addGroup(layerArt(), true);
    addLine(group);
    addLine(group);
    style(addLine(layerArt()), [](PathStyle& style) { style.strokePaint = 1; });
    for (const Profile profile : {Profile::original, Profile::extended}) {
        EXPECT_THAT(writeIn(profile), HasSubstr("Q\n0 g\n0 G\n1 w\n[ ] 0  d\n0 J\n0 j\n10 M\n0 i"));
    }
    EXPECT_EQ(write(), write()) << "each content begins anew";
}

struct ColourRow {
    const char* name;
    Colour colour;
    const char* original; ///< numbers and operator
    const char* extended;
};

TEST_F(StyleTest, ColoursOfEveryKind) {
    taps->custom = [](PaintSource source, CustomColour& custom) {
        EXPECT_EQ(source, PaintSource{9});
        custom = {.name = {}, .process = {points(1), points(.5), points(.25), 0}};
    };
    const Colour light{.kind = ColourKind::process,
                       .component = {points(.5), points(.25), 0, points(.25)},
                       .origin = ColourOrigin::fromRgb};
    const ColourRow rows[] = {
        {"gray", {.component = {points(.25)}}, "0.7500 g", ".75 g"},
        {"gray beyond white", {.component = {points(-.5)}}, "1.5000 g", "1.5 g"},
        {"the darkest gray", {.component = {INT32_MIN}}, "32767.9999 g", "32767.99998 g"},
        {"process",
         {.kind = ColourKind::process, .component = {points(.1), 0, points(1), points(.125)}},
         "0.1000 0 1 0.1250 k",
         ".1 0 1 .125 k"},
        {"from red, green and blue", light, "0.5000 0.2500 0 0.2500 k", ".25 .5 .75 rg"},
        {"custom, weakened by a half",
         {.kind = ColourKind::custom, .component = {points(.5)}, .source = PaintSource{9}},
         "0.5000 0.2500 0.1250 0 k",
         ".5 .25 .125 0 k"},
    };
    for (const ColourRow& row : rows) {
        for (const bool extended : {false, true}) {
            SCOPED_TRACE(row.name);
            selectRules(extended ? Profile::extended : Profile::original);
            const std::string wanted = extended ? row.extended : row.original;
            EXPECT_EQ(changed([&](PathStyle& style) {
                          style.fillPaint = 1;
                          style.fill = row.colour;
                      }),
                      wanted + "\n");
            EXPECT_EQ(
                changed([&](PathStyle& style) { style.fillPaint = 1, style.fill = row.colour; },
                        [&](PathStyle& style) { style.fillPaint = 1, style.fill = row.colour; }),
                "");
            std::string upper = wanted;
            std::ranges::transform(upper, upper.begin(),
                                   [](char c) { return c >= 'a' && c <= 'z' ? c - 32 : c; });
            EXPECT_EQ(changed([&](PathStyle& style) { style.stroke = row.colour; }), upper + "\n");
        }
    }
    // A stroke with what the host draws is a middle gray.
    for (const ColourKind kind : {ColourKind::pattern, ColourKind::gradient}) {
        EXPECT_EQ(changed([&](PathStyle& style) { style.stroke.kind = kind; }), ".5 G\n");
    }
    const auto unknown = [](PathStyle& style) { style.stroke.kind = ColourKind{6}; };
    EXPECT_EQ(refused(unknown), Exception::type);
}

TEST_F(StyleTest, ColoursThatDifferOnlyInTheirOrigin) {
    const auto origin = [](ColourOrigin value) {
        return [=](PathStyle& style) {
            style.stroke = {.kind = ColourKind::process, .component = {}, .origin = value};
        };
    };
    selectRules(Profile::extended);
    EXPECT_EQ(changed(origin(ColourOrigin::given), origin(ColourOrigin::fromRgb)), "1 1 1 RG\n");
    selectRules(Profile::original);
    EXPECT_EQ(changed(origin(ColourOrigin::given), origin(ColourOrigin::fromRgb)), "");
}

} // namespace
} // namespace corvane
