#include "app/cli/plugin.h"

#include "app/cli/fault.h"

#include <bit>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>

namespace corvane {

namespace {

/// It stays in memory until the process ends: taking it out takes time.
constexpr int loading = RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE;

[[noreturn]] void refuse() {
    const char* const reason = dlerror();
    throw Failure({code::io, std::string("the plug-in cannot be loaded (") +
                                 (reason ? reason : "no reason given") +
                                 "); install it with the program or name it in CORVANE_PLUGIN"});
}

} // namespace

void Plugin::Unload::operator()(void* library) const {
    dlclose(library);
}

Plugin::Plugin(const std::string& path) : library_(dlopen(path.c_str(), loading)) {
    if (!library_) {
        refuse();
    }
    void* const entry = dlsym(library_.get(), "main_entry");
    if (entry == nullptr) {
        refuse();
    }
    entry_ = std::bit_cast<decltype(entry_)>(entry);
}

std::string pluginPath() {
    namespace fs = std::filesystem;
    std::error_code error;
    if (const char* const named = std::getenv("CORVANE_PLUGIN"); named && *named != '\0') {
        return fs::absolute(named, error).string();
    }
    return libraryPath("corvane-pdf.so");
}

std::string libraryPath(const std::string& name) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    const fs::path installed = (folder / CORVANE_PLUGIN_FOLDER / name).lexically_normal();
    return (fs::exists(installed, error) ? installed : folder / name).string();
}

} // namespace corvane
