// Bytes that are read by position, from a file or from memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace corvane {

class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// As many bytes as there are from `offset` on and there is room for. Throws `ImageError`.
    virtual std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const = 0;
};

/// What can be opened any number of times. Files are open only while they are read: a page may show
/// more images than a process may have files.
class ByteOrigin {
public:
    ByteOrigin() = default;
    ByteOrigin(const ByteOrigin&) = delete;
    ByteOrigin& operator=(const ByteOrigin&) = delete;
    virtual ~ByteOrigin() = default;

    /// Throws `ImageError`.
    virtual std::unique_ptr<ByteSource> open() const = 0;
};

/// A regular file; nothing else is opened, and no link.
std::shared_ptr<const ByteOrigin> fileOrigin(std::string path);
std::shared_ptr<const ByteOrigin> memoryOrigin(std::vector<std::byte> bytes);

/// The digest of all bytes.
std::uint64_t digestOf(const ByteSource& bytes);

} // namespace corvane
