#include "app/cli/edit/page_save.h"

#include "app/cli/files/save_place.h"
#include "app/cli/messages.h"
#include "app/cli/save/artwork_save.h"
#include "app/cli/terminal/question.h"
#include "app/cli/text.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// What a person may take: it is the person's own page that loses something, and nobody else's
/// work.
bool isLoss(const Fault& fault) {
    return fault.code == code::loss || fault.code == code::artworkMissing ||
           fault.code == code::certifiedFile || fault.code == code::annotationChanged;
}

/// The sentence without its last part, which says what to do about a save by command.
std::string happened(const Fault& fault) {
    return fault.sentence.substr(0, fault.sentence.rfind("; "));
}

} // namespace

PageSave::PageSave(Arguments arguments, Provenance opened, FileStamp stamp)
    : arguments_(std::move(arguments)), opened_{std::move(opened), {}}, stamp_(stamp) {}

void PageSave::rehearse() {
    Arguments arguments = arguments_;
    arguments.command = Command::edit;
    arguments.dryRun = true;
    Report report;
    const auto fault = faultOf([&] {
        ArtworkSave save(arguments, report);
        opened_.page = save.page();
        SavePlace place(arguments);
        save.run(place);
    });
    if (fault && isLoss(*fault) && !isAgreed(*fault)) {
        throw Failure({fault->code, happened(*fault) +
                                        "; use open and save --force, or edit it from "
                                        "a terminal, where you are asked"});
    }
    if (fault && !isLoss(*fault)) {
        throw Failure(*fault);
    }
}

bool PageSave::isSaved(std::uint64_t digest) const {
    return digest_ == digest && stampOf(arguments_.file) == stamp_;
}

SaveResult PageSave::attempt(std::uint64_t digest, const std::function<bool()>& isStill) {
    if (isSaved(digest)) {
        SavedFacts nothing = saves_.back();
        nothing.isNothing = true;
        announce(arguments_, editedText(arguments_.file, nothing));
        return SaveResult::saved;
    }
    bool isForced = false;
    fault_ = save(isForced);
    while (fault_ && !isForced && isAgreed(*fault_)) {
        if (!isStill()) {
            return SaveResult::changed;
        }
        isForced = isLoss(*fault_);
        fault_ = save(isForced);
    }
    if (!fault_) {
        digest_ = digest;
        return SaveResult::saved;
    }
    if (fault_->code == code::artwork) {
        return SaveResult::notWhole;
    }
    if (fault_->code != code::cancelled) {
        say(*fault_);
    }
    return SaveResult::refused;
}

std::optional<Fault> PageSave::save(bool isForced) {
    Arguments arguments = arguments_;
    arguments.force = isForced;
    Report report;
    bool isTouched = false; // the file is as it was, and no other program can be at it
    auto fault = faultOf([&] {
        ArtworkSave save(arguments, report, &opened_);
        requireSameFile(); // a file that is gone would be made
        SavePlace place(arguments);
        requireSameFile();
        isTouched = true;
        save.run(place);
        stamp_ = stampOf(arguments.file).value_or(stamp_);
        isForeign_ = false;
        tellSave(report);
    });
    const auto now = stampOf(arguments.file);
    if (fault && isTouched && now && now->number == stamp_.number && now->length == stamp_.length) {
        stamp_ = *now; // what could not be written was taken off again
    }
    return fault;
}

void PageSave::requireSameFile() const {
    const auto now = stampOf(arguments_.file);
    if (!now) {
        throw Failure({code::access, arguments_.file + " is not there any more; put it back"});
    }
    if (*now != stamp_) {
        throw Failure({code::fileChanged, "another program changed " + arguments_.file +
                                              " since page " + std::to_string(arguments_.page) +
                                              " was opened; look at it, and open the page again"});
    }
}

/// What the save would do where every loss is taken: whoever takes one takes them all.
std::optional<SavedFacts> PageSave::forcedOutcome() const {
    Arguments arguments = arguments_;
    arguments.dryRun = true;
    arguments.force = true;
    Report report;
    const auto fault = faultOf([&] {
        ArtworkSave save(arguments, report, &opened_);
        SavePlace place(arguments);
        save.run(place);
    });
    return fault ? std::nullopt : report.saved;
}

/// Asks once for each loss, and again where more objects go. In a file that another program changed
/// nothing is lost on top of that.
bool PageSave::isAgreed(const Fault& fault) {
    if (isLoss(fault) && !isForeign_) {
        const std::optional<SavedFacts> outcome = forcedOutcome();
        const std::pair loss(fault.sentence, outcome ? outcome->removed : 0);
        const bool isTaken =
            agreed_.contains(loss) ||
            agrees(arguments_,
                   happened(fault) + ". " +
                       (outcome ? savedText(arguments_.file, *outcome, true) + ". " : "") +
                       "Save all the same?");
        if (isTaken) {
            agreed_.insert(loss);
        }
        return isTaken;
    }
    if (fault.code == code::fileChanged) {
        const auto now = stampOf(arguments_.file);
        const bool isTaken =
            now && agrees(arguments_, happened(fault) +
                                          ". Append to it as it is now, if the page is the same?");
        if (isTaken) {
            stamp_ = *now;
            isForeign_ = true;
        }
        return isTaken;
    }
    return false;
}

void PageSave::say(const Fault& fault) const {
    const std::string command = std::string("corvane save ") + (isLoss(fault) ? "--force " : "") +
                                shellWord(arguments_.artwork) + " " + shellWord(arguments_.file);
    const std::string kept = "; not saved; the artwork stays in " + arguments_.artwork;
    complain(errorLine(arguments_.file,
                       {fault.code, isLoss(fault) ? happened(fault) + kept +
                                                        "; to save it all the same: " + command
                                                  : fault.sentence + kept}));
}

void PageSave::tellSave(const Report& report) {
    saves_.push_back(*report.saved);
    announce(arguments_, editedText(arguments_.file, *report.saved));
    for (const Fault& warning : report.warnings) {
        if (std::ranges::find(warnings_, warning.sentence, &Fault::sentence) != warnings_.end()) {
            continue;
        }
        warnings_.push_back(warning);
        if (!arguments_.quiet && !arguments_.json) {
            complain(warningLine(arguments_.file, warning));
        }
    }
}

} // namespace corvane
