#include "codecs/dct/dct.h"

#include "tests/runtime/zone_fixture.h"
#include "tests/support/picture.h"

#include <functional>

namespace corvane {
namespace {

using test::Picture;

class DctEncoderTest : public ZoneTest {
protected:
    /// The content of the first segment of a marker, with its length.
    static std::vector<int> segment(const std::vector<std::byte>& data, int marker) {
        std::size_t at = 2;
        while (at + 4 <= data.size()) {
            const auto byte = [&](std::size_t i) { return std::to_integer<int>(data[at + i]); };
            const auto length = static_cast<std::size_t>(byte(2) << 8 | byte(3));
            if (byte(1) == marker) {
                std::vector<int> content;
                for (std::size_t i = 2; i < length + 2; ++i) {
                    content.push_back(byte(i));
                }
                return content;
            }
            at += length + 2;
        }
        return {};
    }
};

TEST_F(DctEncoderTest, SettingsThatNoHeaderCanSay) {
    const struct {
        const char* what;
        std::function<void(DctSettings&)> change;
    } cases[] = {
        {"no component", [](DctSettings& s) { s.components = 0; }},
        {"five components", [](DctSettings& s) { s.components = 5; }},
        {"no width", [](DctSettings& s) { s.width = 0; }},
        {"no height", [](DctSettings& s) { s.height = 0; }},
        {"a width of 17 bits", [](DctSettings& s) { s.width = 65536; }},
        {"no sampling",
         [](DctSettings& s) {
             s.sampling[1] = {0, 1};
         }},
        {"no sampling down",
         [](DctSettings& s) {
             s.sampling[1] = {1, 0};
         }},
        {"sampling of five",
         [](DctSettings& s) {
             s.sampling[0] = {1, 5};
         }},
        {"eleven blocks in a unit",
         [](DctSettings& s) {
             s.sampling = {{{3, 3}, {1, 1}, {1, 1}, {1, 1}}};
         }},
        {"a negative quality", [](DctSettings& s) { s.quality = -1; }},
        {"three quantisers", [](DctSettings& s) { s.quantisers.resize(3); }},
        {"three tables",
         [](DctSettings& s) {
             s.dcCodes.resize(3);
             s.acCodes.resize(3);
         }},
        {"DC tables alone", [](DctSettings& s) { s.dcCodes = {dctBuiltInDc[0]}; }},
        {"a code that does not fit",
         [](DctSettings& s) {
             s.dcCodes = {{.counts = {3}}};
             s.acCodes = {dctBuiltInAc[0]};
         }},
        {"an interval of 17 bits", [](DctSettings& s) { s.restartInterval = 65536; }},
    };
    for (const auto& [what, change] : cases) {
        DctSettings settings{.components = 3, .width = 8, .height = 8};
        change(settings);
        test::MemorySink sink;
        EXPECT_EQ(raisedBy([&] {
                      const auto state = DCTInitialize();
                      state->settings = settings;
                      DCTEncodeOpen(*state, sink);
                  }),
                  Exception::codec)
            << what;
        EXPECT_TRUE(sink.data.empty()) << what;
    }
}

/// Which components have the second quantiser and the second pair of Huffman tables.
TEST_F(DctEncoderTest, TablesFollowTransformAndSampling) {
    const struct {
        std::size_t components;
        std::vector<int> second;
        std::uint16_t first; ///< of the second quantiser, if there is one
        bool transform;
        std::array<DctSampling, 4> sampling{};
    } cases[] = {
        {1, {0}, 0, false},
        {1, {0}, 0, true, {{{2, 2}}}},
        {3, {0, 1, 1}, qkroma[2], true},
        {3, {0, 1, 1}, qkroma_ds[3], true, {{{2, 1}, {1, 1}, {1, 1}}}},
        {3, {0, 0, 0}, 0, false},
        {3, {0, 1, 0}, qkroma_ds[3], false, {{{2, 2}, {1, 2}, {2, 2}}}},
        {4, {0, 1, 1, 0}, qkroma[2], true},
        {4, {1, 1, 1, 0}, qkroma_ds[3], false, {{{1, 1}, {1, 1}, {1, 1}, {1, 2}}}},
    };
    for (const auto& one : cases) {
        DctSettings settings;
        settings.transform = one.transform;
        settings.sampling = one.sampling;
        const Picture picture = test::photograph(40, 30, one.components);
        const auto data = test::encodePicture(picture, settings);
        const std::vector<int> frame = segment(data, 0xC0);
        const std::vector<int> scan = segment(data, 0xDA);
        std::vector<int> quantisers;
        for (std::size_t i = 0; i < one.components; ++i) {
            quantisers.push_back(frame.at(8 + 3 * i + 2));
            EXPECT_EQ(scan.at(3 + 2 * i + 1), quantisers.back() * 0x11);
        }
        EXPECT_EQ(quantisers, one.second) << &one - cases;
        const std::vector<int> tables = segment(data, 0xDB);
        ASSERT_EQ(tables.size(), one.first == 0 ? 67U : 132U);
        EXPECT_EQ(tables[3], qluma[0]);
        if (one.first != 0) {
            EXPECT_EQ(tables[68 + (one.first == qkroma[2] ? 2 : 3)], one.first);
        }
        const auto peer = test::readWithPeer(data, test::PeerColour::asStored);
        EXPECT_TRUE(peer.clean) << &one - cases;
    }
}

TEST_F(DctEncoderTest, FlagsOfTheHeader) {
    const Picture picture = test::photograph(16, 16, 3);
    DctSettings settings;
    settings.extendedFrame = true;
    settings.extendedRange = true;
    auto data = test::encodePicture(picture, settings);
    EXPECT_TRUE(segment(data, 0xC0).empty());
    EXPECT_EQ(segment(data, 0xC1).size(), 17U);
    EXPECT_EQ(segment(data, 0xEE),
              (std::vector<int>{0, 14, 'M', 'o', 'r', 'e', 'l', 0, 100, 0x80, 0, 0, 0, 0}));
    EXPECT_TRUE(segment(data, 0xDD).empty());
    settings = {};
    settings.transform = true;
    settings.suppressApplication = true;
    settings.restartInterval = 0x102;
    data = test::encodePicture(picture, settings);
    EXPECT_TRUE(segment(data, 0xEE).empty());
    EXPECT_EQ(segment(data, 0xDD), (std::vector<int>{0, 4, 1, 2}));
}

/// One's own tables: scaled and written as the built-in ones are, and used.
TEST_F(DctEncoderTest, TablesOfOnesOwn) {
    const Picture picture = test::photograph(33, 17, 3);
    DctSettings settings;
    settings.transform = true;
    settings.quality = 1 << 15;
    settings.quantisers.resize(1);
    settings.quantisers[0].fill(9);
    settings.dcCodes = {dctBuiltInDc[1]};
    settings.acCodes = {dctBuiltInAc[1]};
    const auto data = test::encodePicture(picture, settings);
    const std::vector<int> tables = segment(data, 0xDB);
    EXPECT_EQ(std::vector<int>(tables.begin() + 3, tables.begin() + 67), std::vector<int>(64, 5));
    EXPECT_EQ(std::vector<int>(tables.begin() + 68, tables.end()), std::vector<int>(64, 5));
    const auto peer = test::readWithPeer(data, test::PeerColour::converted);
    EXPECT_TRUE(peer.clean);
    EXPECT_GT(test::signalToNoise(peer.picture, picture), 35);
    // A code for differences of none alone cannot say a picture.
    settings.dcCodes = {{.counts = {1}}};
    EXPECT_EQ(raisedBy([&] { test::encodePicture(picture, settings); }), Exception::codec);
}

TEST_F(DctEncoderTest, RowsThatAreMissingAreTheLastAndRowsBehindAreNone) {
    Picture picture = test::photograph(20, 20, 1);
    const auto whole = [&](std::size_t rows) {
        test::MemorySink sink;
        const auto state = DCTInitialize();
        state->settings = {.components = 1, .width = 20, .height = 20};
        DCTEncodeOpen(*state, sink);
        for (std::size_t y = 0; y < rows; ++y) {
            std::ranges::copy(picture.row(std::min<std::size_t>(y, 19)), state->row.begin());
            DCTEFlush(*state);
        }
        DCTfree(*state);
        return std::move(sink.data);
    };
    const auto good = whole(20);
    EXPECT_EQ(whole(27), good);
    const auto cut = whole(11);
    for (std::size_t y = 11; y < 20; ++y) {
        std::copy_n(picture.row(10).begin(), 20,
                    picture.samples.begin() + static_cast<std::ptrdiff_t>(y) * 20);
    }
    EXPECT_EQ(cut, whole(20));
    EXPECT_NE(cut, good);
}

} // namespace
} // namespace corvane
