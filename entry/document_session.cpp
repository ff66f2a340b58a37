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

namespace corvane {

namespace {

void openRegistries() {
    openIdentity();
    openFamily();
    openMask();
    openXRef();
}

void closeRegistries() {
    closeXRef();
    closeMask();
    closeFamily();
    closeIdentity();
}

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

DocumentSession::DocumentSession(ParameterBlock& block) : block_(block) {
    allocateState(block);
    const std::int16_t directory = specifiedDirectory(*block.file);
    const std::string name = specifiedName(*block.file);
    open_ = true;
    const Exception code = guarded([&] {
        openRegistries();
        cache_ = openCache(directory, name);
    });
    if (code != Exception::none) {
        guarded([this] { close(); });
        raiseException(code);
    }
}

DocumentSession::~DocumentSession() {
    if (open_) {
        const Exception pending = valueException();
        guarded([this] { close(); });
        detail::storeException(pending);
    }
}

std::int32_t& DocumentSession::page() {
    return (*block_.state)->page;
}

void DocumentSession::close() {
    open_ = false;
    const Exception code = guarded([this] {
        if (cache_) {
            closeCache(std::move(cache_));
        }
    });
    closeRegistries();
    clearStack();
    closeStack();
    resetWarning();
    raiseException(code);
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
