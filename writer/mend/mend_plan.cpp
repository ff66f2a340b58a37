#include "writer/mend/mend_plan.h"

#include "objects/identity.h"
#include "objects/referenced.h"
#include "reader/syntax/syntax.h"
#include "writer/mend/refusal.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// Whether the catalog is a dictionary, and calls itself a catalog.
bool isCatalogRight(DocumentCache& cache, const Object& catalog) {
    const Object type = findEntry(cache, catalog, "Type");
    return typeObject(type) == ObjectType::literal && literalObject(type) == "Catalog";
}

bool isPage(const DocumentCache& cache, const Object& reference) {
    const std::int32_t number = referenced(reference).number;
    return number != 0 &&
           std::ranges::find(cache.pages, number, &PageEntry::number) != cache.pages.end();
}

/// The catalog is written where it names another page tree, does not say what it is, or is missing.
/// A page that the trailer takes for the catalog stays a page.
void planCatalog(DocumentCache& cache, MendPlan& mend) {
    const Object root = findEntry(cache, cache.trailer.get(), "Root");
    const ObjectOwner catalog = resolveObject(cache, root);
    const bool isNewTree = mend.nodes.root.number != 0;
    const bool isOfPage = isPage(cache, root);
    mend.isNewCatalog =
        typeObject(catalog.get()) != ObjectType::dictionary || (isOfPage && isNewTree);
    if (mend.isNewCatalog) {
        mend.catalog = {nextIdentity(), 0};
    } else if (isNewTree || (!isOfPage && !isCatalogRight(cache, catalog.get()))) {
        mend.catalog = referenced(root);
    }
}

bool isWritten(const MendPlan& mend, std::int32_t number) {
    return mend.catalog.number == number || mend.nodes.changed.contains(number) ||
           std::ranges::binary_search(mend.copies, number, {}, &ObjectIdentifier::number);
}

/// What is noted of the file itself is mended with the section and the tree; of objects, what is
/// written again. Other words and values that mean nothing stay as they are.
MendCounts countMended(const DocumentCache& cache, const MendPlan& mend) {
    MendCounts counts = cache.mends.counts();
    const auto at = [&](Mend kind) -> std::int32_t& {
        return counts[static_cast<std::size_t>(kind)];
    };
    at(Mend::pageValue) = 0;
    at(Mend::trailer) = mend.isWhole ? at(Mend::trailer) : 0;
    at(Mend::lostObject) = static_cast<std::int32_t>(
        std::ranges::count_if(cache.mends.objects(Mend::lostObject),
                              [&](std::int32_t number) { return mend.leftOut.contains(number); }));
    for (const Mend kind : {Mend::streamLength, Mend::objectEnd, Mend::syntax}) {
        at(kind) = static_cast<std::int32_t>(
            std::ranges::count_if(cache.mends.objects(kind), [&](std::int32_t number) {
                return isWritten(mend, number) || mend.leftOut.contains(number);
            }));
    }
    const bool isMade = mend.nodes.root.number != 0;
    const bool isCatalogWrong = mend.catalog.number != 0;
    at(Mend::pageNode) = isMade ? 0
                                : static_cast<std::int32_t>(mend.nodes.changed.size()) +
                                      static_cast<std::int32_t>(isCatalogWrong);
    at(Mend::pages) = isMade ? 1 : 0;
    return counts;
}

} // namespace

void refuseUnmendable(DocumentCache& cache) {
    const auto typeOf = [&](std::string_view key) {
        return typeObject(findEntry(cache, cache.trailer.get(), key));
    };
    if (cache.mends.has(Mend::header)) {
        refuseMend(Reason::unmendableHeader);
    }
    if (typeOf("Root") == ObjectType::dictionary) {
        refuseMend(Reason::directCatalog);
    }
    // A trailer that a search found is not carried over byte by byte.
    if (cache.sectionOffsets.empty() && cache.encryption &&
        typeOf("Encrypt") != ObjectType::reference) {
        refuseMend(Reason::unnamedEncryption);
    }
}

bool needsWhole(DocumentCache& cache, const Survey& survey) {
    return countCache(cache) > 0 &&
           (cache.repaired || !survey.missing.empty() || survey.hasDamagedSection);
}

MendPlan planMend(DocumentCache& cache, const Survey& survey) {
    MendPlan mend;
    if (countCache(cache) == 0) {
        return mend;
    }
    mend.isWhole = needsWhole(cache, survey);
    if (mend.isWhole) {
        mend.leftOut.insert(survey.sections.begin(), survey.sections.end());
        mend.leftOut.insert(survey.missing.begin(), survey.missing.end());
    }
    mend.nodes = planPageNodes(cache);
    planCatalog(cache, mend);
    for (const ObjectIdentifier object : survey.damaged) {
        if (!isWritten(mend, object.number)) {
            mend.copies.push_back(object);
        }
    }
    mend.isNothing = !mend.isWhole && mend.copies.empty() && mend.nodes.changed.empty() &&
                     mend.catalog.number == 0;
    mend.mended = countMended(cache, mend);
    return mend;
}

std::optional<PageNode> takeFrom(MendPlan& mend, std::int32_t number) {
    std::erase_if(mend.copies,
                  [&](const ObjectIdentifier& object) { return object.number == number; });
    auto node = mend.nodes.changed.extract(number);
    return node ? std::optional(std::move(node.mapped())) : std::nullopt;
}

CopyChanges catalogChanges(const MendPlan& mend) {
    CopyChanges changes;
    if (mend.catalog.number != 0) {
        changes.entries.push_back({"Type", "/Catalog"});
    }
    if (mend.nodes.root.number != 0) {
        changes.entries.push_back({"Pages", referenceText(mend.nodes.root)});
    }
    return changes;
}

void writeMend(DocumentCache& cache, const MendPlan& mend) {
    for (const ObjectIdentifier object : mend.copies) {
        writeCopy(cache, object);
    }
    for (const auto& [number, node] : mend.nodes.changed) {
        writePageNode(cache, node);
    }
}

} // namespace corvane
