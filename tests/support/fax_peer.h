// libtiff as a peer of the fax codec: TIFF files in memory, of one strip of fax data.
#pragma once

#include <tiffio.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace corvane::test {

/// What both sides have to know of the data. Pixels: rows of whole bytes, black is 1.
struct FaxKind {
    std::uint32_t columns = 0;
    std::uint32_t rows = 0;
    std::uint16_t compression = COMPRESSION_CCITTFAX4;
    std::uint32_t options = 0; ///< the T4Options of Group 3
    std::size_t rowBytes() const { return (std::size_t{columns} + 7) / 8; }
};

/// Messages of libtiff since the last call. Quiet: they are counted, not printed.
inline int takeTiffMessages() {
    static int messages = 0;
    static const bool installed = [] {
        const auto count = [](const char*, const char*, va_list) { ++messages; };
        TIFFSetErrorHandler(count);
        TIFFSetWarningHandler(count);
        return true;
    }();
    return installed ? std::exchange(messages, 0) : 0;
}

/// A TIFF file in memory.
class TiffMemory {
public:
    TiffMemory() = default;
    explicit TiffMemory(std::span<const std::byte> bytes) : bytes_(bytes.begin(), bytes.end()) {}

    std::unique_ptr<TIFF, void (*)(TIFF*)> open(const char* mode) {
        takeTiffMessages();
        position_ = 0;
        return {
            TIFFClientOpen("memory", mode, this, read, write, seek, close, size, nullptr, nullptr),
            TIFFClose};
    }

private:
    static TiffMemory& self(thandle_t handle) { return *static_cast<TiffMemory*>(handle); }
    static tmsize_t read(thandle_t handle, void* to, tmsize_t count) {
        TiffMemory& file = self(handle);
        const std::size_t left = file.bytes_.size() - std::min(file.bytes_.size(), file.position_);
        const std::size_t piece = std::min(left, static_cast<std::size_t>(count));
        if (piece > 0) {
            std::memcpy(to, file.bytes_.data() + file.position_, piece);
        }
        file.position_ += piece;
        return static_cast<tmsize_t>(piece);
    }
    static tmsize_t write(thandle_t handle, void* from, tmsize_t count) {
        TiffMemory& file = self(handle);
        const auto length = static_cast<std::size_t>(count);
        file.bytes_.resize(std::max(file.bytes_.size(), file.position_ + length));
        std::memcpy(file.bytes_.data() + file.position_, from, length);
        file.position_ += length;
        return count;
    }
    static toff_t seek(thandle_t handle, toff_t offset, int from) {
        TiffMemory& file = self(handle);
        const std::size_t base = from == SEEK_CUR   ? file.position_
                                 : from == SEEK_END ? file.bytes_.size()
                                                    : 0;
        file.position_ = base + offset;
        return file.position_;
    }
    static int close(thandle_t) { return 0; }
    static toff_t size(thandle_t handle) { return self(handle).bytes_.size(); }

    std::vector<std::byte> bytes_;
    std::size_t position_ = 0;
};

inline void setFaxTags(TIFF* tiff, const FaxKind& kind) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kind.columns);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kind.rows);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kind.rows);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, kind.compression);
    if (kind.compression == COMPRESSION_CCITTFAX3) {
        TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, kind.options);
    }
}

/// The fax data that libtiff makes of pixels.
inline std::vector<std::byte> tiffEncode(const FaxKind& kind, std::span<const std::byte> pixels) {
    TiffMemory file;
    {
        const auto tiff = file.open("w");
        setFaxTags(tiff.get(), kind);
        std::vector<std::byte> copy(pixels.begin(), pixels.end());
        TIFFWriteEncodedStrip(tiff.get(), 0, copy.data(), static_cast<tmsize_t>(copy.size()));
    }
    const auto tiff = file.open("r");
    std::vector<std::byte> data(static_cast<std::size_t>(TIFFRawStripSize(tiff.get(), 0)));
    TIFFReadRawStrip(tiff.get(), 0, data.data(), static_cast<tmsize_t>(data.size()));
    return data;
}

/// A TIFF file of fax data.
inline TiffMemory tiffOfFax(const FaxKind& kind, std::span<const std::byte> data) {
    TiffMemory file;
    {
        const auto tiff = file.open("w");
        setFaxTags(tiff.get(), kind);
        std::vector<std::byte> copy(data.begin(), data.end());
        TIFFWriteRawStrip(tiff.get(), 0, copy.data(), static_cast<tmsize_t>(copy.size()));
    }
    return file;
}

/// The pixels that libtiff makes of fax data; empty where it has anything to say about it.
inline std::vector<std::byte> tiffDecode(const FaxKind& kind, std::span<const std::byte> data) {
    TiffMemory file = tiffOfFax(kind, data);
    const auto tiff = file.open("r");
    std::vector<std::byte> pixels(kind.rowBytes() * kind.rows);
    const tmsize_t count =
        TIFFReadEncodedStrip(tiff.get(), 0, pixels.data(), static_cast<tmsize_t>(pixels.size()));
    if (takeTiffMessages() != 0 || count != static_cast<tmsize_t>(pixels.size())) {
        pixels.clear();
    }
    return pixels;
}

} // namespace corvane::test
