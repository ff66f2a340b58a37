// The host's side of what the plug-in tells and asks while it works.
#pragma once

#include "app/cli/files/image_folder.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"
#include "app/cli/terminal/password.h"
#include "app/cli/terminal/progress.h"
#include "host/extension.h"
#include "host/front.h"

#include <optional>

namespace corvane {

/// Front of the dialogs and receiver of facts: puts all of it into the report. Nothing is thrown
/// into the plug-in; it is remembered if memory ran out here. Registered as long as it lives.
class Listener final : public DialogFront {
public:
    /// `arguments` and `report` outlive the listener. For a save, the report must say already where
    /// the artwork came from.
    Listener(const Arguments& arguments, Report& report);
    ~Listener() override;
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    bool ranOutOfMemory() const { return ranOutOfMemory_; }
    void clearProgress() { progress_.clear(); }
    ImageFolder& imageFolder() { return imageFolder_; }

    void showAbout(std::string_view text) override;
    void showError(std::int32_t code, std::string_view sentence) override;
    bool showWarnings(bool reading, std::span<const WarningText> warnings,
                      std::string_view fileName) override;
    bool choosePage(std::int32_t first, std::int32_t last, std::int32_t& page) override;
    bool chooseShownPage(std::int32_t first, std::int32_t last, std::int32_t& page,
                         PageProxies& proxies) override;
    bool chooseFolder(std::int16_t& volume, std::int32_t& directory) override;

private:
    template <class Body>
    bool remember(Body&& body);
    HostExtension makeExtension();
    bool canAsk() const;

    const Arguments& arguments_;
    Report& report_;
    ProgressLine progress_;
    ImageFolder imageFolder_;
    std::optional<PasswordSource> ownPasswords_;
    PasswordSource& passwords_;
    bool ranOutOfMemory_ = false;
    const HostExtension extension_;
};

} // namespace corvane
