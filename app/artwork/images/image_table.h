// The images of a document, each kept once: what they are, and where their bytes are.
#pragma once

#include "app/artwork/budget.h"
#include "app/artwork/images/image_store.h"
#include "host/image.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Bytes of a row of samples, packed as in PNG.
std::int64_t rowBytes(const ImageFacts&);

/// Handles are numbers from 1. Images stay for the document's life, keys and palettes where they
/// are. Bytes pass through and are kept elsewhere. What cannot be throws `ArtworkError`.
class ImageTable {
public:
    /// Bytes of a key: file names are made of it.
    static constexpr std::size_t longestKey = 64;
    /// Pixels of a side, and of an image: more than any file has, and small enough to count bytes
    /// in 64 bits.
    static constexpr std::int32_t longestSide = 1 << 24;
    static constexpr std::int64_t mostPixels = std::int64_t{1} << 40;

    explicit ImageTable(ArtworkBudget& budget) : budget_(&budget) {}
    ImageTable(const ImageTable&) = delete;
    ImageTable& operator=(const ImageTable&) = delete;

    /// Where the bytes of images go that are added from now on; null: nobody wants them.
    void setStore(ImageStore* store) { store_ = store; }

    /// An image of the page; where its key is known, that one.
    Image add(const ImageFacts&, bool& wantsBytes);
    /// Of an image whose bytes are wanted.
    void addBytes(Image, std::span<const std::byte>);
    void end(Image);
    void giveUp(Image);

    /// An image that a file shows, in the same way.
    Image add(const ImageFacts&, ImageFile, std::shared_ptr<const ImageContent>);

    std::size_t size() const { return records_.size(); }
    ImageFacts facts(Image) const;
    /// Null where no file shows the image.
    const ImageFile* file(Image) const;

    void open(Image);
    std::size_t read(Image, std::span<std::byte> into);

private:
    struct Record {
        ImageFacts facts; ///< without palette and key
        std::vector<std::uint8_t> palette;
        std::string key;
        std::optional<ImageFile> file;
        std::shared_ptr<const ImageContent> content;
        std::unique_ptr<ImageSink> sink;     ///< while bytes are added
        std::unique_ptr<ImageSource> source; ///< while bytes are read
    };

    Record& at(Image);
    const Record& at(Image) const;
    Record& filling(Image);
    Image known(const ImageFacts&) const;
    Image append(const ImageFacts&, std::optional<ImageFile>);

    ArtworkBudget* budget_;
    ImageStore* store_ = nullptr;
    std::deque<Record> records_;
    std::map<std::string_view, Image> byKey_;
};

} // namespace corvane
