#!/usr/bin/env python3
"""Makes PDF files of large images for image_speed.py; the same names give the same bytes.

    make_images.py FOLDER [NAME ...]

image_speed.py says what the names mean. A file that is there already is kept.
"""

import io
import os
import sys

import numpy
from PIL import Image, ImageDraw

import image_codings as coding
from make_pages import stream, write_pdf

IMAGE = b"/Type /XObject /Subtype /Image /Width %d /Height %d /BitsPerComponent %d /ColorSpace %b /Filter %b "


def write_page(path, images, size=(600, 450)):
    """Images in rows of ten, or one that fills the page."""
    across = min(10, len(images))
    down = (len(images) + across - 1) // across
    content, names = [], []
    for i in range(len(images)):
        place = size[0] / across * (i % across), size[1] / down * (i // across)
        content.append("q %g 0 0 %g %g %g cm /I%d Do Q" % (size[0] / across, size[1] / down, *place, i))
        names.append("/I%d %d 0 R" % (i, i + 5))
    write_pdf(path, [
        b"<< /Type /Catalog /Pages 2 0 R >>", b"<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
        b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 %d %d] /Contents 4 0 R /Resources << /XObject << %b >> >> >>" % (
            *size, " ".join(names).encode()),
        stream("\n".join(content).encode()), *images])


def photograph(width, height):
    """Soft shapes, with grain as sensors have it."""
    noise = numpy.random.RandomState(1)
    soft = Image.fromarray(noise.randint(0, 256, (height // 100, width // 100, 3)).astype(numpy.uint8))
    pixels = numpy.asarray(soft.resize((width, height), Image.BICUBIC)).astype(numpy.int16)
    for y in range(0, height, 500):
        part = pixels[y:y + 500]
        part += numpy.rint(noise.normal(0, 3, part.shape)).astype(numpy.int16)
    return numpy.clip(pixels, 0, 255).astype(numpy.uint8)


def jpeg_48():
    held = io.BytesIO()
    Image.fromarray(photograph(8000, 6000)).save(held, "JPEG", quality=90)
    return [stream(held.getvalue(), IMAGE % (8000, 6000, 8, b"/DeviceRGB", b"/DCTDecode"))]


def flate_48():
    data = coding.deflated(photograph(8000, 6000).tobytes())
    return [stream(data, IMAGE % (8000, 6000, 8, b"/DeviceRGB", b"/FlateDecode"))]


def scan():
    words = "scanned pages hold lines of letters that are a few dots wide and tall".split()
    small = Image.new("1", (1240, 1754), 1)
    pen = ImageDraw.Draw(small)
    for line in range(120):
        text = " ".join(words[(line * 5 + i) % len(words)] for i in range(28))
        pen.text((90, 90 + 13 * line), text, fill=0)
    return numpy.asarray(small.resize((2480, 3508))).astype(numpy.uint8)[:, :, None]


def fax():
    return [stream(coding.faxed(scan(), "group4"), IMAGE % (2480, 3508, 1, b"/DeviceGray", b"/CCITTFaxDecode") +
                   b"/DecodeParms << /K -1 /Columns 2480 /Rows 3508 >> ")]


def jbig2():
    return [stream(coding.jbig2(scan()), IMAGE % (2480, 3508, 1, b"/DeviceGray", b"/JBIG2Decode"))]


def pages():
    palette = b"[/Indexed /DeviceRGB 255 <" + bytes(range(256)).hex().encode() * 3 + b">]"
    made = []
    for i in range(100):
        space, count = ((b"/DeviceRGB", 3), (b"/DeviceGray", 1), (palette, 1), (b"/DeviceCMYK", 4))[i % 4]
        pixels = numpy.roll(photograph(300, 200), i, axis=1)
        samples = numpy.dstack([pixels, pixels[:, :, :1]])[:, :, :count]
        made.append(stream(coding.deflated(samples.tobytes()), IMAGE % (300, 200, 8, space, b"/FlateDecode")))
    return made


FILES = {"jpeg-48": jpeg_48, "flate-48": flate_48, "fax": fax, "jbig2": jbig2, "pages": pages}


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    os.makedirs(sys.argv[1], exist_ok=True)
    for name in sys.argv[2:] or FILES:
        path = os.path.join(sys.argv[1], name + ".pdf")
        if not os.path.exists(path):
            write_page(path, FILES[name]())


if __name__ == "__main__":
    main()
