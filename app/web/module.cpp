// What the library of the page exports.
#include "app/cli/web_module.h"
#include "app/web/serve.h"

extern "C" __attribute__((visibility("default"))) void corvane_serve(corvane::ServeCall& call) {
    corvane::serve(call);
}
