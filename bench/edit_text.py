#!/usr/bin/env python3
"""Edits the text of first pages as a person would, saves them, and measures what became of them.

    bench/edit_text.py FOLDER retype|move|recolour|delete [--corvane PROGRAM] [--verbose]

Of each page the middle one of its lines of text is edited in the SVG. Then: are the old bytes kept, does
qpdf find no more fault than before, are the words of the saved page (pdftotext) the edited ones, and does
the picture (mutool, 72 dots an inch) differ only near the line? Needs qpdf, mutool and pdftotext."""

import collections
import html
import re

from pages import edit_all, words

TEXT = re.compile(r"<text [^>]*>.*?</text>", re.S)


def letters(markup):
    return html.unescape(re.sub(r"<[^>]*>", "", markup))


def retyped(line):
    """Two neighbouring letters of the line change places."""
    for run_of_text in re.finditer(r">([^<>&]+)<", line):
        text = run_of_text[1]
        for i in range(len(text) - 1):
            a, b = text[i], text[i + 1]
            if a != b and (a + b).isalpha() and (a + b).isascii():
                at = run_of_text.start(1) + i
                return line[:at] + b + a + line[at + 2:]
    return None


def moved(line):
    start = line.index(">")
    if ' transform="' in line[:start]:
        return line.replace(' transform="', ' transform="translate(3 4) ', 1)
    return line.replace("<text ", '<text transform="translate(3 4)" ', 1)


def recoloured(line):
    return re.sub(r' (data-)?fill[-a-z]*="[^"]*"', "", line).replace("<text ", '<text fill="#ff0000" ', 1)


EDITS = {"retype": retyped, "move": moved, "recolour": recoloured, "delete": lambda line: ""}


def bag(text):
    return collections.Counter(re.sub(r"\s", "", text))


def measure(page, edit):
    """What became of one file: a word, and what a person would want to know."""
    art = page.opened()
    if art is None:
        return "not opened", ""
    lines = [m for m in TEXT.finditer(art) if len(letters(m[0]).strip()) >= 3 and 'fill="none"' not in m[0]]
    if not lines:
        return "no text", ""
    line = lines[len(lines) // 2]
    edited = EDITS[edit](line[0])
    if edited is None:
        return "no such letters", ""
    if fault := page.fault_of_saving(art[:line.start()] + edited + art[line.end():]):
        return fault
    was, now = bag(" ".join(words(page.pdf))), bag(" ".join(words(page.saved)))
    # Letters without a meaning have other names in each reader, so what goes is not compared by name.
    goes = len(letters(line[0])) if edit == "delete" else 0
    if now - was or (was - now).total() > goes:
        return "other words", ""
    pictures = page.pictures()
    if pictures is None:
        return "not drawn alike", ""
    rows = [i for i, (a, b) in enumerate(zip(*pictures)) if a != b]
    return "as edited", f"{rows[-1] - rows[0] + 1} rows differ" if rows else "nothing seen"


if __name__ == "__main__":
    edit_all(__doc__, sorted(EDITS), measure, quiet=("as edited", "no text", "no such letters"))
