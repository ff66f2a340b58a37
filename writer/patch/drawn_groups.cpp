#include "writer/patch/drawn_groups.h"

#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "writer/art/path_works.h"
#include "writer/crypt/sealed.h"
#include "writer/patch/art_extent.h"
#include "writer/patch/text_sink.h"

#include <algorithm>
#include <memory>
#include <span>

namespace corvane {

namespace {

struct Drawing {
    TextSink sink;
    Walk walk{sink};
};

Fixed limited(std::int64_t value) {
    return static_cast<Fixed>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
}

} // namespace

std::string_view DrawnGroups::add(Art art) {
    const auto drawing = std::make_unique<Drawing>();
    artWorks(drawing->walk, art);
    drawing->walk.text.flush();
    const ArtExtent extent = extentOf(art);
    const std::int32_t number = nextIdentity();
    groups_.push_back({number,
                       drawing->sink.take(),
                       {limited(extent.left), limited(extent.top), limited(extent.right),
                        limited(extent.bottom)}});
    return resources_.add(ResourceCategory::object, number, 0);
}

void writeGroup(DocumentCache& cache, const DrawnGroup& group) {
    Filter& output = *cache.output;
    touchXRef(output, group.number, 0);
    objectOutput(output, group.number, 0);
    stringOutput(output, "<<\r/Type /XObject /Subtype /Form /BBox [ ");
    rectOutput(output, group.box);
    stringOutput(output, "]\r/Group << /S /Transparency >> /Resources << >> /Length ");
    const FileCipher cipher = newStreamCipher(cache);
    integerOutput(output, static_cast<std::int32_t>(
                              sealedLength(cipher, static_cast<std::int64_t>(group.text.size()))));
    stringOutput(output, ">>\rstream\r");
    Chain sealed(&output);
    linkSeal(cache, sealed, cipher, {group.number, 0});
    writeFilter(*sealed.top(), std::as_bytes(std::span(group.text)));
    sealed.unlink();
    stringOutput(output, "\rendstream\rendobj\r");
}

} // namespace corvane
