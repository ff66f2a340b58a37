#!/usr/bin/python3
"""Saves SVG pictures into new PDF pages and compares how they look with how others draw the SVG.

    compare_svg.py [--corvane PATH] [--browser] [--least 0.98] [--each] [--keep FOLDER] [PATH ...]

PATH is a picture or a folder of them; without one, all of `svg_suite` beside this file. Each page is drawn by
mutool and by pdftocairo, and the SVG by rsvg-convert. A picture may say of itself, in comments:

    <!-- named: filter -->    it cannot be saved as it is, and the refusal has that word
    <!-- like: browser -->    rsvg-convert draws it otherwise than SVG 2 says: Chromium is asked

Prints a table: right (saved without a word, and alike in both readers), named (refused with a word for
what would be lost) and wrong (alike in neither, or refused where the picture does not say so). What is
wrong is listed, with the lesser of the two likenesses. --browser asks Chromium about all pictures, --each
lists all, --keep leaves the drawings in FOLDER. Needs mupdf-tools, poppler-utils, librsvg2-bin, numpy,
Pillow, and Chromium, without which its pictures are left out. Exit: 0, or 1 where something is wrong.
"""

import argparse
import collections
import math
import pathlib
import re
import shutil
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

import numpy
from PIL import Image, ImageFilter

from pages import program_in_build, run

SUITE = pathlib.Path(__file__).resolve().parent / "svg_suite"
REFUSED = 26  # error for what would be lost
SCALE = 3  # pixels of a drawing in one of CSS: edges and the grids of readers count less
SIDE = 200  # pixels of CSS of a place on the browser's sheet
COLUMNS = 8


def said(picture, word):
    found = re.search(rf"<!-- {word}: (.*?) -->", picture.read_text(encoding="utf-8"))
    return found[1] if found else None


def on_white(path):
    image = Image.open(path).convert("RGBA")
    return Image.alpha_composite(Image.new("RGBA", image.size, "white"), image).convert("RGB")


def likeness(one, other):
    """1 - (ink that differs) / (all ink), where both are softened by one pixel, so that edges do not count."""
    if one.size != other.size:
        other = other.resize(one.size, Image.LANCZOS)
    a, b = (numpy.asarray(image.filter(ImageFilter.GaussianBlur(1)), dtype=numpy.int16) for image in (one, other))
    ink = (numpy.minimum(a, b) < 250).any(axis=2)
    apart = (numpy.abs(a - b) > 32).any(axis=2)
    return 1 - (apart & ink).sum() / ink.sum() if ink.any() else 1.0


def drawn_by_rsvg(picture, target):
    run("rsvg-convert", "--unlimited", "-b", "white", "-z", SCALE, "-o", target, picture)
    return on_white(target) if target.exists() else None


def drawn_by_browser(pictures, folder):
    """All pictures on one sheet, each in its place, cut out by the size that rsvg-convert finds."""
    if not pictures:
        return {}
    cells = "".join(f'<img src="{picture.resolve().as_uri()}" style="position:absolute;left:{i % COLUMNS * SIDE}px;'
                    f'top:{i // COLUMNS * SIDE}px">' for i, picture in enumerate(pictures))
    sheet, shot = folder / "sheet.html", folder / "sheet.png"
    sheet.write_text(f'<!DOCTYPE html><body style="margin:0;background:white">{cells}', encoding="utf-8")
    rows = math.ceil(len(pictures) / COLUMNS)
    run("chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
        f"--force-device-scale-factor={SCALE}", "--allow-file-access-from-files", "--lang=en", "--font-render-hinting=none",
        "--virtual-time-budget=5000",
        f"--window-size={COLUMNS * SIDE},{rows * SIDE + 200}", f"--screenshot={shot}", sheet.as_uri())
    whole = on_white(shot)
    side = SIDE * SCALE
    return {picture: whole.crop((i % COLUMNS * side, i // COLUMNS * side, (i % COLUMNS + 1) * side,
                                 (i // COLUMNS + 1) * side)) for i, picture in enumerate(pictures)}


def drawn_pages(page, folder):
    run("mutool", "draw", "-q", "-r", 96 * SCALE, "-c", "rgb", "-o", folder / "mutool.png", page, "1")
    run("pdftocairo", "-png", "-r", 96 * SCALE, "-singlefile", page, folder / "poppler")
    return [on_white(folder / name) for name in ("mutool.png", "poppler.png") if (folder / name).exists()]


def measure(picture, options, in_browser, folder):
    """A word, and what a person would want to know."""
    folder.mkdir(parents=True)
    page = folder / "page.pdf"
    answer = run(options.corvane, "save", picture, page)
    message = answer.stderr.decode("utf-8", "replace").strip()
    named = said(picture, "named")
    if answer.returncode != 0:
        expected = named is not None and f"error {REFUSED}" in message and named in message
        return ("named" if expected else "REFUSED"), message.splitlines()[-1]
    pages = drawn_pages(page, folder)
    if len(pages) < 2:
        return "NOT DRAWN", ""
    wanted = drawn_by_rsvg(picture, folder / "rsvg.png")
    if picture in in_browser:
        wanted = in_browser[picture].crop((0, 0, *pages[0].size))
        wanted.save(folder / "browser.png")
    if wanted is None:
        return "NOT DRAWN", "by rsvg-convert"
    least = min(likeness(wanted, page) for page in pages)
    if least >= options.least and named:
        return "NOT NAMED", f"{least:.3f}: right, although the picture says otherwise"
    return ("right" if least >= options.least else "WRONG"), f"{least:.3f}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="*", type=pathlib.Path, metavar="PATH")
    parser.add_argument("--corvane", type=pathlib.Path, default=program_in_build())
    parser.add_argument("--browser", action="store_true", help="compare all pictures with Chromium")
    parser.add_argument("--least", type=float, default=.98)
    parser.add_argument("--each", action="store_true")
    parser.add_argument("--keep", type=pathlib.Path, metavar="FOLDER")
    options = parser.parse_args()
    pictures = sorted(file for path in options.paths or [SUITE]
                      for file in (path.rglob("*.svg") if path.is_dir() else [path]))
    for_browser = [p for p in pictures if options.browser or said(p, "like") == "browser"]
    counts = collections.defaultdict(collections.Counter)
    with tempfile.TemporaryDirectory() as scratch, ThreadPoolExecutor(2) as pool:
        folder = options.keep or pathlib.Path(scratch)
        folder.mkdir(parents=True, exist_ok=True)
        if shutil.which("chromium") is None:
            print(f"chromium is not installed: {len(for_browser)} pictures left out")
            pictures = [p for p in pictures if p not in for_browser]
            for_browser = []
        in_browser = drawn_by_browser(for_browser, folder)
        names = [f"{picture.parent.name}/{picture.stem}" for picture in pictures]
        for picture, name, (became, detail) in zip(pictures, names, pool.map(
                lambda p, n: measure(p, options, in_browser, folder / n), pictures, names)):
            counts[picture.parent.name][became if became.islower() else "wrong"] += 1
            if options.each or not became.islower():
                print(f"{became:10} {name:40} {detail}", flush=True)
    total = collections.Counter()
    print(f"\n{'':14}{'right':>7}{'named':>7}{'wrong':>7}")
    for room, count in sorted(counts.items()):
        total.update(count)
        print(f"{room:14}" + "".join(f"{count[word]:7}" for word in ("right", "named", "wrong")))
    print(f"{'all':14}" + "".join(f"{total[word]:7}" for word in ("right", "named", "wrong")))
    return 1 if total["wrong"] else 0


if __name__ == "__main__":
    sys.exit(main())
