#include "app/images/epsf_file.h"

#include "app/artwork/error.h"
#include "app/images/image_error.h"
#include "runtime/image_data.h"
#include "runtime/string.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// Bytes in front of a picture: comments and a few procedures.
constexpr std::size_t headBytes = std::size_t{64} << 10;

/// Where a picture lies in its file.
struct PicturePlace {
    ImageDataLine form;
    std::uint64_t start = 0;
    std::array<std::uint8_t, 3> fill{}; ///< of a mask
};

/// Light that is left over by so much ink.
std::uint8_t lightOf(std::int64_t ink) {
    constexpr std::int64_t one = 1 << 16;
    return static_cast<std::uint8_t>((one - std::clamp<std::int64_t>(ink, 0, one)) * 255 / one);
}

/// Takes the numbers in front of a colour operator.
std::optional<std::array<std::uint8_t, 3>> fillOf(std::string_view line) {
    std::array<std::int64_t, 4> values{};
    std::size_t count = 0;
    for (; count < values.size(); ++count) {
        const TextNumber number = fixedString(line);
        if (!number.rest) {
            break;
        }
        values[count] = number.value;
        line = *number.rest;
    }
    const auto hasOperator = [&](std::string_view name) {
        return line.find(name) != std::string_view::npos;
    };
    if (count == 1 && hasOperator("setgray")) {
        const std::uint8_t level = lightOf((1 << 16) - values[0]);
        return std::array{level, level, level};
    }
    if (count == 4 && hasOperator("setcmykcolor")) {
        return std::array{lightOf(values[0] + values[3]), lightOf(values[1] + values[3]),
                          lightOf(values[2] + values[3])};
    }
    return std::nullopt;
}

std::optional<PicturePlace> findPicture(const ByteSource& file) {
    std::string head(headBytes, '\0');
    head.resize(file.readAt(0, std::as_writable_bytes(std::span(head))));
    std::optional<PicturePlace> place;
    for (std::size_t at = 0; at < head.size();) {
        const std::size_t end = head.find_first_of("\r\n", at);
        if (end == std::string::npos) {
            return std::nullopt;
        }
        const std::string_view line = std::string_view(head).substr(at, end - at);
        at = end + 1;
        if (!place) {
            if (auto form = imageDataLine(line)) {
                place.emplace(PicturePlace{.form = *std::move(form)});
            }
            continue;
        }
        if (line.starts_with(place->form.start)) {
            place->start = at;
            return place;
        }
        place->fill = fillOf(line).value_or(place->fill);
    }
    return std::nullopt;
}

class EpsfRows final : public ImageSource {
public:
    EpsfRows(std::unique_ptr<ByteSource> file, const PicturePlace& place)
        : file_(std::move(file)), form_(place.form), offset_(place.start), planes_(form_.fileRow()),
          row_(form_.row()), at_(row_.size()) {}

    std::size_t read(std::span<std::byte> into) override {
        std::size_t done = 0;
        while (done < into.size() && nextRow()) {
            const std::size_t piece = std::min(into.size() - done, row_.size() - at_);
            std::copy_n(row_.begin() + static_cast<std::ptrdiff_t>(at_), piece,
                        into.begin() + static_cast<std::ptrdiff_t>(done));
            at_ += piece;
            done += piece;
        }
        return done;
    }

private:
    /// Makes sure that there are bytes of a row; false at the end.
    bool nextRow() {
        if (at_ < row_.size()) {
            return true;
        }
        if (y_ == form_.height) {
            return false;
        }
        if (file_->readAt(offset_, planes_) < planes_.size()) {
            throw ArtworkError("an EPSF file ends within its picture");
        }
        offset_ += planes_.size();
        ++y_;
        at_ = 0;
        if (form_.mode == 3) {
            interleaveRGB(row_, planes_, static_cast<std::size_t>(form_.width));
        } else {
            interleaveGray(row_, planes_, row_.size());
        }
        return true;
    }

    std::unique_ptr<ByteSource> file_;
    ImageDataLine form_;
    std::uint64_t offset_;
    std::vector<std::byte> planes_;
    std::vector<std::byte> row_;
    std::size_t at_;
    std::int32_t y_ = 0;
};

class EpsfContent final : public ImageContent {
public:
    EpsfContent(std::shared_ptr<const ByteOrigin> file, PicturePlace place)
        : file_(std::move(file)), place_(std::move(place)) {}

    std::unique_ptr<ImageSource> open() const override {
        return std::make_unique<EpsfRows>(file_->open(), place_);
    }

private:
    std::shared_ptr<const ByteOrigin> file_;
    PicturePlace place_;
};

} // namespace

std::optional<EpsfPicture> readEpsf(std::shared_ptr<const ByteOrigin> file) {
    std::optional<PicturePlace> place = findPicture(*file->open());
    if (!place || !place->form.isKnown() || place->form.form != ImageDataForm::binary ||
        place->form.mode == 4) {
        return std::nullopt;
    }
    const ImageDataLine& form = place->form;
    EpsfPicture picture;
    picture.facts.width = form.width;
    picture.facts.height = form.height;
    picture.facts.bits = form.bits;
    if (form.bits == 1) {
        const auto [red, green, blue] = place->fill;
        picture.facts.colours = ImageColours::indexed;
        picture.palette = {red, green, blue, 255, 255, 255, 255, 0};
    } else {
        picture.facts.colours = form.mode == 3 ? ImageColours::rgb : ImageColours::gray;
    }
    picture.content = std::make_shared<EpsfContent>(std::move(file), *std::move(place));
    return picture;
}

} // namespace corvane
