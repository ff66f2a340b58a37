#include "reader/classic/font_selection.h"

#include "reader/classic/encoding_map.h"
#include "reader/classic/font_database.h"
#include "reader/content/interpreter.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/string.h"
#include "runtime/warning.h"

#include <optional>
#include <utility>

namespace corvane::classic {

namespace {

constexpr std::size_t longestName = 255;

FontKind name2kind(std::string_view name) {
    if (name == "Type1") {
        return FontKind::type1;
    }
    if (name == "MMType1") {
        return FontKind::multipleMaster;
    }
    if (name == "TrueType") {
        return FontKind::trueType;
    }
    if (name == "Type3") {
        return FontKind::type3;
    }
    failException(Exception::structure);
}

/// A name in a font dictionary.
std::string nameEntry(DocumentCache& cache, const Object& font, std::string_view key) {
    const ObjectOwner entry = lookupObject(cache, font, key);
    if (typeObject(entry.get()) != ObjectType::literal) {
        failException(Exception::range);
    }
    std::string name(literalObject(entry.get()));
    if (name.size() > longestName) {
        failException(Exception::range);
    }
    return name;
}

/// Reads a font dictionary, step by step, into `font`.
class Selection {
public:
    Selection(Interpreter& interpreter, SelectedFont& font)
        : cache_(interpreter.cache), fonts_(interpreter.classicFonts), font_(font) {}

    void read(const Object& dictionary) {
        font_.kind = name2kind(nameEntry(cache_, dictionary, "Subtype"));
        font_.name = "Helvetica";
        if (font_.kind == FontKind::type3) {
            raiseWarning(Warning::type3Font);
        } else {
            font_.name = nameEntry(cache_, dictionary, "BaseFont");
            mapString(font_.name, ',', '-');
            match(dictionary);
        }
        font_.encoding = readEncoding(cache_, dictionary, font_);
    }

private:
    void match(const Object& dictionary) {
        switch (font_.kind) {
        case FontKind::multipleMaster:
            if (!take(makeMMFont(fonts_, font_.name)) && !take(makeBaseFont(fonts_, font_.name))) {
                substitute(dictionary, Warning::multipleMasterSubstituted,
                           Warning::multipleMasterMissing);
            }
            return;
        case FontKind::trueType:
            if (!searchFont(fonts_, font_.name)) {
                substitute(dictionary, Warning::trueTypeSubstituted, Warning::trueTypeMissing);
            }
            return;
        default:
            if (!searchFont(fonts_, font_.name)) {
                substitute(dictionary, Warning::type1Substituted, Warning::type1Missing);
            }
        }
    }

    void substitute(const Object& dictionary, Warning substituted, Warning missing) {
        const bool found = take(substituteFont(cache_, fonts_, font_.name, dictionary));
        raiseWarning(found ? substituted : missing);
    }

    bool take(std::optional<std::string> name) {
        if (name) {
            font_.name = std::move(*name);
        }
        return name.has_value();
    }

    DocumentCache& cache_;
    FontList& fonts_;
    SelectedFont& font_;
};

/// The "Font" dictionary of the resources in use.
ObjectOwner fontResources(DocumentCache& cache) {
    const Object resources = cache.resources.get();
    if (typeObject(resources) != ObjectType::dictionary) {
        failException(Exception::structure);
    }
    ObjectOwner dictionary = lookupObject(cache, resources, "Font");
    if (typeObject(dictionary.get()) == ObjectType::null) {
        failException(Exception::structure);
    }
    if (typeObject(dictionary.get()) != ObjectType::dictionary) {
        failException(Exception::range);
    }
    return dictionary;
}

} // namespace

void selectFont(Interpreter& interpreter, std::string_view name) {
    SelectedFonts& selected = interpreter.selectedFonts;
    std::shared_ptr<const SelectedFont>& inUse = interpreter.state.classicText.font;
    ObjectOwner dictionary = fontResources(interpreter.cache);
    if (selected.dictionary->data != dictionary->data) {
        selected = {.dictionary = std::move(dictionary), .fonts = {}};
    }
    if (const auto known = selected.fonts.find(name); known != selected.fonts.end()) {
        inUse = known->second;
        return;
    }
    const ObjectOwner entry = lookupObject(interpreter.cache, selected.dictionary.get(), name);
    if (typeObject(entry.get()) == ObjectType::null) {
        failException(Exception::structure);
    }
    SelectedFont font = *inUse;
    if (typeObject(entry.get()) != ObjectType::dictionary) {
        font.name = "Helvetica";
        inUse = std::make_shared<const SelectedFont>(std::move(font));
        return;
    }
    const Exception code = guarded([&] { Selection(interpreter, font).read(entry.get()); });
    inUse = std::make_shared<const SelectedFont>(std::move(font));
    if (code != Exception::none) {
        againException();
    }
    selected.fonts.emplace(name, inUse);
}

} // namespace corvane::classic
