#!/usr/bin/env python3
"""Compares the pixels of pages' images, as corvane decodes them, with those of pdfimages.

    compare_images.py [--corvane PATH] [--limit SECONDS] [--page N] [--each] PATH ...

Takes one page of each PDF file, or of all below a folder. Images are matched by the numbers of their
objects, so inline images are left out; so are stencils, which have one colour, and pictures whose mask
is larger, since corvane gives both one size. What is transparent is not compared.

Prints a row for each kind: coding, colour space, bits, how many images, how many are equal and how
many within 2 of 255, the largest difference, and the mean one of all pixels. Further rows name what one
of the two could not decode. --each prints a line for each image that differs by more than 2.
"""

import argparse
import collections
import os
import sys
import tempfile

import numpy
from PIL import Image

from pages import files, listed, printed, program_in_build

Image.MAX_IMAGE_PIXELS = None


def pixels(path):
    """Red, green, blue and alpha of each pixel, 8 bits each."""
    with Image.open(path) as image:
        if image.mode.startswith("I"):
            levels = numpy.asarray(image.convert("I")) >> 8
            image = Image.fromarray(levels.astype(numpy.uint8))
        return numpy.asarray(image.convert("RGBA")).astype(numpy.int16)


class Kind:
    def __init__(self):
        self.images = self.equal = self.near = self.largest = 0
        self.sum = self.values = 0

    def add(self, difference):
        self.images += 1
        largest = int(difference.max(initial=0))
        self.equal += largest == 0
        self.near += largest <= 2
        self.largest = max(self.largest, largest)
        self.sum += int(difference.sum())
        self.values += difference.size


def compare(arguments, path, kinds, faults):
    with tempfile.TemporaryDirectory() as folder:
        ours = os.path.join(folder, "ours")
        command = [arguments.corvane, "open", path, "--page", str(arguments.page), "--quiet",
                   "-o", os.path.join(folder, "page.svg"), "--images", ours]
        wanted = list(listed(path, arguments.page, arguments.limit))
        if not wanted:
            return
        if not printed(command, arguments.limit)[0]:
            faults["pages that corvane does not open"] += 1
            return
        page = str(arguments.page)
        printed(["pdfimages", "-png", "-f", page, "-l", page, path, os.path.join(folder, "peer")], arguments.limit)
        found = {}
        for name in os.listdir(ours) if os.path.isdir(ours) else []:
            found[int(name.split("-")[0])] = os.path.join(ours, name)
        done = set()
        for place, number, kind, width, height in wanted:
            if number in done:
                continue
            done.add(number)
            peer = os.path.join(folder, f"peer-{place:03}.png")
            if number not in found or not os.path.exists(peer):
                faults["without a file of " + ("corvane" if number not in found else "pdfimages")] += 1
                if arguments.each:
                    print(f"{path} {number} {kind}: no file")
                continue
            try:
                one, other = pixels(found[number]), pixels(peer)
            except (OSError, ValueError) as error:
                faults[f"not read: {error}"] += 1
                continue
            if one.shape != other.shape:
                faults["of another size"] += 1
                continue
            shown = one[..., 3] > 0
            difference = numpy.abs(one[shown][:, :3] - other[shown][:, :3])
            kinds[kind].add(difference)
            if arguments.each and difference.max(initial=0) > 2:
                print(f"{path} {number} {kind}: {difference.max()}, mean {difference.mean():.2f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--corvane", default=program_in_build())
    parser.add_argument("--limit", type=float, default=60)
    parser.add_argument("--page", type=int, default=1)
    parser.add_argument("--each", action="store_true")
    parser.add_argument("paths", nargs="+")
    arguments = parser.parse_args()
    kinds, faults = collections.defaultdict(Kind), collections.Counter()
    for path in files(arguments.paths):
        compare(arguments, path, kinds, faults)
    print(f"{'coding':8} {'space':7} {'bits':>4} {'images':>6} {'equal':>6} {'near':>6} {'largest':>7} {'mean':>6}")
    for (coding, space, bits), kind in sorted(kinds.items()):
        mean = kind.sum / max(kind.values, 1)
        print(f"{coding:8} {space:7} {bits:4} {kind.images:6} {kind.equal:6} {kind.near:6} {kind.largest:7} {mean:6.2f}")
    for fault, count in sorted(faults.items()):
        print(f"{count:6} {fault}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
