// The walk of the page tree: every page in order, by the reference that leads to it.
#include "reader/page/page_tree.h"
#include "objects/referenced.h"
#include "reader/page/page_search.h"
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <span>
#include <utility>

namespace corvane {

namespace {

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

} // namespace

PageWalk::PageWalk(DocumentCache& cache) : cache_(cache) {}

bool PageWalk::goTo(std::size_t wanted) {
    if (!std::exchange(isBegun_, true)) {
        const ObjectOwner catalog = lookupObject(cache_, cache_.trailer.get(), "Root");
        if (rules().skipsDamagedKids && typeObject(catalog.get()) != ObjectType::dictionary) {
            return false;
        }
        const Object root = findEntry(cache_, cache_.trailer.get(), "Root");
        if (rules().skipsDamagedKids) {
            catalog_ = referenced(root).number;
        }
        visit(findEntry(cache_, catalog.get(), "Pages"));
    }
    while (!levels_.empty() && cache_.pages.size() < wanted) {
        Level& level = levels_.back();
        const std::span<Object> kids = elementsObject(level.kids.get());
        if (level.next == kids.size()) {
            levels_.pop_back();
            continue;
        }
        visit(kids[level.next++]);
    }
    return !levels_.empty();
}

/// Looks at one node: a page is noted, a node with Kids is entered.
void PageWalk::visit(const Object& kid) {
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
        if (!enteredKids_.insert(referenced(kidsEntry).number).second) {
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
void PageWalk::passOver(Exception fault) {
    if (!rules().skipsDamagedKids) {
        failException(fault);
    }
    cache_.mends.note(Mend::pageNode, levels_.empty() ? 0 : levels_.back().number);
}

/// The same page twice is unusual but harmless; a node twice may be a loop.
void PageWalk::repeat(Seen known, PageEntry entry) {
    if (known == Seen::node) {
        return passOver(Exception::structure);
    }
    if (known == Seen::page) {
        list(std::move(entry));
    }
}

void PageWalk::note(const ObjectOwner& node, PageEntry entry) {
    if (entry.number != 0 && entry.number == catalog_) {
        return passOver(Exception::range); // it names itself
    }
    if (entry.number == 0) {
        entry.direct = sharedObject(node.get());
    } else {
        // It is read again when it is wanted; thousands of pages need not stay in memory.
        forgetObject(cache_, entry.number, entry.generation);
        seen_[entry.number] = Seen::page;
    }
    list(std::move(entry));
}

/// A walk that began anew comes past pages that are listed.
void PageWalk::list(PageEntry entry) {
    if (found_++ == cache_.pages.size()) {
        cache_.pages.push_back(std::move(entry));
    }
}

void walkPages(DocumentCache& cache, std::int32_t last) {
    if (cache.pagesWalked || std::ssize(cache.pages) >= last) {
        return;
    }
    // A walk that raises is given up: going on would pass over what it raised at.
    std::unique_ptr<PageWalk> walk = std::move(cache.pageWalk);
    if (!walk) {
        walk = std::make_unique<PageWalk>(cache);
    }
    if (walk->goTo(static_cast<std::size_t>(last))) {
        cache.pageWalk = std::move(walk);
    } else {
        if (cache.pages.empty() && cache.repaired) {
            searchPages(cache);
        }
        cache.pagesWalked = true;
    }
}

} // namespace corvane
