// Writes samples as a PNG, row by row.
#pragma once

#include "app/images/byte_sink.h"
#include "host/image.h"
#include "runtime/digest.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <system_error>
#include <vector>

namespace corvane {

/// At its end the file has a chunk that says that we wrote it, with the digest of all before it and
/// of the image's key: what has the name of one image and the bytes of another is not ours.
/// Programs that change pixels drop that chunk, as they must with any that they do not know (PNG
/// 1.2, 3.3: it is unsafe to copy), and what they leave in front of it has another digest.
class PngWriter {
public:
    /// Bytes of the chunk and the end behind it.
    static constexpr std::size_t endBytes = 12 + 8 + 12;

    /// The facts are of samples and were checked. Throws `ImageError` where memory is missing.
    PngWriter(const ImageFacts&, ByteSink&);
    ~PngWriter();
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;

    /// Rows may be cut anywhere. Throws `ImageError` where there are more than the image has.
    std::error_code add(std::span<const std::byte> bytes);
    /// Throws `ImageError` where there were fewer.
    std::error_code end();
    /// Of the whole file, once it has ended.
    std::uint64_t digest() const;

    /// Whether a file that ends with these bytes, `before` being the digest of all in front of
    /// them, was written here for the image of that key and is as it was.
    static bool isOurs(std::span<const std::byte> end, Digest before, std::string_view key);

private:
    struct State;

    std::error_code addRow(std::span<const std::byte> row);

    std::unique_ptr<State> state_;
    std::size_t rowSize_;
    std::int64_t rowsLeft_;
    std::vector<std::byte> row_; ///< the beginning of a row
};

} // namespace corvane
