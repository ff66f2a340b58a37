#include "codecs/icc/icc_library.h"

#include "runtime/budget.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <lcms2_plugin.h>

namespace corvane {

namespace {

/// The library does not look whether it got its small records, so these are never refused. The
/// tables, which a file can make large, are looked at.
constexpr cmsUInt32Number neverRefused = 4096;

/// More than a profile without tables takes.
constexpr std::int64_t leastRoom = 256 << 10;

/// Profiles and transforms of a file, a second's work. Those that look as the device does are given
/// back at once, so memory does not limit them.
constexpr int mostMade = 4000;

} // namespace

/// Blocks of memory, each behind its length. The procedures are called by C code: they answer null,
/// and raise nothing. The library asks without an owner while it makes its context.
class IccLibrary::Blocks {
public:
    static void* allocate(cmsContext context, cmsUInt32Number size) {
        return reallocate(context, nullptr, size);
    }
    static void release(cmsContext context, void* block) {
        if (block != nullptr) {
            count(context, -static_cast<std::int64_t>(sizeOf(block)));
            std::free(startOf(block)); // NOLINT(cppcoreguidelines-no-malloc)
        }
    }
    static void* reallocate(cmsContext context, void* block, cmsUInt32Number size) {
        const std::size_t before = block == nullptr ? 0 : sizeOf(block);
        const std::int64_t more = std::int64_t{size} - static_cast<std::int64_t>(before);
        if (size > neverRefused && !hasRoom(context, more)) {
            return nullptr;
        }
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): the library wants blocks that can grow
        void* const made =
            std::realloc(block == nullptr ? nullptr : startOf(block), header + std::size_t{size});
        if (made == nullptr) {
            return nullptr;
        }
        count(context, more);
        const std::size_t length = size;
        std::memcpy(made, &length, sizeof length);
        return static_cast<std::byte*>(made) + header;
    }

private:
    static constexpr std::size_t header = alignof(std::max_align_t);

    static Memory* memoryOf(cmsContext context) {
        return context == nullptr ? nullptr : static_cast<Memory*>(cmsGetContextUserData(context));
    }
    static bool hasRoom(cmsContext context, std::int64_t bytes) {
        const Memory* const memory = memoryOf(context);
        return memory == nullptr || bytes <= 0 || memory->used + bytes <= memory->limit;
    }
    static void count(cmsContext context, std::int64_t bytes) {
        if (Memory* const memory = memoryOf(context); memory != nullptr) {
            memory->used += bytes;
        }
    }
    static void* startOf(void* block) { return static_cast<std::byte*>(block) - header; }
    static std::size_t sizeOf(void* block) {
        std::size_t size = 0;
        std::memcpy(&size, startOf(block), sizeof size);
        return size;
    }
};

IccLibrary::IccLibrary(std::int64_t memory) : memory_{.most = memory} {
    cmsPluginMemHandler handler{};
    handler.base = {cmsPluginMagicNumber, 2000, cmsPluginMemHandlerSig, nullptr};
    handler.MallocPtr = Blocks::allocate;
    handler.FreePtr = Blocks::release;
    handler.ReallocPtr = Blocks::reallocate;
    context_.reset(cmsCreateContext(&handler, &memory_));
}

bool IccLibrary::admit() {
    memory_.limit = std::min(memory_.most, memory_.used + budget::profileMemory);
    return made_++ < mostMade && memory_.limit - memory_.used >= leastRoom;
}

} // namespace corvane
