#include "codecs/fax/codec.h"

#include "tests/runtime/zone_fixture.h"
#include "tests/support/fax_images.h"
#include "tests/support/fax_peer.h"
#include "tests/support/fax_run.h"

#include <algorithm>
#include <string>

namespace corvane {
namespace {

using test::decodeFax;
using test::encodeFax;
using test::FaxImage;
using test::randomImage;
using Data = std::vector<std::byte>;

/// Bytes of digits; anything but 0 and 1 only separates. The last byte is filled with zeros.
Data bits(const std::string& digits) {
    Data data;
    std::size_t count = 0;
    for (const char digit : digits) {
        if (digit != '0' && digit != '1') {
            continue;
        }
        if (count % 8 == 0) {
            data.emplace_back();
        }
        if (digit == '1') {
            data.back() |= std::byte{0x80} >> (count % 8);
        }
        ++count;
    }
    return data;
}

std::string repeat(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

const std::string eol = "000000000001 ";
/// Rows of eight pixels: 4 white and 4 black; 8 white.
const std::string half = "1011 011 ";
const std::string blank = "10011 ";

std::string hex(const Data& data) {
    std::string text;
    for (const std::byte byte : data) {
        constexpr const char* digits = "0123456789ABCDEF";
        text += digits[std::to_integer<int>(byte) >> 4];
        text += digits[std::to_integer<int>(byte) & 15];
    }
    return text;
}

class FaxCodecTest : public ZoneTest {};

TEST_F(FaxCodecTest, RandomImagesComeBackAndTheirDataEndsWhereItEnds) {
    std::mt19937 random(1);
    const std::uint16_t widths[] = {1, 7, 8, 9, 63, 64, 65, 1728};
    for (int i = 0; i < 4000; ++i) {
        CCParameters parameters{.columns = i % 4 == 0
                                               ? widths[random() % std::size(widths)]
                                               : static_cast<std::uint16_t>(1 + random() % 260)};
        parameters.k = std::array{0, 4, -1}[random() % 3];
        parameters.endOfLine = random() % 2 != 0;
        parameters.encodedByteAlign = random() % 2 != 0;
        parameters.blackIs1 = random() % 2 != 0;
        parameters.endOfBlock = random() % 2 != 0;
        parameters.uncompressedMode = random() % 3 == 0;
        parameters.rowEndsUncompressed = random() % 2 != 0;
        const auto rows = static_cast<std::uint16_t>(1 + random() % 12);
        parameters.rows = parameters.endOfBlock && random() % 2 != 0 ? 0 : rows;
        FaxImage image = randomImage(random, static_cast<std::uint16_t>(parameters.columns), rows,
                                     1 + random() % 40, random() % 3 * 9);
        if (!parameters.blackIs1) {
            std::ranges::transform(image.pixels, image.pixels.begin(), std::bit_not());
        }
        Data data = encodeFax(parameters, image.pixels);
        const std::size_t length = data.size();
        ASSERT_GT(length, 0U);
        data.resize(length + random() % 2000, std::byte{0x5A}); // what follows is someone else's
        const auto back = decodeFax(parameters, data, 1 + random() % 1024);
        SCOPED_TRACE(testing::Message()
                     << "image " << i << " width " << parameters.columns << " K " << parameters.k);
        ASSERT_FALSE(back.failed);
        ASSERT_TRUE(back.pixels == image.pixels);
        ASSERT_EQ(back.consumed, length);
    }
}

TEST_F(FaxCodecTest, PeersReadWhatIsWritten) {
    std::mt19937 random(2);
    for (int i = 0; i < 600; ++i) {
        const auto columns = static_cast<std::uint16_t>(1 + random() % 500);
        const FaxImage image = randomImage(random, columns, 20, 1 + random() % 30, random() % 20);
        CCParameters parameters{.columns = columns, .rows = 20, .blackIs1 = true};
        test::FaxKind kind{columns, 20, COMPRESSION_CCITTFAX4, 0};
        parameters.k = std::array{0, 4, -1}[i % 3];
        if (parameters.k >= 0) {
            parameters.endOfLine = true;
            parameters.encodedByteAlign = random() % 2 != 0;
            kind.compression = COMPRESSION_CCITTFAX3;
            kind.options = (parameters.k > 0 ? GROUP3OPT_2DENCODING : 0U) |
                           (parameters.encodedByteAlign ? GROUP3OPT_FILLBITS : 0U);
        }
        ASSERT_TRUE(test::tiffDecode(kind, encodeFax(parameters, image.pixels)) == image.pixels);
        parameters.endOfBlock = false;
        ASSERT_TRUE(decodeFax(parameters, test::tiffEncode(kind, image.pixels)).pixels ==
                    image.pixels)
            << "image " << i;
    }
}

TEST_F(FaxCodecTest, WidestRowsAndMemoryBoundedByTheRow) {
    CCParameters parameters{.columns = 65535, .k = -1, .blackIs1 = true};
    std::mt19937 random(5);
    for (const std::int32_t k : {-1, 0, 4}) {
        parameters.k = k;
        const FaxImage image = randomImage(random, 65535, 5, 700, 1000);
        EXPECT_TRUE(decodeFax(parameters, encodeFax(parameters, image.pixels)).pixels ==
                    image.pixels);
        const FaxImage dots = randomImage(random, 65535, 5, 1, 0);
        EXPECT_TRUE(decodeFax(parameters, encodeFax(parameters, dots.pixels)).pixels ==
                    dots.pixels);
    }
    for (const std::int32_t direction : {0, 1}) {
        test::MemoryPort port;
        FaxByteStream bytes;
        cc_fsetup(bytes, port, direction);
        CCStream stream;
        EXPECT_EQ(CheckCCStm(stream), 0U);
        SetupCCStm(parameters, bytes, stream);
        EXPECT_GT(CheckCCStm(stream), 65535U);
        EXPECT_LE(CheckCCStm(stream), CCFaxExtraBytes(parameters));
        EXPECT_EQ(zoneBytesCharged(), static_cast<std::int64_t>(CCFaxExtraBytes(parameters)));
        FinalCCStm(stream);
        EXPECT_EQ(zoneBytesCharged(), 0);
        parameters.columns = 0;
        EXPECT_EQ(raisedBy([&] { SetupCCStm(parameters, bytes, stream); }), Exception::codec);
        parameters.columns = 65535;
    }
}

TEST_F(FaxCodecTest, WrittenBitsAreThoseOfTheParameters) {
    const Data rows{std::byte{0x0F}, std::byte{0x00}, std::byte{0x0F}};
    const std::string rtc = repeat(eol, 6);
    const std::string tag1 = eol + "1 ";
    const struct {
        CCParameters parameters;
        std::string wanted;
    } cases[] = {
        {{.k = 0}, half + blank + half + rtc},
        {{.k = 0, .endOfBlock = false}, half + blank + half},
        {{.k = 0, .encodedByteAlign = true}, half + "0" + blank + "000" + half + "0" + rtc},
        {{.k = 0, .endOfLine = true}, eol + half + eol + blank + eol + half + rtc},
        {{.k = 0, .encodedByteAlign = true, .endOfLine = true},
         "0000" + eol + half + "00000" + eol + blank + "0000000" + eol + half + "00000" + rtc},
        // The change is too far from that of the row above for all but horizontal mode, which is
        // longer than a one-dimensional row.
        {{.k = 4}, "1" + half + "1" + blank + "1" + half + repeat(eol + "1", 6)},
        {{.k = 4, .endOfLine = true}, tag1 + half + tag1 + blank + tag1 + half + repeat(tag1, 6)},
        {{.k = -1}, "001" + half + "001" + blank + "0000110111 001" + half + repeat(eol, 2)},
    };
    for (const auto& [given, wanted] : cases) {
        CCParameters parameters = given;
        parameters.columns = 8;
        parameters.blackIs1 = true;
        EXPECT_EQ(hex(encodeFax(parameters, rows)), hex(bits(wanted))) << "K " << given.k;
    }
}

TEST_F(FaxCodecTest, BitsBehindTheLastColumnAreIgnoredAndReadAsWhite) {
    const Data dirty{std::byte{0b11111111}, std::byte{0b01111111}};
    for (const std::int32_t k : {0, 4, -1}) {
        for (const bool blackIs1 : {false, true}) {
            const CCParameters parameters{.columns = 9, .k = k, .blackIs1 = blackIs1};
            const auto back = decodeFax(parameters, encodeFax(parameters, dirty));
            EXPECT_EQ(hex(back.pixels), blackIs1 ? "FF00" : "FF7F");
        }
    }
}

TEST_F(FaxCodecTest, AtMostKLessOneTwoDimensionalRowsFollow) {
    // Equal rows: two-dimensional rows cost two bits, and are taken whenever they may.
    const Data rows(9, std::byte{0x0F});
    const CCParameters parameters{.columns = 8, .k = 4, .endOfBlock = false, .blackIs1 = true};
    const std::string group = "1 " + half + repeat("0 11 ", 3);
    EXPECT_EQ(hex(encodeFax(parameters, rows)), hex(bits(group + group + "1" + half)));
    // A tie goes to the one-dimensional coding: 12 bits both.
    CCParameters tie{.columns = 8, .k = 2, .endOfBlock = false, .blackIs1 = true};
    const Data two{std::byte{0x00}, std::byte{0x3C}};
    EXPECT_EQ(hex(encodeFax(tie, two)), hex(bits("1" + blank + "1 0111 011 0111")));
}

TEST_F(FaxCodecTest, TheEndOfTheData) {
    const std::string row = half;
    const struct {
        const char* what;
        CCParameters parameters;
        std::string data;
        std::size_t rows;
        bool failed;
    } cases[] = {
        {"nothing", {.k = 0}, "", 0, false},
        {"the data just ends", {.k = 0}, row + row, 2, false},
        {"RTC", {.k = 0}, row + repeat(eol, 6) + row, 1, false},
        {"five ends are no RTC", {.k = 0}, row + repeat(eol, 5) + row, 1, true},
        {"unless nothing follows", {.k = 0}, row + repeat(eol, 5), 1, false},
        {"three, where damage is expected",
         {.k = 0, .damagedRowsBeforeError = 1},
         row + repeat(eol, 3) + row,
         1,
         false},
        {"two are damage even then",
         {.k = 0, .damagedRowsBeforeError = 1},
         row + repeat(eol, 2) + row,
         1,
         true},
        {"mixed RTC", {.k = 1}, "1" + row + repeat(eol + "1", 6) + row, 1, false},
        {"a tag 0 ends the count", {.k = 1}, "1" + row + eol + "1" + eol + "0 11", 2, false},
        {"EOFB", {.k = -1}, "001" + row + repeat(eol, 2) + row, 1, false},
        {"one end before a row", {.k = -1}, "001" + row + eol + "11", 2, false},
        {"Rows before more data", {.rows = 1, .k = 0}, row + row, 1, false},
        {"fill before an end of line", {.k = 0}, row + repeat("0", 300) + eol + row, 2, false},
        {"cut in a row", {.k = 0}, row + "1011", 1, true},
        {"ends of line from the first on", {.k = 0, .endOfLine = true}, "1" + eol + row, 1, false},
        {"no end of line at all", {.k = 0, .endOfLine = true}, row, 0, false},
        {"Group 4 needs none",
         {.k = -1, .endOfLine = true},
         "001" + row + repeat(eol, 2),
         1,
         false},
    };
    for (const auto& one : cases) {
        CCParameters parameters = one.parameters;
        parameters.columns = 8;
        parameters.blackIs1 = true;
        const auto back = decodeFax(parameters, bits(one.data));
        EXPECT_EQ(back.pixels, Data(one.rows, std::byte{0x0F})) << one.what;
        EXPECT_EQ(back.failed, one.failed) << one.what;
    }
}

TEST_F(FaxCodecTest, DamagedRowsAreToleratedUpToTheirNumber) {
    const std::string bad = "1011 00000000 1 "; // four white pixels, then no code
    const std::string one = eol + half;
    const std::string two = eol + "1" + half;
    const CCParameters tolerant{.k = 0, .endOfLine = true, .damagedRowsBeforeError = 2};
    CCParameters strict = tolerant;
    strict.damagedRowsBeforeError = 0;
    CCParameters unmarked = tolerant;
    unmarked.endOfLine = false;
    CCParameters mixed = tolerant;
    mixed.k = 2;
    const struct {
        const char* what;
        CCParameters parameters;
        std::string data;
        std::string rows;
        bool failed;
    } cases[] = {
        {"one", tolerant, one + eol + bad + one + repeat(eol, 6), "0F000F", false},
        {"as many as may be", tolerant, one + eol + bad + eol + bad + one, "0F00000F", false},
        {"one too many", tolerant, repeat(eol + bad, 3) + one, "0000", true},
        {"none may be", strict, one + eol + bad + one, "0F", true},
        {"nothing to find the next row by", unmarked, one + eol + bad + one, "0F", true},
        {"an end inside a row", tolerant, one + eol + "1011" + one, "0F000F", false},
        {"too long a row", tolerant, eol + "1011 00011" + one, "000F", false},
        {"the end of the data follows", tolerant, one + eol + bad + repeat(eol, 6), "0F00", false},
        {"two ends of line", tolerant, one + eol + one, "0F000F", false},
        // A two-dimensional row cannot follow damage: it is damaged again.
        {"mixed", mixed, two + eol + "1" + bad + eol + "0 11" + two, "0F00000F", false},
    };
    for (const auto& entry : cases) {
        CCParameters parameters = entry.parameters;
        parameters.columns = 8;
        parameters.blackIs1 = true;
        const auto back = decodeFax(parameters, bits(entry.data));
        EXPECT_EQ(hex(back.pixels), entry.rows) << entry.what;
        EXPECT_EQ(back.failed, entry.failed) << entry.what;
    }
}

TEST_F(FaxCodecTest, UncompressedModeOnlyWhereItIsPermitted) {
    // 0110 1000 in the mode, left for white.
    const std::string pixels = "01 1 01 0000000001 0 ";
    const std::string in1 = "000000001111 ";
    const std::string in2 = "0000001111 ";
    CCParameters parameters{.columns = 8, .k = 0, .blackIs1 = true, .uncompressedMode = true};
    const auto decoded = [&](const std::string& data) {
        const auto back = decodeFax(parameters, bits(data));
        return hex(back.pixels) + (back.failed ? " failed" : "");
    };
    EXPECT_EQ(decoded(in1 + pixels + half), "680F");
    EXPECT_EQ(decoded("0111 11" + in1 + "1 00000001 1 11"), "3B");
    EXPECT_EQ(decoded(in1 + "01 1 01 1 01 1"), " failed"); // no exit code
    EXPECT_EQ(decoded(in1 + "000001 00001"), " failed");   // ten pixels
    parameters.rowEndsUncompressed = true;
    EXPECT_EQ(decoded(in1 + "01 1 01 1 01 000001 0000000001 0" + half), "6D000F");
    EXPECT_EQ(decoded(in1 + "01 1 01 1 01 1 000001 01 0000001 0" + half), "6D810F");
    parameters.k = -1;
    parameters.rowEndsUncompressed = false;
    EXPECT_EQ(decoded(in2 + pixels + "11111" + repeat(eol, 2)), "6868");
    parameters.uncompressedMode = false;
    EXPECT_EQ(decoded(in2 + pixels), " failed");
}

TEST_F(FaxCodecTest, AnyBitMayBeWrong) {
    std::mt19937 random(11);
    const FaxImage image = randomImage(random, 60, 12, 6, 8);
    for (const std::int32_t k : {0, 4, -1}) {
        for (const std::int32_t tolerated : {0, 100}) {
            const CCParameters parameters{.columns = 60,
                                          .k = k,
                                          .endOfLine = k >= 0,
                                          .blackIs1 = true,
                                          .damagedRowsBeforeError = tolerated};
            const Data data = encodeFax(parameters, image.pixels);
            std::size_t wholeImages = 0;
            for (std::size_t bit = 0; bit < data.size() * 8; ++bit) {
                Data damaged = data;
                damaged[bit / 8] ^= std::byte{0x80} >> (bit % 8);
                const auto back = decodeFax(parameters, damaged, SIZE_MAX, 10000);
                ASSERT_EQ(back.pixels.size() % image.rowBytes(), 0U);
                ASSERT_LT(back.pixels.size(), 10000U);
                ASSERT_TRUE(back == decodeFax(parameters, damaged, 1, 10000)) << bit;
                // One-dimensional rows do not lean on one another: ten of twelve are right still.
                if (k == 0 && tolerated > 0) {
                    std::size_t right = 0;
                    for (std::size_t at = 0; at < image.pixels.size(); at += image.rowBytes()) {
                        const auto row = image.pixels.begin() + static_cast<std::ptrdiff_t>(at);
                        const auto end = row + static_cast<std::ptrdiff_t>(image.rowBytes());
                        right += std::search(back.pixels.begin(), back.pixels.end(), row, end) !=
                                 back.pixels.end();
                    }
                    ASSERT_GE(right, 10U) << bit;
                }
                wholeImages += back.pixels.size() == image.pixels.size();
            }
            EXPECT_GT(wholeImages, 0U);
        }
    }
}

TEST_F(FaxCodecTest, WriteFailuresAndPartsOfRowsAreReported) {
    const CCParameters parameters{.columns = 1728};
    for (const std::size_t room : {std::size_t{0}, std::size_t{1500}}) {
        test::MemoryPort port;
        port.limit(room);
        FaxByteStream bytes;
        cc_fsetup(bytes, port, 1);
        CCStream stream;
        SetupCCStm(parameters, bytes, stream);
        CEReset(stream);
        for (int row = 0; row < 3000 && !stream.failed; ++row) {
            std::fill_n(stream.current, stream.count, std::byte{0x55});
            stream.count = 0;
            CEFlush(stream);
        }
        EXPECT_TRUE(stream.failed);
        EXPECT_EQ(CEPutEOF(stream), -1);
        FinalCCStm(stream);
    }
    EXPECT_TRUE(encodeFax(parameters, Data(1728 / 8 + 1)).empty());
    test::MemoryPort port;
    FaxByteStream bytes;
    EXPECT_EQ(raisedBy([&] { cc_fsetup(bytes, port, 2); }), Exception::codec);
}

} // namespace
} // namespace corvane
