// DCT coding of a picture of 12 million pixels, 4:4:4 and 4:2:0, beside libjpeg-turbo, and the
// floor that only copies the pixels. With JSIMD_FORCENONE=1 in the environment the peer uses no
// vectors.
#include "tests/support/picture.h"
#include "toolbox/state.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>

namespace {

using namespace corvane;
using test::Picture;

constexpr Fixed quality = 1 << 15;

const Picture& picture() {
    static const Picture made = test::photograph(4000, 3000, 3);
    return made;
}

DctSettings settings(std::int64_t factor) {
    DctSettings settings;
    settings.width = picture().width;
    settings.height = picture().height;
    settings.components = 3;
    settings.transform = true;
    settings.quality = quality;
    const auto sampling = static_cast<std::uint8_t>(factor);
    settings.sampling[0] = {sampling, sampling};
    return settings;
}

const std::vector<std::byte>& coded(std::int64_t factor) {
    static const std::array<std::vector<std::byte>, 2> made{
        test::encodePicture(picture(), settings(1)), test::encodePicture(picture(), settings(2))};
    return made[static_cast<std::size_t>(factor - 1)];
}

void report(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(picture().samples.size()));
}

void copyFloor(benchmark::State& state) {
    std::vector<std::uint8_t> row(picture().width * 3);
    for (auto _ : state) {
        for (std::size_t y = 0; y < picture().height; ++y) {
            std::memcpy(row.data(), picture().row(y).data(), row.size());
            benchmark::DoNotOptimize(row.data());
            benchmark::ClobberMemory();
        }
    }
    report(state);
}

void decodeOurs(benchmark::State& state) {
    const ToolboxScope scope(std::int64_t{1} << 30);
    const std::vector<std::byte>& data = coded(state.range(0)); // made before the clock runs
    for (auto _ : state) {
        test::MemorySource source(data);
        const auto codec = DCTInitialize();
        DCTDecodeOpen(*codec, source);
        for (auto row = DCTDFilBuf(*codec); !row.empty(); row = DCTDFilBuf(*codec)) {
            benchmark::DoNotOptimize(row.data());
        }
    }
    report(state);
}

void decodePeer(benchmark::State& state) {
    std::vector<std::uint8_t> data(coded(state.range(0)).size());
    std::memcpy(data.data(), coded(state.range(0)).data(), data.size());
    std::vector<std::uint8_t> row(picture().width * 3);
    for (auto _ : state) {
        jpeg_decompress_struct peer{};
        test::PeerErrors errors;
        peer.err = &errors;
        jpeg_create_decompress(&peer);
        jpeg_mem_src(&peer, data.data(), data.size());
        jpeg_read_header(&peer, TRUE);
        peer.jpeg_color_space = JCS_YCbCr;
        peer.out_color_space = JCS_RGB;
        peer.dct_method = JDCT_ISLOW;
        jpeg_start_decompress(&peer);
        while (peer.output_scanline < peer.output_height) {
            JSAMPROW to = row.data();
            jpeg_read_scanlines(&peer, &to, 1);
            benchmark::DoNotOptimize(row.data());
        }
        jpeg_finish_decompress(&peer);
        jpeg_destroy_decompress(&peer);
    }
    report(state);
}

class Forget : public DctSink {
public:
    void write(std::span<const std::byte> bytes) override { count += bytes.size(); }
    std::size_t count = 0;
};

void encodeOurs(benchmark::State& state) {
    const ToolboxScope scope(std::int64_t{1} << 30);
    const Picture& from = picture();
    Forget sink;
    for (auto _ : state) {
        sink.count = 0;
        const auto codec = DCTInitialize();
        codec->settings = settings(state.range(0));
        DCTEncodeOpen(*codec, sink);
        for (std::size_t y = 0; y < from.height; ++y) {
            std::ranges::copy(from.row(y), codec->row.begin());
            DCTEFlush(*codec);
        }
        DCTfree(*codec);
    }
    report(state);
    state.counters["coded"] = static_cast<double>(sink.count);
}

void encodePeer(benchmark::State& state) {
    const Picture& from = picture();
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = test::encodeWithPeer(from, settings(state.range(0))).size();
    }
    report(state);
    state.counters["coded"] = static_cast<double>(bytes);
}

BENCHMARK(copyFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeOurs)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(decodePeer)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeOurs)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(encodePeer)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
