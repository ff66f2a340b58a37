#include "fuzz/sound_save.h"

#include "fuzz/plugin_host.h"

#include <string_view>

namespace corvane::fuzz {

void requireSoundSave(Bytes file, Profile profile) {
    const bool modern = profile == Profile::extended;
    PluginHost host(file, profile, 1);
    if (host.call(Selector::prepare) != 0 || host.call(Selector::go) != 0) {
        return;
    }
    const std::string before = PluginHost::fileBytes();
    const bool tried = host.call(Selector::trial) == 0;
    require(PluginHost::fileBytes() == before);
    const bool saved = host.call(Selector::go, Action::write) == 0;
    require(tried == saved);
    const std::string after = PluginHost::fileBytes();
    // An update of ours that was never finished is cut off even where the save then fails.
    if (!saved) {
        require(before.starts_with(after));
        return;
    }
    // Saved again from the same artwork, over the same base.
    require(!modern || host.call(Selector::go, Action::write) == 0);
    const std::string again = PluginHost::fileBytes();
    require(!modern || again.starts_with(after));
    host.call(Selector::log);
    host.document().expectImport();
    require(host.call(Selector::go) == 0);
    if (!modern) {
        // Nothing tells whose such an update is.
        require(after.starts_with(before) && host.call(Selector::revert) != 0);
        return;
    }
    if (again != after) {
        require(host.call(Selector::revert) == 0 && PluginHost::fileBytes() == after);
    }
    if (after == before) {
        return; // there was nothing to save
    }
    require(host.call(Selector::revert) == 0);
    const std::string reverted = PluginHost::fileBytes();
    require(before.starts_with(reverted) && after.starts_with(reverted));
}

} // namespace corvane::fuzz
