#!/usr/bin/env python3
"""Time and memory of opening pages with large images: corvane, pdftocairo and mutool.

    image_speed.py [--corvane PATH] [--files FOLDER] [--runs N] [NAME ...]

The files are made in FOLDER by make_images.py, and kept:

    jpeg-48       a photograph of 48 megapixels in JPEG, which opening only copies; cp is beside it
    flate-48      the same as RGB in Flate, which becomes PNG; spng_rate.py has libspng's own rate
    fax           a scanned page of 300 dots an inch in Group 4
    jbig2         the same page in JBIG2, a generic region in MMR coding
    pages         a page with a hundred different images of 60,000 pixels: Flate RGB, gray, palette and CMYK

Each row gives processor time (user and system) of the fastest run and peak memory, and what corvane needs beside
it. Memory is no less than this program's own, some 15 MiB. Runners take turns, after a round that does not count.
"""

import argparse
import os
import pathlib
import subprocess
import sys
import tempfile

from compare import Runner, race
from pages import program_in_build

NAMES = ["jpeg-48", "flate-48", "fax", "jbig2", "pages"]


def runners(corvane, path):
    yield Runner("corvane open", [str(corvane), "open", path, "--quiet", "-o", "page.svg"])
    if "jpeg-48" in path:
        yield Runner("cp", ["cp", path, "copy.pdf"])
    yield Runner("pdftocairo -svg", ["pdftocairo", "-svg", "-f", "1", "-l", "1", path, "page.svg"])
    yield Runner("mutool convert", ["mutool", "convert", "-F", "svg", "-o", "page.svg", path, "1"])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--corvane", default=program_in_build())
    parser.add_argument("--files", default=os.path.join(tempfile.gettempdir(), "corvane-images"))
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--limit", type=int, default=120)
    parser.add_argument("names", nargs="*", metavar="NAME")
    arguments = parser.parse_args()
    names = arguments.names or NAMES
    # By a process of its own: what this one holds is the least memory that a child is seen to take.
    maker = pathlib.Path(__file__).with_name("make_images.py")
    subprocess.run([sys.executable, maker, arguments.files, *names], check=True)
    for name in names:
        path = os.path.join(os.path.abspath(arguments.files), name + ".pdf")
        row = list(runners(arguments.corvane, path))
        race(row, arguments.runs, arguments.limit)
        print(f"{name}, {os.path.getsize(path):,} bytes")
        ours = row[0]
        for runner in row:
            if runner.fault or ours.fault:
                print(f"  {runner.name:16} {runner.fault}")
                continue
            cpu = min(run.cpu for run in runner.runs)
            peak = min(run.peak for run in runner.runs)
            beside = f"   corvane / row {min(run.cpu for run in ours.runs) / cpu:6.2f}"
            print(f"  {runner.name:16}{cpu:8.3f} s{peak:9.1f} MiB" + beside * (runner is not ours))
    return 0


if __name__ == "__main__":
    sys.exit(main())
