#include "reader/document/stream_section.h"

#include "reader/document/deferred_entries.h"
#include "reader/document/entries.h"
#include "reader/syntax/file_scope.h"
#include "reader/syntax/indirect.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// Bytes of a field, at most: no value needs more.
constexpr std::int32_t widestField = 8;

/// Fields of an entry, at most; three have a meaning.
constexpr std::size_t mostFields = 16;

/// Entries read at a time.
constexpr std::size_t blockEntries = 1024;

enum EntryType : std::int32_t { inFile = 1, inObjectStream = 2 };

std::int32_t integerAt(DocumentCache& cache, const Object& array, std::size_t index) {
    return integerObject(resolveObject(cache, elementsObject(array)[index]).get());
}

/// Where the fields of an entry are.
class EntryForm {
public:
    EntryForm(DocumentCache& cache, const Object& section) {
        const ObjectOwner stated = lookupObject(cache, section, "W");
        if (typeObject(stated.get()) != ObjectType::array) {
            failException(Exception::structure);
        }
        const std::size_t count = elementsObject(stated.get()).size();
        if (count < widths_.size() || count > mostFields) {
            failException(Exception::structure);
        }
        for (std::size_t i = 0; i < count; ++i) {
            const std::int32_t width = integerAt(cache, stated.get(), i);
            if (width < 0 || width > widestField) {
                failException(Exception::structure);
            }
            if (i < widths_.size()) {
                widths_[i] = static_cast<std::size_t>(width);
            }
            length_ += static_cast<std::size_t>(width);
        }
        if (length_ == 0) {
            failException(Exception::structure);
        }
    }

    std::size_t length() const { return length_; }

    SectionEntry entry(std::span<const std::byte> bytes) const {
        const std::int32_t type = widths_[0] == 0 ? std::int32_t{inFile} : take(bytes, 0);
        const std::int32_t second = take(bytes, 1);
        const std::int32_t third = take(bytes, 2);
        if (type == inFile) {
            return {ObjectPlace::atOffset(second), third, true};
        }
        const bool isMember =
            type == inObjectStream && second > 0 && second <= budget::objectNumber;
        return isMember ? SectionEntry{ObjectPlace::inStream(second, third), 0, true}
                        : SectionEntry();
    }

private:
    /// Takes a field off the front, high byte first; what no `int32_t` holds is its largest.
    std::int32_t take(std::span<const std::byte>& bytes, std::size_t field) const {
        std::uint64_t value = 0;
        for (const std::byte byte : bytes.first(widths_[field])) {
            value = value << 8 | static_cast<std::uint64_t>(byte);
        }
        bytes = bytes.subspan(widths_[field]);
        return static_cast<std::int32_t>(std::min<std::uint64_t>(value, INT32_MAX));
    }

    std::array<std::size_t, 3> widths_{};
    std::size_t length_ = 0;
};

std::vector<Subsection> subsections(DocumentCache& cache, const Object& section) {
    const ObjectOwner index = lookupObject(cache, section, "Index");
    std::vector<Subsection> found;
    if (typeObject(index.get()) == ObjectType::null) {
        found.emplace_back(0, integerObject(lookupObject(cache, section, "Size").get()));
    } else if (typeObject(index.get()) == ObjectType::array) {
        const std::size_t count = elementsObject(index.get()).size();
        found.reserve(count / 2);
        for (std::size_t i = 0; i + 1 < count; i += 2) {
            found.emplace_back(integerAt(cache, index.get(), i),
                               integerAt(cache, index.get(), i + 1));
        }
    } else {
        failException(Exception::structure);
    }
    return found;
}

/// Entries as they stand in a section.
struct Rows {
    explicit Rows(const EntryForm& itsForm) : form(itsForm) {}

    EntryForm form;
    std::unique_ptr<std::byte[]> bytes;
    std::size_t count = 0;
    ZoneCharge charge;

    std::size_t length() const { return form.length(); }
    SectionEntry entry(std::size_t index) const {
        return form.entry(std::span(bytes.get() + index * length(), length()));
    }
};

/// The next `most` entries, fewer at the end of the data.
Rows readRows(DocumentCache& cache, const EntryForm& form, Filter& data, std::size_t most) {
    Rows rows(form);
    const std::size_t room = most * form.length();
    rows.charge.resize(static_cast<std::int64_t>(room));
    rows.bytes = std::make_unique_for_overwrite<std::byte[]>(room);
    rows.count = readFilter(data, std::span(rows.bytes.get(), room)) / form.length();
    cache.work.streamedEntries += static_cast<std::int64_t>(rows.count);
    if (cache.work.streamedEntries > budget::streamedEntries) {
        failException(Exception::limit);
    }
    return rows;
}

bool defersRows(DocumentCache& cache, const EntryForm& form, std::span<const Subsection> stated) {
    if (!cache.deferred) {
        cache.deferred = std::make_unique<DeferredEntries>(cache);
    }
    std::int64_t entries = 0;
    for (const auto& [first, count] : stated) {
        entries += count;
    }
    return cache.deferred->takes(stated) &&
           entries * static_cast<std::int64_t>(form.length()) <= budget::keptRows;
}

/// As in a table, there may be fewer entries than are said.
void deferRows(DocumentCache& cache, const EntryForm& form, std::span<const Subsection> stated,
               Filter& data) {
    std::size_t entries = 0;
    for (const auto& [first, count] : stated) {
        entries += static_cast<std::size_t>(count);
    }
    const auto rows = std::make_shared<const Rows>(readRows(cache, form, data, entries));
    std::size_t before = 0;
    for (const auto& [first, count] : stated) {
        const std::size_t there = std::min(static_cast<std::size_t>(count), rows->count - before);
        if (there == 0) {
            return;
        }
        const auto enter = [&cache, rows, before, number = first](std::int32_t from,
                                                                  std::int32_t wanted) {
            for (std::int32_t i = from; i < from + wanted; ++i) {
                enterEntry(cache, number + i, rows->entry(before + static_cast<std::size_t>(i)));
            }
        };
        cache.deferred->add(first, static_cast<std::int32_t>(there), enter);
        before += there;
    }
}

void enterRows(DocumentCache& cache, const EntryForm& form, std::span<const Subsection> stated,
               Filter& data) {
    Rows rows(form);
    std::size_t next = 0;
    for (const auto& [first, count] : stated) {
        for (std::int32_t i = 0; i < count; ++i) {
            if (next == rows.count) {
                rows = readRows(cache, form, data, blockEntries);
                next = 0;
            }
            if (rows.count == 0) {
                return;
            }
            const std::int64_t number = std::int64_t{first} + i;
            noteEntry(cache, static_cast<std::int32_t>(std::min<std::int64_t>(number, INT32_MAX)),
                      rows.entry(next++));
        }
    }
}

void readEntries(DocumentCache& cache, const Object& section) {
    const EntryForm form(cache, section);
    StreamChain data(cache, section);
    const std::vector<Subsection> stated = subsections(cache, section);
    if (defersRows(cache, form, stated)) {
        deferRows(cache, form, stated, data.top());
    } else {
        enterRows(cache, form, stated, data.top());
    }
}

std::int32_t behindStartxref(DocumentCache& cache, std::int32_t position) {
    const std::int32_t offset = position - cache.headerOffset;
    if (position >= cache.fileLength) {
        return position;
    }
    FileScope scope(cache, offset);
    const TokenType type = scope.tokens().readToken();
    const bool follows = type == TokenType::keyword && scope.tokens().bytes() == "startxref";
    return follows ? scope.tokens().mark() : position;
}

} // namespace

StreamSection readStreamSection(DocumentCache& cache, std::int32_t offset) {
    const FoundObject found = objectAt(cache, offset);
    const Object& section = found.object.get();
    if (typeObject(section) != ObjectType::stream) {
        failException(Exception::structure);
    }
    const Object& dictionary = elementsObject(section)[0];
    refuseEncrypted(cache, dictionary);
    readEntries(cache, section);
    return {.trailer = sharedObject(dictionary), .end = behindStartxref(cache, found.end)};
}

} // namespace corvane
