// Fax decoding and encoding beside libtiff's, and beside a floor that only copies the pixels. Both
// sides go through whole images in memory. Rates are bytes of pixels a second.
#include "tests/support/fax_peer.h"
#include "tests/support/fax_run.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <string>

namespace {

using namespace corvane;
using test::encodeFax;
using Pixels = std::vector<std::byte>;

// Letter at 300 dots per inch.
constexpr std::uint32_t columns = 2550;
constexpr std::uint32_t rows = 3300;
constexpr std::size_t rowBytes = (columns + 7) / 8;

std::uint32_t next(std::uint32_t& state) {
    state = state * 1664525 + 1013904223;
    return state >> 8;
}

void setPixel(Pixels& pixels, std::uint32_t x, std::uint32_t y) {
    pixels[y * rowBytes + x / 8] |= std::byte{0x80} >> (x % 8);
}

/// Lines of text of 12 points: words of letters made of upright, level and slanting strokes.
Pixels textPage() {
    Pixels pixels(rowBytes * rows);
    std::uint32_t state = 1;
    for (std::uint32_t line = 300; line + 340 < rows; line += 60) {
        for (std::uint32_t x = 300; x + 320 < columns;) {
            const std::uint32_t letters = 2 + next(state) % 8;
            for (std::uint32_t letter = 0; letter < letters; ++letter, x += 26) {
                const std::uint32_t shape = next(state);
                for (std::uint32_t y = 0; y < 34; ++y) {
                    const std::uint32_t slant = shape % 3 == 0 ? y / 3 : 0;
                    for (std::uint32_t w = 0; w < 4; ++w) {
                        setPixel(pixels, x + slant + w, line + y);
                        if (shape % 5 < 3) {
                            setPixel(pixels, x + 16 - slant / 2 + w, line + y);
                        }
                    }
                    if (y < 3 || (shape % 2 == 0 && y > 15 && y < 19) ||
                        (shape % 7 < 4 && y > 30)) {
                        for (std::uint32_t w = 0; w < 20; ++w) {
                            setPixel(pixels, x + w, line + y);
                        }
                    }
                }
            }
            x += 18;
        }
    }
    return pixels;
}

/// A smooth picture with a little noise under a clustered screen of 75 lines an inch at 45 degrees.
Pixels halftone() {
    constexpr std::array<std::array<std::uint32_t, 4>, 4> screen{
        {{13, 11, 12, 15}, {6, 2, 3, 8}, {4, 0, 1, 10}, {14, 7, 9, 5}}};
    Pixels pixels(rowBytes * rows);
    std::uint32_t state = 7;
    for (std::uint32_t y = 0; y < rows; ++y) {
        for (std::uint32_t x = 0; x < columns; ++x) {
            const std::uint32_t slope = (x / 5 + y / 9) % 512;
            const std::uint32_t grey = slope < 256 ? slope : 511 - slope;
            const std::uint32_t cell = screen[y % 4][(x + (y / 4 % 2) * 2) % 4];
            if (cell * 16 + next(state) % 4 < grey) {
                setPixel(pixels, x, y);
            }
        }
    }
    return pixels;
}

const Pixels& page(bool text) {
    static const Pixels pages[2] = {halftone(), textPage()};
    return pages[text ? 1 : 0];
}

/// A coding, for both sides.
struct Coding {
    const char* name;
    std::int32_t k;
    test::FaxKind kind;
};

const std::array<Coding, 3> codings{
    {{"G4", -1, {columns, rows, COMPRESSION_CCITTFAX4, 0}},
     {"G3-1D", 0, {columns, rows, COMPRESSION_CCITTFAX3, 0}},
     {"G3-2D", 4, {columns, rows, COMPRESSION_CCITTFAX3, GROUP3OPT_2DENCODING}}}};

CCParameters parametersOf(const Coding& coding) {
    return {.columns = columns,
            .rows = static_cast<std::uint16_t>(rows),
            .k = coding.k,
            .endOfLine = coding.k >= 0,
            .blackIs1 = true};
}

void count(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * rowBytes * rows));
}

void decode(benchmark::State& state, const Coding& coding, bool text) {
    const Pixels data = encodeFax(parametersOf(coding), page(text));
    Pixels out(rowBytes * rows);
    for (auto _ : state) {
        test::MemoryPort port(data);
        FaxByteStream bytes;
        cc_fsetup(bytes, port, 0);
        CCStream stream;
        SetupCCStm(parametersOf(coding), bytes, stream);
        CDReset(stream);
        for (std::size_t at = 0; at < out.size(); at += rowBytes) {
            CDFilBuf(stream);
            if (stream.count == 0) {
                break;
            }
            std::memcpy(out.data() + at, stream.current, stream.count);
            stream.count = 0;
        }
        FinalCCStm(stream);
        cc_ffinal(bytes);
        benchmark::ClobberMemory();
    }
    if (out != page(text)) {
        state.SkipWithError("wrong pixels");
    }
    count(state);
}

void decodePeer(benchmark::State& state, const Coding& coding, bool text) {
    test::TiffMemory file =
        test::tiffOfFax(coding.kind, encodeFax(parametersOf(coding), page(text)));
    Pixels out(rowBytes * rows);
    for (auto _ : state) {
        const auto tiff = file.open("r");
        TIFFReadEncodedStrip(tiff.get(), 0, out.data(), static_cast<tmsize_t>(out.size()));
        benchmark::ClobberMemory();
    }
    if (out != page(text)) {
        state.SkipWithError("wrong pixels");
    }
    count(state);
}

void encode(benchmark::State& state, const Coding& coding, bool text) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(encodeFax(parametersOf(coding), page(text)));
    }
    count(state);
}

void encodePeer(benchmark::State& state, const Coding& coding, bool text) {
    Pixels pixels = page(text);
    for (auto _ : state) {
        test::TiffMemory file;
        const auto tiff = file.open("w");
        test::setFaxTags(tiff.get(), coding.kind);
        TIFFWriteEncodedStrip(tiff.get(), 0, pixels.data(), static_cast<tmsize_t>(pixels.size()));
        benchmark::ClobberMemory();
    }
    count(state);
}

void floor(benchmark::State& state, bool text) {
    const Pixels& pixels = page(text);
    Pixels out(pixels.size());
    for (auto _ : state) {
        std::memcpy(out.data(), pixels.data(), pixels.size());
        benchmark::ClobberMemory();
    }
    count(state);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::AddCustomContext("compiler", __VERSION__);
    benchmark::AddCustomContext("libtiff", TIFFGetVersion());
    for (const bool text : {true, false}) {
        const std::string image = text ? "text/" : "halftone/";
        for (const Coding& coding : codings) {
            const std::string name = image + coding.name;
            using Run = void (*)(benchmark::State&, const Coding&, bool);
            for (const auto& [what, run] : {std::pair<const char*, Run>{"/decode/ours", decode},
                                            {"/decode/libtiff", decodePeer},
                                            {"/encode/ours", encode},
                                            {"/encode/libtiff", encodePeer}}) {
                benchmark::RegisterBenchmark((name + what).c_str(), run, coding, text);
            }
        }
        benchmark::RegisterBenchmark((image + "copy").c_str(), floor, text);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
