// Programs of this machine.
#pragma once

#include <string>
#include <string_view>

namespace corvane {

/// Where the program `name` is installed: a path is taken as it is, a name is looked for in the
/// absolute folders of PATH. Empty where there is none.
std::string installedProgram(std::string_view name);

} // namespace corvane
