#include "reader/image/pixels/picture_rows.h"

#include "reader/paint/colour_space.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace corvane {

namespace {

/// Pixels along a side of the largest pictures that renderers in use draw.
constexpr std::int32_t longestSide = 32767;

/// Bytes that the host gets at a time, a row at least.
constexpr std::size_t blockBytes = 1 << 16;

/// For each pixel of a row, the one of a narrower row that it shows; empty where that is the same.
std::vector<std::size_t> pixelsAcross(std::int32_t shown, std::int32_t held) {
    if (shown == held) {
        return {};
    }
    std::vector<std::size_t> across(static_cast<std::size_t>(shown));
    for (std::size_t x = 0; x < across.size(); ++x) {
        across[x] = x * static_cast<std::size_t>(held) / across.size();
    }
    return across;
}

/// For each pixel of a joined row, those that its colours and its alpha come from.
struct PixelMap {
    std::span<const std::size_t> colours;
    std::span<const std::size_t> alpha;
};

/// Pixels of `colourBytes`, and alpha behind each, of `sampleBytes`.
template <std::size_t colourBytes, std::size_t sampleBytes>
void joinPixels(std::span<const std::byte> colours, std::span<const std::uint8_t> alpha,
                const PixelMap& map, std::span<std::byte> out) {
    constexpr std::size_t pixelBytes = colourBytes + sampleBytes;
    const std::size_t count = out.size() / pixelBytes;
    // By value, and byte by byte: so the compiler makes vectors of it.
    const auto join = [colour = colours.data(), level = alpha.data(),
                       to = out.data()](std::size_t x, std::size_t from, std::size_t alphaFrom) {
        for (std::size_t i = 0; i < colourBytes; ++i) {
            to[x * pixelBytes + i] = colour[from * colourBytes + i];
        }
        for (std::size_t i = colourBytes; i < pixelBytes; ++i) {
            to[x * pixelBytes + i] = std::byte{level[alphaFrom]};
        }
    };
    if (map.colours.empty() && map.alpha.empty()) {
        for (std::size_t x = 0; x < count; ++x) {
            join(x, x, x);
        }
        return;
    }
    for (std::size_t x = 0; x < count; ++x) {
        join(x, map.colours.empty() ? x : map.colours[x], map.alpha.empty() ? x : map.alpha[x]);
    }
}

/// A sample of the file as the codec delivers it: JPX pictures have any number of bits.
std::int32_t deliveredSample(const LookedImage& image, double sample) {
    const auto value = static_cast<std::int64_t>(std::clamp(sample, -1.0, 65536.0));
    if (!image.jpx || image.keepsPalette || value < 0) {
        return static_cast<std::int32_t>(value);
    }
    const std::int64_t highest = (std::int64_t{1} << image.jpx->bits) - 1;
    const std::int64_t full = (std::int64_t{1} << image.form.bits) - 1;
    return static_cast<std::int32_t>((value * full + highest / 2) / highest);
}

void checkRow(const ImageForm& form) {
    if (form.rowBytes() > budget::imageRowBytes || form.width > budget::imageRowBytes / 8) {
        failException(Exception::limit);
    }
}

} // namespace

AlphaImage::AlphaImage(DocumentCache& cache, const Object& object, bool isStencil) {
    stream = sharedObject(object);
    image = std::make_unique<LookedImage>(cache, stream.get());
    ImageForm& form = image->form;
    if (form.components() != 1) {
        failException(Exception::range);
    }
    checkRow(form);
    if (form.space->kind != ColourSpace::Kind::indexed) {
        form.space = deviceColourSpace(1); // shares of the picture are no colours
    }
    if (isStencil) {
        // What a stencil paints is opaque.
        const std::pair<double, double> usual(0, 1);
        const auto [low, high] =
            form.decode.size() < 2 ? usual : std::pair(form.decode[0], form.decode[1]);
        form.decode = {1 - low, 1 - high};
        form.isStencil = false;
    }
}

Picture::Picture(DocumentCache& cache, const Object& object,
                 std::optional<std::span<const std::byte>> data, SeenColour fill)
    : cache_(cache), image_(cache, object, data) {
    checkRow(image_.form);
    findAlpha();
    isJpeg_ = isShownByBrowsers();
    conversion_.emplace(image_.form, hasAlpha_, fill);
    width_ = image_.form.width;
    height_ = image_.form.height;
    if (alphaImage_) {
        growToMask(alphaImage_->image->form);
    }
}

/// As large as the mask, or as large as renderers and the budget let it be.
void Picture::growToMask(const ImageForm& mask) {
    for (std::int32_t part = 1;; part *= 2) {
        width_ = std::max(image_.form.width, (mask.width + part - 1) / part);
        height_ = std::max(image_.form.height, (mask.height + part - 1) / part);
        const bool isOwnSize = width_ == image_.form.width && height_ == image_.form.height;
        const bool isDrawn = std::max(width_, height_) <= longestSide;
        if (isOwnSize || (isDrawn && bytes() <= budget::joinedImageBytes)) {
            return;
        }
    }
}

void Picture::findAlpha() {
    const ImageEntries& entries = image_.entries;
    if (image_.form.isStencil) {
        return;
    }
    const std::int32_t inData = entries.integer(imageKey::softMaskInData).value_or(0);
    const auto read = [&](ImageKey key, bool isStencil) {
        const ObjectOwner stream = entries.find(key);
        if (typeObject(stream.get()) != ObjectType::stream) {
            return;
        }
        // A mask that cannot be read leaves the picture as it is.
        attempted(
            [&] { alphaImage_ = std::make_unique<AlphaImage>(cache_, stream.get(), isStencil); });
    };
    read(imageKey::softMask, false);
    if (alphaImage_) {
        hasAlpha_ = true;
        readMatte(alphaImage_->image->entries);
        return;
    }
    if (image_.form.hasAlpha && inData != 0) {
        hasAlpha_ = true;
        if (inData == 2 || (image_.jpx && image_.jpx->isPremultiplied)) {
            matte_ = SeenColour{};
            readMatte(entries);
        }
        return;
    }
    read(imageKey::mask, true);
    if (alphaImage_) {
        hasAlpha_ = true;
        return;
    }
    findColourKey();
}

void Picture::readMatte(const ImageEntries& entries) {
    const std::vector<double> matte = entries.numbers(imageKey::matte);
    if (matte.size() == static_cast<std::size_t>(image_.form.components())) {
        matte_ = seenColour(colourIn(*image_.form.space, matte));
    }
}

void Picture::findColourKey() {
    ImageForm& form = image_.form;
    const std::vector<double> key = image_.entries.numbers(imageKey::mask);
    if (key.size() < 2 * static_cast<std::size_t>(form.components())) {
        return;
    }
    for (std::size_t i = 0; i < 2 * static_cast<std::size_t>(form.components()); ++i) {
        form.colourKey.push_back(deliveredSample(image_, key[i]));
    }
    const bool isInPalette = form.components() == 1 && form.bits <= 8 && !form.hasAlpha;
    hasAlpha_ = !isInPalette;
}

bool Picture::isShownByBrowsers() const {
    const std::optional<JpegLead>& jpeg = image_.jpeg;
    if (!jpeg || !jpeg->frame->isUsual() || !jpeg->isAtStart || jpeg->orientation != upright ||
        hasAlpha_ || !image_.form.colourKey.empty() || !image_.form.isUsualDecode()) {
        return false;
    }
    if (image_.form.space->profile != nullptr) {
        return false;
    }
    const ColourSpace::Kind kind = image_.form.space->kind;
    if (jpeg->frame->components == 1) {
        return kind == ColourSpace::Kind::gray;
    }
    const bool isYcc = jpeg->transform ? *jpeg->transform != 0 : image_.dctTransform != 0;
    return jpeg->frame->components == 3 && kind == ColourSpace::Kind::rgb &&
           isYcc == jpeg->isYccAlone();
}

ImageFacts Picture::facts() const {
    ImageFacts facts{.width = width_, .height = height_};
    if (isJpeg_) {
        facts.coding = ImageCoding::jpeg;
        facts.colours =
            image_.jpeg->frame->components == 1 ? ImageColours::gray : ImageColours::rgb;
        return facts;
    }
    facts.colours = conversion_->colours();
    facts.bits = conversion_->bits();
    facts.hasAlpha = hasAlpha_;
    facts.palette = conversion_->palette();
    return facts;
}

std::int64_t Picture::rowBytes() const {
    if (!hasAlpha_) {
        return conversion_->rowBytes();
    }
    const std::int64_t components = conversion_->colours() == ImageColours::rgb ? 4 : 2;
    return width_ * components * conversion_->bits() / 8;
}

void Picture::begin() {
    const auto row = static_cast<std::size_t>(rowBytes());
    const std::size_t rows = std::max<std::size_t>(1, blockBytes / row);
    charge_.resize(static_cast<std::int64_t>(rows * row) + conversion_->rowBytes() +
                   (hasAlpha_ ? 20 * std::int64_t{width_} : 0));
    colours_.emplace(image_, *conversion_);
    pixels_.resize(static_cast<std::size_t>(conversion_->rowBytes()));
    if (hasAlpha_) {
        across_ = pixelsAcross(width_, image_.form.width);
        alphaAcross_ = across_;
    }
    if (alphaImage_) {
        PixelConversion toGray(alphaImage_->image->form, true);
        alphaRow_.resize(static_cast<std::size_t>(toGray.rowBytes()));
        alphaAcross_ = pixelsAcross(width_, alphaImage_->image->form.width);
        const bool isOpen = attempted([&] { alphas_.emplace(*alphaImage_->image, toGray); });
        if (!isOpen) {
            alphas_.reset();
        }
    }
    if (hasAlpha_) {
        const std::int32_t held = alphaImage_ ? alphaImage_->image->form.width : image_.form.width;
        alpha_.assign(static_cast<std::size_t>(held), 255);
    }
    block_.reserve(rows * row);
}

/// An image of which next to nothing is there is none.
void Picture::checkMissing() const {
    if (y_ == 0) {
        failException(Exception::codec);
    }
    const std::int64_t missing = rowBytes() * (height_ - y_);
    if (missing > budget::missingImageBytes && std::int64_t{y_} * 16 < height_) {
        failException(Exception::codec);
    }
}

/// The next rows; false behind the last one.
bool Picture::fillBlock() {
    if (y_ == height_) {
        return false;
    }
    const auto row = static_cast<std::size_t>(rowBytes());
    const std::size_t rows = std::min(std::max<std::size_t>(1, blockBytes / row),
                                      static_cast<std::size_t>(height_ - y_));
    block_.resize(rows * row);
    if (!hasAlpha_ && conversion_->keepsRows()) {
        const std::size_t count = colours_->readRows(block_);
        if (count < block_.size()) {
            const std::size_t whole = count / row * row;
            const std::size_t begun = whole == count ? count : whole + row;
            std::fill(block_.begin() + static_cast<std::ptrdiff_t>(count),
                      block_.begin() + static_cast<std::ptrdiff_t>(begun),
                      conversion_->emptySample());
            std::fill(block_.begin() + static_cast<std::ptrdiff_t>(begun), block_.end(),
                      conversion_->emptyByte());
            y_ += static_cast<std::int32_t>(begun / row);
            if (y_ < height_) {
                checkMissing();
            }
            y_ += static_cast<std::int32_t>(rows - begun / row);
            return true;
        }
        y_ += static_cast<std::int32_t>(rows);
        return true;
    }
    for (std::size_t i = 0; i < rows; ++i, ++y_) {
        fillRow(std::span(block_).subspan(i * row, row));
    }
    return true;
}

void Picture::fillRow(std::span<std::byte> out) {
    const auto from = static_cast<std::int32_t>(std::int64_t{y_} * image_.form.height / height_);
    colours_->seek(from);
    if (colours_->isMissing()) {
        checkMissing();
        std::ranges::fill(out, conversion_->emptyByte());
        return;
    }
    if (coloursAt_ != from) {
        const std::span<std::byte> pixels = hasAlpha_ ? std::span(pixels_) : out;
        colours_->conversion().convert(colours_->samples(), pixels, cache_.work.imageColours);
        coloursAt_ = from;
    }
    if (hasAlpha_) {
        fillAlpha(from);
        join(out);
        undoMatte(out);
    }
}

void Picture::fillAlpha(std::int32_t row) {
    if (!alphaImage_) {
        if (alphaAt_ != row) {
            colours_->conversion().alphaOf(colours_->samples(), alpha_);
            alphaAt_ = row;
        }
        return;
    }
    const std::int32_t height = alphaImage_->image->form.height;
    const auto from = static_cast<std::int32_t>(std::int64_t{y_} * height / height_);
    if (!alphas_ || alphaAt_ == from) {
        return;
    }
    alphas_->seek(from);
    alphaAt_ = from;
    if (alphas_->isMissing()) {
        std::ranges::fill(alpha_, std::uint8_t{255});
        return;
    }
    PixelConversion& conversion = alphas_->conversion();
    conversion.convert(alphas_->samples(), alphaRow_, cache_.work.imageColours);
    // Of 16 bits the high byte comes first; of colours, which no mask has, red.
    const std::size_t step = alphaRow_.size() / alpha_.size();
    if (step == 1) {
        std::memcpy(alpha_.data(), alphaRow_.data(), alpha_.size());
        return;
    }
    for (std::size_t x = 0; x < alpha_.size(); ++x) {
        alpha_[x] = std::to_integer<std::uint8_t>(alphaRow_[x * step]);
    }
}

void Picture::join(std::span<std::byte> out) const {
    const bool isRgb = conversion_->colours() == ImageColours::rgb;
    const PixelMap map{across_, alphaAcross_};
    if (conversion_->bits() == 16) {
        return isRgb ? joinPixels<6, 2>(pixels_, alpha_, map, out)
                     : joinPixels<2, 2>(pixels_, alpha_, map, out);
    }
    return isRgb ? joinPixels<3, 1>(pixels_, alpha_, map, out)
                 : joinPixels<1, 1>(pixels_, alpha_, map, out);
}

/// The colours before they were mixed with the matte (PDF Reference, 7.5.4).
void Picture::undoMatte(std::span<std::byte> out) const {
    if (!matte_) {
        return;
    }
    const bool isRgb = conversion_->colours() == ImageColours::rgb;
    const std::size_t components = isRgb ? 3 : 1;
    const std::size_t sampleBytes = static_cast<std::size_t>(conversion_->bits()) / 8;
    const int mattes[3] = {matte_->red, matte_->green, matte_->blue};
    const std::size_t pixelBytes = (components + 1) * sampleBytes;
    const int full = sampleBytes == 2 ? 65535 : 255;
    for (std::size_t at = 0; at + pixelBytes <= out.size(); at += pixelBytes) {
        const int alpha = std::to_integer<int>(out[at + pixelBytes - 1]);
        if (alpha == 0 || alpha == 255) {
            continue;
        }
        for (std::size_t i = 0; i < components; ++i) {
            std::byte* const place = out.data() + at + i * sampleBytes;
            const int high = std::to_integer<int>(place[0]);
            const int mixed = sampleBytes == 2 ? high << 8 | std::to_integer<int>(place[1]) : high;
            const int matte = mattes[i] * (full / 255);
            const double plain = matte + (mixed - matte) * 255.0 / alpha;
            const auto level =
                static_cast<unsigned>(std::lround(std::clamp<double>(plain, 0, full)));
            place[0] = static_cast<std::byte>(sampleBytes == 2 ? level >> 8 : level);
            if (sampleBytes == 2) {
                place[1] = static_cast<std::byte>(level);
            }
        }
    }
}

} // namespace corvane
