// `edit`: a page in the person's editor, saved each time the person saves there.
#include "app/cli/commands/commands.h"

#include "app/cli/edit/art_folder.h"
#include "app/cli/edit/art_watch.h"
#include "app/cli/edit/editor.h"
#include "app/cli/edit/editor_process.h"
#include "app/cli/edit/page_save.h"
#include "app/cli/files/input_file.h"
#include "app/cli/interrupt.h"
#include "app/cli/messages.h"
#include "app/cli/terminal/password.h"
#include "app/cli/text.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvane {

namespace {

/// A program that ends within this time and left the artwork alone has handed it to a running one.
/// It is rather long: to go on watching costs a Ctrl-C, to stop would cost the person's work.
constexpr std::chrono::seconds soon(10);

/// The page as artwork in a folder. Warnings are said now, not when the person has done.
Arguments openInto(const ArtFolder& folder, const Arguments& arguments, Report& report) {
    Arguments opening = arguments;
    opening.folder = folder.path();
    runOpen(opening, report);
    if (!arguments.json) {
        tell(arguments, report);
        report.warnings.clear();
    }
    Arguments saving = arguments;
    saving.command = Command::save;
    saving.artwork = report.output;
    saving.page = report.source.page;
    return saving;
}

/// From the start of the editor to the end of the watch.
class Editing {
public:
    Editing(const Arguments& arguments, Report& report, ArtFolder& folder, FileStamp stamp)
        : report_(report), folder_(folder), arguments_(openInto(folder, arguments, report)),
          saves_(arguments_, report.source, stamp),
          watch_(arguments_.artwork, report.images.folder), opened_(watch_.digest()) {
        folder.noteOwn();
    }

    void run(const Editor& editor) {
        saves_.rehearse();
        EditorProcess process(editor.words(arguments_.artwork));
        folder_.keep();
        announce(arguments_, "page " + std::to_string(arguments_.page) + " is open in " +
                                 editor.name() + "; each save there goes into " + arguments_.file);
        try {
            while (!interrupted() && goesOn(process, editor)) {
            }
            finish();
        } catch (const Failure&) {
            throw; // it says what became of the artwork
        } catch (...) {
            complain(plainLine("the artwork stays in " + arguments_.artwork));
            throw;
        }
    }

private:
    /// Waits for something to happen, and does what is due then. False when the editor has ended.
    bool goesOn(EditorProcess& process, const Editor& editor) {
        watch_.wait(isHandedOn_ ? std::nullopt : std::optional(process.descriptor()));
        const auto end = isHandedOn_ ? std::nullopt : process.ended();
        bool isStale = true;
        while (isStale && (watch_.isDue() || (end && watch_.isChanged()))) {
            isStale = consider(end.has_value()) == SaveResult::changed;
        }
        return !end || isHandedOn(*end, process.start(), editor);
    }

    SaveResult consider(bool isLast) {
        isTouched_ = isTouched_ || watch_.digest() != opened_;
        const std::uint64_t state = watch_.state();
        const SaveResult result =
            saves_.attempt(watch_.digest(), [&] { return watch_.state() == state; });
        switch (result) {
        case SaveResult::changed:
            break;
        case SaveResult::saved:
            isUnsaved_ = false;
            watch_.settle(state);
            break;
        case SaveResult::notWhole:
            if (!isLast && !watch_.wasTried()) {
                break;
            }
            saves_.sayFault();
            [[fallthrough]];
        case SaveResult::refused:
            isUnsaved_ = true;
            watch_.settle(state);
            break;
        }
        return result;
    }

    /// Whether the watch goes on though the editor has ended.
    bool isHandedOn(const ProgramEnd& end, EditorProcess::Clock::time_point start,
                    const Editor& editor) {
        const bool isSoon = EditorProcess::Clock::now() - start < soon;
        if (!isTouched_ && isSoon && !end.isGood()) {
            folder_.drop();
            throw Failure({code::editor, "the editor " + editor.name() + " " + endText(end) +
                                             " at once; name another with --editor"});
        }
        if (!end.isGood()) {
            announce(arguments_, editor.name() + " " + endText(end));
        }
        isHandedOn_ = !isTouched_ && isSoon;
        if (isHandedOn_) {
            announce(arguments_, editor.name() +
                                     " returned at once, as programs do that have the page opened "
                                     "by one that runs already; saves are waited for until you "
                                     "press Ctrl-C");
        }
        return isHandedOn_;
    }

    /// What becomes of the folder, and of the command.
    void finish() {
        report_.saves = saves_.saves();
        if (arguments_.json) {
            report_.warnings.insert(report_.warnings.end(), saves_.warnings().begin(),
                                    saves_.warnings().end());
        }
        const auto changes = [](const SavedFacts& saved) {
            return !saved.isNothing && (saved.changed != 0 || saved.removed != 0);
        };
        if (std::ranges::any_of(report_.saves, changes)) {
            announce(arguments_, arguments_.file +
                                     ": its old bytes stay in it, and what was changed or removed "
                                     "can still be read there: this is no redaction");
        } else if (!isTouched_) {
            announce(arguments_, "page " + std::to_string(arguments_.page) + " was not changed");
        }
        isUnsaved_ = watch_.isChanged() || isUnsaved_;
        const std::vector<std::string> others = folder_.others();
        const bool isStopped = interrupted();
        if (!isUnsaved_ && !isStopped && !isHandedOn_ && others.empty()) {
            folder_.drop();
            return;
        }
        report_.kept = folder_.path();
        tellKept(others, isStopped);
    }

    void tellKept(const std::vector<std::string>& others, bool isStopped) const {
        const std::string command =
            "corvane save " + shellWord(arguments_.artwork) + " " + shellWord(arguments_.file);
        if (!others.empty()) {
            announce(arguments_,
                     folder_.path() + " stays, since there is more in it: " + joined(others));
        }
        if (isUnsaved_) {
            throw Failure({code::artworkKept, "the artwork was not saved, and stays in " +
                                                  arguments_.artwork + "; to save it: " + command});
        }
        if (isStopped) {
            announce(arguments_,
                     "all that was saved in the editor is in " + arguments_.file +
                         "; the artwork stays in " + arguments_.artwork +
                         "; what is saved there from now on, this puts into the PDF: " + command);
        }
        if (isStopped && !isHandedOn_) {
            throw Failure({code::cancelled, "waiting was ended, and the editor was not"});
        }
    }

    Report& report_;
    ArtFolder& folder_;
    const Arguments arguments_; ///< of a save
    PageSave saves_;
    ArtWatch watch_;
    const std::uint64_t opened_; ///< digest of the artwork as it was opened
    bool isTouched_ = false;     ///< the artwork was another one at least once
    bool isUnsaved_ = false;     ///< the last change was not saved
    bool isHandedOn_ = false;
};

} // namespace

void runEdit(Arguments arguments, Report& report) {
    requireWritable(arguments.file);
    const auto stamp = stampOf(arguments.file).value_or(FileStamp());
    const Editor editor = chooseEditor(arguments.editor);
    PasswordSource passwords(arguments);
    arguments.passwords = &passwords;
    ArtFolder folder;
    Editing(arguments, report, folder, stamp).run(editor);
}

} // namespace corvane
