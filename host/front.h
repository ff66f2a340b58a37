// The dialogs' front: how the plug-in's dialogs reach a person, supplied by the host.
//
// Without a front every dialog is answered as a person in a hurry would: errors and warnings are
// passed over, the page chooser keeps the page it was given, the folder chooser is cancelled.
#pragma once

#include "host/zone.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// One collected warning: its code and its sentence, UTF-8.
struct WarningText {
    std::int32_t code = 0;
    std::string_view sentence;
};

class DialogFront {
public:
    virtual ~DialogFront() = default;

    virtual void showAbout(std::string_view text) = 0;

    /// `sentence` says what happened and what to do; `code` is the exception's number.
    virtual void showError(std::int32_t code, std::string_view sentence) = 0;

    /// All warnings of one operation at once, reading ones or writing ones. False: stop.
    virtual bool showWarnings(bool reading, std::span<const WarningText> warnings,
                              std::string_view fileName) = 0;

    /// Asks for a page from `first` to `last`; `page` holds the proposal and takes the answer.
    /// False: cancelled.
    virtual bool choosePage(std::int32_t first, std::int32_t last, std::int32_t& page) = 0;

    /// Asks for a folder; `volume` and `directory` take the answer. False: cancelled.
    virtual bool chooseFolder(std::int16_t& volume, std::int32_t& directory) = 0;
};

/// Registers (null: removes) the front of this process; not an owner.
TOOLBOX_CALL void setDialogFront(DialogFront* front);
TOOLBOX_CALL DialogFront* dialogFront();

} // namespace corvane
