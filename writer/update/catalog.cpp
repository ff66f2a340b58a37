#include "writer/update/catalog.h"

#include "objects/identity.h"
#include "objects/referenced.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/rules.h"
#include "runtime/warning.h"
#include "writer/layer/layer_properties.h"
#include "writer/mend/sound_copy.h"
#include "writer/page/needed_version.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// A layer is one for all pages that use it.
void warnOfShared(DocumentCache& cache, const SavedLayers& layers) {
    const std::vector<SavedLayer> changed = layers.changed();
    if (std::ranges::any_of(changed, [](const SavedLayer& layer) { return !layer.isNew; }) &&
        statedCount(cache) > 1) {
        raiseWarning(Warning::layersShared);
    }
}

CopyChanges changesOf(DocumentCache& cache, UpdatePlan& plan) {
    CopyChanges changes = plan.mend ? catalogChanges(*plan.mend) : CopyChanges();
    if (plan.layers && plan.layers->changesFile()) {
        warnOfShared(cache, *plan.layers);
        const PropertiesObject properties = planLayerProperties(cache);
        writeLayers(cache, *plan.layers);
        writeLayerProperties(cache, *plan.layers, properties.object);
        if (properties.isNew) {
            changes.entries.push_back({"OCProperties", referenceText(properties.object)});
        }
    }
    if (const auto version = raisedVersion(cache)) {
        changes.entries.push_back({"Version", "/" + *version});
    }
    return changes;
}

/// A catalog that stands in the trailer becomes an object.
void writeFromTrailer(DocumentCache& cache, UpdatePlan& plan, CopyChanges changes) {
    for (const RawEntry& root : rawTrailer(cache)) {
        if (root.key != "Root") {
            continue;
        }
        for (RawEntry& entry : rawEntries(cache, root)) {
            if (std::ranges::find(changes.entries, entry.key, &CopyChanges::Entry::key) ==
                changes.entries.end()) {
                changes.inherited.push_back(std::move(entry));
            }
        }
    }
    const ObjectIdentifier catalog{nextIdentity(), 0};
    writeNew(cache, catalog, changes);
    plan.trailer.entries.replace("Root", referenceText(catalog));
}

} // namespace

bool changesCatalog(const UpdatePlan& plan) {
    return plan.layers && plan.layers->changesFile();
}

void writeCatalog(DocumentCache& cache, UpdatePlan& plan) {
    if (!rules().carriesTrailer) {
        return;
    }
    const CopyChanges changes = changesOf(cache, plan);
    if (changes.entries.empty()) {
        return;
    }
    if (plan.mend && plan.mend->isNewCatalog) {
        return writeNew(cache, plan.mend->catalog, changes);
    }
    const Object root = findEntry(cache, cache.trailer.get(), "Root");
    if (typeObject(root) != ObjectType::reference) {
        return writeFromTrailer(cache, plan, changes);
    }
    writeCopy(cache, referenced(root), changes);
}

} // namespace corvane
