#include "app/cli/messages.h"

#include "app/cli/text.h"

#include <cstdio>

namespace corvane {

namespace {

std::string faultLine(const std::string& file, const char* kind, const Fault& fault) {
    return plainLine(file + ": " + kind + " " + std::to_string(fault.code) + ": " + fault.sentence);
}

} // namespace

std::string errorLine(const std::string& file, const Fault& fault) {
    if (fault.code == code::cancelled) {
        return plainLine(file + ": " + fault.sentence);
    }
    return faultLine(file, "error", fault);
}

std::string warningLine(const std::string& file, const Fault& fault) {
    return faultLine(file, "warning", fault);
}

std::string plainLine(const std::string& sentence) {
    return "corvane: " + terminalText(sentence) + "\n";
}

void complain(const std::string& line) {
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
}

void note(const Arguments& arguments, const std::string& sentence) {
    announce(arguments, arguments.file + ": " + sentence);
}

void announce(const Arguments& arguments, const std::string& sentence) {
    if (!arguments.quiet && !arguments.json) {
        complain(plainLine(sentence));
    }
}

void tell(const Arguments& arguments, const Report& report) {
    if (!arguments.quiet && !arguments.json) {
        for (const Fault& warning : report.warnings) {
            complain(warningLine(arguments.file, warning));
        }
    }
    const bool factsAreHere = arguments.json && outputIsStandard(arguments);
    if (report.error && !factsAreHere) {
        complain(errorLine(arguments.file, *report.error));
    }
}

bool outputIsStandard(const Arguments& arguments) {
    return arguments.command == Command::open && arguments.output == "-";
}

} // namespace corvane
