#include "app/cli/session.h"

#include "app/cli/fault.h"
#include "app/cli/files/input_file.h"
#include "app/cli/interrupt.h"
#include "app/cli/text.h"
#include "host/toolbox.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace corvane {

namespace {

[[noreturn]] void refusePlugin() {
    throw Failure({code::io, "the plug-in does not read PDF files; install the one that came with "
                             "this program"});
}

std::string hexadecimal(std::uint32_t value) {
    std::array<char, 8> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    return "0x" + std::string(digits.data(), end);
}

} // namespace

Session::Session(const Arguments& arguments, Report& report, Document& document)
    : Session(arguments, report, document, {requireReadable(arguments.file), Action::read}) {}

Session::Session(const Arguments& arguments, Report& report, Document& document,
                 const SessionFile& file)
    : wantedPage_(arguments.page), report_(report), plugin_(pluginPath()),
      listener_(arguments, report), scope_(document, interrupted) {
    if (makeFileSpecification(file.path, *file_) != noErr) {
        refuseFile("there is no such place");
    }
    block_->callbacks = table_.ref();
    block_->action = file.action;
    block_->file = file_.ref();
}

Session::~Session() {
    DisposeHandle(block_->state.as<Ptr>());
}

void Session::begin() {
    if (answer(Selector::identify) != resultIdentity) {
        refusePlugin();
    }
    call(Selector::registerFormat);
    if (std::ranges::find(scope_.formats(), fourCharacters("PDF "), &FileFormat::type) ==
        scope_.formats().end()) {
        refusePlugin();
    }
    call(Selector::check);
}

void Session::call(Selector selector) {
    const std::uint32_t result = answer(selector);
    if (report_.error) {
        throw Failure(explained(*report_.error));
    }
    // What is on the disk already is not cancelled any more.
    const bool isDone = result == 0 && changesFile(selector);
    if (result == resultStopped || (interrupted() && !isDone)) {
        throw Failure({code::cancelled, "cancelled"});
    }
    if (result == resultNotFormat) {
        throw Failure({code::notPdf, "the file is not a PDF (its first 1,000 bytes hold no "
                                     "\"%PDF-\"); name a PDF file"});
    }
    if (result != 0) {
        throw Failure({code::host, "the plug-in gave an answer that nobody knows (" +
                                       hexadecimal(result) +
                                       "); install program and plug-in of one "
                                       "version"});
    }
}

bool Session::changesFile(Selector selector) const {
    return selector == Selector::revert ||
           (selector == Selector::go && block_->action == Action::write);
}

/// The plug-in has one sentence for a code; here it is known which page was asked for, and why a
/// slot failed.
Fault Session::explained(Fault fault) const {
    if (report_.file && wantedPage_ > report_.file->facts.pages) {
        fault.sentence = "there is no page " + std::to_string(wantedPage_) + " in a file of " +
                         counted(report_.file->facts.pages, "page") + "; name another with --page";
    } else if ((fault.code == code::host || fault.code == code::unpatchable) &&
               !scope_.failure().empty()) {
        fault.sentence += " (" + scope_.failure() + ")";
    }
    return fault;
}

std::uint32_t Session::answer(Selector selector) {
    block_->selector = selector;
    const std::uint32_t result = plugin_.call(&*block_);
    listener_.clearProgress();
    if (listener_.ranOutOfMemory()) {
        throw std::bad_alloc();
    }
    return result;
}

} // namespace corvane
