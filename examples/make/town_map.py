"""A map of a town: streets, water, parks, houses, labels, a legend; each kind is a layer of the file."""

import math
import random

from canvas import Canvas
from fonts import Fonts
from pdf import Document

WIDTH, HEIGHT = 780, 560
MARGIN = 18
ACROSS, UP = 20, 14  # blocks

PAPER, HOUSE, HOUSE_EDGE = (0.957, 0.945, 0.917), (0.86, 0.82, 0.77), (0.76, 0.71, 0.65)
PARK, TREE = (0.8, 0.89, 0.73), (0.6, 0.77, 0.52)
WATER, BANK = (0.66, 0.82, 0.9), (0.45, 0.66, 0.78)
CASING, MAIN, MAIN_EDGE = (0.8, 0.77, 0.72), (0.99, 0.85, 0.53), (0.82, 0.64, 0.29)
RAIL, SIGN, BLUE, GREEN = (0.3, 0.3, 0.32), (0.76, 0.2, 0.18), (0.15, 0.38, 0.55), (0.2, 0.42, 0.18)

PARKS = {"Mill Meadow": (5, 8, 8, 11), "Rope Walk Park": (12, 3, 14, 5)}  # blocks: left, low, right, high
AVENUES = {4: "Quarry Road", 9: "Lantern Street", 15: "Orchard Avenue"}  # by the line between blocks
CROSSWAYS = {3: "Harbour Street", 7: "Market Street", 11: "Hill Road"}
SIGNS = [(9.5, 7.5, "Town hall"), (11.5, 9.5, "Library"), (8.4, 5.5, "Fish market"),
         (16.5, 8.5, "School")]


def place(u, v):
    """A point of the town, in blocks, on the page: the grid is turned and bent."""
    x = u / ACROSS - 0.5
    y = v / UP - 0.5
    bent_x = x + 0.035 * math.sin(5.1 * y + 1.2) + 0.02 * math.sin(9 * x + 4 * y)
    bent_y = y + 0.05 * math.sin(4.3 * x + 0.5) + 0.018 * math.cos(7 * y - 3 * x)
    turn = 0.12
    x = bent_x * math.cos(turn) - bent_y * math.sin(turn) * 0.72
    y = bent_y * math.cos(turn) + bent_x * math.sin(turn) * 1.3
    return WIDTH / 2 + x * WIDTH * 1.22, HEIGHT / 2 + y * HEIGHT * 1.32


def river(x):
    """The middle of the river and half its width, at that x of the page."""
    middle = 128 + 0.16 * x + 26 * math.sin(x / 95) + 8 * math.sin(x / 37)
    return middle, 17 + x / 60 + max(0, x - 560) ** 2 / 900 + 3 * math.sin(x / 23)


def is_wet(point, edge=7):
    middle, half = river(point[0])
    return abs(point[1] - middle) < half + edge


def park_at(u, v):
    return any(left <= u < right and low <= v < high for left, low, right, high in PARKS.values())


def houses(canvas):
    rng = random.Random(1866)
    canvas.fill(*HOUSE)
    canvas.stroke(0.4, *HOUSE_EDGE)
    for i in range(-4, ACROSS + 4):
        for j in range(-4, UP + 4):
            if not park_at(i, j):
                block(canvas, rng, i, j)


def block(canvas, rng, i, j):
    """Two rows of houses, back to back."""
    for row in range(2):
        at = 0.13
        while at < 0.8:
            wide = rng.uniform(0.12, 0.28)
            deep = rng.uniform(0.2, 0.3)
            low = 0.14 if row == 0 else 0.86 - deep
            end = min(at + wide, 0.88)
            corners = [(at, low), (end, low), (end, low + deep), (at, low + deep)]
            if rng.random() < 0.3:  # a house with a wing
                x, y = corners[2]
                notch, side = y - deep * 0.4, x - wide * 0.4
                corners[2:3] = [(x, notch), (side, notch), (side, y)]
            points = [place(i + u, j + v) for u, v in corners]
            if rng.random() < 0.9 and is_seen(points) and not any(map(is_wet, points)):
                canvas.line(*points, paint="b")
            at += wide + rng.choice((0, 0.03, 0.06))


def is_seen(points):
    return any(0 < x < WIDTH and 0 < y < HEIGHT for x, y in points)


def parks(canvas):
    rng = random.Random(1901)
    for left, low, right, high in PARKS.values():
        edge = [(left + 0.1 + (right - left - 0.2) * t / 12, low + 0.1) for t in range(13)]
        edge += [(right - 0.1, low + 0.1 + (high - low - 0.2) * t / 12) for t in range(13)]
        edge += [(right - 0.1 - (right - left - 0.2) * t / 12, high - 0.1) for t in range(13)]
        edge += [(left + 0.1, high - 0.1 - (high - low - 0.2) * t / 12) for t in range(13)]
        canvas.fill(*PARK)
        canvas.line(*[place(u, v) for u, v in edge], paint="h f")
        canvas.fill(*TREE)
        for _ in range(16 * (right - left)):
            x, y = place(rng.uniform(left + 0.25, right - 0.25), rng.uniform(low + 0.25, high - 0.25))
            canvas.circle(x, y, rng.uniform(1.4, 3))


def street(is_avenue, line):
    """The points of a street, along the whole town."""
    length = (UP if is_avenue else ACROSS) + 8
    steps = [t / 3 - 4 for t in range(3 * length + 1)]
    points = [place(line, t) if is_avenue else place(t, line) for t in steps]
    return [point for point in points if -30 < point[0] < WIDTH + 30 and -30 < point[1] < HEIGHT + 30]


def streets(canvas, lines, casing, fill, width):
    for edge, color in ((1.2, casing), (0, fill)):
        canvas.stroke(width + edge, *color)
        for is_avenue, line in lines:
            points = street(is_avenue, line)
            if len(points) > 1:
                canvas.line(*points)


def side_streets(canvas):
    lines = [(True, i) for i in range(-3, ACROSS + 4) if i not in AVENUES]
    lines += [(False, j) for j in range(-3, UP + 4) if j not in CROSSWAYS]
    streets(canvas, lines, CASING, (1, 1, 1), 4)


def main_streets(canvas):
    lines = [(True, i) for i in AVENUES] + [(False, j) for j in CROSSWAYS]
    streets(canvas, lines, MAIN_EDGE, MAIN, 7.5)


def water(canvas):
    xs = range(-10, WIDTH + 20, 6)
    upper = [(x, river(x)[0] + river(x)[1]) for x in xs]
    lower = [(x, river(x)[0] - river(x)[1]) for x in xs]
    canvas.fill(*WATER)
    canvas.stroke(1.2, *BANK)
    canvas.line(*upper, *reversed(lower), paint="b")
    canvas.stroke(0.6, *BANK)
    for share in (-0.45, 0.1, 0.5):
        canvas.add("[14 9 5 12] 0 d")
        canvas.line(*[(x, river(x)[0] + share * river(x)[1]) for x in xs if x > 430])
    canvas.add("[] 0 d")


def railway(canvas):
    points = [(x, 470 + 34 * math.sin(x / 170 + 0.6) + x * 0.05) for x in range(-10, WIDTH + 20, 10)]
    canvas.stroke(4.4, *RAIL)
    canvas.line(*points)
    canvas.stroke(2.6, 1)
    canvas.add("[9 9] 0 d")
    canvas.line(*points)
    canvas.add("[] 0 d")


def halo(canvas, x, y, text, font, size, color, align="center", angle=0.0):
    """A label with a light edge, so that it can be read on anything."""
    turned = (math.cos(angle), math.sin(angle), -math.sin(angle), math.cos(angle))
    if align == "center":
        half = canvas.fonts[font].width(text, size) / 2
        x, y = x - half * turned[0], y - half * turned[1]
    canvas.stroke(2.2, 1)
    canvas.add("1 j 1 Tr")
    canvas.text(x, y, text, font, size, matrix=turned)
    canvas.add("0 Tr")
    canvas.fill(*color)
    canvas.text(x, y, text, font, size, matrix=turned)


def street_name(canvas, is_avenue, line, at, text):
    ends = [place(line, at + d) if is_avenue else place(at + d, line) for d in (-0.6, 0.6)]
    (x0, y0), (x1, y1) = ends
    angle = math.atan2(y1 - y0, x1 - x0)
    x, y = (x0 + x1) / 2, (y0 + y1) / 2
    x, y = x + 2.6 * math.sin(angle), y - 2.6 * math.cos(angle)
    halo(canvas, x, y, text, "Sans", 7.5, (0.3, 0.22, 0.08), angle=angle)


def names(canvas):
    for (line, text), at in zip(AVENUES.items(), (8.9, 9.3, 9.4)):
        street_name(canvas, True, line, at, text)
    for (line, text), at in zip(CROSSWAYS.items(), (7, 12.6, 4.5)):
        street_name(canvas, False, line, at, text)
    for text, (left, low, right, high) in PARKS.items():
        x, y = place((left + right) / 2, (low + high) / 2)
        halo(canvas, x, y - 12, text, "Oblique", 12, GREEN)
    x = 250
    angle = math.atan2(river(x + 40)[0] - river(x - 40)[0], 80)
    halo(canvas, x, river(x)[0] - 4, "River Ell", "Oblique", 13, BLUE, angle=angle)
    halo(canvas, 716, river(716)[0] - 5, "Old Harbour", "Oblique", 15, BLUE)
    for u, v, text in SIGNS:
        x, y = place(u, v)
        canvas.fill(1)
        canvas.circle(x, y, 4.4)
        canvas.fill(*SIGN)
        canvas.circle(x, y, 3.3)
        halo(canvas, x + 7, y - 3, text, "Bold", 8.5, (0.15, 0.15, 0.17), "left")


def legend(canvas):
    canvas.fill(1)
    canvas.stroke(0.8, 0.35)
    x, y = MARGIN + 14, MARGIN + 14
    canvas.box(x, y, 168, 116, "B")
    canvas.fill(*BLUE)
    canvas.text(x + 12, y + 92, "Ellmouth", "Bold", 17)
    rows = [("Main street", MAIN, MAIN_EDGE), ("Park", PARK, TREE), ("Water", WATER, BANK),
            ("Houses", HOUSE, HOUSE_EDGE)]
    for i, (text, color, edge) in enumerate(rows):
        row, column = divmod(i, 2)
        at = x + 12 + 84 * column, y + 68 - 18 * row
        canvas.fill(*color)
        canvas.stroke(0.8, *edge)
        canvas.box(*at, 16, 9, "B")
        canvas.fill(0.2)
        canvas.text(at[0] + 22, at[1] + 1, text, "Sans", 8.5)
    scale(canvas, x + 12, y + 22)
    north(canvas, WIDTH - MARGIN - 30, HEIGHT - MARGIN - 62)


def scale(canvas, x, y):
    canvas.stroke(0.7, 0.2)
    for i in range(4):
        canvas.fill(0.2 if i % 2 == 0 else 1)
        canvas.box(x + 34 * i, y, 34, 5, "B")
    canvas.fill(0.2)
    for i, text in enumerate(("0", "100", "200", "300", "400 m")):
        canvas.text(x + 34 * i, y - 10, text, "Sans", 7, "center" if i else "left")


def north(canvas, x, y):
    canvas.fill(1)
    canvas.stroke(0.8, 0.35)
    canvas.circle(x, y + 18, 25, "B")
    canvas.fill(*SIGN)
    canvas.line((x, y + 38), (x - 7, y + 10), (x, y + 15), paint="h f")
    canvas.fill(0.3)
    canvas.line((x, y + 38), (x + 7, y + 10), (x, y + 15), paint="h f")
    canvas.text(x, y - 2, "N", "Bold", 10, "center")


LAYERS = [("Houses", houses), ("Side streets", side_streets), ("Parks", parks), ("Water", water),
          ("Main streets", main_streets), ("Railway", railway), ("Names", names), ("Legend", legend)]


def make():
    fonts = Fonts(Sans="NimbusSans-Regular", Bold="NimbusSans-Bold", Oblique="NimbusSans-Italic")
    canvas = Canvas(fonts)
    canvas.add("q")
    canvas.box(MARGIN, MARGIN, WIDTH - 2 * MARGIN, HEIGHT - 2 * MARGIN, "W n")
    canvas.fill(*PAPER)
    canvas.box(0, 0, WIDTH, HEIGHT)
    canvas.add("1 j")
    for i, (_, draw) in enumerate(LAYERS):
        canvas.add(f"/OC /L{i} BDC")
        draw(canvas)
        canvas.add("EMC")
    canvas.add("Q")
    canvas.stroke(1.2, 0.35)
    canvas.box(MARGIN, MARGIN, WIDTH - 2 * MARGIN, HEIGHT - 2 * MARGIN, "S")
    document = Document("Map of Ellmouth")
    groups = [document.add(f"<< /Type /OCG /Name ({name}) >>") for name, _ in LAYERS]
    document.extra = (f"/OCProperties << /OCGs [{' '.join(groups)}] "
                      f"/D << /Order [{' '.join(reversed(groups))}] >> >> ")
    tags = " ".join(f"/L{i} {group}" for i, group in enumerate(groups))
    resources = f"/Properties << {tags} >> {fonts.write(document)}"
    document.page(WIDTH, HEIGHT, canvas.content(), resources)
    return document.finish()
