#include "app/cli/report/dates.h"
#include "app/cli/report/json.h"
#include "app/cli/report/mend_kinds.h"
#include "app/cli/report/report.h"
#include "app/cli/text.h"
#include "host/utf8.h"

namespace corvane {

namespace {

/// A path: as text, and byte by byte where it is not text.
void addPath(JsonWriter& json, std::string_view name, std::string_view path) {
    json.name(name).text(path);
    if (!isUtf8(path)) {
        json.name(std::string(name) + "Bytes").text(hexadecimalText(path));
    }
}

void addFault(JsonWriter& json, const Fault& fault) {
    json.openObject().name("code").integer(fault.code);
    json.name("sentence").text(fault.sentence).closeObject();
}

/// Left, bottom, right, top, in points.
void addBox(JsonWriter& json, std::string_view name, const Box& box) {
    json.name(name).openArray();
    json.real(box.left).real(box.bottom).real(box.right).real(box.top).closeArray();
}

void addPage(JsonWriter& json, const PageFacts& page, const Report& report) {
    json.openObject().name("page").integer(page.page);
    if (const auto label = report.pageLabels.find(page.page); label != report.pageLabels.end()) {
        json.name("label").text(label->second);
    }
    if (report.pagesWithThumbnail.contains(page.page)) {
        json.name("thumbnail").boolean(true);
    }
    json.name("object").integer(page.objectNumber);
    json.name("generation").integer(page.generation);
    addBox(json, "mediaBox", page.mediaBox);
    addBox(json, "cropBox", page.cropBox);
    json.name("rotate").integer(page.rotate);
    json.name("userUnit").real(page.userUnit).closeObject();
}

void addOutput(JsonWriter& json, const Report& report) {
    if (report.output.empty()) {
        json.name("output").null();
    } else {
        addPath(json, "output", report.output);
    }
}

/// Null where the page has none.
void addThumbnail(JsonWriter& json, const Report& report) {
    if (report.output.empty()) {
        json.name("thumbnail").null();
    } else {
        addPath(json, "thumbnail", report.output);
    }
}

void addOmitted(JsonWriter& json, const Report& report) {
    json.name("omitted").openObject();
    for (const auto& [kind, count] : report.source.omitted) {
        json.name(kind).integer(count);
    }
    json.closeObject();
}

void addImages(JsonWriter& json, const ImageCounts& images) {
    json.name("images").openObject();
    if (images.folder.empty()) {
        json.name("folder").null();
    } else {
        addPath(json, "folder", images.folder);
    }
    json.name("written").integer(images.written);
    json.name("found").integer(images.found).closeObject();
}

void addOpened(JsonWriter& json, const Report& report) {
    json.name("page").integer(report.source.page);
    addOutput(json, report);
    addImages(json, report.images);
    addOmitted(json, report);
}

void addChanges(JsonWriter& json, const SavedFacts& saved) {
    json.name("nothing").boolean(saved.isNothing);
    json.name("patched").boolean(saved.isPatched);
    json.name("kept").integer(saved.kept);
    json.name("changed").integer(saved.changed);
    json.name("added").integer(saved.added);
    json.name("removed").integer(saved.removed);
    json.name("moved").integer(saved.moved);
}

std::string_view kindName(ArtKind kind) {
    switch (kind) {
    case ArtKind::path:
        return "path";
    case ArtKind::compound:
        return "compound";
    case ArtKind::text:
        return "text";
    case ArtKind::placed:
        return "image";
    case ArtKind::group:
    case ArtKind::unknown:
        break;
    }
    return "all";
}

void addMissing(JsonWriter& json, const Report& report) {
    json.name("missing").openArray();
    for (const MissingArt& missing : report.missing) {
        json.openObject().name("kind").text(kindName(missing.kind));
        json.name("missing").integer(missing.missing);
        json.name("whole").integer(missing.whole).closeObject();
    }
    json.closeArray();
}

/// `wanted` is null where the artwork asks for the font itself.
void addFonts(JsonWriter& json, const Report& report) {
    json.name("fontsAdded").openArray();
    for (const FontNote& font : report.fontsAdded) {
        json.openObject().name("name").text(font.name).name("letters").text(font.letters);
        json.name("wanted");
        if (font.wanted.empty()) {
            json.null();
        } else {
            json.text(font.wanted);
        }
        json.closeObject();
    }
    json.closeArray();
}

void addTitles(JsonWriter& json, std::string_view name, const std::vector<std::string>& titles) {
    json.name(name).openArray();
    for (const std::string& title : titles) {
        json.text(title);
    }
    json.closeArray();
}

/// Kinds that were met, with how often.
void addMends(JsonWriter& json, std::string_view name, const MendCounts& counts) {
    json.name(name).openObject();
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] != 0) {
            json.name(mendName(static_cast<Mend>(i))).integer(counts[i]);
        }
    }
    json.closeObject();
}

void addDamage(JsonWriter& json, const Damage& damage) {
    addMends(json, "damage", damage.facts.found);
    json.name("needsMending").boolean(damage.facts.needsMending);
    json.name("canBeMended").boolean(damage.facts.canBeMended);
    json.name("obstacle");
    if (damage.obstacle.empty()) {
        json.null();
    } else {
        json.text(damage.obstacle);
    }
}

void addSavedFacts(JsonWriter& json, const SavedFacts& saved) {
    if (saved.page.page != 0) {
        json.name("page").integer(saved.page.page);
        json.name("object").integer(saved.page.objectNumber);
        json.name("generation").integer(saved.page.generation);
    }
    json.name("formerLength").integer(saved.formerLength);
    json.name("length").integer(saved.length);
    json.name("objects").integer(saved.objects);
    json.name("contentLength").integer(saved.contentLength);
    addChanges(json, saved);
}

void addSaved(JsonWriter& json, const Arguments& arguments, const Report& report) {
    if (arguments.artwork.empty()) {
        json.name("artwork").null();
    } else {
        addPath(json, "artwork", arguments.artwork);
    }
    addOutput(json, report);
    json.name("dryRun").boolean(arguments.dryRun);
    if (report.saved) {
        addSavedFacts(json, *report.saved);
        if (arguments.mend) {
            addMends(json, "mended", report.saved->mended);
        }
    }
    addOmitted(json, report);
    json.name("ignored").openObject();
    for (const auto& [kind, count] : report.ignored) {
        json.name(kind).integer(count);
    }
    json.closeObject();
    addTitles(json, "layersLeftOut", report.layersLeftOut);
    addTitles(json, "layersNotKept", report.layersNotKept);
    addTitles(json, "annotationsKept", report.annotationsKept);
    addFonts(json, report);
    addMissing(json, report);
}

/// `kept` is the folder of the artwork, null where it went.
void addEdited(JsonWriter& json, const Report& report) {
    json.name("page").integer(report.source.page);
    json.name("saves").openArray();
    for (const SavedFacts& saved : report.saves) {
        json.openObject();
        addSavedFacts(json, saved);
        json.closeObject();
    }
    json.closeArray();
    if (report.kept.empty()) {
        json.name("kept").null();
    } else {
        addPath(json, "kept", report.kept);
    }
}

/// `date` is UTC as ISO 8601 writes it, null where it is not known.
void addUpdates(JsonWriter& json, std::string_view name, const Report& report) {
    json.name(name).openArray();
    for (const Update& update : report.updates) {
        json.openObject().name("number").integer(update.facts.number);
        json.name("offset").integer(update.facts.offset);
        json.name("size").integer(update.facts.size);
        json.name("objects").integer(update.facts.objects);
        json.name("pages").openArray();
        for (const std::int32_t page : update.pages) {
            json.integer(page);
        }
        json.closeArray().name("date");
        if (std::string date = utcText(update.date); date.empty()) {
            json.null();
        } else {
            date[date.find(' ')] = 'T';
            json.text(date + "Z");
        }
        json.name("ours").boolean(update.facts.ours).closeObject();
    }
    json.closeArray();
}

void addFile(JsonWriter& json, const FileFacts& file) {
    json.name("version").text(file.version);
    json.name("length").integer(file.facts.length);
    json.name("pageCount").integer(file.facts.pages);
    if (file.facts.objects > 0) {
        json.name("objects").integer(file.facts.objects);
    }
    json.name("updates").integer(file.facts.updates);
}

void addSignatures(JsonWriter& json, const Report& report) {
    const SignatureFacts facts = report.signatures.value_or(SignatureFacts());
    json.name("signatures").openObject().name("count").integer(facts.count);
    json.name("ofFile").integer(facts.ofFile);
    json.name("ofRevision").integer(facts.ofRevision);
    json.name("certified").boolean(facts.certified).closeObject();
}

void addPages(JsonWriter& json, const Report& report) {
    json.name("pages").openArray();
    for (const PageFacts& page : report.pages) {
        addPage(json, page, report);
    }
    json.closeArray();
}

void addDrawnImages(JsonWriter& json, const Report& report) {
    json.name("images").openArray();
    for (const DrawnImage& image : report.drawnImages) {
        json.openObject().name("page").integer(image.facts.page);
        json.name("object").integer(image.facts.object);
        json.name("width").integer(image.facts.width);
        json.name("height").integer(image.facts.height);
        json.name("bits").integer(image.facts.bits);
        json.name("colourSpace").text(image.colourSpace);
        json.name("filters").text(image.filters);
        json.name("horizontalDensity").real(image.facts.horizontalDensity);
        json.name("verticalDensity").real(image.facts.verticalDensity).closeObject();
    }
    json.closeArray();
}

void addFacts(JsonWriter& json, const Arguments& arguments, const Report& report) {
    switch (arguments.command) {
    case Command::save:
        return addSaved(json, arguments, report);
    case Command::log:
        return addUpdates(json, "updates", report);
    case Command::revert:
        return addUpdates(json, "takenOff", report);
    case Command::edit:
        return addEdited(json, report);
    case Command::inkscape:
        addTitles(json, "installed", report.installed);
        addTitles(json, "removed", report.removed);
        return addTitles(json, "changed", report.changed);
    case Command::serve:
        json.name("address");
        report.address.empty() ? json.null() : json.text(report.address);
        return;
    case Command::open:
    case Command::info:
    case Command::check:
        break;
    }
    if (report.file) {
        addFile(json, *report.file);
    }
    if (arguments.command == Command::open) {
        addOpened(json, report);
    }
    if (report.damage) {
        addDamage(json, *report.damage);
    }
    if (arguments.command == Command::info) {
        addSignatures(json, report);
        addPages(json, report);
        if (!arguments.thumbnail.empty()) {
            addThumbnail(json, report);
        } else if (arguments.page != 0) {
            addDrawnImages(json, report);
        }
    }
}

} // namespace

std::string reportJson(const Arguments& arguments, const Report& report) {
    JsonWriter json;
    json.openObject().name("command").text(commandName(arguments.command));
    addPath(json, "file", arguments.file);
    json.name("profile").text(profileName(arguments.profile));
    addFacts(json, arguments, report);
    json.name("warnings").openArray();
    for (const Fault& warning : report.warnings) {
        addFault(json, warning);
    }
    json.closeArray().name("error");
    if (report.error) {
        addFault(json, *report.error);
    } else {
        json.null();
    }
    return json.closeObject().result() + "\n";
}

} // namespace corvane
