#include "writer/layer/named_groups.h"

#include "objects/referenced.h"
#include "reader/page/digest_feed.h"
#include "reader/page/page_tree.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <vector>

namespace corvane {

namespace {

/// Follows references, each object once, but for the page in use and the catalog, which lists all
/// groups.
class GroupSearch {
public:
    GroupSearch(DocumentCache& cache, const std::set<std::int32_t>& groups)
        : cache_(cache), unmet_(groups), own_(pageInUse(cache).number) {
        const Object root = findEntry(cache, cache.trailer.get(), "Root");
        catalog_ = referenced(root).number;
    }

    void lookAtPages() {
        walkPages(cache_);
        for (const PageEntry& page : cache_.pages) {
            if (page.number != 0) {
                look(ObjectIdentifier{page.number, page.generation});
            } else if (&page != &pageInUse(cache_)) {
                look(page.direct.get());
            }
        }
        look(findEntry(cache_, cache_.page.get(), "Annots"));
    }

    void look(ObjectIdentifier object) {
        Object reference;
        indirectObject(reference, object.number, object.generation);
        look(ObjectOwner(reference).get());
    }

    /// Notes the references in an object and in what it holds.
    void look(const Object& object) {
        std::vector<Object> pending = {object};
        while (!pending.empty()) {
            const Object each = pending.back();
            pending.pop_back();
            const ObjectType type = typeObject(each);
            if (type == ObjectType::reference) {
                note(each);
            } else if (type == ObjectType::array || type == ObjectType::dictionary) {
                const auto held = elementsObject(each);
                pending.insert(pending.end(), held.begin(), held.end());
            } else if (type == ObjectType::stream) {
                pending.push_back(elementsObject(each)[0]);
            }
        }
    }

    /// Looks at what the references lead to. False where that is too much.
    bool follow() {
        readBefore_ = cache_.work.readBytes;
        for (std::size_t i = 0; i < met_.size() && goesOn(); ++i) {
            ObjectOwner object;
            if (tryResolveObject(cache_, met_.reference(i), object) == Exception::none) {
                look(object.get());
            }
        }
        return !isSpent_;
    }

    const std::set<std::int32_t>& found() const { return found_; }

private:
    static const PageEntry& pageInUse(const DocumentCache& cache) {
        return cache.pages.at(static_cast<std::size_t>(cache.pageNumber - 1));
    }

    /// Not where more was read than the whole file once: objects overlap.
    bool goesOn() {
        const std::int64_t read = cache_.work.readBytes - readBefore_;
        isSpent_ = isSpent_ || read > cache_.fileLength + cache_.work.unpackedBytes;
        return !isSpent_ && !unmet_.empty();
    }

    void note(const Object& reference) {
        const std::int32_t number = referenced(reference).number;
        if (unmet_.erase(number) != 0) {
            found_.insert(number);
        } else if (number != own_ && number != catalog_) {
            isSpent_ = !met_.place(reference) || isSpent_;
        }
    }

    DocumentCache& cache_;
    std::set<std::int32_t> unmet_;
    std::set<std::int32_t> found_;
    std::int32_t own_;
    std::int32_t catalog_ = 0;
    std::int64_t readBefore_ = 0;
    MetObjects met_;
    bool isSpent_ = false;
};

} // namespace

std::set<std::int32_t> groupsNamedElsewhere(DocumentCache& cache,
                                            const std::set<std::int32_t>& groups,
                                            std::span<const ObjectIdentifier> rules) {
    GroupSearch search(cache, groups);
    bool isWhole = false;
    attempted([&] {
        for (const ObjectIdentifier rule : rules) {
            search.look(rule);
        }
        search.lookAtPages();
        isWhole = search.follow();
    });
    return isWhole ? search.found() : groups;
}

} // namespace corvane
