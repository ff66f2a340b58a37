#include "reader/font/cmap/predefined_cmaps.h"

#include "reader/font/cmap/read_cmap.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

namespace corvane {

namespace {

constexpr std::string_view cmapFolder = "/usr/share/poppler/cMap/";

/// The longest has 700 KB.
constexpr std::uintmax_t longestCMapFile = 8 << 20;

/// CMaps that are based on others; real ones go down twice.
constexpr int deepestBase = 8;

constexpr std::array<std::string_view, 6> collections = {
    "Adobe-Japan1", "Adobe-GB1", "Adobe-CNS1", "Adobe-Korea1", "Adobe-KR", "Adobe-Japan2",
};

/// Names are file names: none may lead elsewhere.
bool isPlainName(std::string_view name) {
    return !name.empty() && name.size() < 64 && std::ranges::all_of(name, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               c == '-';
    });
}

} // namespace

std::optional<std::vector<std::byte>> readCMapFile(const std::string& path) {
    const std::string whole = std::string(cmapFolder) + path;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(whole, error);
    if (error || size > longestCMapFile) {
        return std::nullopt;
    }
    std::ifstream file(whole, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file) {
        return std::nullopt;
    }
    const auto view = std::as_bytes(std::span(bytes));
    return std::vector<std::byte>(view.begin(), view.end());
}

std::shared_ptr<const CMap> PredefinedCMaps::find(std::string_view name, int depth) {
    if (depth > deepestBase || !isPlainName(name)) {
        return nullptr;
    }
    auto known = known_.find(name);
    if (known == known_.end()) {
        known = known_.emplace(std::string(name), Known{}).first; // one that stands on itself: none
        known->second = read(name, depth);
    }
    return known->second.map;
}

PredefinedCMaps::Known PredefinedCMaps::read(std::string_view name, int depth) {
    if (name == "Identity-H" || name == "Identity-V") {
        return {.map = CMap::identity(name == "Identity-V"), .collection = {}};
    }
    for (const std::string_view collection : collections) {
        const auto file = readFile_(std::string(collection) + "/" + std::string(name));
        if (file) {
            const auto findBase = [&](std::string_view base) { return find(base, depth + 1); };
            return {.map = readCMap(*file, nullptr, findBase),
                    .collection = std::string(collection)};
        }
    }
    return {};
}

std::string PredefinedCMaps::collectionOf(std::string_view name) const {
    const auto known = known_.find(name);
    return known == known_.end() ? std::string() : known->second.collection;
}

} // namespace corvane
