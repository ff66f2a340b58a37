// The files that the page may choose from: those named when the server started, and the PDFs of
// folders named then.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A file keeps its number as long as the server is there.
class ServedFiles {
public:
    /// `names` as the person gave them. Raises `Failure` where one is neither a file that can be
    /// read nor a folder, or there is no PDF in any.
    explicit ServedFiles(const std::vector<std::string>& names);

    /// The files that are there now, as JSON of the answer to /api/files.
    std::string listJson(std::string_view start);

    /// The path of a file; none for a number that was never given.
    std::optional<std::string> path(std::int32_t number) const;

private:
    struct Listing {
        std::vector<std::int32_t> numbers;
        std::int64_t leftOut = 0; ///< of folders with more files than are listed
    };

    /// Looks through the folders again.
    Listing refreshed();
    std::int32_t numberOf(const std::string& path);

    const std::vector<std::string> names_;
    mutable std::mutex mutex_; ///< of all below
    std::vector<std::string> paths_;
    std::map<std::string, std::int32_t> numbers_;
};

} // namespace corvane
