#include "writer/patch/form/form_object.h"

#include "output/primitives.h"
#include "output/xref.h"
#include "runtime/exception.h"
#include "writer/page/needed_version.h"
#include "writer/page/page_geometry.h"
#include "writer/patch/base/content_resources.h"
#include "writer/patch/form/form_box.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// Keys that are written anew; those of the data, which are written in another form; and notes of
/// other programs on what the form was.
constexpr std::array<std::string_view, 10> replacedKeys = {
    "Resources", "Length",  "DL",           "Filter",       "DecodeParms",
    "F",         "FFilter", "FDecodeParms", "LastModified", "PieceInfo"};

/// A copy has no place in the page's structure.
constexpr std::array<std::string_view, 2> structureKeys = {"StructParent", "StructParents"};

template <std::size_t count>
bool isAmong(const std::array<std::string_view, count>& keys, std::string_view key) {
    return std::ranges::find(keys, key) != keys.end();
}

std::unique_ptr<ResourceRegistry> carriedResources(PageTools& tools, const BaseContent& content) {
    auto resources = std::make_unique<ResourceRegistry>();
    resources->avoidNames(tools.cache, streamsOf(content, tools.base),
                          sharedObject(resourcesOf(content, tools.base)));
    resources->carry(tools.cache, entriesOfResources(tools.cache, content, tools.base));
    return resources;
}

void carryEntries(DocumentCache& cache, const EditedForm& form, FormObject& object) {
    const FormTrace& former = *form.base->form;
    for (RawEntry& entry : rawEntries(cache, former.object, former.generation)) {
        if (entry.key == "Resources" && former.hasResources && !object.resources->hasAdded()) {
            object.resourcesEntry = std::move(entry);
        } else if (!isAmong(replacedKeys, entry.key) && !(object.box && entry.key == "BBox") &&
                   !(form.isCopy && isAmong(structureKeys, entry.key))) {
            object.entries.add(std::move(entry));
        }
    }
}

} // namespace

bool needsObject(const EditedForm& form) {
    return form.isChanged || (form.isElsewhere && !form.base->form->hasResources);
}

FormObject planForm(PageTools& tools, EditedForm& form) {
    const FormTrace& former = *form.base->form;
    if (former.object == 0) {
        failException(Exception::unpatchable);
    }
    std::unique_ptr<ResourceRegistry> resources = carriedResources(tools, *form.base);
    const auto ofForm = std::make_unique<PatchTools>(tools, *form.base, *resources);
    FormObject object{.entries = {},
                      .box = {},
                      .resources = std::move(resources),
                      .resourcesEntry = {},
                      .patch = form.isChanged ? patchContent(*ofForm, form.inside, form.matching)
                                              : keepContent(*ofForm),
                      .stream = {}};
    if (form.isChanged) {
        object.box = enlargedBox(tools.cache, tools.base, form);
    }
    if (object.patch.isDamaged && !object.patch.content.isNothing()) {
        failException(Exception::unpatchable);
    }
    carryEntries(tools.cache, form, object);
    object.stream = joinContent(object.patch);
    object.compresses = compressesPatched(tools.cache, former.stream.get());
    form.number = object.stream.number;
    form.counts = object.patch.counts;
    form.counts.changed += form.isClipChanged ? 1 : 0;
    return object;
}

void writeForm(DocumentCache& cache, FormObject& form) {
    const ObjectIdentifier itself{form.stream.number, 0};
    Filter& output = *cache.output;
    touchXRef(output, itself.number, 0);
    objectOutput(output, itself.number, 0);
    stringOutput(output, "<<\r");
    form.entries.write(cache, itself);
    if (form.box) {
        writeBox(output, "BBox",
                 {form.box->low.x, form.box->low.y, form.box->high.x, form.box->high.y});
    }
    if (form.resourcesEntry) {
        writeEntry(cache, *form.resourcesEntry, itself);
    } else {
        stringOutput(output, "/Resources <<\r");
        form.resources->write(cache, itself);
        stringOutput(output, ">>\r");
    }
    if (form.compresses) {
        needVersion(Feature::flate);
        stringOutput(output, "/Filter /FlateDecode\r");
    }
    finishPatched(cache, form.stream, form.patch.bytes.stream(0), form.compresses);
}

} // namespace corvane
