// Font programs as documents have them, made fit for FreeType.
#pragma once

#include <cstddef>
#include <vector>

namespace corvane {

/// Type 1: what stands in front of "%!" goes, and a first line that does not say what follows is
/// replaced. Others stay as they are.
std::vector<std::byte> mendedProgram(std::vector<std::byte> file);

} // namespace corvane
