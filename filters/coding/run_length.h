// The run-length filter (RunLengthDecode; PDF Reference, 3.3.4).
#pragma once

#include "filters/decoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace corvane {

/// Reads runs. A length byte n below 128 is followed by n + 1 bytes, one above 128 by a byte that
/// is repeated 257 - n times; 128 ends the data. An incomplete run ends the data and is not
/// delivered. Writing does nothing. Holds one block of the intake.
class RunFilter final : public Decoder {
public:
    RunFilter() : Decoder(entryRun) {}

private:
    std::size_t decode(std::span<std::byte> out) override;
    void restart() override;
    bool refill();

    static std::int32_t entryRun(Filter& filter, Operation operation, std::byte* buffer,
                                 std::int32_t* argument);

    std::size_t position_ = 0;
    std::size_t available_ = 0;
    std::array<std::byte, 128> run_{}; ///< for a run that the reader has no room for
};

FilterOwner setupRun();

} // namespace corvane
