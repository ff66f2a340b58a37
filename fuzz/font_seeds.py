#!/usr/bin/env python3
"""Makes the seeds of the font target, with fontTools: font_seeds.py FOLDER

Their shapes are simple, so that tests know them: A is a square of 500 units, B a quadratic or cubic
arch, C both; advances are 600, 650, 700; an em has 1000 units.
"""
import pathlib
import sys

from fontTools.fontBuilder import FontBuilder
from fontTools.misc import eexec
from fontTools.misc.psCharStrings import T1CharString
from fontTools.pens.t2CharStringPen import T2CharStringPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib.tables._c_m_a_p import CmapSubtable

NAMES = [".notdef", "A", "B", "C"]
ADVANCES = dict(zip(NAMES, (500, 600, 650, 700)))


def square(pen):
    pen.moveTo((0, 0))
    for to in ((500, 0), (500, 500), (0, 500)):
        pen.lineTo(to)
    pen.closePath()


def arch(pen, quadratic):
    pen.moveTo((0, 0))
    if quadratic:
        pen.qCurveTo((300, 600), (600, 0))
    else:
        pen.curveTo((200, 400), (400, 400), (600, 0))
    pen.closePath()


def subtable(platform, encoding, form, mapping):
    table = CmapSubtable.newSubtable(form)
    table.platformID, table.platEncID, table.language = platform, encoding, 0
    table.cmap = mapping
    return table


def glyf():
    glyphs = {}
    for name in NAMES:
        pen = TTGlyphPen(glyphs)
        if name == "A":
            square(pen)
        elif name == "B":
            arch(pen, True)
        elif name == "C":
            pen.addComponent("A", (1, 0, 0, 1, 0, 0))
            pen.addComponent("B", (1, 0, 0, 1, 50, 100))
        glyphs[name] = pen.glyph()
    return glyphs


def true_type(path, subtables, without=()):
    builder = FontBuilder(1000, isTTF=True)
    builder.setupGlyphOrder(NAMES)
    builder.setupCharacterMap({})
    builder.setupGlyf(glyf())
    builder.setupHorizontalMetrics({name: (ADVANCES[name], 0) for name in NAMES})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    builder.setupNameTable({"familyName": "Seed", "styleName": "Regular"})
    builder.setupOS2(fsType=2)
    builder.setupPost()
    font = builder.font
    font["cmap"].tables = subtables
    for tag in without:
        del font[tag]
    font["head"].created = font["head"].modified = 0
    font.recalcTimestamp = False
    font.save(path)


def cff_charstrings():
    charstrings = {}
    for name in NAMES:
        pen = T2CharStringPen(ADVANCES[name], None)
        if name in "AC":
            square(pen)
        if name in "BC":
            arch(pen, False)
        charstrings[name] = pen.getCharString()
    return charstrings


def open_type():
    builder = FontBuilder(1000, isTTF=False)
    builder.setupGlyphOrder(NAMES)
    builder.setupCharacterMap({0x41: "A", 0x42: "B", 0x1F600: "C"})
    builder.setupCFF("Seed", {"FullName": "Seed"}, cff_charstrings(), {})
    builder.setupHorizontalMetrics({name: (ADVANCES[name], 0) for name in NAMES})
    builder.setupHorizontalHeader(ascent=800, descent=-200)
    builder.setupNameTable({"familyName": "Seed", "styleName": "Regular"})
    builder.setupOS2()
    builder.setupPost()
    builder.font["head"].created = builder.font["head"].modified = 0
    builder.font.recalcTimestamp = False
    return builder.font


def cid_cff(folder):
    """Hand-made: CIDs 0, 5, 300, 7 in this order."""
    charstrings = [cff_charstrings()[name] for name in NAMES]
    for charstring in charstrings:
        charstring.compile()
    def index(items):
        offsets, end = [1], 1
        for item in items:
            end += len(item)
            offsets.append(end)
        return (len(items).to_bytes(2, "big") + b"\2"
                + b"".join(o.to_bytes(2, "big") for o in offsets) + b"".join(items))
    def number(n):
        return b"\x1d" + n.to_bytes(4, "big")
    def top(charset, select, glyphs, array):
        return (number(391) + number(392) + number(0) + b"\x0c\x1e" + number(charset) + b"\x0f"
                + number(select) + b"\x0c\x25" + number(glyphs) + b"\x11" + number(array) + b"\x0c\x24")
    def whole(places):
        parts = [b"\1\0\4\4", index([b"Seed"]), index([top(*places)]), index([b"Adobe", b"Identity"]),
                 b"\0\0"]
        parts.append(b"\0" + b"".join(cid.to_bytes(2, "big") for cid in (5, 300, 7)))
        parts.append(b"\0" + bytes(len(NAMES)))
        parts.append(index([c.bytecode for c in charstrings]))
        start = sum(map(len, parts))
        private = b"\x8b\x14\x8b\x15"
        dictionary = number(len(private)) + number(start) + b"\x12"
        parts.append(private)
        parts.append(index([dictionary]))
        at = [sum(map(len, parts[:i])) for i in range(len(parts))]
        return b"".join(parts), (at[5], at[6], at[7], at[9])
    _, places = whole((0, 0, 0, 0))
    (folder / "cid.cff").write_bytes(whole(places)[0])


def type1():
    def charstring(name):
        program = [0, ADVANCES[name], "hsbw"]
        if name in "AC":
            program += [0, 0, "rmoveto", 500, "hlineto", 500, "vlineto", -500, "hlineto", "closepath"]
        if name in "BC":
            program += [0, -500 if name == "C" else 0, "rmoveto",
                        200, 400, 200, 0, 200, -400, "rrcurveto", "closepath"]
        compiled = T1CharString(program=program + ["endchar"])
        compiled.compile()
        return eexec.encrypt(b"\0\0\0\0" + compiled.bytecode, 4330)[0]
    clear = b"""%!PS-AdobeFont-1.0: Seed
11 dict begin
/FontName /Seed def
/FontType 1 def
/PaintType 0 def
/FontMatrix [0.001 0 0 0.001 0 0] def
/FontBBox {0 0 600 500} def
/Encoding 256 array 0 1 255 {1 index exch /.notdef put} for
dup 65 /A put
dup 200 /B put
readonly def
currentdict end
currentfile eexec
"""
    secret = b"""dup /Private 8 dict dup begin
/RD {string currentfile exch readstring pop} executeonly def
/ND {def} executeonly def
/NP {put} executeonly def
/MinFeature {16 16} def
/password 5839 def
/BlueValues [] def
2 index /CharStrings 4 dict dup begin
"""
    for name in NAMES:
        code = charstring(name)
        secret += b"/%s %d RD " % (name.encode(), len(code)) + code + b" ND\n"
    secret += b"end\nend\nput\ndup /FontName get exch definefont pop\nmark currentfile closefile\n"
    tail = b"\n" + (b"0" * 64 + b"\n") * 8 + b"cleartomark\n"
    return clear, eexec.encrypt(b"\0\0\0\0" + secret, 55665)[0], tail


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    letters = {0x41: "A", 0x42: "B"}
    true_type(folder / "unicode.ttf",
              [subtable(3, 1, 4, letters), subtable(1, 0, 0, {0x80: "C"})])
    true_type(folder / "symbol.ttf", [subtable(3, 0, 4, {0xF000 + code: n for code, n in letters.items()})])
    true_type(folder / "bare.ttf", [], ("cmap", "post", "OS/2", "name"))
    font = open_type()
    font.save(folder / "names.otf")
    (folder / "names.cff").write_bytes(font["CFF "].compile(font))
    cid_cff(folder)
    clear, secret, tail = type1()
    (folder / "plain.pfa").write_bytes(clear + secret + tail)
    segments = b"".join(b"\x80" + bytes([kind]) + len(part).to_bytes(4, "little") + part
                        for kind, part in ((1, clear), (2, secret), (1, tail)))
    (folder / "segments.pfb").write_bytes(segments + b"\x80\3")
    (folder / "lead.pfa").write_bytes(b"\r\n junk " + clear + secret)
    (folder / "other-line.pfa").write_bytes(b"%!Seed\n" + clear.split(b"\n", 1)[1] + secret)


if __name__ == "__main__":
    main()
