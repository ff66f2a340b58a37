// Real numbers as objects, more exactly than 16.16 (extended profile).
//
// A fixed object has no storage, so its `size` is free: it holds what 16.16 leaves over, in 2^-32.
// A number that 16.16 cannot hold becomes an integer, without its fraction.
#pragma once

#include "objects/object.h"

namespace corvane {

Object objectOfReal(double value);

/// Of an integer or fixed object; another type raises `range`.
double realOfObject(const Object& object);

} // namespace corvane
