#include "crypt/hash.h"

#include <nettle/hmac.h>
#include <nettle/md5.h>
#include <nettle/sha2.h>

namespace corvane {

namespace {

/// What a hash keeps while it works tells of the data, so it is wiped too.
template <class Context, class Init>
Secret hash(Octets data, std::size_t size, const Init& init,
            void (*update)(Context*, std::size_t, const std::uint8_t*),
            void (*digest)(Context*, std::size_t, std::uint8_t*)) {
    Context context;
    Secret result(size);
    init(&context);
    update(&context, data.size(), data.data());
    digest(&context, size, result.bytes().data());
    explicit_bzero(&context, sizeof context);
    return result;
}

} // namespace

Secret md5(Octets data) {
    return hash<md5_ctx>(data, MD5_DIGEST_SIZE, md5_init, md5_update, md5_digest);
}

Secret sha256(Octets data) {
    return hash<sha256_ctx>(data, SHA256_DIGEST_SIZE, sha256_init, sha256_update, sha256_digest);
}

Secret sha384(Octets data) {
    return hash<sha512_ctx>(data, SHA384_DIGEST_SIZE, sha384_init, sha512_update, sha384_digest);
}

Secret sha512(Octets data) {
    return hash<sha512_ctx>(data, SHA512_DIGEST_SIZE, sha512_init, sha512_update, sha512_digest);
}

Secret hmacSha256(Octets key, Octets data) {
    return hash<hmac_sha256_ctx>(
        data, SHA256_DIGEST_SIZE,
        [&](hmac_sha256_ctx* context) { hmac_sha256_set_key(context, key.size(), key.data()); },
        hmac_sha256_update, hmac_sha256_digest);
}

} // namespace corvane
