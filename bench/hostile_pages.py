#!/usr/bin/env python3
"""Opens small files that ask for much work, and measures what they get.

    hostile_pages.py [--corvane PATH] [--keep FOLDER] [--seconds N] [--only NAMES]

Each page is opened, and what was opened is saved at once as a dry run. Printed are the size of the file in KB, the
status, time and peak memory of both, and the first thing that was said. An answer is the artwork, with or without
warnings, or a refusal that says why. What takes more than 2 seconds of processor time or 256 MB is marked, and the
script ends with status 1; after --seconds (60) it is killed.
"""

import argparse
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import threading
import zlib

from pages import program_in_build

MOST_SECONDS = 2
MOST_MEGABYTES = 256


def stream(entries, data, packed=False):
    if packed:
        data, entries = zlib.compress(data, 9), entries + " /Filter /FlateDecode"
    return f"<< {entries} /Length {len(data)} >>\nstream\n".encode() + data + b"\nendstream"


def document(content, resources="", objects=None, packed=False):
    """The bytes of a file of one page; `objects` have numbers from 10."""
    page = (f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] /Contents 4 0 R /Resources << {resources} >> >>")
    bodies = {1: b"<< /Type /Catalog /Pages 2 0 R >>", 2: b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
              3: page.encode(), 4: stream("", content, packed)}
    bodies.update(objects or {})
    out, places = bytearray(b"%PDF-1.7\n"), {}
    for number, body in sorted(bodies.items()):
        places[number] = len(out)
        out += b"%d 0 obj\n%b\nendobj\n" % (number, body)
    start, size = len(out), max(bodies) + 1
    out += b"xref\n0 %d\n0000000000 65535 f \n" % size
    for number in range(1, size):
        out += b"%010d 00000 n \n" % places[number] if number in places else b"0000000000 65535 f \n"
    return bytes(out + b"trailer\n<< /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (size, start))


def form(content, resources="", entries=""):
    return stream(f"/Type /XObject /Subtype /Form /BBox [0 0 612 792] {entries} /Resources << {resources} >>", content)


def forms_in_forms(levels=500, times=1):
    """Each form draws the next one, as often as that says."""
    objects = {9 + i: form(b"0 0 9 9 re f " + b"/F Do " * times, f"/XObject << /F {10 + i} 0 R >>")
               for i in range(1, levels)}
    objects[9 + levels] = form(b"0 0 9 9 re f")
    return document(b"/F Do", "/XObject << /F 10 0 R >>", objects)


def doubled_forms():
    return forms_in_forms(40, 2)


def masks_in_masks(levels=500):
    """The content of each mask is masked by the next one."""
    group, objects = "/Group << /S /Transparency /CS /DeviceGray >>", {}
    for i in range(levels):
        state = f"/ExtGState << /G << /SMask << /S /Luminosity /G {11 + i} 0 R >> >> >>"
        objects[10 + i] = form(b"/G gs 1 g 0 0 99 99 re f", state, group)
    objects[10 + levels] = form(b"1 g 0 0 99 99 re f", "", group)
    return document(b"/G gs 0 0 99 99 re f", "/ExtGState << /G << /SMask << /S /Luminosity /G 10 0 R >> >> >>",
                    objects)


def pattern_of_itself():
    entries = "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 9 9] /XStep 9 /YStep 9"
    tile = stream(f"{entries} /Resources << /Pattern << /P 10 0 R >> >>",
                  b"/Pattern cs /P scn 0 0 5 5 re f 2 2 5 5 re f 0 g 1 1 3 3 re f")
    return document(b"/Pattern cs /P scn 0 0 600 700 re f", "/Pattern << /P 10 0 R >>", {10: tile})


def patterns_in_patterns(levels=500):
    entries = "/PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 9 9] /XStep 9 /YStep 9"
    objects = {10 + i: stream(f"{entries} /Resources << /Pattern << /P {11 + i} 0 R >> >>",
                              b"/Pattern cs /P scn 0 0 5 5 re f 2 2 5 5 re f") for i in range(levels)}
    objects[10 + levels] = stream(f"{entries} /Resources << >>", b"0 0 5 5 re f")
    return document(b"/Pattern cs /P scn 0 0 600 700 re f", "/Pattern << /P 10 0 R >>", objects)


def long_calculator(operators=1_000_000):
    """A program has no loops: it is as long as it runs. Every pixel of a shading asks for it."""
    function = stream("/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]",
                      b"{ " + b"dup mul " * (operators // 2) + b"dup dup }", packed=True)
    return document(b"/S sh", "/Shading << /S << /ShadingType 1 /ColorSpace /DeviceRGB /Domain [0 1 0 1] "
                    "/Matrix [612 0 0 792 0 0] /Function 10 0 R >> >>", {10: function})


def calculator_as_ink(uses=20_000):
    """The same for each of many colours of a page."""
    function = stream("/FunctionType 4 /Domain [0 1] /Range [0 1]", b"{ " + b"dup mul " * 50_000 + b"}", packed=True)
    content = b"/C cs " + b"".join(b".%d scn 0 0 9 9 re f " % i for i in range(1, uses))
    return document(content, "/ColorSpace << /C [/Separation /Ink /DeviceGray 10 0 R] >>", {10: function}, packed=True)


def sampled_function(side=4096):
    """Sixteen million samples, which compress to nothing."""
    function = stream(f"/FunctionType 0 /Domain [0 1 0 1] /Range [0 1] /Size [{side} {side}] /BitsPerSample 8",
                      bytes(side * side), packed=True)
    return document(b"/S sh", "/Shading << /S << /ShadingType 1 /ColorSpace /DeviceGray /Domain [0 1 0 1] "
                    "/Matrix [612 0 0 792 0 0] /Function 10 0 R >> >>", {10: function})


def marked_points(count=1_000_000):
    return document(b"/A MP\n" * count + b"0 0 9 9 re f", packed=True)


def marked_points_with_lists(count=1_000_000):
    return document(b"/A <</B 1>> DP\n" * count + b"0 0 9 9 re f", packed=True)


def marked_contents(count=500_000):
    return document(b"/A BMC\n" * count + b"0 0 9 9 re f\n" + b"EMC\n" * count, packed=True)


def mesh(triangles, entries, vertex):
    data = b"".join(vertex(i) for i in range(1000))
    data = data * ((triangles + 999) // 1000)
    shading = stream(f"/ColorSpace /DeviceGray /BitsPerCoordinate 8 /BitsPerComponent 8 "
                     f"/Decode [0 612 0 792 0 1] {entries}", data, packed=True)
    return document(b"/S sh", "/Shading << /S 10 0 R >>", {10: shading})


def free_mesh(triangles=10_000_000):
    """Each vertex makes a triangle with the two before it."""
    return mesh(triangles, "/ShadingType 4 /BitsPerFlag 8",
                lambda i: bytes([1 if i > 2 else 0, i * 37 % 256, i * 91 % 256, i % 256]))


def lattice_mesh(triangles=10_000_000):
    return mesh(triangles // 2, "/ShadingType 5 /VerticesPerRow 1000",
                lambda i: bytes([i * 37 % 256, i * 91 % 256, i % 256]))


def patch_mesh(patches=500_000):
    """Twelve points and four colours each, which become many triangles."""
    return mesh(patches, "/ShadingType 6 /BitsPerFlag 8",
                lambda i: bytes([0] + [(i * 37 + 11 * k) % 256 for k in range(24)] + [1, 2, 3, 4]))


PAGES = {maker.__name__: maker for maker in
         (forms_in_forms, doubled_forms, masks_in_masks, pattern_of_itself, patterns_in_patterns, long_calculator,
          calculator_as_ink, sampled_function, marked_points, marked_points_with_lists, marked_contents, free_mesh,
          lattice_mesh, patch_mesh)}


def make(name, path):
    """In a process of its own: the peak memory of a child is never less than what its parent held."""
    child = os.fork()
    if child == 0:
        path.write_bytes(PAGES[name]())
        os._exit(0)
    if os.waitpid(child, 0)[1] != 0:
        sys.exit(f"{name} cannot be made")


class Answer:
    def __init__(self, command, seconds):
        with tempfile.TemporaryFile() as errors:
            child = subprocess.Popen([str(word) for word in command], stdout=subprocess.DEVNULL, stderr=errors)
            killer = threading.Timer(seconds, child.send_signal, [signal.SIGKILL])
            killer.start()
            _, status, usage = os.wait4(child.pid, 0)
            killer.cancel()
            child.returncode = os.waitstatus_to_exitcode(status)
            errors.seek(0)
            lines = errors.read().decode("utf-8", "replace").splitlines()
        self.status = child.returncode
        self.seconds = usage.ru_utime + usage.ru_stime
        self.megabytes = usage.ru_maxrss / 1024
        self.said = lines[0] if lines else ""

    def is_good(self):
        return self.status in (0, 1) and self.seconds <= MOST_SECONDS and self.megabytes <= MOST_MEGABYTES

    def __str__(self):
        return f"{self.status:4} {self.seconds:7.2f} s {self.megabytes:6.0f} MB{' ' if self.is_good() else '!'}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--corvane", type=pathlib.Path, default=program_in_build())
    parser.add_argument("--keep", type=pathlib.Path, help="a folder for the files, which stay there")
    parser.add_argument("--seconds", type=float, default=60)
    parser.add_argument("--only", nargs="+", choices=PAGES, default=PAGES)
    options = parser.parse_args()
    is_good = True
    print(f"{'page':24} {'KB':>7}  {'open':23}{'save --dry-run':23}")
    with tempfile.TemporaryDirectory() as temporary:
        folder = options.keep or pathlib.Path(temporary)
        folder.mkdir(parents=True, exist_ok=True)
        for name in options.only:
            pdf, svg = folder / f"{name}.pdf", folder / f"{name}.svg"
            make(name, pdf)
            opened = Answer([options.corvane, "open", pdf, "-o", svg, "--quiet"], options.seconds)
            answers = [opened]
            if opened.status == 0:
                answers.append(Answer([options.corvane, "save", svg, pdf, "--dry-run", "--quiet"], options.seconds))
            is_good = is_good and all(answer.is_good() for answer in answers)
            print(f"{name:24} {pdf.stat().st_size // 1024:7}  " + "".join(f"{answer!s:23}" for answer in answers) +
                  answers[-1].said, flush=True)
    sys.exit(0 if is_good else 1)


if __name__ == "__main__":
    main()
