// Colours: gray as an amount of black, everything else as process colour.
#pragma once

#include "host/artwork.h"

namespace corvane {

/// The smallest of three amounts, and never more than 1.0.
Fixed minimumComponent(Fixed a, Fixed b, Fixed c);
/// The amount put into 0 to 1.0.
Fixed limitedComponent(Fixed amount);
/// How much of each ink goes when black takes over `black`.
Fixed underColorRemoval(Fixed black);
/// How much black ink stands for `black`.
Fixed blackGeneration(Fixed black);

/// Gray of a level from 0 (black) to 1.0 (white), not limited.
Colour grayColour(Fixed level);
/// Process colour from red, green and blue, limited.
Colour rgbColour(Fixed red, Fixed green, Fixed blue);
/// Process colour of exactly these amounts.
Colour cmykColour(Fixed cyan, Fixed magenta, Fixed yellow, Fixed black);

} // namespace corvane
