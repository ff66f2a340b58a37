// A save from beginning to end.
#include "filters/filter.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/crypt/encryption.h"
#include "reader/document/update_mark.h"
#include "reader/page/page_base.h"
#include "reader/shading/page_patterns.h"
#include "reader/syntax/file_bytes.h"
#include "reader/text/show_text.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
#include "runtime/warning.h"
#include "writer/page/needed_version.h"
#include "writer/paint/plain_spaces.h"
#include "writer/patch/annotation_art.h"
#include "writer/update/catalog.h"
#include "writer/update/opened_base.h"
#include "writer/update/signed.h"
#include "writer/update/update.h"
#include "writer/update/update_file.h"
#include "writer/update/update_filter.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

namespace {

/// Whether the host can hold the page that the artwork is compared with.
bool canPatch() {
    const auto extension = knownExtension();
    return extension && extension->version >= 3;
}

void planPatches(DocumentCache& cache, UpdatePlan& plan) {
    ResourceRegistry resources;
    resources.carryBase(cache, *plan.base);
    PagePatch patch = planPatch(cache, *plan.base, resources, *plan.layers);
    const bool isNothing = patch.page.content.isNothing();
    std::vector<PatchedStream> streams = divideContent(patch.page, *plan.base);
    plan.patch = PlannedPatch{.page = std::move(patch),
                              .isNothing = isNothing,
                              .streams = std::move(streams),
                              .resources = std::move(resources)};
}

/// Whether the page is as the artwork has it.
bool isNothing(const UpdatePlan& plan) {
    return plan.patch && plan.patch->isNothing && plan.base->isStanding && plan.geometry.kept;
}

/// An update rests on the sections before it. A cross-reference that only a search could make up
/// for is nothing to add a section to.
void refuseRepaired(const DocumentCache& cache, bool mends) {
    if (rules().guardsFile && cache.repaired && !mends) {
        failException(Exception::repairedFile);
    }
}

/// Settles the trailer and, where the host wants that, what mends the file.
void planFile(DocumentCache& cache, UpdatePlan& plan) {
    const auto extension = knownExtension();
    const bool mends = rules().repairsReferences && extension && extension->mends;
    refuseRepaired(cache, mends);
    Survey survey;
    if (mends) {
        refuseUnmendable(cache);
        survey = surveyObjects(cache);
    }
    plan.trailer = carriedTrailer(cache);
    plan.trailer.isWhole = mends && needsWhole(cache, survey);
    reserveNumbers(cache, plan.trailer);
    plan.firstNew = lastIdentity();
    if (mends) {
        plan.mend = planMend(cache, survey);
        plan.trailer.leftOut = plan.mend->leftOut;
        if (plan.mend->isNewCatalog) {
            plan.trailer.entries.replace("Root", referenceText(plan.mend->catalog));
        }
    }
}

bool mendsSomething(const UpdatePlan& plan) {
    return plan.mend && !plan.mend->isNothing;
}

/// Refuses what owner or signer of the file do not want, where anything is to be written.
void refuseForbidden(DocumentCache& cache, const UpdatePlan& plan) {
    if (!plan.writesPage && !changesCatalog(plan) && !mendsSomething(plan)) {
        return;
    }
    if (cache.encryption && !cache.encryption->allowsChanges()) {
        failException(Exception::notPermitted);
    }
    if (rules().guardsFile) {
        respectSignatures(cache);
    }
}

/// The page is written by the save, with what mending changes of it.
void mendPage(DocumentCache& cache, UpdatePlan& plan) {
    const std::optional<PageNode> node = takeFrom(*plan.mend, plan.facts.objectNumber);
    if (!node) {
        return;
    }
    plan.page.entries.replace("Parent", referenceText(node->parent));
    if (!node->isMoved) {
        return;
    }
    const bool inheritsResources =
        plan.patch && !plan.patch->resources.hasAdded() && !plan.base->resourcesEntry;
    for (RawEntry& entry : inheritedEntries(cache, node->object)) {
        const bool isResources = entry.key == "Resources";
        const bool isWanted = isResources             ? inheritsResources
                              : entry.key == "Rotate" ? true
                                                      : plan.geometry.kept;
        if (isWanted && !plan.page.entries.has(entry.key)) {
            plan.page.entries.add(std::move(entry));
        }
    }
}

/// Groups of the file that the last save of the page made, where this one takes its place: nothing
/// of the page is left that shows in them.
std::vector<std::int32_t> formerLayers(DocumentCache& cache, const UpdatePlan& plan) {
    return plan.base && plan.base->isStanding ? std::vector<std::int32_t>() : lastLayers(cache);
}

/// Looks at everything that can refuse the save before a byte is written.
UpdatePlan planUpdate(DocumentCache& cache) {
    UpdatePlan plan;
    openNeededVersion();
    openPlainSpaces();
    planFile(cache, plan);
    if (rules().recordsOrigin) {
        planBase(cache, plan);
        plan.former = lastUpdate(cache);
    }
    if (rules().readsForms) {
        plan.layers.emplace(cache, formerLayers(cache, plan));
    }
    const PageBase* const base = plan.base ? &*plan.base : nullptr;
    plan.geometry = pageGeometry(cache, base);
    plan.facts = factsOf(cache, plan.geometry);
    plan.page = carriedPage(cache, plan.geometry, base);
    if (plan.base && canPatch()) {
        planPatches(cache, plan);
    } else {
        if (canPatch()) {
            plan.annotations = annotationArt(cache, plan.geometry);
        }
        plan.numbers.content = nextIdentity();
        plan.numbers.length = nextIdentity();
        plan.drawn = hostHoldsText() ? std::make_unique<DrawnContent>(cache) : nullptr;
        plan.paints =
            plan.drawn && hostHoldsPatterns() ? std::make_unique<NewPaints>(cache) : nullptr;
    }
    // Reading the page may have met an entry that leads elsewhere.
    refuseRepaired(cache, plan.mend.has_value());
    plan.writesPage = !isNothing(plan);
    refuseForbidden(cache, plan);
    if (plan.mend && plan.writesPage) {
        mendPage(cache, plan);
    }
    return plan;
}

/// Sets the update off from the file before it.
void writeMark(DocumentCache& cache) {
    const std::string last = bytesOfFile(cache, cache.fileLength - 1, 1);
    if (last != "\n" && last != "\r") {
        stringOutput(*cache.output, "\r");
    }
    stringOutput(*cache.output, updateMark(cache.fileLength));
}

/// Writes the update but for its end; the offset of its section.
std::int32_t writeUpdate(DocumentCache& cache, UpdatePlan& plan, SavedFacts& facts) {
    if (rules().marksUpdates) {
        writeMark(cache);
    }
    if (plan.mend) {
        writeMend(cache, *plan.mend);
    }
    if (plan.writesPage) {
        facts.contentLength = pageWrite(cache, plan);
    }
    writeCatalog(cache, plan);
    const std::int32_t section = updateWrite(cache, plan.trailer);
    forallXRef([&](const XRefEntry&) { ++facts.objects; });
    return section;
}

/// Whether all that was written stands in the file already: the page was last saved with the same
/// outcome. Only writing it shows that, since objects are made as they are written.
bool isRepeated(const UpdatePlan& plan) {
    return plan.written && plan.written == plan.former && !changesCatalog(plan) &&
           !mendsSomething(plan);
}

/// Of the file's own.
std::int32_t changedLayers(const SavedLayers& layers) {
    const std::vector<SavedLayer> changed = layers.changed();
    return static_cast<std::int32_t>(
        std::ranges::count_if(changed, [](const SavedLayer& layer) { return !layer.isNew; }));
}

SavedFacts savedFacts(DocumentCache& cache, const UpdatePlan& plan) {
    SavedFacts facts;
    facts.page = plan.facts;
    if (plan.writesPage) {
        facts.places = placesCache(cache);
    }
    facts.formerLength = cache.fileLength;
    facts.isPatched = plan.patch.has_value();
    facts.isNothing = !plan.writesPage && !changesCatalog(plan);
    if (plan.mend) {
        facts.mended = plan.mend->mended;
    }
    facts.isMended = mendsSomething(plan);
    if (plan.patch) {
        const PatchCounts& counts = plan.patch->page.page.counts;
        facts.kept = counts.kept;
        facts.changed = counts.changed;
        facts.added = counts.added;
        facts.removed = counts.removed;
        facts.moved = counts.moved;
    }
    facts.changed += plan.layers ? changedLayers(*plan.layers) : 0;
    return facts;
}

void tellSaved(const SavedFacts& facts, Warning overwritten = Warning::none) {
    if (overwritten != Warning::none) {
        raiseWarning(overwritten);
    }
    const auto extension = knownExtension();
    if (extension && extension->saved != nullptr) {
        extension->saved(extension->context, facts);
    }
}

/// Nothing is to be written: the file stays as it is.
void tellNothing(DocumentCache& cache, SavedFacts facts) {
    facts.length = cache.wholeLength;
    facts.formerLength = cache.wholeLength;
    tellSaved(facts);
}

void append(DocumentCache& cache, UpdatePlan& plan) {
    SavedFacts facts = savedFacts(cache, plan);
    if (facts.isNothing && !facts.isMended) {
        return tellNothing(cache, facts);
    }
    UpdateFile file(cache);
    const Exception code = guarded([&] {
        file.begin();
        const std::int32_t section = writeUpdate(cache, plan, facts);
        facts.isNothing = isRepeated(plan);
        if (!facts.isNothing) {
            file.finish(updateEnd(section));
        }
    });
    if (code != Exception::none || facts.isNothing) {
        file.takeBack();
    }
    file.close();
    raiseException(code);
    if (facts.isNothing) {
        return tellNothing(cache, facts);
    }
    facts.length = file.length();
    tellSaved(facts, plan.overwritten);
}

/// The same, but what would be appended is only counted.
void measure(DocumentCache& cache, UpdatePlan& plan) {
    SavedFacts facts = savedFacts(cache, plan);
    if (facts.isNothing && !facts.isMended) {
        return tellNothing(cache, facts);
    }
    Chain output;
    output.link(setupUpdate(cache.fileLength, cache.headerOffset));
    auto& update = static_cast<UpdateFilter&>(*output.top());
    cache.output = &update;
    const Exception code = guarded([&] {
        const std::int32_t section = writeUpdate(cache, plan, facts);
        stringOutput(update, updateEnd(section));
    });
    cache.output = nullptr;
    raiseException(code);
    if (isRepeated(plan)) {
        facts.isNothing = true;
        return tellNothing(cache, facts);
    }
    facts.length = update.start + update.count;
    tellSaved(facts, plan.overwritten);
}

} // namespace

void writeCache(DocumentCache& cache) {
    UpdatePlan plan = planUpdate(cache);
    append(cache, plan);
}

void tryCache(DocumentCache& cache) {
    UpdatePlan plan = planUpdate(cache);
    measure(cache, plan);
}

void mendCache(DocumentCache& cache, bool tries) {
    UpdatePlan plan;
    plan.writesPage = false;
    planFile(cache, plan);
    refuseForbidden(cache, plan);
    if (tries) {
        measure(cache, plan);
    } else {
        append(cache, plan);
    }
}

} // namespace corvane
