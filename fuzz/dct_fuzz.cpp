// Any bytes through the DCT decoder: the same rows whatever the chunks of the source, and the same
// samples as libjpeg-turbo where both take the data without complaint. And any picture through the
// encoder: what it writes decodes, in both decoders, to nearly the same picture.
#include "fuzz/targets.h"
#include "host/memory.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "runtime/warning.h"
#include "tests/support/picture.h"
#include "toolbox/state.h"

#include <algorithm>
#include <array>

namespace corvane::fuzz {

namespace {

using test::Picture;

/// Pictures beyond this take the peer too long.
constexpr std::size_t mostPixels = std::size_t{1} << 20;

struct Reading {
    Exception code = Exception::none;
    Warning warning = Warning::none;
    std::size_t taken = 0;
    Picture picture{};
};

/// Stops before a picture gets large: a few bytes may say 65,535 by 65,535.
Reading decode(Bytes input, std::size_t longest) {
    Reading reading;
    test::MemorySource source(input, longest);
    reading.code = guarded([&] {
        const auto state = DCTInitialize();
        DCTDecodeOpen(*state, source);
        Picture& picture = reading.picture;
        for (auto row = DCTDFilBuf(*state); !row.empty(); row = DCTDFilBuf(*state)) {
            picture.samples.insert(picture.samples.end(), row.begin(), row.end());
            ++picture.height;
            if (picture.samples.size() > 4 * mostPixels) {
                break;
            }
        }
        if (const DctFrame* frame = dctFrame(*state)) {
            picture.width = frame->width;
            picture.components = frame->components.size();
        }
        DCTfree(*state);
    });
    resetException();
    reading.warning = resetWarning();
    reading.taken = source.taken();
    require(zoneBlocksInUse() == 0 && zoneBytesCharged() == 0);
    require(reading.code == Exception::none || reading.code == Exception::codec ||
            reading.code == Exception::memory);
    return reading;
}

} // namespace

void fuzzDctDecode(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    selectRules(choices.below(2) == 0 ? Profile::original : Profile::extended);
    const Reading whole = decode(input, SIZE_MAX);
    const Reading pieces = decode(input, 1 + choices.below(40));
    require(pieces.code == whole.code && pieces.warning == whole.warning &&
            (whole.code != Exception::none || pieces.taken == whole.taken) &&
            pieces.picture.samples == whole.picture.samples);
    if (whole.code != Exception::none || whole.warning != Warning::none) {
        return;
    }
    // Without APP14 (which may say anything) one and three components mean the same to both.
    const Picture& picture = whole.picture;
    constexpr std::array application{std::byte{0xFF}, std::byte{0xEE}};
    const bool stated = std::search(input.begin(), input.end(), application.begin(),
                                    application.end()) != input.end();
    if (stated || picture.samples.empty() || (picture.components != 1 && picture.components != 3)) {
        return;
    }
    const test::PeerReading peer =
        test::readWithPeer(input, test::PeerColour::converted, mostPixels);
    if (peer.clean) {
        require(test::largestDifference(picture, peer.picture) <= 3 || test::hasWildValues(input));
    }
}

void fuzzDctEncode(Bytes input) {
    const ToolboxScope scope(memoryLimit);
    Choices choices(input);
    selectRules(Profile::extended);
    Picture picture;
    picture.components = 1 + choices.below(4);
    picture.width = 1 + choices.below(70);
    picture.height = 1 + choices.below(70);
    picture.samples.resize(picture.width * picture.height * picture.components);
    for (std::size_t i = 0; i < picture.samples.size() && !input.empty(); ++i) {
        picture.samples[i] = std::to_integer<std::uint8_t>(input[i % input.size()]);
    }
    DctSettings settings;
    settings.transform = choices.below(2) == 1;
    settings.quality = static_cast<Fixed>(choices.below(3 << 16));
    settings.restartInterval = choices.below(2) == 0 ? 0 : choices.below(9);
    settings.extendedFrame = choices.below(2) == 1;
    std::size_t blocks = 0;
    bool plain = true;
    for (std::size_t i = 0; i < picture.components; ++i) {
        settings.sampling[i] = {static_cast<std::uint8_t>(1 + choices.below(4)),
                                static_cast<std::uint8_t>(1 + choices.below(4))};
        blocks += std::size_t{settings.sampling[i].horizontal} * settings.sampling[i].vertical;
        plain &= settings.sampling[i].horizontal == settings.sampling[0].horizontal &&
                 settings.sampling[i].vertical == settings.sampling[0].vertical;
    }
    if (picture.components > 1 && blocks > 10) {
        settings.sampling = {};
        plain = true;
    }
    std::vector<std::byte> coded;
    require(guarded([&] { coded = test::encodePicture(picture, settings); }) == Exception::none);
    const Reading back = decode(coded, 1 + choices.below(100));
    require(back.code == Exception::none && back.warning == Warning::none);
    require(back.taken == coded.size());
    require(back.picture.samples.size() == picture.samples.size());
    // The built-in quantisers, halved or finer, leave noise of every kind above this.
    if (plain && settings.quality < 1 << 12) {
        require(test::largestDifference(back.picture, picture) <= 64);
    }
    const test::PeerReading peer = test::readWithPeer(coded, test::PeerColour::asStored);
    require(!plain || (peer.complete && peer.clean));
    require(zoneBlocksInUse() == 0 && zoneBytesCharged() == 0);
}

} // namespace corvane::fuzz
