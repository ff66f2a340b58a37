#include "app/cli/report/report.h"
#include "app/cli/text.h"

namespace corvane {

namespace {

/// Several pieces of art of a kind.
std::string kindText(ArtKind kind) {
    switch (kind) {
    case ArtKind::path:
        return "paths";
    case ArtKind::compound:
        return "compound paths";
    case ArtKind::text:
        return "pieces of text";
    case ArtKind::placed:
        return "images";
    case ArtKind::group:
    case ArtKind::unknown:
        break;
    }
    return "objects";
}

/// "1 object changed, 2 added, 57 kept"; empty where there is no object at all.
std::string changesText(const SavedFacts& saved, bool dryRun, bool tellsKept) {
    struct Change {
        std::int32_t count;
        const char* what;
    };
    std::vector<std::string> parts;
    for (const Change& change :
         {Change{saved.changed, "changed"}, Change{saved.added, "added"},
          Change{saved.removed, "removed"}, Change{saved.moved, "moved in the order"},
          Change{tellsKept ? saved.kept : 0, "kept"}}) {
        if (change.count != 0) {
            const bool isFirst = parts.empty();
            parts.push_back((isFirst ? counted(change.count, "object") : grouped(change.count)) +
                            (isFirst && dryRun ? " would be " : " ") + change.what);
        }
    }
    return joined(parts);
}

} // namespace

std::string appendedText(const SavedFacts& saved, bool dryRun) {
    return counted(saved.length - saved.formerLength, "byte") + (dryRun ? " would be " : " ") +
           "appended";
}

std::string missingText(const std::vector<MissingArt>& missing) {
    std::vector<std::string> kinds;
    kinds.reserve(missing.size());
    for (const MissingArt& kind : missing) {
        kinds.push_back(grouped(kind.missing) + " of " + grouped(kind.whole) + " " +
                        kindText(kind.kind));
    }
    return joined(kinds);
}

std::string savedText(const std::string& file, const SavedFacts& saved, bool dryRun) {
    const std::string page = "page " + std::to_string(saved.page.page) + " of " + file + ": ";
    if (saved.isNothing) {
        return page + "nothing to save, it is as the artwork has it";
    }
    const std::string appended = appendedText(saved, dryRun);
    if (!saved.isPatched) {
        return page + appended + " (" + counted(saved.objects, "object") + ")";
    }
    const std::string changes = changesText(saved, dryRun, true);
    return page + changes + (changes.empty() ? "" : "; ") + appended;
}

std::string editedText(const std::string& file, const SavedFacts& saved) {
    const std::string page = "page " + std::to_string(saved.page.page) + ": ";
    if (saved.isNothing) {
        return page + "nothing to save, it is as the artwork has it";
    }
    std::string changes = saved.isPatched ? changesText(saved, false, false)
                                          : "drawn anew, " + counted(saved.objects, "object");
    if (changes.empty()) {
        changes = "as it was opened";
    }
    return page + changes + "; " + counted(saved.length - saved.formerLength, "byte") +
           "; take it off with \"corvane revert " + shellWord(file) + "\"";
}

} // namespace corvane
