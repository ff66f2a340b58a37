// What the library of the page exports.
#include "app/cli/web_module.h"
#include "app/web/serve.h"

extern "C" __attribute__((visibility("default"))) int
corvane_serve(const corvane::Arguments& arguments) {
    return corvane::serve(arguments);
}
