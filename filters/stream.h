// The stream filter: the bottom of a chain, a file's data fork.
#pragma once

#include "filters/file/file.h"
#include "filters/filter.h"

#include <string>
#include <string_view>

namespace corvane {

struct StreamFilter : Filter {
    StreamFilter(std::int16_t volumeReference, std::string_view name, std::string_view fileMode);
    ~StreamFilter() override;

    std::int16_t volume;
    std::string fileName;
    std::string mode; ///< "read", "write" or "append"
    FileRecord file;
};

/// A stream on a file; the file is opened when the filter is linked and closed when it is unlinked.
/// Raises what the file layer raises.
FilterOwner setupStream(std::int16_t volume, std::string_view name, std::string_view mode);

} // namespace corvane
