#include "toolbox/fonts/font_configuration.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace corvane {

namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t maximumFile = 1 << 20;

const FcChar8* charactersOf(const std::string& text) {
    return static_cast<const FcChar8*>(static_cast<const void*>(text.c_str()));
}

fs::path mainFile(FcConfig* config) {
    const std::unique_ptr<FcChar8, decltype(&FcStrFree)> name(FcConfigGetFilename(config, nullptr),
                                                              &FcStrFree);
    return name ? static_cast<const char*>(static_cast<const void*>(name.get())) : "";
}

/// Empty where it cannot be read.
std::string textOf(const fs::path& path) {
    std::error_code unreadable;
    const std::uintmax_t size = fs::file_size(path, unreadable);
    std::ifstream file(path, std::ios::binary);
    if (unreadable || size > maximumFile || !file) {
        return {};
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

bool hasElement(std::string_view text, std::initializer_list<std::string_view> names) {
    for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1)) {
        const std::string_view element = text.substr(at + 1);
        if (std::ranges::any_of(
                names, [element](std::string_view name) { return element.starts_with(name); })) {
            return true;
        }
    }
    return false;
}

/// Whether a folder is given by where the file is, which text in memory does not say.
bool isAboutItsPlace(std::string_view text) {
    for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1)) {
        const std::string_view tag = text.substr(at, text.substr(at).find('>'));
        if (tag.find("prefix") != tag.npos && tag.find("relative") != tag.npos) {
            return true;
        }
    }
    return false;
}

/// Takes out all from `opening` to `closing`, and gives the first of them. Nothing is taken where
/// `closing` is missing.
std::optional<std::string> takeOut(std::string& text, std::string_view opening,
                                   std::string_view closing) {
    const std::size_t begin = text.find(opening);
    const std::size_t end = begin == text.npos ? begin : text.find(closing, begin);
    if (end == text.npos) {
        return std::nullopt;
    }
    const std::string taken = text.substr(begin, end - begin);
    text.erase(begin, end + closing.size() - begin);
    return taken;
}

/// The main file without what it includes, and the files that those includes name, in their order.
struct Pieces {
    std::string main;
    std::vector<fs::path> included;
};

void addIncluded(const fs::path& place, std::vector<fs::path>& files) {
    std::error_code unreadable;
    if (!fs::is_directory(place, unreadable)) {
        files.push_back(place);
        return;
    }
    const auto first = static_cast<std::ptrdiff_t>(files.size());
    for (fs::directory_iterator at(place, unreadable), end; !unreadable && at != end;
         at.increment(unreadable)) {
        const std::string name = at->path().filename().string();
        if (name.front() >= '0' && name.front() <= '9' && name.ends_with(".conf")) {
            files.push_back(at->path());
        }
    }
    std::sort(files.begin() + first, files.end());
}

/// Nothing where the file says what only fontconfig can follow.
std::optional<Pieces> piecesOf(const fs::path& path) {
    Pieces pieces{.main = textOf(path), .included = {}};
    while (takeOut(pieces.main, "<!--", "-->")) {
    }
    while (const auto include = takeOut(pieces.main, "<include", "</include>")) {
        const std::size_t begin = std::min(include->find('>'), include->size() - 1) + 1;
        const std::string place = include->substr(begin);
        if (include->substr(0, begin).find("prefix") != include->npos || place.empty() ||
            place.find_first_of(" ~\t\n&") != place.npos) {
            return std::nullopt;
        }
        addIncluded(path.parent_path() / place, pieces.included);
    }
    if (pieces.main.empty() || hasElement(pieces.main, {"include", "reset-dirs"}) ||
        isAboutItsPlace(pieces.main)) {
        return std::nullopt;
    }
    return pieces;
}

/// Files that have nothing but rules are passed over.
bool parsePieces(FcConfig* config, const Pieces& pieces) {
    if (FcConfigParseAndLoadFromMemory(config, charactersOf(pieces.main), FcTrue) == FcFalse) {
        return false;
    }
    return std::ranges::all_of(pieces.included, [config](const fs::path& path) {
        const std::string text = textOf(path);
        const bool hasOnlyRules =
            !text.empty() && !hasElement(text, {"dir", "cachedir", "include", "remap-dir",
                                                "reset-dirs", "selectfont"});
        return hasOnlyRules ||
               FcConfigParseAndLoad(config, charactersOf(path.string()), FcFalse) == FcTrue;
    });
}

struct Closer {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
};
using Config = std::unique_ptr<FcConfig, Closer>;

Config parsed() {
    Config config(FcConfigCreate());
    if (!config) {
        return nullptr;
    }
    const auto pieces = piecesOf(mainFile(config.get()));
    if (pieces && FcConfigGetSysRoot(config.get()) == nullptr &&
        parsePieces(config.get(), *pieces)) {
        return config;
    }
    config.reset(FcConfigCreate());
    return config && FcConfigParseAndLoad(config.get(), nullptr, FcTrue) == FcTrue
               ? std::move(config)
               : nullptr;
}

/// Without a folder for its cache fontconfig would read all fonts.
bool hasCache(FcConfig* config) {
    FcStrList* const folders = FcConfigGetCacheDirs(config);
    const bool isEmpty = folders == nullptr || FcStrListNext(folders) == nullptr;
    if (folders != nullptr) {
        FcStrListDone(folders);
    }
    return !isEmpty;
}

} // namespace

FcConfig* readFontConfiguration() {
    Config config = parsed();
    const bool isUsable =
        config && hasCache(config.get()) && FcConfigBuildFonts(config.get()) == FcTrue;
    return isUsable ? config.release() : nullptr;
}

} // namespace corvane
