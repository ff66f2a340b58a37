// What decoders have in common: reading ahead, ending, and where they leave the filter below.
//
// A decoder can be read, and begun anew at the place of a seek, but not moved back: its bytes are
// not those of the filter below. Its data end at their marker, at damage, or at the end of the
// filter below, and nothing is raised: reads deliver what there is, then nothing until the next
// seek. At the end, and when the decoder is unlinked, the filter below stands just after the last
// byte that the data needed. Seek and mark are those of the filter below.
#pragma once

#include "filters/filter.h"
#include "filters/intake.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace corvane {

class Decoder : public Filter {
public:
    /// Keeps the bytes: a decoder cannot seek to them.
    void giveBack(std::span<const std::byte> bytes) override;
    bool decodes() const override { return true; }

protected:
    explicit Decoder(Entry procedure) : Filter(procedure) {}

    /// Fills `out` (never empty); fewer bytes are the end of the data. Not called after the end.
    virtual std::size_t decode(std::span<std::byte> out) = 0;
    /// Begins anew: just linked, or the filter below has been moved.
    virtual void restart() {}
    /// Unlinked before the end: goes past what belongs to the data all the same.
    virtual void skipRest() {}

    Intake& intake() { return intake_; }
    /// The end of the data was met; all that is decoded can still be delivered by this `decode`.
    void end();

    /// Buffer and count of a read or write.
    static std::span<std::byte> transferred(std::byte* buffer, std::int32_t count) {
        return {buffer, static_cast<std::size_t>(count > 0 ? count : 0)};
    }

    /// What every decoder answers; its own entry comes first. Writing raises `io`.
    static std::int32_t entryDecoder(Filter& filter, Operation operation, std::byte* buffer,
                                     std::int32_t* argument);

private:
    std::size_t read(std::span<std::byte> out);
    void begin();
    std::int32_t mark();
    void unlink();

    Intake intake_;
    bool ended_ = false;
    std::int64_t delivered_ = 0;      ///< since the last seek
    std::vector<std::byte> returned_; ///< given back by the filter above, the last one first
    ZoneCharge returnedCharge_;
};

} // namespace corvane
