// The objects of a page that is saved.
#include "output/primitives.h"
#include "output/xref.h"
#include "writer/art/works.h"
#include "writer/page/page_object.h"
#include "writer/update/update.h"

namespace corvane {

std::int32_t pageWrite(DocumentCache& cache, const UpdatePlan& plan) {
    Filter& output = *cache.output;
    const auto [content, length] = plan.numbers;

    const std::int32_t contentPlace = markFilter(output);
    touchXRef(output, content, 0);
    objectOutput(output, content, 0);
    stringOutput(output, "<<\r/Length ");
    referenceOutput(output, length, 0);
    stringOutput(output, ">>\rstream\r");
    const std::int32_t bytes = documentWorks(cache, plan.geometry.placement);
    // The line end before "endstream" does not count.
    stringOutput(output, "\rendstream\rendobj\r");

    touchXRef(output, length, 0);
    objectOutput(output, length, 0);
    integerOutput(output, bytes);
    stringOutput(output, "\rendobj\r");

    writePageObject(cache, plan.page, plan.geometry,
                    {.contents = {{.number = content, .generation = 0, .place = contentPlace}},
                     .resources = nullptr,
                     .origin = plan.origin,
                     .artwork = plan.artwork});
    return bytes;
}

} // namespace corvane
