#include "writer/patch/page_patch.h"

#include "reader/content/art.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/warning.h"
#include "writer/art/art_stack.h"
#include "writer/art/layers.h"
#include "writer/patch/base/base_reading.h"
#include "writer/patch/compare/kept_annotations.h"
#include "writer/patch/compare/missing_art.h"
#include "writer/patch/form/form_comparison.h"
#include "writer/patch/text/known_text.h"
#include "writer/patch/text/text_layout.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace corvane {

namespace {

/// A page has one layer so far, the one in the back.
void tellLayers(std::span<const std::string> layers) {
    const auto extension = knownExtension();
    for (std::size_t i = 1; i < layers.size(); ++i) {
        if (layers[i].empty()) {
            continue; // no person made it: what stands outside all layers
        }
        raiseWarning(Warning::layerNotKept);
        if (extension && extension->layerNotKept != nullptr) {
            extension->layerNotKept(extension->context, layers[i]);
        }
    }
}

void noteLayers(const EditedArtwork& artwork, SavedLayers& layers) {
    for (const EditedGroup& group : artwork.groups.items()) {
        layers.note(group.layer);
    }
}

/// Annotations are no content of the page, and what they hold may be in layers, too.
void noteLayersOfAnnotations(const EditedArtwork& artwork, SavedLayers& layers) {
    ArtStack pending;
    for (const Art annotation : artwork.annotations.items()) {
        pending.push(annotation);
    }
    for (ArtStep step; pending.next(step);) {
        if (step.what == ArtStep::What::art && artKind(step.art) == ArtKind::group) {
            layers.note(layerOf(step.art));
            pending.enter(firstChild(step.art), ArtStep::What::end);
        }
    }
}

/// What the page did not have.
ChargedList<Art> addedArt(const EditedArtwork& artwork, const Matching& matching) {
    ChargedList<Art> added;
    for (EditedIndex i = 0; i < artwork.objects.size(); ++i) {
        if (matching.objects[i].source == noSource) {
            added.push(artwork.objects[i].art);
        }
    }
    return added;
}

/// What is not saved of annotations is to be known, unless the host insists.
void refuseChangedAnnotations(DocumentCache& cache, const BaseReading& reading,
                              const EditedArtwork& artwork, const Matching& matching,
                              const UnmarkedAnnotations& unmarked) {
    const bool isAny = tellChangedAnnotations(cache, reading, artwork.annotations,
                                              addedArt(artwork, matching), unmarked);
    const auto extension = knownExtension();
    if (isAny && !(extension && extension->overwrites)) {
        failException(Exception::annotationChanged);
    }
}

/// Which forms of a content, that is a copy or not, the page draws otherwise.
void markCopies(const EditedArtwork& artwork, const Matching& matching, bool isCopy) {
    for (EditedIndex i = 0; i < artwork.objects.size(); ++i) {
        if (EditedForm* const form = artwork.objects[i].form) {
            const MatchedObject& object = matching.objects[i];
            form->isElsewhere = object.source == noSource;
            form->isCopy = isCopy || form->isElsewhere || object.isCopy;
        }
    }
}

PagePatch plan(PageTools& tools, const BaseReading& reading, ResourceRegistry& resources) {
    const BaseContents contents(reading, tools.base.isAsOpened);
    EditedForms forms;
    const UnmarkedAnnotations unmarked = findUnmarked(reading);
    EditedArtwork artwork = listArtwork(contents, forms, unmarked.art);
    reading.layers.settle(artwork, forms);
    noteLayers(artwork, tools.layers);
    noteLayersOfAnnotations(artwork, tools.layers);
    for (const EditedForm& form : forms) {
        noteLayers(form.inside, tools.layers);
    }
    for (EditedForm& form : forms) {
        knowText(*form.base, form.inside, true);
        layOutText(*form.base, form.inside, tools.setText);
    }
    knowText(contents.page(), artwork, tools.base.isAsOpened);
    layOutText(contents.page(), artwork, tools.setText);
    tools.setText.finish();
    std::ranges::for_each(forms, compareForm);
    const Matching matching = matchArtwork(contents.page(), artwork, tools.base.isAsOpened);
    refuseMissing(contents, matching, artwork, forms);
    refuseChangedAnnotations(tools.cache, reading, artwork, matching, unmarked);
    tellLayers(artwork.layers);
    markCopies(artwork, matching, false);
    // From the outermost: what a copy holds are copies.
    std::for_each(forms.rbegin(), forms.rend(), [](const EditedForm& form) {
        markCopies(form.inside, form.matching, form.isCopy);
    });
    std::deque<FormObject> objects;
    for (EditedForm& form : forms) {
        if (needsObject(form)) {
            objects.push_back(planForm(tools, form));
        }
    }
    const auto ofPage = std::make_unique<PatchTools>(tools, contents.page(), resources);
    ContentPatch page = patchContent(*ofPage, artwork, matching);
    return {.page = std::move(page),
            .forms = std::move(objects),
            .paints = std::move(tools.paints),
            .fonts = tools.setText.takeFonts(),
            .images = tools.images.images(),
            .resetState = tools.resetState};
}

} // namespace

PagePatch planPatch(DocumentCache& cache, const PageBase& base, ResourceRegistry& resources,
                    SavedLayers& layers) {
    BaseReading reading;
    std::optional<PagePatch> patch;
    const Exception code = guarded([&] {
        readBase(cache, base, reading);
        layers.know(reading.layers.ofPage());
        PageTools tools(cache, base, reading.fonts, layers);
        patch = plan(tools, reading, resources);
    });
    const Exception disposal = guarded([&] { disposeBase(reading); });
    resetException();
    raiseException(code != Exception::none ? code : disposal);
    return std::move(*patch);
}

} // namespace corvane
