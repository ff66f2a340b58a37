#include "objects/family.h"

#include "objects/identity.h"
#include "objects/resource_list.h"

#include <string>

namespace corvane {

namespace {

detail::ResourceList<Family> familyList;

} // namespace

void openFamily() {
    closeFamily();
}

std::string_view appendFamily(std::string_view fontName, FontTechnology technology) {
    const Ref<Family> known = familyList.find(
        [fontName](const Family& family) { return fontName == family.fontName.get(); });
    if (known) {
        return resourceNameFamily(*known);
    }
    const std::string text = "F" + std::to_string(familyList.count() + 1);
    BlockOwner resourceCopy = detail::copyOfText(static_cast<char>(text.size()) + text);
    BlockOwner fontCopy = detail::copyOfText(fontName);
    Family record;
    record.number = nextIdentity();
    record.resourceName = resourceCopy.get().as<char>();
    record.fontName = fontCopy.get().as<char>();
    record.technology = technology;
    const Ref<Family> family = familyList.add(record);
    resourceCopy.release();
    fontCopy.release();
    return resourceNameFamily(*family);
}

std::int32_t countFamily() {
    return familyList.count();
}

std::string_view resourceNameFamily(const Family& family) {
    const char* name = family.resourceName.get();
    return {name, std::size_t{1} + static_cast<unsigned char>(*name)};
}

void forallFamily(const std::function<void(const Family&)>& procedure) {
    familyList.find([&procedure](const Family& family) {
        procedure(family);
        return false;
    });
}

void closeFamily() {
    familyList.close([](const Family& family) {
        freeRecord(family.resourceName);
        freeRecord(family.fontName);
    });
}

} // namespace corvane
