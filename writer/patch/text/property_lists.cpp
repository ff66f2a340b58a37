#include "writer/patch/text/property_lists.h"

#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "writer/page/used_names.h"
#include "writer/patch/base/content_resources.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr std::string_view actualText = "ActualText";

/// What the value under a key holds, where it is a dictionary.
std::vector<RawEntry> entriesUnder(DocumentCache& cache, const std::vector<RawEntry>& entries,
                                   std::string_view key) {
    const auto entry = std::ranges::find(entries, key, &RawEntry::key);
    return entry == entries.end() ? std::vector<RawEntry>() : rawEntries(cache, *entry);
}

} // namespace

std::vector<RawEntry> PropertyLists::entriesOf(std::string_view name) {
    DocumentCache& cache = tools_.ofPage.cache;
    if (!named_) {
        named_ = entriesUnder(cache, entriesOfResources(cache, tools_.content, tools_.ofPage.base),
                              "Properties");
    }
    return entriesUnder(cache, *named_, name);
}

std::optional<std::string> PropertyLists::copy(const std::string& name) {
    std::vector<RawEntry> entries = entriesOf(name);
    if (std::ranges::find(entries, actualText, &RawEntry::key) == entries.end()) {
        return std::nullopt;
    }
    PropertyList list{.number = nextIdentity(), .entries = {}};
    for (RawEntry& entry : entries) {
        if (entry.key != actualText) {
            list.entries.add(std::move(entry));
        }
    }
    copies_.push_back(std::move(list));
    return std::string(tools_.resources.add(ResourceCategory::property, copies_.back().number, 0));
}

std::optional<std::string> PropertyLists::withoutActualText(std::string_view name) {
    const std::string decoded = decodedName(name);
    const auto known = known_.find(decoded);
    return known != known_.end() ? known->second
                                 : known_.emplace(decoded, copy(decoded)).first->second;
}

void writePropertyList(DocumentCache& cache, const PropertyList& list) {
    Filter& output = *cache.output;
    touchXRef(output, list.number, 0);
    objectOutput(output, list.number, 0);
    stringOutput(output, "<<\r");
    list.entries.write(cache, {list.number, 0});
    stringOutput(output, ">>\rendobj\r");
}

} // namespace corvane
