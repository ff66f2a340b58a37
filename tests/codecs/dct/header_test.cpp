#include "codecs/dct/dct.h"

#include "tests/runtime/zone_fixture.h"
#include "tests/support/jpeg_parts.h"
#include "tests/support/picture.h"

#include <functional>

namespace corvane {
namespace {

using test::decodePicture;
using test::JpegPart;
using test::JpegParts;
using test::MemorySource;
using test::Picture;

class DctHeaderTest : public ZoneTest {
protected:
    static Exception refused(std::span<const std::byte> data) {
        return raisedBy([&] {
            MemorySource source(data);
            decodePicture(source);
        });
    }
    static Picture decoded(std::span<const std::byte> data) {
        MemorySource source(data);
        Picture picture = decodePicture(source);
        EXPECT_EQ(source.taken(), data.size());
        return picture;
    }
    static JpegPart& partOf(JpegParts& parts, int marker) {
        return *std::ranges::find(parts, marker, &JpegPart::marker);
    }
};

using Change = std::function<void(JpegParts&)>;

Change without(int marker) {
    return [=](JpegParts& parts) {
        std::erase_if(parts, [&](const JpegPart& part) { return part.marker == marker; });
    };
}
Change with(const JpegPart& first) {
    return [=](JpegParts& parts) { parts.insert(parts.begin(), first); };
}
/// One byte of a part's content; -1: the content ends before it.
Change set(int marker, std::size_t place, int value) {
    return [=](JpegParts& parts) {
        JpegPart& part = *std::ranges::find(parts, marker, &JpegPart::marker);
        if (value < 0) {
            part.content.resize(place);
        } else {
            part.content.at(place) = value;
        }
    };
}

TEST_F(DctHeaderTest, WhatIsRefused) {
    const struct {
        const char* what;
        Change change;
    } cases[] = {
        {"no frame", without(0xC0)},
        {"no quantiser", without(0xDB)},
        {"no Huffman tables", without(0xC4)},
        {"no AC table", [](JpegParts& parts) { parts.erase(parts.begin() + 3); }},
        {"no DC table", [](JpegParts& parts) { parts.erase(parts.begin() + 2); }},
        {"two frames", with(test::jpeg::frame(0xC0, 8, 8))},
        {"a second image within", with({0xD8})},
        {"arithmetic conditioning", with({0xCC, {0, 0}})},
        {"number of lines", with({0xDC, {0, 8}})},
        {"hierarchical progression", with({0xDE, {8, 0, 8, 0, 8, 1, 1, 0x11, 0}})},
        {"a reserved marker", with({0x02, {0}})},
        {"12 bits", set(0xC0, 0, 12)},
        {"no height", set(0xC0, 2, 0)},
        {"no width", set(0xC0, 4, 0)},
        {"no component", set(0xC0, 5, 0)},
        {"five components", set(0xC0, 5, 5)},
        {"no sampling across", set(0xC0, 7, 0x01)},
        {"no sampling down", set(0xC0, 7, 0x10)},
        {"sampling of five", set(0xC0, 7, 0x15)},
        {"a fifth quantiser", set(0xC0, 8, 4)},
        {"a short frame", set(0xC0, 8, -1)},
        {"quantiser of another precision", set(0xDB, 0, 0x20)},
        {"quantiser 4", set(0xDB, 0, 4)},
        {"a short quantiser", set(0xDB, 64, -1)},
        {"table of another class", set(0xC4, 0, 0x20)},
        {"table 4", set(0xC4, 0, 4)},
        {"too many codes of a length", set(0xC4, 2, 5)},
        {"a table without its symbols", set(0xC4, 18, -1)},
        {"a DC difference of 16 bits", set(0xC4, 17, 16)},
        {"a short restart interval", with({0xDD, {1}})},
        {"a scan of nothing", set(0xDA, 0, 0)},
        {"a scan of two", set(0xDA, 0, 2)},
        {"a scan of another component", set(0xDA, 1, 9)},
        {"a scan with DC table 4", set(0xDA, 2, 0x40)},
        {"a scan with AC table 4", set(0xDA, 2, 0x04)},
        {"a short scan header", set(0xDA, 5, -1)},
    };
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        EXPECT_EQ(refused(test::jpegOf(test::jpeg::smallest())), Exception::none);
        for (const auto& [what, change] : cases) {
            JpegParts parts = test::jpeg::smallest();
            change(parts);
            EXPECT_EQ(refused(test::jpegOf(parts)), Exception::codec) << what;
        }
        // Lossless, hierarchical and arithmetic frames; progressive ones where the rules say so.
        for (int marker = 0xC2; marker <= 0xCF; ++marker) {
            JpegParts parts = test::jpeg::smallest();
            partOf(parts, 0xC0).marker = marker;
            partOf(parts, 0xDA).content[4] = 0;
            partOf(parts, 0xDA).bits = "10 11";
            const bool taken = marker == 0xC2 && profile == Profile::extended;
            EXPECT_EQ(refused(test::jpegOf(parts)), taken ? Exception::none : Exception::codec)
                << marker;
        }
    }
    auto data = test::jpegOf(test::jpeg::smallest());
    data[1] = std::byte{0xD9};
    EXPECT_EQ(refused(data), Exception::codec) << "an end before the start";
    data = test::jpegOf(test::jpeg::smallest());
    data[5] = std::byte{1};
    data[4] = std::byte{0};
    EXPECT_EQ(refused(data), Exception::codec) << "a length that does not hold itself";
}

TEST_F(DctHeaderTest, WhatChangesNothing) {
    const Picture plain = decoded(test::jpegOf(test::jpeg::smallest()));
    EXPECT_EQ(plain.samples.size(), 64U);
    JpegPart wide = test::jpeg::quantiser();
    wide.content = {0x10};
    for (std::size_t i = 0; i < dctBlockSize; ++i) {
        wide.content.insert(wide.content.end(), {0, 16});
    }
    const Change cases[] = {
        with({0xE0, {1, 2, 3}}),
        with({0xEF, {1}}),
        with({0xFE, {'c'}}),
        with({0xEE, {'o', 't', 'h', 'e', 'r'}}),
        with({0xDD, {0, 0, 9}}),
        with(test::jpeg::table(0x10, 4, {1, 2, 3})), // is overwritten by a later one
        [](JpegParts& parts) { partOf(parts, 0xC0).marker = 0xC1; },
        [](JpegParts& parts) { partOf(parts, 0xC0).content.push_back(77); },
        [](JpegParts& parts) { partOf(parts, 0xC0).content[7] = 0x42; }, // one component: one block
        [](JpegParts& parts) { partOf(parts, 0xDA).content[4] = 0; },
        [](JpegParts& parts) { partOf(parts, 0xDA).bits += "11111111 01010101"; },
        [&](JpegParts& parts) { partOf(parts, 0xDB) = wide; },
    };
    for (const Change& change : cases) {
        JpegParts parts = test::jpeg::smallest();
        change(parts);
        EXPECT_EQ(decoded(test::jpegOf(parts)).samples, plain.samples) << &change - cases;
    }
    auto data = test::jpegOf(test::jpeg::smallest());
    data.insert(data.begin() + 2, 3, std::byte{0xFF}); // fill
    EXPECT_EQ(decoded(data).samples, plain.samples);
    // An image without a scan has no rows.
    JpegParts empty = test::jpeg::smallest();
    empty.pop_back();
    EXPECT_TRUE(decoded(test::jpegOf(empty)).samples.empty());
    EXPECT_TRUE(decoded(test::jpegOf({})).samples.empty());
}

TEST_F(DctHeaderTest, BytesBetweenSegments) {
    const auto data = test::jpegOf(test::jpeg::smallest());
    const std::vector<std::vector<std::byte>> cases{
        {std::byte{0x17}}, {std::byte{0xFF}, std::byte{0}}, {std::byte{0xFF}, std::byte{0xD0}}};
    for (const auto& bytes : cases) {
        for (const std::ptrdiff_t place : {0, 2}) {
            auto loose = data;
            loose.insert(loose.begin() + place, bytes.begin(), bytes.end());
            selectRules(Profile::original);
            EXPECT_EQ(refused(loose), Exception::codec);
            selectRules(Profile::extended);
            EXPECT_EQ(refused(loose), Exception::none);
        }
    }
    EXPECT_EQ(refused({}), Exception::codec);
}

/// Two components of one name are those that follow one another.
TEST_F(DctHeaderTest, ComponentsAreFoundByNameOnce) {
    JpegParts parts = test::jpeg::smallest();
    partOf(parts, 0xC0) = test::jpeg::frame(0xC0, 8, 8, 2);
    partOf(parts, 0xC0).content[9] = 1;
    partOf(parts, 0xDA) = {0xDA,
                           {2, 1, 0, 1, 0, 0, 63, 0},
                           "01 1 " + test::jpeg::ac(0x00) + "01 0 " + test::jpeg::ac(0x00)};
    const Picture picture = decoded(test::jpegOf(parts));
    ASSERT_EQ(picture.samples.size(), 128U);
    EXPECT_EQ(picture.samples[0], 130); // 16 / 8 above and below the middle
    EXPECT_EQ(picture.samples[1], 126);
    partOf(parts, 0xC0).content[9] = 2;
    EXPECT_EQ(refused(test::jpegOf(parts)), Exception::codec);
}

TEST_F(DctHeaderTest, StrictDecodersRefuseApplicationValuesWithoutMeaning) {
    const auto code = [](bool strict, int flags1, int transform) {
        JpegParts parts = test::jpeg::smallest();
        parts.insert(parts.begin(),
                     {0xEE, {'M', 'o', 'r', 'e', 'l', 0, 100, 0, 0, 0, flags1, transform}});
        const auto data = test::jpegOf(parts);
        return raisedBy([&] {
            MemorySource source(data);
            const auto state = DCTInitialize();
            state->strict = strict;
            DCTDecodeOpen(*state, source);
            EXPECT_EQ(DCTDFilBuf(*state).size(), 8U);
        });
    };
    EXPECT_EQ(code(true, 0, 2), Exception::none);
    EXPECT_EQ(code(true, 0, 3), Exception::codec);
    EXPECT_EQ(code(true, 1, 0), Exception::codec);
    EXPECT_EQ(code(false, 1, 3), Exception::none);
}

/// 5 blocks, an interval of 2: markers where they belong and where they do not.
TEST_F(DctHeaderTest, RestartMarkers) {
    const std::string block = "01 1 " + test::jpeg::ac(0x00);
    const auto image = [&](std::initializer_list<int> markers) {
        JpegParts parts = test::jpeg::smallest();
        partOf(parts, 0xC0) = test::jpeg::frame(0xC0, 40, 8);
        parts.insert(parts.begin(), {0xDD, {0, 2}});
        partOf(parts, 0xDA).bits = block + block;
        for (const int marker : markers) {
            parts.push_back({marker, {}, block + block});
        }
        return test::jpegOf(parts);
    };
    // Each interval begins at the middle again.
    const Picture good = decoded(image({0xD0, 0xD1}));
    for (std::size_t x = 0; x < 40; ++x) {
        EXPECT_EQ(good.samples[x], x / 8 % 2 == 0 ? 130 : 132) << x;
    }
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        for (const auto& wrong : {image({0xD1, 0xD2}), image({0xD0, 0xD0}), image({0xD0}),
                                  image({}), image({0xD0, 0xC4})}) {
            EXPECT_EQ(refused(wrong), Exception::codec);
        }
    }
    // Bytes before a marker and fill: the marker counts.
    auto loose = image({0xD0, 0xD1});
    const auto marker = std::ranges::find(loose, std::byte{0xD0});
    loose.insert(marker, {std::byte{0xFF}, std::byte{0xFF}});
    EXPECT_EQ(decoded(loose).samples, good.samples);
    const auto second = std::ranges::find(loose, std::byte{0xD1});
    loose.insert(second - 1, {std::byte{0x12}, std::byte{0x34}});
    EXPECT_EQ(decoded(loose).samples, good.samples);
}

} // namespace
} // namespace corvane
