// The dialogs' front: how the plug-in's dialogs reach a person, supplied by the host.
//
// Without a front every dialog is answered as a person in a hurry would: errors and warnings are
// passed over, the page chooser keeps the page it was given, the folder chooser is cancelled.
#pragma once

#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace corvane {

/// One collected warning: its code and its sentence, UTF-8.
struct WarningText {
    std::int32_t code = 0;
    std::string_view sentence;
};

/// What a page chooser can show of a page.
struct PageProxy {
    double width = 0; ///< points, as the page is seen; 0: not known
    double height = 0;
    std::string_view title; ///< of the document's outline, UTF-8; empty: it has none
    /// The page's own thumbnail, top row first: 0, red, green and blue of each pixel. None: empty.
    std::span<const std::byte> picture;
    std::int32_t pictureWidth = 0;
    std::int32_t pictureHeight = 0;
};

/// Tells what pages look like, one when it is asked for.
class PageProxies {
public:
    virtual ~PageProxies() = default;

    /// Valid until the next call.
    virtual PageProxy page(std::int32_t number) = 0;
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

    /// The same for fronts that show what pages look like.
    virtual bool chooseShownPage(std::int32_t first, std::int32_t last, std::int32_t& page,
                                 PageProxies& /*proxies*/) {
        return choosePage(first, last, page);
    }

    /// Asks for a folder; `volume` and `directory` take the answer. False: cancelled.
    virtual bool chooseFolder(std::int16_t& volume, std::int32_t& directory) = 0;
};

/// Registers (null: removes) the front of this process; not an owner.
TOOLBOX_CALL void setDialogFront(DialogFront* front);
TOOLBOX_CALL DialogFront* dialogFront();

} // namespace corvane
