#include "writer/mend/survey.h"

#include "reader/syntax/file_scope.h"
#include "reader/syntax/indirect.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "writer/mend/sound_copy.h"
#include "writer/update/listed_objects.h"

#include <algorithm>
#include <array>
#include <set>

namespace corvane {

namespace {

/// What is mended by writing an object again. Words that mean nothing are left as they stand:
/// readers differ in what they take them for.
constexpr std::array copiedKinds{Mend::streamLength, Mend::objectEnd};

bool isSection(DocumentCache& cache, const Object& stream) {
    const Object type = findEntry(cache, stream, "Type");
    return typeObject(type) == ObjectType::literal && literalObject(type) == "XRef";
}

/// The objects that stand in the file itself, in the order in which they do.
std::vector<ListedObject> objectsInFile(const DocumentCache& cache) {
    std::vector<ListedObject> objects = standingObjects(cache);
    std::erase_if(objects, [](const ListedObject& object) { return object.place.isInStream(); });
    std::ranges::sort(objects, {},
                      [](const ListedObject& object) { return object.place.offset(); });
    return objects;
}

/// Whether an object of this name begins at its place, though it cannot be read.
bool beginsThere(DocumentCache& cache, const ListedObject& object) {
    bool begins = false;
    attempted([&] {
        FileScope scope(cache, object.place.offset());
        begins = scope.tokens().readToken() == TokenType::integer &&
                 scope.tokens().number().integer == object.number &&
                 beginsObject(cache, object.place.offset());
    });
    return begins;
}

/// Looks at one object after the other, in the order of the file.
class Look {
public:
    Look(DocumentCache& cache, Survey& survey) : cache_(cache), survey_(survey) {}

    void take(const ListedObject& object) {
        ObjectOwner reference;
        indirectObject(reference.get(), object.number, object.generation);
        ObjectOwner value;
        if (tryResolveObject(cache_, reference.get(), value) != Exception::none) {
            // What reads as the head of an object within a stream is a part of its data.
            const bool isData = object.place.offset() < streamsEnd_;
            if (isData || !beginsThere(cache_, object)) {
                cache_.mends.note(Mend::lostObject, object.number);
                survey_.missing.push_back(object.number);
            }
        } else if (typeObject(value.get()) == ObjectType::stream) {
            streamsEnd_ = std::max(streamsEnd_, streamEnd(value.get()));
            if (isSection(cache_, value.get())) {
                survey_.sections.push_back(object.number);
            }
        }
        forgetObject(cache_, object.number, object.generation);
    }

private:
    DocumentCache& cache_;
    Survey& survey_;
    std::int32_t streamsEnd_ = 0; ///< of the streams looked at
};

} // namespace

Survey surveyObjects(DocumentCache& cache) {
    Survey survey;
    std::vector<ListedObject> objects = objectsInFile(cache);
    Look look(cache, survey);
    for (const ListedObject& object : objects) {
        look.take(object);
    }
    std::ranges::sort(survey.sections);
    std::set<std::int32_t> numbers;
    for (const Mend kind : copiedKinds) {
        numbers.insert(cache.mends.objects(kind).begin(), cache.mends.objects(kind).end());
    }
    survey.hasDamagedSection = std::ranges::any_of(
        survey.sections, [&](std::int32_t number) { return numbers.contains(number); });
    std::ranges::sort(objects, {}, &ListedObject::number);
    for (const std::int32_t number : numbers) {
        const auto object = std::ranges::lower_bound(objects, number, {}, &ListedObject::number);
        if (object != objects.end() && object->number == number &&
            !std::ranges::binary_search(survey.sections, number) &&
            canCopy(cache, {number, object->generation})) {
            survey.damaged.push_back({number, object->generation});
        }
    }
    return survey;
}

} // namespace corvane
