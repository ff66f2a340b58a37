#include "filters/coding/decrypt.h"

#include "tests/filters/decode_check.h"
#include "tests/runtime/zone_fixture.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

using DecryptTest = ZoneTest;

CipherKey keyOf(CipherMethod method, std::size_t length) {
    CipherKey key{method, Secret(length)};
    for (std::uint8_t& byte : key.key.bytes()) {
        byte = static_cast<std::uint8_t>(length++);
    }
    return key;
}

TEST_F(DecryptTest, WhatIsEncipheredComesBack) {
    for (const auto& [method, length] : {std::pair{CipherMethod::arcfour, std::size_t{5}},
                                         {CipherMethod::arcfour, 16},
                                         {CipherMethod::aes, 16},
                                         {CipherMethod::aes, 32}}) {
        const CipherKey key = keyOf(method, length);
        for (const std::size_t size : {0U, 1U, 15U, 16U, 17U, 32U, 1000U}) {
            const std::string plain(size, 'p');
            const std::string data = enciphered(key, plain);
            EXPECT_EQ(static_cast<std::int64_t>(data.size()),
                      encipheredLength(method, static_cast<std::int64_t>(size)));
            EXPECT_EQ(deciphered(key, data), plain);
        }
    }
    const CipherKey key = keyOf(CipherMethod::aes, 16);
    EXPECT_NE(enciphered(key, "same"), enciphered(key, "same"));
}

TEST_F(DecryptTest, FiltersInPieces) {
    for (const CipherMethod method : {CipherMethod::arcfour, CipherMethod::aes}) {
        const CipherKey key = keyOf(method, 16);
        const std::string plain = test::someBytes(9000);
        for (const std::size_t chunk : {std::size_t{1}, std::size_t{17}, plain.size()}) {
            const std::string data = test::encoded([&] { return setupEncrypt(key); }, plain, chunk);
            EXPECT_EQ(static_cast<std::int64_t>(data.size()), encipheredLength(method, 9000));
            test::expectDecodesToTheEnd([&] { return setupDecrypt(key); }, data, plain);
        }
    }
}

TEST_F(DecryptTest, VectorsOfDataAreTheSameForTheSameDataOnly) {
    const CipherKey key = keyOf(CipherMethod::aes, 32);
    const std::string plain = test::someBytes(9000);
    const std::string whole = enciphered(key, plain, VectorSource::data);
    EXPECT_EQ(deciphered(key, whole), plain);
    EXPECT_EQ(test::encoded([&] { return setupEncrypt(key, VectorSource::data); }, plain, 17),
              whole);
    std::string other = plain;
    ++other.back();
    for (const std::string& differing :
         {enciphered(key, other, VectorSource::data), enciphered(key, "", VectorSource::data),
          enciphered(keyOf(CipherMethod::aes, 16), plain, VectorSource::data)}) {
        EXPECT_NE(differing.substr(0, aesBlock), whole.substr(0, aesBlock));
    }
}

TEST_F(DecryptTest, DamagedDataGiveWhatThereIs) {
    const CipherKey key = keyOf(CipherMethod::aes, 16);
    const std::string data = enciphered(key, std::string(40, 'p'));
    ASSERT_EQ(data.size(), 64U);
    EXPECT_EQ(deciphered(key, data.substr(0, 63)), std::string(32, 'p'));
    EXPECT_EQ(deciphered(key, data.substr(0, 48)), std::string(32, 'p')) << "no padding";
    for (const std::size_t size : {0U, 1U, 15U, 16U, 17U, 31U}) {
        EXPECT_EQ(deciphered(key, data.substr(0, size)), "") << size;
    }
}

} // namespace
} // namespace corvane
