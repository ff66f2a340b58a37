#include "app/web/http/answer.h"

#include "app/cli/report/json.h"

namespace corvane {

Answer refusal(int status, const Fault& fault) {
    JsonWriter json;
    json.openObject().name("error").openObject().name("code").integer(fault.code);
    json.name("sentence").text(fault.sentence).closeObject().closeObject();
    return {.status = status, .body = json.result()};
}

} // namespace corvane
