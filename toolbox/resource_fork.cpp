#include "toolbox/resource_fork.h"

#include "toolbox/big_endian.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::size_t headerSize = 16;
constexpr std::size_t dataStart = 256;    // the header, then room for the system and the program
constexpr std::size_t mapHeaderSize = 28; // up to and with the offsets of the two lists
constexpr std::size_t typeListOffset = 24;
constexpr std::size_t nameListOffset = 26;
constexpr std::size_t typeSize = 8;
constexpr std::size_t referenceSize = 12;
constexpr std::uint16_t noName = 0xFFFF;
constexpr std::uint32_t largestDataOffset = 0xFFFFFF;
constexpr std::size_t largestMapOffset = 0xFFFF;

/// Reads one fork. Every function is false, or none, where something lies outside the fork.
class Parser {
public:
    explicit Parser(std::span<const std::byte> fork) : fork_(fork) {}

    bool parse() {
        if (!openSections() || !has(map_, typeList_, 2)) {
            return false;
        }
        // The counts of the map are one less than what they count.
        const std::size_t types =
            static_cast<std::uint16_t>(readBig<std::uint16_t>(map_, typeList_) + 1);
        if (!has(map_, typeList_ + 2, types * typeSize)) {
            return false;
        }
        for (std::size_t i = 0; i < types; ++i) {
            if (!parseType(typeList_ + 2 + i * typeSize)) {
                return false;
            }
        }
        return true;
    }

    std::vector<ResourceRecord> take() { return std::move(resources_); }

private:
    bool openSections() {
        if (!has(fork_, 0, headerSize)) {
            return false;
        }
        const std::size_t dataOffset = readBig<std::uint32_t>(fork_, 0);
        const std::size_t mapOffset = readBig<std::uint32_t>(fork_, 4);
        const std::size_t dataLength = readBig<std::uint32_t>(fork_, 8);
        const std::size_t mapLength = readBig<std::uint32_t>(fork_, 12);
        if (!has(fork_, dataOffset, dataLength) || !has(fork_, mapOffset, mapLength) ||
            mapLength < mapHeaderSize) {
            return false;
        }
        data_ = fork_.subspan(dataOffset, dataLength);
        map_ = fork_.subspan(mapOffset, mapLength);
        typeList_ = readBig<std::uint16_t>(map_, typeListOffset);
        nameList_ = readBig<std::uint16_t>(map_, nameListOffset);
        return true;
    }

    bool parseType(std::size_t offset) {
        const auto type = readBig<std::uint32_t>(map_, offset);
        const std::size_t count = std::size_t{readBig<std::uint16_t>(map_, offset + 4)} + 1;
        const std::size_t first = typeList_ + readBig<std::uint16_t>(map_, offset + 6);
        if (!has(map_, first, count * referenceSize)) {
            return false;
        }
        for (std::size_t i = 0; i < count; ++i) {
            if (!parseReference(type, first + i * referenceSize)) {
                return false;
            }
        }
        return true;
    }

    bool parseReference(std::uint32_t type, std::size_t offset) {
        // References have bytes of their own: more of them than fit the map only come from types
        // that share them.
        if (resources_.size() == map_.size() / referenceSize) {
            return false;
        }
        const auto place = readBig<std::uint32_t>(map_, offset + 4);
        const std::size_t start = place & largestDataOffset;
        if (!has(data_, start, 4)) {
            return false;
        }
        const std::size_t length = readBig<std::uint32_t>(data_, start);
        if (!has(data_, start + 4, length)) {
            return false;
        }
        ResourceRecord resource{
            .type = type,
            .id = readBig<std::int16_t>(map_, offset),
            .attributes = static_cast<std::uint8_t>(place >> 24),
            .name = {},
            .bytes = data_.subspan(start + 4, length),
        };
        const auto name = readBig<std::uint16_t>(map_, offset + 2);
        if (name != noName && !parseName(nameList_ + name, resource.name)) {
            return false;
        }
        resources_.push_back(std::move(resource));
        return true;
    }

    bool parseName(std::size_t offset, std::string& name) const {
        if (!has(map_, offset, 1)) {
            return false;
        }
        const std::size_t length = std::to_integer<std::size_t>(map_[offset]);
        if (!has(map_, offset + 1, length)) {
            return false;
        }
        for (const std::byte byte : map_.subspan(offset + 1, length)) {
            name.push_back(std::to_integer<char>(byte));
        }
        return true;
    }

    std::span<const std::byte> fork_;
    std::span<const std::byte> data_;
    std::span<const std::byte> map_;
    std::size_t typeList_ = 0; // in the map
    std::size_t nameList_ = 0;
    std::vector<ResourceRecord> resources_;
};

/// Types in the order in which they first appear.
std::vector<std::uint32_t> typesOf(std::span<const ResourceRecord> resources) {
    std::vector<std::uint32_t> types;
    for (const ResourceRecord& resource : resources) {
        if (std::find(types.begin(), types.end(), resource.type) == types.end()) {
            types.push_back(resource.type);
        }
    }
    return types;
}

} // namespace

std::optional<std::vector<ResourceRecord>> parseResourceFork(std::span<const std::byte> fork) {
    if (fork.empty()) {
        return std::vector<ResourceRecord>();
    }
    Parser parser(fork);
    if (!parser.parse()) {
        return std::nullopt;
    }
    return parser.take();
}

std::optional<std::vector<std::byte>> buildResourceFork(std::span<const ResourceRecord> resources) {
    const std::vector<std::uint32_t> types = typesOf(resources);
    const std::size_t referencesStart = 2 + types.size() * typeSize;
    const std::size_t namesStart =
        mapHeaderSize + referencesStart + resources.size() * referenceSize;
    if (namesStart > largestMapOffset) {
        return std::nullopt;
    }
    std::vector<std::byte> data;
    std::vector<std::byte> names;
    std::vector<std::byte> typeList;
    std::vector<std::byte> references;
    appendBig(typeList, static_cast<std::uint16_t>(types.size() - 1));
    for (const std::uint32_t type : types) {
        const std::size_t first = references.size();
        for (const ResourceRecord& resource : resources) {
            if (resource.type != type) {
                continue;
            }
            if (data.size() > largestDataOffset || names.size() >= noName) {
                return std::nullopt;
            }
            appendBig(references, resource.id);
            appendBig(references,
                      resource.name.empty() ? noName : static_cast<std::uint16_t>(names.size()));
            appendBig(references, std::uint32_t{resource.attributes} << 24 |
                                      static_cast<std::uint32_t>(data.size()));
            appendBig(references, std::uint32_t{0});
            if (!resource.name.empty()) {
                names.push_back(static_cast<std::byte>(resource.name.size()));
                std::transform(resource.name.begin(), resource.name.end(),
                               std::back_inserter(names),
                               [](char c) { return static_cast<std::byte>(c); });
            }
            appendBig(data, static_cast<std::uint32_t>(resource.bytes.size()));
            data.insert(data.end(), resource.bytes.begin(), resource.bytes.end());
        }
        appendBig(typeList, type);
        appendBig(typeList,
                  static_cast<std::uint16_t>((references.size() - first) / referenceSize - 1));
        appendBig(typeList, static_cast<std::uint16_t>(referencesStart + first));
    }
    std::vector<std::byte> header;
    appendBig(header, static_cast<std::uint32_t>(dataStart));
    appendBig(header, static_cast<std::uint32_t>(dataStart + data.size()));
    appendBig(header, static_cast<std::uint32_t>(data.size()));
    appendBig(header, static_cast<std::uint32_t>(namesStart + names.size()));

    std::vector<std::byte> fork = header;
    fork.resize(dataStart);
    fork.insert(fork.end(), data.begin(), data.end());
    fork.insert(fork.end(), header.begin(), header.end());
    fork.resize(fork.size() + typeListOffset - headerSize);
    appendBig(fork, static_cast<std::uint16_t>(mapHeaderSize));
    appendBig(fork, static_cast<std::uint16_t>(namesStart));
    for (const std::vector<std::byte>* part : {&typeList, &references, &names}) {
        fork.insert(fork.end(), part->begin(), part->end());
    }
    return fork;
}

} // namespace corvane
