// PNG, read into the form in which images pass to the plug-in, and written from it.
#include "app/artwork/images/image_table.h"
#include "app/images/image_encoder.h"
#include "app/images/image_error.h"
#include "app/images/image_file.h"
#include "app/images/png_file.h"
#include "app/images/written_file.h"

#include "tests/app/images/png_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

namespace corvane {
namespace {

using test::octets;
using test::Octets;
using test::PngKind;
using Bytes = std::vector<std::byte>;

struct TextSink final : ByteSink {
    std::error_code write(std::string_view bytes) override {
        text += bytes;
        return {};
    }
    Bytes bytes() const {
        const auto all = std::as_bytes(std::span(text));
        return {all.begin(), all.end()};
    }
    std::string text;
};

/// In pieces of that size.
Bytes allOf(ImageSource& source, std::size_t piece = 3) {
    Bytes bytes;
    Bytes block(piece);
    while (true) {
        const std::size_t count = source.read(block);
        bytes.insert(bytes.end(), block.begin(),
                     block.begin() + static_cast<std::ptrdiff_t>(count));
        if (count < piece) {
            return bytes;
        }
    }
}

Bytes samplesOf(const Bytes& file) {
    const auto image = readImage(memoryOrigin(file), "it");
    return allOf(*image->content->open());
}

/// Three by three grays, in seven passes: 0 1 2, 10 11 12, 20 21 22.
Bytes interlaced() {
    constexpr std::string_view hex =
        "89504e470d0a1a0a0000000d49484452000000030000000308000000010444daf50000001749"
        "444154789c636060606210116360641065e0e2e60100026500646487e5ed0000000049454e44"
        "ae426082";
    Bytes bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        bytes.push_back(
            static_cast<std::byte>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16)));
    }
    return bytes;
}

TEST(PngFile, AllKindsComeInTheFormOfTheHost) {
    struct Row {
        PngKind kind;
        ImageColours colours;
        int bits;
        bool hasAlpha;
        Octets samples;
        Octets palette = {};
    };
    constexpr auto gray = ImageColours::gray;
    constexpr auto rgb = ImageColours::rgb;
    constexpr auto indexed = ImageColours::indexed;
    const Row rows[] = {
        {{10, 2, 0, 1, {0xAA, 0x80, 0x55, 0x40}}, gray, 1, false, {0xAA, 0x80, 0x55, 0x40}},
        {{4, 1, 0, 2, {0x1B}, {}, {}, {2}}, gray, 8, true, {0, 255, 85, 255, 170, 0, 255, 255}},
        {{2, 1, 0, 8, {7, 8}, {}, {}, {8}}, gray, 8, true, {7, 255, 8, 0}},
        {{2, 1, 0, 8, {7, 8}, {}, {}, {0x108}}, gray, 8, true, {7, 255, 8, 0}},
        {{1, 1, 0, 16, {1, 2}}, gray, 16, false, {1, 2}},
        {{1, 2, 0, 16, {1, 2, 1, 3}, {}, {}, {0x103}},
         gray,
         16,
         true,
         {1, 2, 255, 255, 1, 3, 0, 0}},
        {{2, 1, 2, 8, {1, 2, 3, 4, 5, 6}, {}, {}, {4, 5, 6}},
         rgb,
         8,
         true,
         {1, 2, 3, 255, 4, 5, 6, 0}},
        {{1, 1, 2, 16, {1, 2, 3, 4, 5, 6}}, rgb, 16, false, {1, 2, 3, 4, 5, 6}},
        {{1, 1, 4, 8, {9, 3}}, gray, 8, true, {9, 3}},
        {{1, 1, 6, 16, {1, 2, 3, 4, 5, 6, 7, 8}}, rgb, 16, true, {1, 2, 3, 4, 5, 6, 7, 8}},
        {{4, 1, 3, 2, {0x1B}, {1, 2, 3, 4, 5, 6, 7, 8, 9}, {50}},
         indexed,
         2,
         false,
         {0x1B},
         {1, 2, 3, 50, 4, 5, 6, 255, 7, 8, 9, 255, 0, 0, 0, 255}},
        {{3, 1, 3, 8, {0, 1, 5}, {1, 2, 3, 4, 5, 6}},
         indexed,
         8,
         false,
         {0, 1, 1},
         {1, 2, 3, 255, 4, 5, 6, 255}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        const Bytes file = test::pngOf(row.kind);
        ASSERT_FALSE(file.empty());
        const auto image = readImage(memoryOrigin(file), "it");
        ASSERT_TRUE(image);
        EXPECT_EQ(image->facts.colours, row.colours);
        EXPECT_EQ(image->facts.bits, row.bits);
        EXPECT_EQ(image->facts.hasAlpha, row.hasAlpha);
        EXPECT_EQ(image->palette,
                  std::vector<std::uint8_t>(row.palette.begin(), row.palette.end()));
        EXPECT_EQ(allOf(*image->content->open()), octets(row.samples));
    }
    EXPECT_EQ(samplesOf(interlaced()), octets({0, 1, 2, 10, 11, 12, 20, 21, 22}));
}

/// What is wrong with a file: when it is looked at, or while it is read. Empty: nothing.
std::string faultOf(const Bytes& file) {
    try {
        const auto image = readImage(memoryOrigin(file), "it");
        if (!image) {
            return "unknown";
        }
        allOf(*image->content->open());
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

/// The same file with other sizes, and a sum that does not tell.
Bytes claiming(Bytes file, std::uint32_t width, std::uint32_t height) {
    constexpr std::size_t sizes = 16;
    for (std::size_t i = 0; i < 4; ++i) {
        file[sizes + i] = static_cast<std::byte>(width >> (24 - 8 * i));
        file[sizes + 4 + i] = static_cast<std::byte>(height >> (24 - 8 * i));
    }
    std::uint32_t sum = 0xFFFFFFFF;
    for (std::size_t i = sizes - 4; i < sizes + 13; ++i) {
        sum ^= std::to_integer<std::uint32_t>(file[i]);
        for (int bit = 0; bit < 8; ++bit) {
            sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    for (std::size_t i = 0; i < 4; ++i) {
        file[sizes + 13 + i] = static_cast<std::byte>(~sum >> (24 - 8 * i));
    }
    return file;
}

TEST(PngFile, WhatIsDamagedOrTooLargeIsRefused) {
    const Bytes whole = test::pngOf({4, 40, 2, 8, Octets(480, 77)});
    EXPECT_EQ(faultOf(whole), "");
    for (std::size_t length = 0; length + 16 < whole.size(); ++length) {
        const std::string fault =
            faultOf({whole.begin(), whole.begin() + static_cast<long>(length)});
        EXPECT_FALSE(fault.empty()) << length;
        EXPECT_EQ(fault == "unknown", length > 0 && length < 4) << fault;
    }
    EXPECT_NE(faultOf(claiming(whole, 0x7FFFFFFF, 1)), "");
    EXPECT_NE(faultOf(claiming(whole, 1 << 20, 1 << 20)), "");
    EXPECT_NE(faultOf(claiming(whole, 0, 1)), "");
    EXPECT_NE(faultOf(claiming(interlaced(), 60000, 60000)), "");
    // What only claims much costs nothing until it is read.
    const auto large = readImage(memoryOrigin(claiming(whole, 30000, 30000)), "it");
    EXPECT_EQ(large->facts.width, 30000);
    EXPECT_THROW(allOf(*large->content->open()), std::exception);
    EXPECT_EQ(faultOf(octets({'G', 'I', 'F', '8', '9', 'a'})), "unknown");
}

TEST(PngWriter, WhatIsWrittenReadsAsTheSameAndIsKnownAgain) {
    std::mt19937 random(7);
    const std::array<std::uint8_t, 12> palette{1, 2, 3, 0, 4, 5, 6, 255, 7, 8, 9, 100};
    struct Row {
        ImageColours colours;
        int bits;
        bool hasAlpha = false;
    };
    for (const Row& row : {Row{ImageColours::gray, 1}, Row{ImageColours::gray, 4},
                           Row{ImageColours::gray, 16, true}, Row{ImageColours::rgb, 8},
                           Row{ImageColours::rgb, 16, true}, Row{ImageColours::indexed, 2}}) {
        ImageFacts facts{.width = 13,
                         .height = 9,
                         .colours = row.colours,
                         .bits = row.bits,
                         .hasAlpha = row.hasAlpha,
                         .key = "12-0a"};
        if (row.colours == ImageColours::indexed) {
            facts.palette = palette;
        }
        Bytes samples(static_cast<std::size_t>(rowBytes(facts) * facts.height));
        for (std::byte& sample : samples) {
            sample = static_cast<std::byte>(random());
        }
        // The bits behind a row mean nothing.
        for (std::size_t i = 0; i < samples.size();
             i += static_cast<std::size_t>(rowBytes(facts))) {
            const std::size_t last = i + static_cast<std::size_t>(rowBytes(facts)) - 1;
            const int spare = static_cast<int>(rowBytes(facts) * 8) - 13 * row.bits;
            samples[last] &= static_cast<std::byte>(row.bits < 8 ? 0xFF << spare : 0xFF);
        }
        TextSink sink;
        ImageEncoder encoder(facts, sink);
        for (std::size_t at = 0; at < samples.size();) {
            const std::size_t count = std::min<std::size_t>(1 + random() % 90, samples.size() - at);
            encoder.add(std::span(samples).subspan(at, count));
            at += count;
        }
        encoder.end();
        const Bytes file = sink.bytes();
        const auto image = readImage(memoryOrigin(file), "it");
        EXPECT_EQ(image->facts.bits, facts.bits);
        EXPECT_TRUE(std::ranges::equal(std::span(image->palette).first(facts.palette.size()),
                                       facts.palette));
        EXPECT_EQ(image->digest, encoder.digest());
        EXPECT_EQ(allOf(*image->content->open(), 1000), samples);

        EXPECT_EQ(digestOfOwnPng(*memoryOrigin(file)->open(), "12-0a"), encoder.digest());
        EXPECT_EQ(digestOfOwnPng(*memoryOrigin(file)->open(), "12-0b"), std::nullopt)
            << "that of another image";
        Bytes changed = file;
        changed[changed.size() / 2] ^= std::byte{1};
        EXPECT_EQ(digestOfOwnPng(*memoryOrigin(changed)->open(), "12-0a"), std::nullopt);
        changed.resize(20);
        EXPECT_EQ(digestOfOwnPng(*memoryOrigin(changed)->open(), "12-0a"), std::nullopt);
    }
    TextSink sink;
    ImageEncoder encoder({.width = 2, .height = 2}, sink);
    encoder.add(octets({1, 2, 3}));
    EXPECT_THROW(encoder.end(), ImageError);
    encoder.add(octets({4}));
    EXPECT_THROW(encoder.add(octets({5, 6})), ImageError);
}

TEST(PngWriter, LongFilesAreKnownAgainWhateverTheirLength) {
    // The end is looked for block by block.
    for (const int height : {4090, 4096, 4097, 9000}) {
        std::mt19937 random(1);
        const ImageFacts facts{.width = 64, .height = height};
        Bytes samples(static_cast<std::size_t>(64 * height));
        for (std::byte& sample : samples) {
            sample = static_cast<std::byte>(random());
        }
        TextSink sink;
        ImageEncoder encoder(facts, sink);
        encoder.add(samples);
        encoder.end();
        EXPECT_EQ(digestOfOwnPng(*memoryOrigin(sink.bytes())->open(), ""), encoder.digest());
    }
}

} // namespace
} // namespace corvane
