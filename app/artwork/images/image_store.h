// What a document asks of those who keep and give the bytes of its images.
#pragma once

#include "host/image.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace corvane {

/// The file that shows an image, as the artwork's SVG names it.
struct ImageFile {
    std::string
        address; ///< from the SVG, escaped as an address; or a "data:" address with all bytes
    /// Of the file as opening the page wrote it. None: the image is not of a page, or its file is
    /// not as it was written.
    std::optional<std::uint64_t> digest = {};
    /// A JPEG whose camera was turned. Matrices of placed objects count from its rows as they are,
    /// so who shows it must not turn it.
    bool ignoresOrientation = false;
};

/// Takes the bytes of one image, in the form of host/image.h. What was not ended leaves nothing.
/// Members raise whatever keeps the bytes from being kept.
class ImageSink {
public:
    ImageSink() = default;
    ImageSink(const ImageSink&) = delete;
    ImageSink& operator=(const ImageSink&) = delete;
    virtual ~ImageSink() = default;

    virtual void add(std::span<const std::byte> bytes) = 0;
    /// All bytes were added.
    virtual ImageFile end() = 0;
};

/// Keeps the images of a page that is opened.
class ImageStore {
public:
    ImageStore() = default;
    ImageStore(const ImageStore&) = delete;
    ImageStore& operator=(const ImageStore&) = delete;
    virtual ~ImageStore() = default;

    /// The file that an image has already, so that its bytes are not wanted.
    virtual std::optional<ImageFile> find(const ImageFacts&) = 0;
    virtual std::unique_ptr<ImageSink> begin(const ImageFacts&) = 0;
};

/// Gives the bytes of an image once, from the first, in the form of host/image.h.
class ImageSource {
public:
    ImageSource() = default;
    ImageSource(const ImageSource&) = delete;
    ImageSource& operator=(const ImageSource&) = delete;
    virtual ~ImageSource() = default;

    /// The next bytes, as many as there is room for; fewer at the end only. Raises where the file
    /// is damaged.
    virtual std::size_t read(std::span<std::byte> into) = 0;
};

/// An image whose bytes can be had.
class ImageContent {
public:
    ImageContent() = default;
    ImageContent(const ImageContent&) = delete;
    ImageContent& operator=(const ImageContent&) = delete;
    virtual ~ImageContent() = default;

    virtual std::unique_ptr<ImageSource> open() const = 0;
};

} // namespace corvane
