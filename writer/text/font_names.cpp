#include "writer/text/font_names.h"

#include "runtime/exception.h"

namespace corvane {

std::string_view FontResourceNames::of(const PageFont& font) {
    if (const std::string_view name = ofPage_->nameOf(*cache_, *names_, font); !name.empty()) {
        return name;
    }
    const ObjectIdentifier object = ofPage_->objectOf(font);
    if (object.number == 0) {
        failException(Exception::unpatchable);
    }
    return resources_.add(ResourceCategory::font, object.number, object.generation);
}

} // namespace corvane
