#include "codecs/jbig2/jbig2.h"

#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <jbig2.h>
#include <memory>
#include <new>

namespace corvane {

namespace {

/// Gives the library its memory, each block behind its length, and charges it. Its procedures are
/// called by C code: they answer null, and raise nothing.
class Allocator {
public:
    explicit Allocator(CodecClock& clock)
        : hooks_{{allocate, release, reallocate}, this}, clock_(clock) {}
    ~Allocator() { dischargeZone(used_); }
    Allocator(const Allocator&) = delete;
    Allocator& operator=(const Allocator&) = delete;

    Jbig2Allocator* hooks() { return &hooks_.procedures; }

private:
    /// The library hands the first member back to the procedures.
    struct Hooks {
        Jbig2Allocator procedures;
        Allocator* owner;
    };
    static constexpr std::size_t header = alignof(std::max_align_t);

    static Allocator& ownerOf(Jbig2Allocator* hooks) {
        // A record of standard layout begins with its first member.
        return *static_cast<Hooks*>(static_cast<void*>(hooks))->owner;
    }

    /// Each symbol that is refined asks for memory: that is where a page made to take long ends.
    bool charge(std::size_t size) {
        if (clock_.mustStop() || size > static_cast<std::size_t>(budget::jbig2Bytes - used_) ||
            !chargeZone(static_cast<std::int64_t>(size))) {
            return false;
        }
        used_ += static_cast<std::int64_t>(size);
        return true;
    }
    void discharge(std::size_t size) {
        dischargeZone(static_cast<std::int64_t>(size));
        used_ -= static_cast<std::int64_t>(size);
    }

    static void* allocate(Jbig2Allocator* hooks, std::size_t size) {
        return reallocate(hooks, nullptr, size);
    }
    static void release(Jbig2Allocator* hooks, void* block) {
        if (block != nullptr) {
            ownerOf(hooks).discharge(sizeOf(block));
            std::free(startOf(block));
        }
    }
    /// Null leaves the old block as it is.
    static void* reallocate(Jbig2Allocator* hooks, void* block, std::size_t size) {
        Allocator& self = ownerOf(hooks);
        if (size > static_cast<std::size_t>(budget::jbig2Bytes) || !self.charge(size)) {
            return nullptr;
        }
        const std::size_t before = block == nullptr ? 0 : sizeOf(block);
        void* const made = std::realloc(block == nullptr ? nullptr : startOf(block), header + size);
        self.discharge(made == nullptr ? size : before);
        if (made == nullptr) {
            return nullptr;
        }
        std::memcpy(made, &size, sizeof size);
        return static_cast<std::byte*>(made) + header;
    }

    static void* startOf(void* block) { return static_cast<std::byte*>(block) - header; }
    static std::size_t sizeOf(void* block) {
        std::size_t size = 0;
        std::memcpy(&size, startOf(block), sizeof size);
        return size;
    }

    Hooks hooks_;
    std::int64_t used_ = 0;
    CodecClock& clock_;
};

struct EndContext {
    void operator()(Jbig2Ctx* context) const { jbig2_ctx_free(context); }
};
struct EndGlobals {
    void operator()(Jbig2GlobalCtx* globals) const { jbig2_global_ctx_free(globals); }
};
using Context = std::unique_ptr<Jbig2Ctx, EndContext>;
using Globals = std::unique_ptr<Jbig2GlobalCtx, EndGlobals>;

/// What the library says of damage; without a procedure of ours it would print it.
void hearNothing(void*, const char*, Jbig2Severity, std::uint32_t) {}

Context openContext(Allocator& allocator, Jbig2GlobalCtx* globals) {
    Context context(
        jbig2_ctx_new(allocator.hooks(), JBIG2_OPTIONS_EMBEDDED, globals, hearNothing, nullptr));
    if (context == nullptr) {
        failException(Exception::memory);
    }
    return context;
}

/// The page that is done first; the library keeps it until it is told.
class PageImage {
public:
    explicit PageImage(Jbig2Ctx& context) : context_(context), image_(jbig2_page_out(&context)) {}
    ~PageImage() {
        if (image_ != nullptr) {
            jbig2_release_page(&context_, image_);
        }
    }
    PageImage(const PageImage&) = delete;
    PageImage& operator=(const PageImage&) = delete;

    const Jbig2Image* get() const { return image_; }

private:
    Jbig2Ctx& context_;
    Jbig2Image* image_;
};

/// False where the decoder gave up.
bool feed(Jbig2Ctx& context, std::span<const std::byte> data) {
    return jbig2_data_in(&context,
                         static_cast<const unsigned char*>(static_cast<const void*>(data.data())),
                         data.size()) >= 0;
}

Jbig2Page copied(const Jbig2Image& image) {
    Jbig2Page page{.width = image.width, .height = image.height, .rows = {}, .charge = {}};
    const std::size_t rowBytes = (std::size_t{image.width} + 7) / 8;
    page.charge.resize(static_cast<std::int64_t>(rowBytes * image.height));
    page.rows.resize(rowBytes * image.height);
    for (std::size_t y = 0; y < image.height; ++y) {
        std::memcpy(page.rows.data() + y * rowBytes, image.data + y * image.stride, rowBytes);
    }
    return page;
}

} // namespace

Jbig2Page decodeJbig2(std::span<const std::byte> globals, std::span<const std::byte> data,
                      CodecClock& clock) {
    const CodecClock::Scope scope(clock);
    clock.feed(globals.size() + data.size());
    clock.check();
    Allocator allocator(clock);
    Globals shared;
    if (!globals.empty()) {
        Context context = openContext(allocator, nullptr);
        feed(*context, globals);
        shared.reset(jbig2_make_global_ctx(context.release()));
    }
    const Context context = openContext(allocator, shared.get());
    const bool isWhole = feed(*context, data);
    clock.check();
    // A page without its end is taken as it is.
    jbig2_complete_page(context.get());
    const PageImage page(*context);
    const Jbig2Image* const image = page.get();
    if (image == nullptr || image->data == nullptr || image->width == 0 || image->height == 0) {
        failException(Exception::codec);
    }
    Jbig2Page result = copied(*image);
    const auto isWhite = [](std::byte byte) { return byte == std::byte{0}; };
    if (!isWhole && std::ranges::all_of(result.rows, isWhite)) {
        failException(Exception::codec);
    }
    return result;
}

} // namespace corvane
