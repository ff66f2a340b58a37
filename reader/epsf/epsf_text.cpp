#include "reader/epsf/epsf_text.h"

#include "host/parameters.h"
#include "host/resources.h"
#include "output/primitives.h"
#include "resources/resources.h"
#include "runtime/exception.h"

#include <string>
#include <vector>

namespace corvane::classic {

namespace {

void blockOutput(Filter& stream, std::int16_t number) {
    const Handle text = GetResource(fourCharacters("TEXT"), number);
    if (!text) {
        failException(Exception::io);
    }
    const auto size = static_cast<std::size_t>(GetHandleSize(text));
    const std::string copy(static_cast<const char*>(static_cast<const void*>((*text).get())), size);
    ReleaseResource(text);
    stringOutput(stream, copy);
}

void pairOutput(Filter& stream, std::int32_t first, std::int32_t second) {
    integerOutput(stream, first);
    integerOutput(stream, second);
}

void definition(Filter& stream, std::string_view name, std::int32_t value) {
    stringOutput(stream, name);
    integerOutput(stream, value);
    stringOutput(stream, "def\r");
}

void titleOutput(Filter& stream, std::string_view title) {
    constexpr std::size_t longest = 60; // characters become four at most, of a line's 255
    stringOutput(stream, "%%Title: (");
    const std::string_view part = title.substr(0, longest);
    const std::vector<std::uint8_t> bytes(part.begin(), part.end());
    bufferOutput(stream, bytes);
    stringOutput(stream, ")\r%%CreationDate: (");
    dateOutput(stream);
    stringOutput(stream, ") (");
    timeOutput(stream);
    stringOutput(stream, ")\r");
}

} // namespace

void beginEPSFoutput(Filter& stream, const EpsfHead& head) {
    stringOutput(stream, "%!PS-Adobe-3.0 EPSF-3.0\r%%Creator: Corvane Junior 1.1\r");
    titleOutput(stream, head.title);
    stringOutput(stream, "%%BoundingBox: 0 0 ");
    pairOutput(stream, head.columns, head.rows);
    stringOutput(stream, "\r%%SuppressDotGainCompensation\r%%EndComments\r"
                         "%%BeginProlog\r%%EndProlog\r%%BeginSetup\r%%EndSetup\r%ImageData: ");
    pairOutput(stream, head.columns, head.rows);
    stringOutput(stream, head.isMask ? "1 1 0 " : "8 3 1 ");
    integerOutput(stream, head.isMask ? (head.columns + 7) / 8 : head.columns);
    blockOutput(stream, epsfImageText);
    definition(stream, "/rows ", head.rows);
    definition(stream, "/cols ", head.columns);
    if (head.isMask) {
        colorOutput(stream, head.fill);
        blockOutput(stream, epsfMaskText);
    }
    stringOutput(stream, "%%BeginBinary: ");
    integerOutput(stream, head.rows * head.columns * 4);
    stringOutput(stream, "\rbeginimage\r");
}

void endEPSFoutput(Filter& stream) {
    stringOutput(stream, "\r%%EndBinary\rgrestore end\rgrestore\r%%Trailer\r%%EOF\r");
}

} // namespace corvane::classic
