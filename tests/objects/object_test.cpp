#include "objects/object.h"

#include "runtime/budget.h"
#include "runtime/memory.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace corvane {
namespace {

using ObjectTest = ZoneTest;

Object integer(std::int32_t value) {
    Object object;
    shallowObject(object, ObjectType::integer, value);
    return object;
}

Object text(std::string_view bytes, ObjectType type = ObjectType::text) {
    Object object;
    textualObject(object, type, bytes);
    return object;
}

Object block(std::int32_t room, std::int32_t size) {
    Object object;
    blockedObject(object, ObjectType::block, allocateMemory(room), size);
    return object;
}

/// Takes the elements over, also where it raises.
Object group(ObjectType type, std::vector<ObjectOwner>& elements) {
    const Ref<Object> storage = allocateRecord<Object>(static_cast<std::int64_t>(elements.size()));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        storage[i] = elements[i].release();
    }
    Object object;
    groupedObject(object, type, storage, static_cast<std::int32_t>(elements.size()));
    return object;
}

Object array(std::initializer_list<Object> objects) {
    std::vector<ObjectOwner> elements;
    for (const Object& object : objects) {
        elements.emplace_back(object);
    }
    return group(ObjectType::array, elements);
}

Object nested(std::int32_t depth) {
    ObjectOwner inner(array({integer(1)}));
    for (std::int32_t level = 1; level < depth; ++level) {
        inner = ObjectOwner(array({integer(0), inner.release(), integer(2)}));
    }
    return inner.release();
}

TEST_F(ObjectTest, ConstructorsRefuseTypesOutsideTheirRange) {
    Object object;
    for (std::int16_t code = -1; code <= 15; ++code) {
        const ObjectType type{code};
        const bool shallow = code >= 1 && code <= 5;
        const bool textual = code == 8 || code == 9;
        const bool grouped = code == 6 || (code >= 11 && code <= 14);
        const auto wanted = [](bool taken) { return taken ? Exception::none : Exception::type; };
        EXPECT_EQ(raisedBy([&] { shallowObject(object, type, 1); }), wanted(shallow)) << code;
        object = {};
        EXPECT_EQ(raisedBy([&] { textualObject(object, type, "a"); }), wanted(textual)) << code;
        freeObject(object);
        EXPECT_EQ(raisedBy([&] { blockedObject(object, type, allocateMemory(2), 2); }),
                  wanted(code == 10));
        freeObject(object);
        EXPECT_EQ(raisedBy([&] { groupedObject(object, type, allocateRecord<Object>(2), 2); }),
                  wanted(grouped));
        freeObject(object);
    }
    // Nobody listens: the object is filled in all the same.
    shallowObject(object, ObjectType::array, 7);
    EXPECT_EQ(resetException(), Exception::type);
    EXPECT_EQ(object.type, ObjectType::array);
    EXPECT_EQ(object.data, 7U);
}

TEST_F(ObjectTest, AccessorsRefuseEveryOtherType) {
    ObjectOwner name(text("n", ObjectType::literal));
    ObjectOwner string(text("s"));
    ObjectOwner bytes(block(3, 3));
    ObjectOwner list(array({integer(1), integer(2)}));
    ObjectOwner reference;
    indirectObject(*reference, 12, 3);
    std::vector<Object> objects{*name, *string, *bytes, *list, *reference};
    for (std::int16_t code = 0; code <= 5; ++code) {
        objects.push_back({ObjectType{code}, 0, 1});
    }
    for (const Object& object : objects) {
        const auto expectOnly = [&](auto accessor, std::initializer_list<ObjectType> types) {
            const bool right = std::find(types.begin(), types.end(), object.type) != types.end();
            EXPECT_EQ(raisedBy([&] { accessor(object); }),
                      right ? Exception::none : Exception::range)
                << "type " << static_cast<int>(object.type);
        };
        using enum ObjectType;
        expectOnly(markObject, {mark});
        expectOnly(booleanObject, {boolean});
        expectOnly(integerObject, {ObjectType::integer});
        expectOnly(fixedObject, {fixed});
        expectOnly(extendObject, {ObjectType::integer, fixed});
        expectOnly(literalObject, {literal});
        expectOnly(textObject, {ObjectType::text});
        expectOnly(blockObject, {ObjectType::block});
        expectOnly(elementsObject, {ObjectType::reference, ObjectType::array});
        std::int32_t number = 0;
        std::int32_t generation = 0;
        expectOnly([&](const Object& of) { referenceObject(of, number, generation); },
                   {ObjectType::reference});
    }
    selectRules(Profile::extended);
    EXPECT_EQ(textObject(*bytes), std::string_view("\0\0\0", 3));
    EXPECT_EQ(extendObject(integer(3)), 0x30000);
    EXPECT_EQ(extendObject(integer(-40000)), INT32_MIN);
}

TEST_F(ObjectTest, TypeSevenAndUnknownCodesAreRefused) {
    for (const int code : {7, 15, -1}) {
        Object object{ObjectType(code), 0, 0};
        Object to;
        EXPECT_EQ(raisedBy([&] { cloneObject(to, object); }), Exception::type);
        EXPECT_EQ(raisedBy([&] { equalObject(object, object); }), Exception::type);
        EXPECT_EQ(raisedBy([&] { retainObject(object); }), Exception::type);
        EXPECT_EQ(raisedBy([&] { freeObject(object); }), Exception::type);
        // Inside an array everything else is freed before the raise.
        Object around = array({text("a"), {ObjectType(code), 0, 0}, text("b")});
        EXPECT_EQ(raisedBy([&] { cloneObject(to, around); }), Exception::type);
        EXPECT_EQ(raisedBy([&] { freeObject(around); }), Exception::type);
        EXPECT_EQ(zoneBlocksInUse(), 0);
    }
}

TEST_F(ObjectTest, LengthsOverTheProfilesLimit) {
    const std::string longest(32767, 'x');
    ObjectOwner held(text(longest));
    EXPECT_EQ(sizeObject(*held), 32767);
    EXPECT_EQ(raisedBy([&] { text(longest + 'y'); }), Exception::range);
    EXPECT_EQ(raisedBy([&] { block(40000, 32768); }), Exception::range);
    EXPECT_EQ(raisedBy([&] { block(4, 5); }), Exception::range);
    EXPECT_EQ(raisedBy([&] { block(4, -1); }), Exception::range);
    Object object;
    EXPECT_EQ(raisedBy([&] {
                  groupedObject(object, ObjectType::array, allocateRecord<Object>(40000), 40000);
              }),
              Exception::range);
    EXPECT_EQ(
        raisedBy([&] { groupedObject(object, ObjectType::array, allocateRecord<Object>(3), 4); }),
        Exception::range);

    selectRules(Profile::extended);
    ObjectOwner longer(text(longest + 'y'));
    EXPECT_EQ(longer->size, 32767);
    EXPECT_EQ(sizeObject(*longer), 32768);
    EXPECT_EQ(textObject(*longer), longest + 'y');
    EXPECT_FALSE(equalObject(*longer, *held));
    ObjectOwner bytes(block(100000, 70000)); // more room than is used
    EXPECT_EQ(blockObject(*bytes).size(), 70000U);
    groupedObject(object, ObjectType::array, allocateRecord<Object>(40000), 40000);
    ObjectOwner elements(object);
    EXPECT_EQ(sizeObject(*elements), 40000);
    ObjectOwner copy;
    cloneObject(*copy, *elements);
    EXPECT_EQ(sizeObject(*copy), 40000);
    EXPECT_TRUE(equalObject(*copy, *elements));
}

TEST_F(ObjectTest, ClonesAreDeepAndEqual) {
    ObjectOwner original(
        array({text(std::string_view("a\0b", 3)), text("name", ObjectType::literal),
               array({integer(4), block(6, 5)}), text("")}));
    ObjectOwner clone;
    cloneObject(*clone, *original);
    EXPECT_TRUE(equalObject(*clone, *original));
    EXPECT_NE(elementsObject(*clone)[0].data, elementsObject(*original)[0].data);
    EXPECT_EQ(GetPtrSize(Ptr(elementsObject(*clone)[3].data)), 1); // the terminator
    freeObject(*original);
    EXPECT_EQ(literalObject(elementsObject(*clone)[1]), "name");
}

TEST_F(ObjectTest, EqualityLooksAtTypeSizeValueAndOrder) {
    ObjectOwner reference;
    indirectObject(*reference, 12, 0);
    ObjectOwner same;
    indirectObject(*same, 12, 0);
    ObjectOwner other;
    indirectObject(*other, 12, 1);
    ObjectOwner pair(array({integer(12), integer(0)}));
    ObjectOwner swapped(array({integer(0), integer(12)}));
    EXPECT_TRUE(equalObject(*reference, *same));
    EXPECT_FALSE(equalObject(*reference, *other));
    EXPECT_FALSE(equalObject(*reference, *pair));
    EXPECT_FALSE(equalObject(*pair, *swapped));
    EXPECT_FALSE(equalObject(integer(0), Object{ObjectType::fixed, 0, 0}));
    ObjectOwner zeroes(text(std::string_view("a\0b", 3)));
    ObjectOwner others(text(std::string_view("a\0c", 3)));
    EXPECT_FALSE(equalObject(*zeroes, *others));
}

TEST_F(ObjectTest, NestingIsBoundedWhereItRecursesAndFreedAtAnyDepth) {
    ObjectOwner deepest(nested(budget::objectNesting));
    ObjectOwner clone;
    cloneObject(*clone, *deepest);
    EXPECT_TRUE(equalObject(*clone, *deepest));

    ObjectOwner deep(nested(200000));
    ObjectOwner same(nested(200000));
    EXPECT_EQ(raisedBy([&] { cloneObject(*clone, *deep); }), Exception::structure);
    EXPECT_EQ(raisedBy([&] { equalObject(*same, *deep); }), Exception::structure);
}

TEST_F(ObjectTest, EveryFailingAllocationIsMemoryAndLeavesNothing) {
    const int building = failEachAllocation([] {
        const ObjectOwner built(array({integer(1), text("a")}));
        ObjectOwner clone;
        ObjectOwner reference;
        indirectObject(*reference, 1, 0);
        cloneObject(*clone, *built);
    });
    EXPECT_GE(building, 5);

    ObjectOwner value(array({nested(20), text("string"), block(50000, 40), nested(3)}));
    ObjectOwner clone;
    EXPECT_GE(failEachAllocation([&] {
                  ObjectOwner made;
                  cloneObject(*made, *value);
                  EXPECT_TRUE(equalObject(*made, *value));
              }),
              25);
    selectRules(Profile::extended);
    EXPECT_EQ(failEachAllocation([] { const ObjectOwner cut(block(50000, 40000)); }), 2);
}

/// What the random run below knows about an object beside the object itself.
struct Kept {
    ObjectOwner object;
    std::string print;
};

std::string printOf(const Object& object) {
    switch (object.type) {
    case ObjectType::integer:
        return std::to_string(integerObject(object)) + " ";
    case ObjectType::text:
        return "(" + std::string(textObject(object)) + ") ";
    case ObjectType::array: {
        std::string print = "[ ";
        for (const Object& element : elementsObject(object)) {
            print += printOf(element);
        }
        return print + "] ";
    }
    default:
        return "? ";
    }
}

TEST_F(ObjectTest, SharedStorageSurvivesAnyOrderOfFreeing) {
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same run each time
    std::vector<Kept> kept;
    const auto below = [&](std::size_t bound) { return random() % bound; };
    const auto share = [&](const Object& object) {
        retainObject(object);
        return object;
    };
    for (int step = 0; step < 20000; ++step) {
        ObjectOwner made;
        switch (kept.empty() ? 0 : below(6)) {
        case 0:
            made = ObjectOwner(text("t" + std::to_string(below(100))));
            break;
        case 1: { // around shared ones
            const Object& first = *kept[below(kept.size())].object;
            const Object& second = *kept[below(kept.size())].object;
            if (printOf(first).size() + printOf(second).size() < 200) {
                made = ObjectOwner(array({share(first), integer(step), share(second)}));
            }
            break;
        }
        case 2:
            made = ObjectOwner(share(*kept[below(kept.size())].object));
            break;
        case 3:
            cloneObject(*made, *kept[below(kept.size())].object);
            break;
        default: {
            const std::size_t index = below(kept.size());
            ASSERT_EQ(printOf(*kept[index].object), kept[index].print);
            std::swap(kept[index], kept.back());
            kept.pop_back();
        }
        }
        if (made->type != ObjectType::empty) {
            std::string print = printOf(*made);
            kept.push_back({std::move(made), std::move(print)});
        }
    }
    ASSERT_GT(kept.size(), 10U);
    std::shuffle(kept.begin(), kept.end(), random);
    while (!kept.empty()) {
        ASSERT_EQ(printOf(*kept.back().object), kept.back().print);
        kept.pop_back();
    }
    EXPECT_EQ(zoneBlocksInUse(), 0);
}

} // namespace
} // namespace corvane
