// The CMaps that a document may name without bringing them along.
//
// Identity-H and Identity-V are built in. All others are files of the machine, as the package
// poppler-data installs them: a folder for each character collection ("Adobe-Japan1") with a file
// for each name. Where they are missing, there is no such CMap.
#pragma once

#include "reader/font/cmap/cmap.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The bytes of a file "Adobe-Japan1/H"; nothing where there is none.
using CMapFileReader = std::function<std::optional<std::vector<std::byte>>(const std::string&)>;

/// Reads below the folder of poppler-data.
std::optional<std::vector<std::byte>> readCMapFile(const std::string& path);

class PredefinedCMaps {
public:
    explicit PredefinedCMaps(CMapFileReader readFile = readCMapFile)
        : readFile_(std::move(readFile)) {}

    /// Null where there is none. Each is read once.
    std::shared_ptr<const CMap> find(std::string_view name) { return find(name, 0); }
    /// The Unicode text of the CIDs of a collection ("Adobe-Japan1"), as codes of two bytes.
    std::shared_ptr<const CMap> unicodeOf(const std::string& collection) {
        return find(collection + "-UCS2");
    }
    /// The collection that the last find of this CMap came from: "Adobe-Japan1"; or empty.
    std::string collectionOf(std::string_view name) const;

private:
    struct Known {
        std::shared_ptr<const CMap> map;
        std::string collection;
    };

    std::shared_ptr<const CMap> find(std::string_view name, int depth);
    Known read(std::string_view name, int depth);

    CMapFileReader readFile_;
    std::map<std::string, Known, std::less<>> known_;
};

} // namespace corvane
