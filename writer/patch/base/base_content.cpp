#include "writer/patch/base/base_content.h"

namespace corvane {

namespace {} // namespace

BaseContents::BaseContents(const BaseReading& reading, bool sourcesMeanIt)
    : sourcesMeanIt_(sourcesMeanIt) {
    contents_.push_back({.trace = reading.trace,
                         .paints = reading.paints,
                         .masks = reading.masks,
                         .layers = reading.layers});
    byNumber_.push_back(&contents_.front());
    // What is added within the loop is visited by it, too.
    for (std::size_t i = 0; sourcesMeanIt && i < contents_.size(); ++i) {
        for (const std::unique_ptr<FormTrace>& form : contents_[i].trace.forms()) {
            if (form->group != Art::null && form->content > 0) {
                add(contents_[i], *form);
            }
        }
    }
}

void BaseContents::add(const BaseContent& around, const FormTrace& form) {
    const auto index = static_cast<std::size_t>(form.content);
    if (index >= byNumber_.size()) {
        byNumber_.resize(index + 1);
    }
    charge_.resize(static_cast<std::int64_t>((contents_.size() + 1) * sizeof(BaseContent) +
                                             byNumber_.size() * sizeof(BaseContent*)));
    contents_.push_back({.number = form.content,
                         .trace = form.trace,
                         .form = &form,
                         .around = &around,
                         .paints = around.paints,
                         .masks = around.masks,
                         .layers = around.layers});
    byNumber_[index] = &contents_.back();
}

std::int32_t leavesOf(const ContentTrace& trace) {
    std::int32_t count = 0;
    for (const PaintedArt& painted : trace.painted()) {
        count += painted.isForm ? leavesOf(trace.formAt(painted.event)->trace) : 1;
    }
    return count;
}

const Object& resourcesOf(const BaseContent& content, const PageBase& base) {
    return content.form == nullptr ? base.resources.get() : content.form->resources.get();
}

const RealMatrix& matrixOf(const BaseContent& content, const PageBase& base) {
    return content.form == nullptr ? base.matrix.exact : content.form->matrix;
}

std::vector<ObjectOwner> streamsOf(const BaseContent& content, const PageBase& base) {
    std::vector<ObjectOwner> streams;
    if (content.form != nullptr) {
        streams.push_back(sharedObject(content.form->stream.get()));
        return streams;
    }
    for (const BaseStream& stream : base.streams) {
        streams.push_back(sharedObject(stream.stream.get()));
    }
    return streams;
}

} // namespace corvane
