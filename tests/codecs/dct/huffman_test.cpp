#include "codecs/dct/huffman.h"

#include "tests/runtime/zone_fixture.h"
#include "tests/support/picture.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <set>
#include <string>

namespace corvane {
namespace {

class DctHuffman : public ZoneTest {
protected:
    static Exception made(const DctHuffmanSpec& spec, DctHuffmanClass use) {
        return raisedBy([&] { const DctDecodeTable table(spec, use); });
    }
};

/// Share of the code space, in codes of 16 bits.
std::uint32_t share(const DctHuffmanSpec& spec) {
    std::uint32_t sum = 0;
    for (unsigned length = 1; length <= 16; ++length) {
        sum += std::uint32_t{spec.counts[length - 1]} << (16 - length);
    }
    return sum;
}

TEST_F(DctHuffman, BuiltInTablesHaveACodeForEverySymbolAndNoneOfOnesAlone) {
    for (const DctHuffmanSpec& dc : dctBuiltInDc) {
        const std::set<int> symbols(dc.symbols.begin(), dc.symbols.begin() + 12);
        EXPECT_EQ(symbolCount(dc), 12U);
        EXPECT_EQ(symbols.size(), 12U);
        EXPECT_EQ(*symbols.rbegin(), 11);
        EXPECT_LT(share(dc), 1U << 16);
    }
    for (const DctHuffmanSpec& ac : dctBuiltInAc) {
        std::set<int> symbols(ac.symbols.begin(), ac.symbols.begin() + 162);
        EXPECT_EQ(symbolCount(ac), 162U);
        EXPECT_LT(share(ac), 1U << 16);
        for (int run = 0; run < 16; ++run) {
            for (int size = 1; size <= 10; ++size) {
                EXPECT_EQ(symbols.erase(run << 4 | size), 1U) << run << ' ' << size;
            }
        }
        EXPECT_EQ(symbols, (std::set<int>{0x00, 0xF0}));
    }
}

TEST_F(DctHuffman, CodesThatDoNotFitAreRefused) {
    const struct {
        const char* what;
        std::array<std::uint8_t, 16> counts;
        bool good;
    } cases[] = {
        {"none", {}, true},
        {"one of one bit", {1}, true},
        {"all of one bit", {2}, true},
        {"three of one bit", {3}, false},
        {"one more where none is left", {2, 1}, false},
        {"the last length only", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255}, true},
        {"complete", {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 2}, true},
        {"complete and one", {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 3}, false},
        {"more symbols than bytes", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 200, 200}, false},
    };
    for (const auto& [what, counts, good] : cases) {
        const DctHuffmanSpec spec{.counts = counts};
        const Exception wanted = good ? Exception::none : Exception::codec;
        EXPECT_EQ(made(spec, DctHuffmanClass::ac), wanted) << what;
        EXPECT_EQ(raisedBy([&, &counts = counts] { dctEncodeTable({.counts = counts}); }), wanted)
            << what;
    }
    for (const int symbol : {15, 16, 255}) {
        DctHuffmanSpec spec{.counts = {1}};
        spec.symbols[0] = static_cast<std::uint8_t>(symbol);
        EXPECT_EQ(made(spec, DctHuffmanClass::ac), Exception::none);
        EXPECT_EQ(made(spec, DctHuffmanClass::dc),
                  symbol > 15 ? Exception::codec : Exception::none);
    }
}

/// Random complete codes, every symbol of them written by their definition.
TEST_F(DctHuffman, EverySymbolReadsAsItsCode) {
    std::mt19937 random(4);
    for (int round = 0; round < 50; ++round) {
        // Leaves of a tree, split at random; the last of 16 bits stay.
        std::vector<unsigned> lengths{1, 1};
        while (lengths.size() < 2 + random() % 250) {
            unsigned& split = lengths[random() % lengths.size()];
            if (split < 16) {
                lengths.push_back(++split);
            }
        }
        std::ranges::sort(lengths);
        DctHuffmanSpec spec;
        std::vector<std::uint8_t> symbols(256);
        std::iota(symbols.begin(), symbols.end(), 0);
        std::ranges::shuffle(symbols, random);
        std::ranges::copy(symbols, spec.symbols.begin());
        std::string digits;
        std::uint32_t code = 0;
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            ++spec.counts[lengths[i] - 1];
            code = i == 0 ? 0 : (code + 1) << (lengths[i] - lengths[i - 1]);
            for (unsigned bit = lengths[i]; bit-- > 0;) {
                digits += (code >> bit & 1U) != 0 ? '1' : '0';
            }
        }
        ASSERT_EQ(share(spec), 1U << 16);
        digits.resize((digits.size() + 7) / 8 * 8, '0');
        std::vector<std::byte> data;
        for (std::size_t at = 0; at < digits.size(); at += 8) {
            data.push_back(static_cast<std::byte>(std::stoi(digits.substr(at, 8), nullptr, 2)));
            if (data.back() == std::byte{0xFF}) {
                data.push_back({});
            }
        }
        test::MemorySource source(data, 1 + random() % 20);
        DctInput input(source);
        DctBits bits(input);
        const DctDecodeTable table(spec, DctHuffmanClass::ac);
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            bits.need();
            ASSERT_EQ(table.symbol(bits), symbols[i]) << "symbol " << i << " of " << lengths.size();
        }
        EXPECT_FALSE(bits.overrun());
    }
}

TEST_F(DctHuffman, BitsThatAreNoCodeAreRefused) {
    const DctDecodeTable table({.counts = {0, 1}, .symbols = {7}}, DctHuffmanClass::ac);
    for (const int first : {0x00, 0x40, 0x80, 0xFE}) {
        const std::vector<std::byte> data(8, static_cast<std::byte>(first));
        test::MemorySource source(data);
        DctInput input(source);
        DctBits bits(input);
        bits.need();
        EXPECT_EQ(raisedBy([&] { EXPECT_EQ(table.symbol(bits), 7); }),
                  first == 0 ? Exception::none : Exception::codec);
    }
}

} // namespace
} // namespace corvane
