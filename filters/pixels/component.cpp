#include "filters/pixels/component.h"

#include "runtime/exception.h"

#include <algorithm>
#include <cstring>

namespace corvane {

namespace {

/// Bytes read from below at a time.
constexpr std::size_t blockSize = 4096;

constexpr std::size_t byteBits = 8;

} // namespace

ComponentFilter::ComponentFilter(std::int32_t bits, std::int32_t samplesPerRow, SampleScale scale)
    : Filter(entryComponent), samplesPerRow_(static_cast<std::size_t>(samplesPerRow)),
      samplesLeft_(samplesPerRow_), bits_(static_cast<std::size_t>(bits)) {
    const std::uint32_t largest = (1U << bits_) - 1;
    const std::uint32_t factor = scale == SampleScale::full ? 255 / largest : 1;
    for (std::uint32_t byte = 0; byte < unpacked_.size(); ++byte) {
        for (std::size_t i = 0; i < byteBits / bits_; ++i) {
            const std::uint32_t sample = byte >> (byteBits - (i + 1) * bits_) & largest;
            unpacked_[byte][i] = static_cast<std::byte>(sample * factor);
        }
    }
}

/// Samples of the byte begun last.
std::size_t ComponentFilter::unpackHeld(std::span<std::byte> out) {
    const std::size_t count = std::min({bitCount_ / bits_, out.size(), samplesLeft_});
    const std::size_t first = (byteBits - bitCount_) / bits_;
    std::copy_n(unpacked_[bitBuffer_].begin() + static_cast<std::ptrdiff_t>(first), count,
                out.begin());
    bitCount_ -= count * bits_;
    advance(count);
    return count;
}

/// Samples were delivered; what is left of the last byte of a row is dropped.
void ComponentFilter::advance(std::size_t samples) {
    samplesLeft_ -= samples;
    if (samplesLeft_ == 0) {
        samplesLeft_ = samplesPerRow_;
        bitCount_ = 0;
    }
}

/// Bytes in which the next samples lie, none being held.
std::size_t ComponentFilter::bytesFor(std::size_t samples) const {
    const std::size_t perByte = byteBits / bits_;
    const auto bytes = [&](std::size_t count) { return (count + perByte - 1) / perByte; };
    if (samples <= samplesLeft_) {
        return bytes(samples);
    }
    samples -= samplesLeft_;
    return bytes(samplesLeft_) + samples / samplesPerRow_ * bytes(samplesPerRow_) +
           bytes(samples % samplesPerRow_);
}

/// Unpacks samples of one row, none being held; gives what is left of `in`.
std::span<const std::byte> ComponentFilter::unpack(std::span<const std::byte> in,
                                                   std::span<std::byte>& out) {
    const std::size_t perByte = byteBits / bits_;
    const std::size_t wanted = std::min(out.size(), samplesLeft_);
    const std::size_t whole = std::min(in.size(), wanted / perByte);
    std::byte* to = out.data();
    // Eight bytes are stored for each byte where they all fit.
    const std::size_t wide = out.size() < byteBits ? 0 : (out.size() - byteBits) / perByte + 1;
    std::size_t i = 0;
    for (; i < std::min(whole, wide); ++i, to += perByte) {
        std::memcpy(to, unpacked_[std::to_integer<std::size_t>(in[i])].data(), byteBits);
    }
    for (; i < whole; ++i, to += perByte) {
        std::memcpy(to, unpacked_[std::to_integer<std::size_t>(in[i])].data(), perByte);
    }
    out = out.subspan(whole * perByte);
    in = in.subspan(whole);
    const bool rowGoesOn = whole * perByte < wanted;
    advance(whole * perByte);
    if (rowGoesOn && !in.empty()) {
        bitBuffer_ = std::to_integer<std::uint32_t>(in.front());
        bitCount_ = byteBits;
        in = in.subspan(1);
        out = out.subspan(unpackHeld(out));
    }
    return in;
}

std::size_t ComponentFilter::read(std::span<std::byte> out) {
    std::array<std::byte, blockSize> block; // NOLINT(cppcoreguidelines-pro-type-member-init)
    std::span<std::byte> room = out.subspan(unpackHeld(out));
    while (!room.empty()) {
        const std::size_t wanted = std::min(bytesFor(room.size()), blockSize);
        std::span<const std::byte> in =
            std::span(block).first(readFilter(*next, std::span(block).first(wanted)));
        if (in.empty()) {
            break;
        }
        while (!in.empty()) {
            in = unpack(in, room);
        }
    }
    return out.size() - room.size();
}

std::int32_t ComponentFilter::entryComponent(Filter& filter, Operation operation, std::byte* buffer,
                                             std::int32_t* argument) {
    auto& self = static_cast<ComponentFilter&>(filter);
    switch (operation) {
    case Operation::read:
        if (self.bits_ == byteBits) {
            return callFilter(*self.next, operation, buffer, argument);
        }
        return *argument = static_cast<std::int32_t>(
                   self.read({buffer, static_cast<std::size_t>(std::max(*argument, 0))}));
    case Operation::write:
        failException(Exception::limit);
    case Operation::seek:
        self.samplesLeft_ = self.samplesPerRow_;
        self.bitCount_ = 0;
        return callFilter(*self.next, operation, buffer, argument);
    case Operation::mark:
        return callFilter(*self.next, operation, buffer, argument);
    default:
        return 0;
    }
}

FilterOwner setupComponent(std::int32_t bits, std::int32_t samplesPerRow, SampleScale scale) {
    if ((bits != 1 && bits != 2 && bits != 4 && bits != 8) || samplesPerRow < 1) {
        failException(Exception::type);
    }
    return std::make_unique<ComponentFilter>(bits, samplesPerRow, scale);
}

} // namespace corvane
