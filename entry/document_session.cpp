#include "entry/document_session.h"

#include "dialogs/dialogs.h"
#include "entry/file_name.h"
#include "entry/page_proxies.h"
#include "objects/family.h"
#include "objects/identity.h"
#include "objects/mask.h"
#include "objects/stack.h"
#include "output/xref.h"
#include "reader/page/page_tree.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/rules.h"
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

DocumentSession::DocumentSession(ParameterBlock& block, PageReach reach) : block_(block) {
    allocateState(block);
    cache_ = openCache(specifiedDirectory(*block.file), specifiedName(*block.file),
                       reach == PageReach::every ? everyPage : pageToRead());
}

std::int32_t DocumentSession::pageToRead() {
    const auto extension = knownExtension();
    const std::int32_t wanted = extension ? extension->wantedPage : 0;
    return std::max(wanted > 0 ? wanted : page(), 1);
}

std::int32_t& DocumentSession::page() {
    return (*block_.state)->page;
}

void DocumentSession::close() {
    closeCache(std::move(cache_));
}

bool hostNamesPage() {
    const auto extension = knownExtension();
    return extension && extension->wantedPage > 0 && rules().profile == Profile::extended;
}

void keepNamedPage(ParameterBlock& block) {
    allocateState(block);
    (*block.state)->page = knownExtension()->wantedPage;
}

bool selectPage(DocumentCache& cache, std::int32_t& page) {
    const auto extension = knownExtension();
    if (extension && extension->wantedPage > 0) {
        page = extension->wantedPage;
        walkPages(cache, page);
        if (page > std::ssize(cache.pages)) {
            failException(Exception::range);
        }
        return true;
    }
    const std::int32_t count = statedCount(cache);
    page = page > 0 ? std::min(page, count) : 1;
    if (count < 2) {
        return true;
    }
    CacheProxies proxies(cache);
    return pagesDialog(1, count, page, proxies);
}

} // namespace corvane
