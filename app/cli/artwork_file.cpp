#include "app/cli/artwork_file.h"

#include "app/cli/fault.h"
#include "app/cli/interrupt.h"
#include "app/cli/terminal/lines.h"
#include "app/cli/text.h"
#include "host/utf8.h"
#include "toolbox/descriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <set>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace corvane {

namespace {

std::string shownName(const std::string& path) {
    return path == "-" ? "standard input" : path;
}

[[noreturn]] void refuse(const std::string& path, const std::string& reason,
                         const std::string& advice) {
    throw Failure({code::artwork, "the artwork in " + shownName(path) + " cannot be read (" +
                                      reason + "); " + advice});
}

[[noreturn]] void refuseMachine(const std::string& path) {
    const std::string reason = lastError().message();
    refuse(path, reason, "check its name, where it lies and its permissions");
}

void stopIfInterrupted() {
    if (interrupted()) {
        throw Failure({code::cancelled, "cancelled"});
    }
}

/// Opening a pipe waits for who writes to it, until the person asks to stop.
Descriptor openArtwork(const std::string& path) {
    if (path == "-") {
        return Descriptor(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    }
    while (true) {
        Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
        if (file || errno != EINTR || interrupted()) {
            return file;
        }
    }
}

std::string bytesOf(const std::string& path) {
    const Descriptor file = openArtwork(path);
    std::string bytes;
    std::array<char, 65536> block{};
    while (file && waitForInput(file.number())) {
        const ssize_t count = read(file.number(), block.data(), block.size());
        if (count == 0) {
            return bytes;
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            refuseMachine(path);
        }
        bytes.append(block.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (static_cast<std::int64_t>(bytes.size()) > artworkLimit()) {
            refuse(path, "it is larger than artwork may be", "raise the limit (CORVANE_ART_MB)");
        }
    }
    stopIfInterrupted();
    refuseMachine(path);
}

/// The last part of a name that is too long for a message, from the start of a character.
std::string shortened(std::string_view name) {
    constexpr std::size_t most = 80;
    if (name.size() <= most) {
        return std::string(name);
    }
    name.remove_prefix(name.size() - most);
    while (!name.empty() && decodeCharacter(name).length == 0) {
        name.remove_prefix(1);
    }
    return "..." + std::string(name);
}

} // namespace

SvgReading readArtwork(const std::string& path, Document& document, const ImageFolders& files,
                       ProgressLine& line, const OpenedPage* opened) {
    std::string bytes = bytesOf(path);
    if (bytes.starts_with("%PDF-")) {
        refuse(path, "it is a PDF", "name the artwork first, then the PDF");
    }
    try {
        const auto total = static_cast<std::int64_t>(bytes.size());
        const auto pause = [&](std::size_t done) {
            stopIfInterrupted();
            line.update(static_cast<std::int64_t>(done), total);
        };
        SvgReading reading = readSvg(std::move(bytes), document, pause, &files, opened);
        stopIfInterrupted();
        return reading;
    } catch (const SvgImageError& error) {
        refuse(path, error.what(), "put the image right, or take it out of the artwork");
    } catch (const SvgError& error) {
        refuse(path, error.what(), "repair it, or save it as SVG from an editor");
    } catch (const ArtworkError& error) {
        refuse(path, error.what(), "simplify it, or raise the limit (CORVANE_ART_MB)");
    }
}

std::string imageNames(const std::vector<SvgImage>& images) {
    constexpr std::size_t most = 8;
    std::vector<std::string> names;
    std::set<std::string_view> known;
    std::int64_t embedded = 0;
    for (const SvgImage& image : images) {
        embedded += image.embedded ? 1 : 0;
        if (!image.embedded && !image.href.empty() && known.insert(image.href).second &&
            names.size() <= most) {
            names.push_back(shortened(image.href));
        }
    }
    if (names.size() > most) {
        names.back() = "...";
    }
    if (embedded != 0) {
        names.push_back(std::to_string(embedded) + " embedded");
    }
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? " (" : ", ") + name;
    }
    return list.empty() ? list : list + ")";
}

} // namespace corvane
