#include "app/images/byte_source.h"

#include "app/images/budget.h"
#include "app/images/image_error.h"
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

constexpr std::size_t blockSize = std::size_t{256} << 10;

[[noreturn]] void refuse() {
    throw ImageError("cannot be read (" + std::generic_category().message(errno) + ")");
}

constexpr int fileFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

/// Folder by folder, so that none of them can be a link.
Descriptor openResolved(const std::string& path) {
    Descriptor folder(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::size_t start = path.find_first_not_of('/');
    while (folder && start != std::string::npos) {
        const std::size_t end = path.find('/', start);
        const std::string name = path.substr(start, end - start);
        if (end == std::string::npos) {
            return Descriptor(openat(folder.number(), name.c_str(), fileFlags));
        }
        folder = Descriptor(
            openat(folder.number(), name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        start = path.find_first_not_of('/', end);
    }
    return folder;
}

class FileSource final : public ByteSource {
public:
    explicit FileSource(Descriptor file) : file_(std::move(file)) {
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
    FileOrigin(std::string path, bool isResolved)
        : path_(std::move(path)), isResolved_(isResolved) {}
    std::unique_ptr<ByteSource> open() const override {
        return std::make_unique<FileSource>(
            isResolved_ ? openResolved(path_) : Descriptor(::open(path_.c_str(), fileFlags)));
    }

private:
    std::string path_;
    bool isResolved_;
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
    return std::make_shared<FileOrigin>(std::move(path), false);
}

std::shared_ptr<const ByteOrigin> resolvedFileOrigin(std::string path) {
    return std::make_shared<FileOrigin>(std::move(path), true);
}

std::shared_ptr<const ByteOrigin> memoryOrigin(std::vector<std::byte> bytes) {
    return std::make_shared<MemoryOrigin>(std::move(bytes));
}

std::size_t SourceStream::read(std::span<std::byte> into) {
    const std::size_t count = source_.readAt(offset_, into);
    offset_ += count;
    if (wanted_) {
        digest_.feed(into.first(count));
    }
    return count;
}

void SourceStream::finish() {
    if (!wanted_) {
        return;
    }
    std::vector<std::byte> block(blockSize);
    while (read(block) == block.size()) {
    }
    if (digest_.value() != *wanted_) {
        throw ImageError("has changed while it was read");
    }
}

std::uint64_t digestOf(const ByteSource& bytes, const ByteUse& use) {
    std::vector<std::byte> block(blockSize);
    Digest digest;
    std::uint64_t offset = 0;
    while (true) {
        const std::size_t count = bytes.readAt(offset, block);
        const auto filled = std::span<const std::byte>(block).first(count);
        digest.feed(filled);
        if (use) {
            use(filled);
        }
        offset += count;
        if (offset > image_budget::fileBytes) {
            throw ImageError("is larger than images may be");
        }
        if (count < block.size()) {
            return digest.value();
        }
    }
}

} // namespace corvane
