// Private folders for what passes: where they are made, and how they are taken away.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Absolute paths, in the order in which they are tried: TMPDIR and /tmp, since they outlive the
/// person's session; XDG_RUNTIME_DIR.
std::vector<std::string> temporaryFolders();

/// A new folder that only this user can look into, in the first of them where that can be: its name
/// is `prefix` and `chosenLetters` letters and digits. Raises `Failure`.
std::string makeTemporaryFolder(std::string_view prefix);
inline constexpr std::size_t chosenLetters = 6;

/// Takes the folder `name` in the open folder `parent` (or AT_FDCWD) away with all in it; links are
/// not followed. What cannot be removed stays.
void removeTree(int parent, const char* name);

} // namespace corvane
