// The parameter block of `main_entry`: what a host says when it calls the plug-in.
#pragma once

#include "host/zone.h"

#include <cstddef>
#include <cstdint>

namespace corvane {

/// Values of `ParameterBlock::selector`. Those from 16 up are answered only where a host extension
/// (host/extension.h) is registered; any other value does nothing.
enum class Selector : std::int16_t {
    identify = 0,
    registerFormat = 1,
    about = 2,
    prepare = 3,
    go = 4,
    check = 7,
    info = 16,
    diagnose = 17,
    log = 18,    ///< tell the updates of a file
    revert = 19, ///< take the newest update off again
    trial = 20,  ///< as `go` with action `write`, but nothing is written
    mend = 21,   ///< as `go`, or with action `read` as `trial`: mends the file and saves no page
};

enum class Action : std::int32_t { read = 1, write = 2 };

/// Which file: a volume or working-directory reference, a directory, and a length-prefixed name.
struct FileSpecification {
    std::int16_t volume = 0;
    std::int16_t reserved = 0;
    std::int32_t directory = 0;
    std::uint8_t name[64] = {};
};
static_assert(offsetof(FileSpecification, directory) == 4);
static_assert(offsetof(FileSpecification, name) == 8 && sizeof(FileSpecification) == 72);

/// What the plug-in keeps between calls; the host holds its handle and never looks inside.
struct PluginState {
    std::int32_t page = 1;
    Ptr cache;
    std::byte reserved[64] = {};
};
static_assert(sizeof(PluginState) == 72);

/// A procedure of the host; cast to its own type by the slot that names it (host/callbacks.h).
using HostProcedure = void (*)();

struct ParameterBlock {
    Ref<HostProcedure> callbacks;
    std::byte unread4[4] = {};
    Selector selector = Selector::identify;
    std::byte unread10[6] = {};
    Ref<Ref<PluginState>> state;
    Action action = Action::read;
    Ref<FileSpecification> file;
};
static_assert(offsetof(ParameterBlock, selector) == 8 && offsetof(ParameterBlock, state) == 16);
static_assert(offsetof(ParameterBlock, action) == 20 && offsetof(ParameterBlock, file) == 24);
static_assert(sizeof(ParameterBlock) == 28);

/// Four characters as the 32-bit value that the classic interfaces pass around.
constexpr std::uint32_t fourCharacters(const char (&text)[5]) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(text[i]);
    }
    return value;
}

/// Results of `main_entry`. 0 is success.
inline constexpr std::uint32_t resultIdentity = 0x05010001;
inline constexpr std::uint32_t resultNotFormat = fourCharacters("FMT?");
inline constexpr std::uint32_t resultStopped = fourCharacters("STOP");

} // namespace corvane

/// The plug-in's only exported symbol. `block` is a block of the zone; all that it points to too.
extern "C" [[gnu::visibility("default")]] std::uint32_t main_entry(corvane::ParameterBlock* block);
