#include "crypt/block_cipher.h"

#include "runtime/exception.h"

#include <nettle/aes.h>
#include <nettle/arcfour.h>
#include <nettle/cbc.h>
#include <nettle/nettle-meta.h>

namespace corvane {

namespace {

const nettle_cipher& aesOf(bool isLong) {
    return isLong ? nettle_aes256 : nettle_aes128;
}

arcfour_ctx* arcfourOf(std::span<std::byte> context) {
    static_assert(sizeof(arcfour_ctx) <= 272);
    return static_cast<arcfour_ctx*>(static_cast<void*>(context.data()));
}

} // namespace

AesChain::AesChain(Direction direction, Octets key, const AesBlock& initial)
    : direction_(direction), isLong_(key.size() == AES256_KEY_SIZE), chained_(initial) {
    static_assert(sizeof(aes256_ctx) <= sizeof context_);
    const nettle_cipher& aes = aesOf(isLong_);
    if (key.size() != aes.key_size) {
        failException(Exception::range);
    }
    (direction == Direction::encrypt ? aes.set_encrypt_key : aes.set_decrypt_key)(context_.data(),
                                                                                  key.data());
}

AesChain::~AesChain() {
    explicit_bzero(context_.data(), context_.size());
}

void AesChain::run(std::span<std::uint8_t> data) {
    const nettle_cipher& aes = aesOf(isLong_);
    if (direction_ == Direction::encrypt) {
        cbc_encrypt(context_.data(), aes.encrypt, aesBlock, chained_.data(), data.size(),
                    data.data(), data.data());
    } else {
        cbc_decrypt(context_.data(), aes.decrypt, aesBlock, chained_.data(), data.size(),
                    data.data(), data.data());
    }
}

Arcfour::Arcfour(Octets key) {
    if (key.empty() || key.size() > ARCFOUR_MAX_KEY_SIZE) {
        failException(Exception::range);
    }
    arcfour_set_key(arcfourOf(context_), key.size(), key.data());
}

Arcfour::~Arcfour() {
    explicit_bzero(context_.data(), context_.size());
}

void Arcfour::run(std::span<std::uint8_t> data) {
    arcfour_crypt(arcfourOf(context_), data.size(), data.data(), data.data());
}

} // namespace corvane
