#include "reader/epsf/epsf_file.h"

#include "dialogs/dialogs.h"
#include "filters/buffer.h"
#include "filters/file/file_names.h"
#include "filters/file/file_resources.h"
#include "filters/stream.h"
#include "output/world/picture.h"
#include "reader/epsf/classic_image.h"
#include "reader/epsf/epsf_text.h"
#include "reader/epsf/pixel_rows.h"
#include "reader/image/image_meter.h"
#include "reader/paint/seen_colour.h"
#include "resources/resources.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/string.h"
#include "runtime/warning.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace corvane::classic {

namespace {

constexpr std::int16_t imageNameTemplate = 1;
constexpr std::int32_t previewDepth = 8;
constexpr std::int32_t pixelDepth = 32;
constexpr std::int32_t maskDepth = 1;

std::string nameTemplate() {
    std::array<std::uint8_t, 256> text{};
    getString(text, nameTexts, imageNameTemplate);
    const auto bytes = prefixedBytes(text);
    return {bytes.begin(), bytes.end()};
}

/// The picture as it passes through to the file, and what becomes of it beside.
class PictureWriter {
public:
    PictureWriter(const ClassicImage& image, SeenColour fill)
        : image_(image), fill_(fill), row_(image.rowBytes()),
          pixels_(4 * static_cast<std::size_t>(image.width())),
          planes_(image.isMask() ? 0 : pixels_.size()),
          world_(allocateWorld(image.width(), image.height(), pixelDepth, imageTables)),
          mask_(allocateWorld(image.width(), image.height(), maskDepth, imageTables)) {
        charge_.resize(static_cast<std::int64_t>(row_.size() + pixels_.size() + planes_.size()));
    }

    void write(Filter& rows, Filter& output) {
        for (std::int32_t y = 0; y < image_.height(); ++y) {
            if (callHost(slot::checkUserAbort)) {
                failException(Exception::cancelled);
            }
            readRow(rows);
            if (image_.isMask()) {
                writeFilter(output, row_);
            } else {
                deviceDataToInterleave(planes_, row_);
                writeFilter(output, planes_);
            }
            drawRow(y);
        }
    }

    /// Into the resource fork that is open.
    void savePreview() const {
        sampleWorld(world_.get(), mask_.get(), previewDepth);
        finderWorld(world_.get());
    }

private:
    void readRow(Filter& rows) {
        const std::size_t count = isEnded_ ? 0 : readFilter(rows, row_);
        if (count < row_.size() && !isEnded_) {
            isEnded_ = true;
            raiseWarning(Warning::picture);
        }
        std::fill(row_.begin() + static_cast<std::ptrdiff_t>(count), row_.end(), std::byte{0xFF});
    }

    void drawRow(std::int32_t y) {
        if (world_ == nullptr || mask_ == nullptr) {
            return;
        }
        if (image_.isMask()) {
            deviceDataToMasking(pixels_, row_, fill_);
        } else {
            std::ranges::copy(row_, pixels_.begin());
        }
        deviceDataToPixelMap(world_.get(), y, pixels_);
        deviceDataToTransparency(pixels_);
        for (std::int32_t x = 0; x < image_.width(); ++x) {
            const bool isWhite = pixels_[4 * static_cast<std::size_t>(x) + 1] != std::byte{0};
            mask_->setColour(x, y, isWhite ? 0xFFFFFF : 0);
        }
    }

    const ClassicImage& image_;
    SeenColour fill_;
    ZoneCharge charge_;
    std::vector<std::byte> row_;
    std::vector<std::byte> pixels_;
    std::vector<std::byte> planes_;
    WorldOwner world_;
    WorldOwner mask_;
    bool isEnded_ = false;
};

/// Has the resource fork of a file open while `body` runs.
template <class Body>
void withFork(FileRecord& file, const std::string& name, Body&& body) {
    pushFile(file, name);
    const Exception code = guarded(std::forward<Body>(body));
    guarded([&] { tossFile(file); });
    raiseException(code != Exception::none ? code : valueException());
}

FileSpecification locationOf(std::int16_t volume, const std::string& name) {
    FileSpecification location;
    location.volume = volume;
    if (name.size() >= sizeof(location.name)) {
        failException(Exception::type);
    }
    location.name[0] = static_cast<std::uint8_t>(name.size());
    std::ranges::copy(name, location.name + 1);
    return location;
}

} // namespace

std::int16_t EpsfFolder::use() {
    if (volume_ == 0) {
        std::int16_t volume = 0;
        std::int32_t directory = 0;
        if (!folderDialog(volume, directory)) {
            failException(Exception::cancelled);
        }
        volume_ = workingDirRef(volume, directory);
    }
    return volume_;
}

EpsfFile writeEpsf(DocumentCache& cache, EpsfFolder& folder, const Object& object,
                   std::optional<std::span<const std::byte>> data, const Colour& fill) {
    const ImageMeter meter(cache);
    const ClassicImage image(cache, object, data);
    const Chain rows = image.open();
    const std::int16_t volume = folder.use();
    const std::string name = uniqueFile(volume, nameTemplate());
    const EpsfFile file{locationOf(volume, name), image.width(), image.height()};
    PictureWriter picture(image, seenColour(fill));

    Chain output;
    output.link(setupStream(volume, name, "write"));
    const Exception code = guarded([&] {
        output.link(setupBuffer());
        beginEPSFoutput(*output.top(), {.columns = image.width(),
                                        .rows = image.height(),
                                        .isMask = image.isMask(),
                                        .fill = fill,
                                        .title = cache.fileName});
        picture.write(*rows.top(), *output.top());
        endEPSFoutput(*output.top());
        auto& stream = static_cast<StreamFilter&>(*baseFilter(output.top()));
        withFork(stream.file, name, [&] { picture.savePreview(); });
        output.unlink();
        finishFile(volume, name, fourCharacters("EPSF"), fourCharacters("ZNPX"), true);
    });
    if (code != Exception::none) {
        output.abandon();
        deleteFile(volume, name);
        raiseException(code);
    }
    cache.work.imageBytes += std::int64_t{4} * image.width() * image.height();
    return file;
}

} // namespace corvane::classic
