// Bytes that are read by position, from a file or from memory.
#pragma once

#include "runtime/digest.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
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
/// The same at an absolute path that leads through no link, and must not do so later either.
std::shared_ptr<const ByteOrigin> resolvedFileOrigin(std::string path);
std::shared_ptr<const ByteOrigin> memoryOrigin(std::vector<std::byte> bytes);

/// Bytes from the first on, in order.
class SourceStream {
public:
    /// `digest`: that the whole must have.
    explicit SourceStream(const ByteSource& source, std::optional<std::uint64_t> digest = {})
        : source_(source), wanted_(digest) {}

    /// As many as there is room for; fewer at the end.
    std::size_t read(std::span<std::byte> into);
    /// Reads what is left. Throws `ImageError` where the digest is another one: the bytes have
    /// changed since it was taken.
    void finish();

private:
    const ByteSource& source_;
    std::optional<std::uint64_t> wanted_;
    Digest digest_;
    std::uint64_t offset_ = 0;
};

/// Takes the bytes of a file block by block, in order; may end the reading by what it throws.
using ByteUse = std::function<void(std::span<const std::byte>)>;

/// The digest of all bytes, which `use` gets too. Throws `ImageError` where there are more than the
/// budget.
std::uint64_t digestOf(const ByteSource& bytes, const ByteUse& use = {});

} // namespace corvane
