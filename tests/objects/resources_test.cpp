#include "objects/family.h"
#include "objects/identity.h"
#include "objects/mask.h"
#include "runtime/budget.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

class ResourcesTest : public ZoneTest {
protected:
    void SetUp() override {
        ZoneTest::SetUp();
        openIdentity();
        openFamily();
        openMask();
    }
    void TearDown() override {
        closeMask();
        closeFamily();
        closeIdentity();
        ZoneTest::TearDown();
    }
};

TEST_F(ResourcesTest, NewObjectsNeverMeetOldOnes) {
    for (const std::int32_t number : {3, 41, 7}) {
        usedIdentity(number);
    }
    EXPECT_EQ(nextIdentity(), 42);
    EXPECT_EQ(nextIdentity(), 43);
    EXPECT_EQ(lastIdentity(), 44);
    usedIdentity(INT32_MAX);
    EXPECT_EQ(raisedBy([] { nextIdentity(); }), Exception::structure);
    EXPECT_EQ(lastIdentity(), budget::objectNumber + 1);
}

TEST_F(ResourcesTest, OneResourceForEachFont) {
    usedIdentity(10);
    const std::string names[] = {"Times", "Times-Bold", "Courier", "A", "B",
                                 "C",     "D",          "E",       "F", "G"};
    for (const std::string& name : names) {
        appendFamily(name, FontTechnology::trueType);
    }
    EXPECT_EQ(appendFamily("Times", FontTechnology::type1), "\002F1");
    EXPECT_EQ(appendFamily("F", FontTechnology::type1), "\002F9");
    EXPECT_EQ(appendFamily("G", FontTechnology::type1), "\003F10");
    EXPECT_EQ(countFamily(), 10);
    EXPECT_EQ(lastIdentity(), 21);

    std::int32_t index = 10;
    forallFamily([&](const Family& family) {
        EXPECT_EQ(family.number, 10 + index);
        EXPECT_EQ(family.generation, 0);
        EXPECT_EQ(family.technology, FontTechnology::trueType);
        EXPECT_EQ(resourceNameFamily(family).substr(1), "F" + std::to_string(index));
        EXPECT_EQ(family.fontName.get(), names[--index]);
    });
    EXPECT_EQ(index, 0);
    closeFamily();
    EXPECT_EQ(appendFamily("Times", FontTechnology::type1), "\002F1");
}

TEST_F(ResourcesTest, OneResourceForEachPlacing) {
    EXPECT_EQ(appendMask(Art{5}), "I1");
    EXPECT_EQ(appendMask(Art{5}), "I2");
    EXPECT_EQ(appendMask(Art{6}), "I3");
    std::vector<std::string> seen;
    forallMask([&](const Mask& mask) {
        seen.push_back(mask.resourceName.get() + std::to_string(mask.number) +
                       std::to_string(static_cast<std::uint32_t>(mask.placed)));
    });
    EXPECT_EQ(seen, (std::vector<std::string>{"I336", "I225", "I115"}));
    EXPECT_EQ(countMask(), 3);
}

TEST_F(ResourcesTest, EveryFailingAllocationAddsNothing) {
    EXPECT_EQ(failEachAllocation([] {
                  const Exception code = guarded([] {
                      appendFamily("Times", FontTechnology::type1);
                      appendMask(Art{1});
                  });
                  if (code != Exception::none) {
                      EXPECT_EQ(countMask(), 0);
                      closeFamily();
                  }
                  raiseException(code);
              }),
              5);
    usedIdentity(INT32_MAX);
    EXPECT_EQ(raisedBy([] { appendMask(Art{2}); }), Exception::structure);
    EXPECT_EQ(countMask(), 1);
}

} // namespace
} // namespace corvane
