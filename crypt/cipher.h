// Enciphering and deciphering the strings and streams of a file, piece by piece.
#pragma once

#include "crypt/block_cipher.h"
#include "crypt/secret.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// How data are enciphered: not at all, by arcfour, or by AES with an initialisation vector in
/// front and padding behind (PDF 2.0, 7.6.3). The length of an AES key tells which.
enum class CipherMethod : std::uint8_t { identity, arcfour, aes };

/// A method and the key that is used with it.
struct CipherKey {
    CipherMethod method = CipherMethod::identity;
    Secret key;
};

/// Deciphers data. Damaged data give what there is: a last block that is cut is left out, and
/// padding that is none is taken for data.
class Decipher {
public:
    explicit Decipher(const CipherKey& key);

    /// Appends what is plain now to `out`.
    void feed(Octets data, std::vector<std::uint8_t>& out);
    void finish(std::vector<std::uint8_t>& out);

private:
    CipherMethod method_;
    std::optional<Arcfour> arcfour_;
    std::optional<AesChain> aes_;
    Secret key_;                        ///< of AES, until its first block came
    std::vector<std::uint8_t> pending_; ///< of AES: the last block has the padding
};

/// Where the initialisation vectors of AES come from: from chance, or from the key and the data
/// (HMAC), so that the same data become the same bytes and only they have the same vector. Then
/// nothing can be enciphered before all of it is there.
enum class VectorSource : std::uint8_t { chance, data };

class Encipher {
public:
    explicit Encipher(const CipherKey& key, VectorSource source = VectorSource::chance);

    void feed(Octets data, std::vector<std::uint8_t>& out);
    void finish(std::vector<std::uint8_t>& out);

private:
    void begin(const AesBlock& initial, std::vector<std::uint8_t>& out);

    CipherMethod method_;
    VectorSource source_;
    Secret key_; ///< of AES
    std::optional<Arcfour> arcfour_;
    std::optional<AesChain> aes_; ///< once the vector is written
    std::vector<std::uint8_t> pending_;
};

/// Bytes that so many plain ones become.
std::int64_t encipheredLength(CipherMethod method, std::int64_t length);

std::string deciphered(const CipherKey& key, std::string_view data);
std::string enciphered(const CipherKey& key, std::string_view data,
                       VectorSource source = VectorSource::chance);

} // namespace corvane
