#include "codecs/dct/dct.h"

#include "runtime/warning.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/picture.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace corvane {
namespace {

using test::decodePicture;
using test::encodePicture;
using test::MemorySource;
using test::PeerColour;
using test::Picture;

class DctCodec : public ZoneTest {
protected:
    static Picture decoded(std::span<const std::byte> data, std::size_t longest = SIZE_MAX) {
        MemorySource source(data, longest);
        return decodePicture(source);
    }
    static Exception refused(std::span<const std::byte> data) {
        return raisedBy([&] { decoded(data); });
    }
    static std::vector<std::byte> coded(const Picture& picture, DctSettings settings = {}) {
        settings.quality = 1 << 14;
        return encodePicture(picture, std::move(settings));
    }
    static std::size_t find(const std::vector<std::byte>& data, int marker) {
        for (std::size_t i = 0; i + 1 < data.size(); ++i) {
            if (data[i] == std::byte{0xFF} && data[i + 1] == static_cast<std::byte>(marker)) {
                return i;
            }
        }
        return data.size();
    }
};

/// Both directions against the peer: every pair of sampling factors of the first component, one to
/// four components, odd sizes, with and without restarts.
TEST_F(DctCodec, EverySamplingIsWhatThePeerReads) {
    for (std::size_t components = 1; components <= 4; ++components) {
        const Picture picture = test::photograph(53, 37, components);
        for (std::uint8_t across = 1; across <= 4; ++across) {
            for (std::uint8_t down = 1; down <= 4; ++down) {
                if (components > 1 && std::size_t{across} * down + components - 1 > 10) {
                    continue;
                }
                DctSettings settings;
                settings.sampling[0] = {across, down};
                settings.restartInterval = across % 2 == 0 ? 3 : 0;
                const auto data = coded(picture, settings);
                MemorySource source(data, 17);
                const Picture ours = decodePicture(source);
                EXPECT_EQ(source.taken(), data.size());
                if (components == 3) {
                    // APP14 says 0: nothing is converted.
                    EXPECT_GT(test::signalToNoise(picture, ours), 20);
                }
                const auto peer = test::readWithPeer(data, PeerColour::asStored);
                ASSERT_TRUE(peer.clean) << components << ' ' << +across << ' ' << +down;
                EXPECT_LE(test::largestDifference(ours, peer.picture), 1)
                    << components << ' ' << +across << ' ' << +down;
            }
        }
    }
}

TEST_F(DctCodec, FractionalSamplingFactorsReplicate) {
    const Picture picture = test::photograph(50, 40, 2);
    DctSettings settings;
    settings.sampling = {{{3, 1}, {2, 2}}};
    const Picture back = decoded(coded(picture, settings));
    EXPECT_EQ(back.samples.size(), picture.samples.size());
    EXPECT_GT(test::signalToNoise(picture, back), 20);
}

/// Same tables and sampling as the peer: as large and as good.
TEST_F(DctCodec, EncoderIsAsGoodAsThePeers) {
    const Picture picture = test::photograph(640, 480, 3);
    for (const std::uint8_t factor : {std::uint8_t{1}, std::uint8_t{2}}) {
        for (const Fixed quality : {1 << 13, 1 << 15, 1 << 16}) {
            DctSettings settings;
            settings.transform = true;
            settings.quality = quality;
            settings.sampling[0] = {factor, factor};
            const auto ours = encodePicture(picture, settings);
            const auto theirs = test::encodeWithPeer(picture, settings);
            EXPECT_NEAR(static_cast<double>(ours.size()), static_cast<double>(theirs.size()),
                        0.01 * static_cast<double>(theirs.size()));
            const auto noise = [&](std::span<const std::byte> data) {
                const auto read = test::readWithPeer(data, PeerColour::converted);
                EXPECT_TRUE(read.clean);
                return test::signalToNoise(read.picture, picture);
            };
            EXPECT_NEAR(noise(ours), noise(std::as_bytes(std::span(theirs))), 0.1);
        }
    }
}

TEST_F(DctCodec, HeaderHoldsItsSegmentsInOrder) {
    DctSettings settings;
    settings.components = 3;
    settings.width = 20;
    settings.height = 20;
    settings.transform = true;
    settings.restartInterval = 2;
    settings.markerBytes = {std::byte{0xFF}, std::byte{0xFE}, std::byte{0}, std::byte{2}};
    test::MemorySink sink;
    const auto state = DCTInitialize();
    state->settings = settings;
    DCTEncodeOpen(*state, sink);
    DCTfree(*state);
    const std::vector<std::byte>& data = sink.data;
    std::string text;
    for (const std::byte b : data) {
        text.push_back(static_cast<char>(b));
    }
    using namespace std::string_literals;
    EXPECT_EQ(text.substr(0, 22), "\xFF\xD8\xFF\xFE\0\x02\xFF\xEE\0\x0EMorel\0\x64\0\0\0\0\x01"s);
    EXPECT_EQ(text.substr(22, 9), "\xFF\xDB\0\x84\0\x12\x0C\x0D\x0D"s);
    EXPECT_EQ(text[22 + 4 + 65], '\x01');
    EXPECT_EQ(text.substr(22 + 4 + 66, 4), "\x13\x14\x14\x1A"s);
    std::size_t last = 0;
    for (const int marker : {0xDB, 0xC0, 0xC4, 0xDD, 0xDA, 0xD9}) {
        EXPECT_GT(find(data, marker), last) << marker;
        last = find(data, marker);
    }
    EXPECT_EQ(last, data.size() - 2);
}

TEST_F(DctCodec, QualityScalesTheTables) {
    const Picture grey = test::photograph(8, 8, 1);
    const auto table = [&](Fixed quality) {
        DctSettings settings;
        settings.quality = quality;
        settings.suppressApplication = true;
        const auto data = encodePicture(grey, settings);
        EXPECT_EQ(std::to_integer<int>(data[5]), 67); // one table
        return std::vector<std::byte>(data.begin() + 7, data.begin() + 71);
    };
    EXPECT_EQ(table(1 << 15)[1], std::byte{6});
    EXPECT_EQ(table(1 << 15)[2], std::byte{7}); // 6.5
    EXPECT_EQ(table(0)[0], std::byte{1});
    EXPECT_EQ(table(10 << 16)[63], std::byte{255});
}

TEST_F(DctCodec, ApplicationSegmentDecidesTheColour) {
    const Picture picture = test::photograph(40, 24, 3);
    DctSettings settings;
    settings.transform = true;
    auto data = coded(picture, settings);
    const std::size_t segment = find(data, 0xEE);
    const Picture rgb = decoded(data);
    EXPECT_GT(test::signalToNoise(rgb, picture), 25);
    const auto with = [&](char first, int transform) {
        auto changed = data;
        changed[segment + 4] = static_cast<std::byte>(first);
        changed[segment + 15] = static_cast<std::byte>(transform);
        return decoded(changed);
    };
    const Picture raw = with('M', 0);
    EXPECT_EQ(test::largestDifference(raw, test::readWithPeer(data, PeerColour::asStored).picture),
              0);
    Picture inverted = rgb;
    for (std::uint8_t& sample : inverted.samples) {
        sample = static_cast<std::uint8_t>(255 - sample);
    }
    // Original: its own identifier only, and anything but 0 and 1 inverts.
    EXPECT_EQ(with('M', 2).samples, inverted.samples);
    EXPECT_EQ(with('N', 0).samples, rgb.samples);
    selectRules(Profile::extended);
    EXPECT_EQ(with('M', 2).samples, rgb.samples);
    EXPECT_EQ(with('N', 0).samples, raw.samples);
}

TEST_F(DctCodec, FourComponentsAreInvertedByTheirTransformOnly) {
    const Picture picture = test::photograph(40, 24, 4);
    DctSettings settings;
    settings.transform = true;
    auto data = coded(picture, settings);
    data[find(data, 0xEE) + 15] = std::byte{2};
    for (const Profile profile : {Profile::original, Profile::extended}) {
        selectRules(profile);
        Picture back = decoded(data);
        for (std::size_t i = 0; i < back.samples.size(); ++i) {
            if (i % 4 != 3) {
                back.samples[i] = static_cast<std::uint8_t>(255 - back.samples[i]);
            }
        }
        EXPECT_GT(test::signalToNoise(back, picture), 25);
    }
}

/// Cut anywhere: the exception in one profile; in the other whole rows, equal to those of the
/// whole but for the last one, which knew its neighbour below.
TEST_F(DctCodec, ImagesCutShort) {
    const Picture picture = test::photograph(64, 96, 3);
    DctSettings settings;
    settings.transform = true;
    settings.sampling[0] = {2, 2};
    const auto data = coded(picture, settings);
    const Picture whole = decoded(data);
    const std::size_t scan = find(data, 0xDA);
    for (std::size_t length = 1; length + 40 < data.size(); length += 29) {
        const auto cut = std::span(data).first(length);
        selectRules(Profile::original);
        EXPECT_EQ(refused(cut), Exception::codec);
        selectRules(Profile::extended);
        Picture rows;
        const Exception code = raisedBy([&] { rows = decoded(cut, 100); });
        if (code != Exception::none) {
            EXPECT_EQ(code, Exception::codec);
            EXPECT_LT(length, scan + data.size() / 4);
            continue;
        }
        EXPECT_EQ(resetWarning(), Warning::picture);
        EXPECT_EQ(rows.height % 16, 0U);
        ASSERT_GT(rows.height, 0U);
        const std::size_t sure = (rows.height - 1) * 64 * 3;
        EXPECT_TRUE(std::equal(rows.samples.begin(),
                               rows.samples.begin() + static_cast<std::ptrdiff_t>(sure),
                               whole.samples.begin()));
    }
}

/// Damage anywhere in the bits, behind the first rows: the same rows and the same place behind the
/// end, however the source hands out the data. Restart markers on the way there are no segments.
TEST_F(DctCodec, DamagedImagesAreLeftAtTheirEnd) {
    selectRules(Profile::extended);
    const Picture picture = test::photograph(64, 96, 3);
    DctSettings settings;
    settings.restartInterval = 5;
    const auto sequential = coded(picture, settings);
    const std::string seed = test::fileBytes(test::sourceFolder() / "fuzz" / "seeds" /
                                             "dct_decode" / "peacock.progressive.jpeg");
    const auto bytes = std::as_bytes(std::span(seed));
    const std::vector<std::byte> progressive(bytes.begin(), bytes.end());
    for (const auto& data : {sequential, progressive}) {
        std::size_t damaged = 0;
        auto file = data;
        file.insert(file.end(), {std::byte{'E'}, std::byte{0xFF}, std::byte{0xD9}});
        for (std::size_t place = find(data, 0xDA) + 300; place + 40 < data.size(); place += 7) {
            const auto sound = std::span(file).subspan(place - 1, 8);
            if (std::ranges::find(sound, std::byte{0xFF}) != sound.end()) {
                continue;
            }
            auto changed = file;
            std::fill_n(changed.begin() + static_cast<std::ptrdiff_t>(place), 7, std::byte{0xFE});
            MemorySource whole(changed);
            Picture rows;
            if (raisedBy([&] { rows = decodePicture(whole); }) != Exception::none) {
                continue;
            }
            const Warning warning = resetWarning();
            damaged += warning == Warning::picture ? 1 : 0;
            if (data == sequential) { // tables between scans may hide the end when damaged
                EXPECT_EQ(whole.taken(), data.size()) << place;
            }
            for (const std::size_t longest : {std::size_t{1}, std::size_t{13}}) {
                MemorySource pieces(changed, longest);
                EXPECT_EQ(decodePicture(pieces).samples, rows.samples) << place;
                EXPECT_EQ(resetWarning(), warning);
                EXPECT_EQ(pieces.taken(), whole.taken()) << place;
            }
        }
        EXPECT_GT(damaged, 10U);
    }
}

/// Corpus files as the peer reads them, to the place behind their end.
TEST_F(DctCodec, CorpusFilesAreWhatThePeerReads) {
    const auto folder = test::sourceFolder().parent_path() / "shared" / "corpus" / "codec";
    if (!std::filesystem::exists(folder)) {
        GTEST_SKIP() << "no corpus";
    }
    int read = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (!entry.path().extension().string().starts_with(".jp")) {
            continue;
        }
        SCOPED_TRACE(name);
        const std::string file = test::fileBytes(entry.path());
        const auto data = std::as_bytes(std::span(file));
        selectRules(Profile::extended);
        const auto stored = test::readWithPeer(data, PeerColour::converted);
        if (!stored.clean || name == "rgb_components.jpg") {
            continue;
        }
        for (const std::size_t longest : {std::size_t{1}, std::size_t{8192}}) {
            MemorySource source(data, longest);
            EXPECT_LE(test::largestDifference(decodePicture(source), stored.picture), 3);
            EXPECT_EQ(source.taken(), data.size());
        }
        ++read;
    }
    EXPECT_GE(read, 18);
}

/// A few bytes that say 65,535 by 65,535 take no more than two rows of units.
TEST_F(DctCodec, HeadersTakeNoMemoryThatDataDoesNotJustify) {
    for (const int frameMarker : {0xC0, 0xC2}) {
        auto data = coded(test::photograph(8, 8, 3));
        const std::size_t frame = find(data, 0xC0);
        data[frame + 1] = static_cast<std::byte>(frameMarker);
        std::fill_n(data.begin() + static_cast<std::ptrdiff_t>(frame) + 5, 4, std::byte{0xFF});
        selectRules(Profile::extended);
        if (frameMarker == 0xC2) {
            data[find(data, 0xDA) + 12] = std::byte{0}; // the scan ends at its DC
        }
        MemorySource source(data);
        EXPECT_EQ(raisedBy([&] {
                      const auto state = DCTInitialize();
                      DCTDecodeOpen(*state, source);
                      EXPECT_EQ(raisedBy([&] { DCTDFilBuf(*state); }), Exception::codec);
                      EXPECT_LT(zoneBytesCharged(), 30 << 20);
                  }),
                  Exception::none);
    }
}

} // namespace
} // namespace corvane
