"""Type 1 fonts of the package fonts-urw-base35: widths, subsets, outlines.

Their licence permits to put them into PDF files.
"""

import hashlib
import pathlib
import re

FOLDER = pathlib.Path("/usr/share/fonts/type1/urw-base35")

# Names of letters that are not their own name, as far as the examples need them.
NAMES = dict(zip(" !%&'()*+,-./0123456789:;=?@", """space exclam percent ampersand quotesingle parenleft
    parenright asterisk plus comma hyphen period slash zero one two three four five six seven eight nine
    colon semicolon equal question at""".split()))
NAMES.update({"–": "endash", "·": "periodcentered", "©": "copyright", "’": "quoteright",
              "€": "Euro", "×": "multiply", "#": "numbersign", "é": "eacute"})


def name_of(letter):
    return NAMES.get(letter, letter)


def cipher(data, key, is_encrypting=False):
    """Encryption of Type 1 (Adobe Type 1 Font Format, section 7)."""
    result = bytearray()
    for byte in data:
        changed = byte ^ (key >> 8)
        result.append(changed)
        key = ((changed if is_encrypting else byte) + key) * 52845 + 22719 & 0xFFFF
    return bytes(result)


class Font:
    def __init__(self, name):
        self.name = name
        self.used = set()
        self.widths = {}
        for line in (FOLDER / f"{name}.afm").read_text("latin-1").splitlines():
            found = re.match(r"C -?\d+ ; WX (\d+) ; N (\S+) ;", line)
            if found:
                self.widths[found[2]] = int(found[1])
        program = (FOLDER / f"{name}.t1").read_bytes()
        start = re.search(rb"currentfile eexec\s", program).end()
        self.clear = program[:start]
        self.private = cipher(program[start:], 55665)[4:]
        self.begin, self.end, self.glyphs = self.charstrings()

    def charstrings(self):
        """Where the dictionary of the glyphs begins and ends, and its entries by name."""
        head = re.search(rb"/CharStrings \d+ dict dup begin\s+", self.private)
        entry = re.compile(rb"/(\S+) (\d+) (?:RD|-\|) ")
        at, glyphs = head.end(), {}
        while found := entry.match(self.private, at):
            end = found.end() + int(found[2])
            at = re.compile(rb"\s*(?:ND|\|-)\s*").match(self.private, end).end()
            glyphs[found[1].decode()] = (self.private[found.end():end],
                                         self.private[found.start():at])
        return head.start(), at, glyphs

    def width(self, text, size):
        return sum(self.widths[name_of(letter)] for letter in text) * size / 1000

    def code(self, text):
        """A string of the content, in WinAnsiEncoding; its letters go into the subset."""
        self.used.update(text)
        escaped = re.sub(r"([\\()])", r"\\\1", text)
        return f"({escaped})"

    def subset(self):
        """The parts of the program with the used glyphs only: clear, encrypted, end."""
        names = sorted({".notdef"} | {name_of(letter) for letter in self.used})
        private = self.private[:self.begin]
        private += b"/CharStrings %d dict dup begin\n" % len(names)
        private += b"".join(self.glyphs[name][1] for name in names)
        private += b"end\nend\nreadonly put\nnoaccess put\ndup/FontName get exch definefont pop\n"
        private += b"mark currentfile closefile\n"
        tail = b"\n" + (b"0" * 64 + b"\n") * 8 + b"cleartomark\n"
        return self.clear, cipher(b"\0\0\0\0" + private, 55665, True), tail

    def write(self, document):
        """The font as objects of the document; the reference of its dictionary."""
        parts = self.subset()
        lengths = " ".join(f"/Length{i} {len(part)}" for i, part in enumerate(parts, 1))
        file = document.stream(b"".join(parts), lengths)
        digest = hashlib.sha256(repr(sorted(self.used)).encode()).digest()
        tag = "".join(chr(65 + byte % 26) for byte in digest[:6])
        codes = [letter.encode("cp1252")[0] for letter in self.used]
        first, last = min(codes), max(codes)
        widths = " ".join(str(self.widths.get(name_of(bytes([code]).decode("cp1252")), 0))
                          if code in codes else "0" for code in range(first, last + 1))
        box = re.search(rb"/FontBBox \{([^}]*)\}", self.clear)[1].decode()
        flags = 32 + 2 * (not self.name.startswith("NimbusSans")) + ("Mono" in self.name)
        descriptor = document.add(
            f"<< /Type /FontDescriptor /FontName /{tag}+{self.name} /Flags {flags} "
            f"/FontBBox [{box}] /ItalicAngle 0 /Ascent 730 /Descent -240 /CapHeight 700 "
            f"/StemV {140 if 'Bold' in self.name else 84} /FontFile {file} >>")
        return document.add(
            f"<< /Type /Font /Subtype /Type1 /BaseFont /{tag}+{self.name} "
            f"/Encoding /WinAnsiEncoding /FirstChar {first} /LastChar {last} "
            f"/Widths [{widths}] /FontDescriptor {descriptor} >>")


class Fonts:
    """The fonts of a page by their names in its resources."""

    def __init__(self, **names):
        self.fonts = {key: Font(name) for key, name in names.items()}

    def __getitem__(self, key):
        return self.fonts[key]

    def write(self, document):
        entries = " ".join(f"/{key} {font.write(document)}" for key, font in self.fonts.items())
        return f"/Font << {entries} >>"
