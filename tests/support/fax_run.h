// Whole images through the fax codec, from memory to memory.
#pragma once

#include "codecs/fax/codec.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace corvane::test {

/// Reads and writes memory; no read delivers more than `longestRead` bytes.
class MemoryPort : public FaxPort {
public:
    MemoryPort() = default;
    explicit MemoryPort(std::span<const std::byte> bytes, std::size_t longestRead = SIZE_MAX)
        : source_(bytes), longestRead_(longestRead) {}

    std::size_t read(std::span<std::byte> bytes) override {
        const std::size_t piece =
            std::min({bytes.size(), source_.size() - position_, longestRead_});
        if (piece > 0) {
            std::memcpy(bytes.data(), source_.data() + position_, piece);
        }
        position_ += piece;
        return piece;
    }
    void giveBack(std::size_t count) override { position_ -= count; }
    bool write(std::span<const std::byte> bytes) override {
        if (sink_.size() + bytes.size() > room_) {
            return false;
        }
        sink_.insert(sink_.end(), bytes.begin(), bytes.end());
        return true;
    }

    std::size_t position() const { return position_; }
    const std::vector<std::byte>& sink() const { return sink_; }
    void clear() { sink_.clear(); }
    void limit(std::size_t room) { room_ = room; }

private:
    std::span<const std::byte> source_;
    std::size_t longestRead_ = SIZE_MAX;
    std::size_t position_ = 0;
    std::vector<std::byte> sink_;
    std::size_t room_ = SIZE_MAX;
};

struct FaxDecoded {
    std::vector<std::byte> pixels;
    bool failed = false;
    std::size_t consumed = 0; ///< bytes of the data
    friend bool operator==(const FaxDecoded&, const FaxDecoded&) = default;
};

/// At most `mostRows` rows are asked for.
inline FaxDecoded decodeFax(const CCParameters& parameters, std::span<const std::byte> data,
                            std::size_t longestRead = SIZE_MAX, std::size_t mostRows = SIZE_MAX) {
    FaxDecoded decoded;
    MemoryPort port(data, longestRead);
    FaxByteStream bytes;
    cc_fsetup(bytes, port, 0);
    CCStream stream;
    SetupCCStm(parameters, bytes, stream);
    CDReset(stream);
    for (std::size_t row = 0; row < mostRows; ++row) {
        CDFilBuf(stream);
        if (stream.count == 0) {
            break;
        }
        decoded.pixels.insert(decoded.pixels.end(), stream.current, stream.current + stream.count);
        stream.count = 0;
    }
    decoded.failed = stream.failed;
    FinalCCStm(stream);
    cc_ffinal(bytes);
    decoded.consumed = port.position();
    return decoded;
}

/// The data of whole rows; empty where the codec fails.
inline std::vector<std::byte> encodeFax(const CCParameters& parameters,
                                        std::span<const std::byte> pixels) {
    MemoryPort port;
    FaxByteStream bytes;
    cc_fsetup(bytes, port, 1);
    CCStream stream;
    SetupCCStm(parameters, bytes, stream);
    CEReset(stream);
    while (!pixels.empty()) {
        const std::size_t piece = std::min(stream.count, pixels.size());
        std::memcpy(stream.current, pixels.data(), piece);
        stream.current += piece;
        stream.count -= piece;
        pixels = pixels.subspan(piece);
        CEFlush(stream);
    }
    const bool whole = CEPutEOF(stream) == 0;
    FinalCCStm(stream);
    return cc_ffinal(bytes) && whole ? port.sink() : std::vector<std::byte>();
}

} // namespace corvane::test
