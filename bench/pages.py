"""What the measurements of pages share: running programs, drawing pages, saved edits, counts, listed images."""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

MARKS = re.compile("[\u200e\u200f\u202a-\u202e]")


def program_in_build():
    return pathlib.Path(__file__).resolve().parent.parent / "build/corvane"


def run(*command, seconds=None):
    return subprocess.run([str(part) for part in command], capture_output=True, timeout=seconds, check=False)


def printed(command, limit):
    """Whether a program ended well, and what it printed."""
    try:
        done = run(*command, seconds=limit)
        return done.returncode == 0, done.stdout.decode(errors="replace")
    except subprocess.TimeoutExpired:
        return False, ""


def listed(path, page, limit):
    """The images that pdfimages names: (place, object, kind, width, height)."""
    _, text = printed(["pdfimages", "-list", "-f", str(page), "-l", str(page), path], limit)
    for line in text.splitlines()[2:]:
        field = line.split()
        if len(field) < 12 or field[2] != "image" or not field[10].isdigit():
            continue
        yield int(field[1]), int(field[10]), (field[8], field[5], int(field[7])), int(field[3]), int(field[4])


def files(paths):
    for path in paths:
        if not os.path.isdir(path):
            yield path
        for folder, _, names in sorted(os.walk(path)):
            yield from (os.path.join(folder, name) for name in sorted(names) if name.endswith(".pdf"))


def picture(pdf, folder):
    """Rows of pixels of the first page, three bytes each, or nothing where it cannot be drawn."""
    target = folder / "page.ppm"
    target.unlink(missing_ok=True)
    run("mutool", "draw", "-q", "-r", "72", "-F", "ppm", "-o", target, pdf, "1")
    if not target.exists():
        return None
    data = target.read_bytes()
    header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", data)
    width = 3 * int(header[1])
    return [data[i:i + width] for i in range(header.end(), len(data), width)]


def words(pdf):
    """Of the first page, as pdftotext finds them, without the marks of direction that it adds."""
    text = run("pdftotext", "-l", "1", "-enc", "UTF-8", pdf, "-").stdout.decode("utf-8", "replace")
    return MARKS.sub("", text).split()


class EditedPage:
    """The first page of a file as SVG, and the copy of the file that an edit of it goes into."""

    def __init__(self, pdf, program, folder):
        self.pdf, self.program, self.folder = pdf, program, folder
        self.svg, self.saved = folder / "page.svg", folder / "saved.pdf"

    def opened(self):
        """The text of the SVG, or nothing."""
        answer = run(self.program, "open", self.pdf, "-o", self.svg)
        return self.svg.read_text(encoding="utf-8") if answer.returncode == 0 else None

    def fault_of_saving(self, text):
        """Saves `text`; a word and a line for what went wrong, or nothing."""
        self.svg.write_text(text, encoding="utf-8")
        shutil.copy(self.pdf, self.saved)
        answer = run(self.program, "save", self.svg, self.saved)
        if answer.returncode != 0:
            return "refused", answer.stderr.decode("utf-8", "replace").strip().splitlines()[-1]
        if not self.saved.read_bytes().startswith(self.pdf.read_bytes()):
            return "OLD BYTES CHANGED", ""
        if run("qpdf", "--check", self.pdf).returncode == 0 and run("qpdf", "--check", self.saved).returncode != 0:
            return "QPDF", ""
        return None

    def pictures(self):
        """Before and after, or nothing where they cannot be compared."""
        before, after = picture(self.pdf, self.folder), picture(self.saved, self.folder)
        return (before, after) if before and after and len(before) == len(after) else None


def edit_all(description, edits, measure, quiet):
    """Reads the command line, has `measure(page, edit)` edit every page, and prints what became of them; words
    in `quiet` are listed with --verbose only."""
    parser = argparse.ArgumentParser(description=description, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("edit", choices=edits)
    parser.add_argument("--corvane", type=pathlib.Path, default=program_in_build())
    parser.add_argument("--verbose", action="store_true", help="a line for each file")
    options = parser.parse_args()
    counts = collections.Counter()

    def one(pdf):
        with tempfile.TemporaryDirectory() as folder:
            return pdf.name, *measure(EditedPage(pdf, options.corvane, pathlib.Path(folder)), options.edit)

    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for name, became, detail in pool.map(one, sorted(options.folder.glob("*.pdf"))):
            counts[became] += 1
            if options.verbose or became not in quiet:
                print(f"{became:18} {name}  {detail}")
    print(f"{options.edit}: " + ", ".join(f"{count} {became}" for became, count in counts.most_common()))
