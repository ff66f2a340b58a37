#include "writer/image/mask_works.h"

#include "filters/coding/base85.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "runtime/exception.h"
#include "writer/image/mask_object.h"
#include "writer/page/stream_object.h"

#include <array>

namespace corvane {

void referMask(DocumentCache& cache, const Mask& mask) {
    nameOutput(*cache.output, mask.resourceName.get());
    referenceOutput(*cache.output, mask.number, mask.generation);
}

void writeMask(DocumentCache& cache, const Mask& mask) {
    if (!photoMask(cache, mask) && !quickMask(cache, mask) && !emptyMask(cache, mask)) {
        failException(Exception::io);
    }
}

bool emptyMask(DocumentCache& cache, const Mask& mask) {
    constexpr std::int32_t side = 8;
    beginMask(cache, mask, side, side, 1);
    stringOutput(*cache.output, "/ColorSpace /DeviceGray\r");
    storeMask(cache, std::array<std::byte, side>{});
    return true;
}

void maskEntry(Filter& output, std::string_view key, std::int32_t value) {
    stringOutput(output, key);
    integerOutput(output, value);
    stringOutput(output, "\r");
}

void beginMask(DocumentCache& cache, const Mask& mask, std::int32_t width, std::int32_t height,
               std::int32_t bits) {
    Filter& output = *cache.output;
    touchXRef(output, mask.number, mask.generation);
    objectOutput(output, mask.number, mask.generation);
    stringOutput(output, "<<\r/Type /XObject\r/Subtype /Image\r/Name ");
    nameOutput(output, mask.resourceName.get());
    stringOutput(output, "\r");
    maskEntry(output, "/Width ", width);
    maskEntry(output, "/Height ", height);
    maskEntry(output, "/BitsPerComponent ", bits);
}

void storeMask(DocumentCache& cache, std::span<const std::byte> bytes) {
    Filter& output = *cache.output;
    const std::int32_t length = nextIdentity();
    stringOutput(output, "/Length ");
    referenceOutput(output, length, 0);
    stringOutput(output, "/Filter [ /ASCII85Decode ]\r>>\rstream\r");
    const std::int32_t start = markFilter(output);
    Chain coded(&output);
    coded.link(setupMangle(AsciiMode::write));
    writeFilter(*coded.top(), bytes);
    coded.unlink();
    const std::int32_t count = markFilter(output) - start;
    stringOutput(output, "\rendstream\rendobj\r");
    writeLength(cache, length, count);
}

} // namespace corvane
