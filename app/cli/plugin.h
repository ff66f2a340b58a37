// The plug-in, loaded while the program runs.
#pragma once

#include "host/parameters.h"

#include <memory>
#include <string>

namespace corvane {

class Plugin {
public:
    /// Loads the library at `path`. Raises `Failure` where it cannot be loaded or lacks its entry.
    explicit Plugin(const std::string& path);

    std::uint32_t call(ParameterBlock* block) const { return entry_(block); }

private:
    struct Unload {
        void operator()(void* library) const;
    };
    std::unique_ptr<void, Unload> library_;
    std::uint32_t (*entry_)(ParameterBlock*) = nullptr;
};

/// The path in CORVANE_PLUGIN, otherwise that of `corvane-pdf.so` where an installed program has
/// it, or beside the program, where it was built.
std::string pluginPath();

/// Where a library of ours lies: where an installed program has it, or beside the program. The path
/// is absolute, so that no search path of the machine has a say in what is loaded.
std::string libraryPath(const std::string& name);

} // namespace corvane
