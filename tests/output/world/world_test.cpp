#include "output/world/picture.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace corvane {
namespace {

class WorldTest : public ZoneTest {};

TEST_F(WorldTest, SizesAreLimited) {
    struct Case {
        std::int32_t width;
        std::int32_t height;
        std::int32_t depth;
        bool isMade;
    };
    for (const auto& [width, height, depth, isMade] :
         {Case{10, 2, 8, true}, Case{10, 2, 1, true}, Case{10, 2, 32, true}, Case{10, 2, 4, false},
          Case{0, 2, 8, false}, Case{10, -1, 8, false}, Case{32768, 1, 8, false},
          Case{2048, 2048, 8, true}, Case{2048, 2049, 8, false}}) {
        EXPECT_EQ(allocateWorld(width, height, depth, imageTables) != nullptr, isMade)
            << width << " " << height << " " << depth;
    }
    EXPECT_EQ(allocateWorld(1, 1, 8, 5), nullptr);
}

TEST_F(WorldTest, NullWorldsDoNothing) {
    paintWorld(nullptr, {}, 0);
    copyWorld(nullptr, {}, nullptr, {}, CopyMode::copy);
    sampleWorld(nullptr, nullptr, 8);
    finderWorld(nullptr);
    EXPECT_TRUE(pixelWorld(1, 1, nullptr).empty());
    EXPECT_TRUE(indexWorld(nullptr, 8, previewTables).empty());
    EXPECT_FALSE(handleWorld(1, 1, nullptr));
}

TEST_F(WorldTest, PixelsComeWithoutPadding) {
    const WorldOwner world = allocateWorld(10, 2, 8, previewTables);
    ASSERT_EQ(world->rowBytes, 12);
    paintWorld(world.get(), {.left = 9, .top = 0, .right = 99, .bottom = 99}, 0);
    const std::vector<std::byte> pixels = pixelWorld(10, 2, world.get());
    EXPECT_EQ(pixels.size(), 20U);
    EXPECT_EQ(pixels[8], std::byte{0});
    EXPECT_EQ(pixels[9], std::byte{255});
    EXPECT_EQ(pixels[19], std::byte{255});
    EXPECT_EQ(indexWorld(world.get(), 8, previewTables).size(), 768U);
}

TEST_F(WorldTest, ColoursOfEveryDepthAreTheNearest) {
    struct Case {
        std::int32_t depth;
        std::uint32_t given;
        std::uint32_t kept;
    };
    for (const auto& [depth, given, kept] :
         {Case{32, 0x123456, 0x123456}, Case{8, 0xFF3300, 0xFF3300}, Case{8, 0x111111, 0x111111},
          Case{8, 0xFE3201, 0xFF3300}, Case{1, 0x404040, 0}, Case{1, 0xE0E000, 0xFFFFFF}}) {
        const WorldOwner world = allocateWorld(9, 1, depth, imageTables);
        world->setColour(8, 0, given);
        EXPECT_EQ(world->colour(8, 0), kept) << depth << " " << given;
        EXPECT_EQ(world->colour(7, 0), 0xFFFFFFU);
    }
}

TEST_F(WorldTest, InkAddsAndClears) {
    struct Case {
        CopyMode mode;
        std::uint32_t there;
        std::uint32_t drawn;
        std::uint32_t result;
    };
    for (const auto& [mode, there, drawn, result] :
         {Case{CopyMode::copy, 0, 0x00FF00, 0x00FF00},
          Case{CopyMode::inkAdds, 0xFFFFFF, 0x00FF00, 0x00FF00},
          Case{CopyMode::inkAdds, 0xFF0000, 0x00FF00, 0},
          Case{CopyMode::inkClears, 0x123456, 0, 0xFFFFFF},
          Case{CopyMode::inkClears, 0x123456, 0xFFFFFF, 0x123456}}) {
        const WorldOwner source = allocateWorld(1, 1, 32, imageTables);
        const WorldOwner world = allocateWorld(1, 1, 32, imageTables);
        source->setColour(0, 0, drawn);
        world->setColour(0, 0, there);
        copyWorld(source.get(), source->frame, world.get(), world->frame, mode);
        EXPECT_EQ(world->colour(0, 0), result) << result;
    }
}

TEST_F(WorldTest, PicturesAreReadAsWholeOrNotAtAll) {
    const WorldOwner world = allocateWorld(3, 2, 8, imageTables);
    paintWorld(world.get(), {.right = 1, .bottom = 2}, 0x00FF00);
    const Handle handle = makePicture(*world);
    ASSERT_TRUE(handle);
    const std::vector<std::byte> bytes((*handle).get(), (*handle).get() + GetHandleSize(handle));
    DisposeHandle(handle);
    const auto picture = readPicture(bytes);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->frame, (PixelFrame{.right = 3, .bottom = 2}));
    const WorldOwner again = allocateWorld(6, 4, 8, previewTables);
    pictureWorld(*picture, again->frame, again.get());
    EXPECT_EQ(again->colour(1, 3), 0x00FF00U);
    EXPECT_EQ(again->colour(2, 3), 0xFFFFFFU);

    const auto changed = [&](std::size_t at, int value) {
        std::vector<std::byte> other = bytes;
        other[at] = static_cast<std::byte>(value);
        return readPicture(other).has_value();
    };
    EXPECT_FALSE(changed(0, 'x'));  // another mark
    EXPECT_FALSE(changed(9, 3));    // three rows
    EXPECT_FALSE(changed(8, 0x80)); // a bottom above the top
    EXPECT_FALSE(changed(7, 3));    // no column
    EXPECT_FALSE(readPicture(std::span(bytes).first(bytes.size() - 1)));
    EXPECT_FALSE(readPicture({}));
}

} // namespace
} // namespace corvane
