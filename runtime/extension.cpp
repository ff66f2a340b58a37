#include "runtime/extension.h"

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace corvane {

namespace {

static_assert(std::is_trivially_copyable_v<HostExtension> &&
              std::is_standard_layout_v<HostExtension>);

/// Bytes of a record of this version; 0, which no host has, is taken for the first.
constexpr std::size_t recordLength(std::uint32_t version) {
    static_assert(HostExtension::currentVersion == 11, "a new version needs a row");
    return version < 2   ? offsetof(HostExtension, artworkDigest)
           : version < 3 ? offsetof(HostExtension, artworkName)
           : version < 4 ? offsetof(HostExtension, signatures)
           : version < 5 ? offsetof(HostExtension, fontAdded)
           : version < 6 ? offsetof(HostExtension, drawnImage)
           : version < 8 ? offsetof(HostExtension, pageListing)
                         : sizeof(HostExtension);
}

} // namespace

std::optional<HostExtension> knownExtension() {
    const HostExtension* const registered = hostExtension();
    if (registered == nullptr) {
        return std::nullopt;
    }
    HostExtension known;
    std::memcpy(&known, registered, recordLength(registered->version));
    return known;
}

} // namespace corvane
