// The private folder that artwork lies in while it is edited.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace corvane {

/// Only this user can look into it. It goes with the object unless it is kept.
class ArtFolder {
public:
    /// In the folder for temporary files (TMPDIR, else /tmp), since that outlives the person's
    /// session: artwork that could not be saved is still there tomorrow. In XDG_RUNTIME_DIR where
    /// that cannot be. Raises `Failure`.
    ArtFolder();
    ~ArtFolder();
    ArtFolder(const ArtFolder&) = delete;
    ArtFolder& operator=(const ArtFolder&) = delete;

    const std::string& path() const { return path_; }

    /// What lies in it now is ours.
    void noteOwn() { own_ = names(); }

    /// Names of files that others put there, which are no backups and not hidden: a person's, such
    /// as what was saved under another name.
    std::vector<std::string> others() const;

    void keep() { isKept_ = true; }
    void drop() { isKept_ = false; }

private:
    std::set<std::string> names() const;

    std::string path_;
    std::set<std::string> own_;
    bool isKept_ = false;
};

} // namespace corvane
