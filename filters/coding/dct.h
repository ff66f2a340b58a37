// The DCT filter, "DCTDecode" and "DCT": rows of 8-bit components from and to JPEG data. PDF
// Reference, 3.3.7; ISO/IEC 10918-1.
//
// A row is width times components bytes, top row first. A decoder takes width, height and
// components from the data. Damaged data raises `codec`; where the rules keep whole rows, it ends
// the rows early with warning `picture` instead, if there are any. Memory grows with the width only
// (frames of several scans excepted) and is charged to the zone.
#pragma once

#include "codecs/dct/dct.h"
#include "filters/filter.h"

#include <cstdint>

namespace corvane {

/// Height or components 0: a decoder, which leaves the filter below just behind its image. Else an
/// encoder of rows of that size, at half the built-in quantisers; three components are taken as
/// RGB. Linking an encoder writes the header, and raises `codec` where the size is none; unlinking
/// it fills up missing rows and ends the image. The other direction raises `io`.
FilterOwner setupDiscrete(std::int32_t width, std::int32_t height, std::int32_t components);

/// A decoder for which `usualTransform` is the colour transform (0: none, 1: YCbCr or YCCK) where
/// the data do not state one. `clock`, if there is one, holds its time against a budget.
FilterOwner setupDiscreteDecoder(std::int32_t usualTransform, CodecClock* clock = nullptr);

/// An encoder with settings of one's own.
FilterOwner setupDiscrete(const DctSettings& settings);

} // namespace corvane
