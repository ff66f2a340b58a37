"""Codings of images for files that bench/image_kinds.py makes: samples to the bytes of each PDF filter.

Samples are arrays of height, width and components."""

import io
import struct
import zlib

import numpy
from PIL import Image, TiffImagePlugin

TiffImagePlugin.STRIP_SIZE = 1 << 30  # one strip, whatever its length


def packed(samples, bits):
    """Rows of samples, each from a byte on."""
    height, width, count = samples.shape
    rows = samples.reshape(height, width * count).astype(numpy.uint32)
    if bits == 16:
        return rows.astype(">u2").tobytes()
    if bits == 8:
        return rows.astype(numpy.uint8).tobytes()
    single = (rows[:, :, None] >> numpy.arange(bits - 1, -1, -1)) & 1
    return numpy.packbits(single.reshape(height, -1).astype(numpy.uint8), axis=1).tobytes()


def tiff_predicted(samples, bits):
    """Predictor 2: the difference to the pixel before."""
    before = numpy.zeros_like(samples)
    before[:, 1:] = samples[:, :-1]
    return packed((samples.astype(numpy.int64) - before) % (1 << bits), bits)


def paeth(left, above, corner):
    guess = left + above - corner
    far = abs(guess - left), abs(guess - above), abs(guess - corner)
    return left if far[0] <= far[1] and far[0] <= far[2] else above if far[1] <= far[2] else corner


def png_predicted(samples, bits, tags):
    """Predictors 10 to 15: a tag in front of each row, taken from `tags` in turn."""
    data, height = packed(samples, bits), samples.shape[0]
    row_bytes, step = len(data) // height, (samples.shape[2] * bits + 7) // 8
    above, out = bytes(row_bytes), bytearray()
    for y in range(height):
        row, tag = data[y * row_bytes:(y + 1) * row_bytes], tags[y % len(tags)]
        out.append(tag)
        for i, value in enumerate(row):
            left = row[i - step] if i >= step else 0
            corner = above[i - step] if i >= step else 0
            guess = (0, left, above[i], (left + above[i]) // 2, paeth(left, above[i], corner))[tag]
            out.append(value - guess & 255)
        above = row
    return bytes(out)


def lzw(data, early):
    clear, end = 256, 257
    bits, width, held = [], 9, b""
    table = {bytes([i]): i for i in range(256)}

    def put(code):
        bits.append(format(code, f"0{width}b"))

    put(clear)
    for value in data:
        longer = held + bytes([value])
        if longer in table:
            held = longer
            continue
        put(table[held])
        table[longer] = len(table) + 2
        held = bytes([value])
        if len(table) + 2 + early > 1 << width:
            width += 1
        if len(table) + 2 >= 4094:
            put(clear)
            table, width = {bytes([i]): i for i in range(256)}, 9
    if held:
        put(table[held])
        if len(table) + 3 + early > 1 << width:
            width += 1
    put(end)
    text = "".join(bits)
    text += "0" * (-len(text) % 8)
    return int(text, 2).to_bytes(len(text) // 8, "big")


def run_length(data):
    out, at = bytearray(), 0
    while at < len(data):
        count = 1
        while count < 128 and data[at + count:at + count + 1] == data[at:at + 1]:
            count += 1
        if count > 1:
            out += bytes([257 - count, data[at]])
        else:
            while count < 128 and at + count < len(data) and data[at + count] != data[at + count - 1]:
                count += 1
            out += bytes([count - 1]) + data[at:at + count]
        at += count
    return bytes(out + b"\x80")


def faxed(samples, compression, options=0):
    """By libtiff, black on white: a sample of 0 is black. `options`: bits of T4Options."""
    picture = Image.fromarray((samples[:, :, 0] != 0).astype(numpy.uint8) * 255).convert("1")
    held = io.BytesIO()
    tags = {262: 0}  # 0 is white
    if compression == "group3":
        tags[292] = options
    picture.save(held, "TIFF", compression=compression, tiffinfo=tags)
    with Image.open(held) as file:
        (offset,), (count,) = file.tag_v2[273], file.tag_v2[279]
    return held.getvalue()[offset:offset + count]


def jbig2(samples):
    """One page of one generic region, coded as Group 4 (ITU-T T.88, 6.2.6), as PDF embeds it."""
    height, width, _ = samples.shape
    region = struct.pack(">IIIIB", width, height, 0, 0, 0) + b"\x01" + faxed(samples, "group4")
    page = struct.pack(">IIIIBH", width, height, 0, 0, 0, 0)

    def segment(number, kind, data):
        return struct.pack(">IBBBI", number, kind, 0, 1, len(data)) + data

    return segment(0, 48, page) + segment(1, 38, region)


def jpx(samples, mode):
    held = io.BytesIO()
    array = samples[:, :, 0] if samples.shape[2] == 1 else samples
    Image.fromarray(array, mode).save(held, "JPEG2000", irreversible=False)
    return held.getvalue()


def without_segments(data, wanted):
    """A JPEG without the segments in front of its scan whose markers `wanted` holds."""
    out, at = bytearray(data[:2]), 2
    while data[at + 1] != 0xDA:
        length = 2 + struct.unpack(">H", data[at + 2:at + 4])[0]
        if data[at + 1] not in wanted:
            out += data[at:at + length]
        at += length
    return bytes(out + data[at:])


def jpeg(samples, transform=None, sampling=0, progressive=False):
    """Components go in as they are, but for RGB in `transform` 1 and CMYK in 2, whose first three become YCbCr.
    An APP14 segment states the transform where one is given; no JFIF segment does."""
    count = samples.shape[2]
    bytes_ = samples.astype(numpy.uint8)
    if count == 1:
        picture = Image.fromarray(bytes_[:, :, 0])
    elif count == 3:
        picture = Image.frombytes("YCbCr", bytes_.shape[1::-1], bytes_.tobytes())
        if transform != 0:
            picture = Image.fromarray(bytes_)
    else:
        if transform == 2:
            three = Image.fromarray(bytes_[:, :, :3].copy()).convert("YCbCr")
            bytes_ = numpy.dstack([numpy.asarray(three), bytes_[:, :, 3]])
        # The library that writes it turns amounts of ink.
        picture = Image.frombytes("CMYK", bytes_.shape[1::-1], (255 - bytes_).tobytes())
    held = io.BytesIO()
    picture.save(held, "JPEG", quality=92, subsampling=sampling, progressive=progressive)
    plain = without_segments(held.getvalue(), {0xE0, 0xEE})
    if transform is None:
        return plain
    mark = b"\xff\xee" + struct.pack(">H", 14) + b"Adobe" + struct.pack(">HHHB", 100, 0, 0, transform)
    return plain[:2] + mark + plain[2:]


def deflated(data):
    return zlib.compress(data)
