// Which program the person draws with.
#pragma once

#include "app/cli/edit/desktop_entry.h"

#include <optional>
#include <string>
#include <vector>

namespace corvane {

class Editor {
public:
    /// A command line of the person: the file goes behind it.
    Editor(std::string name, std::vector<std::string> words)
        : name_(std::move(name)), words_(std::move(words)) {}
    /// A program that the desktop knows.
    explicit Editor(DesktopEntry entry) : name_(entry.name), entry_(std::move(entry)) {}

    const std::string& name() const { return name_; }

    /// What opens `file`, an absolute path: the program's path, then its arguments.
    std::vector<std::string> words(const std::string& file) const;

private:
    std::string name_;
    std::vector<std::string> words_;
    std::optional<DesktopEntry> entry_;
};

/// The editor in `wish` (`--editor`), else in CORVANE_EDITOR, else the desktop's choice for SVG,
/// else Inkscape. Raises `Failure` where there is none, or it is not installed.
Editor chooseEditor(const std::string& wish);

} // namespace corvane
