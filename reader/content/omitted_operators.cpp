// Widths of glyphs: read past.
#include "reader/content/content_operators.h"

namespace corvane {

void charWidthOperator(Interpreter&) {}

void cacheDeviceOperator(Interpreter&) {}

} // namespace corvane
