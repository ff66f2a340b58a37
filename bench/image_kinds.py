#!/usr/bin/env python3
"""Makes a PDF file with an image of each kind on a page of its own, as large as the image has pixels.

    image_kinds.py FILE.pdf

Kinds are bits, colour spaces, filters, Decode arrays and masks. The same program gives the same bytes.
`kinds()` names them in the order of the pages.
"""

import struct
import sys
from dataclasses import dataclass, field

import numpy

import image_codings as coding
from make_pages import stream, write_pdf

WIDTH, HEIGHT = 37, 24
COMPONENTS = {"gray": 1, "rgb": 3, "cmyk": 4, "indexed": 1, "lab": 3, "calgray": 1, "calrgb": 3, "icc1": 1, "icc3": 3,
              "icc4": 4, "separation": 1, "devicen": 2}
SEEN = {
    "gray": lambda light: numpy.repeat(light, 3, axis=2),
    "rgb": lambda light: light,
    "cmyk": lambda ink: 1 - numpy.minimum(1, ink[:, :, :3] + ink[:, :, 3:]),
    "separation": lambda tint: 1 - tint ** 1.3 * numpy.array([0.2, 0.9, 0.7]),
}
WHITE = b"/WhitePoint [0.9505 1 1.089]"


@dataclass
class Kind:
    group: str
    name: str
    space: str
    bits: int
    samples: numpy.ndarray
    filter: bytes = b"/FlateDecode"
    parameters: bytes = b""
    data: bytes = None  # coded; made of the samples where there are none
    entries: bytes = b""
    others: list = field(default_factory=list)  # streams that `entries` refer to, as %d in turn
    decode: list = None  # of `entries`
    alpha: numpy.ndarray = None  # 0 to 1 for each pixel, where `entries` give it some
    plain: numpy.ndarray = None  # samples before they were mixed with a matte

    def seen(self):
        """Red, green and blue on white, 0 to 255, where the space is a device's or a function's."""
        samples = self.samples if self.plain is None else self.plain
        count = COMPONENTS.get(self.space)
        if count is None or self.space not in SEEN:
            return None
        values = samples[:, :, :count] / ((1 << self.bits) - 1)
        if self.decode:
            low, high = numpy.array(self.decode[::2]), numpy.array(self.decode[1::2])
            values = low + values * (high - low)
        colours = SEEN[self.space](values)
        alpha = numpy.ones((HEIGHT, WIDTH, 1)) if self.alpha is None else self.alpha
        return numpy.rint(255 * (colours * alpha + 1 - alpha)).astype(int)


def smooth(count, bits):
    """Gradients, as photographs have them, each component in a direction of its own."""
    y, x = numpy.mgrid[0:HEIGHT, 0:WIDTH]
    planes = [(x / (WIDTH - 1) * (i % 3 + 1) + y / (HEIGHT - 1) * (2 - i % 2)) / 5 for i in range(count)]
    highest = (1 << bits) - 1
    return numpy.rint(numpy.stack(planes, axis=2) * highest).astype(numpy.uint32)


def mixed(count, bits, seed=1):
    """Gradients above, and any samples below, so that prediction and tables have work."""
    samples = smooth(count, bits)
    noise = numpy.random.RandomState(seed * 100 + count * 20 + bits)
    samples[HEIGHT // 2:] = noise.randint(0, 1 << bits, samples[HEIGHT // 2:].shape)
    return samples


def profile(components):
    """A profile (ICC.1:2001) that looks unlike a device: gray of gamma 1.5, wide RGB, inks by a table."""
    def number(value):
        return struct.pack(">i", round(value * 65536))

    def place(*values):
        return b"XYZ \0\0\0\0" + b"".join(map(number, values))

    def gamma(value):
        return b"curv\0\0\0\0" + struct.pack(">IH", 1, round(value * 256)) + b"\0\0"

    text = b"desc\0\0\0\0" + struct.pack(">I", 2) + b"x\0" + bytes(78)
    tags = [(b"desc", text), (b"wtpt", place(0.9642, 1, 0.8249)), (b"cprt", b"text\0\0\0\0x\0")]
    if components == 1:
        tags.append((b"kTRC", gamma(1.5)))
    elif components == 3:
        tags += [(b"rXYZ", place(0.6097, 0.3111, 0.0195)), (b"gXYZ", place(0.2053, 0.6257, 0.0609)),
                 (b"bXYZ", place(0.1492, 0.0632, 0.7446))]
        tags += [(name, gamma(2.2)) for name in (b"rTRC", b"gTRC", b"bTRC")]
    else:
        tags += [(name, table_of_inks()) for name in (b"A2B0", b"A2B1", b"A2B2")]
    space = {1: b"GRAY", 3: b"RGB ", 4: b"CMYK"}[components]
    kind, connection = (b"prtr", b"Lab ") if components == 4 else (b"mntr", b"XYZ ")
    table, body, at = struct.pack(">I", len(tags)), b"", 132 + 12 * len(tags)
    for name, data in tags:
        data += bytes(-len(data) % 4)
        table += name + struct.pack(">II", at + len(body), len(data))
        body += data
    head = struct.pack(">I4sI4s4s4s", at + len(body), b"lcms", 0x02400000, kind, space, connection)
    head += struct.pack(">6H", 2020, 1, 1, 0, 0, 0) + b"acsp" + bytes(28) + place(0.9642, 1, 0.8249)[8:]
    return head + bytes(128 - len(head)) + table + body


def table_of_inks():
    """lut8Type with two steps of each ink: light falls, and hues turn as inks do."""
    out = b"mft1\0\0\0\0" + struct.pack(">BBBx", 4, 3, 2)
    out += struct.pack(">9i", *(65536 * (i % 4 == 0) for i in range(9)))
    out += bytes(range(256)) * 4
    for corner in range(16):
        cyan, magenta, yellow, black = ((corner >> shift) & 1 for shift in (3, 2, 1, 0))
        light = (1 - 0.4 * cyan) * (1 - 0.5 * magenta) * (1 - 0.1 * yellow) * (1 - 0.85 * black)
        red_green = (-36 * cyan + 72 * magenta - 6 * yellow) * (1 - 0.9 * black)
        yellow_blue = (-48 * cyan - 4 * magenta + 90 * yellow) * (1 - 0.9 * black)
        out += bytes([round(255 * light), round(128 + red_green), round(128 + min(yellow_blue, 127))])
    return out + bytes(range(256)) * 3


def space_object(space, others):
    """A colour space; streams that it needs are appended to `others`, and named by %d."""
    def with_profile(count):
        others.append(stream(coding.deflated(profile(count)), b"/N %d /Filter /FlateDecode " % count))
        return b"[/ICCBased %d 0 R]"

    base, _, inner = space.partition(" of ")
    if base == "indexed":
        count = COMPONENTS[inner]
        colours = numpy.random.RandomState(7).randint(0, 256, (256, count)).astype(numpy.uint8)
        return b"[/Indexed " + space_object(inner, others) + b" 255 <" + colours.tobytes().hex().encode() + b">]"
    if base.startswith("icc"):
        return with_profile(COMPONENTS[base])
    return {
        "gray": b"/DeviceGray", "rgb": b"/DeviceRGB", "cmyk": b"/DeviceCMYK",
        "lab": b"[/Lab << /WhitePoint [0.9642 1 0.8249] /Range [-90 100 -80 90] >>]",
        "calgray": b"[/CalGray << " + WHITE + b" /Gamma 1.6 >>]",
        "calrgb": b"[/CalRGB << " + WHITE + b" /Gamma [1.8 1.8 1.8] /Matrix "
                  b"[0.4497 0.2446 0.0252 0.3163 0.672 0.1412 0.1845 0.0833 0.9227] >>]",
        "separation": b"[/Separation /Spot /DeviceRGB << /FunctionType 2 /Domain [0 1] /N 1.3 "
                      b"/C0 [1 1 1] /C1 [0.8 0.1 0.3] >>]",
        "devicen": b"[/DeviceN [/One /Two] /DeviceRGB << /FunctionType 2 /Domain [0 1] /N 1 >>]",
    }[base]


def two_inks(others):
    """DeviceN of two inks, by a function of PostScript: light is what both leave over."""
    program = b"{ 2 copy 0.5 mul add 1 exch sub dup 0 lt { pop 0 } if 3 1 roll 1 exch sub exch 1 exch sub }"
    others.append(stream(program, b"/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1] "))
    return b"[/DeviceN [/One /Two] /DeviceRGB %d 0 R]"


def spaces_and_bits():
    for space in ("gray", "rgb", "cmyk", "lab", "calgray", "calrgb", "icc1", "icc3", "icc4", "separation", "devicen"):
        for bits in (1, 2, 4, 8, 16):
            yield Kind("space", f"{space} {bits}", space, bits, mixed(COMPONENTS[space], bits))
    for inner in ("gray", "rgb", "cmyk", "lab", "calrgb", "icc3", "icc4", "separation"):
        for bits in (1, 2, 4, 8):
            yield Kind("space", f"indexed of {inner} {bits}", f"indexed of {inner}", bits, mixed(1, bits))


def filters():
    for space, bits in (("gray", 1), ("gray", 4), ("rgb", 4), ("rgb", 8), ("gray", 16), ("rgb", 16), ("cmyk", 8)):
        count = COMPONENTS[space]
        samples = mixed(count, bits)
        said = b"/Colors %d /BitsPerComponent %d /Columns %d" % (count, bits, WIDTH)

        def kind(name, filter_, data, parameters=b"", space=space, bits=bits, samples=samples):
            return Kind("filter", f"{name} {space} {bits}", space, bits, samples, filter_, parameters, data)

        yield kind("tiff predictor", b"/FlateDecode", coding.deflated(coding.tiff_predicted(samples, bits)),
                   b"/Predictor 2 " + said)
        for tags in (0,), (1,), (2,), (3,), (4,), (4, 3, 1, 2, 0):
            yield kind(f"png predictor {''.join(map(str, tags))}", b"/FlateDecode",
                       coding.deflated(coding.png_predicted(samples, bits, tags)), b"/Predictor 15 " + said)
        plain = coding.packed(samples, bits)
        for early in 0, 1:
            yield kind(f"lzw early {early}", b"/LZWDecode", coding.lzw(plain, early), b"/EarlyChange %d" % early)
        yield kind("lzw predictor", b"/LZWDecode", coding.lzw(coding.png_predicted(samples, bits, (2,)), 1),
                   b"/Predictor 12 " + said)
        yield kind("run length", b"/RunLengthDecode", coding.run_length(plain))
        yield kind("hex", b"/ASCIIHexDecode", plain.hex().encode() + b">")


def fax_and_jbig2():
    samples = mixed(1, 1)
    for name, compression, options, said in (("G3 1D", "group3", 0, b"/K 0"), ("G3 2D", "group3", 1, b"/K 4"),
                                             ("G4", "group4", 0, b"/K -1")):
        for black in False, True:
            data = coding.faxed(samples, compression, options)
            yield Kind("filter", f"{name}{' BlackIs1' * black}", "gray", 1, samples, b"/CCITTFaxDecode",
                       said + b" /Columns %d /Rows %d" % (WIDTH, HEIGHT) + b" /BlackIs1 true" * black, data)
    yield Kind("filter", "JBIG2", "gray", 1, samples, b"/JBIG2Decode", b"", coding.jbig2(samples))
    yield Kind("filter", "JBIG2 indexed", "indexed of rgb", 1, samples, b"/JBIG2Decode", b"", coding.jbig2(samples))


def jpegs():
    # Programs that store amounts of light say so by a Decode array; these store ink, whatever it says.
    inverted = b"/Decode [1 0 1 0 1 0 1 0]"
    cases = [
        ("gray", "gray", {}, b"", b""),
        ("YCC", "rgb", {}, b"", b""),
        ("YCC 4:2:0", "rgb", {"sampling": 2}, b"", b""),
        ("YCC 4:2:2 progressive", "rgb", {"sampling": 1, "progressive": True}, b"", b""),
        ("YCC marker", "rgb", {"transform": 1}, b"", b""),
        ("RGB marker", "rgb", {"transform": 0}, b"", b""),
        ("CMYK", "cmyk", {}, b"", b""),
        ("CMYK marker", "cmyk", {"transform": 0}, b"", b""),
        ("CMYK marker inverted", "cmyk", {"transform": 0}, b"", inverted),
        ("YCCK marker", "cmyk", {"transform": 2}, b"", b""),
        ("YCCK marker inverted", "cmyk", {"transform": 2}, b"", inverted),
        ("gray inverted", "gray", {}, b"", b"/Decode [1 0]"),
        ("YCC inverted", "rgb", {}, b"", b"/Decode [1 0 1 0 1 0]"),
        ("YCC as Lab", "lab", {}, b"", b""),
        ("YCC as CalRGB", "calrgb", {}, b"", b""),
        ("YCC as icc3", "icc3", {}, b"", b""),
        ("gray as icc1", "icc1", {}, b"", b""),
        ("CMYK as icc4", "icc4", {"transform": 0}, b"", b""),
        ("gray as separation", "separation", {}, b"", b""),
        ("gray as indexed", "indexed of rgb", {}, b"", b""),
    ]
    for name, space, how, parameters, entries in cases:
        count = COMPONENTS[space.partition(" of ")[0]]
        samples = smooth(count, 8)
        yield Kind("DCT", f"DCT {name}", space, 8, samples, b"/DCTDecode", parameters, coding.jpeg(samples, **how),
                   entries, decode=[1, 0] * count if b"Decode" in entries else None)
    rgb, cmyk = smooth(3, 8), smooth(4, 8)
    as_it_is = coding.without_segments(coding.jpeg(rgb, transform=0), {0xEE})
    yield Kind("DCT", "DCT RGB ColorTransform 0", "rgb", 8, rgb, b"/DCTDecode", b"/ColorTransform 0", as_it_is)
    ycck = coding.without_segments(coding.jpeg(cmyk, transform=2), {0xEE})
    yield Kind("DCT", "DCT YCCK ColorTransform 1", "cmyk", 8, cmyk, b"/DCTDecode", b"/ColorTransform 1", ycck)


def jpxs():
    for name, space, mode, count, bits in (("gray", "gray", "L", 1, 8), ("RGB", "rgb", "RGB", 3, 8),
                                           ("gray 16", "gray", "I;16", 1, 16), ("icc3", "icc3", "RGB", 3, 8),
                                           ("calgray", "calgray", "L", 1, 8), ("separation", "separation", "L", 1, 8)):
        samples = mixed(count, bits).astype(numpy.uint16 if bits == 16 else numpy.uint8)
        yield Kind("JPX", f"JPX {name}", space, bits, samples, b"/JPXDecode", b"", coding.jpx(samples, mode))
    samples = mixed(4, 8).astype(numpy.uint8)
    yield Kind("JPX", "JPX RGB alpha", "rgb", 8, samples, b"/JPXDecode", b"", coding.jpx(samples, "RGBA"),
               b"/SMaskInData 1", alpha=samples[:, :, 3:] / 255)


def decodes():
    for space in ("gray", "rgb", "cmyk", "lab", "calgray", "calrgb", "icc1", "icc3", "icc4", "separation", "devicen"):
        count = COMPONENTS[space]
        usual = [0, 100, -90, 100, -80, 90] if space == "lab" else [0, 1] * count
        turned = [usual[i ^ 1] for i in range(2 * count)]
        middle = [low + (high - low) * part for low, high in zip(usual[::2], usual[1::2]) for part in (0.25, 0.7)]
        for bits in (1, 4, 8, 16):
            for name, decode in (("inverted", turned), ("middle", middle)):
                yield Kind("Decode", f"{space} {bits} {name}", space, bits, mixed(count, bits),
                           entries=b"/Decode [" + " ".join(f"{value:g}" for value in decode).encode() + b"]",
                           decode=decode)
    for bits in (1, 2, 4, 8):
        highest = (1 << bits) - 1
        yield Kind("Decode", f"indexed {bits} inverted", "indexed of rgb", bits, mixed(1, bits),
                   entries=b"/Decode [%d 0]" % highest)


def mask_stream(samples, bits, entries):
    return stream(coding.deflated(coding.packed(samples, bits)), b"/Type /XObject /Subtype /Image /Width %d /Height %d "
                  b"/BitsPerComponent %d /Filter /FlateDecode " % (WIDTH, HEIGHT, bits) + entries)


def masks():
    hole = mixed(1, 1, seed=3)
    yield Kind("mask", "stencil", "", 1, hole, entries=b"/ImageMask true")
    yield Kind("mask", "stencil inverted", "", 1, hole, entries=b"/ImageMask true /Decode [1 0]")
    yield Kind("mask", "stencil G4", "", 1, hole, b"/CCITTFaxDecode", b"/K -1 /Columns %d" % WIDTH,
               coding.faxed(hole, "group4"), b"/ImageMask true")
    yield Kind("mask", "stencil JBIG2", "", 1, hole, b"/JBIG2Decode", b"", coding.jbig2(hole), b"/ImageMask true")
    for space, bits in (("gray", 8), ("rgb", 8), ("cmyk", 8), ("indexed of rgb", 4), ("gray", 1), ("rgb", 16),
                        ("lab", 8), ("icc3", 8), ("separation", 8)):
        count = COMPONENTS[space.partition(" of ")[0]]
        samples, highest = mixed(count, bits), (1 << bits) - 1

        def kind(name, alpha, entries, *others, space=space, bits=bits, samples=samples, plain=None):
            return Kind("mask", f"{space} {bits} {name}", space, bits, samples, entries=entries, others=list(others),
                        alpha=alpha, plain=plain)

        for turned in False, True:
            yield kind("Mask" + " inverted" * turned, hole if turned else 1 - hole, b"/Mask %d 0 R",
                       mask_stream(hole, 1, b"/ImageMask true " + b"/Decode [1 0] " * turned))
        low, high = highest // 8, highest // 2
        kept = numpy.any((samples < low) | (samples > high), axis=2, keepdims=True)
        yield kind("colour key", kept, b"/Mask [" + b" ".join([b"%d %d" % (low, high)] * count) + b"]")
        for alpha_bits in (1, 4, 8, 16):
            alpha = mixed(1, alpha_bits, seed=5)
            yield kind(f"SMask {alpha_bits}", alpha / ((1 << alpha_bits) - 1), b"/SMask %d 0 R",
                       mask_stream(alpha, alpha_bits, b"/ColorSpace /DeviceGray "))
        alpha = mixed(1, 8, seed=5)
        yield kind("SMask inverted", 1 - alpha / 255, b"/SMask %d 0 R",
                   mask_stream(alpha, 8, b"/ColorSpace /DeviceGray /Decode [1 0] "))
        if space in ("gray", "rgb", "cmyk"):
            matte = b" ".join([b"0.2"] * count)
            blend = numpy.rint((0.2 + alpha / 255 * (samples / highest - 0.2)) * highest).astype(numpy.uint32)
            yield kind("Matte", alpha / 255, b"/SMask %d 0 R",
                       mask_stream(alpha, 8, b"/ColorSpace /DeviceGray /Matte [" + matte + b"] "), samples=blend,
                       plain=samples)


def kinds():
    for make in (spaces_and_bits, filters, fax_and_jbig2, jpegs, jpxs, decodes, masks):
        yield from make()


def write(path):
    made = list(kinds())
    bodies = [b"<< /Type /Catalog /Pages 2 0 R >>", b""]
    pages = []

    def add(body):
        bodies.append(body)
        return len(bodies)

    for kind in made:
        data = kind.data if kind.data is not None else coding.deflated(coding.packed(kind.samples, kind.bits))
        entries = kind.entries
        if kind.others:
            entries = entries % tuple(add(other) for other in kind.others)
        if kind.space:
            others = []
            space = two_inks(others) if kind.space == "devicen" else space_object(kind.space, others)
            space = space % tuple(add(other) for other in others) if others else space
            entries += b" /ColorSpace " + space
        if kind.parameters:
            entries += b" /DecodeParms << " + kind.parameters + b" >>"
        image = add(stream(data, b"/Type /XObject /Subtype /Image /Width %d /Height %d /BitsPerComponent %d /Filter %b "
                           % (WIDTH, HEIGHT, kind.bits, kind.filter) + entries + b" "))
        content = add(stream(b"0.2 0.4 0.6 rg %d 0 0 %d 0 0 cm /Im Do" % (WIDTH, HEIGHT)))
        pages.append(add(b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 %d %d] /Contents %d 0 R /Resources "
                         b"<< /XObject << /Im %d 0 R >> >> >>" % (WIDTH, HEIGHT, content, image)))
    bodies[1] = b"<< /Type /Pages /Count %d /Kids [%b] >>" % (len(pages), b" ".join(b"%d 0 R" % page for page in pages))
    write_pdf(path, bodies)
    return made


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    write(sys.argv[1])
