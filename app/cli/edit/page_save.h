// Saves of one page from one artwork, again and again, while a person works on it.
#pragma once

#include "app/artwork/provenance.h"
#include "app/cli/edit/file_stamp.h"
#include "app/cli/fault.h"
#include "app/cli/options/arguments.h"
#include "app/cli/report/report.h"
#include "app/svg/reader.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace corvane {

/// What became of an attempt.
enum class SaveResult : std::uint8_t {
    saved,    ///< or there was nothing to save
    notWhole, ///< the artwork cannot be read, as while an editor writes it
    changed,  ///< the artwork was saved again while the person was asked
    refused,  ///< and said
};

/// Each save is a patch to the page as it was opened: what an earlier save made of that page is
/// replaced and not patched again. Nothing is saved into a file that another program changed, and
/// nothing that loses something, unless the person agrees.
class PageSave {
public:
    /// `arguments` name file, page and artwork; `opened` is the page that was opened, and `stamp`
    /// the state of the file before that.
    PageSave(Arguments arguments, Provenance opened, FileStamp stamp);

    /// Tries a save of what was just opened, before a person draws for an hour: a file that was
    /// only repaired for reading, say, takes none. Raises `Failure`.
    void rehearse();

    /// Saves once, and says so. `digest` is of the artwork: what was saved already is not saved
    /// again. `isStill` tells whether the artwork is as it was when the attempt began.
    SaveResult attempt(std::uint64_t digest, const std::function<bool()>& isStill);

    /// Why the last attempt did not save.
    const std::optional<Fault>& fault() const { return fault_; }
    /// Says it of artwork that is not whole: it has been waited for long enough.
    void sayFault() const { say(*fault_); }
    const std::vector<SavedFacts>& saves() const { return saves_; }
    /// Of all saves, each once.
    const std::vector<Fault>& warnings() const { return warnings_; }

private:
    std::optional<Fault> save(bool isForced);
    bool isSaved(std::uint64_t digest) const;
    void requireSameFile() const;
    std::optional<SavedFacts> forcedOutcome() const;
    bool isAgreed(const Fault& fault);
    void say(const Fault& fault) const;
    void tellSave(const Report& report);

    const Arguments arguments_;
    OpenedPage opened_;
    FileStamp stamp_;        ///< of the file as it was opened, or as our last save left it
    bool isForeign_ = false; ///< the person took what another program made of the file
    std::optional<Fault> fault_;
    std::optional<std::uint64_t> digest_; ///< of the artwork that was saved last
    /// Losses that the person took: the sentence, and how many objects were to go.
    std::set<std::pair<std::string, std::int32_t>> agreed_;
    std::vector<Fault> warnings_;
    std::vector<SavedFacts> saves_;
};

} // namespace corvane
