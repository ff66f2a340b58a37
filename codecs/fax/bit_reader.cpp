#include "codecs/fax/bit_reader.h"

#include "codecs/fax/tables.h"

#include <array>

namespace corvane {

FaxBitReader FaxBitReader::refilledByBytes(FaxBitReader reader) {
    while (reader.count_ <= 56) {
        const std::int32_t byte = cc_fgetc(*reader.stream_);
        if (byte >= 0) {
            reader.window_ |= static_cast<std::uint64_t>(byte) << (56 - reader.count_);
        } else {
            reader.padding_ += 8;
        }
        reader.count_ += 8;
    }
    return reader;
}

bool FaxBitReader::atEnd() {
    need(8);
    return count_ <= padding_;
}

bool FaxBitReader::skipFill() {
    need(32);
    while (zeros() >= count_) {
        if (padding_ > 0) {
            return false;
        }
        // The last eleven may begin the end of line whose fill this is.
        skip(count_ - endOfLineZeros);
        need(32);
    }
    if (zeros() > endOfLineZeros) {
        skip(zeros() - endOfLineZeros);
        need(32);
    }
    return true;
}

FaxBitReader::Here FaxBitReader::lookHere() {
    need(32);
    if (atEnd()) {
        return Here::dataEnd;
    }
    if (zeros() < endOfLineZeros) {
        return Here::code;
    }
    return skipFill() ? Here::endOfLine : Here::dataEnd;
}

bool FaxBitReader::findEndOfLine() {
    for (;;) {
        need(32);
        if (!skipFill()) {
            return false;
        }
        if (zeros() >= endOfLineZeros) {
            return true;
        }
        skip(zeros() + 1);
    }
}

void FaxBitReader::ungetResidue() {
    const unsigned real = count_ > padding_ ? count_ - padding_ : 0;
    const unsigned partial = real % 8;
    for (unsigned bit = real; bit > partial; bit -= 8) {
        cc_ungetc(static_cast<std::int32_t>(window_ >> (64 - bit) & 0xFF), *stream_);
    }
    window_ = partial == 0 ? 0 : window_ >> (64 - partial) << (64 - partial);
    count_ = partial;
    padding_ = 0;
}

} // namespace corvane
