// Revisions 5 (withdrawn) and 6: SHA-2 and AES.
#include "crypt/block_cipher.h"
#include "crypt/handler_revisions.h"
#include "crypt/hash.h"

#include <algorithm>
#include <numeric>

namespace corvane {

namespace {

/// Bytes of a password that count.
constexpr std::size_t longestPassword = 127;

// An entry O or U: a hash, then a salt for the password and one for the key.
constexpr std::size_t hashLength = 32;
constexpr std::size_t saltLength = 8;

// Algorithm 2.B.
constexpr std::size_t repetitions = 64;
constexpr int leastRounds = 64;
constexpr int lastByteSlack = 32;

/// Algorithm 2.B, which revision 6 put behind the single hash of revision 5.
Secret hardened(Secret digest, Octets password, Octets owned) {
    std::uint8_t last = 0;
    for (int round = 0; round < leastRounds || last > round - lastByteSlack; ++round) {
        const Secret piece = joined({password, digest.bytes(), owned});
        Secret data(piece.size() * repetitions);
        for (auto to = data.bytes().begin(); to != data.bytes().end();) {
            to = std::ranges::copy(piece.bytes(), to).out;
        }
        AesBlock initial{};
        std::copy_n(digest.bytes().begin() + aesBlock, aesBlock, initial.begin());
        AesChain(AesChain::Direction::encrypt, digest.bytes().first(aesBlock), initial)
            .run(data.bytes());
        // A number of 16 bytes, modulo 3: 256 is 1 there.
        const Octets first = std::as_const(data).bytes().first(aesBlock);
        const int choice = std::accumulate(first.begin(), first.end(), 0) % 3;
        last = data.bytes().back();
        digest = choice == 0   ? sha256(data.bytes())
                 : choice == 1 ? sha384(data.bytes())
                               : sha512(data.bytes());
    }
    return Secret(digest.bytes().first(hashLength));
}

Secret hashOf(const HandlerFacts& facts, Octets password, Octets salt, Octets owned) {
    Secret digest = sha256(joined({password, salt, owned}).bytes());
    return facts.revision == 5 ? std::move(digest) : hardened(std::move(digest), password, owned);
}

/// The file's key, if `password` is that of `entry`, whose key is in `held`.
std::optional<Secret> keyBy(const HandlerFacts& facts, Octets password, Octets entry, Octets held,
                            Octets owned) {
    const Octets salt = entry.subspan(hashLength, saltLength);
    if (!std::ranges::equal(hashOf(facts, password, salt, owned).bytes(),
                            entry.first(hashLength))) {
        return std::nullopt;
    }
    const Octets keySalt = entry.subspan(hashLength + saltLength, saltLength);
    const Secret holder = hashOf(facts, password, keySalt, owned);
    Secret key(held);
    AesChain(AesChain::Direction::decrypt, holder.bytes(), AesBlock{}).run(key.bytes());
    return key;
}

} // namespace

std::optional<FileKey> keyOfNewRevision(const HandlerFacts& facts, Octets password) {
    password = password.first(std::min(password.size(), longestPassword));
    const Octets user = octetsOf(facts.user);
    if (auto key = keyBy(facts, password, octetsOf(facts.owner), octetsOf(facts.ownerKey), user)) {
        return FileKey{std::move(*key), Access::owner};
    }
    if (auto key = keyBy(facts, password, user, octetsOf(facts.userKey), {})) {
        return FileKey{std::move(*key), Access::user};
    }
    return std::nullopt;
}

std::int32_t heldPermissions(const HandlerFacts& facts, const FileKey& key) {
    if (facts.proof.size() < aesBlock) {
        return 0;
    }
    AesBlock proof{};
    std::copy_n(facts.proof.begin(), aesBlock, proof.begin());
    AesChain(AesChain::Direction::decrypt, key.key.bytes(), AesBlock{}).run(proof);
    constexpr std::string_view mark = "adb";
    constexpr std::size_t markPlace = 9;
    if (!std::ranges::equal(octetsOf(mark), Octets(proof).subspan(markPlace, mark.size()))) {
        return 0;
    }
    std::uint32_t permissions = 0;
    for (std::size_t i = 0; i < sizeof(permissions); ++i) {
        permissions |= std::uint32_t{proof[i]} << 8 * i;
    }
    return static_cast<std::int32_t>(permissions);
}

} // namespace corvane
