// Warnings: what was left out or changed while work went on. Each code is kept once; the entry
// shows all of them after the operation.
#pragma once

#include <cstdint>

namespace corvane {

/// Codes of warnings. The sentence of each is in resources/texts. Up to 1000 they arise while a
/// PDF file is read, from 1001 while one is written.
enum class Warning : std::int16_t {
    none = 0,
    unknownXObject = 1,             ///< an XObject of an unknown subtype draws nothing
    unknownOperator = 2,            ///< an operator of the page is not known
    formSkipped = 3,                ///< a form XObject draws nothing
    type3Font = 4,                  ///< the text of a Type 3 font is dropped
    encodingApproximated = 5,       ///< an encoding that the host has not
    picture = 6,                    ///< an image, or the preview of one, is missing
    tracking = 7,                   ///< letter spacing out of the host's range
    multipleMasterMissing = 8,      ///< font missing and not substituted
    type1Missing = 9,               ///< font missing and not substituted
    trueTypeMissing = 10,           ///< font missing and not substituted
    evenOdd = 11,                   ///< the even-odd rule was dropped
    imageEntry = 12,                ///< an entry of an image was ignored
    operatorFailed = 13,            ///< an operator of the page failed and was skipped
    formerHeader = 14,              ///< the header is "VEX-0.2 "
    multipleMasterSubstituted = 15, ///< another font stands in
    type1Substituted = 16,          ///< another font stands in
    trueTypeSubstituted = 17,       ///< another font stands in
    textLeftOut = 18,               ///< some or all text is not in the artwork
    shadingLeftOut = 19,            ///< a shading or pattern draws nothing
    repaired = 20,                  ///< the objects were found by searching the file
    mended = 21,                    ///< damage was mended, and the file needed no search
    deepJpeg = 22,                  ///< an image is missing: a JPEG of 12 bits
    arithmeticJpeg = 23,            ///< likewise: a JPEG in arithmetic coding
    losslessJpeg = 24,              ///< likewise: a lossless JPEG
    hierarchicalJpeg = 25,          ///< likewise: a JPEG of several sizes
    unknownArt = 1001,              ///< art of a kind that cannot be written was skipped
    pageSize = 1002,                ///< the page size was put into its limits
    cropArea = 1003,                ///< the crop area was fitted to the page
    layerLeftOut = 1004,            ///< a layer that is hidden or does not print is not drawn
    // 1005 to 1007, 1014, 1015 are the program's own.
    layerNotKept = 1008,   ///< objects of a layer stay, in order; the layer does not
    signedFile = 1009,     ///< readers that check signatures will show the change
    fontAdded = 1010,      ///< a font of the machine took the place of another one
    smoothnessKept = 1011, ///< how an image of the page is enlarged stays as it is in the file
    layersShared = 1012,   ///< layers were changed that other pages may show, too
    layerRuled = 1013,     ///< a layer that follows from others stays as it is
    pageReplaced = 1016,   ///< the page was another one than the artwork's, and was drawn anew
    otherUndone = 1017,    ///< what another artwork had made of the page was undone
};

/// Codes that are kept. One more is stored too, and raises `limit`.
inline constexpr std::int32_t warningLimit = 64;

/// Stores `code`, makes it the current warning and returns it. A code that is stored already:
/// `none`, and nothing changes.
Warning raiseWarning(Warning code);
bool duplicateWarning(Warning code);
/// The current warning: the one stored last, or below the one popped last.
Warning valueWarning();
/// Takes the warning stored last; `none` where there is none.
Warning popWarning();
/// The current warning; all are then forgotten.
Warning resetWarning();
/// Whether the current warning arose while reading.
bool isImportWarning();

/// Remembers which warnings there are, so that later ones can be forgotten.
class WarningMark {
public:
    WarningMark();
    void forgetLater() const;

private:
    std::int32_t count_;
};

} // namespace corvane
