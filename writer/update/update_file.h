// The file that an update is appended to: either the whole update is on the disk, or the file is as
// long as before.
#pragma once

#include "filters/stream.h"
#include "reader/document/cache.h"
#include "writer/update/update_filter.h"

#include <cstdint>
#include <string_view>

namespace corvane {

class UpdateFile {
public:
    /// Opens the cache's file at its end; until this is destroyed, its output is the file. Raises
    /// `fileChanged` where it is not as long as when it was read (original: it is taken as it is).
    explicit UpdateFile(DocumentCache& cache);
    ~UpdateFile();
    UpdateFile(const UpdateFile&) = delete;
    UpdateFile& operator=(const UpdateFile&) = delete;

    /// Cuts off an update of ours that was never finished, and links the output.
    void begin();
    /// Puts what was written on the disk, and only then `end`, which makes it count.
    void finish(std::string_view end);
    /// Drops what was not written and cuts the file back to its former length, unless somebody else
    /// made it longer or shorter meanwhile. What fails is dropped.
    void takeBack();
    /// Closes the file. What fails is dropped: all that counts is on the disk.
    void close();

    std::int64_t length() const { return std::int64_t{start_} + written_; }

private:
    StreamFilter& stream();

    DocumentCache& cache_;
    Chain file_;
    Chain output_;
    UpdateFilter* update_ = nullptr;
    std::int32_t start_ = 0;   // of the update
    std::int64_t written_ = 0; // bytes handed to the file, once the output is unlinked
};

} // namespace corvane
