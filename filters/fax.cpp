#include "filters/fax.h"

#include "codecs/fax_codec.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

/// The codec's bytes are those of the filter below.
class FilterPort : public FaxPort {
public:
    explicit FilterPort(Filter& filter) : filter_(filter) {}

    std::size_t read(std::span<std::byte> bytes) override {
        const std::int64_t before = markFilter(filter_);
        const std::size_t count = readFilter(filter_, bytes);
        // Where another decoder lies below, positions are not those of its bytes, and it finds its
        // own end.
        positioned_ = markFilter(filter_) - before == static_cast<std::int64_t>(count);
        return count;
    }
    void giveBack(std::size_t count) override {
        if (positioned_) {
            seekFilter(filter_, markFilter(filter_) - static_cast<std::int32_t>(count));
        }
    }
    bool write(std::span<const std::byte> bytes) override {
        auto count = static_cast<std::int32_t>(bytes.size());
        // One entry serves both directions, so its buffer is not const; a write only reads it.
        callFilter(filter_, Operation::write, const_cast<std::byte*>(bytes.data()), &count);
        return static_cast<std::size_t>(count) == bytes.size();
    }

private:
    Filter& filter_;
    bool positioned_ = false;
};

struct FaxFilter : Filter {
    explicit FaxFilter(const FaxParameters& given);

    bool decodes() const { return parameters.direction == 0; }

    FaxParameters parameters;
    std::unique_ptr<FilterPort> port;
    FaxByteStream bytes;
    CCStream codec;
};

CCParameters codecParameters(const FaxParameters& given) {
    return {.columns = static_cast<std::uint16_t>(given.columns & 0xFFFF),
            .rows = static_cast<std::uint16_t>(given.rows & 0xFFFF),
            .k = given.k,
            .encodedByteAlign = given.encodedByteAlign != 0,
            .endOfBlock = given.endOfBlock != 0,
            .endOfLine = given.endOfLine != 0,
            .blackIs1 = given.blackIs1 != 0,
            .damagedRowsBeforeError = given.damagedRowsBeforeError};
}

void linkFax(FaxFilter& filter) {
    filter.port = std::make_unique<FilterPort>(*filter.next);
    cc_fsetup(filter.bytes, *filter.port, filter.parameters.direction);
    SetupCCStm(codecParameters(filter.parameters), filter.bytes, filter.codec);
    if (filter.decodes()) {
        CDReset(filter.codec);
    } else {
        CEReset(filter.codec);
    }
}

std::int32_t readFax(FaxFilter& filter, std::byte* to, std::int32_t wanted) {
    if (!filter.decodes()) {
        failException(Exception::io);
    }
    CCStream& codec = filter.codec;
    std::size_t left = static_cast<std::size_t>(std::max(wanted, 0));
    while (left > 0) {
        if (codec.count == 0) {
            CDFilBuf(codec);
            if (codec.count == 0) {
                break;
            }
        }
        const std::size_t piece = std::min(left, codec.count);
        std::memcpy(to, codec.current, piece);
        to += piece;
        left -= piece;
        codec.current += piece;
        codec.count -= piece;
    }
    return std::max(wanted, 0) - static_cast<std::int32_t>(left);
}

std::int32_t writeFax(FaxFilter& filter, const std::byte* from, std::int32_t count) {
    if (filter.decodes()) {
        failException(Exception::io);
    }
    CCStream& codec = filter.codec;
    std::size_t left = static_cast<std::size_t>(std::max(count, 0));
    while (left > 0) {
        if (codec.count == 0) {
            CEFlush(codec);
            if (codec.failed) {
                break;
            }
        }
        const std::size_t piece = std::min(left, codec.count);
        std::memcpy(codec.current, from, piece);
        from += piece;
        left -= piece;
        codec.current += piece;
        codec.count -= piece;
    }
    return std::max(count, 0) - static_cast<std::int32_t>(left);
}

void unlinkFax(FaxFilter& filter) {
    if (filter.decodes()) {
        FinalCCStm(filter.codec);
        cc_ffinal(filter.bytes);
        return;
    }
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

std::int32_t entryFax(Filter& filter, Operation operation, std::byte* buffer,
                      std::int32_t* argument) {
    auto& self = static_cast<FaxFilter&>(filter);
    switch (operation) {
    case Operation::read:
        return *argument = readFax(self, buffer, *argument);
    case Operation::write:
        return *argument = writeFax(self, buffer, *argument);
    case Operation::seek:
    case Operation::mark:
        return callFilter(*self.next, operation, buffer, argument);
    case Operation::link:
        linkFax(self);
        return 0;
    case Operation::unlink:
        unlinkFax(self);
        return 0;
    default:
        return 0;
    }
}

FaxFilter::FaxFilter(const FaxParameters& given) : Filter(entryFax), parameters(given) {}

} // namespace

FilterOwner setupFax(const FaxParameters& parameters) {
    return std::make_unique<FaxFilter>(parameters);
}

} // namespace corvane
