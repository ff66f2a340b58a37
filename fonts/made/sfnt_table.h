// One table of an OpenType font, in the bytes of the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include <hb.h>

namespace corvane {

class SfntTable {
public:
    SfntTable(hb_face_t* face, hb_tag_t tag) : blob_(hb_face_reference_table(face, tag)) {}

    std::size_t size() const { return hb_blob_get_length(blob_.get()); }
    std::span<const std::byte> bytes() const {
        const void* const data = hb_blob_get_data(blob_.get(), nullptr);
        return {static_cast<const std::byte*>(data), size()};
    }
    /// 0 behind the end.
    std::uint16_t number(std::size_t at) const {
        const std::span<const std::byte> all = bytes();
        return at + 2 > all.size()
                   ? std::uint16_t{0}
                   : static_cast<std::uint16_t>(std::to_integer<unsigned>(all[at]) << 8U |
                                                std::to_integer<unsigned>(all[at + 1]));
    }
    std::int16_t signedNumber(std::size_t at) const {
        return static_cast<std::int16_t>(number(at));
    }

private:
    struct Closer {
        void operator()(hb_blob_t* blob) const { hb_blob_destroy(blob); }
    };

    std::unique_ptr<hb_blob_t, Closer> blob_;
};

} // namespace corvane
