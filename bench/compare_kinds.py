#!/usr/bin/env python3
"""Compares images of every kind, as corvane opens them, with what mutool and pdftoppm draw.

    compare_kinds.py [--corvane PATH] [--each] [--keep FOLDER] [WORD ...]

The images are those of image_kinds.py, a page each. mutool draws them pixel by pixel, pdftoppm eight times as
large, since it moves images by parts of a pixel otherwise. With words only kinds are compared whose names hold one
of them. Pictures with alpha are laid on white. In the spaces of devices and of functions what is to be seen is
computed from the samples, too.

Prints a row for each group and colour space: how many kinds, how many are equal to one of the readers or to what was
computed, how many within 2 of 255 of one (JPEG: 6 of what was computed), how many differ from both readers by no more
than these from one another, the others, and the largest difference from the nearest. Kinds of the last two columns
are listed below, and all with --each: the largest and the mean difference from mutool, from pdftoppm, of the two, and
from what was computed.
"""

import argparse
import collections
import os
import pathlib
import sys
import tempfile

import numpy
from PIL import Image

import image_kinds
from pages import program_in_build, run

SCALE = 8  # of what pdftoppm draws
LOST = 4  # levels that a JPEG of this quality changes samples by, most of the time


def on_white(path):
    """8-bit RGB. Of 16 bits the upper ones, rounded."""
    with Image.open(path) as image:
        if image.mode.startswith("I"):
            levels = (numpy.asarray(image.convert("I")).astype(numpy.int64) * 255 + 32767) // 65535
            image = Image.fromarray(levels.astype(numpy.uint8))
        pixels = numpy.asarray(image.convert("RGBA")).astype(numpy.float64)
    alpha = pixels[..., 3:] / 255
    return numpy.rint(pixels[..., :3] * alpha + 255 * (1 - alpha)).astype(int)


def drawn(path, scale=1):
    """Nothing where the reader ended before it was written."""
    if path is None or not path.exists() or path.stat().st_size == 0:
        return None
    with Image.open(path) as image:
        return numpy.asarray(image.convert("RGB")).astype(int)[scale // 2::scale, scale // 2::scale]


def difference(one, other):
    if one is None or other is None or one.shape != other.shape:
        return None
    apart = numpy.abs(one - other)
    return int(apart.max()), float(apart.mean())


class Readers:
    """All pages, drawn by the two, and one page at a time by corvane."""

    def __init__(self, corvane, pdf, folder):
        self.corvane, self.pdf, self.folder = corvane, pdf, folder
        run("mutool", "draw", "-q", "-r", "72", "-F", "ppm", "-o", folder / "mutool-%d.ppm", pdf)
        run("pdftoppm", "-r", 72 * SCALE, pdf, folder / "poppler")
        self.poppler = {int(path.stem.rpartition("-")[2]): path for path in folder.glob("poppler-*.ppm")}

    def ours(self, page):
        images = self.folder / f"ours-{page}"
        run(self.corvane, "open", self.pdf, "--page", page, "--quiet", "-o", self.folder / "page.svg",
            "--images", images)
        found = sorted(images.iterdir()) if images.is_dir() else []
        return on_white(found[0]) if found else None

    def mutool(self, page):
        return drawn(self.folder / f"mutool-{page}.ppm")

    def pdftoppm(self, page):
        return drawn(self.poppler.get(page), SCALE)


def verdict(ours, theirs, computed):
    """`ours`: differences from the two; `theirs`: of the two."""
    known = [apart for apart in (*ours, computed) if apart is not None]
    if not known:
        return "others"
    nearest = min(apart[0] for apart in known)
    if nearest == 0:
        return "equal"
    if nearest <= 2:
        return "near"
    if computed is None and theirs is not None and max(apart[0] for apart in known) <= theirs[0]:
        return "between"
    return "others"


def compare(options, folder):
    pdf = folder / "kinds.pdf"
    made = image_kinds.write(str(pdf))
    readers = Readers(options.corvane, pdf, folder)
    rows, listed = collections.defaultdict(collections.Counter), []
    for page, kind in enumerate(made, 1):
        if options.words and not any(word in f"{kind.group} {kind.name}" for word in options.words):
            continue
        ours, mutool, poppler = readers.ours(page), readers.mutool(page), readers.pdftoppm(page)
        apart = difference(ours, mutool), difference(ours, poppler)
        theirs = difference(mutool, poppler)
        computed = difference(ours, kind.seen())
        if computed and kind.group == "DCT":
            computed = max(0, computed[0] - LOST), computed[1]
        word = verdict(apart, theirs, computed)
        row = rows[kind.group, kind.space]
        row[word] += 1
        nearest = min((value[0] for value in (*apart, computed) if value is not None), default=255)
        row["largest"] = max(row["largest"], nearest)
        if options.each or word in ("between", "others"):
            told = "".join(f"  {value[0]:3} {value[1]:6.2f}" if value else "    -      -"
                           for value in (*apart, theirs, computed))
            listed.append(f"{page:4} {kind.group:7} {kind.name:32} {word:8}{told}")
    print(f"{'group':8}{'space':24}{'kinds':>6}{'equal':>7}{'near':>6}{'between':>9}{'others':>8}{'largest':>9}")
    words = "equal", "near", "between", "others"
    rows["all", ""] = sum(rows.values(), collections.Counter({"largest": 0}))
    rows["all", ""]["largest"] = max(row["largest"] for row in rows.values() if row is not rows["all", ""])
    for (group, space), row in rows.items():
        counts = [row[word] for word in words]
        told = "{:6}{:7}{:6}{:9}{:8}".format(sum(counts), *counts)
        print(f"{group:8}{space:24}{told}{row['largest']:9}")
    if listed:
        print(f"\n{'page':4} {'kind':40} {'':8} {'from mutool':>11} {'pdftoppm':>11} {'of the two':>11} {'computed':>11}")
        print("\n".join(listed))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--corvane", type=pathlib.Path, default=program_in_build())
    parser.add_argument("--each", action="store_true")
    parser.add_argument("--keep", type=pathlib.Path, help="folder for the file and the pictures")
    parser.add_argument("words", nargs="*", metavar="WORD")
    options = parser.parse_args()
    if options.keep:
        os.makedirs(options.keep, exist_ok=True)
        compare(options, options.keep)
        return 0
    with tempfile.TemporaryDirectory() as folder:
        compare(options, pathlib.Path(folder))
    return 0


if __name__ == "__main__":
    sys.exit(main())
