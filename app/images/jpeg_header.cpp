#include "app/images/jpeg_header.h"

#include "app/images/budget.h"
#include "app/images/image_error.h"

namespace corvane {

namespace {

[[noreturn]] void refuseKind() {
    throw ImageError("is a JPEG of a kind that pages cannot hold");
}

JpegLead leadOf(const ByteSource& file) {
    SourceStream stream(file);
    return readJpegLead([&](std::span<std::byte> block) { return stream.read(block); },
                        image_budget::jpegLead);
}

ImageColours coloursOf(std::int32_t components) {
    switch (components) {
    case 1:
        return ImageColours::gray;
    case 3:
        return ImageColours::rgb;
    case 4:
        return ImageColours::cmyk;
    default:
        refuseKind();
    }
}

} // namespace

JpegHeader readJpegHeader(const ByteSource& file) {
    const JpegLead lead = leadOf(file);
    if (!lead.frame || lead.frame->width == 0 || lead.frame->height == 0) {
        throw ImageError("is damaged (its header cannot be read)");
    }
    if (!lead.frame->isUsual()) {
        refuseKind();
    }
    JpegHeader header;
    header.facts.coding = ImageCoding::jpeg;
    header.facts.width = lead.frame->width;
    header.facts.height = lead.frame->height;
    header.facts.colours = coloursOf(lead.frame->components);
    header.facts.isInverted = lead.hasKnownTransform && header.facts.colours == ImageColours::cmyk;
    header.orientation = lead.orientation;
    header.scan = lead.scan;
    return header;
}

Orientation exifOrientation(const ByteSource& file) {
    return leadOf(file).orientation;
}

} // namespace corvane
