// What the server says to a request.
#pragma once

#include "app/cli/fault.h"
#include "toolbox/descriptor.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

struct Answer {
    int status = 200;
    std::string type = "application/json";
    std::string body = {};
    std::shared_ptr<const Descriptor> file = {}; ///< its bytes are the body
    std::vector<std::pair<std::string, std::string>> headers = {};
};

/// {"error":{"code":19,"sentence":"..."}}
Answer refusal(int status, const Fault& fault);

} // namespace corvane
