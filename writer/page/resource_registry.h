// The resources of a page that is written: what its content names, by category.
//
// A registry begins empty, for a page that is drawn anew, or with the resources of the page's base,
// for content that goes on using them. Then objects are added: new ones, and ones that the file has
// already.
#pragma once

#include "reader/document/cache.h"
#include "reader/page/page_base.h"
#include "writer/page/carried_entries.h"
#include "writer/page/content_names.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// The categories that hold objects by name (PDF Reference, 3.7.2), in the order of writing.
enum class ResourceCategory {
    font,
    object, ///< XObject: images and forms
    graphicsState,
    colourSpace,
    pattern,
    shading,
    property, ///< of marked content
};

/// The entries of the resources of the base of the page in use, its own or inherited.
std::vector<RawEntry> resourceEntries(DocumentCache& cache, const PageBase& base);

class ResourceRegistry {
public:
    /// Takes over the entries of a Resources dictionary in their own bytes: once, before anything
    /// is added. What is no dictionary cannot be used by content: it is carried while nothing is
    /// added to it.
    void carry(DocumentCache& cache, std::vector<RawEntry> entries);
    /// New objects get none of the names that this content uses, or what it draws: some lead
    /// nowhere, or further out. The cache outlives the registry.
    void avoidNames(DocumentCache& cache, std::vector<ObjectOwner> content, ObjectOwner resources);
    /// Both for the base of the page in use, whose resources are its own or inherited; its
    /// annotations may use them, too.
    void carryBase(DocumentCache& cache, const PageBase& base);

    /// The name of an indirect object in a category, without a slash: the one that it was added
    /// with, or the shortest of the kind "GS1" that is free there and that the base's content does
    /// not use. Content may use names that its resources lack, which must go on meaning nothing.
    std::string_view add(ResourceCategory category, std::int32_t number, std::int32_t generation);
    /// Adds an object by a name that the content has already; a name that is there stays what it
    /// is.
    void add(ResourceCategory category, std::string_view name, std::int32_t number,
             std::int32_t generation);

    bool hasAdded(ResourceCategory category) const;
    bool hasAdded() const; ///< anything at all

    /// Writes the entries of a Resources dictionary, which stands in the object `in`, to the
    /// cache's output.
    void write(DocumentCache& cache, ObjectIdentifier in) const;

private:
    using Reference = std::pair<std::int32_t, std::int32_t>; // number and generation

    struct Category {
        CarriedEntries former;  // the base's own, as one entry
        CarriedEntries carried; // what that holds
        std::vector<std::pair<std::string, Reference>> added;
        std::map<Reference, std::string> names;  // of what was added
        std::set<std::string, std::less<>> used; // names
        std::int32_t latest = 0;                 // number in the name that was made last
    };
    static constexpr auto categoryCount = static_cast<std::size_t>(ResourceCategory::property) + 1;

    bool isUsed(const Category& in, const std::string& name);
    void readNames();

    std::array<Category, categoryCount> categories_;
    CarriedEntries others_; // of the base's resources: procedure sets, and what is not known

    // What the base draws with them; it is read when the first name is made.
    DocumentCache* cache_ = nullptr;
    std::vector<ObjectOwner> content_;
    ObjectOwner resources_;
    bool isOfPage_ = false;
    std::optional<ContentNames> names_;
};

} // namespace corvane
