#include "codecs/dct/dct.h"

#include "codecs/dct/decoder.h"
#include "codecs/dct/encoder.h"

namespace corvane {

DctState::DctState() = default;
DctState::~DctState() = default;

std::unique_ptr<DctState> DCTInitialize() {
    return std::make_unique<DctState>();
}

void DCTDecodeOpen(DctState& state, DctSource& source) {
    state.decoder =
        std::make_unique<DctDecoder>(source, state.strict, state.usualTransform, state.clock);
}

std::span<const std::uint8_t> DCTDFilBuf(DctState& state) {
    return state.decoder->nextRow();
}

const DctFrame* dctFrame(const DctState& state) {
    return state.decoder ? state.decoder->frame() : nullptr;
}

void DCTEncodeOpen(DctState& state, DctSink& sink) {
    state.encoder = std::make_unique<DctEncoder>(state.settings, sink);
    state.row.assign(state.encoder->rowBytes() + DctEncoder::rowSlack, 0);
}

void DCTEFlush(DctState& state) {
    state.encoder->putRow(state.row.data());
}

void DCTfree(DctState& state) {
    if (state.encoder) {
        state.encoder->finish();
    }
    if (state.decoder) {
        state.decoder->skipRest();
    }
}

void DCTShutdown(std::unique_ptr<DctState> state) {
    state.reset();
}

} // namespace corvane
