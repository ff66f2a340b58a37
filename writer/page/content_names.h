// The names that a content uses, and all that it draws: forms, glyph procedures, tiles, masks.
#pragma once

#include "reader/document/cache.h"
#include "writer/page/used_names.h"

#include <cstdint>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

/// Content that is drawn may lack resources of its own, or some of the names that it uses; readers
/// then look further out, so all of it counts. Each object is read once, and damaged ones as far as
/// they can be read.
class ContentNames {
public:
    /// Of streams that look up names in `resources`. Raises `cancelled`.
    ContentNames(DocumentCache& cache, const std::vector<ObjectOwner>& streams,
                 const Object& resources);
    /// Adds the appearances of the annotations of the page in use.
    void addAnnotations();

    bool contains(std::string_view name) const { return names_.contains(name); }
    /// Not all could be read: there is more than a page can need.
    bool isCut() const { return left_ <= 0; }

private:
    void readAll();
    void readStream(const Object& stream);
    void addResources(const Object& resources);
    void addEach(const Object& dictionary);
    void add(const Object& value);

    DocumentCache* cache_;
    UsedNames names_;
    std::set<std::pair<std::int32_t, std::int32_t>> seen_; // numbers and generations
    std::vector<ObjectOwner> pending_;                     // streams and dictionaries to be read
    std::int64_t left_;                                    // bytes, and as much for each object
};

} // namespace corvane
