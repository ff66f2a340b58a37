#include "objects/reference.h"

#include "objects/storage.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/memory.h"

#include <algorithm>
#include <bit>
#include <map>
#include <utility>

namespace corvane {

namespace {

using Node = Ref<ReferenceNode>;

/// Numbers that one page of the index covers: a lone huge number costs a page and the directory.
constexpr std::uint32_t pageNumbers = 1024;

/// What a node in the tree of later generations takes, about.
constexpr std::int64_t laterNodeBytes = 64;

struct IndexPage {
    Node node[pageNumbers];
};

/// Nodes are made by the slab; the first table entry of a slab links it to the one before.
constexpr std::uint32_t firstSlabNodes = 32;
constexpr std::uint32_t largestSlabNodes = 4096;

constexpr Object nullObject{ObjectType::null, 0, 0};

} // namespace

void ReferenceNode::move(ObjectPlace place) {
    if (!place.isInStream()) {
        generation_ = generation();
        tag_ = place.offset();
        return;
    }
    if (generation() != 0) {
        failException(Exception::structure);
    }
    generation_ = place.index();
    tag_ = -place.stream();
}

class ReferenceTable {
public:
    ReferenceTable() : charge_(sizeof(ReferenceTable)) {}
    ReferenceTable(const ReferenceTable&) = delete;
    ReferenceTable& operator=(const ReferenceTable&) = delete;
    ~ReferenceTable();

    void setSource(ReferenceSource* source) { source_ = source; }
    void completeNumber(std::int32_t number) {
        if (source_ != nullptr) {
            source_->provide(number);
        }
    }
    void complete() {
        if (source_ != nullptr) {
            source_->provideAll();
        }
    }

    // Of what was added so far.

    Node first() const { return first_; }
    std::int32_t count() const { return count_; }
    Node find(std::int32_t number, std::int32_t generation) const;
    void add(std::int32_t number, std::int32_t generation, ObjectPlace tag);
    bool dropValues() noexcept;

private:
    using Key = std::pair<std::int32_t, std::int32_t>;

    Node& place(std::int32_t number);
    Node newNode();

    ZoneCharge charge_;
    ReferenceSource* source_ = nullptr;
    Node first_;
    std::int32_t count_ = 0;
    // The index. Nearly all objects are of generation 0 and found by number in pages made where
    // numbers are used; the others stand in a tree, which no choice of keys makes slow.
    Ref<Ref<IndexPage>> directory_;
    std::uint32_t pages_ = 0;
    std::map<Key, Node> later_;
    Node slab_;
    std::uint32_t slabNodes_ = 0;
    std::uint32_t slabUsed_ = 0;
};

ReferenceTable::~ReferenceTable() {
    dropValues();
    while (slab_) {
        freeRecord(std::exchange(slab_, slab_->next));
    }
    for (std::uint32_t page = 0; page < pages_; ++page) {
        freeRecord(directory_[page]);
    }
    freeRecord(directory_);
}

Node ReferenceTable::find(std::int32_t number, std::int32_t generation) const {
    if (generation != 0) {
        const auto found = later_.find({number, generation});
        return found == later_.end() ? Node() : found->second;
    }
    const auto index = std::bit_cast<std::uint32_t>(number);
    if (index / pageNumbers >= pages_) {
        return {};
    }
    const Ref<IndexPage> page = directory_[index / pageNumbers];
    return page ? page->node[index % pageNumbers] : Node();
}

/// The index entry of `number`, generation 0; makes room for it.
Node& ReferenceTable::place(std::int32_t number) {
    const auto index = static_cast<std::uint32_t>(number);
    const std::uint32_t page = index / pageNumbers;
    if (page >= pages_) {
        const std::uint32_t wanted = std::max(page + 1, pages_ * 2);
        const auto grown = allocateRecord<Ref<IndexPage>>(wanted);
        std::copy_n(directory_.get(), pages_, grown.get());
        freeRecord(std::exchange(directory_, grown));
        pages_ = wanted;
    }
    if (!directory_[page]) {
        directory_[page] = allocateRecord<IndexPage>();
    }
    return directory_[page]->node[index % pageNumbers];
}

Node ReferenceTable::newNode() {
    if (slabUsed_ == slabNodes_) {
        const std::uint32_t wanted = std::clamp(slabNodes_ * 2, firstSlabNodes, largestSlabNodes);
        const Node slab = allocateRecord<ReferenceNode>(wanted);
        slab->next = std::exchange(slab_, slab);
        slabNodes_ = wanted;
        slabUsed_ = 1;
    }
    return Node(slab_.address() + slabUsed_++ * std::uint32_t{sizeof(ReferenceNode)});
}

void ReferenceTable::add(std::int32_t number, std::int32_t generation, ObjectPlace tag) {
    if (number < 0 || number > budget::objectNumber) {
        failException(Exception::structure);
    }
    if (find(number, generation)) {
        return;
    }
    ReferenceNode made(first_, number, generation, tag);
    made.value = nullObject;
    Node node;
    if (generation == 0) {
        Node& entry = place(number);
        node = newNode();
        entry = node;
    } else {
        charge_.resize(charge_.bytes() + laterNodeBytes);
        node = newNode();
        later_.emplace(Key(number, generation), node);
    }
    *node = made;
    first_ = node;
    ++count_;
}

/// Frees every value; false where one had a type without meaning.
bool ReferenceTable::dropValues() noexcept {
    bool valid = true;
    for (Node node = first_; node; node = node->next) {
        valid = detail::dropObject(node->value) && valid;
        node->value = nullObject;
    }
    return valid;
}

void ReferenceTableCloser::operator()(ReferenceTable* table) const {
    const std::unique_ptr<ReferenceTable> closed(table);
}

ReferenceTableOwner openReference() {
    std::unique_ptr<ReferenceTable> table;
    if (guarded([&table] { table = std::make_unique<ReferenceTable>(); }) != Exception::none) {
        failException(Exception::io);
    }
    return ReferenceTableOwner(table.release());
}

void sourceReference(ReferenceTable& table, ReferenceSource* source) {
    table.setSource(source);
}

void nodeReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                   ObjectPlace tag) {
    table.add(number, generation, tag);
}

void freeReference(ReferenceTable&, std::int32_t, std::int32_t, ObjectPlace) {}

Ref<ReferenceNode> findReference(ReferenceTable& table, std::int32_t number,
                                 std::int32_t generation) {
    table.completeNumber(number);
    return table.find(number, generation);
}

void putReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                  Object object) {
    ObjectOwner owner(object);
    const Node node = findReference(table, number, generation);
    if (!node) {
        raiseException(Exception::underflow);
        return;
    }
    // The former value goes with the owner.
    std::swap(node->value, owner.get());
}

ObjectPlace getReference(ReferenceTable& table, std::int32_t number, std::int32_t generation,
                         Object& value) {
    const Node node = findReference(table, number, generation);
    if (!node) {
        raiseException(Exception::underflow);
        return ObjectPlace::atOffset(0);
    }
    value = node->value;
    return node->place();
}

void disolveReference(const ReferenceTable& table, const Object& object, std::int32_t& number,
                      std::int32_t& generation) {
    for (Node node = table.first(); node; node = node->next) {
        if (equalObject(node->value, object)) {
            number = node->number;
            generation = node->generation();
            return;
        }
    }
    raiseException(Exception::underflow);
}

void flushReference(ReferenceTable& table) {
    if (!table.dropValues()) {
        raiseException(Exception::type);
    }
}

Ref<ReferenceNode> firstReference(ReferenceTable& table) {
    table.complete();
    return table.first();
}

std::int32_t countReference(ReferenceTable& table) {
    table.complete();
    return table.count();
}

} // namespace corvane
