// The plug-in's one exported symbol.
#include "dialogs/dialogs.h"
#include "entry/selectors.h"
#include "host/memory.h"
#include "host/resources.h"
#include "resources/resources.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/reason.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

namespace corvane {

namespace {

std::uint32_t dispatchLater(ParameterBlock& block) {
    switch (block.selector) {
    case Selector::info:
        return info(block);
    case Selector::diagnose:
        return diagnose(block);
    case Selector::log:
        return log(block);
    case Selector::revert:
        return revert(block);
    case Selector::trial:
        return trial(block);
    case Selector::mend:
        return mend(block);
    default:
        return 0;
    }
}

std::uint32_t dispatch(ParameterBlock& block) {
    switch (block.selector) {
    case Selector::identify:
        return resultIdentity;
    case Selector::registerFormat:
        return selectFileFormat();
    case Selector::about:
        aboutDialog();
        return 0;
    case Selector::prepare:
        return prepare(block);
    case Selector::go:
        return go(block);
    case Selector::check:
        return check(block);
    default:
        break;
    }
    // What came later is there only for a host that knows of it.
    return knownExtension() ? dispatchLater(block) : 0;
}

/// Sets up what lasts for one call of the plug-in.
class EntryScope {
public:
    explicit EntryScope(const ParameterBlock& block) {
        callbacks = block.callbacks.get();
        const auto extension = knownExtension();
        selectRules(extension ? extension->profile : Profile::original);
    }
    ~EntryScope() { callbacks = nullptr; }
    EntryScope(const EntryScope&) = delete;
    EntryScope& operator=(const EntryScope&) = delete;

private:
    ZoneCall call_;
    ResourceSource resources_{pluginResources()};
};

std::uint32_t enter(ParameterBlock& block) {
    const EntryScope scope(block);
    std::uint32_t result = 0;
    const Exception code = guarded([&] { result = dispatch(block); });
    if (code != Exception::none) {
        if (code != Exception::cancelled) {
            guarded([&] { errorDialog(code); });
        }
        result = resultStopped;
    }
    resetException();
    takeReason();
    resetWarning(); // a check may have left one
    return result;
}

} // namespace

} // namespace corvane

std::uint32_t main_entry(corvane::ParameterBlock* block) {
    try {
        return corvane::enter(*block);
    } catch (...) {
        // Memory may run out even before a guarded block is open; nothing unwinds into the host.
        return corvane::resultStopped;
    }
}
