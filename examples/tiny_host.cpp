// The smallest host: loads the plug-in, lets it register, and asks whether a file is one of its.
//
//     tiny_host corvane-pdf.so report.pdf
//
// All that a host must offer is the toolbox and a table of callbacks. This one fills one slot.
#include "host/callbacks.h"
#include "host/parameters.h"
#include "host/toolbox.h"

#include <bit>
#include <cstdio>
#include <dlfcn.h>

using namespace corvane;

namespace {

HostError printFileFormat(const std::uint8_t* name, std::uint32_t type, std::int32_t options,
                          std::int32_t /*zero*/) {
    const auto letter = [&](int shift) { return static_cast<int>(type >> shift & 0xFF); };
    std::printf("format \"%.*s\", file type \"%c%c%c%c\", options %d\n", *name,
                std::bit_cast<const char*>(name + 1), letter(24), letter(16), letter(8), letter(0),
                options);
    return HostError::none;
}

/// A record in the zone, where the plug-in can follow its 32-bit address.
template <class T>
Ref<T> makeRecord(std::size_t count = 1) {
    return NewPtrClear(static_cast<std::int32_t>(count * sizeof(T))).as<T>();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: tiny_host corvane-pdf.so FILE.pdf\n", stderr);
        return 2;
    }
    void* const plugin = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    void* const symbol = plugin ? dlsym(plugin, "main_entry") : nullptr;
    if (symbol == nullptr) {
        std::fprintf(stderr, "tiny_host: %s\n", dlerror());
        return 1;
    }
    const auto entry = std::bit_cast<decltype(&main_entry)>(symbol);

    const auto table = makeRecord<HostProcedure>(slotCount);
    const auto file = makeRecord<FileSpecification>();
    const auto block = makeRecord<ParameterBlock>();
    if (!table || !file || !block || makeFileSpecification(argv[2], *file) != noErr) {
        std::fprintf(stderr, "tiny_host: %s cannot be reached\n", argv[2]);
        return 1;
    }
    fillSlot({table.get(), slotCount}, slot::addFileFormat, printFileFormat);
    block->callbacks = table;
    block->action = Action::read;
    block->file = file;

    for (const Selector selector :
         {Selector::identify, Selector::registerFormat, Selector::check}) {
        block->selector = selector;
        const std::uint32_t answer = entry(block.get());
        std::printf("selector %d: 0x%08X%s\n", static_cast<int>(selector), answer,
                    answer == resultNotFormat ? " (not one of its files)" : "");
    }

    DisposeHandle(block->state.as<Ptr>());
    DisposePtr(block.as<std::byte>());
    DisposePtr(file.as<std::byte>());
    DisposePtr(table.as<std::byte>());
    dlclose(plugin);
    return 0;
}
