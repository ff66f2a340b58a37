#include "app/images/byte_source.h"

#include "app/images/image_error.h"
#include "runtime/digest.h"
#include "toolbox/descriptor.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

[[noreturn]] void refuse() {
    throw ImageError("cannot be read (" + std::generic_category().message(errno) + ")");
}

class FileSource final : public ByteSource {
public:
    explicit FileSource(const std::string& path)
        : file_(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {
        struct stat facts {};
        if (!file_ || fstat(file_.number(), &facts) != 0) {
            refuse();
        }
        if (!S_ISREG(facts.st_mode)) {
            throw ImageError("is no file");
        }
    }

    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        std::size_t done = 0;
        while (done < into.size()) {
            const ssize_t count = pread(file_.number(), into.data() + done, into.size() - done,
                                        static_cast<off_t>(offset + done));
            if (count == 0) {
                break;
            }
            if (count < 0 && errno != EINTR) {
                refuse();
            }
            done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        }
        return done;
    }

private:
    Descriptor file_;
};

class FileOrigin final : public ByteOrigin {
public:
    explicit FileOrigin(std::string path) : path_(std::move(path)) {}
    std::unique_ptr<ByteSource> open() const override {
        return std::make_unique<FileSource>(path_);
    }

private:
    std::string path_;
};

using Block = std::shared_ptr<const std::vector<std::byte>>;

class MemorySource final : public ByteSource {
public:
    explicit MemorySource(Block bytes) : bytes_(std::move(bytes)) {}
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> into) const override {
        if (offset >= bytes_->size()) {
            return 0;
        }
        const auto rest = std::span(*bytes_).subspan(static_cast<std::size_t>(offset));
        const std::size_t count = std::min(rest.size(), into.size());
        std::copy_n(rest.begin(), count, into.begin());
        return count;
    }

private:
    Block bytes_;
};

class MemoryOrigin final : public ByteOrigin {
public:
    explicit MemoryOrigin(std::vector<std::byte> bytes)
        : bytes_(std::make_shared<const std::vector<std::byte>>(std::move(bytes))) {}
    std::unique_ptr<ByteSource> open() const override {
        return std::make_unique<MemorySource>(bytes_);
    }

private:
    Block bytes_;
};

} // namespace

std::shared_ptr<const ByteOrigin> fileOrigin(std::string path) {
    return std::make_shared<FileOrigin>(std::move(path));
}

std::shared_ptr<const ByteOrigin> memoryOrigin(std::vector<std::byte> bytes) {
    return std::make_shared<MemoryOrigin>(std::move(bytes));
}

std::uint64_t digestOf(const ByteSource& bytes) {
    constexpr std::size_t blockSize = std::size_t{256} << 10;
    std::vector<std::byte> block(blockSize);
    Digest digest;
    std::uint64_t offset = 0;
    while (true) {
        const std::size_t count = bytes.readAt(offset, block);
        digest.feed(std::span(block).first(count));
        offset += count;
        if (count < block.size()) {
            return digest.value();
        }
    }
}

} // namespace corvane
