#include "writer/patch/base/content_resources.h"

#include "writer/page/resource_registry.h"

namespace corvane {

std::vector<RawEntry> entriesOfResources(DocumentCache& cache, const BaseContent& content,
                                         const PageBase& base) {
    const BaseContent* owner = &content;
    while (owner->form != nullptr && !owner->form->hasResources) {
        owner = owner->around;
    }
    if (owner->form == nullptr) {
        return resourceEntries(cache, base);
    }
    for (const RawEntry& entry : rawEntries(cache, owner->form->object, owner->form->generation)) {
        if (entry.key == "Resources") {
            return rawEntries(cache, entry);
        }
    }
    return {};
}

} // namespace corvane
