// A page whose content is patched: all the resources that content of the patch targets names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvane::fuzz {

/// A file of one page that draws these streams, in which names of all kinds are known. `boxes`:
/// what the page says of its boxes and its rotation.
std::string patchPage(const std::vector<std::string>& streams, std::string_view boxes);

} // namespace corvane::fuzz
