#!/usr/bin/env python3
"""Processor time of making SVG of files' first pages: corvane, mutool and pdftocairo.

    first_pages.py [--corvane PATH] [--runs N] [--limit SECONDS] [--images] [--slowest N] PATH ...

Takes PDF files, or all below folders, one at a time. The runners take turns, N rounds; of each file and runner
the fastest run counts, user and system time of the whole process less those of one that does nothing, so that
neither a busy machine nor this program matters much.
Prints the sums of the files that all runners can draw, and their ratios; how many each fails at; and the files
that cost corvane most beside mutool. --images takes only files with an image on the first page, inline ones
left out.
"""

import argparse
import os
import sys
import tempfile

from compare import run_once
from pages import files, listed, program_in_build


def runners(corvane, path):
    return {
        "corvane open": [str(corvane), "open", path, "--page", "1", "--quiet", "-o", "page.svg"],
        "mutool convert": ["mutool", "convert", "-F", "svg", "-o", "page.svg", path, "1"],
        "pdftocairo -svg": ["pdftocairo", "-svg", "-f", "1", "-l", "1", path, "page.svg"],
    }


def fastest(command, runs, limit):
    """Seconds, or nothing where it fails."""
    best = None
    for _ in range(runs):
        with tempfile.TemporaryDirectory(prefix="first-") as folder:
            run = run_once(command, folder, limit)
        if run.fault:
            return None
        best = run.cpu if best is None else min(best, run.cpu)
    return best


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--corvane", default=program_in_build())
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--limit", type=int, default=60)
    parser.add_argument("--images", action="store_true")
    parser.add_argument("--slowest", type=int, default=20)
    parser.add_argument("paths", nargs="+")
    arguments = parser.parse_args()
    floor = fastest(["true"], 20, arguments.limit)
    times, failed = [], dict.fromkeys(runners("", ""), 0)
    for path in map(os.path.abspath, files(arguments.paths)):
        if arguments.images and not any(listed(path, 1, arguments.limit)):
            continue
        row = {name: fastest(command, arguments.runs, arguments.limit)
               for name, command in runners(arguments.corvane, path).items()}
        for name, seconds in row.items():
            failed[name] += seconds is None
        if None not in row.values():
            times.append((path, {name: seconds - floor for name, seconds in row.items()}))
    sums = {name: sum(row[name] for _, row in times) for name in failed}
    print(f"{len(times)} first pages, seconds of processor time")
    ours = sums["corvane open"]
    for name, seconds in sums.items():
        print(f"  {name:16}{seconds:9.3f}   corvane / row {ours / max(seconds, 1e-9):5.2f}   fails at {failed[name]}")
    print("most beside mutool")
    times.sort(key=lambda entry: entry[1]["mutool convert"] - entry[1]["corvane open"])
    for path, row in times[:arguments.slowest]:
        print("  " + "".join(f"{row[name]:8.3f}" for name in failed) + f"  {path}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
