#include "app/cli/edit/editor.h"

#include "app/cli/edit/desktop_choice.h"
#include "app/cli/edit/words.h"
#include "app/cli/fault.h"
#include "app/cli/programs/installed_program.h"

#include <cstdlib>

namespace corvane {

namespace {

[[noreturn]] void refuse(const std::string& sentence) {
    throw Failure({code::editor, sentence});
}

/// `source` says who named it.
Editor namedEditor(const std::string& line, const char* source) {
    if (const std::string whole = installedProgram(line); !whole.empty()) {
        return {line, {whole}}; // a path with blanks
    }
    auto words = commandWords(line);
    if (!words || words->empty()) {
        refuse(std::string(source) + " is no command line (" + line + "); give a program's name");
    }
    std::string program = installedProgram(words->front());
    if (program.empty()) {
        refuse("the editor \"" + words->front() + "\" is not installed; name another with " +
               source);
    }
    std::string name = words->front();
    words->front() = std::move(program);
    return {std::move(name), std::move(*words)};
}

} // namespace

std::vector<std::string> Editor::words(const std::string& file) const {
    if (entry_) {
        return openingWords(*entry_, file).value_or(std::vector<std::string>());
    }
    std::vector<std::string> words = words_;
    words.push_back(file);
    return words;
}

Editor chooseEditor(const std::string& wish) {
    if (!wish.empty()) {
        return namedEditor(wish, "--editor");
    }
    const char* const variable = std::getenv("CORVANE_EDITOR");
    if (variable != nullptr && *variable != '\0') {
        return namedEditor(variable, "CORVANE_EDITOR");
    }
    if (auto entry = chosenForSvg(desktopFolders())) {
        return Editor(std::move(*entry));
    }
    if (std::string path = installedProgram("inkscape"); !path.empty()) {
        return {"Inkscape", {std::move(path)}};
    }
    refuse("there is no vector editor that this machine opens SVG with; install one, such as "
           "Inkscape, or set CORVANE_EDITOR to the command that starts yours");
}

} // namespace corvane
