// Where a document's artwork came from: what its SVG remembers for the way back into the file.
#pragma once

#include "host/extension.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The kind's name in files and reports: "text", "image", "form", "shading" or "other".
std::string_view omissionName(Omission kind);

struct Provenance {
    std::string sourceFile; ///< name of the PDF without folders, UTF-8
    std::int32_t page = 0;  ///< from 1; 0: of no page
    std::optional<PageIdentity> identity;
    std::map<Omission, std::int32_t> omitted; ///< how often each kind was met and left out
};

} // namespace corvane
