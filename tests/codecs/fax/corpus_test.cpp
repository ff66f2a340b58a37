#include "tests/support/fax_peer.h"
#include "tests/support/fax_run.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace corvane {
namespace {

namespace fs = std::filesystem;

std::vector<std::byte> contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> chars{std::istreambuf_iterator<char>(file), {}};
    const auto bytes = std::as_bytes(std::span(chars));
    return {bytes.begin(), bytes.end()};
}

std::uint32_t field(TIFF* tiff, std::uint32_t tag) {
    std::uint32_t value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

std::uint16_t shortField(TIFF* tiff, std::uint32_t tag) {
    std::uint16_t value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

CCParameters parametersOf(TIFF* tiff) {
    CCParameters parameters{.blackIs1 = true};
    parameters.columns = static_cast<std::uint16_t>(field(tiff, TIFFTAG_IMAGEWIDTH));
    const std::uint32_t options = field(tiff, TIFFTAG_GROUP3OPTIONS);
    switch (shortField(tiff, TIFFTAG_COMPRESSION)) {
    case COMPRESSION_CCITTFAX4:
        parameters.k = -1;
        break;
    case COMPRESSION_CCITTFAX3:
        parameters.k = (options & GROUP3OPT_2DENCODING) != 0 ? 4 : 0;
        break;
    default: // without ends of line
        parameters.encodedByteAlign = true;
        break;
    }
    return parameters;
}

unsigned char reversed(unsigned char byte) {
    unsigned char result = 0;
    for (int i = 0; i < 8; ++i) {
        result = static_cast<unsigned char>(result << 1 | (byte >> i & 1));
    }
    return result;
}

/// Every strip of the file, by both.
void compareStrips(TIFF* tiff) {
    CCParameters parameters = parametersOf(tiff);
    const std::uint32_t height = field(tiff, TIFFTAG_IMAGELENGTH);
    const std::uint32_t stripRows = std::min(height, field(tiff, TIFFTAG_ROWSPERSTRIP));
    const bool lowBitFirst = shortField(tiff, TIFFTAG_FILLORDER) == FILLORDER_LSB2MSB;
    for (std::uint32_t strip = 0; strip < TIFFNumberOfStrips(tiff); ++strip) {
        std::vector<std::byte> wanted(static_cast<std::size_t>(TIFFStripSize(tiff)));
        const tmsize_t length =
            TIFFReadEncodedStrip(tiff, strip, wanted.data(), static_cast<tmsize_t>(wanted.size()));
        ASSERT_GT(length, 0);
        wanted.resize(static_cast<std::size_t>(length));
        std::vector<std::byte> data(static_cast<std::size_t>(TIFFRawStripSize(tiff, strip)));
        TIFFReadRawStrip(tiff, strip, data.data(), static_cast<tmsize_t>(data.size()));
        if (lowBitFirst) {
            for (std::byte& byte : data) {
                byte = std::byte{reversed(std::to_integer<unsigned char>(byte))};
            }
        }
        parameters.rows =
            static_cast<std::uint16_t>(std::min(stripRows, height - strip * stripRows));
        const auto back = test::decodeFax(parameters, data);
        EXPECT_FALSE(back.failed);
        EXPECT_TRUE(back.pixels == wanted) << "strip " << strip;
    }
}

TEST(FaxCorpus, EveryFileDecodesToTheBitsOfThePeer) {
    const fs::path folder = test::sourceFolder().parent_path() / "shared" / "corpus" / "codec";
    if (!fs::exists(folder)) {
        GTEST_SKIP() << "no corpus";
    }
    int files = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() != ".tiff") {
            continue;
        }
        SCOPED_TRACE(entry.path().filename().string());
        test::TiffMemory file(contents(entry.path()));
        const auto tiff = file.open("r");
        ASSERT_TRUE(tiff);
        compareStrips(tiff.get());
        ++files;
    }
    EXPECT_GE(files, 5);
}

} // namespace
} // namespace corvane
