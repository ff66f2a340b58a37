// Inline images: finding where their data end.
#pragma once

#include "filters/token.h"

namespace corvane {

/// Goes past the data of an inline image, up to its "EI", which is the next token then. The data
/// may hold the two letters by chance: they are believed between white space and with text behind
/// them.
void skipImageData(TokenFilter& tokens);

} // namespace corvane
