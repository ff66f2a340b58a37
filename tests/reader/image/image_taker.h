// A host that keeps the images it is told of.
#pragma once

#include "host/callbacks.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::test {

struct TakenImage {
    ImageFacts facts; ///< key and palette are those below
    std::string key;
    std::vector<std::uint8_t> palette;
    std::vector<std::byte> bytes;
    std::int64_t count = 0; ///< of bytes, kept or not
    bool isEnded = false;
    bool isGivenUp = false;
};

/// Answers the slots 339 to 342 while it lives; there is one at a time.
class ImageTaker {
public:
    /// `keepsBytes`: otherwise they are counted in `total` only.
    explicit ImageTaker(std::span<HostProcedure> table, bool keepsBytes = true)
        : keepsBytes_(keepsBytes) {
        here = this;
        fillSlot(table, slot::addImage, add);
        fillSlot(table, slot::addImageBytes, addBytes);
        fillSlot(table, slot::endImage, end);
        fillSlot(table, slot::giveUpImage, giveUp);
    }
    ~ImageTaker() { here = nullptr; }
    ImageTaker(const ImageTaker&) = delete;
    ImageTaker& operator=(const ImageTaker&) = delete;

    std::vector<TakenImage> images; ///< handle 1 is the first
    std::int64_t total = 0;         ///< bytes of all

    const TakenImage& operator[](Image image) const {
        return images.at(static_cast<std::size_t>(image) - 1);
    }

private:
    static HostError add(const ImageFacts* facts, Image* image, std::uint8_t* wantsBytes) {
        for (std::size_t i = 0; i < here->images.size(); ++i) {
            if (here->images[i].key == facts->key && !facts->key.empty()) {
                *image = static_cast<Image>(i + 1);
                *wantsBytes = 0;
                return HostError::none;
            }
        }
        here->images.push_back({.facts = *facts,
                                .key = std::string(facts->key),
                                .palette = {facts->palette.begin(), facts->palette.end()},
                                .bytes = {}});
        *image = static_cast<Image>(here->images.size());
        *wantsBytes = facts->isPlaceholder ? 0 : 1;
        return HostError::none;
    }
    static HostError addBytes(Image image, const std::byte* bytes, std::int64_t count) {
        here->total += count;
        here->at(image).count += count;
        if (here->keepsBytes_) {
            std::vector<std::byte>& held = here->at(image).bytes;
            held.insert(held.end(), bytes, bytes + count);
        }
        return HostError::none;
    }
    static HostError end(Image image) {
        here->at(image).isEnded = true;
        return HostError::none;
    }
    static HostError giveUp(Image image) {
        here->at(image).isGivenUp = true;
        return HostError::none;
    }
    TakenImage& at(Image image) { return images.at(static_cast<std::size_t>(image) - 1); }

    static inline ImageTaker* here = nullptr;
    bool keepsBytes_;
};

inline std::string hexText(std::span<const std::byte> bytes) {
    std::string text;
    for (const std::byte byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", std::to_integer<unsigned>(byte));
        text += digits;
    }
    return text;
}

/// "rgb8 2x1 ff000000ff00", "indexed1(000000ff,ffffffff) 8x1 a5", "jpeg ..." or "placeholder 2x1";
/// "gray8a" has alpha.
inline std::string imageText(const TakenImage& image) {
    const ImageFacts& facts = image.facts;
    const std::string size = " " + std::to_string(facts.width) + "x" + std::to_string(facts.height);
    if (facts.isPlaceholder || image.isGivenUp) {
        return (image.isGivenUp ? "given up" : "placeholder") + size;
    }
    constexpr std::string_view names[] = {"gray", "rgb", "indexed", "cmyk"};
    std::string text(names[static_cast<std::size_t>(facts.colours)]);
    text = facts.coding == ImageCoding::jpeg ? "jpeg " + text : text + std::to_string(facts.bits);
    text += facts.hasAlpha ? "a" : "";
    if (!image.palette.empty()) {
        const std::string colours = hexText(std::as_bytes(std::span(image.palette)));
        for (std::size_t at = 0; at < colours.size(); at += 8) {
            text += (at == 0 ? "(" : ",") + colours.substr(at, 8);
        }
        text += ")";
    }
    text += size;
    if (!image.isEnded) {
        text += " unfinished";
    }
    return facts.coding == ImageCoding::jpeg ? text : text + " " + hexText(image.bytes);
}

} // namespace corvane::test
