#include "writer/mend/sound_copy.h"

#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/page/carried_entries.h"

#include <algorithm>
#include <array>

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
            writeChange(change);
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

} // namespace

bool canCopy(DocumentCache& cache, ObjectIdentifier object) {
    return attempted([&] {
        const ObjectOwner value = objectOf(cache, object);
        if (!isStream(value.get()) && typeObject(value.get()) != ObjectType::dictionary) {
            failException(Exception::type);
        }
        rawEntries(cache, object.number, object.generation);
    });
}

void writeCopy(DocumentCache& cache, ObjectIdentifier object, const CopyChanges& changes) {
    const ObjectOwner value = objectOf(cache, object);
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
