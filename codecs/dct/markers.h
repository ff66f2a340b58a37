// Reading the marker segments of DCT data (ISO/IEC 10918-1, annex B).
#pragma once

#include "codecs/dct/frame.h"
#include "codecs/dct/input.h"

namespace corvane {

namespace dctMarker {
inline constexpr int sof0 = 0xC0, sof1 = 0xC1, sof2 = 0xC2, dht = 0xC4;
inline constexpr int rst0 = 0xD0, rst7 = 0xD7;
inline constexpr int soi = 0xD8, eoi = 0xD9, sos = 0xDA, dqt = 0xDB, dri = 0xDD;
inline constexpr int app0 = 0xE0, app14 = 0xEE, app15 = 0xEF, com = 0xFE;
} // namespace dctMarker

/// The next marker, past fill bytes. Other bytes before it are passed over where the rules in force
/// search for markers, else they are `DCTDNoMarker`. The end of the data: `DCTDTruncateError`.
int DCTDsgetmarker(DctInput& input);

/// Goes past the end of the image, or of the data where there is none, starting behind `marker`
/// (-1: the data has ended; 0: not behind one). Raises nothing of its own.
void DCTDskipImage(DctInput& input, int marker);

/// Reads the segment of any marker but SOI, SOS, EOI. Raises `codec` for damage and for what is not
/// supported: frames other than SOF0, SOF1 (and SOF2, where the rules in force take it), and a
/// second frame.
void DCTDsegment(DctInput& input, int marker, DctHeader& header);

/// Reads a scan header; needs a frame.
DctScan DCTDgetScanParms(DctInput& input, const DctHeader& header);

} // namespace corvane
