// Where a save happens: in the file itself, or in a hidden one that takes its place when all is
// written.
#pragma once

#include "app/cli/files/file_lock.h"
#include "app/cli/files/output.h"
#include "app/cli/options/arguments.h"

#include <optional>
#include <string>

namespace corvane {

/// Destroyed without `commit`, it leaves nothing behind but changes of the file itself. As long as
/// it lives, other programs cannot save into the same file.
class SavePlace {
public:
    /// The file that the person named, a copy of it (`--output`), or a new one where none of that
    /// name exists, if none is expected (`--expect-size`); to try only (`--dry-run`), the file
    /// itself, also where a copy is meant, or a new one for a while. Raises `Failure` where that
    /// cannot be.
    explicit SavePlace(const Arguments& arguments);

    /// Path of the file to save into. A new file is not made yet.
    const std::string& path() const { return path_; }
    bool isNew() const { return isNew_; }
    /// Path that the person will know the result by.
    const std::string& name() const { return name_; }

    /// Puts a copy or a new file in its place. Raises `Failure`.
    void commit();

private:
    void makeCopy(const Arguments& arguments, const OutputTarget& target);
    void makeNew(const OutputTarget& target);

    std::string name_;
    std::string path_;
    bool isNew_ = false;
    std::optional<FileLock> lock_;
    std::optional<OutputFile> output_;
};

} // namespace corvane
