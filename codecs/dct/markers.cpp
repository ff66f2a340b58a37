#include "codecs/dct/markers.h"

#include "codecs/dct/error.h"
#include "runtime/rules.h"

#include <algorithm>
#include <string_view>

namespace corvane {

namespace {

/// The bytes of one segment; reading past its end is an error.
class SegmentReader {
public:
    explicit SegmentReader(DctInput& input) : input_(input) {
        const std::size_t high = raw();
        const std::size_t length = high << 8 | raw();
        if (length < 2) {
            dct_error();
        }
        left_ = length - 2;
    }

    std::size_t left() const { return left_; }
    std::uint8_t byte() {
        if (left_ == 0) {
            dct_error();
        }
        --left_;
        return raw();
    }
    std::uint16_t word() {
        const unsigned high = byte();
        return static_cast<std::uint16_t>(high << 8 | byte());
    }
    void skipRest() {
        while (left_ > 0) {
            byte();
        }
    }

private:
    std::uint8_t raw() {
        const int byte = input_.get();
        if (byte < 0) {
            DCTDTruncateError();
        }
        return static_cast<std::uint8_t>(byte);
    }

    DctInput& input_;
    std::size_t left_ = 0;
};

constexpr std::size_t divideUp(std::size_t a, std::size_t b) {
    return (a + b - 1) / b;
}

void measure(DctFrame& frame) {
    // With one component a unit is one block, whatever its factors.
    if (frame.components.size() == 1) {
        frame.components.front().horizontal = 1;
        frame.components.front().vertical = 1;
    }
    for (const DctComponent& component : frame.components) {
        frame.most = std::max<std::size_t>(frame.most, component.horizontal);
        frame.tallest = std::max<std::size_t>(frame.tallest, component.vertical);
    }
    frame.unitsAcross = divideUp(frame.width, 8 * frame.most);
    frame.unitsDown = divideUp(frame.height, 8 * frame.tallest);
    for (DctComponent& component : frame.components) {
        component.width = divideUp(frame.width * component.horizontal, frame.most);
        component.height = divideUp(frame.height * component.vertical, frame.tallest);
        component.blocksAcross = divideUp(component.width, 8);
        component.blocksDown = divideUp(component.height, 8);
        component.blocksInRow = frame.unitsAcross * component.horizontal;
    }
}

DctFrame DCTDgetFrameParms(SegmentReader& segment, bool progressive) {
    DctFrame frame{.progressive = progressive};
    const unsigned samplePrecision = segment.byte();
    frame.height = segment.word();
    frame.width = segment.word();
    const std::size_t count = segment.byte();
    if (samplePrecision != 8 || frame.height == 0 || frame.width == 0 || count == 0 ||
        count > dctComponentLimit) {
        dct_error();
    }
    for (std::size_t i = 0; i < count; ++i) {
        DctComponent component;
        component.identifier = segment.byte();
        const unsigned factors = segment.byte();
        component.horizontal = static_cast<std::uint8_t>(factors >> 4);
        component.vertical = static_cast<std::uint8_t>(factors & 15U);
        component.quantiser = segment.byte();
        const auto legal = [](unsigned factor) { return factor >= 1 && factor <= 4; };
        if (!legal(component.horizontal) || !legal(component.vertical) || component.quantiser > 3) {
            dct_error();
        }
        frame.components.push_back(component);
    }
    measure(frame);
    return frame;
}

void DCTDgetDQT(SegmentReader& segment, DctHeader& header) {
    while (segment.left() > 0) {
        const unsigned selector = segment.byte();
        if ((selector & 15U) > 3 || selector >> 4 > 1) {
            dct_error();
        }
        DctQuantiser& quantiser = header.quantisers[selector & 15U].emplace();
        for (std::uint16_t& entry : quantiser) {
            entry = selector >> 4 == 0 ? segment.byte() : segment.word();
        }
    }
}

void DCTDgetDHT(SegmentReader& segment, DctHeader& header) {
    while (segment.left() > 0) {
        const unsigned selector = segment.byte();
        if ((selector & 15U) > 3 || selector >> 4 > 1) {
            dct_error();
        }
        DctHuffmanSpec spec;
        std::ranges::generate(spec.counts, [&] { return segment.byte(); });
        const std::size_t count = symbolCount(spec);
        if (count > spec.symbols.size()) {
            dct_error();
        }
        std::ranges::generate_n(spec.symbols.begin(), static_cast<std::ptrdiff_t>(count),
                                [&] { return segment.byte(); });
        if (selector >> 4 == 0) {
            header.dcTables[selector] = std::make_unique<DctDecodeTable>(spec, DctHuffmanClass::dc);
        } else {
            header.acTables[selector & 15U] =
                std::make_unique<DctDecodeTable>(spec, DctHuffmanClass::ac);
        }
    }
}

void readApplication(SegmentReader& segment, DctHeader& header) {
    constexpr std::string_view ours = "Morel";
    if (segment.left() < 12) {
        return;
    }
    bool known = true;
    for (const char c : ours) {
        known &= segment.byte() == static_cast<std::uint8_t>(c);
    }
    if (!known && !rules().anyPictureIdentifier) {
        return;
    }
    DctApplication application;
    application.version = segment.word();
    application.flags0 = segment.word();
    application.flags1 = segment.word();
    application.transform = segment.byte();
    if (header.strict && (application.flags1 != 0 || application.transform > 2)) {
        dct_error();
    }
    header.application = application;
}

constexpr bool isRestart(int marker) {
    return marker >= dctMarker::rst0 && marker <= dctMarker::rst7;
}

/// The next marker that is no restart marker; -1 at the end of the data.
int findMarker(DctInput& input) {
    int byte = 0;
    for (;;) {
        while (byte != 0xFF && byte >= 0) {
            byte = input.get();
        }
        while (byte == 0xFF) {
            byte = input.get();
        }
        if (byte != 0 && !isRestart(byte)) {
            return byte;
        }
    }
}

/// The marker that stands here, behind any fill bytes; -1 at the end of the data.
int markerHere(DctInput& input) {
    int byte = input.get();
    const bool begun = byte < 0 || byte == 0xFF;
    while (byte == 0xFF) {
        byte = input.get();
    }
    if (!begun || byte == 0) {
        DCTDNoMarker();
    }
    return byte;
}

} // namespace

int DCTDsgetmarker(DctInput& input) {
    const int marker = rules().markersSearched ? findMarker(input) : markerHere(input);
    if (marker < 0) {
        DCTDTruncateError();
    }
    return marker;
}

void DCTDskipImage(DctInput& input, int marker) {
    for (; marker >= 0 && marker != dctMarker::eoi; marker = findMarker(input)) {
        if (marker == 0 || marker == dctMarker::soi || isRestart(marker)) {
            continue;
        }
        const int high = input.get();
        for (int left = (high << 8 | input.get()) - 2; left > 0 && input.get() >= 0; --left) {
        }
    }
}

void DCTDsegment(DctInput& input, int marker, DctHeader& header) {
    const bool frameHeader = marker == dctMarker::sof0 || marker == dctMarker::sof1 ||
                             (marker == dctMarker::sof2 && rules().progressivePictures);
    const bool application = marker >= dctMarker::app0 && marker <= dctMarker::app15;
    if (!frameHeader && !application && marker != dctMarker::dht && marker != dctMarker::dqt &&
        marker != dctMarker::dri && marker != dctMarker::com) {
        dct_error();
    }
    SegmentReader segment(input);
    if (frameHeader) {
        if (header.frame) {
            dct_error();
        }
        header.frame = DCTDgetFrameParms(segment, marker == dctMarker::sof2);
    } else if (marker == dctMarker::dht) {
        DCTDgetDHT(segment, header);
    } else if (marker == dctMarker::dqt) {
        DCTDgetDQT(segment, header);
    } else if (marker == dctMarker::dri) {
        header.restartInterval = segment.word();
    } else if (marker == dctMarker::app14) {
        readApplication(segment, header);
    }
    segment.skipRest();
}

DctScan DCTDgetScanParms(DctInput& input, const DctHeader& header) {
    if (!header.frame) {
        dct_error();
    }
    const std::vector<DctComponent>& known = header.frame->components;
    SegmentReader segment(input);
    DctScan scan;
    const std::size_t count = segment.byte();
    if (count == 0 || count > known.size()) {
        dct_error();
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t identifier = segment.byte();
        const unsigned tables = segment.byte();
        const auto used = [&](std::size_t index) {
            return std::ranges::any_of(scan.components, [&](const DctScanComponent& component) {
                return component.index == index;
            });
        };
        std::size_t index = 0;
        while (index < known.size() && (known[index].identifier != identifier || used(index))) {
            ++index;
        }
        if (index == known.size() || tables >> 4 > 3 || (tables & 15U) > 3) {
            dct_error();
        }
        scan.components.push_back({.index = index,
                                   .dcTable = static_cast<std::uint8_t>(tables >> 4),
                                   .acTable = static_cast<std::uint8_t>(tables & 15U)});
    }
    scan.first = segment.byte();
    scan.last = segment.byte();
    const unsigned approximation = segment.byte();
    scan.highBit = static_cast<std::uint8_t>(approximation >> 4);
    scan.lowBit = static_cast<std::uint8_t>(approximation & 15U);
    segment.skipRest();
    if (!header.frame->progressive) {
        // The four values say nothing in sequential frames.
        scan.first = 0;
        scan.last = 63;
        scan.highBit = 0;
        scan.lowBit = 0;
    } else if (scan.first > scan.last || scan.last > 63 || scan.lowBit > 13 ||
               (scan.highBit != 0 && scan.highBit != scan.lowBit + 1) ||
               (scan.first == 0 ? scan.last != 0 : count != 1)) {
        dct_error();
    }
    return scan;
}

} // namespace corvane
