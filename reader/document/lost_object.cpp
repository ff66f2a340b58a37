#include "reader/document/lost_object.h"

#include "reader/document/object_search.h"
#include "runtime/warning.h"

namespace corvane {

bool moveToFound(DocumentCache& cache, Ref<ReferenceNode> node) {
    const bool wasRepaired = cache.repaired && !cache.searched;
    if (!cache.isOpened || wasRepaired || node->place().isInStream()) {
        return false;
    }
    if (!cache.searched) {
        cache.searched = openReference();
        searchFile(cache, *cache.searched);
    }
    const Ref<ReferenceNode> found =
        findReference(*cache.searched, node->number, node->generation());
    if (!found || found->place() == node->place()) {
        return false;
    }
    node->move(found->place());
    return true;
}

void noteFound(DocumentCache& cache) {
    raiseWarning(Warning::repaired);
    cache.repaired = true;
    cache.mends.note(Mend::crossReference);
}

} // namespace corvane
