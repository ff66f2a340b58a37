#include "writer/mend/sound_copy.h"

#include "objects/referenced.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/indirect.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/crypt/sealed.h"
#include "writer/page/carried_entries.h"
#include "writer/paint/object_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>

namespace corvane {

namespace {

ObjectOwner objectOf(DocumentCache& cache, ObjectIdentifier object) {
    ObjectOwner reference;
    indirectObject(reference.get(), object.number, object.generation);
    return resolveObject(cache, reference.get());
}

bool isStream(const Object& object) {
    return typeObject(object) == ObjectType::stream;
}

/// Data are copied in blocks: a stream may be as long as the file.
void writeData(DocumentCache& cache, const Object& stream) {
    stringOutput(*cache.output, "stream\r");
    const Chain chain = rawStream(cache, stream);
    std::array<std::byte, 1 << 14> block;
    while (const std::size_t count = readFilter(*chain.top(), block)) {
        writeFilter(*cache.output, std::span(block).first(count));
    }
    stringOutput(*cache.output, "\rendstream\r");
}

void begin(DocumentCache& cache, ObjectIdentifier object) {
    touchXRef(*cache.output, object.number, object.generation);
    objectOutput(*cache.output, object.number, object.generation);
    stringOutput(*cache.output, "<<\r");
}

class EntryWriter {
public:
    EntryWriter(DocumentCache& cache, ObjectIdentifier object, const CopyChanges& changes)
        : cache_(cache), object_(object), changes_(changes) {}

    void write(const std::vector<RawEntry>& entries) {
        std::vector<CopyChanges::Entry> left = changes_.entries;
        for (const RawEntry& entry : entries) {
            const auto change = std::ranges::find(left, entry.key, &CopyChanges::Entry::key);
            if (change == left.end()) {
                writeEntry(cache_, entry, object_);
            } else {
                writeChange(*change);
                left.erase(change);
            }
        }
        for (const CopyChanges::Entry& change : left) {
            if (!change.onlyInPlace) {
                writeChange(change);
            }
        }
        for (const RawEntry& entry : changes_.inherited) {
            if (std::ranges::find(entries, entry.key, &RawEntry::key) == entries.end()) {
                writeEntry(cache_, entry, object_);
            }
        }
    }

private:
    void writeChange(const CopyChanges::Entry& change) {
        nameOutput(*cache_.output, change.key);
        stringOutput(*cache_.output, change.value + "\r");
    }

    DocumentCache& cache_;
    ObjectIdentifier object_;
    const CopyChanges& changes_;
};

bool hasRawEntries(DocumentCache& cache, ObjectIdentifier object) {
    return attempted([&] {
        const ObjectOwner value = objectOf(cache, object);
        if (!isStream(value.get()) && typeObject(value.get()) != ObjectType::dictionary) {
            failException(Exception::type);
        }
        rawEntries(cache, object.number, object.generation);
    });
}

/// Whether the data of the file end within the object.
bool isCutOff(DocumentCache& cache, ObjectIdentifier object) {
    const Ref<ReferenceNode> node =
        findReference(*cache.references, object.number, object.generation);
    return node && !node->place().isInStream() &&
           objectAt(cache, node->place().offset()).end >= cache.fileLength;
}

/// The strings of the dictionary by which a file is deciphered are not enciphered themselves.
bool isEncryption(DocumentCache& cache, ObjectIdentifier object) {
    return cache.encryption &&
           referenced(findEntry(cache, cache.trailer.get(), "Encrypt")) == object;
}

/// What was read of an object, in PDF syntax; nothing of a stream.
std::optional<std::string> valueText(DocumentCache& cache, const Object& value,
                                     ObjectIdentifier object) {
    return objectText(value, [&](std::string_view bytes) {
        return sealedBytes(cache, object, std::as_bytes(std::span(bytes)));
    });
}

/// Writes what was read of an object whose bytes would carry its damage on.
void writeValue(DocumentCache& cache, const Object& value, ObjectIdentifier object,
                const CopyChanges& changes) {
    if (typeObject(value) != ObjectType::dictionary) {
        touchXRef(*cache.output, object.number, object.generation);
        objectOutput(*cache.output, object.number, object.generation);
        stringOutput(*cache.output,
                     valueText(cache, value, object).value_or("null") + "\rendobj\r");
        return;
    }
    begin(cache, object);
    EntryWriter(cache, object, changes).write(readEntries(value, object));
    stringOutput(*cache.output, ">>\rendobj\r");
}

} // namespace

bool canCopy(DocumentCache& cache, ObjectIdentifier object) {
    if (hasRawEntries(cache, object)) {
        return true;
    }
    bool isSaid = false;
    attempted([&] {
        isSaid = isCutOff(cache, object) && !isEncryption(cache, object) &&
                 valueText(cache, objectOf(cache, object).get(), object);
    });
    return isSaid;
}

void writeCopy(DocumentCache& cache, ObjectIdentifier object, const CopyChanges& changes) {
    const ObjectOwner value = objectOf(cache, object);
    if (!isStream(value.get()) && !hasRawEntries(cache, object)) {
        writeValue(cache, value.get(), object, changes);
        return forgetObject(cache, object.number, object.generation);
    }
    CopyChanges all = changes;
    if (isStream(value.get())) {
        all.entries.push_back({"Length", std::to_string(streamLength(value.get()))});
    }
    begin(cache, object);
    EntryWriter(cache, object, all).write(rawEntries(cache, object.number, object.generation));
    stringOutput(*cache.output, ">>\r");
    if (isStream(value.get())) {
        writeData(cache, value.get());
    }
    stringOutput(*cache.output, "endobj\r");
    forgetObject(cache, object.number, object.generation);
}

void writeNew(DocumentCache& cache, ObjectIdentifier object, const CopyChanges& entries) {
    begin(cache, object);
    EntryWriter(cache, object, entries).write({});
    stringOutput(*cache.output, ">>\rendobj\r");
}

} // namespace corvane
