// Segments of many paths in one pool, against vectors; memory; styles.
#include "tests/app/artwork/host_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace corvane {
namespace {

Segment line(Fixed x, Fixed y) {
    return {{x, y}, {x, y}, {x, y}, 0};
}

class PathsTest : public testing::Test {
protected:
    Art newPath() { return host_.make(ArtKind::path, Placement::inside, root_); }

    void grow(Art path, const Segment& segment) {
        const std::int32_t count = host_.document.segments(path).size();
        ASSERT_EQ(host_(slot::setPathSegmentCount, path, count + 1), HostError::none);
        ASSERT_EQ(host_(slot::setPathSegments, path, count, 1, &segment), HostError::none);
    }

    std::vector<Segment> all(Art path) const {
        std::vector<Segment> segments;
        for (const Segment& segment : host_.document.segments(path)) {
            segments.push_back(segment);
        }
        return segments;
    }

    HostTable host_;
    Art root_ = host_.document.layerArt(host_.document.firstLayer());
};

/// Growing, shrinking, curving, copying and disposing in any order, with runs long enough to leave
/// their places, cross chunks and be moved together again.
TEST_F(PathsTest, holdWhatVectorsHold) {
    struct Entry {
        Art art;
        std::vector<Segment> segments;
    };
    std::vector<Entry> entries;
    std::mt19937 random(11);
    const auto number = [&](int below) {
        return static_cast<int>(random() % static_cast<unsigned>(below));
    };
    const auto anySegment = [&](bool curved) {
        Segment segment = line(number(1000), number(1000));
        if (curved) {
            const int which = number(3);
            (which == 0 ? segment.in.x : segment.out.y) += 1;
            segment.corner = which == 2;
        }
        return segment;
    };
    for (int step = 0; step < 3000; ++step) {
        const int choice = number(10);
        if (entries.size() < 4 || (choice == 0 && entries.size() < 20)) {
            entries.push_back({newPath(), {}});
            continue;
        }
        const auto at = number(static_cast<int>(entries.size()));
        Entry& entry = entries[static_cast<std::size_t>(at)];
        const auto size = static_cast<int>(entry.segments.size());
        if (choice < 5) {
            const int count = choice == 1 ? number(size + 1) : std::min(size + number(3000), 9000);
            ASSERT_EQ(host_(slot::setPathSegmentCount, entry.art, count), HostError::none);
            entry.segments.resize(static_cast<std::size_t>(count));
        } else if (choice < 8) {
            const int first = number(size + 1);
            std::vector<Segment> written(static_cast<std::size_t>(number(size - first + 1)));
            const bool curved = number(12) == 0;
            std::ranges::generate(written, [&] { return anySegment(curved && number(5) == 0); });
            ASSERT_EQ(host_(slot::setPathSegments, entry.art, first,
                            static_cast<std::int32_t>(written.size()), written.data()),
                      HostError::none);
            std::ranges::copy(written, entry.segments.begin() + first);
        } else if (choice == 8) {
            Art copy{};
            ASSERT_EQ(host_(slot::duplicateArt, entry.art, Placement::behind, entry.art, &copy),
                      HostError::none);
            entries.push_back({copy, entry.segments});
        } else {
            ASSERT_EQ(host_(slot::disposeArt, entry.art), HostError::none);
            entries.erase(entries.begin() + at);
        }
        std::int64_t live = 0;
        for (const Entry& each : entries) {
            live += static_cast<std::int64_t>(each.segments.size() * sizeof(Segment));
            if (step % 50 == 0) {
                ASSERT_EQ(all(each.art), each.segments) << "after step " << step;
            }
        }
        ASSERT_LT(host_.document.budget().used(), 4 * live + 6'000'000) << "after step " << step;
    }
}

TEST_F(PathsTest, becomeCurvedWithTheFirstCurveOnly) {
    const Art path = newPath();
    for (int i = 0; i < 5000; ++i) {
        grow(path, line(i, -i));
    }
    ASSERT_TRUE(host_.document.segments(path).straight());
    Segment pair[2] = {line(4999, -4999), {{7, 8}, {5, 6}, {7, 8}, 1}};
    pair[0].out = {1, 2};
    ASSERT_EQ(host_(slot::setPathSegmentCount, path, 5001), HostError::none);
    ASSERT_EQ(host_(slot::setPathSegments, path, 4999, 2, pair), HostError::none);

    EXPECT_FALSE(host_.document.segments(path).straight());
    const std::vector<Segment> segments = all(path);
    ASSERT_EQ(segments.size(), 5001u);
    for (int i = 0; i < 4999; ++i) {
        ASSERT_EQ(segments[static_cast<std::size_t>(i)], line(i, -i));
    }
    EXPECT_EQ(segments[4999], pair[0]);
    EXPECT_EQ(segments[5000], pair[1]);
    Segment read[2] = {};
    EXPECT_EQ(host_(slot::getPathSegments, path, 4999, 2, read), HostError::none);
    EXPECT_EQ(read[1], pair[1]);
}

TEST_F(PathsTest, refuseRangesOutsideThem) {
    const Art path = newPath();
    grow(path, line(1, 1));
    grow(path, line(2, 2));
    Segment segments[4] = {};
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t ranges[][2] = {{-1, 1}, {0, 3}, {1, 2}, {3, 0}, {0, -1}, {most, most}};
    for (const auto& [first, count] : ranges) {
        EXPECT_EQ(host_(slot::getPathSegments, path, first, count, segments), HostError::failed);
        EXPECT_EQ(host_(slot::setPathSegments, path, first, count, segments), HostError::failed);
    }
    EXPECT_EQ(host_(slot::getPathSegments, path, 0, 2, nullptr), HostError::failed);
    EXPECT_EQ(host_(slot::getPathSegments, path, 2, 0, nullptr), HostError::none);
    EXPECT_EQ(host_(slot::setPathSegmentCount, path, -1), HostError::failed);
    EXPECT_EQ(host_(slot::setPathSegmentCount, root_, 1), HostError::failed);
    EXPECT_EQ(all(path), (std::vector<Segment>{line(1, 1), line(2, 2)}));
}

TEST_F(PathsTest, aMillionSegmentsTakeTheirOwnBytesAndLittleMore) {
    const std::int64_t before = host_.document.budget().used();
    const Art lines = newPath();
    for (int i = 0; i < 1'000'000; ++i) {
        grow(lines, line(i, i));
    }
    const std::int64_t after = host_.document.budget().used();
    EXPECT_LT(after - before, 8'200'000);

    const Art curves = newPath();
    for (int i = 0; i < 1'000'000; ++i) {
        grow(curves, {{i, i}, {i - 1, i}, {i + 1, i}, 0});
    }
    EXPECT_LT(host_.document.budget().used() - after, 28'300'000);
}

/// Two paths that grow in turns: neither can stay at the pool's end.
TEST_F(PathsTest, takenInTurnsTheyGrowInTheirStride) {
    const Art paths[2] = {newPath(), newPath()};
    for (int i = 0; i < 200'000; ++i) {
        grow(paths[i % 2], line(i, 0));
    }
    EXPECT_EQ(host_.document.segments(paths[1])[99'999], line(199'999, 0));
    EXPECT_LT(host_.document.budget().used(), 200'000 * 8 * 4);
}

TEST(PathsBudget, pastItTheSlotFailsAndThePathStays) {
    HostTable host(std::int64_t{4} << 20);
    const Art path = host.make(ArtKind::path, Placement::inside,
                               host.document.layerArt(host.document.firstLayer()));
    ASSERT_EQ(host(slot::setPathSegmentCount, path, 100'000), HostError::none);
    const Segment last = line(3, 4);
    ASSERT_EQ(host(slot::setPathSegments, path, 99'999, 1, &last), HostError::none);

    EXPECT_EQ(host(slot::setPathSegmentCount, path, std::numeric_limits<std::int32_t>::max()),
              HostError::failed);
    EXPECT_EQ(host(slot::setPathSegmentCount, path, 10'000'000), HostError::failed);
    const Segment filled[2] = {line(9, 9), {{1, 1}, {2, 2}, {1, 1}, 0}};
    std::vector<Segment> curved(100'000, filled[1]);
    HostTable tight(std::int64_t{2} << 20);
    const Art straight = tight.make(ArtKind::path, Placement::inside,
                                    tight.document.layerArt(tight.document.firstLayer()));
    ASSERT_EQ(tight(slot::setPathSegmentCount, straight, 100'000), HostError::none);
    EXPECT_EQ(tight(slot::setPathSegments, straight, 0, 100'000, curved.data()), HostError::failed);
    EXPECT_EQ(tight.document.segments(straight)[0], line(0, 0));
    EXPECT_TRUE(tight.document.segments(straight).straight());
    EXPECT_EQ(host.document.segments(path)[99'999], last);
    EXPECT_EQ(host.document.segments(path).size(), 100'000);
}

TEST_F(PathsTest, shareEqualStylesAndKeepAllOthers) {
    PathStyle style;
    ASSERT_EQ(host_(slot::getDefaultStyle, &style), HostError::none);
    std::vector<Art> paths;
    const std::int64_t before = host_.document.budget().used();
    for (int i = 0; i < 3000; ++i) {
        style.lineWidth = i % 1000;
        style.dash[5] = i % 7;
        paths.push_back(newPath());
        ASSERT_EQ(host_(slot::setPathStyle, paths.back(), &style), HostError::none);
    }
    for (int i = 0; i < 3000; ++i) {
        PathStyle read;
        ASSERT_EQ(host_(slot::getPathStyle, paths[static_cast<std::size_t>(i)], &read),
                  HostError::none);
        ASSERT_EQ(read.lineWidth, i % 1000);
        ASSERT_EQ(read.dash[5], i % 7);
    }
    const std::int64_t distinct = host_.document.budget().used();
    EXPECT_GT(distinct, before);
    for (int i = 0; i < 300'000; ++i) {
        style.lineWidth = i % 1000;
        style.dash[5] = i % 1000 % 7;
        ASSERT_EQ(host_(slot::setPathStyle, paths[0], &style), HostError::none);
    }
    EXPECT_EQ(host_.document.budget().used(), distinct);
}

TEST_F(PathsTest, refuseStylesWithoutMeaning) {
    const Art path = newPath();
    const auto refused = [&](auto spoil) {
        PathStyle style;
        spoil(style);
        return host_(slot::setPathStyle, path, &style) == HostError::failed &&
               host_.document.style(path) == PathStyle{};
    };
    EXPECT_TRUE(refused([](PathStyle& style) { style.dashCount = 7; }));
    EXPECT_TRUE(refused([](PathStyle& style) { style.dashCount = -1; }));
    EXPECT_TRUE(refused([](PathStyle& style) { style.cap = 3; }));
    EXPECT_TRUE(refused([](PathStyle& style) { style.join = -1; }));
    EXPECT_TRUE(refused([](PathStyle& style) { style.fill.kind = static_cast<ColourKind>(2); }));
    EXPECT_TRUE(refused([](PathStyle& style) { style.rule = static_cast<FillRule>(2); }));
    EXPECT_EQ(host_(slot::setPathStyle, path, nullptr), HostError::failed);
    const PathStyle style;
    EXPECT_EQ(host_(slot::setPathStyle, root_, &style), HostError::failed);
}

} // namespace
} // namespace corvane
