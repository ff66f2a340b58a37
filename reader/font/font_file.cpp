#include "reader/font/font_file.h"

#include "reader/font/cmap/predefined_cmaps.h"
#include "reader/font/cmap/read_cmap.h"
#include "reader/font/font_entries.h"
#include "runtime/budget.h"

#include <string_view>

namespace corvane {

namespace {

/// CMaps that stand on one another by UseCMap.
constexpr int deepestBase = 4;

std::shared_ptr<const CMap> readCMapObject(DocumentCache& cache, const Object& object, int depth) {
    if (object.type == ObjectType::literal) {
        return predefinedCMaps(cache).find(nameOf(object));
    }
    if (object.type != ObjectType::stream || depth > deepestBase) {
        return nullptr;
    }
    auto base = readCMapObject(cache, entryOf(cache, object, "UseCMap").get(), depth + 1);
    const std::vector<std::byte> bytes = bytesOfStream(cache, object, budget::cmapBytes);
    auto map = readCMap(bytes, std::move(base),
                        [&](std::string_view name) { return predefinedCMaps(cache).find(name); });
    if (const auto mode = numberEntry(cache, object, "WMode")) {
        map->setVertical(*mode == 1);
    }
    return map;
}

} // namespace

EmbeddedProgram readEmbeddedProgram(DocumentCache& cache, const Object& descriptor) {
    for (const std::string_view key : {"FontFile", "FontFile2", "FontFile3"}) {
        const ObjectOwner stream = entryOf(cache, descriptor, key);
        std::vector<std::byte> bytes = bytesOfStream(cache, stream.get(), budget::fontProgramBytes);
        if (!bytes.empty()) {
            ZoneCharge charge(static_cast<std::int64_t>(bytes.size()));
            if (auto program = FontProgram::open(std::move(bytes))) {
                return {.program = std::move(program), .charge = std::move(charge)};
            }
        }
    }
    return {};
}

std::shared_ptr<const CMap> readCMapEntry(DocumentCache& cache, const Object& font,
                                          std::string_view key) {
    return readCMapObject(cache, entryOf(cache, font, key).get(), 0);
}

PredefinedCMaps& predefinedCMaps(DocumentCache& cache) {
    if (cache.predefinedCMaps == nullptr) {
        cache.predefinedCMaps = std::make_unique<PredefinedCMaps>();
    }
    return *cache.predefinedCMaps;
}

} // namespace corvane
