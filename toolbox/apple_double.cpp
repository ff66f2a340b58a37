#include "toolbox/apple_double.h"

#include "toolbox/big_endian.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::uint32_t magic = 0x00051607;
constexpr std::uint32_t version = 0x00020000;
constexpr std::size_t countOffset = 24; // magic, version, 16 bytes of filler
constexpr std::size_t headerSize = 26;
constexpr std::size_t descriptorSize = 12; // id, offset, length

} // namespace

std::string appleDoublePath(const std::string& path) {
    const std::size_t name = path.rfind('/') + 1;
    return path.substr(0, name) + "._" + path.substr(name);
}

bool isAppleDouble(std::span<const std::byte> container) {
    return container.size() >= headerSize && readBig<std::uint32_t>(container, 0) == magic &&
           readBig<std::uint32_t>(container, 4) == version;
}

std::optional<std::vector<AppleDoubleEntry>>
parseAppleDouble(std::span<const std::byte> container) {
    if (!isAppleDouble(container)) {
        return std::nullopt;
    }
    const std::size_t count = readBig<std::uint16_t>(container, countOffset);
    if (!has(container, headerSize, count * descriptorSize)) {
        return std::nullopt;
    }
    std::vector<AppleDoubleEntry> entries;
    std::size_t total = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t descriptor = headerSize + i * descriptorSize;
        const std::size_t offset = readBig<std::uint32_t>(container, descriptor + 4);
        const std::size_t length = readBig<std::uint32_t>(container, descriptor + 8);
        total += length;
        if (!has(container, offset, length) || total > container.size()) {
            return std::nullopt;
        }
        entries.push_back({AppleDoubleId{readBig<std::uint32_t>(container, descriptor)},
                           container.subspan(offset, length)});
    }
    return entries;
}

std::vector<std::byte> buildAppleDouble(std::span<const AppleDoubleEntry> entries) {
    std::vector<AppleDoubleEntry> ordered(entries.begin(), entries.end());
    std::stable_partition(ordered.begin(), ordered.end(), [](const AppleDoubleEntry& entry) {
        return entry.id != AppleDoubleId::resourceFork;
    });
    std::vector<std::byte> container;
    appendBig(container, magic);
    appendBig(container, version);
    container.resize(countOffset);
    appendBig(container, static_cast<std::uint16_t>(ordered.size()));
    std::size_t offset = headerSize + ordered.size() * descriptorSize;
    for (const AppleDoubleEntry& entry : ordered) {
        appendBig(container, static_cast<std::uint32_t>(entry.id));
        appendBig(container, static_cast<std::uint32_t>(offset));
        appendBig(container, static_cast<std::uint32_t>(entry.bytes.size()));
        offset += entry.bytes.size();
    }
    for (const AppleDoubleEntry& entry : ordered) {
        container.insert(container.end(), entry.bytes.begin(), entry.bytes.end());
    }
    return container;
}

} // namespace corvane
