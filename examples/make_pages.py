#!/usr/bin/env python3
"""Makes the sample pages of this folder: small, uncompressed PDF 1.4 that can be read in an editor.

    python3 examples/make_pages.py [FOLDER]
"""

import pathlib
import sys


def stream(content):
    data = content.strip("\n").encode("ascii") + b"\n"
    return b"<< /Length %d >>\nstream\n%sendstream" % (len(data), data)


def document(pages, title):
    """Bytes of a PDF. `pages` is a list of (entries of the page's dictionary, content)."""
    first_page = 4
    kids = " ".join(f"{first_page + 2 * i} 0 R" for i in range(len(pages)))
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        f"<< /Type /Pages /Kids [{kids}] /Count {len(pages)} >>".encode(),
        f"<< /Title ({title}) /Producer (make_pages.py) >>".encode(),
    ]
    for i, (entries, content) in enumerate(pages):
        contents = first_page + 2 * i + 1
        objects.append(
            f"<< /Type /Page /Parent 2 0 R {entries}\n"
            f"   /Resources << /ProcSet [/PDF] >> /Contents {contents} 0 R >>".encode()
        )
        objects.append(stream(content))

    data = bytearray(b"%PDF-1.4\n%\xe2\xe3\xcf\xd3\n")
    offsets = []
    for number, body in enumerate(objects, 1):
        offsets.append(len(data))
        data += b"%d 0 obj\n%s\nendobj\n" % (number, body)
    start = len(data)
    data += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    for offset in offsets:
        data += b"%010d 00000 n \n" % offset
    data += b"trailer\n<< /Size %d /Root 1 0 R /Info 3 0 R >>\n" % (len(objects) + 1)
    data += b"startxref\n%d\n%%%%EOF\n" % start
    return bytes(data)


# A harbour at dusk: curves, clips within clips, a compound path, three colour spaces.
HARBOUR = """
q
0.05 0.10 0.30 rg
0 0 420 300 re f
% the sun, cut by the sea
q
0 110 420 190 re W n
0.95 0.45 0.15 rg
290 110 m
290 143.137 263.137 170 230 170 c
196.863 170 170 143.137 170 110 c
h f
1 0.85 0.4 RG 3 w
150 110 m 150 154.183 185.817 190 230 190 c 274.183 190 310 154.183 310 110 c S
Q
% the sea
0.75 0.35 0.05 0.30 k
0 0 m 420 0 l 420 110 l
300 122 240 98 140 110 c
90 116 40 104 0 110 c
h f
% a hull, and its sail with a round window
0.1 0.9 0.9 0.2 k
70 84 m 180 84 l 158 56 l 92 56 l h f
1 g 0.2 G 1.5 w 1 j
q
1 0 0 1 0 2 cm
120 90 m 120 200 l 176 98 l h
150 121 m 150 126.523 145.523 131 140 131 c
134.477 131 130 126.523 130 121 c
130 115.477 134.477 111 140 111 c
145.523 111 150 115.477 150 121 c
h
B*
Q
% waves, only within a strip
q
20 10 380 40 re W n
0.6 0.1 0.05 0 K
2 w 1 J [12 6 2 6] 3 d
20 20 m 60 34 100 6 140 20 c 180 34 220 6 260 20 c 300 34 340 6 400 20 c S
[8 8] 0 d
20 36 m 60 50 100 22 140 36 c 180 50 220 22 260 36 c 300 50 340 22 400 36 c S
Q
Q
"""

# Strokes: caps, joins, dashes, widths; stars by both rules.
STROKES = """
0.9 g 36 36 324 220 re f
0 G
8 w 0 J 60 230 m 160 230 l S
1 J 60 210 m 160 210 l S
2 J 60 190 m 160 190 l S
0 J 10 w
0 j 200 190 m 225 235 l 250 190 l S
1 j 265 190 m 290 235 l 315 190 l S
2 j 310 95 m 325 130 l 340 95 l S
0 j 1 w
[6 3] 0 d 60 170 m 340 170 l S
[10 4 2 4] 5 d 60 162 m 340 162 l S
[] 0 d 0.25 w 60 154 m 340 154 l S
0.8 0.2 0.1 rg 0.1 0.3 0.1 RG 1.5 w
110 140 m 133.511 67.639 l 71.957 112.361 l 148.043 112.361 l 86.489 67.639 l h B
220 140 m 243.511 67.639 l 181.957 112.361 l 258.043 112.361 l 196.489 67.639 l h B*
"""

# A turned page that is seen through a crop box: an arrow that must point up.
TURNED = """
0.8 0.9 1 rg 0 0 400 300 re f
q
60 40 260 200 re W n
0 0.2 0.9 0.1 k
300 140 m 170 220 l 170 170 l 80 170 l 80 110 l 170 110 l 170 60 l h f
Q
0.3 G 4 w 62 42 256 196 re S
1 0 0 RG 2 w 60 40 m 90 40 l 60 40 m 60 70 l S
"""

GRID = """
0.7 G 0.5 w
{lines}
{red} {green} {blue} rg
q 1 0 0 1 150 150 cm 0.866 0.5 -0.5 0.866 0 0 cm -60 -40 120 80 re f Q
0 G 2 w q 1 0 0 1 150 150 cm 0.866 0.5 -0.5 0.866 0 0 cm -60 -40 120 80 re S Q
"""


def grid(red, green, blue):
    lines = "\n".join(f"{x} 0 m {x} 300 l S 0 {x} m 300 {x} l S" for x in range(30, 300, 30))
    return GRID.format(lines=lines, red=red, green=green, blue=blue)


PAGES = {
    "harbour.pdf": document([("/MediaBox [0 0 420 300]", HARBOUR)], "Harbour"),
    "strokes.pdf": document([("/MediaBox [36 36 360 256]", STROKES)], "Strokes"),
    "turned.pdf": document(
        [("/MediaBox [0 0 400 300] /CropBox [60 40 320 240] /Rotate 270", TURNED)], "Turned"
    ),
    "two-pages.pdf": document(
        [
            ("/MediaBox [0 0 300 300]", grid(0.2, 0.5, 0.9)),
            ("/MediaBox [0 0 300 300]", grid(0.9, 0.5, 0.2)),
        ],
        "Two pages",
    ),
}


def main():
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent)
    for name, data in PAGES.items():
        (folder / name).write_bytes(data)


if __name__ == "__main__":
    main()
