// Decoders, sample and colour filters, read through a chain in blocks of 8192 bytes. Every row's
// rate counts the bytes delivered; the floor is a chain that only copies. Where mupdf's library is
// installed, its filter for the same bytes stands under ours.
#include "filters/coding/base85.h"
#include "filters/coding/flate.h"
#include "filters/coding/hex.h"
#include "filters/coding/lzw.h"
#include "filters/coding/predictor.h"
#include "filters/coding/run_length.h"
#include "filters/memory_filter.h"
#include "filters/pixels/component.h"
#include "filters/pixels/mapping.h"
#include "filters/pixels/space.h"

#include <array>
#include <benchmark/benchmark.h>
#include <functional>
#include <string>
#include <string_view>
#include <vector>
#include <zlib.h>

#ifdef CORVANE_BENCH_MUPDF
#include <mupdf/fitz.h>
#endif

namespace corvane {
namespace {

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

/// A page's content, about 4 MB: numbers that wander, and operators.
const std::string& content() {
    static const std::string text = [] {
        std::string made;
        std::uint32_t state = 1;
        int x = 300;
        int y = 400;
        while (made.size() < (4U << 20)) {
            state = state * 1664525U + 1013904223U;
            x += static_cast<int>(state >> 28) - 7;
            y += static_cast<int>(state >> 24 & 15) - 7;
            made += std::to_string(x) + "." + std::to_string(state >> 16 & 63) + " " +
                    std::to_string(y) + "." + std::to_string(state >> 8 & 63) +
                    ((state & 0x700) == 0 ? " m\n" : " l\n");
        }
        return made;
    }();
    return text;
}

/// The bottom of a chain that is written.
class StoreFilter : public Filter {
public:
    explicit StoreFilter(std::string& store) : Filter(entry), store_(store) {}

private:
    static std::int32_t entry(Filter& filter, Operation operation, std::byte* buffer,
                              std::int32_t* argument) {
        if (operation == Operation::write) {
            for (std::int32_t i = 0; i < *argument; ++i) {
                static_cast<StoreFilter&>(filter).store_ += static_cast<char>(buffer[i]);
            }
        }
        return argument == nullptr ? 0 : *argument;
    }
    std::string& store_;
};

std::string encoded(FilterOwner encoder) {
    std::string store;
    Chain chain;
    chain.link(std::make_unique<StoreFilter>(store));
    chain.link(std::move(encoder));
    writeFilter(*chain.top(), bytesOf(content()));
    chain.unlink();
    return store;
}

const std::string& hexData() {
    static const std::string data = encoded(setupHex(AsciiMode::write)) + ">";
    return data;
}
const std::string& mangleData() {
    static const std::string data = encoded(setupMangle(AsciiMode::write));
    return data;
}
const std::string& adaptData() {
    static const std::string data = encoded(setupAdapt(AdaptDirection::encode));
    return data;
}
/// Literal runs and repeated bytes by turns.
const std::string& runData() {
    static const std::string data = [] {
        std::string made;
        const std::string_view text = content();
        for (std::size_t at = 0; at + 64 <= text.size(); at += 64) {
            const std::size_t literal = 8 + at / 64 % 48;
            made += static_cast<char>(literal - 1);
            made += text.substr(at, literal);
            made += static_cast<char>(257 - (64 - literal));
            made += ' ';
        }
        return made + '\x80';
    }();
    return data;
}
const std::string& flateData() {
    static const std::string data = [] {
        const std::vector<Bytef> plain(content().begin(), content().end());
        std::vector<Bytef> packed(compressBound(plain.size()));
        uLongf size = packed.size();
        compress2(packed.data(), &size, plain.data(), plain.size(), 6);
        return std::string(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(size));
    }();
    return data;
}

using Link = std::function<void(Chain&)>;

/// Reads `data` through a chain; rates in bytes delivered, and in pixels of `pixelSize` bytes.
void readThrough(benchmark::State& state, const std::string& data, const Link& link,
                 std::int64_t pixelSize = 0) {
    std::array<std::byte, 8192> block{};
    std::int64_t delivered = 0;
    for (auto _ : state) {
        Chain chain;
        chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
        link(chain);
        for (std::size_t count = block.size(); count == block.size();) {
            count = readFilter(*chain.top(), block);
            delivered += static_cast<std::int64_t>(count);
            benchmark::DoNotOptimize(block);
        }
    }
    state.SetBytesProcessed(delivered);
    if (pixelSize > 0) {
        state.SetItemsProcessed(delivered / pixelSize);
    }
}

#ifdef CORVANE_BENCH_MUPDF
/// The same blocks through a filter of mupdf.
void readPeer(benchmark::State& state, const std::string& data,
              fz_stream* (*open)(fz_context*, fz_stream*)) {
    fz_context* const context = fz_new_context(nullptr, nullptr, FZ_STORE_DEFAULT);
    std::vector<unsigned char> bytes(data.begin(), data.end());
    std::array<unsigned char, 8192> block{};
    std::int64_t delivered = 0;
    for (auto _ : state) {
        fz_stream* const memory = fz_open_memory(context, bytes.data(), bytes.size());
        fz_stream* const stream = open(context, memory);
        for (std::size_t count = block.size(); count == block.size();) {
            count = fz_read(context, stream, block.data(), block.size());
            delivered += static_cast<std::int64_t>(count);
            benchmark::DoNotOptimize(block);
        }
        fz_drop_stream(context, stream);
        fz_drop_stream(context, memory);
    }
    fz_drop_context(context);
    state.SetBytesProcessed(delivered);
}
#endif

/// A decoder, and mupdf's for the same data.
struct Row {
    const char* name;
    const std::string& (*data)();
    FilterOwner (*setup)();
#ifdef CORVANE_BENCH_MUPDF
    fz_stream* (*peer)(fz_context* context, fz_stream* below);
#define CORVANE_PEER(open) open
#else
#define CORVANE_PEER(open)
#endif
};

const std::array rows{
    Row{"hex", hexData, [] { return setupHex(AsciiMode::pastMarker); }, CORVANE_PEER(fz_open_ahxd)},
    Row{"base85", mangleData, [] { return setupMangle(AsciiMode::pastMarker); },
        CORVANE_PEER(fz_open_a85d)},
    Row{"lzw", adaptData, [] { return setupAdapt(AdaptDirection::decode); },
        CORVANE_PEER([](fz_context* context, fz_stream* below) {
            return fz_open_lzwd(context, below, 1, 9, 0, 0);
        })},
    Row{"run_length", runData, setupRun, CORVANE_PEER(fz_open_rld)},
    Row{"flate", flateData, setupInflate, CORVANE_PEER([](fz_context* context, fz_stream* below) {
            return fz_open_flated(context, below, 15);
        })},
};

void registerRows() {
    for (const Row& row : rows) {
        benchmark::RegisterBenchmark(row.name, [&row](benchmark::State& state) {
            readThrough(state, row.data(), [&](Chain& chain) { chain.link(row.setup()); });
        });
#ifdef CORVANE_BENCH_MUPDF
        benchmark::RegisterBenchmark(
            (std::string(row.name) + "/mupdf").c_str(),
            [&row](benchmark::State& state) { readPeer(state, row.data(), row.peer); });
#endif
    }
}

void floorCopy(benchmark::State& state) {
    readThrough(state, content(), [](Chain&) {});
}
BENCHMARK(floorCopy);

void adaptEncode(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(encoded(setupAdapt(AdaptDirection::encode)));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(content().size()));
}
BENCHMARK(adaptEncode);

/// Rows of 1000 pixels of three bytes, each with the next of the five PNG filters.
const std::string& pixelRows() {
    static const std::string data = [] {
        std::string made = content();
        for (std::size_t row = 0; row * 3001 < made.size(); ++row) {
            made[row * 3001] = static_cast<char>(row % 5);
        }
        return made;
    }();
    return data;
}

void predictor(benchmark::State& state) {
    readThrough(state, pixelRows(), [&](Chain& chain) {
        chain.link(setupPredictor({.predictor = static_cast<std::int32_t>(state.range(0)),
                                   .colors = 3,
                                   .columns = 1000}));
    });
}
BENCHMARK(predictor)->ArgName("predictor")->Arg(2)->Arg(15);

void component(benchmark::State& state) {
    readThrough(
        state, content(),
        [&](Chain& chain) {
            chain.link(
                setupComponent(static_cast<std::int32_t>(state.range(0)), 1001, SampleScale::full));
        },
        1);
}
BENCHMARK(component)->ArgName("bits")->Arg(1)->Arg(2)->Arg(4)->Arg(8);

void mapping(benchmark::State& state) {
    const std::vector<Fixed> decode(static_cast<std::size_t>(2 * state.range(0)), 30000);
    readThrough(
        state, content(), [&](Chain& chain) { chain.link(setupMapping(decode, 255)); },
        state.range(0));
}
BENCHMARK(mapping)->ArgName("components")->Arg(1)->Arg(3)->Arg(4);

void space(benchmark::State& state) {
    const std::vector<std::uint32_t> palette(256, 0x00123456);
    readThrough(
        state, content(),
        [&](Chain& chain) {
            chain.link(setupSpace(static_cast<ImageSpace>(state.range(0)), 255, palette));
        },
        4);
}
BENCHMARK(space)->ArgName("space")->Arg(2)->Arg(3)->Arg(4)->Arg(5);

} // namespace
} // namespace corvane

int main(int argc, char** argv) {
    corvane::registerRows();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
