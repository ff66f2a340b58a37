// Reference tables: the indirect objects of a file by number and generation.
//
// The list is newest first and holds one node for each number and generation; an index beside it by
// object number makes every search take the same time whatever the size of the file.
#pragma once

#include "objects/object.h"
#include "objects/object_place.h"

#include <cstdint>
#include <memory>

namespace corvane {

/// A tag of 0 or more is the offset of the object. A negative tag is the negated number of the
/// object stream that holds it; such objects have generation 0, and their index stands in the field
/// of the generation. So both kinds of place fit in one node.
struct ReferenceNode {
    ReferenceNode() = default;
    ReferenceNode(Ref<ReferenceNode> following, std::int32_t itsNumber, std::int32_t generation,
                  ObjectPlace place)
        : next(following), number(itsNumber), generation_(generation) {
        move(place);
    }

    std::int32_t generation() const { return tag_ < 0 ? 0 : generation_; }
    ObjectPlace place() const {
        return tag_ < 0 ? ObjectPlace::inStream(-tag_, generation_) : ObjectPlace::atOffset(tag_);
    }
    /// Another place of the object. In an object stream, of a generation other than 0: `structure`.
    void move(ObjectPlace place);

    Ref<ReferenceNode> next;
    std::int32_t number = 0;

private:
    std::int32_t generation_ = 0;
    std::int32_t tag_ = 0;

public:
    Object value; ///< null until it is read
};
static_assert(sizeof(ReferenceNode) == 24);

/// Adds nodes of a table when they are first asked for.
class ReferenceSource {
public:
    virtual ~ReferenceSource() = default;
    /// Adds the nodes of `number`, of every generation, unless it did so before.
    virtual void provide(std::int32_t number) = 0;
    virtual void provideAll() = 0;
};

class ReferenceTable;

struct ReferenceTableCloser {
    void operator()(ReferenceTable* table) const;
};
using ReferenceTableOwner = std::unique_ptr<ReferenceTable, ReferenceTableCloser>;

/// An empty table. No memory: `io`.
ReferenceTableOwner openReference();
/// From now on the table asks `source` for the nodes of a number before it looks for one, and for
/// all before it lists or counts them; null: nobody.
void sourceReference(ReferenceTable& table, ReferenceSource* source);
/// Adds a node with a null value, unless number and generation have one. A number outside 0 to
/// `budget::objectNumber` raises `structure`, and so does a generation other than 0 of an object in
/// an object stream.
void nodeReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                   ObjectPlace tag);
/// Records nothing: a free entry names no object.
void freeReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                   ObjectPlace tag);
/// The node of exactly this number and generation, or null.
Ref<ReferenceNode> findReference(ReferenceTable& table, std::int32_t number,
                                 std::int32_t generation);
/// Gives `object` to the node, which owns it from now on and frees what it held. No node:
/// `underflow`, and the object is freed.
void putReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                  Object object);
/// The node's place, and its value (not retained); no node: `underflow`.
ObjectPlace getReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                         Object& value);
/// Number and generation of the newest node whose value equals `object`; none: `underflow`.
void disolveReference(const ReferenceTable& table, const Object& object, std::int32_t& number,
                      std::int32_t& generation);
/// Frees every value and keeps the nodes.
void flushReference(ReferenceTable& table);
/// The newest node; the others follow by `next`.
Ref<ReferenceNode> firstReference(ReferenceTable& table);
std::int32_t countReference(ReferenceTable& table);

} // namespace corvane
