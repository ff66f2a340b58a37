#include "reader/document/signatures.h"

#include "objects/object_identifier.h"
#include "objects/referenced.h"
#include "reader/syntax/file_bytes.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace corvane {

namespace {

constexpr std::string_view fileEnd = "%%EOF";
constexpr std::string_view blanks("\0\t\n\f\r ", 6);

/// Bytes behind the end of a revision, or in front of it, in which nothing but blanks may stand.
constexpr std::int32_t endReach = 32;

bool isName(const Object& object, std::string_view name) {
    return typeObject(object) == ObjectType::literal && literalObject(object) == name;
}

std::optional<ObjectIdentifier> identifierOf(const Object& entry) {
    return typeObject(entry) == ObjectType::reference ? std::optional(referenced(entry))
                                                      : std::nullopt;
}

/// Whether the file ended at `position` once: the mark of an end stands before it.
bool isRevisionEnd(DocumentCache& cache, std::int64_t position) {
    const std::string bytes = bytesOfFile(cache, position - endReach, endReach);
    const std::size_t last = bytes.find_last_not_of(blanks);
    return last != std::string::npos &&
           std::string_view(bytes).substr(0, last + 1).ends_with(fileEnd);
}

/// Whether nothing stands behind `position`. An update of ours that was cut short does not count.
bool isFileEnd(DocumentCache& cache, std::int64_t position) {
    const std::int64_t rest = cache.fileLength - position;
    return rest <= endReach &&
           bytesOfFile(cache, position, rest).find_first_not_of(blanks) == std::string::npos;
}

/// Where the bytes end that a signature covers: from the first byte of the file on, but for a gap
/// that holds the signature itself. Nothing where they are others, or more than the file has.
std::optional<std::int64_t> coveredEnd(DocumentCache& cache, const Object& signature) {
    const ObjectOwner range = lookupObject(cache, signature, "ByteRange");
    if (typeObject(range.get()) != ObjectType::array || sizeObject(range.get()) != 4) {
        return std::nullopt;
    }
    std::array<std::int64_t, 4> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        numbers[i] = integerObject(resolveObject(cache, elementsObject(range.get())[i]).get());
    }
    const auto [start, length, second, secondLength] = numbers;
    const std::int64_t end = second + secondLength;
    const bool isSound = start == 0 && length > 0 && second >= length && secondLength >= 0;
    return isSound && end <= cache.fileLength ? std::optional(end) : std::nullopt;
}

/// Whether a signature says which changes its author allows.
bool certifies(DocumentCache& cache, const Object& signature) {
    const ObjectOwner references = lookupObject(cache, signature, "Reference");
    if (typeObject(references.get()) != ObjectType::array) {
        return false;
    }
    for (const Object& element : elementsObject(references.get())) {
        const ObjectOwner reference = resolveObject(cache, element);
        if (typeObject(reference.get()) == ObjectType::dictionary &&
            isName(lookupObject(cache, reference.get(), "TransformMethod").get(), "DocMDP")) {
            return true;
        }
    }
    return false;
}

/// What a field has of the fields above it.
struct Inherited {
    bool isSignature = false;
    std::optional<ObjectIdentifier> value;
};

/// Fields of one parent, and which comes next.
struct Level {
    ObjectOwner fields;
    Inherited inherited;
    std::size_t next = 0;
};

/// The walk of the form's fields.
class FieldWalk {
public:
    explicit FieldWalk(DocumentCache& cache) : cache_(cache) {}

    SignatureFacts run(const Object& catalog) {
        const ObjectOwner form = lookupObject(cache_, catalog, "AcroForm");
        if (typeObject(form.get()) == ObjectType::dictionary) {
            enter(lookupObject(cache_, form.get(), "Fields"), {});
        }
        while (!levels_.empty()) {
            Level& level = levels_.back();
            const std::span<Object> fields = elementsObject(level.fields.get());
            if (level.next == fields.size()) {
                levels_.pop_back();
                continue;
            }
            const Object& field = fields[level.next++];
            const Inherited inherited = level.inherited;
            if (++visited_ > budget::formFields) {
                failException(Exception::limit);
            }
            attempted([&] { visit(field, inherited); });
        }
        return facts_;
    }

private:
    void enter(ObjectOwner fields, const Inherited& inherited) {
        if (typeObject(fields.get()) == ObjectType::array) {
            levels_.push_back({std::move(fields), inherited});
        }
    }

    void visit(const Object& entry, Inherited inherited) {
        const std::optional<ObjectIdentifier> identifier = identifierOf(entry);
        if (identifier && !fields_.insert(identifier->number).second) {
            return;
        }
        const ObjectOwner field = resolveObject(cache_, entry);
        if (identifier) {
            // A form may have thousands of them, of which none is wanted again.
            forgetObject(cache_, identifier->number, identifier->generation);
        }
        if (typeObject(field.get()) != ObjectType::dictionary) {
            return;
        }
        const ObjectOwner type = lookupObject(cache_, field.get(), "FT");
        if (typeObject(type.get()) != ObjectType::null) {
            inherited.isSignature = isName(type.get(), "Sig");
        }
        const Object value = findEntry(cache_, field.get(), "V");
        if (typeObject(value) != ObjectType::null) {
            inherited.value = identifierOf(value);
        }
        enter(lookupObject(cache_, field.get(), "Kids"), inherited);
        if (inherited.isSignature && typeObject(value) == ObjectType::dictionary) {
            note(value);
        } else if (inherited.isSignature && inherited.value &&
                   values_.insert(inherited.value->number).second) {
            ObjectOwner reference;
            indirectObject(*reference, inherited.value->number, inherited.value->generation);
            note(resolveObject(cache_, reference.get()).get());
        }
    }

    void note(const Object& signature) {
        if (typeObject(signature) != ObjectType::dictionary) {
            return;
        }
        ++facts_.count;
        attempted([&] { facts_.certified = facts_.certified || certifies(cache_, signature); });
        attempted([&] {
            const auto end = coveredEnd(cache_, signature);
            if (end && isFileEnd(cache_, *end)) {
                ++facts_.ofFile;
            } else if (end && isRevisionEnd(cache_, *end)) {
                ++facts_.ofRevision;
            }
        });
    }

    DocumentCache& cache_;
    SignatureFacts facts_;
    std::vector<Level> levels_;
    std::int32_t visited_ = 0;
    std::unordered_set<std::int32_t> fields_; ///< by number
    std::unordered_set<std::int32_t> values_; ///< signatures; several widgets may share one
};

/// Whether the catalog names the signature that certifies the file.
bool isCertified(DocumentCache& cache, const Object& catalog) {
    const ObjectOwner permissions = lookupObject(cache, catalog, "Perms");
    return typeObject(permissions.get()) == ObjectType::dictionary &&
           typeObject(lookupObject(cache, permissions.get(), "DocMDP").get()) ==
               ObjectType::dictionary;
}

} // namespace

SignatureFacts signaturesOf(DocumentCache& cache) {
    SignatureFacts facts;
    attempted([&] {
        const ObjectOwner catalog = lookupObject(cache, cache.trailer.get(), "Root");
        attempted([&] { facts = FieldWalk(cache).run(catalog.get()); });
        attempted([&] { facts.certified = facts.certified || isCertified(cache, catalog.get()); });
    });
    return facts;
}

} // namespace corvane
