// The commands that only look at a file: `info` and `check`.
#include "app/cli/commands/commands.h"

#include "app/artwork/document.h"
#include "app/cli/files/output.h"
#include "app/cli/messages.h"
#include "app/cli/session.h"
#include "app/images/png_writer.h"

#include <cstddef>
#include <system_error>
#include <vector>

namespace corvane {

namespace {

void inspect(const Arguments& arguments, Report& report, Selector selector) {
    Document document;
    document.expectImport(); // of the page whose images are listed
    Session session(arguments, report, document);
    session.begin();
    session.call(selector);
}

/// Colours of a thumbnail as PNG has them: without the byte in front of each.
std::vector<std::byte> colours(const PagePicture& thumbnail) {
    std::vector<std::byte> colours;
    colours.reserve(thumbnail.pixels.size() / 4 * 3);
    for (std::size_t i = 0; i + 4 <= thumbnail.pixels.size(); i += 4) {
        const auto pixel = thumbnail.pixels.begin() + static_cast<std::ptrdiff_t>(i);
        colours.insert(colours.end(), pixel + 1, pixel + 4);
    }
    return colours;
}

void writeThumbnail(const Arguments& arguments, Report& report) {
    if (!report.thumbnail) {
        throw Failure({code::io, "the file has no small picture of page " +
                                     std::to_string(arguments.page) +
                                     ", or none that can be read"});
    }
    const PagePicture& thumbnail = *report.thumbnail;
    OutputFile file(outputTarget(arguments.thumbnail, arguments.file, true));
    PngWriter png(
        {.width = thumbnail.width, .height = thumbnail.height, .colours = ImageColours::rgb}, file);
    std::error_code error = png.add(colours(thumbnail));
    error = error ? error : png.end();
    file.commit(error);
    report.output = arguments.thumbnail;
    note(arguments, "the small picture of page " + std::to_string(arguments.page) + " is in " +
                        arguments.thumbnail);
}

} // namespace

void runInfo(const Arguments& arguments, Report& report) {
    inspect(arguments, report, Selector::info);
    if (!arguments.thumbnail.empty()) {
        writeThumbnail(arguments, report);
    } else if (!arguments.json) {
        printOutput(infoText(arguments.file, report), arguments.file);
    }
}

void runCheck(const Arguments& arguments, Report& report) {
    inspect(arguments, report, Selector::diagnose);
    if (!arguments.json) {
        printOutput(checkText(arguments.file, report), arguments.file);
    }
}

} // namespace corvane
