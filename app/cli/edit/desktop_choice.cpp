#include "app/cli/edit/desktop_choice.h"

#include "app/cli/edit/key_file.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string_view>

namespace corvane {

namespace {

constexpr std::string_view type = "image/svg+xml";

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::vector<std::string> divided(std::string_view text) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto end = std::min(text.find(':'), text.size());
        if (end != 0) {
            parts.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

/// The person's own folder, then those of the machine.
std::vector<std::string> search(const char* own, const char* belowHome, const char* machine,
                                const char* usual) {
    std::string first = variable(own);
    if (first.empty() && !variable("HOME").empty()) {
        first = variable("HOME") + belowHome;
    }
    const std::string rest = variable(machine);
    std::vector<std::string> folders = divided(first + ":" + (rest.empty() ? usual : rest));
    std::erase_if(folders, [](const std::string& folder) { return !folder.starts_with("/"); });
    return folders;
}

/// All lists of choices that there are, best first.
std::vector<KeyFile> choiceLists(const DesktopFolders& folders) {
    std::vector<KeyFile> lists;
    for (const auto* const group : {&folders.settings, &folders.applications}) {
        for (const std::string& folder : *group) {
            std::vector<std::string> names;
            for (const std::string& desktop : folders.desktops) {
                names.push_back(desktop + "-mimeapps.list");
            }
            names.emplace_back("mimeapps.list");
            for (const std::string& name : names) {
                if (auto list = KeyFile::read(folder + "/" + name)) {
                    lists.push_back(std::move(*list));
                }
            }
        }
    }
    return lists;
}

/// Names of entries, best first.
std::vector<std::string> candidates(const DesktopFolders& folders) {
    const std::vector<KeyFile> lists = choiceLists(folders);
    std::vector<std::string> names;
    const auto append = [&](const std::vector<std::string>& more) {
        names.insert(names.end(), more.begin(), more.end());
    };
    for (const KeyFile& list : lists) {
        append(list.list("Default Applications", type));
    }
    std::set<std::string> removed;
    const auto appendKept = [&](std::vector<std::string> more) {
        std::erase_if(more, [&](const std::string& name) { return removed.contains(name); });
        append(more);
    };
    for (const KeyFile& list : lists) {
        appendKept(list.list("Added Associations", type));
        for (std::string& name : list.list("Removed Associations", type)) {
            removed.insert(std::move(name));
        }
    }
    for (const std::string& folder : folders.applications) {
        if (const auto cache = KeyFile::read(folder + "/mimeinfo.cache")) {
            appendKept(cache->list("MIME Cache", type));
        }
    }
    return names;
}

/// The entry of that name; "a-b.desktop" may lie in a folder "a".
std::optional<DesktopEntry> entryOf(const DesktopFolders& folders, const std::string& name) {
    if (name.find('/') != std::string::npos || !name.ends_with(".desktop")) {
        return std::nullopt;
    }
    for (const std::string& folder : folders.applications) {
        std::string path = name;
        for (auto dash = path.find('-');; dash = path.find('-', dash + 1)) {
            if (KeyFile::read(folder + "/" + path)) {
                return readDesktopEntry(folder + "/" + path); // it hides those of later folders
            }
            if (dash == std::string::npos) {
                break;
            }
            path[dash] = '/';
        }
    }
    return std::nullopt;
}

} // namespace

DesktopFolders desktopFolders() {
    DesktopFolders folders;
    folders.settings = search("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg");
    folders.applications =
        search("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (std::string& folder : folders.applications) {
        folder += "/applications";
    }
    for (std::string desktop : divided(variable("XDG_CURRENT_DESKTOP"))) {
        std::ranges::transform(desktop, desktop.begin(), [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
        });
        if (desktop.find('/') == std::string::npos) {
            folders.desktops.push_back(std::move(desktop));
        }
    }
    return folders;
}

std::optional<DesktopEntry> chosenForSvg(const DesktopFolders& folders) {
    for (const std::string& name : candidates(folders)) {
        auto entry = entryOf(folders, name);
        if (entry && isForDrawing(*entry) && openingWords(*entry, "/")) {
            return entry;
        }
    }
    return std::nullopt;
}

} // namespace corvane
