#!/usr/bin/python3
"""Compares how a browser draws the SVG of pages with how mutool draws the pages.

    compare_browser.py [--corvane PATH] [--most 50] [--least 0.98] [--keep FOLDER] FILE-OR-FOLDER ...

Of the PDF files, those in folders included, whose first page opens with text, --most are taken, spread
evenly. Chromium draws the SVG with the fonts that it carries. Prints the pages below --least, the worst
first; the last line says how many are not. --keep leaves both drawings of each page in FOLDER, side by side.
Needs mupdf-tools, numpy, Pillow and Chromium. Exit: 0, or 1 where a page is below.
"""

import argparse
import pathlib
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

from PIL import Image

from compare_svg import likeness, on_white
from pages import program_in_build, run

SECONDS = 120  # for one run
LARGEST = 2000  # pixels of a side


def open_page(corvane, pdf, svg):
    """Whether the page opens and has text."""
    answer = run(corvane, "open", pdf, "-o", svg, "--images", "embed", seconds=SECONDS)
    return answer.returncode == 0 and b"<text" in svg.read_bytes()


def drawn_by_browser(svg, size, folder):
    sheet, shot = folder / "sheet.html", folder / "browser.png"
    sheet.write_text(f'<!DOCTYPE html><body style="margin:0;background:white"><img src="{svg.resolve().as_uri()}" '
                     f'style="display:block;width:{size[0]}px;height:{size[1]}px">', encoding="utf-8")
    run("chromium", "--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars",
        "--force-device-scale-factor=1", "--allow-file-access-from-files", "--font-render-hinting=none",
        "--virtual-time-budget=5000", f"--user-data-dir={folder / 'profile'}",
        f"--window-size={size[0]},{size[1] + 200}", f"--screenshot={shot}", sheet.as_uri(), seconds=SECONDS)
    return on_white(shot).crop((0, 0, *size)) if shot.exists() else None


def measure(pdf, keep):
    """How alike the two drawings are; none where there are not two."""
    with tempfile.TemporaryDirectory() as scratch:
        folder = pathlib.Path(scratch)
        svg, drawing = folder / "page.svg", folder / "mutool.png"
        if not open_page(options.corvane, pdf, svg):
            return None
        run("mutool", "draw", "-q", "-r", "96", "-c", "rgb", "-o", drawing, pdf, "1", seconds=SECONDS)
        if not drawing.exists():
            return None
        wanted = on_white(drawing)
        wanted.thumbnail((LARGEST, LARGEST))
        seen = drawn_by_browser(svg, wanted.size, folder)
        if seen is None:
            return None
        if keep:
            pair = Image.new("RGB", (2 * wanted.width, wanted.height))
            pair.paste(wanted)
            pair.paste(seen, (wanted.width, 0))
            pair.save(keep / f"{pdf.parent.name}-{pdf.stem}.png")
        return likeness(wanted, seen)


def has_text(pdf):
    with tempfile.TemporaryDirectory() as folder:
        return open_page(options.corvane, pdf, pathlib.Path(folder) / "page.svg")


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("paths", nargs="+", type=pathlib.Path, metavar="FILE-OR-FOLDER")
    parser.add_argument("--corvane", type=pathlib.Path, default=program_in_build())
    parser.add_argument("--most", type=int, default=50)
    parser.add_argument("--least", type=float, default=.98)
    parser.add_argument("--keep", type=pathlib.Path, metavar="FOLDER")
    return parser.parse_args()


def main():
    files = [file for path in options.paths for file in (sorted(path.rglob("*.pdf")) if path.is_dir() else [path])]
    if options.keep:
        options.keep.mkdir(parents=True, exist_ok=True)
    with ThreadPoolExecutor(2) as pool:
        files = [file for file, has in zip(files, pool.map(has_text, files)) if has]
        chosen = [files[i * len(files) // options.most] for i in range(options.most)] \
            if len(files) > options.most else files
        found = [(like, file) for file, like in zip(chosen, pool.map(lambda file: measure(file, options.keep), chosen))
                 if like is not None]
    below = sorted((like, file) for like, file in found if like < options.least)
    for like, file in below:
        print(f"{like:.3f}  {file.parent.name}/{file.name}")
    print(f"{len(found) - len(below)} of {len(found)} pages are at {options.least} or more")
    return 1 if below else 0


if __name__ == "__main__":
    options = parse_arguments()
    sys.exit(main())
