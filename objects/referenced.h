// Which object a reference leads to.
#pragma once

#include "objects/object.h"
#include "objects/object_identifier.h"

namespace corvane {

/// Number 0 for what is no reference.
ObjectIdentifier referenced(const Object& object);

} // namespace corvane
