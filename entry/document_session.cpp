#include "entry/document_session.h"

#include "dialogs/dialogs.h"
#include "entry/file_name.h"
#include "objects/family.h"
#include "objects/identity.h"
#include "objects/mask.h"
#include "objects/stack.h"
#include "output/xref.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/warning.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

void allocateState(ParameterBlock& block) {
    if (block.state) {
        return;
    }
    const Handle handle = NewHandleClear(sizeof(PluginState));
    if (!handle) {
        failException(Exception::memory);
    }
    block.state = handle.as<Ref<PluginState>>();
    **block.state = PluginState();
}

} // namespace

DocumentSession::Registries::Registries() {
    openIdentity();
    openFamily();
    openMask();
    openXRef();
}

DocumentSession::Registries::~Registries() {
    closeXRef();
    closeMask();
    closeFamily();
    closeIdentity();
    closeStack();
    resetWarning();
}

DocumentSession::DocumentSession(ParameterBlock& block) : block_(block) {
    allocateState(block);
    cache_ = openCache(specifiedDirectory(*block.file), specifiedName(*block.file));
}

std::int32_t& DocumentSession::page() {
    return (*block_.state)->page;
}

void DocumentSession::close() {
    closeCache(std::move(cache_));
}

bool selectPage(DocumentCache& cache, std::int32_t& page) {
    const std::int32_t count = countCache(cache);
    const auto extension = knownExtension();
    if (extension && extension->wantedPage > 0) {
        page = extension->wantedPage;
        if (page > count) {
            failException(Exception::range);
        }
        return true;
    }
    page = page > 0 ? std::min(page, count) : 1;
    return count < 2 || pagesDialog(1, count, page);
}

} // namespace corvane
