// How fast artwork becomes page content: a map of 120,000 styled paths with 1.5 million segments,
// beside a floor row that only prints the same coordinates into memory.
//
//     build/bench/walk_bench
#include "app/artwork/slots/callbacks.h"
#include "host/number.h"
#include "reader/document/cache.h"
#include "runtime/callbacks.h"
#include "runtime/rules.h"
#include "tests/support/keeper_filter.h"
#include "toolbox/state.h"
#include "writer/art/works.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

namespace corvane {
namespace {

constexpr int pathCount = 120'000;
constexpr int segmentCount = 1'500'000 / pathCount;

/// Coordinates of a page with fractions, as real maps have them; not random, so that runs compare.
std::vector<Segment> mapSegments(int path) {
    std::vector<Segment> segments;
    auto x = static_cast<Fixed>(path * 7919LL % (600 * fixedOne));
    auto y = static_cast<Fixed>(path * 104729LL % (800 * fixedOne));
    for (int i = 0; i < segmentCount; ++i) {
        x += (i * 40503 + path) % (2 * fixedOne);
        y += (i * 10007 + path) % (2 * fixedOne);
        segments.push_back({{x, y}, {x, y}, {x, y}, 0});
    }
    return segments;
}

PathStyle mapStyle(int path) {
    PathStyle style;
    style.fillPaint = path % 2 == 0 ? 1 : 0;
    style.strokePaint = 1;
    style.fill.component[0] = path % 97 * 600;
    style.stroke.component[0] = path % 3 * fixedOne / 2;
    style.lineWidth = fixedOne / (1 + path % 5);
    return style;
}

void fillMap(Document& document) {
    const Art layer = document.layerArt(document.firstLayer());
    for (int i = 0; i < pathCount; ++i) {
        const Art path = document.make(ArtKind::path, Placement::inside, layer);
        document.setSegmentCount(path, segmentCount);
        document.writeSegments(path, 0, mapSegments(i));
        document.setStyle(path, mapStyle(i));
    }
}

/// The floor: nothing but the numbers.
void printNumbers(benchmark::State& state) {
    std::vector<Segment> segments;
    for (int i = 0; i < pathCount; ++i) {
        const std::vector<Segment> more = mapSegments(i);
        segments.insert(segments.end(), more.begin(), more.end());
    }
    std::vector<char> text(segments.size() * 2 * (numberRoom + 1));
    for (auto _ : state) {
        char* end = text.data();
        for (const Segment& segment : segments) {
            end = writeNumber(end, segment.anchor.x);
            *end++ = ' ';
            end = writeNumber(end, segment.anchor.y);
            *end++ = ' ';
        }
        benchmark::DoNotOptimize(end);
    }
}

void writeMap(benchmark::State& state, Profile profile) {
    const ToolboxScope toolbox;
    selectRules(profile);
    Document document;
    fillMap(document);
    const CallbackScope scope(document);
    const CallbackTable table;
    callbacks = table.ref().get();
    test::KeeperFilter keeper;
    DocumentCache cache;
    cache.output = &keeper;
    for (auto _ : state) {
        keeper.text.clear();
        benchmark::DoNotOptimize(documentWorks(cache, {}));
    }
    state.SetBytesProcessed(state.iterations() * std::ssize(keeper.text));
    callbacks = nullptr;
}

BENCHMARK(printNumbers)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeMap, extended, Profile::extended)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeMap, original, Profile::original)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace corvane

BENCHMARK_MAIN();
