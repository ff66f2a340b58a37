// Where a document's artwork came from, as its SVG says for saving it into the file again.
#pragma once

#include "host/extension.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Names the opening of a page with that digest into a file called `output`. The same opening has
/// the same name, today and later.
std::uint64_t artworkName(std::uint64_t pageDigest, std::string_view output);

/// The kind's name in files and reports, as in the enumeration: "text", "softMask". A kind that
/// this version does not know is "other".
std::string_view omissionName(Omission kind);

/// That many of a kind, by its name, for people: "5 tags (marked content)". The name may be of a
/// later version.
std::string omissionText(std::string_view name, std::int32_t count);

struct Provenance {
    std::string sourceFile; ///< name of the PDF without folders, UTF-8
    std::int32_t page = 0;  ///< from 1; 0: of no page
    std::optional<PageIdentity> identity;
    /// Which opening of that page it was: two that are edited apart differ in it.
    std::optional<std::uint64_t> artwork;
    /// How often each kind was met and left out, by its name: another version may know others.
    std::map<std::string, std::int32_t, std::less<>> omitted;
};

} // namespace corvane
