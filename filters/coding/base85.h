// The base-85 filter (ASCII85Decode; PDF Reference, 3.3.2): five characters from "!" to "u" for
// four bytes, "z" for four zero bytes, "~>" at the end.
#pragma once

#include "filters/coding/ascii_mode.h"
#include "filters/decoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// Reading: other characters, a "z" inside a group, and "~" with what follows it are skipped; but
/// "~>" ends the data where the mode knows it. A last group of two to four digits is one byte less;
/// the profile says what the missing digits count as. Writing: a carriage return after every twelve
/// groups. The wrong direction raises `io`. Holds one block of the intake.
class MangleFilter final : public Decoder {
public:
    explicit MangleFilter(AsciiMode asciiMode);

private:
    std::size_t decode(std::span<std::byte> out) override;
    void restart() override;
    void skipRest() override;
    void refill();
    void encode(std::span<const std::byte> bytes);
    void finishGroup();

    static std::int32_t entryMangle(Filter& filter, Operation operation, std::byte* buffer,
                                    std::int32_t* argument);

    static constexpr std::size_t groupSize = 4;

    AsciiMode mode_;
    std::size_t position_ = 0;  ///< reading: next byte of the group to hand out
    std::size_t available_ = 0; ///< reading: bytes of the group
    std::size_t gathered_ = 0;  ///< writing: bytes of the group
    std::int32_t groups_ = 0;   ///< on the line being written
    bool lastGroup_ = false;    ///< reading: the end was met behind the group
    std::array<std::byte, groupSize> group_{};
};

/// Another mode than those named raises `type`, now or when the filter is unlinked.
FilterOwner setupMangle(AsciiMode mode);

} // namespace corvane
