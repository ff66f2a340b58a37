// Forms that take the place of forms of the page: the dictionary is carried over, the content is
// patched. The page's form stays in the file, for other places that draw it.
#pragma once

#include "reader/document/cache.h"
#include "reader/form/form_entries.h"
#include "reader/syntax/raw_entries.h"
#include "writer/page/carried_entries.h"
#include "writer/page/resource_registry.h"
#include "writer/patch/content_patch.h"
#include "writer/patch/form/edited_form.h"
#include "writer/patch/patched_streams.h"

#include <memory>
#include <optional>

namespace corvane {

/// A form that is to be written (PDF Reference, 4.9).
struct FormObject {
    CarriedEntries entries;     ///< all but those below
    std::optional<FormBox> box; ///< where it is another one
    /// Of the content: its own, or those in force around it, and what was added.
    std::unique_ptr<ResourceRegistry> resources;
    std::optional<RawEntry> resourcesEntry; ///< its own, where nothing was added
    ContentPatch patch;
    PatchedStream stream;
    bool compresses = false;
};

/// Whether the page's own object cannot be drawn for it.
bool needsObject(const EditedForm& form);

/// Gives the form an object. The forms within it that need one have it.
FormObject planForm(PageTools& tools, EditedForm& form);

/// Writes it to the cache's output.
void writeForm(DocumentCache& cache, FormObject& form);

} // namespace corvane
