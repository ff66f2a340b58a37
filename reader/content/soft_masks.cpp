#include "reader/content/soft_masks.h"

#include "objects/referenced.h"
#include "reader/content/inner_content.h"
#include "reader/font/font_entries.h"
#include "reader/form/form_entries.h"
#include "reader/form/form_path.h"
#include "reader/paint/colour_space.h"
#include "reader/paint/seen_colour.h"
#include "runtime/budget.h"
#include "runtime/callbacks.h"
#include "runtime/matrix.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace corvane {

namespace {

/// Values at which a transfer function is asked: as many as levels of a screen.
constexpr std::size_t transferSteps = 256;

/// The colour that lies behind the group, as its light (PDF Reference, 7.5.4).
double backdropOf(Interpreter& interpreter, const Object& dictionary, const Object& form) {
    DocumentCache& cache = interpreter.cache;
    const ObjectOwner backdrop = lookupObject(cache, dictionary, "BC");
    if (typeObject(backdrop.get()) != ObjectType::array) {
        return 0;
    }
    const std::vector<double> components = numbersEntry(cache, dictionary, "BC", functionArity);
    ColourSpacePointer space;
    const ObjectOwner group = lookupObject(cache, form, "Group");
    if (typeObject(group.get()) == ObjectType::dictionary) {
        const ObjectOwner named = lookupObject(cache, group.get(), "CS");
        space = readColourSpace(cache, named.get());
    }
    if (space == nullptr || space->kind == ColourSpace::Kind::pattern) {
        const std::string_view device = components.size() == 4   ? "DeviceCMYK"
                                        : components.size() == 3 ? "DeviceRGB"
                                                                 : "DeviceGray";
        space = interpreter.colourSpaces.named(device);
    }
    interpreter.progress.work(costOf(*space));
    const SeenColour seen = seenColour(colourIn(*space, components));
    return (.3 * seen.red + .59 * seen.green + .11 * seen.blue) / 255;
}

/// What a function makes of values; empty where it leaves them as they are.
std::vector<double> readTransfer(Interpreter& interpreter, const Object& object) {
    const FunctionPointer function = readFunction(interpreter.cache, object);
    if (function == nullptr || function->inputs() != 1 || function->outputs() < 1) {
        return {};
    }
    interpreter.progress.work(static_cast<std::int64_t>(transferSteps) * function->cost());
    std::vector<double> transfer(transferSteps);
    std::array<double, functionArity> out{};
    for (std::size_t i = 0; i < transferSteps; ++i) {
        const double in = static_cast<double>(i) / static_cast<double>(transferSteps - 1);
        function->evaluate(std::span(&in, 1), out);
        transfer[i] = out[0] >= 0 ? std::min(out[0], 1.0) : 0;
    }
    return transfer;
}

/// A group in no layer, disposed of unless a mask takes it.
class Artwork {
public:
    Artwork() { callHost(slot::newArtwork, &group_); }
    ~Artwork() {
        // A slot is called without a block of its own: a host that fails keeps the group.
        if (group_ != Art::null) {
            if (const auto dispose = slotProcedure(callbacks, slot::disposeArtwork)) {
                dispose(group_);
            }
        }
    }
    Artwork(const Artwork&) = delete;
    Artwork& operator=(const Artwork&) = delete;

    Art get() const { return group_; }
    void release() { group_ = Art::null; }

private:
    Art group_ = Art::null;
};

/// Draws the group of a mask.
void drawGroup(Interpreter& interpreter, std::int32_t number, const Object& form,
               const RealMatrix& matrix, Art group) {
    DocumentCache& cache = interpreter.cache;
    const std::optional<FormBox> box = boxEntry(cache, form, "BBox");
    if (!inverse(matrix) || (box && box->isEmpty())) {
        return; // nothing is seen
    }
    if (box) {
        clipGroup(group, *box, matrix);
    }
    const ObjectOwner resources = lookupObject(cache, form, "Resources");
    InnerContent content(interpreter, number, initialState(), matrix, group);
    content.run(form, resources.get(), [](Interpreter&) {});
    interpreter.containers.finish();
}

} // namespace

const std::vector<double>& SoftMasks::transferOf(Interpreter& interpreter,
                                                 const Object& dictionary) {
    DocumentCache& cache = interpreter.cache;
    const Object entry = findEntry(cache, dictionary, "TR");
    const std::int32_t number = referenced(entry).number;
    const auto [known, isNew] = transfers_.try_emplace(number);
    if (isNew || number == 0) {
        const ObjectOwner object = resolveObject(cache, entry);
        const ObjectType type = typeObject(object.get());
        const bool isFunction = type == ObjectType::dictionary || type == ObjectType::stream;
        known->second =
            isFunction ? readTransfer(interpreter, object.get()) : std::vector<double>();
    }
    return known->second;
}

SoftMask SoftMasks::find(Interpreter& interpreter, const Object& dictionary) {
    DocumentCache& cache = interpreter.cache;
    const Object entry = findEntry(cache, dictionary, "G");
    const ObjectOwner form = resolveObject(cache, entry);
    if (typeObject(entry) != ObjectType::reference ||
        typeObject(form.get()) != ObjectType::stream) {
        return SoftMask::null;
    }
    const std::int32_t number = referenced(entry).number;
    const RealMatrix& ctm = interpreter.state.exactCtm;
    if (!isFinite(ctm) || !InnerContent::mayEnter(interpreter, number) ||
        !interpreter.progress.hasRoom(cache.work.pageBytes)) {
        return SoftMask::null;
    }
    const ObjectOwner kind = lookupObject(cache, dictionary, "S");
    MaskFacts facts;
    facts.isLuminosity =
        typeObject(kind.get()) == ObjectType::literal && literalObject(kind.get()) == "Luminosity";
    facts.backdrop = facts.isLuminosity
                         ? std::clamp(backdropOf(interpreter, dictionary, form.get()), 0.0, 1.0)
                         : 0;
    const std::vector<double> transfer = transferOf(interpreter, dictionary);
    Key key{number,         interpreter.colourSpaces.defaults().number(), facts.isLuminosity,
            facts.backdrop, {ctm.a, ctm.b, ctm.c, ctm.d, ctm.tx, ctm.ty}, transfer};
    if (const auto known = known_.find(key); known != known_.end()) {
        return known->second;
    }
    interpreter.progress.charge(budget::innerContentTokens);
    Artwork content;
    const RealMatrix matrix = multiply(formMatrix(cache, form.get()), ctm);
    drawGroup(interpreter, number, form.get(), matrix, content.get());
    facts.content = content.get();
    facts.transfer = transfer;
    SoftMask mask = SoftMask::null;
    callHost(slot::addMask, &facts, &mask);
    content.release();
    known_.emplace(std::move(key), mask);
    return mask;
}

} // namespace corvane
