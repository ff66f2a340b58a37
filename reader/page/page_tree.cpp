// The walk of the page tree: every page in order, by the reference that leads to it.
#include "reader/page/page_tree.h"

#include "reader/page/page_search.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

namespace {

/// What an object of the tree turned out to be.
enum class Seen { nothing, page, node };

/// One node above the one being looked at: its Kids, and which comes next.
struct Level {
    std::int32_t number = 0; ///< of the node; 0 where it stands in Kids itself
    ObjectOwner kids;
    std::size_t next = 0;
};

/// Whether a page is meant, though there is something under Kids: an array of Kids that leads to
/// nothing, or no array, in what calls itself a page or has a content.
bool isPageInSpite(DocumentCache& cache, const Object& node, const Object& kids) {
    const ObjectType type = typeObject(kids);
    if (type == ObjectType::null || (type == ObjectType::array && sizeObject(kids) > 0)) {
        return false;
    }
    return isPageDictionary(cache, node) ||
           typeObject(findEntry(cache, node, "Contents")) != ObjectType::null;
}

class PageWalk {
public:
    explicit PageWalk(DocumentCache& cache) : cache_(cache) {}

    void run() {
        const ObjectOwner catalog = lookupObject(cache_, cache_.trailer.get(), "Root");
        if (rules().skipsDamagedKids && typeObject(catalog.get()) != ObjectType::dictionary) {
            return;
        }
        visit(findEntry(cache_, catalog.get(), "Pages"));
        while (!levels_.empty()) {
            Level& level = levels_.back();
            const std::span<Object> kids = elementsObject(level.kids.get());
            if (level.next == kids.size()) {
                levels_.pop_back();
                continue;
            }
            visit(kids[level.next++]);
        }
    }

private:
    /// Looks at one node: a page is noted, a node with Kids is entered.
    void visit(const Object& kid) {
        PageEntry entry;
        if (typeObject(kid) == ObjectType::reference) {
            referenceObject(kid, entry.number, entry.generation);
            const auto [known, isNew] = seen_.try_emplace(entry.number, Seen::nothing);
            if (!isNew) {
                return repeat(known->second, std::move(entry));
            }
        }
        const ObjectOwner node = resolveObject(cache_, kid);
        if (typeObject(node.get()) != ObjectType::dictionary) {
            // A damaged Kids array may name what is missing or no page at all.
            return passOver(Exception::range);
        }
        const Object kidsEntry = findEntry(cache_, node.get(), "Kids");
        if (typeObject(kidsEntry) == ObjectType::reference) {
            // Nodes that share their Kids could multiply without end.
            std::int32_t number = 0;
            std::int32_t generation = 0;
            referenceObject(kidsEntry, number, generation);
            if (!enteredKids_.insert(number).second) {
                return passOver(Exception::structure);
            }
        }
        ObjectOwner kids = resolveObject(cache_, kidsEntry);
        if (rules().skipsDamagedKids && isPageInSpite(cache_, node.get(), kids.get())) {
            cache_.mends.note(Mend::pageNode, entry.number);
            return note(node, std::move(entry));
        }
        switch (typeObject(kids.get())) {
        case ObjectType::array:
            if (levels_.size() == budget::pageTreeDepth) {
                return passOver(Exception::structure);
            }
            levels_.push_back({entry.number, std::move(kids), 0});
            seen_[entry.number] = Seen::node;
            return;
        case ObjectType::null:
            return note(node, std::move(entry));
        default:
            return passOver(Exception::range);
        }
    }

    /// Leaves out what is no page and no node, and what could lead on without end; in the original
    /// profile the tree is then refused.
    void passOver(Exception fault) {
        if (!rules().skipsDamagedKids) {
            failException(fault);
        }
        cache_.mends.note(Mend::pageNode, levels_.empty() ? 0 : levels_.back().number);
    }

    /// The same page twice is unusual but harmless; a node twice may be a loop.
    void repeat(Seen known, PageEntry entry) {
        if (known == Seen::node) {
            return passOver(Exception::structure);
        }
        if (known == Seen::page) {
            cache_.pages.push_back(std::move(entry));
        }
    }

    void note(const ObjectOwner& node, PageEntry entry) {
        if (entry.number == 0) {
            retainObject(node.get());
            entry.direct = ObjectOwner(node.get());
        } else {
            // It is read again when it is wanted; thousands of pages need not stay in memory.
            forgetObject(cache_, entry.number, entry.generation);
            seen_[entry.number] = Seen::page;
        }
        cache_.pages.push_back(std::move(entry));
    }

    DocumentCache& cache_;
    std::vector<Level> levels_;
    std::unordered_map<std::int32_t, Seen> seen_;  ///< by object number
    std::unordered_set<std::int32_t> enteredKids_; ///< arrays by their own number
};

} // namespace

void walkPages(DocumentCache& cache) {
    if (!cache.pagesWalked) {
        PageWalk(cache).run();
        if (cache.pages.empty() && cache.repaired) {
            searchPages(cache);
        }
        cache.pagesWalked = true;
    }
}

} // namespace corvane
