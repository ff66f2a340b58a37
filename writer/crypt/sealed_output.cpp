#include "writer/crypt/sealed_output.h"

#include "filters/coding/decrypt.h"
#include "filters/encoder.h"
#include "output/primitives.h"
#include "reader/crypt/encryption.h"
#include "writer/crypt/sealed.h"
#include "writer/update/update_filter.h"

#include <memory>
#include <utility>

namespace corvane {

namespace {

/// The update that is written through a chain while its digest is made; null otherwise.
UpdateFilter* digestedUpdate(Filter* top) {
    UpdateFilter* update = nullptr;
    for (Filter* filter = top; filter != nullptr && update == nullptr; filter = filter->next) {
        update = dynamic_cast<UpdateFilter*>(filter);
    }
    return update != nullptr && update->written != nullptr ? update : nullptr;
}

void writeUndigested(UpdateFilter& update, Filter& to, std::span<const std::byte> bytes) {
    WrittenDigest* const written = std::exchange(update.written, nullptr);
    writeFilter(to, bytes);
    update.written = written;
}

/// Above a cipher: the digest takes what is plain.
class PlainDigested final : public Encoder {
public:
    explicit PlainDigested(WrittenDigest& written) : written_(written) {}

private:
    void encode(std::span<const std::byte> bytes) override {
        written_.feed(bytes);
        writeFilter(*next, bytes);
    }
    void finish() override {}

    WrittenDigest& written_;
};

/// Below a cipher: what it makes is left out.
class CipherUndigested final : public Encoder {
public:
    explicit CipherUndigested(UpdateFilter& update) : update_(update) {}

private:
    void encode(std::span<const std::byte> bytes) override {
        writeUndigested(update_, *next, bytes);
    }
    void finish() override {}

    UpdateFilter& update_;
};

void sealedOutput(DocumentCache& cache, std::string_view sealed, std::span<const std::byte> plain) {
    const auto bytes = std::as_bytes(std::span(sealed));
    UpdateFilter* const update = cache.encryption ? digestedUpdate(cache.output) : nullptr;
    if (update == nullptr) {
        writeFilter(*cache.output, bytes);
        return;
    }
    writeUndigested(*update, *cache.output, bytes);
    update->written->feed(plain);
}

} // namespace

void sealedTextOutput(DocumentCache& cache, ObjectIdentifier in, std::string_view text) {
    sealedOutput(cache, sealedText(cache, in, text), std::as_bytes(std::span(text)));
}

void sealedBytesOutput(DocumentCache& cache, ObjectIdentifier in,
                       std::span<const std::byte> bytes) {
    sealedOutput(cache, sealedBytes(cache, in, bytes), bytes);
}

void sealedValueOutput(DocumentCache& cache, const std::string& value, ObjectIdentifier from,
                       ObjectIdentifier to) {
    const std::string plain = plainValue(cache, value, from);
    sealedOutput(cache, sealedValue(cache, value, from, to), std::as_bytes(std::span(plain)));
}

void linkSeal(const DocumentCache& cache, Chain& chain, FileCipher cipher, ObjectIdentifier in) {
    if (cipher == FileCipher::identity) {
        return;
    }
    UpdateFilter* const update = digestedUpdate(chain.top());
    if (update != nullptr) {
        chain.link(std::make_unique<CipherUndigested>(*update));
    }
    chain.link(setupEncrypt(cache.encryption->streamKey(cipher, in), sealVectors()));
    if (update != nullptr) {
        chain.link(std::make_unique<PlainDigested>(*update->written));
    }
}

} // namespace corvane
