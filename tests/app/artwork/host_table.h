// A document behind a callback table, called as a plug-in calls it.
#pragma once

#include "app/artwork/slots/callbacks.h"

#include <cstdint>
#include <type_traits>

namespace corvane {

struct HostTable {
    explicit HostTable(std::int64_t limit = artworkLimit()) : document(limit) {}

    template <class Result, class... Parameters>
    Result operator()(Slot<Result(Parameters...)> slot,
                      std::type_identity_t<Parameters>... arguments) const {
        return slotProcedure(table.ref().get(), slot)(arguments...);
    }

    /// Makes art that must be possible.
    Art make(ArtKind kind, Placement placement, Art reference) {
        return document.make(kind, placement, reference);
    }

    Document document;
    CallbackTable table;
    CallbackScope scope{document};
};

} // namespace corvane
