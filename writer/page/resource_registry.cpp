#include "writer/page/resource_registry.h"

#include "output/primitives.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

struct CategoryNames {
    std::string_view key;    ///< in Resources
    std::string_view prefix; ///< of new names
};

/// In the order of `ResourceCategory`.
constexpr std::array categoryNames = {
    CategoryNames{"Font", "F"},        CategoryNames{"XObject", "X"},
    CategoryNames{"ExtGState", "GS"},  CategoryNames{"ColorSpace", "CS"},
    CategoryNames{"Pattern", "P"},     CategoryNames{"Shading", "Sh"},
    CategoryNames{"Properties", "MC"},
};

constexpr std::int32_t numberBeyondChance = 40'000'000;

std::size_t indexOf(ResourceCategory category) {
    return static_cast<std::size_t>(category);
}

/// The entries of the resources that the page in use inherits: of the nearest node above it that
/// says something, as `pageCache` finds them. Nodes may lead back to themselves.
std::vector<RawEntry> inheritedEntries(DocumentCache& cache) {
    const PageEntry& page = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    ObjectOwner node = sharedObject(cache.page.get());
    std::vector<RawEntry> entries = soundEntries(cache, {page.number, page.generation});
    const auto enter = [&](std::string_view key) {
        const auto entry = std::ranges::find(entries, key, &RawEntry::key);
        entries =
            entry == entries.end() ? std::vector<RawEntry>() : rawEntries(cache, RawEntry(*entry));
    };
    for (std::int32_t depth = 0; depth < budget::pageTreeDepth; ++depth) {
        node = lookupObject(cache, node.get(), "Parent");
        if (typeObject(node.get()) != ObjectType::dictionary) {
            break;
        }
        enter("Parent");
        if (typeObject(lookupObject(cache, node.get(), "Resources").get()) != ObjectType::null) {
            enter("Resources");
            return entries;
        }
    }
    return {};
}

} // namespace

void ResourceRegistry::readNames() {
    names_.emplace(*cache_, content_, resources_.get());
    if (isOfPage_) {
        names_->addAnnotations();
    }
}

bool ResourceRegistry::isUsed(const Category& in, const std::string& name) {
    return in.used.contains(name) || (names_ && names_->contains(name));
}

std::vector<RawEntry> resourceEntries(DocumentCache& cache, const PageBase& base) {
    return base.resourcesEntry ? rawEntries(cache, *base.resourcesEntry) : inheritedEntries(cache);
}

void ResourceRegistry::carryBase(DocumentCache& cache, const PageBase& base) {
    std::vector<ObjectOwner> streams;
    for (const BaseStream& stream : base.streams) {
        streams.push_back(sharedObject(stream.stream.get()));
    }
    avoidNames(cache, std::move(streams), sharedObject(base.resources.get()));
    isOfPage_ = true;
    carry(cache, resourceEntries(cache, base));
}

void ResourceRegistry::avoidNames(DocumentCache& cache, std::vector<ObjectOwner> content,
                                  ObjectOwner resources) {
    cache_ = &cache;
    content_ = std::move(content);
    resources_ = std::move(resources);
}

void ResourceRegistry::carry(DocumentCache& cache, std::vector<RawEntry> entries) {
    for (RawEntry& entry : entries) {
        const auto names = std::ranges::find(categoryNames, entry.key, &CategoryNames::key);
        if (names == categoryNames.end()) {
            others_.add(std::move(entry));
            continue;
        }
        Category& category = categories_[static_cast<std::size_t>(names - categoryNames.begin())];
        std::vector<RawEntry> held;
        // What is damaged is as good as no dictionary.
        attempted([&] { held = rawEntries(cache, entry); });
        for (RawEntry& named : held) {
            category.used.insert(named.key);
            category.carried.add(std::move(named));
        }
        category.former.add(std::move(entry));
    }
}

std::string_view ResourceRegistry::add(ResourceCategory category, std::int32_t number,
                                       std::int32_t generation) {
    Category& in = categories_[indexOf(category)];
    if (const auto known = in.names.find({number, generation}); known != in.names.end()) {
        return known->second;
    }
    if (!names_ && cache_ != nullptr) {
        readNames();
    }
    // What was not read does not use such a name by chance.
    if (names_ && names_->isCut()) {
        in.latest = std::max(in.latest, numberBeyondChance);
    }
    std::string name;
    do {
        name = std::string(categoryNames[indexOf(category)].prefix) + std::to_string(++in.latest);
    } while (isUsed(in, name));
    add(category, name, number, generation);
    return in.names.at({number, generation});
}

void ResourceRegistry::add(ResourceCategory category, std::string_view name, std::int32_t number,
                           std::int32_t generation) {
    Category& in = categories_[indexOf(category)];
    if (!in.used.emplace(name).second) {
        return;
    }
    const Reference object{number, generation};
    in.names.try_emplace(object, name);
    in.added.emplace_back(name, object);
}

bool ResourceRegistry::hasAdded(ResourceCategory category) const {
    return !categories_[indexOf(category)].added.empty();
}

bool ResourceRegistry::hasAdded() const {
    return std::ranges::any_of(categories_,
                               [](const Category& category) { return !category.added.empty(); });
}

void ResourceRegistry::write(DocumentCache& cache, ObjectIdentifier in) const {
    Filter& output = *cache.output;
    for (std::size_t i = 0; i < categoryCount; ++i) {
        const Category& category = categories_[i];
        if (category.added.empty()) {
            category.former.write(cache, in);
            continue;
        }
        nameOutput(output, categoryNames[i].key);
        stringOutput(output, "<<\r");
        category.carried.write(cache, in);
        for (const auto& [name, object] : category.added) {
            nameOutput(output, name);
            referenceOutput(output, object.first, object.second);
        }
        stringOutput(output, ">>\r");
    }
    others_.write(cache, in);
}

} // namespace corvane
