#!/usr/bin/env python3
"""Makes heavy PDF files to measure readers with; the same names give the same bytes.

    make_pages.py FOLDER [NAME ...]

A name is a kind and a size; without names every file of the list below is made, and one that is
there already is kept.

    map-120000            a map: that many paths, ten times as many segments, plain content
    text-60000            that many lines of eight words, in columns of 600, in one standard font
    fonts-20              a line in each of that many embedded fonts: those of `fonts-urw-base35`, 35 at most
    objects-10000         that many indirect objects and one simple page
    objects-100000
    objects-1000000
    nested-q-100000       q inside q that deep, with a square at a few depths
    sibling-q-100000      that many of: q, a square, Q
    pages-10000           pages in a balanced tree
    flat-pages-50000      pages in one Kids array
    archive-1000000       that many objects, a page for every ten of them: 300 MB
    archive-streams-1000000
                          the same objects in object streams, with a cross-reference stream
    small-2000            a folder of that many files of one page: maps of 20 paths and more

Content is not compressed and the cross-reference is the classic table, so that what is measured is
reading and not inflating. The exception is the last one, whose object streams and cross-reference
are compressed as writers do it; its content is longer, so that it is as large as the one before.
"""

import glob
import math
import os
import random
import sys
import zlib

STANDARD = [
    "map-120000",
    "text-60000",
    "fonts-20",
    "objects-10000",
    "objects-100000",
    "objects-1000000",
    "nested-q-100000",
    "sibling-q-100000",
    "pages-10000",
    "flat-pages-50000",
    "archive-1000000",
    "archive-streams-1000000",
    "small-2000",
]
SEGMENTS_PER_PATH = 10
TREE_FANOUT = 16
OBJECTS_PER_PAGE = 10
GLYPHS_OF_LINE = 100
FONT_FILES = "/usr/share/fonts/opentype/urw-base35/*.otf"
LINES_OF_COLUMN = 600
OBJECTS_PER_STREAM = 100
PREDICTED = b"/DecodeParms << /Predictor 12 /Columns %d >>"
SHEET = (3370, 2384)  # A0, landscape, in points
PAGE = (612, 792)


def write_pdf(path, bodies):
    """Writes object bodies, numbered from 1, as a file whose catalog is object 1."""
    offsets = []
    position = 0
    partial = path + ".partial"
    with open(partial, "wb") as out:
        position += out.write(b"%PDF-1.4\n%\xe2\xe3\xcf\xd3\n")
        for number, body in enumerate(bodies, 1):
            offsets.append(position)
            position += out.write(b"%d 0 obj\n%b\nendobj\n" % (number, body))
        size = len(offsets) + 1
        out.write(b"xref\n0 %d\n0000000000 65535 f \n" % size)
        out.write(b"".join(b"%010d 00000 n \n" % offset for offset in offsets))
        out.write(b"trailer\n<< /Size %d /Root 1 0 R >>\n" % size)
        out.write(b"startxref\n%d\n%%%%EOF\n" % position)
    os.replace(partial, path)


def stream(content, entries=b""):
    return b"<< %b/Length %d >>\nstream\n%b\nendstream" % (entries, len(content), content)


def compressed(content, entries):
    return stream(zlib.compress(content), entries + b" /Filter /FlateDecode ")


def object_stream(members):
    """`members`: number and body of each."""
    heads = []
    position = 0
    for number, body in members:
        heads.append(b"%d %d " % (number, position))
        position += len(body) + 1
    head = b"".join(heads)
    return compressed(head + b"\n".join(body for _, body in members),
                      b"/Type /ObjStm /N %d /First %d" % (len(members), len(head)))


class SectionStream:
    """The entries of a cross-reference stream, in rows as its predictor wants them."""

    WIDTHS = (1, 4, 2)

    def __init__(self):
        self.rows = {0: bytes(sum(self.WIDTHS))}

    def enter(self, number, kind, second, third):
        self.rows[number] = b"".join(value.to_bytes(width, "big") for value, width in
                                     zip((kind, second, third), self.WIDTHS))

    def body(self):
        before = self.rows[0]
        out = []
        for number in range(len(self.rows)):
            row = self.rows[number]
            out.append(b"\2" + bytes(a - b & 255 for a, b in zip(row, before)))
            before = row
        # The first row is predicted from zeros, which it is itself.
        return compressed(b"".join(out), b"/Type /XRef /Root 1 0 R /Size %d /W [%d %d %d] %b" % (
            len(self.rows), *self.WIDTHS, PREDICTED % sum(self.WIDTHS)))


def write_streamed_pdf(path, bodies):
    """As `write_pdf`; objects that are no streams go into object streams."""
    section = SectionStream()
    position = 0
    members = []
    partial = path + ".partial"
    with open(partial, "wb") as out:
        position += out.write(b"%PDF-1.5\n%\xe2\xe3\xcf\xd3\n")

        def put(number, body):
            nonlocal position
            section.enter(number, 1, position, 0)
            position += out.write(b"%d 0 obj\n%b\nendobj\n" % (number, body))

        held = []  # object streams get the numbers behind all others
        number = 0
        for number, body in enumerate(bodies, 1):
            if body.endswith(b"endstream"):
                put(number, body)
                continue
            members.append((number, body))
            if len(members) == OBJECTS_PER_STREAM:
                held.append(members)
                members = []
        held += [members] if members else []
        for holder, members in enumerate(held, number + 1):
            put(holder, object_stream(members))
            for index, (member, _) in enumerate(members):
                section.enter(member, 2, holder, index)
        last = number + len(held) + 1
        section.enter(last, 1, position, 0)
        out.write(b"%d 0 obj\n%b\nendobj\nstartxref\n%d\n%%%%EOF\n" % (last, section.body(), position))
    os.replace(partial, path)


def one_page(content, size=PAGE, filler=(), resources=b""):
    """Catalog, page tree, page and content, then the filler objects."""
    yield b"<< /Type /Catalog /Pages 2 0 R >>"
    yield b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>"
    yield b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 %d %d] /Contents 4 0 R /Resources << %b>> >>" % (
        *size, resources)
    yield stream(content)
    yield from filler


class Surveyor:
    """Draws the features of a map as content operators, each with the number of anchors it is told."""

    def __init__(self, seed):
        self.random = random.Random(seed).random  # the one method whose results never change

    def start(self):
        return self.random() * SHEET[0], self.random() * SHEET[1]

    def walk(self, anchors, step, wander):
        """A line that keeps its direction more or less: roads, rivers."""
        x, y = self.start()
        heading = self.random() * math.tau
        out = ["%.3f %.3f m" % (x, y)]
        for _ in range(anchors - 1):
            heading += (self.random() - 0.5) * wander
            x += math.cos(heading) * step
            y += math.sin(heading) * step
            out.append("%.3f %.3f l" % (x, y))
        return out

    def road(self, anchors):
        return self.walk(anchors, 2.75, 0.9) + ["S"]

    def river(self, anchors):
        return self.walk(anchors, 1.5, 1.6) + ["S"]

    def ring(self, anchors):
        """A closed outline around a point: parcels, woods, lakes."""
        x, y = self.start()
        radius = 1 + self.random() * 12
        out = []
        for i in range(anchors):
            turn = math.tau * i / anchors
            reach = radius * (0.7 + 0.6 * self.random())
            out.append("%.3f %.3f %s" % (x + reach * math.cos(turn), y + reach * math.sin(turn),
                                         "l" if i else "m"))
        return out + ["h"]

    def wood(self, anchors):
        return self.ring(anchors) + ["f"]

    def parcel(self, anchors):
        return self.ring(anchors) + ["B"]

    def contour(self, anchors):
        x, y = self.start()
        out = ["%.3f %.3f m" % (x, y)]
        for _ in range(anchors - 1):
            dx, dy = self.random() * 8 - 3, self.random() * 8 - 4
            out.append("%.3f %.3f %.3f %.3f %.3f %.3f c" % (
                x + dx * 0.3, y + dy * 0.2, x + dx * 0.7, y + dy * 0.9, x + dx, y + dy))
            x += dx
            y += dy
        return out + ["S"]


# Share of the paths, paint and line, and what is drawn with them; one run of paths shares a style.
FEATURES = [
    (0.45, "0.35 0.35 0.38 RG 0.5 w", Surveyor.road),
    (0.60, "0.80 0.45 0.10 RG 0.85 w 1 J 1 j", Surveyor.road),
    (0.70, "1 0.55 0 0.05 K 0.35 w", Surveyor.river),
    (0.80, "0.25 0 0.40 0.05 k", Surveyor.wood),
    (0.92, "0.92 g 0.45 G 0.12 w", Surveyor.parcel),
    (1.00, "0.72 0.50 0.32 RG 0.18 w", Surveyor.contour),
]
RUN = 40


def map_content(paths):
    surveyor = Surveyor(1)
    segments = paths * SEGMENTS_PER_PATH
    out = []
    draw = None
    for done in range(paths):
        if done % RUN == 0:
            share = surveyor.random()
            _, style, draw = next(row for row in FEATURES if share < row[0])
            out.append(style)
        left = paths - done
        anchors = max(2, round(segments / left * (0.2 + 1.6 * surveyor.random())))
        if left == 1:
            anchors = max(2, segments)
        segments -= anchors
        out += draw(surveyor, anchors)
    return "\n".join(out).encode()


def make_map(paths):
    return one_page(map_content(paths), SHEET)


def make_objects(count):
    filler = (b"<< /Type /Feature /Serial %d /Name (feature %d) /Box [%d 0 %d 10] /Next %d 0 R >>" % (
        number, number, number % 600, number % 600 + 12, number - 1) for number in range(5, count + 1))
    return one_page(b"1 0 0 RG 2 w 72 72 m 540 720 l S", PAGE, filler)


def make_nested_q(depth):
    drawn = {1, depth}
    level = 10
    while level < depth:
        drawn.add(level)
        level *= 10
    out = []
    for here in range(1, depth + 1):
        out.append("q")
        if here in drawn:
            out.append("%.1f 0 0 rg %d %d 40 40 re f" % (here % 10 / 10, 40 + here % 400, 60 * len(str(here))))
    out.append("Q\n" * depth)
    return one_page("\n".join(out).encode())


def make_sibling_q(count):
    return one_page("\n".join(
        "q %.2f 0.5 0.2 rg %d %d 1.5 1.5 re f Q" % (i % 100 / 100, i % 300 * 2, i // 300 * 2)
        for i in range(count)).encode())


def page_body(parent, content, more=b""):
    return b"<< /Type /Page /Parent %d 0 R /MediaBox [0 0 %d %d] /Contents %d 0 R /Resources << >> %b>>" % (
        parent, *PAGE, content, more)


def make_flat_pages(count):
    yield b"<< /Type /Catalog /Pages 2 0 R >>"
    kids = b" ".join(b"%d 0 R" % (4 + i) for i in range(count))
    yield b"<< /Type /Pages /Count %d /Kids [%b] >>" % (count, kids)
    yield stream(b"0 0 1 RG 72 72 m 540 720 l S")
    for _ in range(count):
        yield page_body(2, 3)


def tree_widths(count):
    """Nodes of each level from the root down to the pages."""
    widths = [count]
    while len(widths) == 1 or widths[0] > 1:
        widths.insert(0, -(-widths[0] // TREE_FANOUT))
    return widths


def tree_nodes(widths, first, step=1):
    """The nodes of the tree, numbered from `first`; the pages come behind them, `step` apart."""
    count = widths[-1]
    for level, width in enumerate(widths[:-1]):
        below = first + width
        apart = step if level == len(widths) - 2 else 1
        leaves = TREE_FANOUT ** (len(widths) - 1 - level)
        for i in range(width):
            kids = range(i * TREE_FANOUT, min((i + 1) * TREE_FANOUT, widths[level + 1]))
            parent = b"" if level == 0 else b" /Parent %d 0 R" % (first - widths[level - 1] + i // TREE_FANOUT)
            yield b"<< /Type /Pages /Count %d /Kids [%b]%b >>" % (
                min(leaves, count - i * leaves),
                b" ".join(b"%d 0 R" % (below + kid * apart) for kid in kids), parent)
        first = below


def make_pages(count):
    """A level's nodes and then the pages are numbered one after another."""
    widths = tree_widths(count)
    first = 3
    yield b"<< /Type /Catalog /Pages %d 0 R >>" % first
    yield stream(b"0 0.5 0 RG 72 72 m 540 720 l S")
    yield from tree_nodes(widths, first)
    parents = first + sum(widths[:-2])
    for i in range(count):
        yield page_body(parents + i // TREE_FANOUT, 2)


def make_archive(count, content_bytes):
    """Reports bound into one file: a page, its content and its notes stand together."""
    widths = tree_widths(max(1, count // OBJECTS_PER_PAGE))
    first = 2
    yield b"<< /Type /Catalog /Pages %d 0 R >>" % first
    yield from tree_nodes(widths, first, OBJECTS_PER_PAGE)
    number = first + sum(widths[:-1])
    parents = first + sum(widths[:-2])
    lines = [b"%d %d m %d %d l S" % (60 + i % 7 * 70, 60 + i % 71 * 9, 90 + i % 5 * 90, 64 + i % 67 * 9)
             for i in range(content_bytes // 20)]
    drawing = b"\n".join(lines)
    for page in range(widths[-1]):
        notes = range(number + 2, number + OBJECTS_PER_PAGE)
        yield page_body(parents + page // TREE_FANOUT, number + 1,
                        b"/Annots [%b] " % b" ".join(b"%d 0 R" % note for note in notes))
        yield stream(b"%d 0 0 RG %d w\n%b" % (page % 2, page % 3, drawing))
        for note in notes:
            yield b"<< /Type /Annot /Subtype /Text /Rect [%d %d %d %d] /Contents (note %d of page %d) /P %d 0 R >>" % (
                note % 500, note % 700, note % 500 + 20, note % 700 + 20, note, page + 1, number)
        number += OBJECTS_PER_PAGE


def make_text(lines):
    """Columns of a long list, a line for each row."""
    words = b"the quay of old harbour boats lie low in grey water while men mend nets and talk".split()
    choice = random.Random(5).random
    content = []
    for row in range(lines):
        if row % LINES_OF_COLUMN == 0:
            content.append(b"ET" if row else b"")
            content.append(b"BT /F1 6 Tf 6.6 TL 1 0 0 1 %d 3990 Tm" % (20 + row // LINES_OF_COLUMN * 260))
        line = b" ".join(words[int(choice() * len(words))] for _ in range(8))
        content.append(b"(%b) Tj T*" % line)
    content.append(b"ET")
    width = 40 + (lines // LINES_OF_COLUMN + 1) * 260
    font = b"<< /Type /Font /Subtype /Type1 /BaseFont /Times-Roman >>"
    return one_page(b"\n".join(content), (width, 4000), [font], b"/Font << /F1 5 0 R >> ")


def widths_of(font):
    """Advances of the first glyphs of an OpenType font, in thousandths of an em."""
    tables = {font[i:i + 4]: int.from_bytes(font[i + 8:i + 12], "big")
              for i in range(12, 12 + 16 * int.from_bytes(font[4:6], "big"), 16)}
    number = lambda table, at: int.from_bytes(font[tables[table] + at:tables[table] + at + 2], "big")
    em, count = number(b"head", 18), number(b"hhea", 34)
    return [number(b"hmtx", 4 * glyph) * 1000 // em for glyph in range(min(count, GLYPHS_OF_LINE + 1))]


def make_fonts(count):
    """Lines of codes that are numbers of glyphs, each in a font of its own."""
    files = sorted(glob.glob(FONT_FILES))[:count]
    if len(files) < count:
        raise ValueError(f"there are {len(files)} fonts {FONT_FILES}")
    content, resources, objects = [], [], []
    for row, path in enumerate(files):
        with open(path, "rb") as file:
            program = file.read()
        widths = widths_of(program)
        name = os.path.basename(path).removesuffix(".otf").encode()
        first = 5 + len(objects)
        objects += [
            b"<< /Type /Font /Subtype /Type0 /BaseFont /%b /Encoding /Identity-H /DescendantFonts [%d 0 R] >>" % (
                name, first + 1),
            b"<< /Type /Font /Subtype /CIDFontType0 /BaseFont /%b /CIDSystemInfo << /Registry (Adobe) "
            b"/Ordering (Identity) /Supplement 0 >> /FontDescriptor %d 0 R /W [0 [%b]] >>" % (
                name, first + 2, b" ".join(b"%d" % width for width in widths)),
            b"<< /Type /FontDescriptor /FontName /%b /Flags 4 /FontBBox [-200 -300 1200 1000] /ItalicAngle 0 "
            b"/Ascent 800 /Descent -200 /CapHeight 700 /StemV 80 /FontFile3 %d 0 R >>" % (name, first + 3),
            compressed(program, b"/Subtype /OpenType")]
        resources.append(b"/F%d %d 0 R " % (row, first))
        codes = b"".join(b"%04x" % glyph for glyph in range(1, len(widths)))
        content.append(b"BT /F%d 8 Tf 20 %d Td <%b> Tj ET" % (row, 760 - 20 * row, codes))
    return one_page(b"\n".join(content), PAGE, objects, b"/Font << %b>> " % b"".join(resources))


KINDS = {
    "map": make_map,
    "text": make_text,
    "fonts": make_fonts,
    "objects": make_objects,
    "nested-q": make_nested_q,
    "sibling-q": make_sibling_q,
    "pages": make_pages,
    "flat-pages": make_flat_pages,
    "archive": lambda count: make_archive(count, 1400),
    "archive-streams": lambda count: make_archive(count, 2540),
}


def make_small(folder, count):
    """Returns FOLDER/small-COUNT, full of files."""
    path = os.path.join(folder, f"small-{count}")
    os.makedirs(path, exist_ok=True)
    for number in range(1, count + 1):
        file = os.path.join(path, f"{number:06}.pdf")
        if not os.path.exists(file):
            write_pdf(file, make_map(20 + number % 50))
    return path


def make(folder, name):
    """Makes FOLDER/NAME.pdf unless it is there, or the folder of small files; returns its path."""
    kind, _, size = name.rpartition("-")
    if kind == "small" and size.isdigit():
        return make_small(folder, int(size))
    if kind not in KINDS or not size.isdigit() or int(size) < 1:
        raise ValueError(f"{name}: not one of {', '.join(f'{k}-N' for k in KINDS)}")
    os.makedirs(folder, exist_ok=True)
    path = os.path.join(folder, name + ".pdf")
    if not os.path.exists(path):
        write = write_streamed_pdf if kind.endswith("-streams") else write_pdf
        write(path, KINDS[kind](int(size)))
    return path


def main():
    if len(sys.argv) < 2 or sys.argv[1].startswith("-"):
        sys.exit(__doc__)
    for name in sys.argv[2:] or STANDARD:
        try:
            path = make(sys.argv[1], name)
        except ValueError as problem:
            sys.exit(f"make_pages.py: {problem}")
        print(f"{path}: {os.path.getsize(path):,} bytes")


if __name__ == "__main__":
    main()
