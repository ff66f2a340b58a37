// What stands in front of a JPEG's samples.
#include "app/images/image_error.h"
#include "app/images/image_file.h"
#include "app/images/jpeg_header.h"

#include "tests/app/images/png_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace corvane {
namespace {

using test::octets;
using test::Octets;

Octets operator+(Octets one, const Octets& other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

const Octets start{0xFF, 0xD8};

Octets segment(int marker, const Octets& bytes) {
    const int length = static_cast<int>(bytes.size()) + 2;
    return Octets{0xFF, marker, length >> 8, length & 0xFF} + bytes;
}

/// 5 pixels wide, 258 high.
Octets frame(int marker, int components, int bits = 8) {
    Octets bytes{bits, 1, 2, 0, 5, components};
    for (int i = 0; i < components; ++i) {
        bytes = bytes + Octets{i, 0x11, 0};
    }
    return segment(marker, bytes);
}

/// An Orientation behind another entry of the directory.
Octets exif(bool lowFirst, int value) {
    const auto two = [&](int number) {
        return lowFirst ? Octets{number & 0xFF, number >> 8} : Octets{number >> 8, number & 0xFF};
    };
    const auto four = [&](int number) {
        return lowFirst ? two(number) + Octets{0, 0} : Octets{0, 0} + two(number);
    };
    const Octets order = lowFirst ? Octets{'I', 'I'} : Octets{'M', 'M'};
    return Octets{'E', 'x', 'i', 'f', 0, 0} + order + two(42) + four(8) + two(2) + two(0x100) +
           two(3) + four(1) + four(9) + two(0x112) + two(3) + four(1) + two(value) + two(0);
}

std::optional<JpegHeader> headerOf(const Octets& file) {
    try {
        return readJpegHeader(*memoryOrigin(octets(file))->open());
    } catch (const ImageError&) {
        return std::nullopt;
    }
}

TEST(JpegHeader, SaysSizeColoursAndHowTheCameraWasHeld) {
    const Octets other = segment(0xE0, Octets(40, 0xFF)) + segment(0xDB, Octets(65, 1));
    struct Row {
        Octets file;
        ImageColours colours;
        Orientation orientation = upright;
        bool isInverted = false;
    };
    for (const Row& row :
         {Row{start + frame(0xC0, 1), ImageColours::gray},
          Row{start + other + frame(0xC2, 3), ImageColours::rgb},
          Row{start + Octets{0xFF, 0xFF, 0xFF} + segment(0xEE, {1}) + frame(0xC1, 4),
              ImageColours::cmyk},
          Row{start + segment(0xEE, {'A', 'd', 'o', 'b', 'e', 0, 0, 0, 0, 0, 0, 2}) +
                  frame(0xC1, 4),
              ImageColours::cmyk, upright, true},
          Row{start + segment(0xE1, exif(true, 6)) + frame(0xC0, 3), ImageColours::rgb, 6},
          Row{start + segment(0xE1, exif(true, 6)) + segment(0xE1, exif(true, 3)) + frame(0xC0, 3),
              ImageColours::rgb, 6},
          Row{start + frame(0xC0, 4) +
                  segment(0xEE, {'A', 'd', 'o', 'b', 'e', 0, 0, 0, 0, 0, 0, 0}),
              ImageColours::cmyk, upright, true},
          Row{start + segment(0xE1, exif(false, 3)) + frame(0xC0, 3), ImageColours::rgb, 3},
          Row{start + segment(0xE1, exif(false, 9)) + frame(0xC0, 3), ImageColours::rgb}}) {
        const auto header = headerOf(row.file);
        ASSERT_TRUE(header);
        EXPECT_EQ(header->facts.width, 5);
        EXPECT_EQ(header->facts.height, 258);
        EXPECT_EQ(header->facts.coding, ImageCoding::jpeg);
        EXPECT_EQ(header->facts.colours, row.colours);
        EXPECT_EQ(header->facts.isInverted, row.isInverted);
        EXPECT_EQ(header->orientation, row.orientation);
    }
}

TEST(JpegHeader, WhatMisleadsIsRefused) {
    for (const Octets& wrong :
         {Octets{0xFF, 0xE0, 0, 0}, Octets{0xFF, 0xE0, 0, 1}, Octets{0xFF, 0xE0, 0xFF, 0xFF},
          Octets{0xFF, 0xC0, 0, 4, 8}, Octets{0, 0, 0, 0}, Octets{0xFF, 0xD9, 0, 2},
          segment(0xDA, Octets(10, 0)) + frame(0xC0, 1), frame(0xC3, 3), frame(0xC9, 3),
          frame(0xC0, 2), frame(0xC0, 3, 12), segment(0xC0, {8, 0, 0, 0, 5, 1, 0, 0x11, 0}),
          segment(0xC0, {8, 0, 1, 0, 5, 3, 0, 0x11, 0})}) {
        EXPECT_FALSE(headerOf(start + wrong)) << wrong[1];
    }
    EXPECT_FALSE(headerOf(start + Octets(100'000, 0xFF))) << "fill bytes have an end";
    // Places outside the segment, and entries that it has no room for.
    for (const Octets& bytes : {exif(true, 6), exif(false, 6)}) {
        for (std::size_t i = 6; i < bytes.size(); ++i) {
            Octets changed = bytes;
            changed[i] = 0xFF;
            const auto header = headerOf(start + segment(0xE1, changed) + frame(0xC0, 1));
            EXPECT_TRUE(header && header->orientation >= 1 && header->orientation <= 8) << i;
            const Octets cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(i));
            EXPECT_TRUE(headerOf(start + segment(0xE1, cut) + frame(0xC0, 1))) << i;
        }
    }
}

const Octets scan = segment(0xDA, {1, 0, 0, 0, 63, 0}) + Octets{5, 0xFF, 0, 0xD9, 6};
const Octets ending{0xFF, 0xD9};

TEST(JpegFile, OneWithoutItsEndIsCutShort) {
    const Octets preview = segment(0xE2, start + ending);
    const Octets front = start + preview + frame(0xC0, 1);
    for (const auto& [file, isCut] :
         {std::pair(front + scan + ending, false), std::pair(front + scan + ending + start, false),
          std::pair(front + scan + Octets(300'000, 1) + ending, false), std::pair(front, true),
          std::pair(front + scan, true), std::pair(front + scan + Octets{0xFF}, true)}) {
        const auto image = readImage(memoryOrigin(octets(file)), "it");
        ASSERT_TRUE(image);
        EXPECT_EQ(image->isCutShort, isCut) << file.size();
    }
    // The end lies across two blocks.
    constexpr std::size_t blockSize = std::size_t{256} << 10;
    const Octets fill(blockSize - front.size() - scan.size() - 1, 1);
    EXPECT_FALSE(readImage(memoryOrigin(octets(front + scan + fill + ending)), "it")->isCutShort);
}

/// Another file each time that it is opened; then the last one.
class ChangingOrigin final : public ByteOrigin {
public:
    explicit ChangingOrigin(std::vector<std::vector<std::byte>> files) : files_(std::move(files)) {}
    std::unique_ptr<ByteSource> open() const override {
        const std::size_t now = std::min(opened_++, files_.size() - 1);
        return memoryOrigin(files_[now])->open();
    }

private:
    std::vector<std::vector<std::byte>> files_;
    mutable std::size_t opened_ = 0;
};

TEST(ImageFile, OneThatChangesAfterItsHeaderWasReadIsNoticed) {
    const auto palette = [](int red) {
        return test::pngOf({2, 1, 3, 1, {0x40}, {red, 2, 3, 4, 5, 6}});
    };
    const auto png = [](int last) {
        return test::pngOf({1, 300, 0, 8, Octets(299, 7) + Octets{last}});
    };
    const auto jpeg = [](int components, int last) {
        return octets(start + frame(0xC0, components) + scan + Octets{last} + ending);
    };
    for (const auto& [first, second] :
         {std::pair(palette(1), palette(9)), std::pair(png(1), png(2)),
          std::pair(jpeg(1, 1), jpeg(1, 2)), std::pair(jpeg(1, 1), jpeg(3, 1))}) {
        for (const bool changes : {false, true}) {
            const auto image = readImage(
                std::make_shared<ChangingOrigin>(std::vector{first, changes ? second : first}),
                "it");
            std::string fault;
            try {
                std::vector<std::byte> all(100'000);
                image->content->open()->read(all);
            } catch (const std::exception& error) {
                fault = error.what();
            }
            EXPECT_EQ(fault, changes ? "it has changed while it was read" : "");
        }
    }
}

} // namespace
} // namespace corvane
