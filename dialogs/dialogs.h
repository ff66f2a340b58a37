// The plug-in's dialogs, over the front that the host registered.
#pragma once

#include "host/front.h"
#include "host/mend.h"
#include "runtime/exception.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace corvane {

void aboutDialog();

/// The sentence of an exception, by the reason that was noted for it; the reason is then taken.
std::string exceptionText(Exception code);

/// Shows the sentence of an exception.
void errorDialog(Exception code);

/// Whether any of it is worth a warning: what every reader takes in silence is not.
bool isWorthWarning(const MendCounts& mends);

/// Shows all collected warnings at once and forgets them; the one of damage says what was mended.
/// False: the person wants to stop.
bool warningDialog(std::string_view fileName, const MendCounts& mends);

/// Asks for a page from `first` to `last`; `page` holds the proposal and takes the answer,
/// `proxies` tells what pages look like. False: cancelled. Without a front the proposal is the
/// answer.
bool pagesDialog(std::int32_t first, std::int32_t last, std::int32_t& page, PageProxies& proxies);

/// Asks for a folder; false: cancelled, or there is no front to ask through.
bool folderDialog(std::int16_t& volume, std::int32_t& directory);

} // namespace corvane
