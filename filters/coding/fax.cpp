#include "filters/coding/fax.h"

#include "codecs/fax/codec.h"
#include "filters/decoder.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace corvane {

namespace {

/// What the decoder reads is what the intake holds.
class IntakePort : public FaxPort {
public:
    explicit IntakePort(Intake& intake) : intake_(intake) {}

    std::size_t read(std::span<std::byte> bytes) override {
        const std::span<const std::byte> held = intake_.held();
        const std::size_t count = std::min(held.size(), bytes.size());
        std::ranges::copy(held.first(count), bytes.begin());
        intake_.take(count);
        return count;
    }
    void giveBack(std::size_t count) override { intake_.putBack(count); }

private:
    Intake& intake_;
};

/// What the encoder writes goes to the filter below.
class FilterPort : public FaxPort {
public:
    explicit FilterPort(Filter& filter) : filter_(filter) {}

    bool write(std::span<const std::byte> bytes) override {
        auto count = static_cast<std::int32_t>(bytes.size());
        // One entry serves both directions, so its buffer is not const; a write only reads it.
        callFilter(filter_, Operation::write, const_cast<std::byte*>(bytes.data()), &count);
        return static_cast<std::size_t>(count) == bytes.size();
    }

private:
    Filter& filter_;
};

/// Sizes of the original profile have 16 bits.
CCParameters codecParameters(const FaxParameters& given) {
    const bool isWide = rules().readsImages;
    const std::int32_t columns = isWide ? given.columns : given.columns & 0xFFFF;
    const std::int32_t rows = isWide ? std::max(given.rows, 0) : given.rows & 0xFFFF;
    if (columns > budget::imageRowBytes / 8) {
        failException(Exception::codec);
    }
    return {.columns = columns,
            .rows = static_cast<std::uint32_t>(rows),
            .k = given.k,
            .encodedByteAlign = given.encodedByteAlign != 0,
            .endOfBlock = given.endOfBlock != 0,
            .endOfLine = given.endOfLine != 0,
            .blackIs1 = given.blackIs1 != 0,
            .damagedRowsBeforeError = given.damagedRowsBeforeError};
}

class FaxDecoder : public Decoder {
public:
    explicit FaxDecoder(const CCParameters& parameters)
        : Decoder(entryDecoder), parameters_(parameters), port_(intake()) {}

protected:
    std::size_t decode(std::span<std::byte> out) override {
        std::size_t done = 0;
        while (done < out.size()) {
            if (codec_.count == 0) {
                CDFilBuf(codec_);
                if (codec_.count == 0) {
                    break;
                }
            }
            const std::size_t piece = std::min(out.size() - done, codec_.count);
            std::memcpy(out.data() + done, codec_.current, piece);
            done += piece;
            codec_.current += piece;
            codec_.count -= piece;
        }
        return done;
    }
    void restart() override {
        FinalCCStm(codec_);
        cc_fsetup(bytes_, port_, 0);
        SetupCCStm(parameters_, bytes_, codec_);
        CDReset(codec_);
    }
    void skipRest() override {
        FinalCCStm(codec_);
        cc_ffinal(bytes_);
    }

private:
    CCParameters parameters_;
    IntakePort port_;
    FaxByteStream bytes_;
    CCStream codec_;
};

std::int32_t entryFax(Filter& filter, Operation operation, std::byte* buffer,
                      std::int32_t* argument);

struct FaxEncoder : Filter {
    explicit FaxEncoder(const FaxParameters& given)
        : Filter(entryFax), direction(given.direction), parameters(codecParameters(given)) {}

    std::int32_t direction;
    CCParameters parameters;
    std::unique_ptr<FilterPort> port;
    FaxByteStream bytes;
    CCStream codec;
};

void linkEncoder(FaxEncoder& filter) {
    filter.port = std::make_unique<FilterPort>(*filter.next);
    cc_fsetup(filter.bytes, *filter.port, filter.direction);
    SetupCCStm(filter.parameters, filter.bytes, filter.codec);
    CEReset(filter.codec);
}

/// The bytes accepted.
std::size_t writeRows(CCStream& codec, std::span<const std::byte> from) {
    std::size_t done = 0;
    while (done < from.size()) {
        if (codec.count == 0) {
            CEFlush(codec);
            if (codec.failed) {
                break;
            }
        }
        const std::size_t piece = std::min(from.size() - done, codec.count);
        std::memcpy(codec.current, from.data() + done, piece);
        done += piece;
        codec.current += piece;
        codec.count -= piece;
    }
    return done;
}

void unlinkEncoder(FaxEncoder& filter) {
    const bool whole = CEPutEOF(filter.codec) == 0 || cc_ferror(filter.bytes);
    FinalCCStm(filter.codec);
    const bool accepted = !cc_ferror(filter.bytes) && cc_ffinal(filter.bytes);
    if (!accepted) {
        failException(Exception::io);
    }
    if (!whole) {
        failException(Exception::codec);
    }
}

/// Of the encoder; decoders have their own.
std::int32_t entryFax(Filter& filter, Operation operation, std::byte* buffer,
                      std::int32_t* argument) {
    auto& self = static_cast<FaxEncoder&>(filter);
    switch (operation) {
    case Operation::read:
        failException(Exception::io);
    case Operation::write: {
        const auto count = static_cast<std::size_t>(std::max(*argument, std::int32_t{0}));
        return *argument = static_cast<std::int32_t>(writeRows(self.codec, {buffer, count}));
    }
    case Operation::seek:
    case Operation::mark:
        return callFilter(*self.next, operation, buffer, argument);
    case Operation::link:
        linkEncoder(self);
        return 0;
    case Operation::unlink:
        unlinkEncoder(self);
        return 0;
    default:
        return 0;
    }
}

} // namespace

FilterOwner setupFax(const FaxParameters& parameters) {
    if (parameters.direction == 0) {
        return std::make_unique<FaxDecoder>(codecParameters(parameters));
    }
    return std::make_unique<FaxEncoder>(parameters);
}

} // namespace corvane
