// Any bytes through each decoder: the same answer in pieces of any size, the filter below where the
// data ended, and, where there is another program for the same data, its answer.
#include "filters/buffer.h"
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
#include "fuzz/targets.h"
#include "host/memory.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "tests/filters/lzw_reference.h"
#include "toolbox/state.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>
#include <zlib.h>

namespace corvane::fuzz {

namespace {

using LinkFilters = std::function<void(Chain&)>;

struct Reading {
    Exception code = Exception::none;
    std::string bytes;
    std::int32_t below = 0; ///< place of the bottom after the filters were unlinked
    friend bool operator==(const Reading&, const Reading&) = default;
};

/// Reads everything, each time up to `longestChunk` bytes, from a bottom that gives up to
/// `longestRead` at once.
Reading readThrough(Bytes input, const LinkFilters& link, std::uint32_t longestChunk,
                    std::int32_t longestRead) {
    Reading reading;
    Choices choices(input);
    reading.code = guarded([&] {
        MemoryFilter bottom(input, longestRead);
        Chain chain(&bottom);
        link(chain);
        for (;;) {
            const std::size_t before = reading.bytes.size();
            const std::size_t chunk = 1 + choices.below(longestChunk);
            reading.bytes.resize(before + chunk);
            const std::size_t count = readFilter(
                *chain.top(), std::as_writable_bytes(std::span(reading.bytes)).subspan(before));
            require(count <= chunk);
            reading.bytes.resize(before + count);
            if (count < chunk) {
                break;
            }
        }
        chain.unlink();
        reading.below = markFilter(bottom);
    });
    resetException();
    require(zoneBlocksInUse() == 0 && zoneBytesCharged() == 0);
    require(static_cast<std::size_t>(reading.below) <= input.size());
    return reading;
}

Reading readEveryWay(Bytes input, const LinkFilters& link) {
    const Reading whole = readThrough(input, link, 65536, INT32_MAX);
    require(readThrough(input, link, 1, INT32_MAX) == whole);
    require(readThrough(input, link, 50, 7) == whole);
    require(readThrough(input, link, 9000, 1) == whole);
    return whole;
}

std::string textOf(Bytes input) {
    std::string text;
    for (const std::byte byte : input) {
        text += std::to_integer<char>(byte);
    }
    return text;
}

/// The digits of hexadecimal data, one at a time.
std::string slowHex(const std::string& data) {
    std::string bytes;
    int high = -1;
    for (const char c : data.substr(0, data.find('>'))) {
        const std::uint8_t digit = hexDigit(static_cast<std::uint8_t>(c));
        if (digit == notHexDigit) {
            continue;
        }
        if (high < 0) {
            high = digit;
        } else {
            bytes += static_cast<char>(high << 4 | digit);
            high = -1;
        }
    }
    return high < 0 ? bytes : bytes + static_cast<char>(high << 4);
}

/// The runs of run-length data, one at a time.
std::string slowRun(const std::string& data) {
    std::string bytes;
    for (std::size_t at = 0; at < data.size();) {
        const auto length = static_cast<std::size_t>(static_cast<unsigned char>(data[at++]));
        if (length < 128 && at + length < data.size()) {
            bytes += data.substr(at, length + 1);
            at += length + 1;
        } else if (length > 128 && at < data.size()) {
            bytes += std::string(257 - length, data[at++]);
        } else {
            break;
        }
    }
    return bytes;
}

/// What zlib's own reading of the deflated data behind the header gives up to their end or damage.
std::string slowInflate(Bytes input) {
    std::string bytes;
    z_stream stream{};
    require(inflateInit2(&stream, -15) == Z_OK);
    std::vector<Bytef> data;
    for (const std::byte byte : input.subspan(std::min<std::size_t>(input.size(), 2))) {
        data.push_back(std::to_integer<Bytef>(byte));
    }
    stream.next_in = data.data();
    stream.avail_in = static_cast<uInt>(data.size());
    for (int result = Z_OK; result == Z_OK;) {
        Bytef byte = 0;
        stream.next_out = &byte;
        stream.avail_out = 1;
        result = inflate(&stream, Z_NO_FLUSH);
        if (stream.avail_out == 0) {
            bytes += static_cast<char>(byte);
        }
    }
    inflateEnd(&stream);
    return bytes;
}

} // namespace

void fuzzLzw(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    const std::uint32_t early = Choices(input).below(2);
    const Reading reading = readEveryWay(
        input, [&](Chain& chain) { chain.link(setupAdapt(AdaptDirection::decode, early)); });
    const test::LzwReference wanted = test::lzwDecode(textOf(input), early);
    require(reading.code == Exception::none && reading.bytes == wanted.bytes);
    require(static_cast<std::size_t>(reading.below) == wanted.used);
}

void fuzzHex(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    const Reading reading =
        readEveryWay(input, [](Chain& chain) { chain.link(setupHex(AsciiMode::pastMarker)); });
    const std::string text = textOf(input);
    require(reading.code == Exception::none && reading.bytes == slowHex(text));
    require(static_cast<std::size_t>(reading.below) ==
            std::min(text.find('>'), text.size() - 1) + 1);
}

void fuzzBase85(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    selectRules(choices.below(2) == 0 ? Profile::original : Profile::extended);
    const auto mode = static_cast<AsciiMode>(choices.below(3));
    const Reading reading =
        readEveryWay(input, [&](Chain& chain) { chain.link(setupMangle(mode)); });
    require(reading.code == Exception::none && reading.bytes.size() <= 4 * input.size());
}

void fuzzRunLength(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    const Reading reading = readEveryWay(input, [](Chain& chain) { chain.link(setupRun()); });
    require(reading.code == Exception::none && reading.bytes == slowRun(textOf(input)));
}

void fuzzFlate(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    const Reading reading = readEveryWay(input, [](Chain& chain) { chain.link(setupInflate()); });
    require(reading.code == Exception::none && reading.bytes == slowInflate(input));
}

void fuzzPredictor(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    const PredictorParameters parameters{
        .predictor = choices.below(2) == 0 ? 2 : 15,
        .colors = 1 + static_cast<std::int32_t>(choices.below(5)),
        .bitsPerComponent = 1 << choices.below(5),
        .columns = 1 + static_cast<std::int32_t>(choices.below(40)),
    };
    const Reading reading = readEveryWay(input, [&](Chain& chain) {
        chain.link(setupBuffer(usualBufferSize)); // a short read is the end of the data
        chain.link(setupPredictor(parameters));
    });
    require(reading.code == Exception::none && reading.bytes.size() <= input.size());
}

void fuzzSamples(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    const auto bits = static_cast<std::int32_t>(1U << choices.below(4));
    const auto perRow = static_cast<std::int32_t>(1 + choices.below(50));
    std::vector<Fixed> decode(std::array{0U, 2U, 6U, 8U}[choices.below(4)]);
    for (Fixed& bound : decode) {
        bound = static_cast<Fixed>(choices.below(1 << 30)) * 2;
    }
    const auto space = static_cast<ImageSpace>(1 + choices.below(5));
    const std::vector<std::uint32_t> palette(1 + choices.below(256), 0x00ABCDEF);
    const Reading reading = readEveryWay(input, [&](Chain& chain) {
        chain.link(setupBuffer(usualBufferSize)); // a short read is the end of the data here
        chain.link(setupComponent(bits, perRow, SampleScale::full));
        chain.link(setupMapping(decode, 255));
        chain.link(setupSpace(space, static_cast<std::uint32_t>(palette.size() - 1), palette));
    });
    require(reading.code == Exception::none);
}

} // namespace corvane::fuzz
