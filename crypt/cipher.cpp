#include "crypt/cipher.h"

#include "crypt/hash.h"
#include "crypt/random.h"

#include <algorithm>
#include <span>

namespace corvane {

namespace {

AesBlock randomBlock() {
    AesBlock block{};
    randomBytes(block);
    return block;
}

AesBlock blockOf(const Secret& key, Octets data) {
    const Secret code = hmacSha256(key.bytes(), data);
    AesBlock block{};
    std::copy_n(code.bytes().begin(), block.size(), block.begin());
    return block;
}

/// Moves the first `count` bytes from `from` to the end of `to`, through the chain.
void runBlocks(AesChain& chain, std::vector<std::uint8_t>& from, std::size_t count,
               std::vector<std::uint8_t>& to) {
    const std::span<std::uint8_t> blocks = std::span(from).first(count);
    chain.run(blocks);
    to.insert(to.end(), blocks.begin(), blocks.end());
    from.erase(from.begin(), from.begin() + static_cast<std::ptrdiff_t>(count));
}

/// Appends the data, through arcfour where that is the method.
void runBytes(std::optional<Arcfour>& arcfour, Octets data, std::vector<std::uint8_t>& out) {
    const std::size_t start = out.size();
    out.insert(out.end(), data.begin(), data.end());
    if (arcfour) {
        arcfour->run(std::span(out).subspan(start));
    }
}

template <class Cipher>
std::string runWhole(Cipher cipher, std::string_view data) {
    std::vector<std::uint8_t> out;
    cipher.feed(octetsOf(data), out);
    cipher.finish(out);
    return {out.begin(), out.end()};
}

} // namespace

Decipher::Decipher(const CipherKey& key) : method_(key.method) {
    if (method_ == CipherMethod::arcfour) {
        arcfour_.emplace(key.key.bytes());
    } else if (method_ == CipherMethod::aes) {
        key_ = Secret(key.key.bytes());
    }
}

void Decipher::feed(Octets data, std::vector<std::uint8_t>& out) {
    if (method_ != CipherMethod::aes) {
        return runBytes(arcfour_, data, out);
    }
    pending_.insert(pending_.end(), data.begin(), data.end());
    if (!aes_ && pending_.size() >= aesBlock) {
        AesBlock initial{};
        std::copy_n(pending_.begin(), aesBlock, initial.begin());
        pending_.erase(pending_.begin(), pending_.begin() + aesBlock);
        aes_.emplace(AesChain::Direction::decrypt, key_.bytes(), initial);
    }
    // The last whole block is held back, for its padding; stray bytes may stand behind it.
    if (aes_ && pending_.size() >= 2 * aesBlock) {
        runBlocks(*aes_, pending_, pending_.size() / aesBlock * aesBlock - aesBlock, out);
    }
}

void Decipher::finish(std::vector<std::uint8_t>& out) {
    if (!aes_ || pending_.size() < aesBlock) {
        return;
    }
    runBlocks(*aes_, pending_, aesBlock, out);
    const std::size_t padding = out.back();
    if (padding >= 1 && padding <= aesBlock) {
        out.resize(out.size() - padding);
    }
}

Encipher::Encipher(const CipherKey& key, VectorSource source)
    : method_(key.method), source_(source) {
    if (method_ == CipherMethod::arcfour) {
        arcfour_.emplace(key.key.bytes());
    } else if (method_ == CipherMethod::aes) {
        key_ = Secret(key.key.bytes());
    }
}

void Encipher::begin(const AesBlock& initial, std::vector<std::uint8_t>& out) {
    out.insert(out.end(), initial.begin(), initial.end());
    aes_.emplace(AesChain::Direction::encrypt, key_.bytes(), initial);
}

void Encipher::feed(Octets data, std::vector<std::uint8_t>& out) {
    if (method_ != CipherMethod::aes) {
        return runBytes(arcfour_, data, out);
    }
    if (!aes_ && source_ == VectorSource::chance) {
        begin(randomBlock(), out);
    }
    pending_.insert(pending_.end(), data.begin(), data.end());
    if (aes_) {
        runBlocks(*aes_, pending_, pending_.size() / aesBlock * aesBlock, out);
    }
}

void Encipher::finish(std::vector<std::uint8_t>& out) {
    if (method_ != CipherMethod::aes) {
        return;
    }
    if (!aes_) {
        begin(source_ == VectorSource::data ? blockOf(key_, pending_) : randomBlock(), out);
    }
    const std::size_t padding = aesBlock - pending_.size() % aesBlock;
    pending_.insert(pending_.end(), padding, static_cast<std::uint8_t>(padding));
    runBlocks(*aes_, pending_, pending_.size(), out);
}

std::int64_t encipheredLength(CipherMethod method, std::int64_t length) {
    constexpr auto block = static_cast<std::int64_t>(aesBlock);
    return method == CipherMethod::aes ? (length / block + 2) * block : length;
}

std::string deciphered(const CipherKey& key, std::string_view data) {
    return runWhole(Decipher(key), data);
}

std::string enciphered(const CipherKey& key, std::string_view data, VectorSource source) {
    return runWhole(Encipher(key, source), data);
}

} // namespace corvane
