#include "writer/mend/page_nodes.h"

#include "objects/identity.h"
#include "objects/referenced.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "writer/mend/refusal.h"
#include "writer/mend/sound_copy.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace corvane {

namespace {

/// Kids of a node that is made: as many as fit a page of memory, and few enough levels.
constexpr std::size_t madeKids = 256;

bool isNamed(const Object& object, std::string_view name) {
    return typeObject(object) == ObjectType::literal && literalObject(object) == name;
}

/// The tree as its nodes have it, with what is wrong in each put right.
class NodeWalk {
public:
    explicit NodeWalk(DocumentCache& cache) : cache_(cache) {}

    /// False where the nodes do not lead to the pages of the cache.
    bool run() {
        const ObjectOwner catalog = lookupObject(cache_, cache_.trailer.get(), "Root");
        if (typeObject(catalog.get()) != ObjectType::dictionary) {
            return false;
        }
        const ObjectIdentifier root = referenced(findEntry(cache_, catalog.get(), "Pages"));
        if (root.number == 0 || !enter(root, {}) || levels_.empty()) {
            return false;
        }
        while (!levels_.empty()) {
            if (!step()) {
                return false;
            }
        }
        return next_ == cache_.pages.size();
    }

    std::map<std::int32_t, PageNode> takeChanged() { return std::move(changed_); }

private:
    /// A node that is being looked at.
    struct Level {
        PageNode node;
        bool isRight = true; ///< in itself, but for its Kids and Count
        std::optional<std::int32_t> statedCount;
        ObjectOwner kids;
        std::size_t next = 0;
        bool hasDirect = false; ///< a page without a number is among its Kids
    };

    bool step() {
        Level& level = levels_.back();
        const std::span<Object> kids = elementsObject(level.kids.get());
        if (level.next == kids.size()) {
            return leave();
        }
        const Object kid = kids[level.next++];
        const ObjectIdentifier identifier = referenced(kid);
        if (identifier.number == 0) {
            return typeObject(kid) != ObjectType::dictionary || noteDirect();
        }
        return enter(identifier, level.node.object);
    }

    /// Looks at one kid: a page is compared, a node is entered; what is neither is passed over.
    bool enter(ObjectIdentifier object, ObjectIdentifier parent) {
        ObjectOwner reference;
        indirectObject(reference.get(), object.number, object.generation);
        ObjectOwner value;
        const bool isRead = tryResolveObject(cache_, reference.get(), value) == Exception::none;
        if (!isRead || typeObject(value.get()) != ObjectType::dictionary) {
            return true;
        }
        ObjectOwner kids;
        attempted([&] { kids = lookupObject(cache_, value.get(), "Kids"); });
        const bool isNode = typeObject(kids.get()) == ObjectType::array;
        const bool isMoved =
            parent.number != 0 && referenced(findEntry(cache_, value.get(), "Parent")) != parent;
        const bool isRight =
            !isMoved && isNamed(findEntry(cache_, value.get(), "Type"), isNode ? "Pages" : "Page");
        if (!isNode) {
            forgetObject(cache_, object.number, object.generation);
            return notePage(
                {.object = object, .parent = parent, .isPage = true, .isMoved = isMoved}, isRight);
        }
        if (levels_.size() == budget::pageTreeDepth) {
            return false;
        }
        if (!nodes_.insert(object.number).second) {
            return true; // it leads back
        }
        Level level;
        level.node.object = object;
        level.node.parent = parent;
        level.node.isMoved = isMoved;
        level.isRight = isRight;
        const Object count = findEntry(cache_, value.get(), "Count");
        if (typeObject(count) == ObjectType::integer) {
            level.statedCount = integerObject(count);
        }
        level.kids = std::move(kids);
        if (!levels_.empty()) {
            levels_.back().node.kids.push_back(object);
        }
        levels_.push_back(std::move(level));
        return true;
    }

    bool notePage(const PageNode& page, bool isRight) {
        const std::int32_t number = page.object.number;
        if (levels_.empty() || !isNext(number)) {
            return false;
        }
        levels_.back().node.kids.push_back(page.object);
        ++levels_.back().node.count;
        // A page that several nodes name has one Parent.
        const bool isFirst = pages_.insert(number).second;
        if (isFirst && !isRight) {
            changed_[number] = page;
        } else if (!isFirst && isRight) {
            changed_.erase(number);
        }
        return true;
    }

    bool noteDirect() {
        levels_.back().hasDirect = true;
        ++levels_.back().node.count;
        levels_.back().node.kids.emplace_back();
        return isNext(0);
    }

    bool isNext(std::int32_t number) {
        return next_ < cache_.pages.size() && cache_.pages[next_++].number == number;
    }

    bool leave() {
        Level level = std::move(levels_.back());
        levels_.pop_back();
        const std::span<Object> stated = elementsObject(level.kids.get());
        level.node.keepsKids = stated.size() == level.node.kids.size();
        if (!level.node.keepsKids && level.hasDirect) {
            return false;
        }
        if (!level.isRight || !level.node.keepsKids || level.statedCount != level.node.count) {
            changed_[level.node.object.number] = level.node;
        }
        if (!levels_.empty()) {
            levels_.back().node.count += level.node.count;
        }
        return true;
    }

    DocumentCache& cache_;
    std::vector<Level> levels_;
    std::unordered_set<std::int32_t> nodes_;
    std::unordered_set<std::int32_t> pages_;
    std::size_t next_ = 0; ///< of the cache's pages
    std::map<std::int32_t, PageNode> changed_;
};

/// Puts nodes above `row`, by their numbers in `nodes`; the numbers of these nodes.
std::vector<ObjectIdentifier> rowAbove(std::map<std::int32_t, PageNode>& nodes,
                                       std::span<const ObjectIdentifier> row) {
    std::vector<ObjectIdentifier> above;
    for (std::size_t first = 0; first < row.size(); first += madeKids) {
        PageNode node{.object = {nextIdentity(), 0}, .parent = {}, .isNew = true};
        for (const ObjectIdentifier kid :
             row.subspan(first, std::min(madeKids, row.size() - first))) {
            PageNode& below = nodes[kid.number];
            below.parent = node.object;
            node.count += below.isPage ? 1 : below.count;
            node.kids.push_back(kid);
        }
        above.push_back(node.object);
        nodes[node.object.number] = std::move(node);
    }
    return above;
}

PageNodes madeTree(const DocumentCache& cache) {
    PageNodes made;
    std::vector<ObjectIdentifier> row;
    for (const PageEntry& page : cache.pages) {
        if (page.number == 0) {
            refuseMend(Reason::unnumberedPage);
        }
        const ObjectIdentifier object{page.number, page.generation};
        made.changed[page.number] = {.object = object, .isPage = true, .isMoved = true};
        row.push_back(object);
    }
    do {
        row = rowAbove(made.changed, row);
    } while (row.size() > 1);
    made.root = row.at(0);
    return made;
}

} // namespace

PageNodes planPageNodes(DocumentCache& cache) {
    NodeWalk walk(cache);
    if (walk.run()) {
        return {.changed = walk.takeChanged(), .root = {}};
    }
    return madeTree(cache);
}

std::vector<RawEntry> inheritedEntries(DocumentCache& cache, ObjectIdentifier page) {
    std::vector<RawEntry> inherited;
    for (std::int32_t depth = 0; depth < budget::pageTreeDepth; ++depth) {
        ObjectIdentifier parent;
        attempted([&] {
            ObjectOwner reference;
            indirectObject(reference.get(), page.number, page.generation);
            const ObjectOwner node = resolveObject(cache, reference.get());
            parent = referenced(findEntry(cache, node.get(), "Parent"));
        });
        if (parent.number == 0) {
            break;
        }
        page = parent;
        attempted([&] {
            for (RawEntry& entry : soundEntries(cache, page)) {
                constexpr std::array<std::string_view, 4> keys = {"Resources", "MediaBox",
                                                                  "CropBox", "Rotate"};
                if (std::ranges::find(keys, entry.key) != keys.end() &&
                    std::ranges::find(inherited, entry.key, &RawEntry::key) == inherited.end()) {
                    inherited.push_back(std::move(entry));
                }
            }
        });
    }
    return inherited;
}

std::string referenceText(ObjectIdentifier object) {
    return std::to_string(object.number) + " " + std::to_string(object.generation & 0xFFFF) + " R";
}

void writePageNode(DocumentCache& cache, const PageNode& node) {
    CopyChanges changes;
    changes.entries.push_back({"Type", node.isPage ? "/Page" : "/Pages"});
    if (node.isPage) {
        changes.entries.push_back({.key = "Kids", .value = "null", .onlyInPlace = true});
    }
    if (node.parent.number != 0) {
        changes.entries.push_back({"Parent", referenceText(node.parent)});
    }
    if (!node.isPage) {
        changes.entries.push_back({"Count", std::to_string(node.count)});
        if (!node.keepsKids) {
            std::string kids = "[";
            for (const ObjectIdentifier kid : node.kids) {
                kids += " " + referenceText(kid);
            }
            changes.entries.push_back({"Kids", kids + " ]"});
        }
    }
    if (node.isMoved) {
        changes.inherited = inheritedEntries(cache, node.object);
    }
    if (node.isNew) {
        writeNew(cache, node.object, changes);
    } else {
        writeCopy(cache, node.object, changes);
    }
}

} // namespace corvane
