#!/usr/bin/env python3
"""Edits an image of first pages as a person would, saves them, and measures what became of them.

    bench/edit_images.py FOLDER move|replace-alpha|replace-cmyk|replace-gray16|delete-inline
                         [--corvane PROGRAM] [--verbose]

Of each page the middle one of its images is moved, shown from another file, or deleted, which is done with
inline images alone. Then: are the old bytes kept, does qpdf find no more fault than before, are the words
of the page the same, are the pixels of the new image (pdfimages) those of its file, and does the picture
(mutool, 72 dots an inch) differ only where the image lies or lay? Needs qpdf, mutool, pdfimages and
pdftotext."""

import re
import struct
import zlib

from pages import edit_all, run, words

IMAGE = re.compile(r"<image [^>]*/>")
SHIFT = (7, 5)  # points to the right and down
WIDTH, HEIGHT = 32, 16  # pixels of what takes the place of an image


def png(bits, kind, samples):
    """A PNG of rows without filters."""
    def chunk(name, data):
        return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))
    row = len(samples) // HEIGHT
    rows = b"".join(b"\0" + samples[y * row:(y + 1) * row] for y in range(HEIGHT))
    header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, bits, kind, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) +
            chunk(b"IEND", b""))


def cmyk_jpeg():
    """A JPEG of plain blocks of 8 by 8 pixels, each of one colour: only its mean is coded."""
    def segment(marker, data):
        return struct.pack(">BBH", 0xFF, marker, len(data) + 2) + data
    bits, last = "", [0] * 4
    for y in range(HEIGHT // 8):
        for x in range(WIDTH // 8):
            for part, level in enumerate((40 * x, 90 * y, 200 - 30 * x, 20)):
                mean = 8 * (level - 128)
                step, last[part] = mean - last[part], mean
                size = abs(step).bit_length()
                bits += f"{size:04b}"  # each code has four bits
                bits += f"{step if step >= 0 else step + (1 << size) - 1:0{size}b}" if size else ""
                bits += "0"  # no coefficient but the mean
    bits += "1" * (-len(bits) % 8)
    data = int(bits, 2).to_bytes(len(bits) // 8, "big").replace(b"\xff", b"\xff\0")
    frame = struct.pack(">BHHB", 8, HEIGHT, WIDTH, 4) + b"".join(bytes((i, 0x11, 0)) for i in range(4))
    means = bytes((0,)) + bytes((0, 0, 0, 12)) + bytes(12) + bytes(range(12))
    others = bytes((0x10,)) + bytes((1,)) + bytes(15) + bytes((0,))
    scan = bytes((4,)) + b"".join(bytes((i, 0)) for i in range(4)) + bytes((0, 63, 0))
    return (b"\xff\xd8" + segment(0xDB, bytes((0,)) + bytes((1,)) * 64) + segment(0xC0, frame) +
            segment(0xC4, means) + segment(0xC4, others) + segment(0xDA, scan) + data + b"\xff\xd9")


def grays(levels):
    """As pdfimages writes them."""
    return b"".join(bytes((level,)) * 3 for level in levels)


def alpha_png():
    pixels = [bytes((8 * x, 15 * y, 99, 255 - 7 * x)) for y in range(HEIGHT) for x in range(WIDTH)]
    return png(8, 6, b"".join(pixels)), [b"".join(p[:3] for p in pixels), grays(p[3] for p in pixels)]


def gray16_png():
    levels = [2000 * x + 77 * y for y in range(HEIGHT) for x in range(WIDTH)]
    return png(16, 0, struct.pack(f">{len(levels)}H", *levels)), [grays(level >> 8 for level in levels)]


def numbers_of(image):
    found = re.search(r'transform="matrix\(([^)]*)\)"', image)
    return [float(number) for number in found[1].split()] if found else None


def corners(matrix, shift=(0, 0)):
    a, b, c, d, e, f = matrix
    return [(a * x + c * y + e + shift[0], b * x + d * y + f + shift[1])
            for x in (0, 1) for y in (0, 1)]


def difference(before, after, around):
    """How many pixels differ, and whether one does outside the frames `around`."""
    count, outside = 0, False
    for y, (old, new) in enumerate(zip(before, after)):
        if old == new:
            continue
        for x in range(len(old) // 3):
            if old[3 * x:3 * x + 3] != new[3 * x:3 * x + 3]:
                count += 1
                outside = outside or not any(l - 2 <= x <= r + 2 and t - 2 <= y <= b + 2
                                             for l, t, r, b in around)
    return count, outside


def images_in(pdf, folder, wanted):
    """Whether the images of the page are among others those whose samples, 8 bits each, are `wanted`."""
    for old in folder.glob("found-*"):
        old.unlink()
    run("pdfimages", "-j" if isinstance(wanted, bytes) else "-p", "-l", "1", pdf, folder / "found")
    found = [file.read_bytes() for file in folder.glob("found-*")]
    if isinstance(wanted, bytes):
        return wanted in found
    return all(any(file.endswith(samples) and file[:1] == b"P" for file in found) for samples in wanted)


def replacement(edit):
    if edit == "replace-cmyk":
        return cmyk_jpeg(), None
    return alpha_png() if edit == "replace-alpha" else gray16_png()


def edited(image, edit, folder):
    """The element as it is to be, and what samples the page must have then."""
    if edit == "move":
        return image.replace('transform="', f'transform="translate({SHIFT[0]} {SHIFT[1]}) ', 1), None
    if edit == "delete-inline":
        return "", None
    file, samples = replacement(edit)
    (folder / "new.bin").write_bytes(file)
    return re.sub(r'xlink:href="[^"]*"', 'xlink:href="new.bin"', image), samples or file


def measure(page, edit):
    """What became of one file: a word, and what a person would want to know."""
    art = page.opened()
    if art is None:
        return "not opened", ""
    inline = re.compile(r' data-image="0-')
    images = [m for m in IMAGE.finditer(art)
              if bool(inline.search(m[0])) == (edit == "delete-inline") and numbers_of(m[0])]
    if not images:
        return "no image", ""
    image = images[len(images) // 2]
    now, samples = edited(image[0], edit, page.folder)
    if fault := page.fault_of_saving(art[:image.start()] + now + art[image.end():]):
        return fault
    if words(page.pdf) != words(page.saved):
        return "OTHER WORDS", ""
    if samples is not None and not images_in(page.saved, page.folder, samples):
        return "OTHER PIXELS", ""
    pictures = page.pictures()
    if pictures is None:
        return "not drawn alike", ""
    frames = []
    for shift in ((0, 0), SHIFT if edit == "move" else (0, 0)):
        xs, ys = zip(*corners(numbers_of(image[0]), shift))
        frames.append((min(xs), min(ys), max(xs), max(ys)))
    count, outside = difference(*pictures, frames)
    return ("DRAWN ELSEWHERE" if outside else "as edited"), f"{count} pixels differ"


if __name__ == "__main__":
    edit_all(__doc__, ["move", "replace-alpha", "replace-cmyk", "replace-gray16", "delete-inline"], measure,
             quiet=("as edited", "no image"))
