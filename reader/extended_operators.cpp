#include "reader/content_operators.h"
#include "reader/omissions.h"

namespace corvane {

OperatorResult shadingOperator(DocumentCache&) {
    noteOmission(Omission::shading);
    return 0;
}

OperatorResult invisibleOperator(DocumentCache&) {
    return 0;
}

} // namespace corvane
