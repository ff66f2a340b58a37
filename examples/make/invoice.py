"""An invoice: a logo that is an image with soft edges, addresses, a table of items, totals."""

import math
import struct
import zlib

from canvas import Canvas
from fonts import Fonts
from pdf import Document

WIDTH, HEIGHT = 595, 842
LEFT, RIGHT = 62, 533
INK, GREY, ACCENT, PALE = (0.15, 0.17, 0.2), (0.45, 0.47, 0.5), (0.02, 0.42, 0.45), (0.93, 0.96, 0.96)

ITEMS = [  # text, hours or pieces, price
    ("Survey of the slipway, two days on site", 16, 85.00),
    ("Drawings of the new fenders, revision B", 22, 85.00),
    ("Oak planks, 40 × 200 mm, 3 m", 18, 46.50),
    ("Bolts, galvanised, box of 50", 4, 38.90),
    ("Fitting, two carpenters", 31, 62.00),
    ("Boat hire for the inspection", 1, 240.00),
]
TAX = 0.2
NOTE = "Please pay within 30 days and give the number of the invoice. Thank you for your order."

SELLER = ["Brackwater Boat Works", "7 Tarpaulin Lane", "Ellmouth", "accounts@brackwater.example"]
BUYER = ["Harbour Office", "North Quay", "1 Lantern Street", "Ellmouth"]
FACTS = [("Invoice", "2025-0147"), ("Date", "14 November 2025"), ("Due", "14 December 2025"),
         ("Order", "HQ-3381")]


def blend(color, other, share):
    return tuple(round(a + (b - a) * share) for a, b in zip(color, other))


def boat(x, y):
    """Colour and opacity of the logo at a point, 0 to 1, downwards: a sail over waves in a disc."""
    distance = math.hypot(x - 0.5, y - 0.5)
    if distance > 0.48:
        return (5, 107, 115), 0
    if y > 0.66 + 0.025 * math.sin(x * 24):
        color = (12, 60, 78) if y > 0.78 + 0.025 * math.sin(x * 24 + 2) else (24, 132, 140)
    elif 0.16 < y < 0.6 and 0.52 < x < 0.52 + (y - 0.16) * 0.58:
        color = (255, 255, 255)
    elif 0.24 < y < 0.6 and 0.49 - (y - 0.24) * 0.62 < x < 0.49:
        color = (245, 178, 84)
    elif 0.62 < y and 0.2 + (y - 0.62) * 0.9 < x < 0.84 - (y - 0.62) * 0.9:
        color = (255, 255, 255)
    else:
        color = blend((118, 203, 205), (214, 240, 238), y / 0.66)
    return color, 255


def lighthouse(x, y):
    """The other logo: a tower with its beam, in a square with round corners."""
    corner = max(abs(x - 0.5), abs(y - 0.5)) > 0.36 and math.hypot(
        max(abs(x - 0.5) - 0.36, 0), max(abs(y - 0.5) - 0.36, 0)) > 0.12
    if corner:
        return (38, 44, 84), 0
    half = 0.07 + (y - 0.3) * 0.1
    if 0.3 < y < 0.82 and abs(x - 0.5) < half:
        color = (214, 64, 52) if int((y - 0.3) / 0.13) % 2 == 0 else (255, 255, 255)
    elif 0.2 < y < 0.3 and abs(x - 0.5) < 0.055:
        color = (255, 216, 110)
    elif 0.13 < y < 0.2 and abs(x - 0.5) < (y - 0.1) * 0.7:
        color = (214, 64, 52)
    elif y > 0.82:
        color = (20, 26, 54)
    elif abs(y - 0.25) < (abs(x - 0.5) - 0.02) * 0.28:
        color = blend((255, 226, 140), (38, 44, 84), min(1, abs(x - 0.5) * 1.9))
    else:
        color = (38, 44, 84)
    return color, 255


def pixels(picture, size, samples=4):
    """Rows of colours and of opacities, each pixel the mean of several points."""
    steps = [(i + 0.5) / samples for i in range(samples)]
    colors, opacities = [], []
    for row in range(size):
        color_row, opacity_row = bytearray(), bytearray()
        for column in range(size):
            points = [picture((column + i) / size, (row + j) / size) for i in steps for j in steps]
            weight = sum(opacity for _, opacity in points)
            seen = [(color, opacity or (not weight)) for color, opacity in points]
            total = sum(share for _, share in seen)
            color_row += bytes(round(sum(color[k] * share for color, share in seen) / total)
                               for k in range(3))
            opacity_row.append(round(weight / len(points)))
        colors.append(bytes(color_row))
        opacities.append(bytes(opacity_row))
    return colors, opacities


def png(picture, size):
    """The picture as a PNG file, with opacity."""
    data = b""
    for colors, opacities in zip(*pixels(picture, size)):
        data += b"\0" + b"".join(colors[3 * i:3 * i + 3] + opacities[i:i + 1] for i in range(size))
    file = b"\x89PNG\r\n\x1a\n"
    for kind, body in ((b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)),
                       (b"IDAT", zlib.compress(data, 9)), (b"IEND", b"")):
        file += struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))
    return file


def image(document, picture, size):
    colors, opacities = pixels(picture, size)
    entries = f"/Type /XObject /Subtype /Image /Width {size} /Height {size} /BitsPerComponent 8"
    mask = document.stream(b"".join(opacities), f"{entries} /ColorSpace /DeviceGray")
    return document.stream(b"".join(colors), f"{entries} /ColorSpace /DeviceRGB /SMask {mask}")


def head(canvas):
    canvas.add(f"q 84 0 0 84 {LEFT} 718 cm /Logo Do Q")
    canvas.fill(*ACCENT)
    canvas.text(LEFT + 100, 768, SELLER[0], "Bold", 19)
    canvas.fill(*GREY)
    canvas.text(LEFT + 100, 750, "  ·  ".join(SELLER[1:]), "Sans", 9.5)
    canvas.fill(*ACCENT)
    canvas.box(LEFT, 700, RIGHT - LEFT, 2)
    canvas.fill(*GREY)
    canvas.text(LEFT, 668, "To", "Sans", 9)
    canvas.fill(*INK)
    for i, line in enumerate(BUYER):
        canvas.text(LEFT, 652 - 15 * i, line, "Bold" if i == 0 else "Sans", 11)
    for i, (name, value) in enumerate(FACTS):
        y = 667 - 18 * i
        canvas.fill(*GREY)
        canvas.text(360, y, name, "Sans", 9.5)
        canvas.fill(*INK)
        canvas.text(RIGHT, y, value, "Bold" if i == 0 else "Sans", 11, "right")


def amount(value):
    return f"{value:,.2f}"


def items(canvas, y):
    canvas.fill(*ACCENT)
    canvas.box(LEFT, y - 8, RIGHT - LEFT, 24)
    canvas.fill(1)
    edges = (LEFT + 10, 375, 450, RIGHT - 10)
    for x, text in zip(edges, ("Item", "Number", "Price", "Amount")):
        canvas.text(x, y, text, "Bold", 10, "left" if text == "Item" else "right")
    for i, (text, count, price) in enumerate(ITEMS):
        y -= 26
        if i % 2:
            canvas.fill(*PALE)
            canvas.box(LEFT, y - 9, RIGHT - LEFT, 26)
        canvas.fill(*INK)
        for x, cell in zip(edges, (text, str(count), amount(price), amount(count * price))):
            canvas.text(x, y, cell, "Sans", 10, "left" if cell is text else "right")
    canvas.stroke(1, *ACCENT)
    canvas.line((LEFT, y - 9), (RIGHT, y - 9))
    return y - 9


def totals(canvas, y):
    net = sum(count * price for _, count, price in ITEMS)
    rows = [("Net", net), (f"Tax, {TAX:.0%}", net * TAX), ("To pay", net * (1 + TAX))]
    for i, (name, value) in enumerate(rows):
        y -= 24 if i < len(rows) - 1 else 30
        is_last = i == len(rows) - 1
        if is_last:
            canvas.fill(*PALE)
            canvas.box(330, y - 10, RIGHT - 330, 30)
        canvas.fill(*(ACCENT if is_last else INK))
        font, size = ("Bold", 13) if is_last else ("Sans", 10.5)
        canvas.text(340, y, name, font, size)
        canvas.text(RIGHT - 10, y, ("€ " if is_last else "") + amount(value), font, size, "right")
    return y


def make():
    fonts = Fonts(Bold="NimbusSans-Bold", Sans="NimbusSans-Regular")
    canvas = Canvas(fonts)
    head(canvas)
    y = totals(canvas, items(canvas, 560))
    canvas.fill(*INK)
    canvas.paragraph(LEFT, y - 62, NOTE, "Sans", 10.5, 16, 300)
    canvas.stroke(0.6, *GREY)
    canvas.line((LEFT, 74), (RIGHT, 74))
    canvas.fill(*GREY)
    canvas.text(LEFT, 58, "An example: nobody owes this money to anybody.", "Sans", 8.5)
    document = Document("Invoice 2025-0147")
    logo = image(document, boat, 240)
    resources = f"/XObject << /Logo {logo} >> {fonts.write(document)}"
    document.page(WIDTH, HEIGHT, canvas.content(), resources)
    return document.finish()


def make_logo():
    """The picture of a recipe that swaps the logo."""
    return png(lighthouse, 240)
