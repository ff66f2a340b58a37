// An image of the original profile: what its dictionary says, and its rows.
#pragma once

#include "filters/pixels/space.h"
#include "reader/image/coded_image.h"
#include "reader/image/image_entries.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace corvane::classic {

class ClassicImage {
public:
    /// `object`: a stream, or the dictionary of an inline image with its `data`. Raises `range` and
    /// `type` for entries of the wrong kind or value, `structure` for spaces that are no device's
    /// nor indexed over one, `range` for sizes past the budget. An entry "ColorSpace2" is warned
    /// of.
    ClassicImage(DocumentCache& cache, const Object& object,
                 std::optional<std::span<const std::byte>> data);
    ClassicImage(const ClassicImage&) = delete;
    ClassicImage& operator=(const ClassicImage&) = delete;

    std::int32_t width() const { return width_; }
    std::int32_t height() const { return height_; }
    /// One bit a pixel; 0 is painted.
    bool isMask() const { return isMask_; }
    /// Of a mask 8 pixels a byte, else 4 bytes a pixel: 0, red, green, blue.
    std::size_t rowBytes() const;

    /// The rows, top first. Filters that the profile does not know raise `range`.
    Chain open() const;

private:
    void readSizes();
    void readSpace();
    void readNamedSpace(std::string_view name);
    void readIndexedSpace(std::span<const Object> elements);
    void readDecode();

    ImageEntries entries_;
    CodedImage coded_;
    std::int32_t width_ = 0;
    std::int32_t height_ = 0;
    std::int32_t bits_ = 8;
    bool isMask_ = false;
    NamedSpace space_{ImageSpace::mask, 1, true};
    std::vector<std::uint32_t> palette_;
    std::vector<Fixed> decode_;
};

} // namespace corvane::classic
