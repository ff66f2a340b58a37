#include "crypt/object_key.h"

#include "crypt/hash.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// Bytes of the longest key of an object that is made of the file's.
constexpr std::size_t longestKey = 16;
constexpr std::array<std::uint8_t, 4> aesSalt = {'s', 'A', 'l', 'T'};

} // namespace

CipherMethod methodOf(FileCipher cipher) {
    switch (cipher) {
    case FileCipher::identity:
        return CipherMethod::identity;
    case FileCipher::arcfour:
        return CipherMethod::arcfour;
    case FileCipher::aes128:
    case FileCipher::aes256:
        break;
    }
    return CipherMethod::aes;
}

CipherKey objectKey(FileCipher cipher, const Secret& fileKey, std::int32_t number,
                    std::int32_t generation) {
    if (cipher == FileCipher::identity) {
        return {};
    }
    if (cipher == FileCipher::aes256) {
        return {CipherMethod::aes, Secret(fileKey.bytes())};
    }
    const auto byte = [](std::int32_t value, int shift) {
        return static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) >> shift & 0xFF);
    };
    const std::array<std::uint8_t, 5> object = {byte(number, 0), byte(number, 8), byte(number, 16),
                                                byte(generation, 0), byte(generation, 8)};
    const Octets salt = cipher == FileCipher::aes128 ? Octets(aesSalt) : Octets();
    const Secret made = md5(joined({fileKey.bytes(), object, salt}).bytes());
    const std::size_t length = std::min(fileKey.size() + object.size(), longestKey);
    return {methodOf(cipher), Secret(made.bytes().first(length))};
}

} // namespace corvane
