#include "writer/page/stream_object.h"

#include "output/primitives.h"
#include "output/xref.h"
#include "writer/crypt/sealed.h"
#include "writer/crypt/sealed_output.h"

#include <span>

namespace corvane {

std::int64_t finishStream(DocumentCache& cache, std::int32_t number, std::string_view data) {
    Filter& output = *cache.output;
    const FileCipher cipher = newStreamCipher(cache);
    const std::int64_t length = sealedLength(cipher, static_cast<std::int64_t>(data.size()));
    stringOutput(output, "/Length ");
    integerOutput(output, static_cast<std::int32_t>(length));
    stringOutput(output, ">>\rstream\r");
    Chain sealed(&output);
    linkSeal(cache, sealed, cipher, {number, 0});
    writeFilter(*sealed.top(), std::as_bytes(std::span(data)));
    sealed.unlink();
    // The line end before "endstream" does not count.
    stringOutput(output, "\rendstream\rendobj\r");
    return length;
}

void writeLength(DocumentCache& cache, std::int32_t number, std::int32_t length) {
    Filter& output = *cache.output;
    touchXRef(output, number, 0);
    objectOutput(output, number, 0);
    integerOutput(output, length);
    stringOutput(output, "\rendobj\r");
}

} // namespace corvane
