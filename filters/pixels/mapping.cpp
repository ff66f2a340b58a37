#include "filters/pixels/mapping.h"

#include "runtime/exception.h"

#include <algorithm>

namespace corvane {

MappingFilter::MappingFilter(std::span<const Fixed> decode, std::int32_t maximum)
    : Filter(entryMapping), tables_(decode.size() / 2) {
    for (std::size_t i = 0; i < tables_.size(); ++i) {
        const std::int64_t least = decode[2 * i];
        const std::int64_t range = decode[2 * i + 1] - least;
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::int64_t mapped = static_cast<std::int64_t>(byte) * range + least * maximum;
            tables_[i][byte] = static_cast<std::byte>(mapped >> 16);
        }
    }
    kind_ = kindOf();
}

/// Most arrays leave the bytes as they are or turn them round, which needs no table.
MappingFilter::Kind MappingFilter::kindOf() const {
    const auto all = [&](auto result) {
        return std::ranges::all_of(tables_, [&](const Table& table) {
            for (std::size_t byte = 0; byte < table.size(); ++byte) {
                if (table[byte] != result(static_cast<std::byte>(byte))) {
                    return false;
                }
            }
            return true;
        });
    };
    if (all([](std::byte byte) { return byte; })) {
        return Kind::same;
    }
    return all([](std::byte byte) { return ~byte; }) ? Kind::inverse : Kind::tables;
}

void MappingFilter::map(std::span<std::byte> bytes) {
    switch (kind_) {
    case Kind::same:
        return;
    case Kind::inverse:
        for (std::byte& byte : bytes) {
            byte = ~byte;
        }
        return;
    case Kind::tables:
        break;
    }
    const std::size_t components = tables_.size();
    const std::size_t phase = component_;
    for (std::size_t i = 0; i < components; ++i) {
        const Table& table = tables_[(phase + i) % components];
        for (std::size_t at = i; at < bytes.size(); at += components) {
            bytes[at] = table[std::to_integer<std::size_t>(bytes[at])];
        }
    }
    component_ = (phase + bytes.size()) % components;
}

std::int32_t MappingFilter::entryMapping(Filter& filter, Operation operation, std::byte* buffer,
                                         std::int32_t* argument) {
    auto& self = static_cast<MappingFilter&>(filter);
    switch (operation) {
    case Operation::read:
        callFilter(*self.next, operation, buffer, argument);
        self.map({buffer, static_cast<std::size_t>(*argument)});
        return *argument;
    case Operation::write:
        failException(Exception::limit);
    case Operation::seek:
        self.component_ = 0;
        [[fallthrough]];
    case Operation::mark:
        return callFilter(*self.next, operation, buffer, argument);
    default:
        return 0;
    }
}

FilterOwner setupMapping(std::span<const Fixed> decode, std::int32_t maximum) {
    if (decode.size() != 0 && decode.size() != 2 && decode.size() != 6 && decode.size() != 8) {
        failException(Exception::type);
    }
    return std::make_unique<MappingFilter>(decode, maximum);
}

} // namespace corvane
