#include "writer/patch/live_setters.h"

#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/page/used_names.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

static_assert(static_cast<int>(OperatorRole::external) < 32);

constexpr std::uint64_t roleBit(OperatorRole role) {
    return std::uint64_t{1} << static_cast<int>(role);
}

/// Entries of an external graphics state that operators set, too (PDF Reference, 4.3.4).
struct SharedEntry {
    std::string_view key;
    OperatorRole role;
};
constexpr std::array sharedEntries = {
    SharedEntry{"LW", OperatorRole::lineWidth}, SharedEntry{"LC", OperatorRole::cap},
    SharedEntry{"LJ", OperatorRole::join},      SharedEntry{"ML", OperatorRole::miterLimit},
    SharedEntry{"D", OperatorRole::dash},       SharedEntry{"FL", OperatorRole::flatness},
    SharedEntry{"RI", OperatorRole::intent},
};

/// And those that it alone sets.
constexpr std::array<std::string_view, 19> ownEntries = {
    "Font", "OP", "op", "OPM", "BG", "BG2", "UCR",   "UCR2", "TR", "TR2",
    "HT",   "SM", "SA", "BM",  "CA", "ca",  "SMask", "AIS",  "TK"};

constexpr std::uint64_t ownBit(std::size_t entry) {
    return std::uint64_t{1} << (32 + entry);
}

/// All that nobody knows.
constexpr std::uint64_t unknownBit = ownBit(ownEntries.size());

/// Parts of which an operator leaves nothing that sets these.
std::uint64_t replacedBy(std::uint64_t parts) {
    const auto with = [&](OperatorRole space, OperatorRole colour) {
        return (parts & roleBit(space)) != 0 ? roleBit(colour) : 0;
    };
    return parts | with(OperatorRole::fillSpace, OperatorRole::fillColour) |
           with(OperatorRole::strokeSpace, OperatorRole::strokeColour);
}

std::uint64_t partOf(std::string_view key) {
    const auto* const shared = std::ranges::find(sharedEntries, key, &SharedEntry::key);
    if (shared != sharedEntries.end()) {
        return roleBit(shared->role);
    }
    const auto* const own = std::ranges::find(ownEntries, key);
    return key == "Type"             ? 0
           : own != ownEntries.end() ? ownBit(static_cast<std::size_t>(own - ownEntries.begin()))
                                     : unknownBit;
}

} // namespace

std::vector<TraceIndex> LiveSetters::upTo(TraceIndex setter) {
    std::vector<TraceIndex> live;
    for (std::uint32_t item = listOf(setter); item != 0; item = items_[item].next) {
        live.push_back(items_[item].setter);
    }
    std::ranges::reverse(live);
    return live;
}

std::uint32_t LiveSetters::listOf(TraceIndex setter) {
    // A link has a greater number than those before it.
    while (lists_.size() <= setter) {
        const auto next = static_cast<TraceIndex>(lists_.size());
        lists_.push_back(extended(next, lists_[trace_.setter(next).former]));
    }
    return lists_[setter];
}

/// The list of those before it with one operator more, without what it leaves nothing of.
std::uint32_t LiveSetters::extended(TraceIndex setter, std::uint32_t former) {
    const Parts parts = partsOf(setter);
    if (parts == 0) {
        return former;
    }
    Parts replaced = replacedBy(parts);
    std::vector<Item> kept = {{.setter = setter, .parts = parts}};
    std::size_t changed = 1; // how many stand in front of what stays as it is
    std::uint32_t rest = former;
    for (std::uint32_t at = former; at != 0; at = items_[at].next) {
        const Item& item = items_[at];
        if ((item.parts & ~replaced) == 0) {
            changed = kept.size();
            rest = item.next;
        } else {
            kept.push_back(item);
            replaced |= replacedBy(item.parts);
        }
    }
    while (changed > 0) {
        Item& item = kept[--changed];
        item.next = rest;
        items_.push_back(item);
        rest = static_cast<std::uint32_t>(items_.size() - 1);
    }
    return rest;
}

LiveSetters::Parts LiveSetters::partsOf(TraceIndex setter) {
    const TraceEvent& event = trace_.events()[trace_.setter(setter).event];
    if (event.role != OperatorRole::external) {
        return roleBit(event.role);
    }
    std::string bytes;
    bytes_.append(bytes, {event.start, event.end});
    const std::size_t start = bytes.find('/');
    const std::size_t end = bytes.find_first_of(" \t\r\n\f", start);
    return start == std::string::npos
               ? 0
               : partsOfState(std::string_view(bytes).substr(
                     start + 1, end == std::string::npos ? end : end - start - 1));
}

LiveSetters::Parts LiveSetters::partsOfState(std::string_view name) {
    const auto [known, isNew] = ofStates_.try_emplace(std::string(name), 0);
    if (isNew) {
        attempted([&, &parts = known->second] {
            const ObjectOwner states = lookupObject(cache_, names_, "ExtGState");
            if (typeObject(states.get()) != ObjectType::dictionary) {
                return;
            }
            const ObjectOwner state = lookupObject(cache_, states.get(), decodedName(name));
            if (typeObject(state.get()) != ObjectType::dictionary) {
                return;
            }
            const std::span<Object> elements = elementsObject(state.get());
            for (std::size_t i = 0; i + 1 < elements.size(); i += 2) {
                parts |= partOf(literalObject(elements[i]));
            }
        });
    }
    return known->second;
}

} // namespace corvane
