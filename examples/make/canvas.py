"""The content of a page, operator by operator."""

from pdf import number, numbers


class Canvas:
    def __init__(self, fonts):
        self.fonts = fonts
        self.lines = []

    def add(self, *lines):
        self.lines += lines

    def fill(self, *color):
        self.add(numbers(*color) + (" g" if len(color) == 1 else " rg"))

    def stroke(self, width, *color):
        self.add(numbers(width) + " w " + numbers(*color) + (" G" if len(color) == 1 else " RG"))

    def box(self, x, y, width, height, paint="f"):
        self.add(f"{numbers(x, y, width, height)} re {paint}")

    def line(self, *points, paint="S"):
        parts = [f"{numbers(*point)} {'l' if i else 'm'}" for i, point in enumerate(points)]
        self.add(" ".join(parts) + " " + paint)

    def circle(self, x, y, radius, paint="f"):
        k = radius * 0.5523
        self.add(f"{numbers(x + radius, y)} m "
                 f"{numbers(x + radius, y + k, x + k, y + radius, x, y + radius)} c "
                 f"{numbers(x - k, y + radius, x - radius, y + k, x - radius, y)} c "
                 f"{numbers(x - radius, y - k, x - k, y - radius, x, y - radius)} c "
                 f"{numbers(x + k, y - radius, x + radius, y - k, x + radius, y)} c h {paint}")

    def text(self, x, y, text, font, size, align="left", matrix=None):
        """One line; `align` says where x is in it. `matrix` turns it: the first four numbers of Tm."""
        face = self.fonts[font]
        shift = {"left": 0, "right": 1, "center": 0.5}[align] * face.width(text, size)
        place = (f"{numbers(x - shift, y)} Td" if matrix is None else
                 f"{' '.join(f'{value:.4f}' for value in matrix)} {numbers(x, y)} Tm")
        self.add(f"BT /{font} {number(size)} Tf {place} {face.code(text)} Tj ET")

    def wrapped(self, text, font, size, width):
        """`text` as lines of at most that width."""
        lines, line = [], ""
        for word in text.split():
            longer = f"{line} {word}".strip()
            if line and self.fonts[font].width(longer, size) > width:
                lines.append(line)
                longer = word
            line = longer
        return lines + [line]

    def paragraph(self, x, y, text, font, size, leading, width):
        """One text object of several lines; the baseline below its last line."""
        face = self.fonts[font]
        lines = self.wrapped(text, font, size, width)
        self.add(f"BT /{font} {number(size)} Tf {number(leading)} TL {numbers(x, y)} Td")
        self.add(*[face.code(line) + " Tj T*" for line in lines], "ET")
        return y - leading * len(lines)

    def content(self):
        return "\n".join(self.lines) + "\n"
