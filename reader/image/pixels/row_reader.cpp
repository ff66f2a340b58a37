#include "reader/image/pixels/picture_rows.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>

namespace corvane {

RowReader::RowReader(const LookedImage& image, PixelConversion conversion)
    : image_(image), conversion_(std::move(conversion)), samples_(openSampleRows(image)) {
    charge_.resize(image.form.rowBytes());
    row_.resize(static_cast<std::size_t>(image.form.rowBytes()));
}

/// Data that fail end there: what they held before counts. A person who stops, and a host that
/// fails, are no faults of the data.
std::size_t RowReader::read(std::span<std::byte> rows) {
    if (isEnded_) {
        return 0;
    }
    std::size_t count = 0;
    const Exception code = guarded([&] { count = samples_->read(rows); });
    if (code == Exception::cancelled || code == Exception::host) {
        againException();
    }
    resetException();
    isEnded_ = count < rows.size();
    return count;
}

void RowReader::seek(std::int32_t y) {
    for (; y_ < y; ++y_) {
        const std::size_t count = read(row_);
        isMissing_ = count == 0;
        std::fill(row_.begin() + static_cast<std::ptrdiff_t>(count), row_.end(),
                  conversion_.emptySample());
    }
}

std::size_t RowReader::readRows(std::span<std::byte> rows) {
    return read(rows);
}

} // namespace corvane
