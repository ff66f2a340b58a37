// The page tree as it should be, and what has to be written for that.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "reader/syntax/raw_entries.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace corvane {

/// A node of the tree, or a page, that is not as it should be.
struct PageNode {
    ObjectIdentifier object;
    ObjectIdentifier parent = {}; ///< number 0: the root, whose Parent stays
    bool isPage = false;
    bool isNew = false;     ///< no object stands there yet
    bool isMoved = false;   ///< had another Parent: what it inherited is written into it
    bool keepsKids = false; ///< its Kids are right
    std::vector<ObjectIdentifier> kids = {}; ///< of a node
    std::int32_t count = 0;                  ///< pages below a node
};

struct PageNodes {
    std::map<std::int32_t, PageNode> changed; ///< by number
    ObjectIdentifier root; ///< of a tree that was made anew, which the catalog has to name; else 0
};

/// Compares the tree with the pages that were found, of which there is one at least. Where its own
/// nodes lead to the same pages, those that are wrong in themselves are changed; otherwise a new
/// tree is made for the pages, and its nodes take new numbers. Refuses where a page that would have
/// to be named has none.
PageNodes planPageNodes(DocumentCache& cache);

/// What the page has from the nodes above it, as it stands.
std::vector<RawEntry> inheritedEntries(DocumentCache& cache, ObjectIdentifier page);

/// Writes a node or page anew to the cache's output.
void writePageNode(DocumentCache& cache, const PageNode& node);

/// "12 0 R".
std::string referenceText(ObjectIdentifier object);

} // namespace corvane
