#include "app/cli/commands/commands.h"

#include "app/cli/files/save_place.h"
#include "app/cli/messages.h"
#include "app/cli/save/artwork_save.h"

namespace corvane {

namespace {

void announceSaved(const SavePlace& place, const Arguments& arguments, const SavedFacts& saved) {
    const std::string would = arguments.dryRun ? " would be " : " is ";
    if (place.isNew()) {
        announce(arguments, place.name() + would + "a new file");
    }
    announce(arguments, savedText(place.name(), saved, arguments.dryRun));
    if (saved.isMended) {
        announce(arguments, mendedText(place.name(), saved, arguments.dryRun));
    }
    if (saved.isNothing && !saved.isMended && !arguments.output.empty()) {
        announce(arguments, place.name() + would + "an unchanged copy of " + arguments.file);
    }
    if (!arguments.dryRun && !saved.isNothing && (saved.removed != 0 || saved.changed != 0)) {
        announce(arguments, place.name() + ": its old bytes stay in it, and what was changed or "
                                           "removed can still be read there: this is no redaction");
    }
}

} // namespace

void runSave(Arguments& arguments, Report& report) {
    ArtworkSave save(arguments, report);
    SavePlace place(arguments);
    save.run(place);
    announceSaved(place, arguments, *report.saved);
}

} // namespace corvane
