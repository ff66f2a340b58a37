#include "app/cli/report/mend_kinds.h"
#include "app/cli/report/report.h"
#include "app/cli/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace corvane {

namespace {

constexpr std::size_t columnOfValues = 10;

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

/// At most four decimals, none that say nothing.
std::string number(double value) {
    std::array<char, 512> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, 4)
                         .ptr;
    std::string text(digits.data(), end);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.find_last_not_of('.') + 1);
    }
    return text == "-0" ? "0" : text;
}

std::string size(const Box& box) {
    return number(box.right - box.left) + " x " + number(box.top - box.bottom);
}

std::string corners(const Box& box) {
    return "[" + number(box.left) + " " + number(box.bottom) + " " + number(box.right) + " " +
           number(box.top) + "]";
}

/// What a person sees of a page besides which object it is.
std::string appearance(const PageFacts& page) {
    std::string text = size(page.cropBox) + " pt";
    if (page.cropBox != page.mediaBox) {
        text += ", crop " + corners(page.cropBox) + " of " + corners(page.mediaBox);
    } else if (page.mediaBox.left != 0 || page.mediaBox.bottom != 0) {
        text += ", box " + corners(page.mediaBox);
    }
    if (page.rotate != 0) {
        text += ", turned " + std::to_string(page.rotate);
    }
    if (page.userUnit != 1.0) {
        text += ", unit " + number(page.userUnit);
    }
    return text;
}

bool looksEqual(const PageFacts& one, const PageFacts& other) {
    return one.mediaBox == other.mediaBox && one.cropBox == other.cropBox &&
           one.rotate == other.rotate && one.userUnit == other.userUnit;
}

std::string pagesText(const std::vector<PageFacts>& pages) {
    std::string text;
    for (auto first = pages.begin(); first != pages.end();) {
        const auto next = std::find_if_not(
            first, pages.end(), [&](const PageFacts& page) { return looksEqual(page, *first); });
        const auto last = std::prev(next);
        std::string name = std::to_string(first->page);
        std::string object;
        if (first == last) {
            object = ", object " + std::to_string(first->objectNumber) + " " +
                     std::to_string(first->generation);
        } else {
            name += "-" + std::to_string(last->page);
        }
        text += padded("  " + name, columnOfValues + 2) + appearance(*first) + object + "\n";
        first = next;
    }
    return text;
}

/// A line for each image: "  image 12  640 x 480, 8 bits DeviceRGB, DCTDecode, 150 x 150 dpi".
std::string imagesText(const std::vector<DrawnImage>& images) {
    std::string text;
    for (const DrawnImage& image : images) {
        const DrawnImageFacts& facts = image.facts;
        const auto rounded = [](double density) { return number(std::round(density)); };
        text += facts.object == 0 ? "  inline image  "
                                  : "  image " + std::to_string(facts.object) + "  ";
        text += std::to_string(facts.width) + " x " + std::to_string(facts.height);
        text += facts.bits == 0 ? "" : ", " + counted(facts.bits, "bit");
        for (const std::string& word : {image.colourSpace, image.filters}) {
            text += word.empty() ? "" : ", " + terminalText(word);
        }
        text += ", " + rounded(facts.horizontalDensity) + " x " + rounded(facts.verticalDensity) +
                " dpi\n";
    }
    return text;
}

/// "2 signatures: 1 of the file as it is, 1 of an older state".
std::string signaturesText(const SignatureFacts& facts) {
    std::vector<std::string> parts;
    const auto add = [&](std::int32_t count, const char* what) {
        if (count != 0) {
            parts.push_back(grouped(count) + what);
        }
    };
    add(facts.ofFile, " of the file as it is");
    add(facts.ofRevision, " of an older state");
    add(facts.count - facts.ofFile - facts.ofRevision, " of no whole state of the file");
    return counted(facts.count, "signature") + (parts.empty() ? "" : ": " + joined(parts));
}

/// What is damaged, and what to do.
std::string damageLines(const Damage& damage) {
    const std::string found = damageText(damage.facts.found);
    if (found.empty()) {
        return "";
    }
    std::string text = "  damaged: " + found + "\n";
    if (!damage.obstacle.empty()) {
        text += "  " + damage.obstacle + "\n";
    } else if (damage.facts.canBeMended) {
        text += std::string("  corvane save --mend mends it") +
                (damage.facts.needsMending ? "; nothing can be saved into it before" : "") + "\n";
    }
    return text;
}

} // namespace

std::string infoText(const std::string& file, const Report& report) {
    std::string text = terminalText(file) + "\n";
    const auto line = [&](const char* name, const std::string& value) {
        text += padded(std::string("  ") + name, columnOfValues + 2) + value + "\n";
    };
    if (report.file) {
        const DocumentFacts& facts = report.file->facts;
        line("version", terminalText(report.file->version));
        line("length", counted(facts.length, "byte"));
        if (facts.objects > 0) { // counted only where all of the file is looked at
            line("objects", std::to_string(facts.objects));
        }
        line("updates", std::to_string(facts.updates));
        line("pages", std::to_string(facts.pages));
    }
    if (report.signatures) {
        line("signed", signaturesText(*report.signatures));
    }
    if (report.signatures && report.signatures->certified) {
        line("certified", "its author's signature allows no changed pages");
    }
    return text + pagesText(report.pages) + imagesText(report.drawnImages);
}

std::string checkText(const std::string& file, const Report& report) {
    std::string text = terminalText(file) + ": can be opened";
    if (report.file) {
        text += " (" + counted(report.file->facts.pages, "page") + ")";
    }
    return text + "\n" + (report.damage ? damageLines(*report.damage) : "");
}

} // namespace corvane
