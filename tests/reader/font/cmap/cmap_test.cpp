#include "reader/font/cmap/cmap.h"

#include "reader/font/characters.h"
#include "reader/font/cmap/predefined_cmaps.h"
#include "reader/font/cmap/read_cmap.h"
#include "tests/runtime/zone_fixture.h"

namespace corvane {
namespace {

class CMapTest : public ZoneTest {
protected:
    static std::shared_ptr<CMap> read(std::string_view text, const CMapFinder& find = {}) {
        return readCMap(
            std::as_bytes(std::span(text)), nullptr,
            find ? find : [](std::string_view) { return nullptr; });
    }
    static StringCode first(const CMap& map, std::string_view string) {
        return map.firstCode(std::as_bytes(std::span(string)));
    }
};

constexpr std::string_view mixed =
    "2 begincodespacerange <00> <80> <8140> <9FFC> endcodespacerange "
    "1 begincidrange <20> <7e> 231 endcidrange "
    "1 begincidchar <8140> 633 endcidchar "
    "1 begincidrange <8140> <8160> 1 endcidrange "
    "1 beginnotdefrange <00> <1f> 7 endnotdefrange";

TEST_F(CMapTest, StringsDivideByTheCodeSpaces) {
    const auto map = read(mixed);
    EXPECT_EQ(first(*map, "A"), (StringCode{0x41, 1}));
    EXPECT_EQ(first(*map, "\x81\x40z"), (StringCode{0x8140, 2}));
    EXPECT_EQ(first(*map, "\x81\x20"), (StringCode{0x8120, 2})) << "begins like a code of two";
    EXPECT_EQ(first(*map, "\xFF\x20"), (StringCode{0xFF, 1})) << "begins like none";
    EXPECT_EQ(first(*map, "\x81"), (StringCode{0x81, 1})) << "cut off";
    EXPECT_EQ(first(*read(""), "ab"), (StringCode{'a', 1}));
}

TEST_F(CMapTest, CidsAreThoseOfTheLastRange) {
    const auto map = read(mixed);
    EXPECT_EQ(map->cid({0x41, 1}), 231U + 0x21);
    EXPECT_EQ(map->cid({0x8140, 2}), 1U) << "said twice";
    EXPECT_EQ(map->cid({0x8160, 2}), 0x21U);
    EXPECT_EQ(map->cid({0x8161, 2}), std::nullopt);
    EXPECT_EQ(map->cid({0x10, 1}), 7U) << "not defined";
    EXPECT_EQ(map->cid({0x41, 2}), std::nullopt) << "of another length";
}

TEST_F(CMapTest, TextsOfCodes) {
    const auto map = read("3 beginbfchar <01> <0066 0066 0069> <02> <D835DC00> <03> <41> endbfchar "
                          "2 beginbfrange <10> <12> <0061> <20> <22> [<0078> <0079007A> ] "
                          "endbfrange 1 beginbfchar <11> <00e9> endbfchar");
    const auto text = [&](std::uint32_t code) {
        const auto characters = map->text(code);
        return characters ? toUtf8(*characters) : "none";
    };
    EXPECT_EQ(text(0x01), "ffi");
    EXPECT_EQ(text(0x02), "\xF0\x9D\x90\x80");
    EXPECT_EQ(text(0x03), "A");
    EXPECT_EQ(text(0x10) + text(0x11) + text(0x12), "aéc");
    EXPECT_EQ(text(0x20) + text(0x21) + text(0x22), "xyznone");
}

TEST_F(CMapTest, FaultsLeaveTheRest) {
    const auto map = read("begincidrange <00> 3 4 <1020304050> <60> 1 (x) 9 endcidrange "
                          "beginbfrange <01> <02> [<0041> endbfrange "
                          "begincidchar <05> 6 endcidchar <");
    EXPECT_EQ(map->text(1), U"A");
    EXPECT_EQ(map->cid({5, 1}), 6U);
}

TEST_F(CMapTest, ManyRangesOverOneAnotherAreQuick) {
    std::string text = "begincidrange ";
    for (int i = 0; i < 200'000; ++i) {
        text += "<0000> <FFFF> 1 ";
    }
    EXPECT_EQ(read(text + "endcidrange")->cid({0xFFFF, 2}), 0x10000U);
}

TEST_F(CMapTest, PredefinedOnesComeFromFiles) {
    std::vector<std::string> asked;
    PredefinedCMaps maps([&](const std::string& path) -> std::optional<std::vector<std::byte>> {
        asked.push_back(path);
        const std::string_view file = path == "Adobe-Japan1/V" ? "/H usecmap /WMode 1 def "
                                                                 "begincidchar <2122> 7 endcidchar"
                                      : path == "Adobe-Japan1/H"
                                          ? "begincodespacerange <2121> "
                                            "<7E7E> endcodespacerange "
                                            "begincidrange <2121> <2130> 633 "
                                            "endcidrange /V usecmap"
                                          : "";
        if (file.empty()) {
            return std::nullopt;
        }
        const auto bytes = std::as_bytes(std::span(file));
        return std::vector<std::byte>(bytes.begin(), bytes.end());
    });
    const auto vertical = maps.find("V");
    ASSERT_NE(vertical, nullptr);
    EXPECT_TRUE(vertical->isVertical());
    EXPECT_FALSE(maps.find("H")->isVertical());
    EXPECT_EQ(first(*vertical, "\x21\x21"), (StringCode{0x2121, 2}));
    EXPECT_EQ(vertical->cid({0x2121, 2}), 633U);
    EXPECT_EQ(vertical->cid({0x2122, 2}), 7U);
    EXPECT_EQ(maps.collectionOf("V"), "Adobe-Japan1");
    EXPECT_EQ(maps.find("../V"), nullptr);
    EXPECT_EQ(maps.find("Identity-V")->cid({0x1234, 2}), 0x1234U);
    EXPECT_EQ(asked, (std::vector<std::string>{"Adobe-Japan1/V", "Adobe-Japan1/H"}));
}

} // namespace
} // namespace corvane
