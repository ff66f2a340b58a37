// The extensions for Inkscape, installed into a profile of the test's own.
#pragma once

#include "tests/app/cli/saving.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

class Extensions : public Saving {
protected:
    /// Nothing of the person's own Inkscape is seen, no display and no session bus.
    test::Process alone(test::Process process) const {
        for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
                 {"INKSCAPE_PROFILE_DIR", profile()},
                 {"DISPLAY", ""},
                 {"WAYLAND_DISPLAY", ""},
                 {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}}) {
            process.environment.emplace_back(name, value);
        }
        return process;
    }

    test::Outcome extensions(const std::string& option) const {
        return test::run(alone(process({"inkscape", option})));
    }

    std::string profile() const { return (folder_.path() / "profile").string(); }
    std::filesystem::path place() const {
        return std::filesystem::path(profile()) / "extensions" / "corvane";
    }
    /// Names of the files that are installed, sorted.
    std::vector<std::string> installed() const {
        std::vector<std::string> names;
        if (std::filesystem::exists(place())) {
            for (const auto& entry : std::filesystem::directory_iterator(place())) {
                names.push_back(entry.path().filename().string());
            }
        }
        std::ranges::sort(names);
        return names;
    }
    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }
};

} // namespace corvane
