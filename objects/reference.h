// Reference tables: the indirect objects of a file by number and generation.
//
// The list is newest first and holds one node for each number and generation; an index beside it by
// object number makes every search take the same time whatever the size of the file.
#pragma once

#include "objects/object.h"

#include <cstdint>
#include <memory>

namespace corvane {

struct ReferenceNode {
    Ref<ReferenceNode> next;
    std::int32_t number = 0;
    std::int32_t generation = 0;
    std::int32_t tag = 0; ///< the caller's: the object's position in the file
    Object value;         ///< null until it is read
};
static_assert(sizeof(ReferenceNode) == 24);

class ReferenceTable;

struct ReferenceTableCloser {
    void operator()(ReferenceTable* table) const;
};
using ReferenceTableOwner = std::unique_ptr<ReferenceTable, ReferenceTableCloser>;

/// An empty table. No memory: `io`.
ReferenceTableOwner openReference();
/// Adds a node with a null value, unless number and generation have one. A number outside 0 to
/// `budget::objectNumber` raises `structure`.
void nodeReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                   std::int32_t tag);
/// Records nothing: a free entry names no object.
void freeReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                   std::int32_t tag);
/// The node of exactly this number and generation, or null.
Ref<ReferenceNode> findReference(const ReferenceTable& table, std::int32_t number,
                                 std::int32_t generation);
/// Gives `object` to the node, which owns it from now on and frees what it held. No node:
/// `underflow`, and the object is freed.
void putReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                  Object object);
/// The node's tag, and its value (not retained); no node: `underflow`.
std::int32_t getReference(const ReferenceTable& table, std::int32_t number, std::int32_t generation,
                          Object& value);
/// Number and generation of the newest node whose value equals `object`; none: `underflow`.
void disolveReference(const ReferenceTable& table, const Object& object, std::int32_t& number,
                      std::int32_t& generation);
/// Frees every value and keeps the nodes.
void flushReference(ReferenceTable& table);
/// The newest node; the others follow by `next`.
Ref<ReferenceNode> firstReference(const ReferenceTable& table);
std::int32_t countReference(const ReferenceTable& table);

} // namespace corvane
