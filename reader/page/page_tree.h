// The walk of the page tree.
#pragma once

#include "reader/document/cache.h"
#include "runtime/exception.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

/// A walk of the tree that goes on from page to page.
class PageWalk {
public:
    explicit PageWalk(DocumentCache& cache);

    /// Goes on until the list has `wanted` pages; false at the end of the tree.
    bool goTo(std::size_t wanted);

private:
    /// What an object of the tree turned out to be.
    enum class Seen { nothing, page, node };

    /// One node above the one being looked at: its Kids, and which comes next.
    struct Level {
        std::int32_t number = 0; ///< of the node; 0 where it stands in Kids itself
        ObjectOwner kids;
        std::size_t next = 0;
    };

    void visit(const Object& kid);
    void passOver(Exception fault);
    void repeat(Seen known, PageEntry entry);
    void note(const ObjectOwner& node, PageEntry entry);
    void list(PageEntry entry);

    DocumentCache& cache_;
    bool isBegun_ = false;
    std::int32_t catalog_ = 0; ///< in the extended profile it is never a page; 0: not known
    std::size_t found_ = 0;
    std::vector<Level> levels_;
    std::unordered_map<std::int32_t, Seen> seen_;  ///< by object number
    std::unordered_set<std::int32_t> enteredKids_; ///< arrays by their own number
};

/// Lists the pages as far as page `last`; a later call goes on from there. The tree is followed by
/// its Kids, never by a Count. A loop, and a tree deeper than the budget, raise `structure`; a Kids
/// entry that is no node raises `range`; the extended profile passes over these. The pages listed
/// before stay.
void walkPages(DocumentCache& cache, std::int32_t last = everyPage);

} // namespace corvane
