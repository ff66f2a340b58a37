#!/usr/bin/env python3
"""Makes the seeds of the shaping target, with fontTools: shaping_seeds.py FOLDER

Each is a text, a zero byte and a font that has what the text needs: ligatures and kerning, joined
forms, marks with places, glyphs of columns. The shapes are those of font_seeds.py.
"""
import io
import pathlib
import sys

from fontTools.fontBuilder import FontBuilder

from font_seeds import ADVANCES, NAMES, glyf, open_type

LETTERS = {0x20: "A", 0x41: "A", 0x42: "B", 0x43: "C", 0x301: "C", 0x5D0: "A", 0x5B8: "C", 0x627: "A",
           0x628: "B", 0x915: "A", 0x94D: "B", 0x937: "C", 0x3001: "A"}
LIGATURES = """
feature liga { sub A B by C; sub B B B by A; } liga;
feature kern { pos A C -50; pos C A <10 20 30 0>; } kern;
"""
JOINED = """
feature init { sub B by C; } init;
feature medi { sub B by A; } medi;
feature rlig { sub A B by C; } rlig;
"""
MARKS = """
markClass C <anchor 100 500> @ABOVE;
feature mark { pos base A <anchor 250 700> mark @ABOVE; pos base B <anchor 300 700> mark @ABOVE; } mark;
feature ccmp { sub A by B C; } ccmp;
"""
COLUMNS = "feature vert { sub A by B; } vert;"


def true_type(features):
    builder = FontBuilder(1000, isTTF=True)
    builder.setupGlyphOrder(NAMES)
    builder.setupCharacterMap(LETTERS)
    builder.setupGlyf(glyf())
    builder.setupHorizontalMetrics({name: (ADVANCES[name], 0) for name in NAMES})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    builder.setupNameTable({"familyName": "Seed", "styleName": "Regular"})
    builder.setupOS2()
    builder.setupPost()
    builder.addOpenTypeFeatures(features)
    builder.font["head"].created = builder.font["head"].modified = 0
    builder.font.recalcTimestamp = False
    return builder.font


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    seeds = {
        "ligatures": ("ABBB CA", true_type(LIGATURES)),
        "joined": ("A \u0628\u0627\u0628\u0628 B\u200D\u0628", true_type(JOINED)),
        "marks": ("A\u0301B\u0301 \u05D0\u05B8", true_type(MARKS)),
        "cluster": ("\u0915\u094D\u0937\u0915", true_type(LIGATURES)),
        "columns": ("\u3001A\u3001", true_type(COLUMNS)),
        "cff": ("BA\U0001F600", open_type()),
    }
    for name, (text, font) in seeds.items():
        file = io.BytesIO()
        font.save(file)
        (folder / name).write_bytes(text.encode() + b"\0" + file.getvalue())
    # The ligature is a glyph that the font lacks.
    near, far = (b"\0\1\0\4" + glyph + b"\0\2\0\2" for glyph in (b"\0\3", b"\xff\xf0"))
    whole = (folder / "ligatures").read_bytes()
    assert whole.count(near) == 1
    (folder / "far-ligature").write_bytes(whole.replace(near, far))


main()
