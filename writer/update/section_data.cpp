#include "writer/update/section_data.h"

#include <algorithm>
#include <cstdint>

namespace corvane {

namespace {

/// What `entryXRef` writes of a generation.
constexpr std::int32_t generationMask = 0xFFFF;

std::int32_t widthOf(std::int32_t value) {
    std::int32_t width = 0;
    for (; value > 0; value >>= 8) {
        ++width;
    }
    return width;
}

void append(std::string& bytes, std::int32_t value, std::int32_t width) {
    for (std::int32_t i = width - 1; i >= 0; --i) {
        bytes += static_cast<char>(value >> 8 * i & 0xFF);
    }
}

/// What the fields of an entry hold, behind the type.
struct Fields {
    std::int32_t type = 0;
    std::int32_t second = 0;
    std::int32_t third = 0;
};

Fields fieldsOf(const ListedObject& object) {
    if (object.place.isInStream()) {
        return {2, object.place.stream(), object.place.index()};
    }
    return {object.isFree ? 0 : 1, object.place.offset(), object.generation & generationMask};
}

} // namespace

SectionData sectionData(std::span<const ListedObject> objects) {
    std::int32_t secondWidth = 0;
    std::int32_t thirdWidth = 0;
    for (const ListedObject& object : objects) {
        const Fields fields = fieldsOf(object);
        secondWidth = std::max(secondWidth, widthOf(fields.second));
        thirdWidth = std::max(thirdWidth, widthOf(fields.third));
    }
    SectionData data;
    data.widths = "1 " + std::to_string(secondWidth) + " " + std::to_string(thirdWidth) + " ";
    for (const ListedObject& object : objects) {
        const Fields fields = fieldsOf(object);
        append(data.entries, fields.type, 1);
        append(data.entries, fields.second, secondWidth);
        append(data.entries, fields.third, thirdWidth);
    }
    for (const NumberRun& run : numberRuns(objects)) {
        data.index += std::to_string(run.first) + " " + std::to_string(run.objects.size()) + " ";
    }
    return data;
}

} // namespace corvane
