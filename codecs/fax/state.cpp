#include "codecs/fax/state.h"

#include <utility>

namespace corvane {

namespace {

std::size_t rowBitsBytes(const std::optional<FaxRowBits>& bits, std::int32_t columns) {
    return bits ? FaxRowBits::bytesFor(columns) : 0;
}

} // namespace

CCStream::CCStream() = default;
CCStream::~CCStream() = default;

std::size_t CCFaxExtraBytes(const CCParameters& parameters) {
    const std::size_t changes =
        (static_cast<std::size_t>(parameters.columns) + 10) * sizeof(std::int32_t);
    const std::size_t words = faxRowWords(parameters.columns) * faxWordBytes;
    return 2 * changes + words + 2 * FaxRowBits::bytesFor(parameters.columns);
}

std::size_t CCFaxUncExtraBytes(const CCParameters& parameters) {
    return FaxRowBits::bytesFor(parameters.columns);
}

FaxState::FaxState(const CCParameters& given, FaxByteStream& stream)
    : parameters(given), byteStream(stream),
      charge(static_cast<std::int64_t>(CCFaxExtraBytes(given) +
                                       (given.uncompressedMode ? CCFaxUncExtraBytes(given) : 0))),
      above(given.columns), row(given.columns), pixels(faxRowWords(given.columns) * faxWordBytes),
      reader(stream), writer(stream) {
    if (stream.reading) {
        return;
    }
    if (given.k >= 0) {
        oneDimensional.emplace(given.columns);
    }
    if (given.k != 0) {
        twoDimensional.emplace(given.columns);
    }
    if (given.uncompressedMode) {
        withoutCompression.emplace(given.columns);
    }
}

void FaxState::finishRow() {
    std::swap(above, row);
}

std::size_t CCFaxCheckBytes(const FaxState& state) {
    const std::int32_t columns = state.parameters.columns;
    return (state.above.places.size() + state.row.places.size()) * sizeof(std::int32_t) +
           state.pixels.size() + rowBitsBytes(state.oneDimensional, columns) +
           rowBitsBytes(state.twoDimensional, columns) +
           rowBitsBytes(state.withoutCompression, columns);
}

void SetupCCStm(const CCParameters& parameters, FaxByteStream& bytes, CCStream& stream) {
    if (parameters.columns <= 0) {
        cc_error();
    }
    stream.state = std::make_unique<FaxState>(parameters, bytes);
    stream.reading = bytes.reading;
    stream.writing = bytes.writing;
    stream.row = stream.state->pixels.data();
    stream.current = stream.row;
    stream.count = 0;
}

std::size_t CheckCCStm(const CCStream& stream) {
    return stream.state ? CCFaxCheckBytes(*stream.state) : 0;
}

void FinalCCStm(CCStream& stream) {
    if (stream.state && stream.reading) {
        stream.state->reader.ungetResidue();
    }
    stream.state.reset();
    stream.row = nullptr;
    stream.current = nullptr;
    stream.count = 0;
}

} // namespace corvane
