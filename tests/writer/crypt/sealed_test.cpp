#include "writer/crypt/sealed.h"

#include "crypt/cipher.h"
#include "reader/crypt/encryption.h"
#include "tests/reader/reader_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

class SealedTest : public ReaderTest {
protected:
    void SetUp() override {
        ReaderTest::SetUp();
        FileKey key{Secret(16), Access::user};
        cache_.emplace();
        cache_->encryption = std::make_unique<Encryption>(
            FileCiphers{.strings = FileCipher::aes128, .streams = FileCipher::arcfour, .named = {}},
            std::move(key), -4, std::set<std::int32_t>());
    }
    void TearDown() override {
        cache_.reset();
        ReaderTest::TearDown();
    }

    std::optional<DocumentCache> cache_;
};

constexpr ObjectIdentifier none{};
constexpr ObjectIdentifier one{.number = 1, .generation = 0};
constexpr ObjectIdentifier two{.number = 2, .generation = 0};

TEST_F(SealedTest, ValuesMoveFromObjectToObject) {
    struct Row {
        std::string value;
        std::string wanted; ///< its strings as digits
    };
    for (const Row& row : {
             Row{"12 0 R", "12 0 R"},
             Row{"(a)", "<61>"},
             Row{"()", "<>"},
             Row{"[(a(b)\\)c)(\\101\\\n)/N#28 1.5]", "[<612862292963><41>/N#28 1.5]"},
             Row{"<</A<61 6\n2>/B<</C(\r\n)>>>>", "<</A<6162>/B<</C<0A>>>>>"},
             Row{"<</A 1 % (no) <string>\n/B<7>>>", "<</A 1 % (no) <string>\n/B<70>>>"},
         }) {
        SCOPED_TRACE(row.value);
        const std::string sealed = sealedValue(*cache_, row.value, none, one);
        EXPECT_EQ(sealedValue(*cache_, sealed, one, one), sealed);
        const std::string moved = sealedValue(*cache_, sealed, one, two);
        EXPECT_EQ(sealedValue(*cache_, moved, two, none), row.wanted);
        if (row.wanted != row.value) {
            EXPECT_NE(moved, sealed);
            // Of 256 vectors one makes what another key deciphers an empty string.
            EXPECT_TRUE(row.wanted == "<>" || sealedValue(*cache_, moved, one, none) != row.wanted)
                << "another key";
        }
    }
}

TEST_F(SealedTest, OwnStrings) {
    EXPECT_EQ(sealedValue(*cache_, sealedText(*cache_, two, "date"), two, none), "<64617465>");
    EXPECT_EQ(sealedLength(newStreamCipher(*cache_), 7), 7);
    cache_->encryption.reset();
    EXPECT_EQ(sealedText(*cache_, two, "date"), "(date)");
    EXPECT_EQ(sealedBytes(*cache_, two, {}), "<>");
    EXPECT_EQ(sealedValue(*cache_, "(a)", one, two), "(a)");
}

} // namespace
} // namespace corvane
