// Images from the samples that EPSF files hold.
#include "filters/coding/base85.h"
#include "filters/coding/dct.h"
#include "filters/coding/fax.h"
#include "filters/coding/hex.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "reader/syntax/utility.h"
#include "runtime/callbacks.h"
#include "runtime/exception.h"
#include "runtime/image_data.h"
#include "runtime/string.h"
#include "writer/art/placed_works.h"
#include "writer/image/mask_object.h"
#include "writer/image/mask_works.h"
#include "writer/page/stream_object.h"

#include <array>
#include <optional>
#include <vector>

namespace corvane {

namespace {

std::optional<ImageDataLine> findImageData(Filter& file) {
    std::array<char, 256> buffer{};
    while (readToLine(buffer, file)) {
        if (auto line = imageDataLine(viewString(buffer))) {
            return line;
        }
    }
    return std::nullopt;
}

/// Goes behind the line that starts so.
bool passStart(Filter& file, std::string_view start) {
    std::array<char, 256> buffer{};
    while (readToLine(buffer, file)) {
        if (leftString(start, viewString(buffer))) {
            return true;
        }
    }
    return false;
}

std::string_view spaceLine(const ImageDataLine& form) {
    if (form.bits == 1) {
        return "/ImageMask true\r";
    }
    switch (form.mode) {
    case 1:
        return "/ColorSpace /DeviceGray\r";
    case 3:
        return "/ColorSpace /DeviceRGB\r";
    case 4:
        return "/ColorSpace /DeviceCMYK\r";
    default:
        failException(Exception::structure);
    }
}

void writeFilters(Filter& output, const ImageDataLine& form) {
    if (form.bits == 1) {
        stringOutput(output, "/Filter [ /ASCII85Decode /CCITTFaxDecode ]\r"
                             "/DecodeParms [ null << /K 0 /Columns ");
        integerOutput(output, form.width);
        stringOutput(output, "/Rows ");
        integerOutput(output, form.height);
        stringOutput(output, ">> ]\r");
    } else {
        stringOutput(output, "/Filter [ /ASCII85Decode /DCTDecode ]\r"
                             "/DecodeParms [ null null ]\r");
    }
}

FilterOwner encoderOf(const ImageDataLine& form) {
    if (form.bits != 1) {
        return setupDiscrete(form.width, form.height, form.mode);
    }
    FaxParameters parameters;
    parameters.direction = 1;
    parameters.columns = form.width;
    parameters.rows = form.height;
    return setupFax(parameters);
}

/// A row of the file as the encoder takes it.
void interleave(const ImageDataLine& form, std::span<std::byte> row,
                std::span<const std::byte> planes) {
    const auto width = static_cast<std::size_t>(form.width);
    if (form.bits == 1) {
        return interleaveGray(row, planes, row.size());
    }
    switch (form.mode) {
    case 3:
        return interleaveRGB(row, planes, width);
    case 4:
        return interleaveCMYK(row, planes, width);
    default:
        return interleaveGray(row, planes, width);
    }
}

void writeRows(Filter& file, Filter& output, const ImageDataLine& form) {
    const ZoneCharge charge(static_cast<std::int64_t>(form.fileRow() + form.row()));
    std::vector<std::byte> planes(form.fileRow());
    std::vector<std::byte> row(form.row());
    for (std::int32_t y = 0; y < form.height; ++y) {
        if (callHost(slot::checkUserAbort)) {
            failException(Exception::cancelled);
        }
        if (readFilter(file, planes) < planes.size()) {
            failException(Exception::io);
        }
        interleave(form, row, planes);
        writeFilter(output, row);
    }
}

} // namespace

bool photoMask(DocumentCache& cache, const Mask& mask) {
    Chain file = openPlacedFile(mask.placed);
    const std::optional<ImageDataLine> form = findImageData(*file.top());
    if (!form || !form->isKnown() || !passStart(*file.top(), form->start)) {
        return false;
    }
    if (form->form == ImageDataForm::hexadecimal) {
        file.link(setupHex(AsciiMode::pastMarker));
    }
    Filter& output = *cache.output;
    beginMask(cache, mask, form->width, form->height, form->bits);
    stringOutput(output, spaceLine(*form));
    const std::int32_t length = nextIdentity();
    stringOutput(output, "/Length ");
    referenceOutput(output, length, 0);
    writeFilters(output, *form);
    stringOutput(output, ">>\rstream\r");
    const std::int32_t start = markFilter(output);
    Chain coded(&output);
    coded.link(setupMangle(AsciiMode::write));
    coded.link(encoderOf(*form));
    writeRows(*file.top(), *coded.top(), *form);
    coded.unlink();
    const std::int32_t count = markFilter(output) - start;
    stringOutput(output, "\rendstream\rendobj\r");
    writeLength(cache, length, count);
    return true;
}

} // namespace corvane
