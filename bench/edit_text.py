#!/usr/bin/env python3
"""Edits the text of first pages as a person would, saves them, and measures what became of them.

    bench/edit_text.py FOLDER retype|move|recolour|delete [--corvane PROGRAM] [--verbose]

Of each page the middle one of its lines of text is edited in the SVG. Then: are the old bytes kept, does
qpdf find no more fault than before, are the words of the saved page (pdftotext) the edited ones, and does
the picture (mutool, 72 dots an inch) differ only near the line? Needs qpdf, mutool and pdftotext."""

import argparse
import collections
import concurrent.futures
import html
import pathlib
import re
import shutil
import subprocess
import tempfile

TEXT = re.compile(r"<text [^>]*>.*?</text>", re.S)


def run(*command):
    return subprocess.run([str(part) for part in command], capture_output=True)


def letters(markup):
    return html.unescape(re.sub(r"<[^>]*>", "", markup))


def retyped(line):
    """Two neighbouring letters of the line change places."""
    for run_of_text in re.finditer(r">([^<>&]+)<", line):
        text = run_of_text[1]
        for i in range(len(text) - 1):
            a, b = text[i], text[i + 1]
            if a != b and (a + b).isalpha() and (a + b).isascii():
                at = run_of_text.start(1) + i
                return line[:at] + b + a + line[at + 2:]
    return None


def moved(line):
    start = line.index(">")
    if ' transform="' in line[:start]:
        return line.replace(' transform="', ' transform="translate(3 4) ', 1)
    return line.replace("<text ", '<text transform="translate(3 4)" ', 1)


def recoloured(line):
    return re.sub(r' (data-)?fill[-a-z]*="[^"]*"', "", line).replace("<text ", '<text fill="#ff0000" ', 1)


EDITS = {"retype": retyped, "move": moved, "recolour": recoloured, "delete": lambda line: ""}


def picture(pdf, folder):
    """Rows of pixels, or nothing where the page cannot be drawn."""
    target = folder / "page.ppm"
    target.unlink(missing_ok=True)
    run("mutool", "draw", "-q", "-r", "72", "-F", "ppm", "-o", target, pdf, "1")
    if not target.exists():
        return None
    header = re.match(rb"P6\s+(\d+)\s+(\d+)\s+255\s", target.read_bytes())
    data = target.read_bytes()[header.end():]
    width = 3 * int(header[1])
    return [data[i:i + width] for i in range(0, len(data), width)]


def words(pdf):
    return run("pdftotext", "-l", "1", "-enc", "UTF-8", pdf, "-").stdout.decode("utf-8", "replace").split()


def bag(text):
    return collections.Counter(re.sub(r"\s", "", text))


def measure(pdf, edit, program, folder):
    """What became of one file: a word, and what a person would want to know."""
    svg, saved = folder / "page.svg", folder / "saved.pdf"
    if run(program, "open", pdf, "-o", svg).returncode != 0:
        return "not opened", ""
    art = svg.read_text(encoding="utf-8")
    lines = [m for m in TEXT.finditer(art) if len(letters(m[0]).strip()) >= 3 and 'fill="none"' not in m[0]]
    if not lines:
        return "no text", ""
    line = lines[len(lines) // 2]
    edited = EDITS[edit](line[0])
    if edited is None:
        return "no such letters", ""
    svg.write_text(art[:line.start()] + edited + art[line.end():], encoding="utf-8")
    shutil.copy(pdf, saved)
    answer = run(program, "save", svg, saved)
    if answer.returncode != 0:
        return "refused", answer.stderr.decode("utf-8", "replace").strip().splitlines()[-1]
    if not saved.read_bytes().startswith(pdf.read_bytes()):
        return "OLD BYTES CHANGED", ""
    if run("qpdf", "--check", pdf).returncode == 0 and run("qpdf", "--check", saved).returncode != 0:
        return "QPDF", ""
    was, now = bag(" ".join(words(pdf))), bag(" ".join(words(saved)))
    # Letters without a meaning have other names in each reader, so what goes is not compared by name.
    goes = len(letters(line[0])) if edit == "delete" else 0
    if now - was or (was - now).total() > goes:
        return "other words", ""
    before, after = picture(pdf, folder), picture(saved, folder)
    if before is None or after is None or len(before) != len(after):
        return "not drawn alike", ""
    rows = [i for i, (a, b) in enumerate(zip(before, after)) if a != b]
    return "as edited", f"{rows[-1] - rows[0] + 1} rows differ" if rows else "nothing seen"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("edit", choices=sorted(EDITS))
    parser.add_argument("--corvane", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parent.parent / "build/corvane")
    parser.add_argument("--verbose", action="store_true", help="a line for each file")
    options = parser.parse_args()
    counts = collections.Counter()

    def one(pdf):
        with tempfile.TemporaryDirectory() as folder:
            return pdf.name, *measure(pdf, options.edit, options.corvane, pathlib.Path(folder))

    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        for name, became, detail in pool.map(one, sorted(options.folder.glob("*.pdf"))):
            counts[became] += 1
            if options.verbose or became not in ("as edited", "no text", "no such letters"):
                print(f"{became:18} {name}  {detail}")
    print(f"{options.edit}: " + ", ".join(f"{count} {became}" for became, count in counts.most_common()))


if __name__ == "__main__":
    main()
