#include "codecs/dct/dct.h"

#include "runtime/memory.h"
#include "tests/runtime/zone_fixture.h"
#include "tests/support/jpeg_parts.h"
#include "tests/support/picture.h"

namespace corvane {
namespace {

using test::JpegPart;
using test::JpegParts;
using test::MemorySource;
using test::Picture;
using test::jpeg::ac;
using test::jpeg::scan;

/// Three blocks in a row, and the scans given.
std::vector<std::byte> image(const JpegParts& scans) {
    JpegParts parts{test::jpeg::quantiser(), test::jpeg::frame(0xC2, 24, 8), test::jpeg::dcTable(),
                    test::jpeg::acTable()};
    parts.insert(parts.end(), scans.begin(), scans.end());
    return test::jpegOf(parts);
}

/// Coefficients 6, 6 and 4 of the first kind, without their last bit.
const JpegPart dcFirst = scan(0, 0, 0, 1, "10 11 00 01 0");
const JpegPart dcSecond = scan(0, 0, 1, 0, "1 0 1");
/// In the first block 2 at k = 1 and -2 at k = 4; then two blocks of nothing.
const JpegPart acFirst = scan(1, 5, 0, 1, ac(0x01) + "1" + ac(0x21) + "0" + ac(0x10) + "1");
/// A new 1 at k = 3, one more bit for the two others, and nothing new in the other blocks.
const JpegPart acSecond = scan(1, 5, 1, 0, ac(0x11) + "1 1" + ac(0x10) + "1 1");

class DctProgressive : public ZoneTest {
protected:
    void SetUp() override {
        ZoneTest::SetUp();
        selectRules(Profile::extended);
    }
};

TEST_F(DctProgressive, ScansAddUpAsInThePeer) {
    const JpegParts all{dcFirst, acFirst, dcSecond, acSecond};
    for (std::size_t count = 1; count <= all.size(); ++count) {
        const auto data = image(JpegParts(all.begin(), all.begin() + static_cast<int>(count)));
        MemorySource source(data, 3);
        const Picture picture = test::decodePicture(source);
        EXPECT_EQ(source.taken(), data.size());
        const auto peer = test::readWithPeer(data, test::PeerColour::asStored);
        ASSERT_TRUE(peer.clean) << count;
        EXPECT_LE(test::largestDifference(picture, peer.picture), 1) << count;
        const auto [low, high] = std::ranges::minmax(picture.samples);
        EXPECT_EQ(high - low > 8, count > 1) << count;
    }
    EXPECT_EQ(resetWarning(), Warning::none);
}

TEST_F(DctProgressive, ScansThatNoImageHas) {
    const struct {
        const char* what;
        JpegParts scans;
        bool rows; ///< the first scan is kept, with a warning
    } cases[] = {
        {"DC and AC in one", {dcFirst, scan(0, 5, 0, 0, "")}, true},
        {"a band that ends before it begins", {dcFirst, scan(5, 1, 0, 0, "")}, true},
        {"a band past the block", {dcFirst, scan(1, 64, 0, 0, "")}, true},
        {"14 bits left out", {dcFirst, scan(1, 5, 0, 14, "")}, true},
        {"two bits at once", {dcFirst, scan(1, 5, 2, 0, "")}, true},
        {"a bit that was never begun", {dcFirst, scan(1, 5, 1, 1, "")}, true},
        {"AC before DC", {acFirst}, false},
        {"no scan that holds the image", {scan(0, 0, 0, 0, "10 11")}, false},
        {"a coefficient past the block",
         {dcFirst, scan(1, 63, 0, 0, ac(0xF0) + ac(0xF0) + ac(0xF0) + ac(0xF1) + "1")},
         true},
        {"a new coefficient that finds no place",
         {dcFirst, scan(1, 2, 1, 0, ac(0x21) + "1")},
         true},
        {"no such code", {dcFirst, scan(1, 5, 0, 0, "1000")}, true},
        {"another frame between", {dcFirst, test::jpeg::frame(0xC2, 8, 8)}, true},
        {"more scans than any image has", JpegParts(300, dcFirst), true},
    };
    for (const auto& [what, scans, rows] : cases) {
        const auto data = image(scans);
        Picture picture;
        const Exception code = raisedBy([&] {
            MemorySource source(data);
            picture = test::decodePicture(source);
        });
        EXPECT_EQ(code, rows ? Exception::none : Exception::codec) << what;
        EXPECT_EQ(resetWarning(), rows ? Warning::picture : Warning::none) << what;
        EXPECT_EQ(picture.samples.size(), rows ? 24U * 8 : 0U) << what;
    }
    // AC of two components at once.
    const auto both = test::jpegOf({test::jpeg::quantiser(),
                                    test::jpeg::frame(0xC2, 24, 8, 2),
                                    test::jpeg::dcTable(),
                                    test::jpeg::acTable(),
                                    {0xDA, {2, 1, 0, 2, 0, 0, 0, 0}, "00 00 00 00 00 00"},
                                    {0xDA, {2, 1, 0, 2, 0, 1, 5, 0}}});
    MemorySource together(both);
    EXPECT_EQ(test::decodePicture(together).samples.size(), 2U * 24 * 8);
    EXPECT_EQ(resetWarning(), Warning::picture);
    // A run of zeros that only reaches past the band is none of these.
    const auto data = image({dcFirst, scan(1, 5, 0, 0, ac(0xF0) + ac(0xF0) + ac(0xF0))});
    MemorySource source(data);
    EXPECT_EQ(test::decodePicture(source).samples.size(), 24U * 8);
    EXPECT_EQ(resetWarning(), Warning::none);
}

/// Every block costs two bits of data and 128 bytes of the zone.
TEST_F(DctProgressive, MemoryIsThatOfTheZone) {
    JpegParts parts{test::jpeg::quantiser(), test::jpeg::frame(0xC2, 2048, 2048),
                    test::jpeg::dcTable(), test::jpeg::acTable()};
    parts.push_back(scan(0, 0, 0, 0, std::string(std::size_t{2} * 256 * 256, '0')));
    const auto data = test::jpegOf(parts);
    constexpr std::int64_t image = std::int64_t{256} * 256 * 128;
    const auto code = [&](std::int64_t room) {
        ZoneCharge others;
        others.resize((std::int64_t{256} << 20) - room);
        return raisedBy([&] {
            MemorySource source(data);
            const auto state = DCTInitialize();
            DCTDecodeOpen(*state, source);
            EXPECT_EQ(DCTDFilBuf(*state).size(), 2048U);
            EXPECT_GE(zoneBytesCharged() - others.bytes(), image);
        });
    };
    EXPECT_EQ(code(image + (1 << 20)), Exception::none);
    EXPECT_EQ(code(image - (1 << 20)), Exception::memory);
    EXPECT_EQ(resetWarning(), Warning::none);
}

/// The interval counts blocks of a scan of one component, and a run of empty blocks ends with it.
TEST_F(DctProgressive, RestartsInScans) {
    JpegParts parts{{0xDD, {0, 2}}, dcFirst, {0xD0, {}, "01 0"}};
    parts[1].bits = "10 11 00";
    const auto plain = image({dcFirst});
    auto data = image(parts);
    MemorySource one(plain);
    MemorySource other(data);
    const Picture wanted = test::decodePicture(one);
    const Picture picture = test::decodePicture(other);
    EXPECT_TRUE(
        std::equal(picture.samples.begin(), picture.samples.begin() + 16, wanted.samples.begin()));
    EXPECT_EQ(picture.samples[16], 128 - 4); // -1, moved by a bit, from the middle again
    parts.push_back(scan(1, 5, 0, 0, ac(0x10) + "1"));
    parts.push_back({0xD0, {}, ac(0x00)});
    data = image(parts);
    MemorySource runs(data);
    EXPECT_EQ(test::decodePicture(runs).samples, picture.samples);
    EXPECT_EQ(resetWarning(), Warning::none);
}

} // namespace
} // namespace corvane
