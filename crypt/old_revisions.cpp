// Revisions 2 to 4: MD5 and arcfour.
#include "crypt/block_cipher.h"
#include "crypt/handler_revisions.h"
#include "crypt/hash.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// What fills passwords up (PDF 2.0, algorithm 2).
constexpr std::array<std::uint8_t, oldEntryLength> filling = {
    0x28, 0xBF, 0x4E, 0x5E, 0x4E, 0x75, 0x8A, 0x41, 0x64, 0x00, 0x4E, 0x56, 0xFF, 0xFA, 0x01, 0x08,
    0x2E, 0x2E, 0x00, 0xB6, 0xD0, 0x68, 0x3E, 0x80, 0x2F, 0x0C, 0xA9, 0xFE, 0x64, 0x53, 0x69, 0x7A};

/// Rounds from revision 3 on.
constexpr int hashRounds = 50;
constexpr std::uint8_t cipherRounds = 20;

Secret filled(Octets password) {
    const Octets kept = password.first(std::min(password.size(), filling.size()));
    return joined({kept, Octets(filling).first(filling.size() - kept.size())});
}

void runArcfour(Octets key, std::span<std::uint8_t> data) {
    Arcfour(key).run(data);
}

/// Arcfour once more with the key changed by `round`.
void runRound(const Secret& key, std::uint8_t round, std::span<std::uint8_t> data) {
    Secret changed(key.bytes());
    for (std::uint8_t& byte : changed.bytes()) {
        byte ^= round;
    }
    runArcfour(changed.bytes(), data);
}

Secret hashedAgain(Secret digest, std::size_t length) {
    for (int round = 0; round < hashRounds; ++round) {
        digest = md5(digest.bytes().first(length));
    }
    return digest;
}

/// Algorithm 2.
Secret keyOf(const HandlerFacts& facts, const Secret& filledPassword) {
    const auto bits = static_cast<std::uint32_t>(facts.permissions);
    const std::array<std::uint8_t, 4> permissions = {
        static_cast<std::uint8_t>(bits & 0xFF), static_cast<std::uint8_t>(bits >> 8 & 0xFF),
        static_cast<std::uint8_t>(bits >> 16 & 0xFF), static_cast<std::uint8_t>(bits >> 24)};
    constexpr std::array<std::uint8_t, 4> plainMetadata = {0xFF, 0xFF, 0xFF, 0xFF};
    const bool marksMetadata = facts.revision >= 4 && !facts.encryptsMetadata;
    Secret digest =
        md5(joined({filledPassword.bytes(), octetsOf(facts.owner), permissions,
                    octetsOf(facts.identifier), marksMetadata ? Octets(plainMetadata) : Octets()})
                .bytes());
    if (facts.revision >= 3) {
        digest = hashedAgain(std::move(digest), facts.keyLength);
    }
    return Secret(digest.bytes().first(facts.keyLength));
}

/// Algorithms 4 to 6.
bool opensAsUser(const HandlerFacts& facts, const Secret& key) {
    const Octets user = octetsOf(facts.user);
    if (facts.revision == 2) {
        Secret made{Octets(filling)};
        runArcfour(key.bytes(), made.bytes());
        return std::ranges::equal(made.bytes(), user);
    }
    Secret made = md5(joined({filling, octetsOf(facts.identifier)}).bytes());
    for (std::uint8_t round = 0; round < cipherRounds; ++round) {
        runRound(key, round, made.bytes());
    }
    return std::ranges::equal(made.bytes(), user.first(made.size()));
}

/// Algorithm 7: the user's password, filled up, if this is the owner's.
Secret userPassword(const HandlerFacts& facts, Octets ownerPassword) {
    Secret digest = md5(filled(ownerPassword).bytes());
    if (facts.revision >= 3) {
        const std::size_t whole = digest.size();
        digest = hashedAgain(std::move(digest), whole);
    }
    const Secret key(digest.bytes().first(facts.keyLength));
    Secret password(octetsOf(facts.owner));
    if (facts.revision == 2) {
        runArcfour(key.bytes(), password.bytes());
        return password;
    }
    for (std::uint8_t round = cipherRounds; round-- > 0;) {
        runRound(key, round, password.bytes());
    }
    return password;
}

} // namespace

std::optional<FileKey> keyOfOldRevision(const HandlerFacts& facts, Octets password) {
    Secret ownersKey = keyOf(facts, userPassword(facts, password));
    if (opensAsUser(facts, ownersKey)) {
        return FileKey{std::move(ownersKey), Access::owner};
    }
    Secret usersKey = keyOf(facts, filled(password));
    if (opensAsUser(facts, usersKey)) {
        return FileKey{std::move(usersKey), Access::user};
    }
    return std::nullopt;
}

} // namespace corvane
