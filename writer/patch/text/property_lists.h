// Property lists of marked content that the resources name (PDF Reference, 10.5.2), without what
// their text no longer reads as.
#pragma once

#include "writer/page/carried_entries.h"
#include "writer/patch/patch_tools.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A copy that is to be written. Other marked content goes on with the list that it names.
struct PropertyList {
    std::int32_t number = 0;
    CarriedEntries entries;
};

class PropertyLists {
public:
    explicit PropertyLists(PatchTools& tools) : tools_(tools) {}

    /// The name of a copy of a list without ActualText; nothing where it has none, or no list has
    /// that name. The name is as the content writes it.
    std::optional<std::string> withoutActualText(std::string_view name);

    std::vector<PropertyList> take() { return std::move(copies_); }

private:
    std::vector<RawEntry> entriesOf(std::string_view name);
    std::optional<std::string> copy(const std::string& name);

    PatchTools& tools_;
    std::optional<std::vector<RawEntry>> named_; ///< those of the resources
    std::map<std::string, std::optional<std::string>, std::less<>> known_;
    std::vector<PropertyList> copies_;
};

/// Writes a copy to the cache's output.
void writePropertyList(DocumentCache& cache, const PropertyList& list);

} // namespace corvane
