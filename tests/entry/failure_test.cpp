// Memory that runs out at every place there is, and an operand stack that does: one exception, no
// block left behind, and the next call works.
#include "objects/stack.h"
#include "reader/document/cache.h"
#include "reader/page/page_tree.h"
#include "runtime/memory.h"
#include "tests/entry/entry_fixture.h"
#include "tests/reader/reader_fixture.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <new>

namespace {

// NOLINTBEGIN(cppcoreguidelines-no-malloc): this stands in for `new` itself.

/// Allocations of the C++ library until the one that fails; 0: none does.
long untilFailure = 0;

void* allocate(std::size_t size) noexcept {
    if (untilFailure > 0 && --untilFailure == 0) {
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
    if (void* const memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

// NOLINTEND(cppcoreguidelines-no-malloc)

namespace corvane {
namespace {

using ::testing::AnyOf;
using ::testing::ElementsAre;

/// A page that uses what there is: groups, clips, compound paths, dashes, escaped strings,
/// references, streams of wrong length, warnings.
std::string richFile() {
    return PdfBuilder::onePage("q 0 0 5 5 re 1 1 m 3 3 4 4 2 2 c W* f q 2 0 0 2 0 0 cm [1 2] 0 d "
                               "1 0 0 rg 0 0 m 9 0 l 9 9 l b Q Q frob Q (a\\(b) Tj <41> Tj /X Do "
                               "/x <</K[1 2 3]>> BDC 7 Q q q 0 0 m 9 9 l S",
                               "/Resources 6 0 R/CropBox[0 0 50 50]/Rotate 90")
        .object(2, "<</Kids 5 0 R/Count 1>>")
        .object(5, "[3 0 R]")
        .object(6, "<</XObject<</X 7 0 R>>/Name#41(str\\ning)>>")
        .object(7, "<</Subtype/Form/Length 99>>stream\nx\nendstream")
        .bytes();
}

class FailureTest : public EntryTest {
protected:
    /// Calls with the first, then the second, ... failure until there is none. How many there were.
    template <class Order, class Call, class Check>
    int failEach(Order order, Call body, Check check) {
        for (int nth = 1;; ++nth) {
            front_.taken();
            order(nth);
            const std::uint32_t result = body();
            if (!order(0)) {
                EXPECT_EQ(result, 0U);
                return nth - 1;
            }
            check(nth, result);
            if (HasFailure()) {
                return nth;
            }
        }
    }

    /// Orders the failure of an allocation of the zone; of 0: whether the one ordered came.
    bool failZone(int nth) {
        if (nth != 0) {
            zone().failAllocation(nth);
            return false;
        }
        zone().failAllocation(0);
        return !front_.seen.empty() && front_.seen.front().starts_with("error");
    }
    Zone& zone() { return ToolboxTest::scope_.state().zone; }
};

TEST_F(FailureTest, OfEveryAllocationOfTheZone) {
    for (const bool extended : {false, true}) {
        setHostExtension(extended ? &extension_ : nullptr);
        use("in.pdf", richFile());
        ASSERT_EQ(call(3), 0U);
        const int count = failEach(
            [this](int nth) { return failZone(nth); }, [this] { return go(); },
            [this](int nth, std::uint32_t result) {
                EXPECT_EQ(result, resultStopped) << nth;
                // A table that cannot be opened says `io`.
                EXPECT_THAT(front_.taken(), AnyOf(ElementsAre("error 13"), ElementsAre("error 18")))
                    << nth;
                EXPECT_EQ(go(), 0U) << nth;
                EXPECT_TRUE(hasArt()) << nth;
            });
        EXPECT_GT(count, 100) << "the page is rich enough";
    }
}

TEST_F(FailureTest, OfEveryAllocationWhileATemplateIsMade) {
    use("new.pdf");
    int made = 0;
    const int count = failEach(
        [this](int nth) { return failZone(nth); }, [this] { return call(3, Action::write); },
        [&](int nth, std::uint32_t result) {
            EXPECT_EQ(result, resultStopped) << nth;
            const bool exists = std::filesystem::exists(path("new.pdf"));
            made += exists ? 1 : 0;
            EXPECT_TRUE(!exists || test::fileBytes(path("new.pdf")).size() > 256) << nth;
            std::filesystem::remove(path("new.pdf"));
        });
    EXPECT_GT(count, 10);
    EXPECT_GT(made, 0) << "some fail only when the file is opened again";
}

TEST_F(FailureTest, OfEveryAllocationOfTheLibrary) {
    for (const bool extended : {false, true}) {
        setHostExtension(extended ? &extension_ : nullptr);
        use("in.pdf", richFile());
        ASSERT_EQ(call(3), 0U);
        long nth = 1;
        for (bool failed = true; failed; ++nth) {
            document_.emplace();
            const CallbackScope scope(*document_);
            document_->expectImport();
            (*block_)->selector = Selector::go;
            (*block_)->action = Action::read;
            setDialogFront(nullptr); // what this test's front notes allocates as well
            untilFailure = nth;
            const std::uint32_t result = main_entry(&**block_);
            failed = untilFailure == 0;
            untilFailure = 0;
            setDialogFront(&front_);
            ASSERT_EQ(zoneBlocksInUse(), blocks_ + 2) << nth;
            ASSERT_EQ(zoneBytesCharged(), 0) << nth;
            ASSERT_EQ(handlerDepth(), 0) << nth;
            ASSERT_EQ(valueException(), Exception::none) << nth;
            // The check of the header goes on without an answer.
            ASSERT_THAT(result, AnyOf(resultStopped, 0U)) << nth;
            ASSERT_EQ(go(), 0U) << nth;
        }
        EXPECT_GT(nth, 50);
    }
}

TEST_F(FailureTest, OfEveryAllocationWhileAPageIsSaved) {
    for (const bool extended : {false, true}) {
        setHostExtension(extended ? &extension_ : nullptr);
        const std::string file =
            PdfBuilder::onePage("q 0 0 5 5 re W n 1 1 m 3 3 4 4 2 2 c S Q 0 0 m 9 0 l S",
                                "/Rotate 90/PieceInfo<</X<</Private 1>>>>")
                .trailer("/Size 5/Root 1 0 R/Info 1 0 R/ID[<01><02>]")
                .bytes();
        use("in.pdf", file);
        ASSERT_EQ(call(3), 0U);
        ASSERT_EQ(go(), 0U);
        long nth = 1;
        for (const bool library : {false, true}) {
            bool failed = true;
            for (nth = 1; failed; ++nth) {
                (*block_)->selector = Selector::go;
                (*block_)->action = Action::write;
                setDialogFront(nullptr);
                zone().failAllocation(library ? 0 : nth);
                untilFailure = library ? nth : 0;
                const std::uint32_t result = main_entry(&**block_);
                failed = library ? untilFailure == 0 : result != 0;
                untilFailure = 0;
                zone().failAllocation(0);
                setDialogFront(&front_);
                ASSERT_EQ(zoneBlocksInUse(), blocks_ + 2) << nth;
                const std::string after = test::fileBytes(path("in.pdf"));
                ASSERT_TRUE(after.starts_with(file)) << nth;
                if (result != 0) {
                    ASSERT_EQ(after, file) << nth;
                } else {
                    ASSERT_GT(after.size(), file.size()) << nth;
                    ASSERT_TRUE(after.ends_with("%%EOF\n")) << nth;
                    add("in.pdf", file);
                }
            }
            EXPECT_GT(nth, 20);
        }
    }
}

using GivingBackTest = ZoneTest;

TEST_F(GivingBackTest, NeedsNoMemory) {
    std::array<BlockOwner, 4> blocks;
    for (BlockOwner& block : blocks) {
        block = BlockOwner(allocateMemory(1 << 20));
    }
    untilFailure = 1;
    blocks[1] = BlockOwner();
    untilFailure = 0;
    EXPECT_EQ(zoneBlocksInUse(), 3);
}

class StackFailureTest : public ReaderTest {};

TEST_F(StackFailureTest, OfEveryDepthOfTheOperandStack) {
    selectRules(Profile::original);
    DocumentCache& cache = open(richFile());
    for (std::int32_t room = 0;; ++room) {
        cache.pageWalk.reset();
        cache.pagesWalked = false;
        cache.pages.clear();
        flushReference(*cache.references);
        const std::int32_t filled = rules().stackLimit - room;
        for (std::int32_t i = 0; i < filled; ++i) {
            pushInteger(7);
        }
        const std::int32_t blocks = zoneBlocksInUse();
        const Exception code = raisedBy([&] { pageCache(cache, 1); });
        ASSERT_EQ(countStack(), filled) << room;
        ASSERT_EQ(cache.input, cache.fileChain.top()) << room;
        ASSERT_EQ(cache.work.depth, 0) << room;
        clearStack();
        if (code == Exception::none) {
            EXPECT_GT(room, 5);
            EXPECT_EQ(mediaCache(cache), (Box{0, 0, 612, 792}));
            return;
        }
        ASSERT_EQ(code, Exception::overflow) << room;
        flushReference(*cache.references);
        ASSERT_LE(zoneBlocksInUse(), blocks) << room;
        ASSERT_EQ(raisedBy([&] { pageCache(cache, 1); }), Exception::none) << room;
    }
}

} // namespace
} // namespace corvane
