// The names of attributes and properties that reading SVG knows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace corvane {

/// Properties, which style sheets may set as well, come first.
enum class Attribute : std::uint8_t {
    fill,
    stroke,
    color,
    fillOpacity,
    strokeOpacity,
    opacity,
    strokeWidth,
    strokeDasharray,
    strokeDashoffset,
    strokeLinecap,
    strokeLinejoin,
    strokeMiterlimit,
    fillRule,
    clipRule,
    visibility,
    display,
    fontSize,
    overflow,
    clipPath,
    stopColor,
    stopOpacity,
    filter,
    mask,
    marker,
    markerStart,
    markerMid,
    markerEnd,
    mixBlendMode,
    paintOrder,
    vectorEffect,
    // Attributes only.
    id,
    class_,
    style,
    transform,
    x,
    y,
    width,
    height,
    rx,
    ry,
    cx,
    cy,
    r,
    x1,
    y1,
    x2,
    y2,
    points,
    d,
    href,
    viewBox,
    preserveAspectRatio,
    clipPathUnits,
    gradientUnits,
    gradientTransform,
    spreadMethod,
    fx,
    fy,
    fr,
    offset,
    patternUnits,
    patternContentUnits,
    patternTransform,
    inkscapeGroupmode,
    inkscapeLabel,
    sodipodiInsensitive,
    requiredExtensions,
    systemLanguage,
    dataProducer,
    dataFile,
    dataPage,
    dataObject,
    dataDigest,
    dataMediaBox,
    dataRotate,
    dataUserUnit,
    dataOmitted,
    dataBounds,
    dataArtboard,
    dataProfile,
    dataPreview,
    dataLocked,
    dataPrinting,
    dataDimmed,
    dataClip,
    dataClipRule,
    dataClipSource,
    dataSource,
    dataCompound,
    dataGuide,
    dataStrokeWidth,
    dataStrokeDasharray,
    dataStrokeMiterlimit,
    dataResolution,
    dataFillGray,
    dataFillRgb,
    dataFillCmyk,
    dataFillOrigin,
    dataStrokeGray,
    dataStrokeRgb,
    dataStrokeCmyk,
    dataStrokeOrigin,
    dataFillSpot,
    dataFillTint,
    dataStrokeSpot,
    dataStrokeTint,
    dataStopGray,
    dataStopRgb,
    dataStopCmyk,
    dataStopOrigin,
    dataCellWidth,
    dataCellHeight,
    unknown
};

inline constexpr std::size_t propertyCount = static_cast<std::size_t>(Attribute::id);
inline constexpr std::size_t attributeCount = static_cast<std::size_t>(Attribute::unknown);

/// Properties of place and form, which style sheets may set in SVG 2 but not in SVG 1.1.
constexpr bool isGeometry(Attribute name) {
    return (name >= Attribute::transform && name <= Attribute::r) || name == Attribute::d;
}

/// The attribute of that name; `xlink:href` is `href`.
Attribute attributeByName(std::string_view name);

} // namespace corvane
