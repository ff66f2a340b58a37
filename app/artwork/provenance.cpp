#include "app/artwork/provenance.h"

namespace corvane {

std::string_view omissionName(Omission kind) {
    switch (kind) {
    case Omission::text:
        return "text";
    case Omission::image:
        return "image";
    case Omission::form:
        return "form";
    case Omission::shading:
        return "shading";
    case Omission::other:
        break;
    }
    return "other";
}

} // namespace corvane
