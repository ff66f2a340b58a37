#include "reader/image/coded_image.h"

#include "filters/memory_filter.h"
#include "reader/syntax/stream/decode_filters.h"
#include "reader/syntax/stream/meter.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

ImageCodec codecOf(std::string_view filter) {
    if (filter == "DCTDecode" || filter == "DCT") {
        return ImageCodec::dct;
    }
    if (filter == "CCITTFaxDecode" || filter == "CCF") {
        return ImageCodec::fax;
    }
    if (filter == "JPXDecode") {
        return ImageCodec::jpx;
    }
    return filter == "JBIG2Decode" ? ImageCodec::jbig2 : ImageCodec::none;
}

} // namespace

CodedImage::CodedImage(const ImageEntries& entries, std::optional<std::span<const std::byte>> data)
    : entries_(entries), data_(data) {
    const ObjectOwner filters = entries.find(imageKey::filter);
    switch (typeObject(filters.get())) {
    case ObjectType::null:
        return;
    case ObjectType::array:
        filters_ = sizeObject(filters.get());
        break;
    default:
        filters_ = 1;
    }
    if (filters_ > budget::streamFilters) {
        failException(Exception::structure);
    }
    if (filters_ == 0) {
        return;
    }
    codec_ = codecOf(literalObject(element(imageKey::filter, filters_ - 1).get()));
    if (codec_ != ImageCodec::none) {
        parameters_ = element(imageKey::parameters, filters_ - 1);
    }
    if (codec_ != ImageCodec::none && codec_ != ImageCodec::fax) {
        --filters_;
    }
}

/// Of an array; the first and only one of anything else.
ObjectOwner CodedImage::element(ImageKey key, std::int32_t index) const {
    ObjectOwner value = entries_.find(key);
    if (typeObject(value.get()) != ObjectType::array) {
        return value;
    }
    const std::span<Object> elements = elementsObject(value.get());
    if (static_cast<std::size_t>(index) < elements.size()) {
        return resolveObject(entries_.cache(), elements[static_cast<std::size_t>(index)]);
    }
    Object null;
    shallowObject(null, ObjectType::null, 0);
    return ObjectOwner(null);
}

Chain CodedImage::open() const {
    DocumentCache& cache = entries_.cache();
    Chain chain;
    if (data_) {
        chain.link(std::make_unique<MemoryFilter>(*data_));
        chain.link(setupMeter(cache.work));
    } else {
        chain = plainStream(cache, entries_.object());
    }
    for (std::int32_t i = 0; i < filters_; ++i) {
        const ObjectOwner name = element(imageKey::filter, i);
        const ObjectOwner parameters = element(imageKey::parameters, i);
        linkDecodeFilter(cache, chain, literalObject(name.get()), parameters.get());
    }
    return chain;
}

HeldBytes CodedImage::read() const {
    return readAll(open());
}

HeldBytes readAll(const Chain& chain) {
    constexpr std::size_t firstBlock = 1 << 16;
    HeldBytes held;
    std::size_t count = 0;
    for (;;) {
        if (count == held.bytes.size()) {
            if (count >= budget::codedImageBytes) {
                failException(Exception::limit);
            }
            const std::size_t room =
                std::min(std::max(firstBlock, 2 * count), budget::codedImageBytes);
            held.charge.resize(static_cast<std::int64_t>(room));
            held.bytes.resize(room);
        }
        const std::size_t more = readFilter(*chain.top(), std::span(held.bytes).subspan(count));
        if (more == 0) {
            held.bytes.resize(count);
            return held;
        }
        count += more;
    }
}

} // namespace corvane
