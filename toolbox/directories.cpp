#include "toolbox/directories.h"

#include "host/utf8.h"
#include "toolbox/result_codes.h"

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {

namespace {

constexpr std::size_t longestName = 63;
constexpr std::size_t longestExtension = 8; // kept whole at the end of an alias
constexpr std::int16_t firstWorking = -32'000;
constexpr std::size_t workingLimit = 31'000;

std::string joined(const std::string& directory, std::string_view name) {
    std::string path = directory;
    if (path.back() != '/') {
        path += '/';
    }
    return path.append(name);
}

bool exists(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0;
}

} // namespace

Directories::Directories() {
    idOf("/");
}

std::int32_t Directories::idOf(const std::string& path) {
    const auto id = static_cast<std::int32_t>(paths_.size()) + fsRtDirID;
    const auto [entry, added] = ids_.try_emplace(path, id);
    if (added) {
        paths_.push_back(path);
    }
    return entry->second;
}

const std::string* Directories::pathOf(std::int32_t id) const {
    const std::int64_t index = std::int64_t{id} - fsRtDirID;
    if (index < 0 || index >= static_cast<std::int64_t>(paths_.size())) {
        return nullptr;
    }
    return &paths_[static_cast<std::size_t>(index)];
}

const Directories::Working* Directories::working(std::int16_t reference) const {
    const int index = reference - firstWorking;
    if (index < 0 || index >= static_cast<int>(working_.size())) {
        return nullptr;
    }
    return &working_[static_cast<std::size_t>(index)];
}

OSErr Directories::find(std::int16_t volume, std::int32_t directory, std::int32_t& id) const {
    if (volume == 0) {
        volume = default_;
    }
    const Working* base = working(volume);
    if (base == nullptr && volume != wholeMachine) {
        return nsvErr;
    }
    if (directory == 0) {
        directory = base != nullptr ? base->directory : fsRtDirID;
    }
    if (pathOf(directory) == nullptr) {
        return dirNFErr;
    }
    id = directory;
    return noErr;
}

std::string Directories::realName(std::int32_t directory, std::string_view name) const {
    const auto found = realNames_.find({directory, std::string(name)});
    return found != realNames_.end() ? found->second : std::string(name);
}

OSErr Directories::locate(std::int16_t volume, std::int32_t directory, std::string_view name,
                          std::string& path) const {
    std::int32_t id = 0;
    if (const OSErr error = find(volume, directory, id); error != noErr) {
        return error;
    }
    constexpr std::string_view unsayable("/:\0", 3);
    if (name.empty() || name == "." || name == ".." ||
        name.find_first_of(unsayable) != std::string_view::npos) {
        return bdNamErr;
    }
    path = joined(*pathOf(id), realName(id, name));
    return noErr;
}

OSErr Directories::openWorking(std::int16_t volume, std::int32_t directory, std::int32_t owner,
                               std::int16_t& reference) {
    reference = 0;
    std::int32_t id = 0;
    if (const OSErr error = find(volume, directory, id); error != noErr) {
        return error;
    }
    if (access(pathOf(id)->c_str(), F_OK) != 0) {
        const OSErr error = lastResult();
        return error == fnfErr ? dirNFErr : error;
    }
    const auto same = [&](const Working& other) {
        return other.directory == id && other.owner == owner;
    };
    auto found = std::find_if(working_.begin(), working_.end(), same);
    if (found == working_.end()) {
        if (working_.size() == workingLimit) {
            return tmwdoErr;
        }
        found = working_.insert(found, {id, owner});
    }
    reference = static_cast<std::int16_t>(firstWorking + (found - working_.begin()));
    return noErr;
}

OSErr Directories::setDefault(std::int16_t volume) {
    std::int32_t id = 0;
    const OSErr error = find(volume, 0, id);
    if (error == noErr && volume != 0) {
        default_ = volume;
    }
    return error;
}

std::string Directories::sayable(std::int32_t directory, const std::string& name) {
    const bool taken = realNames_.contains({directory, name});
    if (name.size() <= longestName && name.find(':') == std::string::npos && !taken) {
        return name;
    }
    const auto [entry, added] = aliases_.try_emplace({directory, name});
    if (!added) {
        return entry->second;
    }
    std::string stem = name;
    std::replace(stem.begin(), stem.end(), ':', '-');
    std::string extension;
    const std::size_t dot = stem.rfind('.');
    if (dot != std::string::npos && dot > 0 && stem.size() - dot <= longestExtension) {
        extension = stem.substr(dot);
        stem.resize(dot);
    }
    for (int number = 1;; ++number) {
        const std::string tail = "~" + std::to_string(number) + extension;
        std::string alias = std::string(cutText(stem, longestName - tail.size())) + tail;
        if (!realNames_.contains({directory, alias}) &&
            !exists(joined(*pathOf(directory), alias))) {
            realNames_.emplace(std::pair(directory, alias), name);
            entry->second = alias;
            return alias;
        }
    }
}

} // namespace corvane
