#include "tests/support/drawing.h"

#include "tests/support/process.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace corvane::test {

namespace {

std::string pathOf(std::string_view program) {
    const char* const search = std::getenv("PATH");
    std::istringstream folders(search == nullptr ? "" : search);
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string path = folder + "/" + std::string(program);
        if (access(path.c_str(), X_OK) == 0) {
            return path;
        }
    }
    return {};
}

/// Pixels of which a component differs by more than `tolerance`.
template <class Differs>
double share(const Drawing& drawing, Differs differs) {
    std::size_t count = 0;
    for (std::size_t i = 0; i + 2 < drawing.samples.size(); i += 3) {
        count += differs(i) || differs(i + 1) || differs(i + 2) ? 1 : 0;
    }
    return static_cast<double>(3 * count) / static_cast<double>(drawing.samples.size());
}

} // namespace

bool isInstalled(std::string_view program) {
    return !pathOf(program).empty();
}

Drawing draw(const std::filesystem::path& pdf, int page) {
    Process process;
    process.words = {
        pathOf("mutool"),    "draw", "-q", "-F", "ppm", "-o", "-", "-r", "72", pdf.string(),
        std::to_string(page)};
    const Outcome outcome = run(process);
    std::istringstream header(outcome.output);
    std::string magic;
    int most = 0;
    Drawing drawing;
    header >> magic >> drawing.width >> drawing.height >> most;
    const std::size_t size = 3 * drawing.width * drawing.height;
    if (outcome.status != 0 || magic != "P6" || most != 255 || outcome.output.size() < size) {
        throw std::runtime_error(pdf.string() + " cannot be drawn: " + outcome.errors);
    }
    drawing.samples.assign(outcome.output.end() - static_cast<std::ptrdiff_t>(size),
                           outcome.output.end());
    return drawing;
}

double difference(const Drawing& one, const Drawing& other, int tolerance) {
    if (one.width != other.width || one.height != other.height) {
        return 1;
    }
    return share(one, [&](std::size_t i) {
        return std::abs(int{one.samples[i]} - int{other.samples[i]}) > tolerance;
    });
}

double ink(const Drawing& drawing) {
    return share(drawing, [&](std::size_t i) { return drawing.samples[i] != 255; });
}

} // namespace corvane::test
