// A file on its way to its place: a hidden neighbour of it, and what killed processes leave of
// theirs.
#pragma once

#include "toolbox/descriptor.h"

#include <cstdint>
#include <string>

namespace corvane {

/// While the object lives, the name is locked; so other processes know that it is in use. What has
/// not been put in its place goes with the object.
class HiddenFile {
public:
    HiddenFile() = default;
    ~HiddenFile();
    HiddenFile(const HiddenFile&) = delete;
    HiddenFile& operator=(const HiddenFile&) = delete;

    /// Makes an empty one in the folder of the path `target`, and takes away what killed processes
    /// left there, where it `tidies`. Called once. None, with `errno`, where that fails.
    Descriptor make(const std::string& target, bool tidies = true);

    /// Where the bytes lie; empty where nothing was made.
    const std::string& path() const { return content_; }

    /// From now on the bytes lie at another path, where there is no file yet, so that the plug-in
    /// can make it. The file that was made holds the lock, and nothing else.
    void vacate();

    /// The file at `path` has been renamed.
    void letGo();

private:
    std::string keeper_;  ///< path of the file that is locked; empty where none was made
    std::string content_; ///< path of the bytes
    std::string fork_;    ///< path of what the plug-in may add to a file that it makes
    std::int32_t lock_ = 0;
};

/// Takes away the hidden files in the folder of the path `target` that no process uses: regular
/// files of this user, of such a name, which can be locked. Nothing else is touched.
void removeAbandoned(const std::string& target);

/// Folder of the file that `path` names.
std::string folderOf(const std::string& path);

} // namespace corvane
