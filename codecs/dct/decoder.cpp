#include "codecs/dct/decoder.h"

#include "codecs/dct/error.h"
#include "codecs/dct/markers.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "runtime/warning.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane {

namespace {

/// Scans of one image. Real ones have 10 or so; each may make us walk all coefficients for a few
/// bytes of data.
constexpr std::size_t scanLimit = 200;

/// The colour transform (`DCTInitCT`): what APP14 states or, where it states nothing, the rule of
/// the PDF Reference for DCTDecode.
DctColour colourOf(std::int32_t transform, std::size_t components) {
    if (components < 3) {
        return DctColour::none;
    }
    if (transform == dctUnstatedTransform) {
        return components == 3 ? DctColour::rgb : DctColour::none;
    }
    if (transform == 0) {
        return DctColour::none;
    }
    // Of three components nothing but RGB makes sense.
    const bool sense = components == 3 && rules().anyPictureIdentifier;
    return transform == 1 || sense ? DctColour::rgb : DctColour::inverted;
}

} // namespace

/// Runs `body`; true where it went well. Damage: false, with a warning, where whole rows are kept
/// and there are some, else it is raised again.
template <class Body>
bool DctDecoder::kept(Body&& body) {
    const Exception code = guarded(std::forward<Body>(body));
    if (code == Exception::none) {
        return true;
    }
    const bool some = coefficients_ ? unitRowsReached() > 0 : unitRows_ > 0;
    if (code != Exception::codec || !rules().wholeRowsKept || !some) {
        failException(code);
    }
    resetException();
    raiseWarning(Warning::picture);
    // A source that failed may do so again.
    if (guarded([&] { finish(); }) == Exception::codec) {
        resetException();
    } else {
        againException();
    }
    return false;
}

/// Reads segments from `marker` on up to a scan; false at the end of the image.
bool DctDecoder::readToScan(int marker) {
    for (;; marker = DCTDsgetmarker(input_)) {
        if (marker == dctMarker::sos) {
            return true;
        }
        if (marker == dctMarker::eoi) {
            behind_ = true;
            return false;
        }
        DCTDsegment(input_, marker, header_);
    }
}

DctScan DctDecoder::nextScan() {
    DctScan scan = DCTDgetScanParms(input_, header_);
    latchTables(scan);
    return scan;
}

void DctDecoder::latchTables(const DctScan& scan) {
    for (const DctScanComponent& used : scan.components) {
        DctComponent& component = header_.frame->components[used.index];
        if (!component.table) {
            component.table = header_.quantisers[component.quantiser];
        }
        if (!component.table) {
            dct_error();
        }
    }
}

/// Reads the header, and all scans where one alone does not hold the image. False where there is
/// no image.
bool DctDecoder::DCTDdecode_image() {
    if (DCTDsgetmarker(input_) != dctMarker::soi) {
        DCTDNoMarker();
    }
    phase_ = Phase::inHeader;
    if (!readToScan(DCTDsgetmarker(input_))) {
        return false;
    }
    DctScan scan = nextScan();
    const DctFrame& frame = *header_.frame;
    if (frame.progressive || scan.components.size() < frame.components.size()) {
        coefficients_.emplace(frame);
        rowsReached_.assign(frame.components.size(), 0);
        kept([&] { readScans(std::move(scan)); });
        unitRowLimit_ = unitRowsReached();
    } else {
        reader_.emplace(input_, header_, scan);
        scan_ = std::move(scan);
        unitRowLimit_ = frame.unitsDown;
    }
    prepareRows();
    phase_ = Phase::decoding;
    return true;
}

void DctDecoder::prepareRows() {
    const DctFrame& frame = *header_.frame;
    for (const DctComponent& component : frame.components) {
        multipliers_.push_back(dctMultipliers(*component.table));
    }
    colour_ = colourOf(header_.application.transform, frame.components.size());
    strips_.emplace(frame);
    upsampler_.emplace(frame);
    const std::size_t bytes = frame.width * frame.components.size() + dctRowSlack;
    charge_.resize(static_cast<std::int64_t>(bytes));
    pixels_.resize(bytes);
}

void DctDecoder::readScans(DctScan scan) {
    for (std::size_t count = 1;; ++count) {
        DctScanReader& reader = reader_.emplace(input_, header_, scan);
        readScan(scan, reader);
        int marker = reader.takeMarker();
        while (marker >= dctMarker::rst0 && marker <= dctMarker::rst7) {
            marker = DCTDsgetmarker(input_);
        }
        if (marker < 0) {
            DCTDTruncateError();
        }
        if (!readToScan(marker)) {
            break;
        }
        if (count == scanLimit) {
            DCTDTruncateError();
        }
        scan = nextScan();
    }
    input_.settle();
    if (unitRowsReached() < header_.frame->unitsDown) {
        DCTDTruncateError();
    }
}

void DctDecoder::checkTime() const {
    if (clock_ != nullptr) {
        clock_->check();
    }
}

void DctDecoder::readScan(const DctScan& scan, DctScanReader& reader) {
    const DctFrame& frame = *header_.frame;
    if (scan.components.size() > 1) {
        for (std::size_t unitRow = 0; unitRow < frame.unitsDown; ++unitRow) {
            checkTime();
            readInterleaved(scan, reader, unitRow);
        }
        return;
    }
    const std::size_t index = scan.components.front().index;
    const DctComponent& component = frame.components[index];
    for (std::size_t y = 0; y < component.blocksDown; ++y) {
        checkTime();
        // Refinement before there is anything to refine would let empty data fill memory.
        if (scan.first != 0 && !coefficients_->reached(index, y)) {
            dct_error();
        }
        const std::span<DctBlock> blocks = coefficients_->row(index, y);
        for (DctBlock& block : blocks.first(component.blocksAcross)) {
            reader.beginUnit();
            storedBlock(reader, 0, block);
        }
        reader.endUnit();
        rowsReached_[index] = std::max(rowsReached_[index], y + 1);
    }
}

void DctDecoder::storedBlock(DctScanReader& reader, std::size_t index, DctBlock& block) const {
    if (header_.frame->progressive) {
        reader.progressiveBlock(index, block);
    } else {
        block = {};
        reader.sequentialBlock(index, block);
    }
}

void DctDecoder::readInterleaved(const DctScan& scan, DctScanReader& reader, std::size_t unitRow) {
    const DctFrame& frame = *header_.frame;
    for (std::size_t unit = 0; unit < frame.unitsAcross; ++unit) {
        reader.beginUnit();
        for (std::size_t i = 0; i < scan.components.size(); ++i) {
            const std::size_t index = scan.components[i].index;
            const DctComponent& component = frame.components[index];
            for (std::size_t y = 0; y < component.vertical; ++y) {
                const std::span<DctBlock> blocks =
                    coefficients_->row(index, unitRow * component.vertical + y)
                        .subspan(unit * component.horizontal, component.horizontal);
                for (DctBlock& block : blocks) {
                    storedBlock(reader, i, block);
                }
            }
        }
    }
    reader.endUnit();
    for (const DctScanComponent& used : scan.components) {
        std::size_t& reached = rowsReached_[used.index];
        reached = std::max(reached, (unitRow + 1) * frame.components[used.index].vertical);
    }
}

/// Rows of units of which every component has been reached.
std::size_t DctDecoder::unitRowsReached() const {
    std::size_t rows = header_.frame->unitsDown;
    for (std::size_t i = 0; i < rowsReached_.size(); ++i) {
        const DctComponent& component = header_.frame->components[i];
        if (rowsReached_[i] < component.blocksDown) {
            rows = std::min(rows, rowsReached_[i] / component.vertical);
        }
    }
    return rows;
}

void DctDecoder::decodeStreamed() {
    const DctFrame& frame = *header_.frame;
    for (std::size_t unit = 0; unit < frame.unitsAcross; ++unit) {
        reader_->beginUnit();
        for (std::size_t i = 0; i < scan_->components.size(); ++i) {
            const std::size_t index = scan_->components[i].index;
            const DctComponent& component = frame.components[index];
            for (std::size_t y = 0; y < component.vertical; ++y) {
                for (std::size_t x = 0; x < component.horizontal; ++x) {
                    DctBlock block;
                    const std::size_t last = reader_->sequentialBlock(i, block);
                    DCTrev_transform(block, multipliers_[index], last,
                                     strips_->block(index, unit * component.horizontal + x,
                                                    unitRows_ * component.vertical + y),
                                     strips_->stride(index));
                }
            }
        }
    }
    reader_->endUnit();
}

void DctDecoder::renderStored() {
    const DctFrame& frame = *header_.frame;
    for (std::size_t index = 0; index < frame.components.size(); ++index) {
        const DctComponent& component = frame.components[index];
        const std::size_t first = unitRows_ * component.vertical;
        const std::size_t end = std::min(first + component.vertical, component.blocksDown);
        for (std::size_t y = first; y < end; ++y) {
            const std::span<const DctBlock> blocks =
                coefficients_->row(index, y).first(component.blocksAcross);
            for (std::size_t x = 0; x < blocks.size(); ++x) {
                DCTrev_transform(blocks[x], multipliers_[index], dctBlockSize - 1,
                                 strips_->block(index, x, y), strips_->stride(index));
            }
        }
    }
}

void DctDecoder::decodeUnitRow() {
    checkTime();
    if (coefficients_) {
        renderStored();
    } else if (!kept([&] { decodeStreamed(); })) {
        unitRowLimit_ = unitRows_;
        return;
    }
    strips_->finishUnitRow(unitRows_);
    if (++unitRows_ == header_.frame->unitsDown && !coefficients_) {
        finish();
    }
}

/// Goes past the end of the image. Bits are read ahead, more or fewer as the source hands them
/// out, so that only a marker is a place where to stop.
void DctDecoder::finish() {
    if (!behind_) {
        behind_ = true;
        DCTDskipImage(input_, reader_ ? reader_->takeMarker() : 0);
    }
    input_.settle();
}

void DctDecoder::end() {
    input_.settle();
    phase_ = Phase::ended;
}

std::span<const std::uint8_t> DctDecoder::nextRow() {
    if (phase_ == Phase::beforeImage && !DCTDdecode_image()) {
        end();
    }
    if (phase_ != Phase::decoding) {
        return {};
    }
    const DctFrame& frame = *header_.frame;
    const std::size_t unitHeight = 8 * frame.tallest;
    // The row below may be needed to upsample.
    while (unitRows_ < unitRowLimit_ && row_ + 1 >= unitRows_ * unitHeight) {
        decodeUnitRow();
    }
    if (row_ >= std::min(frame.height, unitRowLimit_ * unitHeight)) {
        end();
        return {};
    }
    std::array<const std::uint8_t*, dctComponentLimit> planes{};
    for (std::size_t i = 0; i < frame.components.size(); ++i) {
        planes[i] = upsampler_->row(*strips_, i, row_);
    }
    dctJoinRow(colour_, std::span(planes).first(frame.components.size()), frame.width,
               pixels_.data());
    ++row_;
    return std::span(pixels_).first(frame.width * frame.components.size());
}

void DctDecoder::skipRest() {
    finish();
    phase_ = Phase::ended;
}

} // namespace corvane
