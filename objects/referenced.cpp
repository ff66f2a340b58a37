#include "objects/referenced.h"

namespace corvane {

ObjectIdentifier referenced(const Object& object) {
    ObjectIdentifier identifier;
    if (typeObject(object) == ObjectType::reference) {
        referenceObject(object, identifier.number, identifier.generation);
    }
    return identifier;
}

} // namespace corvane
