"""A page of a report: heading, two columns of text, a table, a bar chart; embedded subset fonts."""

from canvas import Canvas
from fonts import Fonts
from pdf import Document

WIDTH, HEIGHT = 595, 842
LEFT, RIGHT = 62, 533
COLUMN, GAP = 225, 21

NAVY, TEAL, SAND = (0.07, 0.2, 0.36), (0.1, 0.5, 0.55), (0.93, 0.62, 0.28)
PALE, GREY = (0.91, 0.95, 0.96), (0.72, 0.8, 0.84)

LEAD = """More people crossed the bay in 2025 than in any year since counting began. Most of the growth came in
July and August, when boats left every twenty minutes."""

COLUMNS = [
    [("What changed", None),
     (None, """The second berth at North Quay opened in May. Since then two boats can load at the same time, and
     a boat that is late no longer holds up the next one. Nine crossings out of ten left within three minutes of
     the timetable, up from seven out of ten."""),
     (None, """The morning boat to Gull Island now carries goods as well. Shops on the island get bread and milk
     before eight, and the old freight boat rests three days a week.""")],
    [("What it cost", None),
     (None, """The berth cost a little less than planned, since the old piles could be used again. Fuel was dearer
     than in 2024. The fare stayed as it was, and a quarter of all tickets were sold as season tickets."""),
     ("What comes next", None),
     (None, """An electric boat is on order for the Harbour Loop. It is to sail in spring 2027, after a winter of
     trials. The quay needs a stronger cable by then, which the town will lay in autumn.""")],
]

TABLE = [
    ("Route", "Crossings", "Passengers", "On time", "Change"),
    ("North Quay – Gull Island", "4,120", "386,400", "92 %", "+ 14 %"),
    ("North Quay – Saltmarsh", "3,650", "241,900", "90 %", "+ 6 %"),
    ("Harbour Loop", "5,840", "198,300", "95 %", "+ 11 %"),
    ("Saltmarsh – Lighthouse Point", "1,080", "47,600", "84 %", "– 3 %"),
    ("All routes", "14,690", "874,200", "92 %", "+ 10 %"),
]
EDGES = [LEFT + 8, 330, 405, 465, RIGHT - 8]

MONTHS = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()
PASSENGERS = [(38, 41), (36, 39), (45, 47), (58, 61), (66, 74), (79, 90), (98, 121), (101, 126), (82, 93),
              (65, 72), (49, 53), (53, 57)]  # thousands, 2024 and 2025


def heading(canvas):
    canvas.fill(*NAVY)
    canvas.box(0, HEIGHT - 44, WIDTH, 44)
    canvas.fill(1)
    canvas.text(LEFT, HEIGHT - 27, "North Quay Harbour", "Sans", 10)
    canvas.text(RIGHT, HEIGHT - 27, "Annual report 2025  ·  page 7", "Sans", 10, "right")
    canvas.fill(*NAVY)
    canvas.text(LEFT, 750, "A busy summer for the ferries", "Bold", 27)
    canvas.fill(*SAND)
    canvas.box(LEFT, 736, 64, 3)
    canvas.fill(0.25)
    return canvas.paragraph(LEFT, 714, LEAD, "Roman", 12.5, 17, RIGHT - LEFT)


def columns(canvas, top):
    lowest = top
    for i, parts in enumerate(COLUMNS):
        x, y = LEFT + i * (COLUMN + GAP), top
        for title, text in parts:
            if title:
                canvas.fill(*TEAL)
                canvas.text(x, y, title, "Bold", 11)
                y -= 16
            else:
                canvas.fill(0.12)
                y = canvas.paragraph(x, y, text, "Roman", 10.4, 14.4, COLUMN) - 6
        lowest = min(lowest, y)
    return lowest


def table(canvas, top):
    canvas.fill(*NAVY)
    canvas.text(LEFT, top, "Table 3.  Crossings and passengers by route", "Bold", 10)
    y = top - 26
    for i, row in enumerate(TABLE):
        is_head, is_sum = i == 0, i == len(TABLE) - 1
        if is_head or i % 2 == 0:
            canvas.fill(*(TEAL if is_head else PALE))
            canvas.box(LEFT, y - 6, RIGHT - LEFT, 19)
        canvas.fill(*((1,) if is_head else (0.1,)))
        for j, cell in enumerate(row):
            font = "Bold" if is_head or is_sum else "Sans"
            canvas.text(EDGES[j], y, cell, font, 9, "right" if j else "left")
        y -= 19
    canvas.stroke(1, *TEAL)
    canvas.line((LEFT, y + 32), (RIGHT, y + 32))
    canvas.line((LEFT, y + 13), (RIGHT, y + 13))
    return y


def chart(canvas, top):
    canvas.fill(*NAVY)
    canvas.text(LEFT, top, "Figure 4.  Passengers each month, in thousands", "Bold", 10)
    base, height, left = top - 228, 206, LEFT + 26
    for value in range(0, 141, 20):
        y = base + value * height / 140
        canvas.stroke(0.5, 0.82)
        canvas.line((left, y), (RIGHT, y))
        canvas.fill(0.35)
        canvas.text(left - 6, y - 3, str(value), "Sans", 8, "right")
    step = (RIGHT - left) / 12
    for i, (month, pair) in enumerate(zip(MONTHS, PASSENGERS)):
        x = left + i * step + 6
        for j, (value, color) in enumerate(zip(pair, (GREY, TEAL))):
            canvas.fill(*(SAND if j and value > 120 else color))
            canvas.box(x + j * 13, base, 12, value * height / 140)
        canvas.fill(0.35)
        canvas.text(x + 12.5, base - 12, month, "Sans", 8, "center")
    canvas.stroke(1, 0.3)
    canvas.line((left, base), (RIGHT, base))
    for x, color, name in ((RIGHT - 92, GREY, "2024"), (RIGHT - 40, TEAL, "2025")):
        canvas.fill(*color)
        canvas.box(x, top - 1, 9, 9)
        canvas.fill(0.2)
        canvas.text(x + 13, top, name, "Sans", 9)


def make():
    fonts = Fonts(Bold="NimbusSans-Bold", Sans="NimbusSans-Regular", Roman="P052-Roman")
    canvas = Canvas(fonts)
    y = heading(canvas)
    y = columns(canvas, y - 14)
    y = table(canvas, y - 12)
    chart(canvas, y - 10)
    canvas.fill(0.45)
    canvas.text(LEFT, 32, "Counted at the gates. All numbers of this example are made up.", "Sans", 8)
    document = Document("A busy summer for the ferries")
    document.page(WIDTH, HEIGHT, canvas.content(), fonts.write(document))
    return document.finish()
