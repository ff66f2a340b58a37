#include "fuzz/support/sound_save.h"

#include "fuzz/support/kept_content.h"
#include "fuzz/support/page_operations.h"
#include "fuzz/support/plugin_host.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace corvane::fuzz {

namespace {

/// True where the save would go well; writes nothing.
bool tryToSave(PluginHost& host) {
    const std::string before = PluginHost::fileBytes();
    const bool tried = host.call(Selector::trial) == 0;
    require(PluginHost::fileBytes() == before);
    return tried;
}

bool save(PluginHost& host) {
    const std::string before = PluginHost::fileBytes();
    const bool saved = host.call(Selector::go, Action::write) == 0;
    const std::string after = PluginHost::fileBytes();
    if (!saved) {
        // An update of ours that was never finished is cut off even where the save then fails.
        require(before.starts_with(after));
        return false;
    }
    const SavedFacts& facts = host.saved();
    const auto former = static_cast<std::size_t>(facts.formerLength);
    require(static_cast<std::size_t>(facts.length) == after.size());
    require(former <= before.size() &&
            after.starts_with(std::string_view(before).substr(0, former)));
    require(!facts.isNothing || facts.isMended || after == before);
    return true;
}

/// A trial says beforehand what the save then does.
bool saveAsTried(PluginHost& host) {
    const bool tried = tryToSave(host);
    const SavedFacts would = host.saved();
    const bool saved = save(host);
    require(tried == saved);
    require(!saved ||
            (would.length == host.saved().length && would.isNothing == host.saved().isNothing));
    return saved;
}

/// Takes the update off; the file is then as it was before, less an update that was cut short.
void revert(PluginHost& host, std::string_view before) {
    const std::string after = PluginHost::fileBytes();
    host.call(Selector::log);
    require(host.call(Selector::revert) == 0);
    const std::string reverted = PluginHost::fileBytes();
    require(before.starts_with(reverted) && after.starts_with(reverted));
}

/// Mends the file alone, as tried before, and takes that off again. What was mended needs neither a
/// search nor more mending.
void requireSoundMending(Bytes file) {
    PluginHost host(file, Profile::extended, 1);
    host.mend(true);
    const std::string before = PluginHost::fileBytes();
    const bool tried = host.call(Selector::mend) == 0;
    require(PluginHost::fileBytes() == before);
    const SavedFacts would = host.saved();
    const bool mended = host.call(Selector::mend, Action::write) == 0;
    require(tried == mended);
    if (!mended || !host.saved().isMended) {
        return;
    }
    const std::string after = PluginHost::fileBytes();
    require(would.length == host.saved().length);
    require(static_cast<std::size_t>(would.length) == after.size());
    require(host.look([](DocumentCache& cache) { require(!cache.repaired); }));
    require(host.call(Selector::mend, Action::write) == 0 && !host.saved().isMended);
    revert(host, before);
}

struct OpenedPage {
    std::size_t objects = 0;
    std::optional<std::vector<PageOperation>> operations;
};

OpenedPage opened(std::string_view file) {
    PluginHost host(std::as_bytes(std::span(file)), Profile::extended, 1);
    require(host.call(Selector::prepare) == 0 && host.call(Selector::go) == 0);
    return {paintedArt(host.document()).size(), pageOperations(host)};
}

void requireSame(const std::vector<PageOperation>& a, const std::vector<PageOperation>& b) {
    require(a.size() == b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        require(a[i].operands == b[i].operands && a[i].word == b[i].word);
    }
}

/// The original profile draws the page anew.
void requireSoundRedrawing(Bytes file) {
    PluginHost host(file, Profile::original, 1);
    if (host.call(Selector::prepare) != 0 || host.call(Selector::go) != 0) {
        return;
    }
    const std::string before = PluginHost::fileBytes();
    if (!saveAsTried(host)) {
        return;
    }
    host.call(Selector::log);
    host.document().expectImport();
    require(host.call(Selector::go) == 0);
    // Nothing tells whose such an update is.
    require(PluginHost::fileBytes().starts_with(before) && host.call(Selector::revert) != 0);
}

void requireSoundPatches(Bytes file, const Choose& choose) {
    std::optional<std::vector<PageOperation>> old;
    EditedPage edited;
    std::string before;
    std::string once;
    std::string twice;
    {
        PluginHost host(file, Profile::extended, 1);
        if (host.call(Selector::prepare) != 0 || host.call(Selector::go) != 0) {
            return;
        }
        before = PluginHost::fileBytes();
        if (!tryToSave(host)) {
            return;
        }
        require(host.saved().isNothing);
        old = pageOperations(host);
        edited.sources = allSources(host.document());
        edited.touched = editArtwork(host.document(), choose);
        host.overwrite(choose(2) == 0);
        const bool isThorough = choose(4) == 0;
        if (!(isThorough ? saveAsTried(host) : save(host)) || host.saved().isNothing) {
            return;
        }
        require(host.saved().isPatched);
        edited.hasMoved = host.saved().moved > 0;
        once = PluginHost::fileBytes();
        require(save(host));
        twice = PluginHost::fileBytes();
        const bool isAppended = !host.saved().isNothing; // as where layers are made
        require(isAppended == (twice != once));
        if (isThorough) {
            if (isAppended) {
                revert(host, once);
            }
            revert(host, before);
        }
    }
    const OpenedPage first = opened(once);
    const OpenedPage second = opened(twice);
    require(first.objects == second.objects);
    if (old) {
        require(first.operations && second.operations);
        requireKept(*old, *first.operations, edited);
        requireSame(*first.operations, *second.operations);
    }
}

} // namespace

void requireSoundSave(Bytes file, Profile profile, const Choose& choose) {
    if (profile == Profile::original) {
        requireSoundRedrawing(file);
    } else {
        requireSoundPatches(file, choose);
        requireSoundMending(file);
    }
}

} // namespace corvane::fuzz
