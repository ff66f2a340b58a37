#include "writer/crypt/sealed.h"

#include "filters/coding/hex.h"
#include "filters/filter.h"
#include "filters/token/token.h"
#include "host/utilities.h"
#include "reader/crypt/encryption.h"
#include "runtime/exception.h"
#include "writer/update/hexadecimal.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace corvane {

namespace {

/// Text as the bottom of a chain.
class TextSource final : public Filter {
public:
    explicit TextSource(std::string_view text) : Filter(entrySource), text_(text) {}

private:
    static std::int32_t entrySource(Filter& filter, Operation operation, std::byte* buffer,
                                    std::int32_t* argument) {
        auto& self = static_cast<TextSource&>(filter);
        switch (operation) {
        case Operation::read: {
            const std::size_t count = std::min(self.text_.size() - self.position_,
                                               static_cast<std::size_t>(std::max(*argument, 0)));
            std::memcpy(buffer, self.text_.data() + self.position_, count);
            self.position_ += count;
            return *argument = static_cast<std::int32_t>(count);
        }
        case Operation::mark:
            return *argument = static_cast<std::int32_t>(self.position_);
        case Operation::write:
        case Operation::seek:
            failException(Exception::io);
        default:
            return 0;
        }
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

bool mayHoldStrings(std::string_view value) {
    return value.find_first_of("(<") != std::string_view::npos;
}

CipherKey stringKey(const DocumentCache& cache, ObjectIdentifier object) {
    return object.number == 0 ? CipherKey() : cache.encryption->stringKey(object);
}

std::string digitsOf(std::string_view bytes) {
    return "<" + hexadecimal(std::as_bytes(std::span(bytes))) + ">";
}

/// The bytes that the digits of a hexadecimal string say; a missing last digit counts as 0.
std::string bytesOf(std::string digits) {
    std::string bytes((digits.size() + 1) / 2, '\0');
    digits.resize(2 * bytes.size(), '0');
    inputHex(std::as_writable_bytes(std::span(bytes)), digits);
    return bytes;
}

/// Goes through the tokens of a value and replaces its strings.
class Resealing {
public:
    Resealing(std::string_view value, const CipherKey& from, const CipherKey& to)
        : value_(value), from_(from), to_(to) {
        chain_.link(std::make_unique<TextSource>(value));
        auto tokens = setupToken();
        tokens_ = tokens.get();
        chain_.link(std::move(tokens));
    }

    std::string run() {
        for (TokenType type = tokens_->readToken(); type != TokenType::end;
             type = tokens_->readToken()) {
            if (type == TokenType::text) {
                replace(static_cast<std::size_t>(tokens_->tokenStart()),
                        std::string(tokens_->bytes()));
            } else if (type == TokenType::hexOpen) {
                replaceDigits();
            }
        }
        return result_ + std::string(value_.substr(copied_));
    }

private:
    void replaceDigits() {
        const auto start = static_cast<std::size_t>(tokens_->tokenStart());
        std::string digits;
        while (tokens_->readToken() == TokenType::text) {
            digits += tokens_->bytes();
        }
        replace(start, bytesOf(std::move(digits)));
    }

    /// Replaces the string from `start` to behind the last token.
    void replace(std::size_t start, std::string_view enciphered) {
        result_ += value_.substr(copied_, start - copied_);
        result_ += digitsOf(corvane::enciphered(to_, deciphered(from_, enciphered), sealVectors()));
        copied_ = static_cast<std::size_t>(tokens_->tokenEnd());
    }

    std::string_view value_;
    const CipherKey& from_;
    const CipherKey& to_;
    Chain chain_;
    TokenFilter* tokens_ = nullptr;
    std::string result_;
    std::size_t copied_ = 0; // bytes of the value
};

} // namespace

std::string sealedText(const DocumentCache& cache, ObjectIdentifier in, std::string_view text) {
    return cache.encryption ? sealedBytes(cache, in, std::as_bytes(std::span(text)))
                            : "(" + std::string(text) + ")";
}

std::string sealedBytes(const DocumentCache& cache, ObjectIdentifier in,
                        std::span<const std::byte> bytes) {
    if (!cache.encryption) {
        return "<" + hexadecimal(bytes) + ">";
    }
    const std::string_view text(static_cast<const char*>(static_cast<const void*>(bytes.data())),
                                bytes.size());
    return digitsOf(enciphered(stringKey(cache, in), text, sealVectors()));
}

std::string sealedValue(const DocumentCache& cache, std::string value, ObjectIdentifier from,
                        ObjectIdentifier to) {
    if (!cache.encryption || from == to || !mayHoldStrings(value)) {
        return value;
    }
    const CipherKey fromKey = stringKey(cache, from);
    const CipherKey toKey = stringKey(cache, to);
    return Resealing(value, fromKey, toKey).run();
}

std::string plainValue(const DocumentCache& cache, std::string value, ObjectIdentifier from) {
    if (!cache.encryption || !mayHoldStrings(value)) {
        return value;
    }
    const CipherKey key = stringKey(cache, from);
    const CipherKey none;
    return Resealing(value, key, none).run();
}

VectorSource sealVectors() {
    return DateTimeIsFixed() ? VectorSource::data : VectorSource::chance;
}

FileCipher newStreamCipher(const DocumentCache& cache) {
    return cache.encryption ? cache.encryption->streamCipher() : FileCipher::identity;
}

std::int64_t sealedLength(FileCipher cipher, std::int64_t length) {
    return encipheredLength(methodOf(cipher), length);
}

} // namespace corvane
