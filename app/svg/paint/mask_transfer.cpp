#include "app/svg/paint/mask_transfer.h"

#include "app/svg/markup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// The first and the last value where all others lie on the line between them.
std::vector<double> shortened(std::span<const double> transfer) {
    constexpr double notSeen = 1.0 / 1024;
    const double first = transfer.front();
    const double step = (transfer.back() - first) / static_cast<double>(transfer.size() - 1);
    bool isLine = true;
    for (std::size_t i = 0; i < transfer.size(); ++i) {
        isLine = isLine && std::abs(first + step * static_cast<double>(i) - transfer[i]) < notSeen;
    }
    return isLine ? std::vector{first, transfer.back()}
                  : std::vector(transfer.begin(), transfer.end());
}

} // namespace

void writeTransferValues(TextOutput& out, std::string_view name, std::span<const double> transfer) {
    constexpr double digits = 1e4;
    out.text(" ");
    out.text(name);
    out.text("=\"");
    std::string_view separator;
    for (const double value : shortened(transfer)) {
        out.text(std::exchange(separator, " "));
        writeDouble(out, std::round(value * digits) / digits);
    }
    out.text("\"");
}

void writeTransfer(TextOutput& out, std::span<const double> transfer, bool changesLight) {
    constexpr std::array<std::string_view, 4> functions{"R", "G", "B", "A"};
    // Light is that of colours as they are written.
    writePlainAttribute(out, "color-interpolation-filters", "sRGB");
    out.text("><feComponentTransfer>");
    for (const std::string_view function : functions) {
        if ((function != "A") != changesLight) {
            continue;
        }
        out.text("<feFunc");
        out.text(function);
        writePlainAttribute(out, "type", "table");
        writeTransferValues(out, "tableValues", transfer);
        out.text("/>");
    }
    out.text("</feComponentTransfer>");
}

} // namespace corvane
