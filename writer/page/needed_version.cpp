#include "writer/page/needed_version.h"

#include "reader/font/font_entries.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace corvane {

namespace {

/// 10 times the version: 14 is 1.4.
std::int32_t needed = 0;

std::int32_t versionOf(Feature feature) {
    switch (feature) {
    case Feature::flate:
    case Feature::compositeFont:
    case Feature::separation:
        return 12;
    case Feature::compactFont:
    case Feature::shading:
    case Feature::profile:
        return 13;
    case Feature::transparency:
    case Feature::maskedImage:
        return 14;
    case Feature::deepImage:
    case Feature::optionalContent:
        return 15;
    }
    return 0;
}

/// "1.4" as 14; 0 where it is none.
std::int32_t parsed(std::string_view text) {
    std::int32_t major = 0;
    std::int32_t minor = 0;
    const char* const end = text.data() + text.size();
    const auto point = std::from_chars(text.data(), end, major);
    if (point.ptr == end || *point.ptr != '.' || major > 9) {
        return 0;
    }
    std::from_chars(point.ptr + 1, end, minor);
    return major * 10 + std::clamp(minor, 0, 9);
}

} // namespace

void openNeededVersion() {
    needed = 0;
}

void needVersion(Feature feature) {
    needed = std::max(needed, versionOf(feature));
}

std::optional<std::string> raisedVersion(DocumentCache& cache) {
    const ObjectOwner catalog = entryOf(cache, cache.trailer.get(), "Root");
    const std::int32_t stated =
        std::max(parsed(cache.version), parsed(nameEntry(cache, catalog.get(), "Version")));
    if (needed <= stated) {
        return std::nullopt;
    }
    return std::to_string(needed / 10) + "." + std::to_string(needed % 10);
}

} // namespace corvane
