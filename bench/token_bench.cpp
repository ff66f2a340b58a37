// How fast page content becomes tokens, beside a floor row that only copies the same bytes.
//
//     bench/make_pages.py /tmp/corvane-pages map-120000
//     build/bench/token_bench /tmp/corvane-pages/map-120000.pdf
//
// The whole file is scanned; all but its first and last few hundred bytes are one content stream.
#include "filters/memory_filter.h"
#include "filters/token/token.h"
#include "runtime/rules.h"
#include "tests/support/process.h"
#include "toolbox/state.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <span>
#include <string>

namespace corvane {
namespace {

void countBytes(benchmark::State& state, const std::string& bytes) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

/// The floor: blocks of the size that the token filter asks for, copied and left alone.
void copyOnly(benchmark::State& state, const std::string& bytes) {
    std::array<char, 16384> block{};
    while (state.KeepRunning()) {
        for (std::size_t at = 0; at < bytes.size(); at += block.size()) {
            std::memcpy(block.data(), bytes.data() + at, std::min(block.size(), bytes.size() - at));
            benchmark::DoNotOptimize(block);
        }
    }
    countBytes(state, bytes);
}

void readTokens(benchmark::State& state, const std::string& bytes) {
    const ToolboxScope toolbox;
    selectRules(Profile::extended);
    std::int64_t tokens = 0;
    while (state.KeepRunning()) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(std::as_bytes(std::span(bytes))));
        auto owner = setupToken();
        TokenFilter& filter = *owner;
        chain.link(std::move(owner));
        while (filter.readToken() != TokenType::end) {
            benchmark::DoNotOptimize(filter.number());
            ++tokens;
        }
    }
    countBytes(state, bytes);
    state.counters["tokens"] =
        benchmark::Counter(static_cast<double>(tokens), benchmark::Counter::kIsRate);
}

int runAll(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "token_bench: name one PDF file (see bench/make_pages.py)\n");
        return 2;
    }
    const std::string bytes = test::fileBytes(argv[1]);
    benchmark::RegisterBenchmark("copy only", copyOnly, bytes);
    benchmark::RegisterBenchmark("read tokens", readTokens, bytes);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

} // namespace
} // namespace corvane

int main(int argc, char** argv) {
    try {
        return corvane::runAll(argc, argv);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "token_bench: %s\n", problem.what());
        return 1;
    }
}
