#include "app/cli/programs/installed_program.h"

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

bool isProgram(const std::string& path) {
    struct stat facts {};
    return stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) &&
           access(path.c_str(), X_OK) == 0;
}

} // namespace

std::string installedProgram(std::string_view name) {
    if (name.find('/') != std::string_view::npos) {
        const std::string path(name);
        return isProgram(path) ? path : "";
    }
    const char* const variable = std::getenv("PATH");
    std::string_view rest = variable != nullptr ? variable : "/usr/local/bin:/usr/bin:/bin";
    while (!name.empty() && !rest.empty()) {
        const auto end = std::min(rest.find(':'), rest.size());
        std::string path = std::string(rest.substr(0, end)) + "/" + std::string(name);
        if (path.starts_with("/") && end != 0 && isProgram(path)) {
            return path;
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return {};
}

} // namespace corvane
