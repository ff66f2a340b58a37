// Encrypt dictionaries that cannot be, and what of a small encrypted file is deciphered.
#include "reader/crypt/encryption.h"

#include "reader/syntax/stream/stream_bytes.h"
#include "reader/syntax/syntax.h"
#include "runtime/reason.h"
#include "tests/reader/reader_fixture.h"

#include <array>
#include <gtest/gtest.h>

namespace corvane {
namespace {

class EncryptionTest : public ReaderTest {
protected:
    static std::string file(const std::string& dictionary) {
        return PdfBuilder::onePage("").trailer("/Root 1 0 R/Encrypt<<" + dictionary + ">>").bytes();
    }
};

const std::string standard = "/Filter/Standard/P -4";
const std::string owner = "/O(" + std::string(32, 'O') + ")";
/// By which the empty password opens a file without ID.
const std::string arcfourUser =
    "/U<9729303290bb79919711a9d0657010b4a921995f7fb52cf97bb2241bafb1ef5c>";
const std::string aesUser = "/U<73f55a2561c9c15c9b7c0037c62c5dee00000000000000000000000000000000>";
const std::string longEntries = "/O(" + std::string(48, 'O') + ")/U(" + std::string(48, 'U') +
                                ")/OE(" + std::string(32, 'o') + ")/UE(" + std::string(32, 'u') +
                                ")";

TEST_F(EncryptionTest, DictionariesThatCannotBe) {
    struct Row {
        const char* what;
        std::string dictionary;
        Reason reason;
        std::string name;
    };
    constexpr Reason damaged = Reason::damagedEncryption;
    const std::string five = "/CF<</S<</CFM/AESV3>>>>/StmF/S/StrF/S";
    for (const Row& row : {
             Row{"public keys", "/Filter/Adobe.PubSec/V 4", Reason::unknownHandler, "Adobe.PubSec"},
             Row{"no handler", "/V 1/R 2", damaged, ""},
             Row{"a handler that is no name", "/Filter(Standard)", damaged, ""},
             Row{"an unpublished method", standard + "/V 3/R 3" + owner, Reason::unknownMethod,
                 "V 3 R 3"},
             Row{"a later revision", standard + "/V 5/R 7" + longEntries + five,
                 Reason::unknownMethod, "V 5 R 7"},
             Row{"an old version with a new revision", standard + "/V 1/R 6" + longEntries,
                 Reason::unknownMethod, "V 1 R 6"},
             Row{"a filter's method that is not known",
                 standard + "/V 4/R 4" + owner + aesUser + "/CF<</S<</CFM/AESV9>>>>/StmF/S/StrF/S",
                 Reason::unknownMethod, "AESV9"},
             Row{"a method of another version", standard + "/V 4/R 4" + owner + aesUser + five,
                 Reason::unknownMethod, "AESV3"},
             Row{"a filter that is not there",
                 standard + "/V 4/R 4" + owner + aesUser + "/StmF/S/StrF/S", damaged, ""},
             Row{"a short O", standard + "/V 1/R 2/O(O)" + arcfourUser, damaged, ""},
             Row{"no U", standard + "/V 1/R 2" + owner, damaged, ""},
             Row{"a U that is a number", standard + "/V 1/R 2/U 7" + owner, damaged, ""},
             Row{"a short UE", standard + "/V 5/R 6/UE(u)" + longEntries.substr(0, 141) + five,
                 damaged, ""},
             Row{"no P", "/Filter/Standard/V 1/R 2" + owner + arcfourUser, damaged, ""},
             Row{"a key of no bits", standard + "/V 2/R 3/Length 0" + owner + aesUser, damaged, ""},
             Row{"a key of too many", standard + "/V 2/R 3/Length 2147483640" + owner + aesUser,
                 damaged, ""},
             Row{"a key of less than none", standard + "/V 2/R 3/Length -128" + owner + aesUser,
                 damaged, ""},
             Row{"a key of odd bits", standard + "/V 2/R 3/Length 47" + owner + aesUser, damaged,
                 ""},
             Row{"an O that is the dictionary", standard + "/V 1/R 2/O<<>>" + arcfourUser, damaged,
                 ""},
             Row{"a U of another password", standard + "/V 1/R 2" + owner + aesUser,
                 Reason::missingPassword, ""},
             Row{"a long U of another password", standard + "/V 5/R 6" + longEntries + five,
                 Reason::missingPassword, ""},
         }) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(opening(file(row.dictionary)), Exception::crossReference);
        const NotedReason noted = takeReason();
        EXPECT_EQ(noted.reason, row.reason);
        EXPECT_EQ(noted.name, row.name);
    }
}

TEST_F(EncryptionTest, PermissionsWithoutASign) {
    const std::string body = owner + arcfourUser + "/V 1/R 2/Filter/Standard";
    EXPECT_TRUE(open(file(body + "/P -4")).encryption->allowsChanges());
    EXPECT_TRUE(open(file(body + "/P 4294967292")).encryption->allowsChanges());
}

TEST_F(EncryptionTest, OnlyAttachmentsAreEnciphered) {
    DocumentCache& cache = open(
        file(standard + "/V 5/R 6" + longEntries + "/CF<</S<</CFM/AESV3>>>>/EFF/S/StmF/Identity"));
    EXPECT_EQ(cache.encryption->streamCipher(), FileCipher::identity);
}

/// What is never enciphered stays as it is; data of streams go by the filter that they name.
TEST_F(EncryptionTest, WhatIsDeciphered) {
    PdfBuilder pdf = PdfBuilder::onePage("");
    pdf.object(5, "<<" + standard + "/V 4/R 4" + owner + aesUser +
                      "/CF<</S<</CFM/V2>>>>/StmF/S/StrF/S/EncryptMetadata true/Note(plain)>>")
        .object(6, "<</A[(abc)<616263>]>>")
        .stream(7, "abc")
        .stream(8, "abc", "/Filter/Crypt")
        .stream(9, "abc", "/Filter[/Crypt]/DecodeParms[<</Name/S>>]")
        .stream(10, "abc", "/Type/XRef/Note(plain)")
        .stream(11, "abc", "/Filter/Crypt/DecodeParms<</Name/Other>>")
        .trailer("/Root 1 0 R/Size 12/Encrypt 5 0 R");
    DocumentCache& cache = open(pdf);
    const auto object = [&](std::int32_t number) {
        Object reference;
        indirectObject(reference, number, 0);
        const ObjectOwner owned(reference);
        return resolveObject(cache, owned.get());
    };
    const auto data = [&](std::int32_t number) {
        const auto bytes = streamBytes(cache, object(number).get(), 100);
        return std::string(bytes.begin(), bytes.end());
    };
    const auto enciphered = [&](std::int32_t number) {
        return corvane::enciphered(cache.encryption->stringKey({number, 0}), "abc");
    };
    const ObjectOwner dictionary = object(5);
    EXPECT_EQ(textObject(lookupObject(cache, dictionary.get(), "Note").get()), "plain");
    const ObjectOwner strings = object(6);
    const ObjectOwner array = lookupObject(cache, strings.get(), "A");
    for (const Object& string : elementsObject(array.get())) {
        EXPECT_EQ(textObject(string), enciphered(6));
    }
    EXPECT_EQ(data(7), enciphered(7));
    EXPECT_EQ(data(8), "abc");
    EXPECT_EQ(data(9), enciphered(9));
    EXPECT_EQ(data(10), "abc");
    const ObjectOwner section = object(10);
    EXPECT_EQ(textObject(lookupObject(cache, section.get(), "Note").get()), "plain");
    EXPECT_EQ(guarded([&] { data(11); }), Exception::range);
    resetException();
}

} // namespace
} // namespace corvane
