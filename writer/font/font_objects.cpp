#include "writer/font/font_objects.h"

#include "filters/coding/deflate.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "runtime/digest.h"
#include "writer/crypt/sealed_output.h"
#include "writer/font/font_cmaps.h"
#include "writer/page/needed_version.h"
#include "writer/page/stream_object.h"

#include <cmath>
#include <map>
#include <span>
#include <string>

namespace corvane {

namespace {

constexpr double thousand = 1000;

/// Two digits more than a reader can show.
double rounded(double ems) {
    constexpr double digits = 100;
    return std::round(ems * thousand * digits) / digits + 0.0;
}

/// The tag of a subset is six letters that tell it from others of the font.
std::string subsetTag(std::span<const std::byte> program) {
    constexpr int letters = 6;
    constexpr std::uint64_t alphabet = 26;
    Digest digest;
    digest.feed(program);
    std::string tag;
    for (std::uint64_t rest = digest.value(); tag.size() < letters; rest /= alphabet) {
        tag += static_cast<char>('A' + rest % alphabet);
    }
    return tag;
}

/// PDF Reference, 5.5.3: a name as PostScript has it, of which readers tell family and style.
std::string baseName(const NewFont& font) {
    constexpr std::size_t longest = 63;
    std::string name;
    for (const char c : font.font().facts().postScriptName) {
        constexpr std::string_view special = "()<>[]{}/%#";
        if (c > ' ' && c <= '~' && special.find(c) == special.npos && name.size() < longest) {
            name += c;
        }
    }
    return subsetTag(font.program()) + "+" + (name.empty() ? "Font" : name);
}

class FontWriter {
public:
    FontWriter(DocumentCache& cache, const NewFont& font)
        : cache_(cache), output_(*cache.output), font_(font), name_(baseName(font)),
          numbers_(font.numbers) {
        for (const NewCode& code : font.codes()) {
            texts_[code.code] = code.text;
            cids_[code.code] = code.cid;
            widths_[code.cid] = font.width(code.glyph);
        }
    }

    void write() {
        begin(numbers_.font);
        stringOutput(output_, "/Type /Font /Subtype /Type0 ");
        named("BaseFont", name_);
        nameOutput(output_, "Encoding");
        if (font_.codesAreCids()) {
            nameOutput(output_, font_.isVertical() ? "Identity-V" : "Identity-H");
        } else {
            referenceOutput(output_, numbers_.encoding, 0);
        }
        stringOutput(output_, "\r/DescendantFonts [ ");
        referenceOutput(output_, numbers_.descendant, 0);
        stringOutput(output_, "]\r/ToUnicode ");
        referenceOutput(output_, numbers_.toUnicode, 0);
        end();
        writeDescendant();
        writeDescriptor();
        writeProgram();
        begin(numbers_.toUnicode);
        writeCMap(numbers_.toUnicode, toUnicodeCMap(texts_));
        if (!font_.codesAreCids()) {
            writeEncoding();
        }
    }

private:
    bool isTrueType() const { return font_.font().kind() == ProgramKind::trueType; }

    void begin(std::int32_t number) {
        touchXRef(output_, number, 0);
        objectOutput(output_, number, 0);
        stringOutput(output_, "<<\r");
    }
    void end() { stringOutput(output_, ">>\rendobj\r"); }
    void named(std::string_view key, std::string_view name) {
        nameOutput(output_, key);
        nameOutput(output_, name);
    }
    void number(std::string_view key, double value) {
        nameOutput(output_, key);
        realOutput(output_, value);
    }

    void writeCMap(std::int32_t number, const std::string& map) {
        stringOutput(output_, "/Filter /FlateDecode ");
        finishStream(cache_, number, deflated(map));
    }

    void writeEncoding() {
        begin(numbers_.encoding);
        stringOutput(output_, "/Type /CMap ");
        named("CMapName", encodingName);
        writeSystemInfo(numbers_.encoding);
        stringOutput(output_, font_.isVertical() ? "/WMode 1 " : "");
        writeCMap(numbers_.encoding, encodingCMap(cids_, font_.isVertical()));
    }

    void writeSystemInfo(std::int32_t in) {
        stringOutput(output_, "/CIDSystemInfo << /Registry ");
        sealedTextOutput(cache_, {in, 0}, "Adobe");
        stringOutput(output_, " /Ordering ");
        sealedTextOutput(cache_, {in, 0}, "Identity");
        stringOutput(output_, " /Supplement 0 >>\r");
    }

    void writeDescendant() {
        begin(numbers_.descendant);
        stringOutput(output_, isTrueType()
                                  ? "/Type /Font /Subtype /CIDFontType2 /CIDToGIDMap /Identity\r"
                                  : "/Type /Font /Subtype /CIDFontType0\r");
        named("BaseFont", name_);
        writeSystemInfo(numbers_.descendant);
        nameOutput(output_, "FontDescriptor");
        referenceOutput(output_, numbers_.descriptor, 0);
        writeWidths();
        end();
    }

    /// Widths of codes that follow one another stand in one array.
    void writeWidths() {
        stringOutput(output_, "/W [ ");
        std::int64_t last = -2;
        for (const auto& [cid, width] : widths_) {
            if (cid != last + 1) {
                stringOutput(output_, last < 0 ? "" : "]\r");
                integerOutput(output_, static_cast<std::int32_t>(cid));
                stringOutput(output_, "[ ");
            }
            realOutput(output_, width);
            last = cid;
        }
        stringOutput(output_, widths_.empty() ? "]\r" : "]]\r");
    }

    std::int32_t flags() const {
        constexpr std::int32_t fixedPitch = 1;
        constexpr std::int32_t serif = 2;
        constexpr std::int32_t symbolic = 4;
        constexpr std::int32_t italic = 64;
        const OpenTypeFacts& facts = font_.font().facts();
        return symbolic | (facts.isFixedPitch ? fixedPitch : 0) | (facts.isSerif ? serif : 0) |
               (facts.italicAngle != 0 ? italic : 0);
    }

    void writeDescriptor() {
        const OpenTypeFacts& facts = font_.font().facts();
        begin(numbers_.descriptor);
        stringOutput(output_, "/Type /FontDescriptor ");
        named("FontName", name_);
        stringOutput(output_, "/Flags ");
        integerOutput(output_, flags());
        stringOutput(output_, "/FontBBox [ ");
        for (const double side : {facts.left, facts.bottom, facts.right, facts.top}) {
            realOutput(output_, rounded(side));
        }
        stringOutput(output_, "]\r");
        number("ItalicAngle", facts.italicAngle + 0.0);
        number("Ascent", rounded(facts.ascent));
        number("Descent", rounded(facts.descent));
        number("CapHeight", rounded(facts.capHeight));
        // Fonts do not tell it; regular faces have about 80, bold ones 140.
        constexpr double thinnest = 40;
        constexpr double step = 0.14;
        number("StemV", std::round(thinnest + std::max(0, facts.weight - 100) * step));
        nameOutput(output_, isTrueType() ? "FontFile2" : "FontFile3");
        referenceOutput(output_, numbers_.program, 0);
        end();
    }

    void writeProgram() {
        const std::vector<std::byte>& program = font_.program();
        needVersion(isTrueType() ? Feature::compositeFont : Feature::compactFont);
        begin(numbers_.program);
        if (isTrueType()) {
            stringOutput(output_, "/Length1 ");
            integerOutput(output_, static_cast<std::int32_t>(program.size()));
        } else {
            stringOutput(output_, "/Subtype /CIDFontType0C ");
        }
        stringOutput(output_, "/Filter /FlateDecode ");
        const std::string_view data(
            static_cast<const char*>(static_cast<const void*>(program.data())), program.size());
        finishStream(cache_, numbers_.program, deflated(data));
    }

    DocumentCache& cache_;
    Filter& output_;
    const NewFont& font_;
    const std::string name_;
    const NewFontNumbers numbers_;
    std::map<std::uint32_t, std::u32string> texts_; // by code, as the next
    std::map<std::uint32_t, std::uint32_t> cids_;
    std::map<std::uint32_t, double> widths_;
};

} // namespace

void writeFont(DocumentCache& cache, const NewFont& font) {
    FontWriter(cache, font).write();
}

} // namespace corvane
