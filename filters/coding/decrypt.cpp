#include "filters/coding/decrypt.h"

#include "filters/decoder.h"
#include "filters/encoder.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

namespace corvane {

namespace {

Octets octetsOf(std::span<const std::byte> bytes) {
    return {static_cast<const std::uint8_t*>(static_cast<const void*>(bytes.data())), bytes.size()};
}

class DecryptFilter final : public Decoder {
public:
    explicit DecryptFilter(const CipherKey& key)
        : Decoder(entryDecoder), key_{key.method, Secret(key.key.bytes())} {}

private:
    std::size_t decode(std::span<std::byte> out) override {
        std::size_t done = 0;
        while (done < out.size() && (position_ < plain_.size() || refill())) {
            const std::size_t count = std::min(plain_.size() - position_, out.size() - done);
            std::memcpy(out.data() + done, plain_.data() + position_, count);
            position_ += count;
            done += count;
        }
        return done;
    }

    /// Deciphers the next bytes that are held; false at the end of the data.
    bool refill() {
        plain_.clear();
        position_ = 0;
        while (plain_.empty() && !finished_) {
            const std::span<const std::byte> held = intake().held();
            if (held.empty()) {
                finished_ = true;
                decipher_->finish(plain_);
            } else {
                decipher_->feed(octetsOf(held), plain_);
                intake().take(held.size());
            }
        }
        return !plain_.empty();
    }

    void restart() override {
        decipher_.emplace(key_);
        plain_.clear();
        position_ = 0;
        finished_ = false;
    }

    CipherKey key_;
    std::optional<Decipher> decipher_;
    std::vector<std::uint8_t> plain_; ///< a block of it
    std::size_t position_ = 0;        ///< of what was not delivered yet
    bool finished_ = false;
};

class EncryptFilter final : public Encoder {
public:
    EncryptFilter(const CipherKey& key, VectorSource source) : encipher_(key, source) {}

private:
    /// Hands on what is enciphered.
    void flush() {
        writeFilter(*next, std::as_bytes(std::span(out_)));
        out_.clear();
    }

    void encode(std::span<const std::byte> bytes) override {
        encipher_.feed(octetsOf(bytes), out_);
        flush();
    }
    void finish() override {
        encipher_.finish(out_);
        flush();
    }

    Encipher encipher_;
    std::vector<std::uint8_t> out_;
};

} // namespace

FilterOwner setupDecrypt(const CipherKey& key) {
    return std::make_unique<DecryptFilter>(key);
}

FilterOwner setupEncrypt(const CipherKey& key, VectorSource source) {
    return std::make_unique<EncryptFilter>(key, source);
}

} // namespace corvane
