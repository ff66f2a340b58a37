// Pages and edits that a seed decides.
#pragma once

#include "tests/writer/patch/patch_fixture.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace corvane {

class Chance {
public:
    explicit Chance(std::uint32_t seed) : engine_(seed) {}
    /// 0 to below `count`.
    std::size_t below(std::size_t count) { return engine_() % count; }
    bool once(std::size_t in) { return below(in) == 0; }
    /// In hundredths.
    double number(int from, int to) {
        return from + static_cast<double>(below(static_cast<std::size_t>(100 * (to - from)))) / 100;
    }

private:
    std::mt19937 engine_;
};

/// Content of all kinds of operators; without opaque things it is all that artwork holds.
class RandomPage {
public:
    RandomPage(Chance& chance, bool hasOpaque) : chance_(chance), hasOpaque_(hasOpaque) {
        const std::size_t pieces = 6 + chance.below(24);
        for (std::size_t i = 0; i < pieces; ++i) {
            addPiece();
        }
        while (depth_ > 0 && !chance.once(12)) {
            add("Q");
            --depth_;
        }
    }

    /// Whole and in several streams, which end between tokens.
    std::vector<std::string> streams() {
        std::vector<std::string> all(1);
        for (const std::string& token : tokens_) {
            all.back() += token + (chance_.once(6) ? "\n" : " ");
            if (chance_.once(40)) {
                all.back() += hasOpaque_ && chance_.once(2) ? "% end" : "";
                all.emplace_back();
            }
        }
        return all;
    }

    /// Parts that a save must not touch.
    std::vector<std::string> opaque;

private:
    void add(std::string_view words) {
        for (std::size_t from = 0; from < words.size();) {
            const std::size_t end = std::min(words.find(' ', from), words.size());
            tokens_.emplace_back(words.substr(from, end - from));
            from = end + 1;
        }
    }
    void addWhole(const std::string& token) {
        tokens_.push_back(token);
        opaque.push_back(token);
    }

    std::string real(double value) {
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), chance_.once(2) ? "%.2f" : "%g", value);
        return text.data();
    }
    std::string reals(int count, int from, int to) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += real(chance_.number(from, to)) + " ";
        }
        return text;
    }

    std::string construction() {
        std::string text;
        const std::size_t subpaths = chance_.once(4) ? 2 : 1;
        for (std::size_t i = 0; i < subpaths; ++i) {
            if (chance_.once(2)) {
                text += reals(2, 0, 400) + reals(2, 20, 200) + "re ";
                continue;
            }
            text += reals(2, 0, 400) + "m ";
            for (std::size_t part = 1 + chance_.below(4); part > 0; --part) {
                text += chance_.once(2) ? reals(2, 0, 400) + "l " : reals(6, 0, 400) + "c ";
            }
            text += chance_.once(2) ? "h " : "";
        }
        return text;
    }

    void addPath() {
        if (hasOpaque_ && chance_.once(20)) {
            add(reals(2, 0, 300) + "m");
            addWhole("strange" + std::to_string(++things_));
            add(reals(2, 0, 300) + "l");
        }
        static constexpr std::array words = {"f", "f*", "S", "s", "B", "B*", "b", "b*"};
        const std::string clip = chance_.once(12) ? (chance_.once(2) ? "W " : "W* ") : "";
        add(construction() + clip + words[chance_.below(words.size())]);
    }

    void addSetting() {
        if (hasOpaque_ && chance_.once(12)) { // forms may not have that space
            const std::string tint = real(chance_.number(0, 1));
            return add(chance_.once(2) ? "/I cs " + tint + " scn" : "/I CS " + tint + " SCN");
        }
        const std::string light = real(chance_.number(0, 1));
        const std::array settings = {
            std::string("/Wide gs"),
            std::string("/Perceptual ri"),
            light + " g",
            light + " G",
            reals(3, 0, 1) + "rg",
            reals(3, 0, 1) + "RG",
            reals(4, 0, 1) + "k",
            "/DeviceRGB cs " + reals(3, 0, 1) + "sc",
            real(chance_.number(1, 9)) + " w",
            std::to_string(chance_.below(3)) + " J",
            std::to_string(chance_.below(3)) + " j",
            real(chance_.number(1, 12)) + " M",
            "[ " + reals(2, 1, 9) + "] 1 d",
            std::string("[ ] 0 d"),
        };
        add(settings[chance_.below(settings.size())]);
    }

    void addMatrix() {
        // What forms hold is to stay on the page, and their boxes are to stay upright.
        constexpr std::size_t ofForms = 5;
        static constexpr std::array matrices = {
            ".24 0 0 -.24 10 800 cm", ".9 .2 -.2 .9 3 5 cm",        "1 0 0 1 17.3 -4.9 cm",
            "0 1 -1 0 400 0 cm",      ".123457 0 0 .123457 9 9 cm", "1.5 0 0 .7 0 0 cm",
            "1 .2 -.7 .9 30 -20 cm",
        };
        add("q");
        ++depth_;
        add(matrices[chance_.below(hasOpaque_ ? matrices.size() : ofForms)]);
    }

    void addOpaque() {
        const std::string number = std::to_string(++things_);
        addWhole("% thing " + number + "\n");
        switch (chance_.below(14)) {
        case 13:
            return add("q /Pattern cs /P scn " + construction() + "B Q");
        case 7:
            add("q");
            ++depth_;
            return addWhole("BT 7 Tr /None 99 Tf (clip " + number + ") Tj ET");
        case 8:
            addWhole("/OC /L BDC");
            addPath();
            return addWhole("EMC");
        case 9:
            add("q");
            ++depth_;
            return addWhole("1 0 0 0 9 9 cm");
        case 10:
            return addWhole("/T BMC");
        case 11:
            addWhole("BT /None 9 Tf");
            addPath();
            return addWhole("(in) Tj ET");
        case 12:
            return addWhole("/OC /L BDC");
        case 0:
            return addWhole("BT /None 12 Tf 5 " + number + " Td (text " + number + ") Tj ET");
        case 1:
            return addWhole("/X Do");
        case 2:
            return addWhole(number + " unknown" + number);
        case 3:
            return addWhole("BI /W 0 /H 1 /BPC 8 /CS /G ID x EI q Q");
        case 4:
            return addWhole("/Half gs");
        case 5:
            return addWhole("/Full gs");
        default:
            addWhole("/Span << /MCID " + number + " >> BDC");
            addPath();
            return addWhole("EMC");
        }
    }

    void addPiece() {
        switch (chance_.below(10)) {
        case 0:
            add("q");
            ++depth_;
            return;
        case 1:
            if (depth_ > 0 || chance_.once(4)) {
                add("Q");
                depth_ -= depth_ > 0 ? 1 : 0;
            } else if (chance_.once(3)) {
                add(construction() + "W n");
            }
            return;
        case 2:
            return chance_.once(2) ? addMatrix() : addSetting();
        case 3:
            add("q " + construction() + (chance_.once(2) ? "W n" : "W* n"));
            ++depth_;
            return addPath();
        case 4:
        case 5:
            return hasOpaque_ ? addOpaque() : addSetting();
        case 6:
            return addSetting();
        default:
            return addPath();
        }
    }

    Chance& chance_;
    bool hasOpaque_;
    std::vector<std::string> tokens_;
    std::size_t depth_ = 0;
    std::size_t things_ = 0;
};

/// One edit; its name, for messages.
inline std::string editOnce(Document& document, Chance& chance) {
    Artist artist(document);
    const std::vector<Art>& all = artist.objects;
    if (all.empty()) {
        artist.add(10, 10, 90, 70);
        return "first";
    }
    const std::size_t index = chance.below(all.size());
    const Art art = all[index];
    const Art other = all[chance.below(all.size())];
    const std::string name = " " + std::to_string(index);
    const Art clip =
        artist.clips.empty() ? Art::null : artist.clips[chance.below(artist.clips.size())];
    switch (chance.below(13)) {
    case 0:
        artist.move(art, chance.number(-40, 40), chance.number(-40, 40));
        return "move" + name;
    case 1:
        artist.fill(art, chance.number(0, 1));
        return "fill" + name;
    case 2:
        artist.style(art, [&](PathStyle& style) {
            style.strokePaint = 1;
            style.lineWidth = fixedFromReal(chance.number(1, 20));
            const Fixed kind = style.lineWidth % 3;
            style.pen = kind == 0 ? Pen{.5, 0, 1} : kind == 1 ? Pen() : style.pen;
            style.cap = 1;
        });
        return "stroke" + name;
    case 3:
        if (art != other) {
            artist.raise(art, other);
        }
        return "raise" + name;
    case 4:
        if (art != other) {
            artist.lower(art, other);
        }
        return "lower" + name;
    case 5:
        artist.copy(art, chance.number(-9, 9), 3);
        return "move a copy of" + name;
    case 6:
        artist.raise(artist.copy(art), other);
        return "copy" + name;
    case 7:
        if (all.size() > 4) {
            artist.remove(art);
        }
        return "remove" + name;
    case 8:
        artist.add(chance.number(0, 300), chance.number(0, 300), 80, 60, art);
        return "add over" + name;
    case 9:
        artist.group({art});
        return "group" + name;
    case 10:
        artist.clip({art}, artist.add(chance.number(0, 200), chance.number(0, 200), 150, 150, art));
        return "clip" + name;
    case 11:
        if (clip != Art::null) {
            artist.move(clip, chance.number(-20, 20), 5);
        }
        return "move a clip";
    default:
        if (clip != Art::null && chance.once(2)) {
            artist.release(document.parent(clip));
            return "release";
        }
        if (clip != Art::null) {
            artist.lower(art, clip);
            return "clip" + name + " by another clip";
        }
        return "nothing";
    }
}

} // namespace corvane
