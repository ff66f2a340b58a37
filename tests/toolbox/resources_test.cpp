#include "tests/toolbox/toolbox_fixture.h"
#include "toolbox/apple_double.h"
#include "toolbox/big_endian.h"
#include "toolbox/resource_fork.h"

#include <cstring>
#include <filesystem>
#include <random>

namespace corvane {
namespace {

constexpr std::uint32_t pict = fourCharacters("PICT");
constexpr std::uint32_t icons = fourCharacters("ICN#");

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

std::vector<std::byte> vectorOf(std::string_view text) {
    const auto bytes = bytesOf(text);
    return {bytes.begin(), bytes.end()};
}

std::string textOf(std::span<const std::byte> bytes) {
    std::string text(bytes.size(), ' ');
    std::memcpy(text.data(), bytes.data(), bytes.size());
    return text;
}

std::string textOf(Handle handle) {
    return handle ? textOf({(*handle).get(), static_cast<std::size_t>(GetHandleSize(handle))})
                  : "none";
}

Handle handleOf(std::string_view text) {
    Handle handle;
    EXPECT_EQ(PtrToHand(text.data(), &handle, static_cast<std::int32_t>(text.size())), noErr);
    return handle;
}

/// A fork with one resource, laid out by hand.
std::string handMadeFork() {
    std::string fork(256, '\0');
    const std::string data("\0\0\0\3abc", 7);
    const std::string header("\0\0\1\0\0\0\1\7\0\0\0\7\0\0\0\66", 16);
    const std::string map = header +
                            std::string("\0\0\0\0\0\0\0\0\0\34\0\62", 12) + // lists at 28 and 50
                            std::string("\0\0PICT\0\0\0\12", 10) +          // references at 10
                            std::string("\1\0\0\0\40\0\0\0\0\0\0\0", 12) +  // id 256, attributes 32
                            "\3One";
    fork.replace(0, header.size(), header);
    return fork + data + map;
}

TEST(ResourceFork, ReadsTheRealLayoutAndWritesItBack) {
    const std::string fork = handMadeFork();
    const auto records = parseResourceFork(bytesOf(fork));
    ASSERT_TRUE(records);
    ASSERT_EQ(records->size(), 1U);
    const ResourceRecord& record = records->front();
    EXPECT_EQ(record.type, pict);
    EXPECT_EQ(record.id, 256);
    EXPECT_EQ(record.attributes, 32);
    EXPECT_EQ(record.name, "One");
    EXPECT_EQ(textOf(record.bytes), "abc");
    const auto written = buildResourceFork(*records);
    ASSERT_TRUE(written);
    EXPECT_EQ(textOf(*written), fork);
}

TEST(ResourceFork, KeepsManyAndNone) {
    std::vector<ResourceRecord> records;
    for (int i = 0; i < 300; ++i) {
        records.push_back(
            {.type = i % 3 == 0 ? icons : pict,
             .id = static_cast<std::int16_t>(-16'455 + i),
             .attributes = static_cast<std::uint8_t>(i),
             .name = i % 7 == 0 ? "name" + std::to_string(i) : "",
             .bytes =
                 bytesOf(std::string_view("0123456789").substr(static_cast<std::size_t>(i % 11)))});
    }
    const auto fork = buildResourceFork(records);
    ASSERT_TRUE(fork);
    const auto read = parseResourceFork(*fork);
    ASSERT_TRUE(read);
    ASSERT_EQ(read->size(), records.size());
    std::stable_partition(records.begin(), records.end(),
                          [](const ResourceRecord& record) { return record.type == icons; });
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ((*read)[i].type, records[i].type);
        EXPECT_EQ((*read)[i].id, records[i].id);
        EXPECT_EQ((*read)[i].attributes, records[i].attributes);
        EXPECT_EQ((*read)[i].name, records[i].name);
        EXPECT_EQ(textOf((*read)[i].bytes), textOf(records[i].bytes));
    }
    EXPECT_EQ(parseResourceFork({})->size(), 0U);
    EXPECT_EQ(parseResourceFork(*buildResourceFork({}))->size(), 0U);

    const std::vector<std::byte> large(17 << 20);
    const std::array tooLarge{ResourceRecord{.type = pict, .id = 1, .name = {}, .bytes = large},
                              ResourceRecord{.type = pict, .id = 2, .name = {}, .bytes = large}};
    EXPECT_FALSE(buildResourceFork(tooLarge));
    EXPECT_FALSE(buildResourceFork(std::vector<ResourceRecord>(6'000)));
}

TEST(ResourceFork, DamageIsFoundAndNeverReadPast) {
    const std::string whole = handMadeFork();
    for (std::size_t length = 1; length < whole.size(); ++length) {
        EXPECT_FALSE(parseResourceFork(vectorOf(whole.substr(0, length)))) << length;
    }
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): the same run every time
    for (int i = 0; i < 20'000; ++i) {
        std::string damaged = whole;
        for (int change = 0; change < 3; ++change) {
            // The padding holds nothing that could break.
            const std::size_t place = random() % (whole.size() - 240);
            damaged[place < 16 ? place : place + 240] = static_cast<char>(random());
        }
        if (const auto records = parseResourceFork(vectorOf(damaged))) {
            EXPECT_LE(records->size(), damaged.size() / 12);
        }
    }
}

TEST(ResourceFork, TypesThatShareTheirReferencesDoNotMultiplyThem) {
    std::vector<ResourceRecord> records(100, {.type = pict, .id = 1, .name = {}, .bytes = {}});
    for (std::uint32_t type = 1; type <= 10; ++type) {
        records.push_back({.type = type, .id = 1, .name = {}, .bytes = {}});
    }
    std::vector<std::byte> fork = *buildResourceFork(records);
    ASSERT_EQ(parseResourceFork(fork)->size(), records.size());
    // Every type gets the references of the first one, 100 each.
    const std::size_t firstType = readBig<std::uint32_t>(fork, 4) + 30;
    for (std::size_t type = 1; type <= 10; ++type) {
        std::copy_n(fork.begin() + static_cast<std::ptrdiff_t>(firstType + 4), 4,
                    fork.begin() + static_cast<std::ptrdiff_t>(firstType + type * 8 + 4));
    }
    EXPECT_FALSE(parseResourceFork(fork));
}

TEST(AppleDouble, KeepsWhatOtherProgramsPutIn) {
    const auto comment = AppleDoubleId{4};
    const std::array entries{AppleDoubleEntry{AppleDoubleId::resourceFork, bytesOf("fork")},
                             AppleDoubleEntry{comment, bytesOf("a comment")}};
    const std::vector<std::byte> container = buildAppleDouble(entries);
    const std::string expected =
        std::string("\0\5\26\7\0\2\0\0", 8) + std::string(16, '\0') +
        std::string("\0\2\0\0\0\4\0\0\0\62\0\0\0\11\0\0\0\2\0\0\0\73\0\0\0\4", 26) +
        "a commentfork";
    EXPECT_EQ(textOf(container), expected);
    const auto read = parseAppleDouble(container);
    ASSERT_TRUE(read);
    ASSERT_EQ(read->size(), 2U);
    EXPECT_EQ(textOf((*read)[0].bytes), "a comment");
    EXPECT_EQ(textOf((*read)[1].bytes), "fork");
    for (std::size_t length = 0; length < expected.size(); ++length) {
        EXPECT_FALSE(parseAppleDouble(vectorOf(expected.substr(0, length)))) << length;
    }
    EXPECT_EQ(appleDoublePath("/a/b.eps"), "/a/._b.eps");
}

class Resources : public ToolboxTest {
protected:
    void SetUp() override {
        ToolboxTest::SetUp();
        ParamBlock block;
        block.ioVRefNum = volume_;
        ASSERT_EQ(PBSetVolSync(&block), noErr);
    }

    std::int16_t openFork(std::string_view name, std::int8_t permission = fsRdWrPerm) {
        return OpenRFPerm(Prefixed(name).data(), volume_, permission);
    }
};

TEST_F(Resources, TablesAreSearchedInOrderAndTheirHandlesGoWithThem) {
    const std::array first{StaticResource{pict, 1, "one", bytesOf("first")}};
    const std::array second{StaticResource{pict, 1, "", bytesOf("hidden")},
                            StaticResource{pict, 2, "", bytesOf("second")}};
    {
        const ResourceSource firstSource(first);
        const ResourceSource secondSource(second);
        const Handle handle = GetResource(pict, 1);
        EXPECT_EQ(textOf(handle), "first");
        EXPECT_EQ(GetResource(pict, 1), handle);
        EXPECT_EQ(textOf(GetResource(pict, 2)), "second");
        EXPECT_EQ(textOf(Get1NamedResource(pict, Prefixed("one").data())), "first");
        EXPECT_FALSE(GetResource(pict, 3));
        EXPECT_EQ(ResError(), resNotFound);
        EXPECT_FALSE(Get1NamedResource(pict, Prefixed("").data()));
        ReleaseResource(handle);
        EXPECT_EQ(ResError(), noErr);
        EXPECT_EQ(zoneBlocksInUse(), 2);
        ReleaseResource(handle);
        EXPECT_EQ(ResError(), resNotFound);
    }
    EXPECT_EQ(zoneBlocksInUse(), 0);
    EXPECT_FALSE(GetResource(pict, 2));
}

TEST_F(Resources, StringListsAreReadWithinTheirBytes) {
    const std::string list("\0\3\3One\0\5Three", 13);
    const std::string shortened("\0\2\3One\11Too", 10);
    const std::array table{
        StaticResource{fourCharacters("STR#"), 5, "", bytesOf(list)},
        StaticResource{fourCharacters("STR#"), 6, "", bytesOf(shortened)},
        StaticResource{fourCharacters("STR#"), 7, "", bytesOf("\0")},
    };
    const ResourceSource source(table);
    const auto entry = [](std::int16_t number, std::int16_t index) {
        std::array<std::uint8_t, 256> text{9};
        GetIndString(text.data(), number, index);
        return plain(text.data());
    };
    EXPECT_EQ(entry(5, 1), "One");
    EXPECT_EQ(entry(5, 2), "");
    EXPECT_EQ(entry(5, 3), "Three");
    EXPECT_EQ(entry(6, 1), "One");
    for (const auto& [number, index] : {std::pair(5, 0), {5, 4}, {5, -1}, {6, 2}, {7, 1}, {8, 1}}) {
        EXPECT_EQ(entry(static_cast<std::int16_t>(number), static_cast<std::int16_t>(index)), "");
    }
    EXPECT_EQ(zoneBlocksInUse(), 0);
}

TEST_F(Resources, AForkKeepsWhatIsWrittenAndStandsBesideItsFile) {
    add("image.eps", "data");
    EXPECT_EQ(openFork("image.eps"), -1);
    EXPECT_EQ(ResError(), fnfErr);
    CreateResFile(Prefixed("image.eps").data());
    EXPECT_EQ(ResError(), noErr);
    CreateResFile(Prefixed("image.eps").data());
    EXPECT_EQ(ResError(), dupFNErr);

    std::int16_t fork = openFork("image.eps");
    ASSERT_GT(fork, 0);
    EXPECT_EQ(openFork("image.eps"), -1);
    EXPECT_EQ(ResError(), opWrErr);
    const Handle picture = handleOf("picture");
    AddResource(picture, pict, 256, Prefixed("preview").data());
    EXPECT_EQ(ResError(), noErr);
    AddResource(picture, pict, 257, Prefixed("").data());
    EXPECT_EQ(ResError(), addResFailed); // it is one already
    WriteResource(picture);
    EXPECT_EQ(ResError(), noErr);
    ReleaseResource(picture);
    AddResource(handleOf("icon"), icons, -16'455, Prefixed("").data()); // written by closing
    AddResource({}, icons, 1, Prefixed("").data());
    EXPECT_EQ(ResError(), addResFailed);
    CloseResFile(fork);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(zoneBlocksInUse(), 0);
    CloseResFile(fork);
    EXPECT_EQ(ResError(), resFNotFound);
    EXPECT_EQ(test::fileBytes(path("image.eps")), "data");

    const std::array table{StaticResource{pict, 256, "", bytesOf("compiled")},
                           StaticResource{pict, 1, "", bytesOf("compiled")}};
    const ResourceSource source(table);
    fork = openFork("image.eps", fsRdPerm);
    ASSERT_GT(fork, 0);
    EXPECT_EQ(textOf(GetResource(pict, 256)), "picture");
    EXPECT_EQ(textOf(GetResource(pict, 1)), "compiled");
    EXPECT_FALSE(Get1Resource(pict, 1)); // not in the file opened last
    EXPECT_EQ(textOf(Get1NamedResource(pict, Prefixed("preview").data())), "picture");
    EXPECT_EQ(textOf(Get1Resource(icons, -16'455)), "icon");
    const Handle refused = handleOf("x");
    AddResource(refused, pict, 9, Prefixed("").data());
    EXPECT_EQ(ResError(), wrPermErr);
    DisposeHandle(refused);
    CloseResFile(fork);
    EXPECT_EQ(textOf(Get1Resource(pict, 1)), "compiled");
}

TEST_F(Resources, ContainersOfOthersAreKeptOrRefused) {
    add("mac.eps", "");
    const std::string inside = handMadeFork();
    const std::array entries{AppleDoubleEntry{AppleDoubleId{4}, bytesOf("a comment")},
                             AppleDoubleEntry{AppleDoubleId::resourceFork, bytesOf(inside)}};
    add("._mac.eps", textOf(buildAppleDouble(entries)));
    const std::int16_t fork = openFork("mac.eps");
    ASSERT_GT(fork, 0);
    AddResource(handleOf("icon"), icons, 128, Prefixed("").data());
    CloseResFile(fork);
    const std::string written = test::fileBytes(path("._mac.eps"));
    EXPECT_NE(written.find("a comment"), std::string::npos);
    const auto container = vectorOf(written);
    const auto records = parseResourceFork(parseAppleDouble(container)->back().bytes);
    ASSERT_TRUE(records);
    ASSERT_EQ(records->size(), 2U);
    EXPECT_EQ(textOf((*records)[0].bytes), "abc");

    add("text", "");
    add("._text", "somebody's notes, long enough to be read as a header");
    EXPECT_EQ(openFork("text"), -1);
    EXPECT_EQ(ResError(), mapReadErr);
    EXPECT_EQ(openFork("text"), -1); // and nothing is left open
    EXPECT_EQ(ResError(), mapReadErr);
    EXPECT_EQ(test::fileBytes(path("._text")).substr(0, 10), "somebody's");
}

} // namespace
} // namespace corvane
