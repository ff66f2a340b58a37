"""Outlines of Type 1 glyphs (Adobe Type 1 Font Format, chapter 6), curves as short lines."""

import re

from fonts import Font, cipher, name_of

STEPS = 6  # lines of a curve


class Outlines:
    def __init__(self, name):
        self.font = Font(name)
        self.subrs = {}
        entry = re.compile(rb"dup (\d+) (\d+) (?:RD|-\|) ")
        at = self.font.private.index(b"/Subrs")
        while found := entry.search(self.font.private, at, self.font.begin):
            at = found.end() + int(found[2])
            self.subrs[int(found[1])] = cipher(self.font.private[found.end():at], 4330)[4:]
        self.known = {}

    def of(self, letter):
        if letter not in self.known:
            code = cipher(self.font.glyphs[name_of(letter)][0], 4330)[4:]
            self.known[letter] = Pen(self.subrs).draw(code)
        return self.known[letter]


class Pen:
    """Runs one charstring."""

    def __init__(self, subrs):
        self.subrs = subrs
        self.stack, self.pushed = [], []
        self.x = self.y = 0
        self.contours = []
        self.flex = None  # the points of a flex, while it is gathered

    def draw(self, code):
        self.run(code)
        return [contour for contour in self.contours if len(contour) > 2]

    def move(self, dx, dy):
        self.x, self.y = self.x + dx, self.y + dy
        if self.flex is not None:
            self.flex.append((self.x, self.y))
        else:
            self.contours.append([(self.x, self.y)])

    def line(self, dx, dy):
        self.x, self.y = self.x + dx, self.y + dy
        self.contours[-1].append((self.x, self.y))

    def curve(self, p1, p2, p3):
        p0 = (self.x, self.y)
        for i in range(1, STEPS + 1):
            t = i / STEPS
            weights = ((1 - t) ** 3, 3 * t * (1 - t) ** 2, 3 * t * t * (1 - t), t ** 3)
            self.contours[-1].append(tuple(
                sum(weight * p[k] for weight, p in zip(weights, (p0, p1, p2, p3))) for k in (0, 1)))
        self.x, self.y = p3

    def relative_curve(self, a, b, c, d, e, f):
        p1 = (self.x + a, self.y + b)
        p2 = (p1[0] + c, p1[1] + d)
        self.curve(p1, p2, (p2[0] + e, p2[1] + f))

    def run(self, code):
        """False once the glyph has ended."""
        at = 0
        while at < len(code):
            byte = code[at]
            at += 1
            if byte >= 32:
                at = self.push(code, at, byte)
            elif byte == 10:
                if not self.run(self.subrs[int(self.stack.pop())]):
                    return False
            elif byte == 11:
                return True
            elif byte == 14:
                return False
            else:
                if byte == 12:
                    byte = 100 + code[at]
                    at += 1
                self.perform(byte)
        return True

    def push(self, code, at, byte):
        if byte < 247:
            self.stack.append(byte - 139)
        elif byte < 251:
            self.stack.append((byte - 247) * 256 + code[at] + 108)
            at += 1
        elif byte < 255:
            self.stack.append(-(byte - 251) * 256 - code[at] - 108)
            at += 1
        else:
            self.stack.append(int.from_bytes(code[at:at + 4], "big", signed=True))
            at += 4
        return at

    def perform(self, operator):
        stack = self.stack
        if operator == 112:  # div
            divisor = stack.pop()
            stack[-1] /= divisor
            return
        if operator == 116:
            self.call_other()
            return
        if operator == 117:  # pop
            stack.append(self.pushed.pop())
            return
        actions = {
            13: lambda: setattr(self, "x", stack[0]),
            21: lambda: self.move(*stack[:2]),
            22: lambda: self.move(stack[0], 0),
            4: lambda: self.move(0, stack[0]),
            5: lambda: self.line(*stack[:2]),
            6: lambda: self.line(stack[0], 0),
            7: lambda: self.line(0, stack[0]),
            8: lambda: self.relative_curve(*stack[:6]),
            30: lambda: self.relative_curve(0, *stack[:4], 0),
            31: lambda: self.relative_curve(stack[0], 0, stack[1], stack[2], 0, stack[3]),
        }
        if operator in actions:  # the others are hints
            actions[operator]()
        stack.clear()

    def call_other(self):
        """Flex: seven points, two curves. Others give back what they got."""
        which, count = self.stack.pop(), self.stack.pop()
        arguments = [self.stack.pop() for _ in range(count)]
        if which == 1:
            self.flex = []
        elif which == 0:
            points, self.flex = self.flex, None
            self.x, self.y = self.contours[-1][-1]
            self.curve(*points[1:4])
            self.curve(*points[4:7])
            self.pushed = [self.y, self.x]
        elif which == 3:
            self.pushed = [3]
        elif which != 2:
            self.pushed = arguments
