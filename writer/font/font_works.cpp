#include "writer/font/font_works.h"

#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/classic/font_list.h"
#include "runtime/exception.h"
#include "runtime/string.h"
#include "writer/font/font_specs.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace corvane {

namespace {

constexpr std::array<std::string_view, 14> standardNames = {
    "Courier",     "Courier-Bold",   "Courier-Oblique",   "Courier-BoldOblique",
    "Helvetica",   "Helvetica-Bold", "Helvetica-Oblique", "Helvetica-BoldOblique",
    "Times-Roman", "Times-Bold",     "Times-Italic",      "Times-BoldItalic",
    "Symbol",      "ZapfDingbats"};

/// Ems in units of glyphs, a thousandth of an em.
std::int16_t glyphUnits(Fixed ems) {
    return static_cast<std::int16_t>((std::int64_t{ems} * 1000 + 0x8000) >> 16);
}

FontSpecs specsOf(std::string_view name, const FontInfo& info) {
    const auto [first, second] = info.identifiers;
    auto specs = specsType0(name, first, second);
    specs = specs ? specs : specsType1(name, first, second);
    specs = specs ? specs : specsType2(name, first, second);
    if (!specs) {
        failException(Exception::fontFamily);
    }
    return *specs;
}

std::string_view subtypeLine(FontTechnology technology, std::string_view name) {
    switch (technology) {
    case FontTechnology::type1:
        return name.find('_') != name.npos ? "/Subtype /MMType1\r" : "/Subtype /Type1\r";
    case FontTechnology::trueType:
        return "/Subtype /TrueType\r";
    }
    failException(Exception::type);
}

std::string_view encodingLine(std::int32_t encoding) {
    switch (encoding) {
    case 0:
    case 1:
        return "/Encoding /MacRomanEncoding\r";
    case 2:
        return "/Encoding /MacExpertEncoding\r";
    default:
        failException(Exception::type);
    }
}

/// Objects that describe a font.
struct Description {
    std::int32_t widths = 0;
    std::int32_t descriptor = 0;
};

struct WidthFacts {
    std::int16_t largest = 0;
    std::int32_t average = 0;
};

WidthFacts writeWidths(Filter& output, std::int32_t number, const FontInfo& info) {
    constexpr std::size_t perLine = 16;
    touchXRef(output, number, 0);
    objectOutput(output, number, 0);
    stringOutput(output, "[\r");
    WidthFacts facts;
    std::int32_t sum = 0;
    for (std::size_t code = 0; code < std::size(info.widths); ++code) {
        const std::int16_t width = glyphUnits(info.widths[code]);
        integerOutput(output, width);
        if ((code + 1) % perLine == 0) {
            stringOutput(output, "\r");
        }
        facts.largest = std::max(facts.largest, width);
        sum += width;
    }
    stringOutput(output, "]\rendobj\r");
    facts.average = sum / static_cast<std::int32_t>(std::size(info.widths));
    return facts;
}

void writeValue(Filter& output, std::string_view key, std::int32_t value) {
    stringOutput(output, key);
    integerOutput(output, value);
    stringOutput(output, "\r");
}

void writeDescriptor(Filter& output, std::int32_t number, std::string_view baseName,
                     const FontInfo& info, const FontSpecs& specs, const WidthFacts& widths) {
    touchXRef(output, number, 0);
    objectOutput(output, number, 0);
    stringOutput(output, "<<\r/Type /FontDescriptor\r");
    writeValue(output, "/Ascent ", glyphUnits(info.ascent));
    writeValue(output, "/Descent ", -glyphUnits(info.descent));
    writeValue(output, "/Leading ", glyphUnits(info.leading));
    writeValue(output, "/MaxWidth ", widths.largest);
    writeValue(output, "/AvgWidth ", widths.average);
    writeValue(output, "/MissingWidth ", glyphUnits(info.widths[' ']));
    stringOutput(output, "/FontBBox [ ");
    for (const Fixed side :
         {info.bounds.left, info.bounds.bottom, info.bounds.right, info.bounds.top}) {
        integerOutput(output, glyphUnits(side));
    }
    stringOutput(output, "]\r/FontName /" + std::string(baseName) + "\r");
    writeValue(output, "/Flags ", specs.flags);
    writeValue(output, "/CapHeight ", glyphUnits(specs.capHeight));
    writeValue(output, "/ItalicAngle ", glyphUnits(specs.italicAngle));
    writeValue(output, "/StemV ", glyphUnits(specs.stemV));
    writeValue(output, "/StemH ", glyphUnits(specs.stemH));
    writeValue(output, "/XHeight ", glyphUnits(specs.xHeight));
    stringOutput(output, ">>\rendobj\r");
}

} // namespace

void referFamily(DocumentCache& cache, const Family& family) {
    nameOutput(*cache.output, resourceNameFamily(family));
    referenceOutput(*cache.output, family.number, family.generation);
}

void writeFamily(DocumentCache& cache, const Family& family) {
    Filter& output = *cache.output;
    const std::string_view name = family.fontName.get();
    std::string baseName(name);
    mapString(baseName, ' ', '_');

    classic::FontList fonts;
    const auto font = fonts.find(name);
    if (!font) {
        failException(Exception::structure);
    }
    const FontInfo& info = fonts.info(*font);
    const FontSpecs specs = specsOf(name, info);
    const bool isDescribed = std::ranges::find(standardNames, name) == standardNames.end();
    Description description;
    if (isDescribed) {
        description.widths = nextIdentity();
        description.descriptor = nextIdentity();
    }

    touchXRef(output, family.number, family.generation);
    objectOutput(output, family.number, family.generation);
    stringOutput(output, "<<\r/Type /Font\r");
    stringOutput(output, subtypeLine(family.technology, name));
    stringOutput(output, "/Name ");
    nameOutput(output, resourceNameFamily(family));
    stringOutput(output, "\r/BaseFont ");
    nameOutput(output, baseName);
    stringOutput(output, "\r");
    const std::string_view encoding = encodingLine(info.encoding);
    if ((specs.flags & symbolicFont) == 0) {
        stringOutput(output, encoding); // fonts of signs have codes of their own
    }
    if (isDescribed) {
        stringOutput(output, "/Widths ");
        referenceOutput(output, description.widths, 0);
        stringOutput(output, "/FontDescriptor ");
        referenceOutput(output, description.descriptor, 0);
        stringOutput(output, "/FirstChar 0\r/LastChar 255\r");
    }
    stringOutput(output, ">>\rendobj\r");
    if (isDescribed) {
        const WidthFacts widths = writeWidths(output, description.widths, info);
        writeDescriptor(output, description.descriptor, baseName, info, specs, widths);
    }
}

} // namespace corvane
