#include "filters/decoder.h"

#include "runtime/budget.h"
#include "runtime/exception.h"

namespace corvane {

void Decoder::giveBack(std::span<const std::byte> bytes) {
    returnedCharge_.resize(static_cast<std::int64_t>(returned_.size() + bytes.size()));
    returned_.insert(returned_.end(), bytes.rbegin(), bytes.rend());
}

std::size_t Decoder::read(std::span<std::byte> out) {
    std::size_t done = 0;
    for (; done < out.size() && !returned_.empty(); returned_.pop_back()) {
        out[done++] = returned_.back();
    }
    if (done < out.size() && !ended_) {
        const std::size_t decoded = decode(out.subspan(done));
        done += decoded;
        delivered_ += static_cast<std::int64_t>(decoded);
        if (delivered_ > budget::streamBytes) {
            failException(Exception::limit);
        }
        if (done < out.size() && !ended_) {
            end();
        }
    }
    return done;
}

void Decoder::end() {
    ended_ = true;
    intake_.giveBack();
}

void Decoder::begin() {
    ended_ = false;
    delivered_ = 0;
    returned_.clear();
    restart();
}

std::int32_t Decoder::mark() {
    const std::int32_t below = markFilter(*next);
    // What was read ahead of decoded bytes has no place in the file.
    return next->decodes() ? below : below - static_cast<std::int32_t>(intake_.readAhead());
}

void Decoder::unlink() {
    if (!ended_ && valueException() == Exception::none) {
        skipRest();
    }
    intake_.giveBack();
}

std::int32_t Decoder::entryDecoder(Filter& filter, Operation operation, std::byte* buffer,
                                   std::int32_t* argument) {
    auto& self = static_cast<Decoder&>(filter);
    switch (operation) {
    case Operation::read:
        return *argument = static_cast<std::int32_t>(self.read(transferred(buffer, *argument)));
    case Operation::write:
        failException(Exception::io);
    case Operation::seek:
        self.intake_.forget();
        *argument = seekFilter(*self.next, *argument);
        self.begin();
        return *argument;
    case Operation::mark:
        return *argument = self.mark();
    case Operation::link:
        self.intake_.open(*self.next);
        self.begin();
        return 0;
    case Operation::unlink:
        self.unlink();
        return 0;
    default:
        return 0;
    }
}

} // namespace corvane
