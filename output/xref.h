// The cross-reference list: where the objects of the update being written begin.
//
// PDF Reference 3.4.3: an entry is 20 bytes, "nnnnnnnnnn ggggg n" and a two-byte line end.
#pragma once

#include "filters/filter.h"
#include "host/zone.h"

#include <cstdint>
#include <functional>

namespace corvane {

struct XRefEntry {
    Ref<XRefEntry> next;
    std::int32_t number = 0;
    std::int32_t generation = 0; ///< the low 16 bits are written
    std::int32_t offset = 0;     ///< of the object's "obj" line in the file
};
static_assert(sizeof(XRefEntry) == 16);

/// Opens the one list of the process, empty, with a hoisted offset of 0.
void openXRef();
/// Frees every entry and forgets the hoisted offset.
void closeXRef();
/// Notes where the section before this update stands: its "Prev".
void hoistXRef(std::int32_t offset);
/// What `hoistXRef` noted.
std::int32_t weighXRef();
/// Enters an object that is written next, at the mark of `stream`. The list ascends by number; of
/// equal numbers the later one stands behind. In the original profile an entry of lower generation
/// than the new one is passed too. No memory: `io`.
void touchXRef(Filter& stream, std::int32_t number, std::int32_t generation);
/// Calls `procedure` for each entry, in the list's order.
void forallXRef(const std::function<void(const XRefEntry&)>& procedure);
/// Writes a subsection of one entry.
void entryXRef(Filter& stream, std::int32_t number, std::int32_t generation, std::int32_t offset);
/// Writes an entry of a subsection.
void lineXRef(Filter& stream, std::int32_t offset, std::int32_t generation, bool isUsed);

} // namespace corvane
