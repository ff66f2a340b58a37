#include "filters/pixels/space.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

#include <vector>

namespace corvane {
namespace {

using namespace test;

class SpaceTest : public ZoneTest {
protected:
    static std::vector<std::uint32_t> palette(std::size_t count) {
        std::vector<std::uint32_t> colours;
        for (std::size_t i = 0; i < count; ++i) {
            colours.push_back(static_cast<std::uint32_t>(i * 0x010305U + 7));
        }
        return colours;
    }

    /// One call of `blockSpace`; the output, whose room is `room` bytes.
    static std::string block(Filter& filter, std::string_view input, std::size_t room) {
        std::string output(room, '?');
        blockSpace(std::as_writable_bytes(std::span(output)), bytesOf(input),
                   dynamic_cast<SpaceFilter&>(filter));
        return output;
    }
};

std::string bytes(std::initializer_list<int> list) {
    std::string text;
    for (const int value : list) {
        text += static_cast<char>(value);
    }
    return text;
}

TEST_F(SpaceTest, ConvertsPixels) {
    struct Row {
        ImageSpace space;
        std::string input;
        std::string wanted;
    };
    const Row rows[] = {
        {ImageSpace::mask, bytes({0x80, 0, 1}), bytes({0x80, 0, 1})},
        {ImageSpace::gray, bytes({0x80, 255}), bytes({0, 0x80, 0x80, 0x80, 0, 255, 255, 255})},
        {ImageSpace::rgb, bytes({1, 2, 3, 4, 5, 6}), bytes({0, 1, 2, 3, 0, 4, 5, 6})},
        {ImageSpace::cmyk, bytes({0, 0, 0, 255, 0x80, 0, 1, 0x90}),
         bytes({0, 0, 0, 0, 0, 0, 0x6F, 0x6E})},
        {ImageSpace::indexed, bytes({15, 200}), bytes({0, 0x0F, 0x2D, 0x52, 0, 0x0F, 0x2D, 0x52})},
    };
    for (const Row& row : rows) {
        const FilterOwner filter = setupSpace(row.space, 15, palette(16));
        EXPECT_EQ(block(*filter, row.input, row.wanted.size()), row.wanted)
            << static_cast<int>(row.space);
    }
}

TEST_F(SpaceTest, InkIsTakenFromWhiteAndNeverBelowBlack) {
    std::string input;
    std::string wanted;
    for (int ink = 0; ink < 256; ++ink) {
        for (int black = 0; black < 256; ++black) {
            input += bytes({ink, 255 - ink, 0, black});
            wanted += bytes({0, 255 - std::min(255, ink + black),
                             255 - std::min(255, 255 - ink + black), 255 - black});
        }
    }
    const FilterOwner filter = setupSpace(ImageSpace::cmyk);
    EXPECT_TRUE(block(*filter, input, wanted.size()) == wanted);
}

TEST_F(SpaceTest, ABlockMayEndInsideAPixel) {
    const FilterOwner filter = setupSpace(ImageSpace::rgb);
    EXPECT_EQ(block(*filter, "rgb", 3), bytes({0, 'r', 'g'}));
    EXPECT_EQ(block(*filter, "RGB", 2), bytes({'b', 0}));
    EXPECT_EQ(block(*filter, "", 3), "RGB");
    EXPECT_EQ(raisedBy([&] { block(*filter, "rgb", 8); }), Exception::type);
    EXPECT_EQ(raisedBy([&] { block(*filter, "rgbrg", 4); }), Exception::type);
    EXPECT_EQ(raisedBy([&] { block(*filter, "rg", 4); }), Exception::type);
    EXPECT_EQ(block(*filter, "", 0), "");
}

TEST_F(SpaceTest, ReadsTheSameInPiecesOfAnySize) {
    const std::string data = someBytes(24'000) + "x"; // the last pixel is cut short
    for (const ImageSpace space : {ImageSpace::mask, ImageSpace::gray, ImageSpace::rgb,
                                   ImageSpace::cmyk, ImageSpace::indexed}) {
        const auto setup = [&] { return setupSpace(space, 99, palette(100)); };
        const std::size_t size = space == ImageSpace::rgb ? 3 : space == ImageSpace::cmyk ? 4 : 1;
        const std::size_t pixels = data.size() / size;
        const FilterOwner whole = setup();
        const std::string wanted = block(*whole, std::string_view(data).substr(0, pixels * size),
                                         pixels * (space == ImageSpace::mask ? 1 : 4));
        for (const std::size_t chunk : chunkSizes) {
            Chain chain;
            chain.link(std::make_unique<MemoryFilter>(bytesOf(data)));
            chain.link(setup());
            ASSERT_TRUE(readAll(*chain.top(), chunk) == wanted) << chunk;
            if (space == ImageSpace::rgb) {
                seekFilter(*chain.top(), 3);
                EXPECT_EQ(readSome(*chain.top(), 6), wanted.substr(4, 6));
                EXPECT_EQ(seekFilter(*chain.top(), 0), 0); // what is left of a pixel goes
                EXPECT_EQ(readSome(*chain.top(), 5), wanted.substr(0, 5));
                EXPECT_EQ(markFilter(*chain.top()), 6);
            }
        }
    }
}

TEST_F(SpaceTest, RefusesWhatItCannotBe) {
    for (const int space : {0, 6, -1}) {
        EXPECT_EQ(raisedBy([&] { setupSpace(static_cast<ImageSpace>(space)); }), Exception::type);
    }
    EXPECT_EQ(raisedBy([] { setupSpace(ImageSpace::indexed, 16, palette(16)); }), Exception::type);
    EXPECT_EQ(raisedBy([] { setupSpace(ImageSpace::indexed, UINT32_MAX, palette(16)); }),
              Exception::type);
    std::string store;
    Chain chain;
    chain.link(std::make_unique<SinkFilter>(store));
    chain.link(setupSpace(ImageSpace::gray));
    EXPECT_EQ(raisedBy([&] { writeFilter(*chain.top(), bytesOf("x")); }), Exception::limit);
    EXPECT_EQ(raisedBy([&] { callFilter(*chain.top(), static_cast<Operation>(6)); }),
              Exception::type);
}

TEST_F(SpaceTest, NamesBothWays) {
    struct Row {
        const char* full;
        const char* abbreviated;
        ImageSpace space;
        std::int32_t components;
        bool direct;
    };
    for (const Row& row : {Row{"DeviceGray", "G", ImageSpace::gray, 1, true},
                           {"DeviceRGB", "RGB", ImageSpace::rgb, 3, true},
                           {"DeviceCMYK", "CMYK", ImageSpace::cmyk, 4, true},
                           {"Indexed", "I", ImageSpace::indexed, 1, false}}) {
        for (const char* name : {row.full, row.abbreviated}) {
            const NamedSpace named = name2space(name);
            EXPECT_EQ(named.space, row.space);
            EXPECT_EQ(named.components, row.components);
            EXPECT_EQ(named.direct, row.direct);
        }
        EXPECT_EQ(space2name(row.space), row.full);
    }
    for (const char* name : {"Pattern", "", "devicegray", "DeviceGray "}) {
        EXPECT_EQ(raisedBy([&] { name2space(name); }), Exception::structure) << name;
    }
    EXPECT_EQ(raisedBy([] { space2name(ImageSpace::mask); }), Exception::structure);
    for (const int space : {0, 6}) {
        EXPECT_EQ(raisedBy([&] { space2name(static_cast<ImageSpace>(space)); }), Exception::type);
    }
}

} // namespace
} // namespace corvane
