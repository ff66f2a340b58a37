#include "app/cli/json.h"
#include "app/cli/report.h"
#include "app/cli/text.h"

namespace corvane {

namespace {

/// A path: as text, and byte by byte where it is not text.
void addPath(JsonWriter& json, std::string_view name, std::string_view path) {
    json.name(name).text(path);
    if (!isUtf8(path)) {
        json.name(std::string(name) + "Bytes").text(hexadecimalText(path));
    }
}

void addFault(JsonWriter& json, const Fault& fault) {
    json.openObject().name("code").integer(fault.code);
    json.name("sentence").text(fault.sentence).closeObject();
}

/// Left, bottom, right, top, in points.
void addBox(JsonWriter& json, std::string_view name, const Box& box) {
    json.name(name).openArray();
    json.real(box.left).real(box.bottom).real(box.right).real(box.top).closeArray();
}

void addPage(JsonWriter& json, const PageFacts& page) {
    json.openObject().name("page").integer(page.page);
    json.name("object").integer(page.objectNumber);
    json.name("generation").integer(page.generation);
    addBox(json, "mediaBox", page.mediaBox);
    addBox(json, "cropBox", page.cropBox);
    json.name("rotate").integer(page.rotate);
    json.name("userUnit").real(page.userUnit).closeObject();
}

void addOpened(JsonWriter& json, const Report& report) {
    json.name("page").integer(report.source.page);
    if (report.output.empty()) {
        json.name("output").null();
    } else {
        addPath(json, "output", report.output);
    }
    json.name("omitted").openObject();
    for (const auto& [kind, count] : report.source.omitted) {
        json.name(omissionName(kind)).integer(count);
    }
    json.closeObject();
}

void addFile(JsonWriter& json, const FileFacts& file) {
    json.name("version").text(file.version);
    json.name("length").integer(file.facts.length);
    json.name("pageCount").integer(file.facts.pages);
    json.name("objects").integer(file.facts.objects);
    json.name("updates").integer(file.facts.updates);
}

} // namespace

std::string reportJson(const Arguments& arguments, const Report& report) {
    JsonWriter json;
    json.openObject().name("command").text(commandName(arguments.command));
    addPath(json, "file", arguments.file);
    json.name("profile").text(profileName(arguments.profile));
    if (report.file) {
        addFile(json, *report.file);
    }
    if (arguments.command == Command::open) {
        addOpened(json, report);
    }
    if (arguments.command == Command::info) {
        json.name("pages").openArray();
        for (const PageFacts& page : report.pages) {
            addPage(json, page);
        }
        json.closeArray();
    }
    json.name("warnings").openArray();
    for (const Fault& warning : report.warnings) {
        addFault(json, warning);
    }
    json.closeArray().name("error");
    if (report.error) {
        addFault(json, *report.error);
    } else {
        json.null();
    }
    return json.closeObject().result() + "\n";
}

} // namespace corvane
