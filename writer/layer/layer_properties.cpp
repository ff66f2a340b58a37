#include "writer/layer/layer_properties.h"

#include "objects/identity.h"
#include "objects/referenced.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/font/font_entries.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "writer/crypt/sealed.h"
#include "writer/layer/name_text.h"
#include "writer/mend/sound_copy.h"
#include "writer/page/carried_entries.h"
#include "writer/page/needed_version.h"

#include <algorithm>
#include <array>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

namespace {

std::string textOf(ObjectIdentifier object) {
    return std::to_string(object.number) + " " + std::to_string(object.generation) + " R ";
}

/// A list of groups in its order, in which one is found at once.
class GroupList {
public:
    GroupList(DocumentCache& cache, const Object& dictionary, std::string_view key) {
        const ObjectOwner list = entryOf(cache, dictionary, key);
        if (typeObject(list.get()) != ObjectType::array) {
            return;
        }
        for (const Object& element : elementsObject(list.get())) {
            if (typeObject(element) == ObjectType::reference) {
                set(referenced(element), true);
            }
        }
    }

    void set(ObjectIdentifier object, bool isIn) {
        if (isIn && numbers_.insert(object.number).second) {
            objects_.push_back(object);
        } else if (!isIn && numbers_.erase(object.number) != 0) {
            std::erase_if(objects_,
                          [&](ObjectIdentifier each) { return each.number == object.number; });
        }
    }

    /// An entry of that key; nothing where the list is empty.
    std::string entry(std::string_view key) const {
        return objects_.empty() ? "" : "/" + std::string(key) + " " + value() + "\r";
    }
    std::string value() const {
        std::string text = "[ ";
        for (const ObjectIdentifier object : objects_) {
            text += textOf(object);
        }
        return text + "]";
    }

private:
    std::vector<ObjectIdentifier> objects_;
    std::set<std::int32_t> numbers_;
};

/// The order in which groups are listed for a person: groups, lists of them, and names of lists.
class GroupOrder {
public:
    GroupOrder(const DocumentCache& cache, ObjectIdentifier in,
               std::span<const std::int32_t> dropped)
        : cache_(cache), in_(in), dropped_(dropped) {}

    std::string text(const Object& order, const std::string& added) const {
        std::string text = "[ ";
        if (typeObject(order) == ObjectType::array) {
            addElements(text, order, 0);
        }
        return text + added + "]";
    }

private:
    void addElements(std::string& text, const Object& array, int depth) const {
        for (const Object& element : elementsObject(array)) {
            const ObjectType type = typeObject(element);
            if (type == ObjectType::reference) {
                const ObjectIdentifier object = referenced(element);
                if (std::ranges::find(dropped_, object.number) == dropped_.end()) {
                    text += textOf(object);
                }
            } else if (type == ObjectType::text || type == ObjectType::block) {
                const std::string name(textObject(element));
                text += sealedBytes(cache_, in_, std::as_bytes(std::span(name))) + " ";
            } else if (type == ObjectType::array && depth < budget::visibilityNesting) {
                text += "[ ";
                addElements(text, element, depth + 1);
                text += "] ";
            }
        }
    }

    const DocumentCache& cache_;
    ObjectIdentifier in_;
    std::span<const std::int32_t> dropped_;
};

const RawEntry* find(const std::vector<RawEntry>& entries, std::string_view key) {
    const auto entry = std::ranges::find(entries, key, &RawEntry::key);
    return entry == entries.end() ? nullptr : &*entry;
}

std::vector<RawEntry> entriesOf(DocumentCache& cache, const RawEntry* dictionary) {
    return dictionary == nullptr ? std::vector<RawEntry>() : rawEntries(cache, *dictionary);
}

/// Writes the entries of a value that is a dictionary, but for some keys, into the object `in`.
void writeCarried(DocumentCache& cache, const RawEntry* dictionary,
                  std::span<const std::string_view> without, ObjectIdentifier in) {
    for (const RawEntry& entry : entriesOf(cache, dictionary)) {
        if (std::ranges::find(without, entry.key) == without.end()) {
            writeEntry(cache, entry, in);
        }
    }
}

std::vector<RawEntry> catalogEntries(DocumentCache& cache) {
    const Object root = findEntry(cache, cache.trailer.get(), "Root");
    if (typeObject(root) == ObjectType::reference) {
        const ObjectIdentifier object = referenced(root);
        return rawEntries(cache, object.number, object.generation);
    }
    const std::vector<RawEntry> trailer = rawTrailer(cache);
    return entriesOf(cache, find(trailer, "Root"));
}

/// How the document begins.
void writeConfiguration(DocumentCache& cache, const SavedLayers& layers, const Object& usual,
                        const RawEntry* raw, ObjectIdentifier in) {
    constexpr std::array<std::string_view, 4> replaced = {"ON", "OFF", "Locked", "Order"};
    const bool showsOthers = nameEntry(cache, usual, "BaseState") != "OFF";
    GroupList on(cache, usual, "ON");
    GroupList off(cache, usual, "OFF");
    GroupList locked(cache, usual, "Locked");
    std::string added;
    for (const SavedLayer& layer : layers.changed()) {
        if (layer.isSwitched) {
            on.set(layer.object, layer.isVisible && !showsOthers);
            off.set(layer.object, !layer.isVisible && showsOthers);
        }
        if (layer.isRelocked) {
            locked.set(layer.object, layer.isLocked);
        }
        added += layer.isNew ? textOf(layer.object) : "";
    }
    const std::vector<std::int32_t> dropped = layers.dropped();
    for (const std::int32_t number : dropped) {
        for (GroupList* const list : {&on, &off, &locked}) {
            list->set({number, 0}, false);
        }
    }
    Filter& output = *cache.output;
    stringOutput(output, "<<\r");
    writeCarried(cache, raw, replaced, in);
    const ObjectOwner order = entryOf(cache, usual, "Order");
    if (!added.empty() || typeObject(order.get()) == ObjectType::array) {
        stringOutput(output,
                     "/Order " + GroupOrder(cache, in, dropped).text(order.get(), added) + "\r");
    }
    stringOutput(output, on.entry("ON") + off.entry("OFF") + locked.entry("Locked") + ">>\r");
}

} // namespace

PropertiesObject planLayerProperties(DocumentCache& cache) {
    const ObjectOwner root = entryOf(cache, cache.trailer.get(), "Root");
    const Object entry = findEntry(cache, root.get(), "OCProperties");
    if (typeObject(entry) == ObjectType::reference && isDictionary(resolved(cache, entry).get())) {
        return {.object = referenced(entry), .isNew = false};
    }
    return {.object = {nextIdentity(), 0}, .isNew = true};
}

void writeLayerProperties(DocumentCache& cache, const SavedLayers& layers,
                          ObjectIdentifier itself) {
    constexpr std::array<std::string_view, 2> replaced = {"OCGs", "D"};
    const ObjectOwner root = entryOf(cache, cache.trailer.get(), "Root");
    const ObjectOwner properties = entryOf(cache, root.get(), "OCProperties");
    const ObjectOwner usual = entryOf(cache, properties.get(), "D");
    const std::vector<RawEntry> ofCatalog = catalogEntries(cache);
    const RawEntry* const raw = find(ofCatalog, "OCProperties");
    const std::vector<RawEntry> entries = entriesOf(cache, raw);
    GroupList groups(cache, properties.get(), "OCGs");
    for (const SavedLayer& layer : layers.changed()) {
        groups.set(layer.object, true);
    }
    for (const std::int32_t number : layers.dropped()) {
        groups.set({number, 0}, false);
    }
    needVersion(Feature::optionalContent);
    Filter& output = *cache.output;
    touchXRef(output, itself.number, itself.generation);
    objectOutput(output, itself.number, itself.generation);
    stringOutput(output, "<<\r");
    writeCarried(cache, raw, replaced, itself);
    stringOutput(output, "/OCGs " + groups.value() + "\r/D ");
    writeConfiguration(cache, layers, usual.get(), find(entries, "D"), itself);
    stringOutput(output, ">>\rendobj\r");
}

void writeLayers(DocumentCache& cache, const SavedLayers& layers) {
    Filter& output = *cache.output;
    for (const SavedLayer& layer : layers.changed()) {
        if (layer.isNew) {
            touchXRef(output, layer.object.number, layer.object.generation);
            objectOutput(output, layer.object.number, layer.object.generation);
            stringOutput(output, "<< /Type /OCG /Name " +
                                     sealedName(cache, layer.object, layer.name) + " >>\rendobj\r");
        } else if (layer.isRenamed) {
            writeCopy(cache, layer.object,
                      {.entries = {{"Name", sealedName(cache, layer.object, layer.name)}},
                       .inherited = {}});
        }
    }
}

} // namespace corvane
