#include "app/cli/web_module.h"

#include "app/cli/files/output.h"
#include "app/cli/follow.h"
#include "app/cli/plugin.h"

#include <bit>
#include <dlfcn.h>
#include <filesystem>

namespace corvane {

namespace {

/// Stays in memory until the process ends.
ServeFunction* serveFunction() {
    const std::string path = libraryPath("corvane-web.so");
    std::error_code error;
    if (!std::filesystem::exists(path, error)) {
        throw Failure({code::io, "this program was built without the page; build it with "
                                 "-DCORVANE_WEB=ON (cmake/install-packages web)"});
    }
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const function = library != nullptr ? dlsym(library, serveFunctionName) : nullptr;
    if (function == nullptr) {
        const char* const reason = dlerror();
        throw Failure({code::io, std::string("the page cannot be loaded (") +
                                     (reason != nullptr ? reason : "no reason given") +
                                     "); install it with the program"});
    }
    return std::bit_cast<ServeFunction*>(function);
}

} // namespace

int runServe(const Arguments& arguments) {
    ServeCall call{arguments, [&](const std::string& address) {
                       Report report;
                       report.address = address;
                       printOutput(arguments.json ? reportJson(arguments, report) : address + "\n",
                                   "");
                   }};
    const auto fault = faultOf([&] { (*serveFunction())(call); });
    if (!fault && !call.fault) {
        return exitDone;
    }
    Report report;
    report.error = fault ? fault : call.fault;
    return conclude(arguments, report);
}

} // namespace corvane
