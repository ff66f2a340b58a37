// Artwork of the real host, written as the content of a page.
#pragma once

#include "runtime/fixed.h"
#include "tests/reader/art_text.h"
#include "tests/reader/reader_fixture.h"
#include "tests/support/keeper_filter.h"
#include "tests/writer/host_taps.h"
#include "writer/art/works.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// To nearest.
constexpr Fixed points(double value) {
    return fixedFromReal(value);
}

class WalkTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        taps_.emplace(table_->ref().get());
    }
    void TearDown() override {
        taps_.reset();
        ReaderTest::TearDown();
    }

    /// The content that the artwork becomes; raises what writing raises.
    std::string write(const RealMatrix& placement = {}) {
        test::KeeperFilter keeper;
        DocumentCache cache;
        cache.output = &keeper;
        const std::int32_t length = documentWorks(cache, placement);
        EXPECT_EQ(length, std::ssize(keeper.text));
        return keeper.text;
    }
    std::string writeIn(Profile profile) {
        selectRules(profile);
        return write();
    }
    Exception writing() {
        return raisedBy([&] { write(); });
    }

    Art layerArt() { return document().layerArt(document().firstLayer()); }
    /// New art in front of all that `container` holds.
    Art add(ArtKind kind, Art container) {
        return document().make(kind, Placement::inside, container);
    }
    Art addGroup(Art container, bool clipped = false) {
        const Art group = add(ArtKind::group, container);
        document().setClipped(group, clipped);
        return group;
    }
    /// A path with straight sides.
    Art addPath(Art container, std::initializer_list<Point> anchors, bool closed = false) {
        std::vector<Segment> segments;
        for (const Point& anchor : anchors) {
            segments.push_back({anchor, anchor, anchor, 0});
        }
        return addCurve(container, segments, closed);
    }
    Art addCurve(Art container, const std::vector<Segment>& segments, bool closed) {
        const Art path = add(ArtKind::path, container);
        document().setSegmentCount(path, static_cast<std::int32_t>(segments.size()));
        document().writeSegments(path, 0, segments);
        document().setClosed(path, closed);
        return path;
    }
    /// A line to 10,0, filled with black.
    Art addLine(Art container) {
        const Art path = addPath(container, {{}, {points(10), 0}});
        style(path, [](PathStyle& style) { style.fillPaint = 1; });
        return path;
    }
    template <class Change>
    void style(Art path, Change change) {
        PathStyle style = document().style(path);
        change(style);
        document().setStyle(path, style);
    }
    /// Fills with a paint of the host that the document does not hold.
    void paint(Art path, ColourKind kind, std::uint32_t source = 1) {
        PathStyle style = document().style(path);
        style.fillPaint = 1;
        style.fill = {.kind = kind, .component = {}, .source = PaintSource{source}};
        taps->styles[path] = style;
    }

    std::optional<HostTaps> taps_;
};

} // namespace corvane
