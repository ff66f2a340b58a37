"""A scanned letter: a bilevel image of the page, and its words as text that is not painted."""

import math
import random

from canvas import Canvas
from fonts import Fonts
from fax import encode
from outlines import Outlines
from pdf import Document, number

WIDTH, HEIGHT = 595, 842
DOTS = 150 / 72  # of the scanner, in a point
SIZE, LEADING, LEFT, TOP = 11, 17, 88, 738
TILT = math.radians(0.35)  # the sheet lay askew

LETTER = """HARBOUR OFFICE
North Quay, Ellmouth

3 March 1931

To the Keeper of the Lighthouse

Dear Sir,

The lamp was seen to go dark on the night of the
26th, between ten minutes past two and a quarter to
three. The mail boat lay off the bar and waited for
the tide, and came in without harm.

Please let us know whether the clockwork stopped or
the oil ran out. If it is the clockwork, Mr Penrose
will come over with the boat on Saturday and bring
the new spring, which has lain here since autumn.

The coal you asked for is ordered. Two sacks come
with the next boat, the others when the road to the
quay is dry.

We thank you for the list of ships. The Committee
was pleased to hear that the new bell carries as far
as the outer buoy.

                         Yours faithfully,



                         A. Trelawny
                         Harbour Master""".split("\n")


class Sheet:
    """Rows of dots, one byte each, 1 being black."""

    def __init__(self):
        self.width, self.height = round(WIDTH * DOTS), round(HEIGHT * DOTS)
        self.rows = [bytearray(self.width) for _ in range(self.height)]

    def place(self, x, y):
        """A point of the page, in dots from the upper left, as the sheet lay."""
        x, y = x - WIDTH / 2, y - HEIGHT / 2
        turned = (x * math.cos(TILT) - y * math.sin(TILT), x * math.sin(TILT) + y * math.cos(TILT))
        return (turned[0] + WIDTH / 2) * DOTS, (HEIGHT / 2 - turned[1]) * DOTS

    def fill(self, contours):
        """Paints closed contours of points of the page, by the nonzero rule."""
        edges = []
        for contour in contours:
            points = [self.place(*point) for point in contour]
            edges += [(a, b) for a, b in zip(points, points[1:] + points[:1]) if a[1] != b[1]]
        if not edges:
            return
        low = max(0, math.floor(min(min(a[1], b[1]) for a, b in edges)))
        high = min(self.height - 1, math.ceil(max(max(a[1], b[1]) for a, b in edges)))
        for y in range(low, high + 1):
            self.fill_row(y, edges)

    def fill_row(self, y, edges):
        middle = y + 0.5
        crossings = []
        for (x0, y0), (x1, y1) in edges:
            if min(y0, y1) <= middle < max(y0, y1):
                crossings.append((x0 + (middle - y0) * (x1 - x0) / (y1 - y0), 1 if y1 > y0 else -1))
        winding = 0
        crossings.sort()
        for (x, turn), (next_x, _) in zip(crossings, crossings[1:]):
            winding += turn
            if winding:
                first, last = max(0, round(x)), min(self.width, round(next_x))
                self.rows[y][first:last] = b"\1" * max(0, last - first)

    def age(self, rng):
        """Dust, and a fold that left a broken line."""
        for _ in range(150):
            x, y = rng.randrange(2, self.width - 3), rng.randrange(2, self.height - 3)
            for dy in range(rng.choice((1, 1, 2))):
                for dx in range(rng.choice((1, 2, 2, 3))):
                    self.rows[y + dy][x + dx] = 1
        fold = self.height // 2
        for x in range(self.width):
            if rng.random() < 0.06:
                self.rows[fold + round(x * math.tan(TILT))][x] = 1


def type_letter(sheet, rng):
    """Each letter a little off its place, as a typewriter sets them."""
    outlines = Outlines("NimbusMonoPS-Bold")
    advance = 0.6 * SIZE
    for i, line in enumerate(LETTER):
        for j, letter in enumerate(line):
            x = LEFT + j * advance + rng.uniform(-0.12, 0.12)
            y = TOP - i * LEADING + rng.uniform(-0.3, 0.3)
            scale = SIZE / 1000
            sheet.fill([[(x + a * scale, y + b * scale) for a, b in contour]
                        for contour in outlines.of(letter)])


def sign(sheet):
    """A signature: a stroke of a pen, as a row of short thick lines."""
    points = []
    for i in range(220):
        t = i / 219
        points.append((262 + 118 * t + 9 * math.sin(t * 23),
                       228 + 13 * math.sin(t * 29 + 0.4) * (1.1 - t) + 6 * t))
    for (x0, y0), (x1, y1) in zip(points, points[1:]):
        length = math.hypot(x1 - x0, y1 - y0) or 1
        thick = 0.45 + 0.4 * abs(math.sin(x0 / 7))
        across, up = -(y1 - y0) / length * thick, (x1 - x0) / length * thick
        sheet.fill([[(x0 + across, y0 + up), (x1 + across, y1 + up),
                     (x1 - across, y1 - up), (x0 - across, y0 - up)]])


def hidden_text(canvas):
    """The words where they are seen, in rendering mode 3."""
    canvas.add("BT 3 Tr /Hidden 11 Tf")
    for i, line in enumerate(LETTER):
        if line.strip():
            indent = len(line) - len(line.lstrip())
            x, y = LEFT + indent * 0.6 * SIZE, TOP - i * LEADING
            c, s = math.cos(TILT), math.sin(TILT)
            dx, dy = x - WIDTH / 2, y - HEIGHT / 2
            place = (dx * c - dy * s + WIDTH / 2, dx * s + dy * c + HEIGHT / 2)
            canvas.add(f"{c:.5f} {s:.5f} {-s:.5f} {c:.5f} {number(place[0])} {number(place[1])} Tm "
                       f"{canvas.fonts['Hidden'].code(line.strip())} Tj")
    canvas.add("ET")


def make():
    rng = random.Random(1931)
    sheet = Sheet()
    type_letter(sheet, rng)
    sign(sheet)
    sheet.age(rng)
    document = Document("Letter of 3 March 1931")
    entries = (f"/Type /XObject /Subtype /Image /Width {sheet.width} /Height {sheet.height} "
               f"/BitsPerComponent 1 /ColorSpace /DeviceGray /Filter /CCITTFaxDecode "
               f"/DecodeParms << /K -1 /Columns {sheet.width} /Rows {sheet.height} >>")
    image = document.stream(encode(sheet.rows), entries, is_packed=False)
    canvas = Canvas(Fonts(Hidden="NimbusMonoPS-Regular"))
    canvas.add(f"q {WIDTH} 0 0 {HEIGHT} 0 0 cm /Scan Do Q")
    hidden_text(canvas)
    font = document.add("<< /Type /Font /Subtype /Type1 /BaseFont /Courier "
                        "/Encoding /WinAnsiEncoding >>")
    resources = f"/XObject << /Scan {image} >> /Font << /Hidden {font} >>"
    document.page(WIDTH, HEIGHT, canvas.content(), resources)
    return document.finish()
