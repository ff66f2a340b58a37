#include "toolbox/state.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace corvane {

namespace {

ToolboxState* current = nullptr;

/// Never destroyed: blocks are disposed of by destructors that run at the very end.
union Everlasting {
    Everlasting() : state() {}
    ~Everlasting() {}
    ToolboxState state;
};

void enter(ToolboxState* state) {
    current = state;
    zoneBase = state != nullptr ? state->zone.base() : nullptr;
}

} // namespace

std::byte* zoneBase = nullptr;

std::int64_t defaultZoneLimit() {
    constexpr std::int64_t usual = 1024;
    constexpr std::int64_t most = 4000;
    constexpr std::int64_t mebibyte = 1 << 20;
    std::int64_t wanted = usual;
    if (const char* variable = std::getenv("CORVANE_ZONE_MB"); variable != nullptr) {
        const std::string_view text(variable);
        std::int64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && end == text.data() + text.size() && value >= 1 &&
            value <= most) {
            wanted = value;
        }
    }
    return wanted * mebibyte;
}

ToolboxState& toolboxState() {
    if (current == nullptr) [[unlikely]] {
        static Everlasting everlasting;
        enter(&everlasting.state);
    }
    return *current;
}

ToolboxScope::ToolboxScope(std::int64_t zoneLimit) : state_(zoneLimit), outer_(current) {
    enter(&state_);
}

ToolboxScope::~ToolboxScope() {
    enter(outer_);
}

void setHostExtension(const HostExtension* extension) {
    toolboxState().extension = extension;
}
const HostExtension* hostExtension() {
    return toolboxState().extension;
}

void setDialogFront(DialogFront* front) {
    toolboxState().front = front;
}
DialogFront* dialogFront() {
    return toolboxState().front;
}

} // namespace corvane
