// The private folder of a server: artwork and pictures lie in it.
#pragma once

#include "toolbox/descriptor.h"

#include <string>

namespace corvane {

/// Only this user can look into it. It goes with the object; what killed servers left of theirs
/// goes when the next one starts.
class WorkFolder {
public:
    /// Raises `Failure`.
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
    Descriptor lock_; ///< the folder itself, locked as long as its process lives
};

} // namespace corvane
