// What the header of DCT data says about the image.
#pragma once

#include "codecs/dct/huffman.h"
#include "codecs/dct/tables.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace corvane {

/// No APP14 segment said which colour transform applies.
inline constexpr std::int32_t dctUnstatedTransform = 0x3FFF;

struct DctApplication {
    std::int32_t version = 0;
    std::int32_t flags0 = 0;
    std::int32_t flags1 = 0;
    std::int32_t transform = dctUnstatedTransform;
};

struct DctComponent {
    std::uint8_t identifier = 0;
    std::uint8_t horizontal = 1; ///< sampling factors
    std::uint8_t vertical = 1;
    std::uint8_t quantiser = 0; ///< selector
    /// The table in force when the component's first scan began.
    std::optional<DctQuantiser> table{};
    std::size_t width = 0; ///< samples
    std::size_t height = 0;
    std::size_t blocksAcross = 0; ///< that hold samples
    std::size_t blocksDown = 0;
    std::size_t blocksInRow = 0; ///< with those that fill up the last unit
};

struct DctFrame {
    bool progressive = false;
    std::size_t width = 0; ///< pixels
    std::size_t height = 0;
    std::size_t most = 1;        ///< largest horizontal sampling factor
    std::size_t tallest = 1;     ///< largest vertical sampling factor
    std::size_t unitsAcross = 0; ///< of interleaved scans
    std::size_t unitsDown = 0;
    std::vector<DctComponent> components{};
};

struct DctScanComponent {
    std::size_t index = 0; ///< in the frame
    std::uint8_t dcTable = 0;
    std::uint8_t acTable = 0;
};

struct DctScan {
    std::vector<DctScanComponent> components{};
    std::uint8_t first = 0; ///< spectral selection
    std::uint8_t last = 63;
    std::uint8_t highBit = 0; ///< successive approximation: the bit done before; 0: none
    std::uint8_t lowBit = 0;
};

/// Tables and values that segments set, for all scans that follow.
struct DctHeader {
    std::array<std::optional<DctQuantiser>, 4> quantisers{};
    std::array<std::unique_ptr<DctDecodeTable>, 4> dcTables{};
    std::array<std::unique_ptr<DctDecodeTable>, 4> acTables{};
    std::size_t restartInterval = 0;
    bool strict = false; ///< an APP14 segment with unknown values is an error
    DctApplication application{};
    std::optional<DctFrame> frame{};
};

} // namespace corvane
