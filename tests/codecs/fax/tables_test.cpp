#include "codecs/fax/tables.h"

#include "tests/support/fax_images.h"
#include "tests/support/fax_peer.h"
#include "tests/support/fax_run.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

std::vector<FaxCode> runCodes(const FaxRunCodes& codes) {
    std::vector<FaxCode> all(codes.terminating.begin(), codes.terminating.end());
    all.insert(all.end(), codes.makeUp.begin() + 1, codes.makeUp.end());
    return all;
}

std::vector<FaxCode> modeCodes() {
    std::vector<FaxCode> all(verticalCodes.begin(), verticalCodes.end());
    all.push_back(passCode);
    all.push_back(horizontalCode);
    return all;
}

bool begins(FaxCode a, FaxCode b) {
    return a.length <= b.length && b.bits >> (b.length - a.length) == a.bits;
}

/// Share of the code space that the codes take, in units of 2^-13.
std::uint32_t share(const std::vector<FaxCode>& codes) {
    std::uint32_t sum = 0;
    for (const FaxCode code : codes) {
        sum += 1U << (13 - code.length);
    }
    return sum;
}

TEST(FaxTables, CodesArePrefixFreeAndLeaveOnlyWhatTheStandardsLeave) {
    for (const auto& codes : {runCodes(whiteCodes), runCodes(blackCodes), modeCodes()}) {
        for (std::size_t i = 0; i < codes.size(); ++i) {
            ASSERT_GT(codes[i].length, 0);
            for (std::size_t j = 0; j < codes.size(); ++j) {
                EXPECT_TRUE(i == j || !begins(codes[i], codes[j])) << i << " begins " << j;
            }
        }
    }
    // Eight zeros begin the end of line and the extension codes; seven bits of six zeros and a one
    // are the extension of two-dimensional coding, seven zeros begin its end of line.
    const std::uint32_t full = 1U << 13;
    EXPECT_EQ(share(runCodes(whiteCodes)), full - (1U << 5));
    EXPECT_EQ(share(runCodes(blackCodes)), full - (1U << 5));
    EXPECT_EQ(share(modeCodes()), full - 2 * (1U << 6));
}

TEST(FaxTables, EveryRunReadsAsWhatThePeerWrote) {
    // One row for each length of a first white and of a first black run, up to two of the longest
    // make-up codes.
    constexpr std::uint16_t columns = 5300;
    test::FaxImage image{columns, 2 * columns};
    image.pixels.resize(image.rowBytes() * image.rows);
    for (std::size_t run = 0; run < columns; ++run) {
        for (std::size_t x = 0; x < columns; ++x) {
            image.set(x, x < run ? columns + run : run);
        }
    }
    const CCParameters parameters{.columns = columns,
                                  .rows = image.rows,
                                  .endOfBlock = false,
                                  .endOfLine = true,
                                  .blackIs1 = true};
    const test::FaxKind kind{columns, image.rows, COMPRESSION_CCITTFAX3, 0};
    const auto peerData = test::tiffEncode(kind, image.pixels);
    EXPECT_TRUE(test::decodeFax(parameters, peerData).pixels == image.pixels);
    EXPECT_TRUE(test::encodeFax(parameters, image.pixels) == peerData);
}

TEST(FaxTables, ModesAreThePeers) {
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i) {
        const auto columns = static_cast<std::uint16_t>(1 + random() % 300);
        const auto image =
            test::randomImage(random, columns, 30, 1 + random() % 12, 2 + random() % 12);
        const CCParameters parameters{.columns = columns, .rows = 30, .k = -1, .blackIs1 = true};
        const test::FaxKind kind{columns, 30, COMPRESSION_CCITTFAX4, 0};
        const auto data = test::encodeFax(parameters, image.pixels);
        ASSERT_TRUE(test::tiffEncode(kind, image.pixels) == data) << "width " << columns;
        ASSERT_TRUE(test::tiffDecode(kind, data) == image.pixels) << "width " << columns;
    }
}

} // namespace
} // namespace corvane
